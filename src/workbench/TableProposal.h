#pragma once
#include "workbench/ExampleRows.h"
#include <cstddef>
#include <memory>
#include <vector>

namespace Tallymoor {

class HTMLTable;
class HTMLTag;
class WebPage;
struct TableFault;

/// Derives a table locator from one example row of a page.
///
/// The tag around the cells is the row. If the rows are not closed, it is the table, and a tag before the
/// cells marks the start of the row. A proposed locator was tested: it reads the table, the example is among
/// the rows, and all dates are readable.
class TableProposal {
public:
  /// The page is not owned and must outlive this object.
  TableProposal(const WebPage& page, std::vector<ExampleCell> example);

  /// Null if none was found; see reason().
  const XMLTableLocator* locator() const { return m_best.locator.get(); }
  std::size_t numRows() const { return m_best.numRows; }
  /// From 0.
  std::size_t exampleRow() const { return m_best.exampleRow; }
  const String& reason() const { return m_reason; }

private:
  using Cells = ExampleRows::Tags;
  /// The first tag of a row and the walks from it to the cells.
  struct Plan {
    const HTMLTag* row;
    std::vector<XMLTagLocator> columns;
  };
  /// How the program would treat a row.
  enum class RowKind { Prices, Skipped, Other };
  struct Trial {
    std::unique_ptr<XMLTableLocator> locator;
    std::size_t numRows = 0;
    std::size_t exampleRow = 0;
  };

  void tryRow(const HTMLTag* row, const Cells& cells);
  void tryAround(const HTMLTag& row, const Cells& cells);
  void tryAfterMarks(const HTMLTag& table, const Cells& cells);
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
  const std::size_t m_tagsOnPage;
  std::size_t m_tagsLeft = 5000000; ///< Limits the work of all trials on a malicious page.
  Trial m_best;
  String m_reason;
  bool m_hasReason = false; ///< True if m_reason describes a trial.
};

} // namespace Tallymoor
