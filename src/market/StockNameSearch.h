#pragma once
#include "foundation/BigMutex.h"
#include "foundation/String.h"
#include "market/CodeSearchResult.h"
#include <set>
#include <vector>

namespace Tallymoor {

/// The records know codes alone: the name of a code that was never searched for is asked for once a run.
/// Under the big mutex.
class StockNameSearch {
public:
  /// True for a code without a name that was not asked for yet.
  bool isWanted(const String& code) const REQUIRES(bigMutex());
  /// After a search for the code itself, failed or not. A name of another code is not taken.
  void keep(const String& code, const std::vector<CodeSearchResult>& found) REQUIRES(bigMutex());
  /// All codes are asked for again.
  void forget() REQUIRES(bigMutex()) { m_asked.clear(); }

private:
  std::set<String> m_asked GUARDED_BY(bigMutex());
};

} // namespace Tallymoor
