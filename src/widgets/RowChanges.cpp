#include "widgets/RowChanges.h"
#include <algorithm>
#include <unordered_set>

namespace Tallymoor {

namespace {

void addTo(std::vector<RowChanges::Run>& runs, FXint position) {
  if (!runs.empty() && runs.back().first + runs.back().count == position)
    ++runs.back().count;
  else
    runs.push_back({position, 1});
}

} // namespace

std::optional<RowChanges> RowChanges::between(const std::vector<Row*>& before,
                                              const std::vector<Row*>& after) {
  const std::unordered_set<const Row*> old(before.begin(), before.end());
  const std::unordered_set<const Row*> current(after.begin(), after.end());
  RowChanges changes;
  std::size_t position = 0;
  const auto passLeaving = [&] {
    for (; position < before.size() && !current.contains(before[position]); ++position)
      addTo(changes.removed, static_cast<FXint>(position));
  };
  for (std::size_t i = 0; i < after.size(); ++i) {
    if (!old.contains(after[i])) {
      addTo(changes.added, static_cast<FXint>(i));
      continue;
    }
    passLeaving();
    if (before[position++] != after[i])
      return std::nullopt;
  }
  passLeaving();
  if (changes.removed.size() > MOST_RUNS || changes.added.size() > MOST_RUNS)
    return std::nullopt;
  std::reverse(changes.removed.begin(), changes.removed.end());
  return changes;
}

} // namespace Tallymoor
