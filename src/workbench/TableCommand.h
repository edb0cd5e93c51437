#pragma once
#include "foundation/String.h"
#include "workbench/TableProposal.h"
#include <string>
#include <vector>

namespace Tallymoor {

class PlainOutput;

/// Proposes a table locator for a row of a page, given by the user as an example.
class TableCommand {
public:
  /// A text can name its column's type: "Close=1.52". Throws WorkbenchFailure if a type can't be determined.
  TableCommand(PlainOutput& out, const std::string& page, const std::vector<String>& texts);

  /// True if a locator was found. Throws WorkbenchFailure.
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
