#pragma once
#include <cstddef>
#include <optional>

namespace Tallymoor {

class HTMLTag;
class XMLTableLocator;

/// The first cell that prevents correct reading of a table.
struct TableFault {
  enum class Kind {
    MissingCell,  ///< Makes the whole table unreadable.
    CellOfNextRow ///< The rows are not closed, and the cell belongs to the next row.
  };

  /// Advice for a row that is too short.
  static constexpr const char16_t* ADVICE =
      u"If the row belongs to the table, no document can read this page. Many sources can leave such rows "
      u"out:\n"
      u"look for a form of the page with prices alone, without dividends and notes.";

  Kind kind;
  const HTMLTag* row;
  std::size_t rowNumber; ///< From 0.
  std::size_t column;

  /// Empty if every row has all its cells, or if the walk to the first row fails.
  static std::optional<TableFault> find(const XMLTableLocator& locator, const HTMLTag* page);
};

} // namespace Tallymoor
