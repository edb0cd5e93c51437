#include "views/PricesDialog.h"
#include "entry/PriceEntryDialog.h"
#include "entry/PriceEntryPanel.h"
#include "foundation/BigMutex.h"
#include "market/TallymoorInternet.h"
#include "views/CodeSourceDialog.h"
#include "views/PriceHistoryDialog.h"
#include "views/PriceImport.h"
#include "views/PricesTable.h"
#include "views/SourceActions.h"
#include "views/SourcesDialog.h"
#include "widgets/HandlerScope.h"
#include "widgets/MainWindow.h"
#include "widgets/MessageLayout.h"
#include "widgets/TextSize.h"
#include "widgets/ToolkitText.h"
#include <algorithm>
#include <utility>

namespace Tallymoor {

FXDEFMAP(PricesDialog)
PricesDialogMap[] = {
    FXMAPFUNC(SEL_COMMAND, PricesDialog::ID_TYPE_PRICE, PricesDialog::onTypePrice),
    FXMAPFUNCS(SEL_COMMAND, PricesDialog::ID_ACCEPT_DOUBTFUL, PricesDialog::ID_REFUSE,
               PricesDialog::onDecide),
    FXMAPFUNC(SEL_COMMAND, PricesDialog::ID_REFRESH, PricesDialog::onRefresh),
    FXMAPFUNC(SEL_COMMAND, PricesDialog::ID_HISTORY, PricesDialog::onHistory),
    FXMAPFUNC(SEL_COMMAND, PricesDialog::ID_SOURCES, PricesDialog::onSources),
    FXMAPFUNCS(SEL_COMMAND, PricesDialog::ID_CODE_SOURCE, PricesDialog::ID_TRY_AGAIN, PricesDialog::onStock),
};

FXIMPLEMENT(PricesDialog, Dialog, PricesDialogMap, ARRAYNUMBER(PricesDialogMap))

namespace {

constexpr FXint WIDTH = 840;
constexpr FXint HEIGHT = 280;
constexpr std::size_t DOUBT_LINES = 3;

TallymoorInternet& gateway() {
  return TallymoorInternet::Instance();
}

/// That of the table, which scrolls where the screen is narrow.
FXint widthOnScreen(const FXWindow& dialog) {
  return std::min(scaledToText(WIDTH), dialog.getRoot()->getWidth() * 9 / 10);
}

void showUsable(FXButton& button, bool usable) {
  if (usable)
    button.enable();
  else
    button.disable();
}

/// Of the last one, and how many there are.
String doubtTextOf(const String& code, const PriceQuarantine::Prices& prices) {
  String text = doubtText(code, prices.rbegin()->second);
  if (prices.size() > 1)
    text += u"\n" + String::fromLong(static_cast<std::int64_t>(prices.size())) +
            u" prices of this stock are doubtful.";
  return text;
}

} // namespace

PricesDialog::PricesDialog(FXWindow* owner, Portfolios portfolios)
    : Dialog(owner, u"Prices", u"The last known prices of the stocks that you hold or watch."),
      m_portfolios(std::move(portfolios)) {
  m_summary = new FXLabel(contents(), "", nullptr, JUSTIFY_LEFT | LAYOUT_FILL_X);
  auto* frame =
      new FXHorizontalFrame(contents(), FRAME_SUNKEN | FRAME_THICK | LAYOUT_FIX_WIDTH | LAYOUT_FIX_HEIGHT, 0,
                            0, widthOnScreen(*this), scaledToText(HEIGHT), 0, 0, 0, 0);
  m_table = new PricesTable(frame);
  m_doubt = new FXLabel(contents(), "\n\n", nullptr, JUSTIFY_LEFT | LAYOUT_FILL_X);
  addActions();
  cancelButton()->hide();
  okButton()->setText("&Close");
  setFirstFocus(m_table);
  m_table->setChoiceWatcher([this] { showChoice(); });
  m_prices.emplace(getApp(), u"PricesDialog::showAll failed.",
                   [this](const std::set<String>&) { showAll(); });
  showAll();
}

PricesDialog::~PricesDialog() {
  m_prices.reset();
}

FXuint PricesDialog::execute(FXuint placement) {
  const BigMutexRelease release;
  return Dialog::execute(placement);
}

void PricesDialog::addActions() {
  auto* row = new FXHorizontalFrame(contents(), LAYOUT_FILL_X);
  const auto add = [this, &row](const char* text, FXSelector id) {
    return new FXButton(row, text, nullptr, this, id, BUTTON_NORMAL);
  };
  m_decisions = {add("&Accept\t\tTakes the doubtful prices of this stock", ID_ACCEPT_DOUBTFUL),
                 add("Accept from &now on\t\tTakes them, and does not ask for this reason again", ID_TRUST),
                 add("&Refuse\t\tDrops the doubtful prices of this stock", ID_REFUSE)};
  row = new FXHorizontalFrame(contents(), LAYOUT_FILL_X);
  m_ofStock = {
      add("&Type a price...\t\tThe price of a day, as you know it", ID_TYPE_PRICE),
      add("&History...\t\tThe stored prices of this stock, which you can correct", ID_HISTORY),
      add("Its so&urce...\t\tAsks one source alone for this stock, or by another code", ID_CODE_SOURCE),
      add("&Import...\t\tPast prices of this stock from a CSV file", ID_IMPORT),
      add("Tr&y again\t\tAsks for this stock again, also if it was marked as delisted", ID_TRY_AGAIN)};
  row = new FXHorizontalFrame(contents(), LAYOUT_FILL_X);
  new FXButton(row, "&Fetch again\t\tAsks the sources for all prices", nullptr, this, ID_REFRESH,
               BUTTON_NORMAL);
  new FXButton(row, "&Sources...\t\tWhere prices come from", nullptr, this, ID_SOURCES, BUTTON_NORMAL);
}

void PricesDialog::showAll() {
  m_table->updateTable();
  showChoice();
}

void PricesDialog::showChoice() {
  m_summary->setText(toFox(m_table->summary())); // a table that waits tells here that it was filled
  const String code = m_table->chosenKey();
  const auto doubtful = gateway().doubtfulPrices();
  const auto waiting = doubtful.find(code);
  const bool isDoubtful = waiting != doubtful.end();
  for (FXButton* button : m_ofStock)
    showUsable(*button, !code.empty());
  for (FXButton* decision : m_decisions)
    showUsable(*decision, isDoubtful);
  showText(isDoubtful ? doubtTextOf(code, waiting->second) : String());
}

void PricesDialog::showText(const String& doubt) {
  const FXFont& font = *m_doubt->getFont();
  const auto widthOf = [&font](const String& line) { return font.getTextWidth(toFox(line)); };
  m_doubt->setText(toFox(fittedMessage(doubt, {widthOf, widthOnScreen(*this), DOUBT_LINES})));
}

long PricesDialog::onTypePrice(FXObject*, FXSelector, void*) {
  return guardedHandler(u"PricesDialog::onTypePrice failed.", [this] {
    const String code = m_table->chosenKey();
    PriceEntryDialog dialog(this, code);
    if (!dialog.execute())
      return;
    gateway().setCachedPrice(code, dialog.panel()->date(), dialog.panel()->price());
    showAll();
    gateway().save(code); // a failure is told; the price counts for this run
  });
}

void PricesDialog::decide(FXSelector decision, const String& code) {
  if (decision == ID_REFUSE)
    gateway().refuseDoubtful(code);
  else
    gateway().acceptDoubtful(code, decision == ID_TRUST);
}

long PricesDialog::onDecide(FXObject*, FXSelector selector, void*) {
  return guardedHandler(u"PricesDialog::onDecide failed.", [this, selector] {
    try {
      decide(FXSELID(selector), m_table->chosenKey());
    } catch (const Exception&) {
      showAll(); // it counts for this run
      throw;
    }
    showAll();
  });
}

long PricesDialog::onHistory(FXObject*, FXSelector, void*) {
  return guardedHandler(u"PricesDialog::onHistory failed.", [this] {
    const String code = m_table->chosenKey();
    PriceHistoryDialog(this, code, m_portfolios).execute();
    showAll();
  });
}

long PricesDialog::onRefresh(FXObject*, FXSelector, void*) {
  return guardedHandler(u"PricesDialog::onRefresh failed.", [] { fetchAfresh(); });
}

long PricesDialog::onSources(FXObject*, FXSelector, void*) {
  return guardedHandler(u"PricesDialog::onSources failed.", [this] {
    SourcesDialog(this).execute();
    showAll();
  });
}

long PricesDialog::onStock(FXObject*, FXSelector selector, void*) {
  return guardedHandler(u"PricesDialog::onStock failed.", [this, selector] {
    const String code = m_table->chosenKey();
    switch (FXSELID(selector)) {
    case ID_CODE_SOURCE:
      CodeSourceDialog(this, code).execute();
      break;
    case ID_IMPORT:
      importPrices(this, code);
      break;
    default:
      tryAgain(code);
    }
    showAll();
  });
}

void PricesDialog::tryAgain(const String& code) {
  if (gateway().isBadCode(code)) {
    if (!MainWindow::question(
            u"No prices of " + code +
            u" are fetched, since it is marked as delisted.\nDo you want to remove the mark?"))
      return;
    gateway().clearBadCode(code);
  }
  fetchAfresh();
}

} // namespace Tallymoor
