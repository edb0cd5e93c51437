#pragma once
#include <cstddef>
#include <optional>

namespace Tallymoor {

class HTMLTag;
class XMLTableLocator;

/// The first cell that keeps a table from being read right.
struct TableFault {
  enum class Kind {
    MissingCell,  ///< makes the whole table unreadable
    CellOfNextRow ///< where rows are not closed, a short one leads on into the next and gives its figures
  };

  Kind kind;
  const HTMLTag* row;
  std::size_t rowNumber; ///< from 0
  std::size_t column;

  /// Nothing where every row that the document leads to has every cell of its own, or where the walk to the
  /// first row fails already.
  static std::optional<TableFault> find(const XMLTableLocator& locator, const HTMLTag* page);
};

} // namespace Tallymoor
