#include "entry/StockSearchDialog.h"
#include "entry/StockSearchTable.h"
#include "foundation/Exception.h"
#include "market/StockNames.h"
#include "market/TallymoorInternet.h"
#include "widgets/MainWindow.h"
#include "widgets/TextSize.h"
#include "widgets/ToolkitText.h"
#include <algorithm>

namespace Tallymoor {

FXIMPLEMENT(StockSearchDialog, Dialog, nullptr, 0)

namespace {

constexpr FXint WIDEST_TABLE = 400;
/// A longer list scrolls, so that the buttons stay on the screen.
constexpr FXint HIGHEST_TABLE = 400;
constexpr FXint HEIGHT_BESIDE_ROWS = 15;
/// Of the frame, and the line behind the last column: a pixel less would show both scroll bars.
constexpr FXint WIDTH_BESIDE_COLUMNS = 6;

} // namespace

StockSearchDialog::StockSearchDialog(FXWindow* owner, const String& text, bool isShare, bool usOnly)
    : Dialog(owner, u"Stock Search", String()),
      m_results(TallymoorInternet::Instance().stockSearch(text, isShare, usOnly)) {
  const char* heading = m_results.empty() ? "No stock matches were found - check the code."
                                          : "Select the stock row you require.";
  new FXLabel(contents(), heading, nullptr, JUSTIFY_LEFT | LAYOUT_FILL_X);
  if (!m_results.empty())
    buildTable(text);
}

StockSearchDialog::~StockSearchDialog() {
  // The rows point into the results, which go before the toolkit deletes the widgets.
  delete m_table;
}

void StockSearchDialog::buildTable(const String& text) {
  auto* frame = new FXHorizontalFrame(
      contents(), FRAME_SUNKEN | FRAME_THICK | LAYOUT_FIX_WIDTH | LAYOUT_FIX_HEIGHT, 0, 0, 0, 0, 0, 0, 0, 0);
  m_table = new StockSearchTable(frame, m_results, this, ID_ACCEPT);
  m_table->selectBest(text);
  setFirstFocus(m_table);
  FXint width = m_table->getRowHeaderWidth() + WIDTH_BESIDE_COLUMNS;
  for (FXint column = 0; column < m_table->getNumColumns(); ++column)
    width += m_table->getColumnWidth(column);
  FXint height = m_table->getColumnHeaderHeight() + HEIGHT_BESIDE_ROWS;
  for (FXint row = 0; row < m_table->getNumRows(); ++row)
    height += m_table->getRowHeight(row);
  if (height > scaledToText(HIGHEST_TABLE))
    width += m_table->verticalScrollBar()->getDefaultWidth();
  frame->setWidth(std::min(width, scaledToText(WIDEST_TABLE)));
  frame->setHeight(std::min(height, scaledToText(HIGHEST_TABLE)));
}

bool StockSearchDialog::validate() {
  if (!m_table)
    return true;
  const CodeSearchResult* chosen = m_table->selected();
  if (!chosen) {
    MainWindow::error(u"You must select the row you want.");
    return false;
  }
  m_code = chosen->code;
  StockNames::remember(chosen->code, chosen->name);
  m_name = (chosen->name + u" in " + chosen->market).trimmed();
  return true;
}

} // namespace Tallymoor
