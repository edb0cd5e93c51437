#pragma once
#include "xml/LocatorDocuments.h"
#include <cstddef>
#include <memory>
#include <utility>
#include <vector>

namespace Tallymoor {

class HTMLTable;
class HTMLTag;
class WebPage;
struct TableFault;

/// A cell of a row that the user sees on a page.
struct ExampleCell {
  ColumnType type;
  String text;
};

/// Works out from one row of a page how the whole table is read.
///
/// The cells are looked for by their texts; the tag around all of them is the row, or, where rows are not
/// closed, the tag that holds them all is the table and a tag before them marks where a row begins. What
/// comes out was tried: the table is read with it, the example is one of the rows, and all dates are
/// readable.
class TableProposal {
public:
  /// The page is not owned and must outlive this.
  TableProposal(const WebPage& page, std::vector<ExampleCell> example);

  /// Null when nothing was found; then the reason says why.
  const XMLTableLocator* locator() const { return m_best.locator.get(); }
  std::size_t numRows() const { return m_best.numRows; }
  /// From 0.
  std::size_t exampleRow() const { return m_best.exampleRow; }
  const String& reason() const { return m_reason; }

private:
  using Cells = std::vector<const HTMLTag*>;
  /// A tag that begins rows, and the walks from it to the cells.
  struct Plan {
    const HTMLTag* row;
    std::vector<XMLTagLocator> columns;
  };
  /// How the program would take a row.
  enum class RowKind { Prices, PassedOver, Other };
  struct Trial {
    std::unique_ptr<XMLTableLocator> locator;
    std::size_t numRows = 0;
    std::size_t exampleRow = 0;
  };

  bool findTexts();
  void search();
  Cells cellsIn(const HTMLTag& around) const;
  std::pair<const HTMLTag*, Cells> rowAround(const HTMLTag* cell) const;
  void tryRow(const HTMLTag* row, const Cells& cells);
  void tryAround(const HTMLTag& row, const Cells& cells);
  void tryBehindMarks(const HTMLTag& table, const Cells& cells);
  void noteIfFoundTwice(const HTMLTag& cell, const Cells& before);
  void tryPlan(const Plan& plan, const Cells& cells);
  const HTMLTag& firstRowOf(const Plan& plan) const;
  RowKind kindOf(const Plan& plan, const HTMLTag& row, const HTMLTag& next) const;
  Trial build(const Plan& plan, const HTMLTag& firstRow, const Cells& cells);
  void read(Trial& trial, const Cells& cells);
  void noteReason(const String& reason);
  String describe(const TableFault& fault) const;
  static String unreadableDate(const HTMLTable& table);
  void setTypes(XMLTagLocator& column, std::size_t index) const;

  const WebPage& m_page;
  const std::vector<ExampleCell> m_example;
  std::vector<Cells> m_candidates; ///< for each text the tags that may be its cell
  const std::size_t m_tagsOnPage;
  std::size_t m_tagsLeft = 5000000; ///< that trials may still walk over: a page may be made to waste time
  Trial m_best;
  String m_reason;
  bool m_hasReason = false; ///< the reason tells of a trial
};

} // namespace Tallymoor
