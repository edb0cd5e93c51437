#include "entry/BuySharesPanel.h"
#include "entry/FormChecks.h"
#include "entry/FormIcons.h"
#include "entry/KnownPrice.h"
#include "entry/StockSearch.h"
#include "market/TallymoorInternet.h"
#include "widgets/FormRows.h"
#include "widgets/HandlerScope.h"
#include "widgets/MainWindow.h"
#include "widgets/NumberField.h"

namespace Tallymoor {

FXDEFMAP(BuySharesPanel)
BuySharesPanelMap[] = {
    FXMAPFUNC(SEL_COMMAND, BuySharesPanel::ID_SEARCH_CODE, BuySharesPanel::onSearchCode),
    FXMAPFUNC(SEL_CHANGED, BuySharesPanel::ID_CODE, BuySharesPanel::onCodeTyped),
};

FXIMPLEMENT(BuySharesPanel, TradePanel, BuySharesPanelMap, ARRAYNUMBER(BuySharesPanelMap))

namespace {

constexpr const char16_t* uncheckedCodeQuestion =
    u"You have not checked the stock code by searching for the company.\n"
    u"Are you sure you want to continue with this stock code?";

} // namespace

BuySharesPanel::BuySharesPanel(FXComposite* parent)
    : TradePanel(parent, u"Buy Shares", u"Specify the share code, date and buy price of a share purchase.") {
  FormRows rows(this);
  buildStockRows(rows);
  addTrade(rows, u"Number bought", u"Date bought");
  rows.align();
  addComments(rows, u"Purchase reasons, comments, indicators");
  reset();
}

void BuySharesPanel::buildStockRows(FormRows& rows) {
  m_code = rows.addTextWithButton(u"Stock code", icons().search(),
                                  u"\tSearch for stock code\tSearch for stock code", this, ID_SEARCH_CODE);
  m_code->setTarget(this);
  m_code->setSelector(ID_CODE);
  m_name = rows.addReadOnly(u"Stock name");
}

void BuySharesPanel::reset(const String& initialCode) {
  resetTrade();
  m_code->setText(initialCode);
  m_name->setText(String());
  priceField()->setValue(knownPrice(initialCode));
}

void BuySharesPanel::showPurchase(const String& code, const Date& date, double number, double price,
                                  double brokerage, const String& comments) {
  m_code->setText(code);
  m_code->makeReadOnly();
  if (FXWindow* search = m_code->getNext())
    search->hide();
  showTrade(date, number, price, brokerage, comments);
}

FXWindow* BuySharesPanel::firstField() const {
  if (m_code->isEditable())
    return m_code;
  return numberField();
}

bool BuySharesPanel::validate() {
  return runChecks([this] {
    return checkDate(u"You can't specify a buy date in the future.") && checkNumbers() &&
           checkBrokerage(u"Are you sure there was no brokerage charged for this purchase?",
                          u"Would you like to make this the default brokerage rate?") &&
           checkCode();
  });
}

bool BuySharesPanel::checkNumbers() const {
  return requirePositive(*numberField(), u"You must select the number of shares purchased.") &&
         requirePositive(*priceField(), u"You must record the purchase price.");
}

bool BuySharesPanel::checkCode() const {
  if (code().empty())
    return refuse(*m_code, u"You must record the share code - click 'search' to help");
  return !name().empty() || confirm(*m_code, uncheckedCodeQuestion);
}

String BuySharesPanel::code() const {
  return m_code->text().trimmed();
}

String BuySharesPanel::name() const {
  return m_name->text();
}

long BuySharesPanel::onSearchCode(FXObject*, FXSelector, void*) {
  return guardedHandler(u"BuySharesPanel::onSearchCode failed.", [this] {
    if (const auto found = searchForStock(this, code()))
      showFoundStock(found->code, found->name);
  });
}

void BuySharesPanel::showFoundStock(const String& code, const String& name) {
  m_code->setText(code);
  m_name->setText(name);
  TallymoorInternet& internet = TallymoorInternet::Instance();
  priceField()->setValue(Date::hasFixedDate() ? internet.historicalPrice(code, Date(), true)
                                              : internet.currentPrice(code, true, false));
}

long BuySharesPanel::onCodeTyped(FXObject*, FXSelector, void*) {
  m_name->setText(String());
  return 1;
}

} // namespace Tallymoor
