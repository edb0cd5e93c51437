#pragma once
#include "foundation/String.h"
#include "session/ChangeHistory.h"
#include <vector>

namespace Tallymoor {

/// A line of what a change did, as the user reads it.
struct ChangeDetail {
  String entry; ///< such as "Purchase of ABC.AX, 3/03/2026"
  String field; ///< such as "Number"
  String before;
  String after;

  bool operator==(const ChangeDetail&) const = default;
};

/// What differs between the two texts, field by field: for an entry of the records that came or went all
/// fields that hold something, for one that was changed those that differ. What is in no entry, or can't be
/// read, comes as it stands in the document. At most so many entries, and one line that tells how many more
/// there are.
std::vector<ChangeDetail> detailsOf(const ChangeHistory::Difference& difference, std::size_t mostEntries);

} // namespace Tallymoor
