#include "entry/BuySharesPanel.h"
#include "entry/Brokerage.h"
#include "entry/FormIcons.h"
#include "entry/StockSearchDialog.h"
#include "foundation/Amounts.h"
#include "foundation/BigMutex.h"
#include "foundation/Exception.h"
#include "market/TallymoorInternet.h"
#include "widgets/CalendarDialog.h"
#include "widgets/FormRows.h"
#include "widgets/HandlerScope.h"
#include "widgets/MainWindow.h"
#include "widgets/NumberField.h"
#include "widgets/ToolkitText.h"

namespace Tallymoor {

FXDEFMAP(BuySharesPanel)
BuySharesPanelMap[] = {
    FXMAPFUNC(SEL_COMMAND, BuySharesPanel::ID_CHOOSE_DATE, BuySharesPanel::onChooseDate),
    FXMAPFUNC(SEL_COMMAND, BuySharesPanel::ID_SEARCH_CODE, BuySharesPanel::onSearchCode),
    FXMAPFUNC(SEL_CHANGED, BuySharesPanel::ID_CODE, BuySharesPanel::onCodeTyped),
};

FXIMPLEMENT(BuySharesPanel, GUIPanel, BuySharesPanelMap, ARRAYNUMBER(BuySharesPanelMap))

namespace {

constexpr int amountDecimals = 2;
constexpr int priceDecimals = 4;

/// What is known of a code's price without asking anyone; 0 when nothing is.
double knownPrice(const String& code) {
  if (code.empty() || !TallymoorInternet::exists())
    return 0.0;
  TallymoorInternet& internet = TallymoorInternet::Instance();
  if (internet.priceUpdater().hasCode(code)) {
    const double price = internet.priceUpdater().getCurrentPrice(code);
    if (!showsAsZero(price))
      return price;
  }
  return internet.cachedClose(code, Date()).value_or(0.0);
}

} // namespace

BuySharesPanel::BuySharesPanel() = default;

BuySharesPanel::BuySharesPanel(FXComposite* parent)
    : GUIPanel(parent, u"Buy Shares", u"Specify the share code, date and buy price of a share purchase."),
      m_icons(std::make_unique<FormIcons>(getApp())) {
  FormRows rows(this);
  buildStockRows(rows);
  buildPurchaseRows(rows);
  rows.align();
  m_comments = rows.addNotes(u"Purchase reasons, comments, indicators");
  reset();
}

BuySharesPanel::~BuySharesPanel() = default;

void BuySharesPanel::buildStockRows(FormRows& rows) {
  m_code = rows.addTextWithButton(u"Stock code", m_icons->search(),
                                  u"\tSearch for stock code\tSearch for stock code", this, ID_SEARCH_CODE);
  m_code->setTarget(this);
  m_code->setSelector(ID_CODE);
  m_name = rows.addReadOnly(u"Stock name");
}

void BuySharesPanel::buildPurchaseRows(FormRows& rows) {
  m_number = rows.addNumber(u"Number bought", amountDecimals);
  m_price = rows.addNumber(u"Share price", priceDecimals);
  m_brokerage = rows.addNumber(u"Brokerage paid", amountDecimals);
  m_date = rows.addTextWithButton(u"Date bought", m_icons->calendar(), u"\tChoose a date\tChoose a date",
                                  this, ID_CHOOSE_DATE);
}

void BuySharesPanel::reset(const String& initialCode) {
  m_code->setText(initialCode);
  m_name->setText(String());
  m_number->setValue(0.0);
  m_price->setValue(knownPrice(initialCode));
  m_brokerage->setValue(defaultBrokerage());
  m_date->setText(Date::todayToString(DATE_DISPLAY_LOCAL));
  m_comments->setText(FXString::null);
}

void BuySharesPanel::showPurchase(const String& code, const Date& date, double number, double price,
                                  double brokerage, const String& comments) {
  m_code->setText(code);
  m_code->makeReadOnly();
  if (FXWindow* search = m_code->getNext())
    search->hide();
  m_number->setValue(number);
  m_price->setValue(price);
  m_brokerage->setValue(brokerage);
  m_date->setText(date.toString(DATE_DISPLAY_LOCAL));
  m_comments->setText(toFox(comments));
}

FXWindow* BuySharesPanel::firstField() const {
  if (m_code->isEditable())
    return m_code;
  return m_number;
}

bool BuySharesPanel::validate() {
  return runChecks([this] {
    if (date() > Date()) {
      MainWindow::error(u"You can't specify a buy date in the future.");
      return false;
    }
    return checkNumbers() && checkBrokerage() && checkCode();
  });
}

bool BuySharesPanel::checkNumbers() const {
  if (showsAsZero(number())) {
    MainWindow::error(u"You must select the number of shares purchased.");
    return false;
  }
  if (showsAsZero(price())) {
    MainWindow::error(u"You must record the purchase price.");
    return false;
  }
  return true;
}

bool BuySharesPanel::checkBrokerage() const {
  if (showsAsZero(brokerage()) &&
      !MainWindow::question(u"Are you sure there was no brokerage charged for this purchase?"))
    return false;
  offerAsDefaultBrokerage(brokerage(), u"Would you like to make this the default brokerage rate?");
  return true;
}

bool BuySharesPanel::checkCode() const {
  if (code().empty()) {
    MainWindow::error(u"You must record the share code - click 'search' to help");
    return false;
  }
  return !name().empty() ||
         MainWindow::question(u"You have not checked the stock code by searching for the company.\n"
                              u"Are you sure you want to continue with this stock code?");
}

String BuySharesPanel::code() const {
  return m_code->text().trimmed();
}

String BuySharesPanel::name() const {
  return m_name->text();
}

double BuySharesPanel::number() const {
  return m_number->value();
}

double BuySharesPanel::price() const {
  return m_price->value();
}

double BuySharesPanel::brokerage() const {
  return m_brokerage->value();
}

Date BuySharesPanel::date() const {
  return Date(m_date->text(), DATE_DISPLAY_LOCAL);
}

String BuySharesPanel::comments() const {
  return fromFox(m_comments->getText());
}

long BuySharesPanel::onChooseDate(FXObject*, FXSelector, void*) {
  return guardedHandler(u"BuySharesPanel::onChooseDate failed.", [this] { chooseDate(this, *m_date); });
}

long BuySharesPanel::onSearchCode(FXObject*, FXSelector, void*) {
  return guardedHandler(u"BuySharesPanel::onSearchCode failed.", [this] {
    if (code().empty()) {
      MainWindow::information(u"You must enter a code to search for.");
      return;
    }
    StockSearchDialog dialog(this, code(), true, false);
    bool accepted = false;
    {
      // The user may take his time; prices go on meanwhile.
      BigMutexRelease release;
      accepted = dialog.execute() != 0;
    }
    if (accepted && !dialog.code().empty())
      showFoundStock(dialog.code(), dialog.name());
  });
}

void BuySharesPanel::showFoundStock(const String& code, const String& name) {
  m_code->setText(code);
  m_name->setText(name);
  m_price->setValue(TallymoorInternet::Instance().currentPrice(code, true, false));
}

long BuySharesPanel::onCodeTyped(FXObject*, FXSelector, void*) {
  m_name->setText(String());
  return 1;
}

} // namespace Tallymoor
