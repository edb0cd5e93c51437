#pragma once
#include "foundation/UserInteraction.h"
#include <cstdint>
#include <optional>
#include <vector>

namespace Tallymoor {

/// A jump between the closes of two days that may come from a share split or a merge; or one that a source
/// tells, whose ratio is not guessed.
///
/// The jump counts when it reaches the ratio of the options, or when a split would explain it except for a
/// move of at most a tenth: prices that fall to between 1/2.2 and 1.1/2 of what they were may be a split of
/// 2:1. Splits in whole numbers are looked for (2:1, 3:1 and so on), as are merges (1:2, 1:5), and the splits
/// of 3:2 and 5:2; for that of 3:2 prices fall to between 1/1.65 and 1.1/1.5, that is by 27 to 39 in a
/// hundred. Other ratios lie too near to what prices do by themselves: a merge of 2:3 would be suspected
/// wherever a takeover bid raises a price by half. They are proposed when the ratio of the options is
/// reached, and the user may answer with any.
class SuspectedSplit {
public:
  /// Nothing if the prices suggest no split. Both are above zero.
  static std::optional<SuspectedSplit> between(double yesterday, double today);

  /// The split that a source tells: the shares that one became. Nothing for a ratio that no split has.
  static std::optional<SuspectedSplit> told(double ratio);

  /// True if a source tells it.
  bool isTold() const { return m_isTold; }

  /// True for a split of 3:2. Bad news may make prices fall as far.
  bool isThreeForTwo() const { return m_kind == Kind::Split && m_proposed == WholeRatio{3, 2}; }

  bool isMerge() const { return m_kind == Kind::Merge; }
  /// Shares after to shares before; for a merge the other way round. So is the answer.
  const WholeRatio& proposed() const { return m_proposed; }
  /// The factors to record for the user's answer, of which one day may have two: 3 and -2 for a split of 3:2.
  /// No answer means that there was no split: a single 1, or -1 for a merge.
  std::vector<std::int32_t> factors(const std::optional<WholeRatio>& answer) const;

  static constexpr std::int32_t LARGEST_NUMBER = 1000000; ///< of an answer

private:
  enum class Kind { Split, Merge };
  SuspectedSplit(Kind kind, double jump);
  SuspectedSplit(Kind kind, const WholeRatio& told) : m_kind(kind), m_proposed(told), m_isTold(true) {}

  Kind m_kind;
  WholeRatio m_proposed;
  bool m_isTold = false;
};

} // namespace Tallymoor
