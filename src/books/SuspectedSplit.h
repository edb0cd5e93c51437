#pragma once
#include "foundation/Date.h"
#include "foundation/String.h"
#include "foundation/UserInteraction.h"
#include <cstdint>
#include <optional>
#include <vector>

namespace Tallymoor {

/// A jump between the closes of two days that may come from a share split or a merge.
///
/// The jump counts when it reaches the ratio of the options, or when a split would explain it but for a move
/// of at most a tenth: prices that fall to between 1/2.2 and 1.1/2 of what they were may be a split of 2:1.
/// Splits in whole numbers are looked for (2:1, 3:1 and so on), as are merges (1:2, 1:5), and the splits of
/// 3:2 and 5:2; for that of 3:2 prices fall to between 1/1.65 and 1.1/1.5, that is by 27 to 39 in a hundred.
/// Other ratios lie too near to what prices do by themselves: a merge of 2:3 would be suspected wherever a
/// takeover bid raises a price by half. They are proposed when the ratio of the options is reached, and the
/// user may answer with any.
class SuspectedSplit {
public:
  /// Nothing when the jump is none. The prices are above zero.
  static std::optional<SuspectedSplit> between(double yesterday, double today);

  /// True for the split of 3:2, by which prices fall no further than bad news makes them fall.
  bool isThreeForTwo() const { return m_kind == Kind::Split && m_proposed == WholeRatio{3, 2}; }

  /// Asks the user. The factors to record for the answer, of which one day may have two: 3 and -2 for a split
  /// of 3:2. A single 1, or -1 for a merge, stands for No.
  std::vector<std::int32_t> ask(const String& code, const Date& date) const;

private:
  enum class Kind { Split, Merge };
  SuspectedSplit(Kind kind, double jump);
  String question(const String& code, const Date& date) const;

  Kind m_kind;
  WholeRatio m_proposed; ///< of shares after to shares before; for a merge the other way round
};

} // namespace Tallymoor
