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

  /// What to do about a row that is too short.
  static constexpr const char16_t* ADVICE =
      u"If the row belongs to the table, no document can read this page. Many sources can leave such rows "
      u"out:\n"
      u"look for a form of the page with prices alone, without dividends and notes.";

  Kind kind;
  const HTMLTag* row;
  std::size_t rowNumber; ///< from 0
  std::size_t column;

  /// Nothing where every row that the document leads to has every cell of its own, or where the walk to the
  /// first row fails already.
  static std::optional<TableFault> find(const XMLTableLocator& locator, const HTMLTag* page);
};

} // namespace Tallymoor
