#include "views/PriceHistoryDialog.h"
#include "entry/PriceEntryDialog.h"
#include "entry/PriceEntryPanel.h"
#include "foundation/BigMutex.h"
#include "market/TallymoorInternet.h"
#include "views/PriceChart.h"
#include "views/PriceHistoryTable.h"
#include "widgets/HandlerScope.h"
#include "widgets/MainWindow.h"
#include "widgets/TextSize.h"
#include <algorithm>

namespace Tallymoor {

FXDEFMAP(PriceHistoryDialog)
PriceHistoryDialogMap[] = {
    FXMAPFUNC(SEL_COMMAND, PriceHistoryDialog::ID_ADD_DAY, PriceHistoryDialog::onAddDay),
    FXMAPFUNC(SEL_COMMAND, PriceHistoryDialog::ID_DELETE_TYPED, PriceHistoryDialog::onDeleteTyped),
};

FXIMPLEMENT(PriceHistoryDialog, Dialog, PriceHistoryDialogMap, ARRAYNUMBER(PriceHistoryDialogMap))

namespace {

constexpr FXint WIDTH = 900;
constexpr FXint HEIGHT = 340;
constexpr FXint TABLE_PERCENT = 50;

TallymoorInternet& gateway() {
  return TallymoorInternet::Instance();
}

} // namespace

PriceHistoryDialog::PriceHistoryDialog(FXWindow* owner, const String& code, const Portfolios& portfolios)
    : Dialog(owner, u"Stored prices of " + code,
             u"Type over a close, high or low: it counts whatever the sources say."),
      m_code(code) {
  addTableAndChart(portfolios);
  addActions();
  cancelButton()->hide();
  okButton()->setText("&Close");
  setFirstFocus(m_table);
  m_table->setChoiceWatcher([this] { showChoice(); });
  m_table->setTyped([this](const Date& day, double close) { typed(day, close); },
                    [this](const Date& day, double high, double low) {
                      gateway().setCachedRange(m_code, day, high, low);
                      keepTyped(day);
                    });
  m_prices.emplace(getApp(), u"PriceHistoryDialog::showAll failed.", [this](const std::set<String>& codes) {
    if (codes.contains(m_code))
      showAll();
  });
  m_chart->show(m_code);
  showAll(); // with what the chart had fetched
}

PriceHistoryDialog::~PriceHistoryDialog() {
  m_prices.reset();
}

FXuint PriceHistoryDialog::execute(FXuint placement) {
  const BigMutexRelease release;
  return Dialog::execute(placement);
}

void PriceHistoryDialog::addTableAndChart(const Portfolios& portfolios) {
  const FXint width = std::min(scaledToText(WIDTH), getRoot()->getWidth() * 9 / 10);
  auto* both = new FXHorizontalFrame(contents(), LAYOUT_FIX_WIDTH | LAYOUT_FIX_HEIGHT, 0, 0, width,
                                     scaledToText(HEIGHT), 0, 0, 0, 0);
  auto* frame = new FXHorizontalFrame(both, FRAME_SUNKEN | FRAME_THICK | LAYOUT_FIX_WIDTH | LAYOUT_FILL_Y, 0,
                                      0, width * TABLE_PERCENT / 100, 0, 0, 0, 0, 0);
  m_table = new PriceHistoryTable(frame, m_code);
  m_chart = new PriceChart(both, portfolios);
}

void PriceHistoryDialog::addActions() {
  auto* row = new FXHorizontalFrame(contents(), LAYOUT_FILL_X);
  new FXButton(row, "&Add a day...\t\tThe price of a day, as you know it", nullptr, this, ID_ADD_DAY,
               BUTTON_NORMAL);
  m_deleteTyped = new FXButton(row, "&Delete what was typed...\t\tThe price of the sources counts again",
                               nullptr, this, ID_DELETE_TYPED, BUTTON_NORMAL);
}

void PriceHistoryDialog::showAll() {
  m_table->updateTable();
  m_chart->refresh();
  showChoice();
}

void PriceHistoryDialog::showChoice() {
  const auto* const chosen = m_table->chosen();
  if (chosen && chosen->value.origin == PriceOrigin::Typed)
    m_deleteTyped->enable();
  else
    m_deleteTyped->disable();
}

void PriceHistoryDialog::typed(const Date& day, double close) {
  gateway().setCachedPrice(m_code, day, close);
  keepTyped(day);
}

void PriceHistoryDialog::keepTyped(const Date& day) {
  showAll();
  m_table->choose(day);
  gateway().save(m_code); // a failure is told; the price counts for this run
}

long PriceHistoryDialog::onAddDay(FXObject*, FXSelector, void*) {
  return guardedHandler(u"PriceHistoryDialog::onAddDay failed.", [this] {
    PriceEntryDialog dialog(this, m_code);
    if (dialog.execute())
      typed(dialog.panel()->date(), dialog.panel()->price());
  });
}

long PriceHistoryDialog::onDeleteTyped(FXObject*, FXSelector, void*) {
  return guardedHandler(u"PriceHistoryDialog::onDeleteTyped failed.", [this] {
    const auto* const chosen = m_table->chosen();
    if (!chosen || chosen->value.origin != PriceOrigin::Typed)
      return;
    const Date day = chosen->day;
    if (!MainWindow::question(u"Do you want to delete the price that you typed for " +
                              day.toString(DATE_DISPLAY_LOCAL) +
                              u"?\nThe sources are asked for the price of that day again."))
      return;
    gateway().removeTypedPrice(m_code, day);
    showAll();
    gateway().save(m_code);
  });
}

} // namespace Tallymoor
