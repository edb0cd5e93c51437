#include "entry/BuySharesPanel.h"
#include "books/CashBalance.h"
#include "books/SharePortfolioUser.h"
#include "entry/FormChecks.h"
#include "entry/FormIcons.h"
#include "entry/StockSearch.h"
#include "foundation/UserInteraction.h"
#include "market/StockNames.h"
#include "market/TallymoorInternet.h"
#include "widgets/DateField.h"
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

constexpr const char16_t* UNCHECKED_CODE_QUESTION =
    u"You have not checked the stock code by searching for the company.\n"
    u"Are you sure you want to continue with this stock code?";

constexpr const char16_t* ANOTHER_MARKET_QUESTION =
    u"You are about to buy stock from a different market to\n"
    u"existing stock held in this portfolio. If you continue,\n"
    u"the portfolio tracking will be inconsistent due to currency differences.\n"
    u"We recommend you do NOT continue, and then buy this stock from a\n"
    u"different portfolio. Do you want to continue?";

/// Nothing where it is unavailable: what can be asked about a connection was asked then, and the form says
/// what is known. The reason is for the status line.
std::optional<double> fetchedPrice(const String& code, const Date& day) {
  TallymoorInternet& internet = TallymoorInternet::Instance();
  try {
    return day < Date::realToday() ? internet.historicalPrice(code, day, true)
                                   : internet.currentPrice(code, true, false);
  } catch (const Exception& failure) {
    UserInteraction::Instance().setStatusText(u"No price for " + code + u": " + failure.description());
    return std::nullopt;
  }
}

} // namespace

BuySharesPanel::BuySharesPanel(FXComposite* parent, const SharePortfolioUser* portfolio)
    : TradePanel(parent, u"Buy Shares", u"Specify the share code, date and buy price of a share purchase.",
                 portfolio) {
  FormRows rows(this);
  buildStockRows(rows);
  addTrade(rows, u"Number bought", u"Date bought");
  addTotals(rows, u"Total to pay");
  rows.align();
  addComments(rows, u"Purchase reasons, comments, indicators");
  reset();
}

void BuySharesPanel::buildStockRows(FormRows& rows) {
  m_code = rows.addTextWithButton(u"Stock code", icons().search(),
                                  u"\tSearch for stock code\tSearch for stock code", this, ID_SEARCH_CODE);
  m_code->setTarget(this);
  m_code->setSelector(ID_CODE);
  m_name = rows.addName(u"Stock name");
}

void BuySharesPanel::setPortfolio(const SharePortfolioUser* portfolio) {
  m_portfolio = portfolio;
  reset();
}

void BuySharesPanel::setPaidFromCash(bool paid) {
  m_paidFromCash = paid;
  showCash();
}

void BuySharesPanel::reset(const String& initialCode) {
  resetTrade();
  m_code->setText(initialCode);
  m_name->setText(StockNames::nameOf(initialCode));
  proposePrice(knownPrice(initialCode, Date(), m_portfolio));
  showCash();
}

void BuySharesPanel::showCash() {
  const bool changesCash = m_portfolio && m_paidFromCash;
  setCashBefore(changesCash ? std::optional(cashBalance(m_portfolio->portfolio(), Date())) : std::nullopt);
}

double BuySharesPanel::total() const {
  return number() * price() + brokerage();
}

double BuySharesPanel::cashEffect() const {
  return -total();
}

void BuySharesPanel::showPurchase(const String& code, const Trade& purchase,
                                  std::optional<double> cashBefore) {
  m_code->setText(code);
  m_code->makeReadOnly();
  m_name->setText(StockNames::nameOf(code));
  if (FXWindow* search = m_code->getNext())
    search->hide();
  showTrade(purchase);
  setCashBefore(cashBefore);
}

FXWindow* BuySharesPanel::firstField() const {
  if (m_code->isEditable())
    return m_code;
  return numberField();
}

bool BuySharesPanel::validate() {
  return runChecks([this] {
    return checkDate(u"You can't specify a buy date in the future.") && checkProposedPrice() &&
           checkNumbers() &&
           checkBrokerage(u"Are you sure there was no brokerage charged for this purchase?",
                          u"Would you like to make this the default brokerage rate?") &&
           checkCode() && checkPriceOfDay();
  });
}

bool BuySharesPanel::checkNumbers() const {
  return requirePositive(*numberField(), u"You must select the number of shares purchased.") &&
         requirePositive(*priceField(), u"You must record the purchase price.");
}

bool BuySharesPanel::checkCode() const {
  if (code().empty())
    return refuse(*m_code, u"You must record the share code - click 'search' to help");
  if (!m_code->isEditable())
    return true;
  return (!name().empty() || confirm(*m_code, UNCHECKED_CODE_QUESTION)) && checkMarket();
}

bool BuySharesPanel::checkMarket() const {
  return !m_portfolio || !m_portfolio->isOfAnotherMarket(code()) || confirm(*m_code, ANOTHER_MARKET_QUESTION);
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
  const Date day = dateField()->date().value_or(Date());
  if (const auto price = fetchedPrice(code, day))
    proposePrice({*price, day});
  else
    proposeKnownPrice();
}

long BuySharesPanel::onCodeTyped(FXObject*, FXSelector, void*) {
  m_name->setText(StockNames::nameOf(code()));
  forgetProposedPrice();
  return 1;
}

} // namespace Tallymoor
