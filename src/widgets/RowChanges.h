#pragma once
#include <cstddef>
#include <fx.h>
#include <optional>
#include <vector>

namespace Tallymoor {

class Row;

/// What makes one order of rows of another: the toolkit's table is then changed in place. Few changes are
/// worth that; for many, it is faster to rebuild the table.
struct RowChanges {
  /// Neighbours in the toolkit's table.
  struct Run {
    FXint first;
    FXint count;
    bool operator==(const Run&) const = default;
  };
  static constexpr std::size_t MOST_RUNS = 20;

  /// Of those in the first order alone, from the last to the first.
  std::vector<Run> removed;
  /// Of those in the second order alone, from the first to the last, by their positions in it.
  std::vector<Run> added;

  /// Nothing when rows that stay have changed places, or when it takes more than MOST_RUNS on either side.
  static std::optional<RowChanges> between(const std::vector<Row*>& before, const std::vector<Row*>& after);
};

} // namespace Tallymoor
