#include "views/ToldDividendsDialog.h"
#include "books/SharePortfolioUser.h"
#include "market/TallymoorInternet.h"
#include "views/SharePortfolioTreeItem.h"
#include "views/ToldDividendsTable.h"
#include "views/TotalCapTreeItem.h"
#include "widgets/HandlerScope.h"
#include "widgets/MainWindow.h"
#include "widgets/TextSize.h"
#include <algorithm>

namespace Tallymoor {

FXDEFMAP(ToldDividendsDialog)
ToldDividendsDialogMap[] = {
    FXMAPFUNC(SEL_COMMAND, ToldDividendsDialog::ID_RECORD, ToldDividendsDialog::onRecord),
    FXMAPFUNC(SEL_COMMAND, ToldDividendsDialog::ID_REFUSE, ToldDividendsDialog::onRefuse),
};

FXIMPLEMENT(ToldDividendsDialog, Dialog, ToldDividendsDialogMap, ARRAYNUMBER(ToldDividendsDialogMap))

namespace {

constexpr FXint WIDTH = 560;
constexpr FXint HEIGHT = 260;

Portfolios portfoliosOf(const TotalCapTreeItem& root) {
  Portfolios all;
  for (SharePortfolioTreeItem* node : root.portfolioNodes())
    all.push_back(&node->portfolio());
  return all;
}

void showUsable(FXButton& button, bool usable) {
  if (usable)
    button.enable();
  else
    button.disable();
}

} // namespace

ToldDividendsDialog::ToldDividendsDialog(FXWindow* owner, TotalCapTreeItem& root)
    : Dialog(owner, u"Told dividends",
             u"Dividends that your sources of prices tell and that you have not recorded."),
      m_root(&root) {
  const FXint width = std::min(scaledToText(WIDTH), getRoot()->getWidth() * 9 / 10);
  auto* frame =
      new FXHorizontalFrame(contents(), FRAME_SUNKEN | FRAME_THICK | LAYOUT_FIX_WIDTH | LAYOUT_FIX_HEIGHT, 0,
                            0, width, scaledToText(HEIGHT), 0, 0, 0, 0);
  m_table = new ToldDividendsTable(frame, portfoliosOf(root));
  auto* row = new FXHorizontalFrame(contents(), LAYOUT_FILL_X);
  m_record = new FXButton(row, "&Record...\t\tOpens the form, where you enter the day of the payment",
                          nullptr, this, ID_RECORD, BUTTON_NORMAL);
  m_refuse = new FXButton(row, "Re&fuse\t\tThis dividend is not offered again", nullptr, this, ID_REFUSE,
                          BUTTON_NORMAL);
  cancelButton()->hide();
  okButton()->setText("&Close");
  setFirstFocus(m_table);
  m_table->setChoiceWatcher([this] { showChoice(); });
  showChoice();
}

void ToldDividendsDialog::showChoice() {
  for (FXButton* button : {m_record, m_refuse})
    showUsable(*button, m_table->chosen() != nullptr);
}

long ToldDividendsDialog::onRecord(FXObject*, FXSelector, void*) {
  return guardedHandler(u"ToldDividendsDialog::onRecord failed.", [this] {
    const UnrecordedDividend* const chosen = m_table->chosen();
    if (!chosen)
      return;
    const UnrecordedDividend told = *chosen;
    for (SharePortfolioTreeItem* node : m_root->portfolioNodes())
      if (&node->portfolio() == told.portfolio && node->recordToldDividend(told))
        m_table->updateTable(); // it is recorded now; other portfolios may have held the stock, too
  });
}

long ToldDividendsDialog::onRefuse(FXObject*, FXSelector, void*) {
  return guardedHandler(u"ToldDividendsDialog::onRefuse failed.", [this] {
    const UnrecordedDividend* const chosen = m_table->chosen();
    if (!chosen || !MainWindow::question(u"Do you want to refuse the dividend of " + chosen->code + u" of " +
                                         chosen->day.toString(DATE_DISPLAY_LOCAL) +
                                         u"?\nIt is not offered again in any portfolio."))
      return;
    const UnrecordedDividend told = *chosen;
    const auto refill = [this] { m_table->updateTable(); };
    try {
      TallymoorInternet::Instance().settleToldDividend(told.code, told.day);
    } catch (const Exception&) {
      refill(); // it counts for this run
      throw;
    }
    refill();
  });
}

} // namespace Tallymoor
