#include "entry/SellSharesPanel.h"
#include "books/CashBalance.h"
#include "books/SharePortfolioUser.h"
#include "entry/FormChecks.h"
#include "entry/StockChoice.h"
#include "foundation/Amounts.h"
#include "foundation/KeptTexts.h"
#include "foundation/Platform.h"
#include "market/StockNames.h"
#include "widgets/DateField.h"
#include "widgets/FormRows.h"
#include "widgets/HandlerScope.h"
#include "widgets/NumberField.h"
#include "xml/Leaves.h"

namespace Tallymoor {

FXDEFMAP(SellSharesPanel)
SellSharesPanelMap[] = {
    FXMAPFUNC(SEL_COMMAND, SellSharesPanel::ID_CODE, SellSharesPanel::onListChanged),
};

FXIMPLEMENT(SellSharesPanel, TradePanel, SellSharesPanelMap, ARRAYNUMBER(SellSharesPanelMap))

namespace {

/// All that is held, as a number that both the day's record (kept in hundredths) and the parcels can supply:
/// where a merge of shares has left a fraction, hundredths if they are not more than is held, else the
/// fraction itself.
String wholeHolding(double held) {
  const String hundredths = String::fromDouble(held, 2);
  return tenThousandths(hundredths.toDouble()) <= tenThousandths(held) ? hundredths
                                                                       : String::fromDouble(held, 4);
}

} // namespace

SellSharesPanel::SellSharesPanel(FXComposite* parent, const SharePortfolioUser* portfolio,
                                 const String& initialCode)
    : TradePanel(parent, u"Sell Shares", u"Specify the share code, date and sell price of a share sale.",
                 portfolio) {
  FormRows rows(this);
  m_code = new StockChoice(rows.addRow(u"Stock code"), u"<select held stock>", this, ID_CODE);
  m_name = rows.addName(u"Stock name");
  addTrade(rows, u"Number sold", u"Date sold");
  addTotals(rows, u"Total received");
  rows.align();
  addComments(rows, u"Sale reasons, comments, indicators");
  reset(initialCode);
}

void SellSharesPanel::setPortfolio(const SharePortfolioUser* portfolio) {
  m_portfolio = portfolio;
  reset();
}

void SellSharesPanel::reset(const String& initialCode) {
  resetTrade();
  m_code->fill(m_portfolio);
  m_code->choose(initialCode);
  m_name->setText(StockNames::nameOf(code()));
  setCashBefore(m_portfolio ? std::optional(cashBalance(m_portfolio->portfolio(), Date())) : std::nullopt);
  if (!code().empty())
    showHolding(knownPrice(code(), Date(), m_portfolio));
}

void SellSharesPanel::showHolding(const KnownPrice& price) {
  numberField()->setText(wholeHolding(m_portfolio->numHeld(code())));
  proposePrice(price);
}

double SellSharesPanel::total() const {
  if (!m_portfolio)
    return number() * price() - brokerage();
  // As the books round it; an incomplete date has no splits.
  const Date day = dateField()->date().value_or(Date());
  return m_portfolio->proceedsOfSale(code(), {day, number(), price(), brokerage(), String()}, true);
}

double SellSharesPanel::cashEffect() const {
  return total();
}

FXWindow* SellSharesPanel::firstField() const {
  return code().empty() ? m_code->textField() : numberField();
}

String SellSharesPanel::code() const {
  return m_code->code();
}

bool SellSharesPanel::validate() {
  return runChecks([this] {
    return checkCode() && checkDate(u"You can't specify a sell date in the future.") && checkHeldOnDate() &&
           checkNumber() && checkProposedPrice() && checkPrice() &&
           checkBrokerage(u"Are you sure there was no brokerage charged\nfor this purchase?",
                          u"Would you like to make this the default\nbrokerage rate?") &&
           checkPriceOfDay();
  });
}

bool SellSharesPanel::checkCode() const {
  return !code().empty() || refuse(*m_code->textField(), u"You must choose the share to sell");
}

bool SellSharesPanel::checkHeldOnDate() const {
  const SharePortfolioCapitalRecordUser& record = m_portfolio->capitalRecord();
  if (!record.hasDayCap(date()))
    return refuse(*dateField(), kept::REFRESH_THE_RECORD);
  const auto holding = record.holdingOn(code(), date());
  if (!holding)
    return refuse(*dateField(), u"No shares were held to sell on this date.");
  return tenThousandths(holding->number) >= tenThousandths(number()) ||
         refuse(*numberField(), u"Not enough shares were held to sell this much on this date.");
}

bool SellSharesPanel::checkNumber() const {
  if (!requirePositive(*numberField(), u"You must select the number of shares sold"))
    return false;
  return tenThousandths(number()) <= tenThousandths(m_portfolio->numHeld(code(), date())) ||
         refuse(*numberField(), u"You can't sell more shares than you own");
}

bool SellSharesPanel::checkPrice() const {
  if (!requireNotNegative(*priceField(), u"The share price"))
    return false;
  return !showsAsZero(price()) ||
         confirm(*priceField(), u"Do you really want to record a sell price of " +
                                    Platform::Instance().currencyFormat(price()) + u"?");
}

long SellSharesPanel::onListChanged(FXObject*, FXSelector, void*) {
  return guardedHandler(u"SellSharesPanel::onListChanged failed.", [this] {
    m_name->setText(StockNames::nameOf(code()));
    if (!code().empty())
      showHolding(priceOfDay(code(), dateField()->date().value_or(Date()), m_portfolio));
  });
}

} // namespace Tallymoor
