#pragma once
#include "foundation/String.h"
#include "workbench/TableProposal.h"
#include <string>
#include <vector>

namespace Tallymoor {

class PlainOutput;

/// Proposes a table locator for the row of a page that the user gives as an example.
class TableCommand {
public:
  /// The texts may bear their column's type, as in "Close=1.52". Throws WorkbenchFailure where the types
  /// can't be told.
  TableCommand(PlainOutput& out, const std::string& page, const std::vector<String>& texts);

  /// True when there is a proposal. Throws WorkbenchFailure.
  bool run();

private:
  void showNotes() const;
  void showMissingColumns() const;
  void showAlikeTexts() const;

  PlainOutput& m_out;
  const std::string m_page;
  std::vector<ExampleCell> m_cells;
};

} // namespace Tallymoor
