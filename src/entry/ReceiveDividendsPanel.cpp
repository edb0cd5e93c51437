#include "entry/ReceiveDividendsPanel.h"
#include "analysis/FrankingCredit.h"
#include "analysis/SaleFigures.h"
#include "books/CashBalance.h"
#include "books/PortfolioEvents.h"
#include "books/SharePortfolioUser.h"
#include "entry/FormChecks.h"
#include "entry/StockChoice.h"
#include "foundation/Amounts.h"
#include "market/StockNames.h"
#include "widgets/FormRows.h"
#include "widgets/HandlerScope.h"
#include "widgets/NumberField.h"
#include "widgets/NumberSpinner.h"
#include "xml/CountryOfResidence.h"
#include "xml/PortfolioRecords.h"
#include <map>

namespace Tallymoor {

FXDEFMAP(ReceiveDividendsPanel)
ReceiveDividendsPanelMap[] = {
    FXMAPFUNC(SEL_COMMAND, ReceiveDividendsPanel::ID_CODE, ReceiveDividendsPanel::onListChanged),
    FXMAPFUNC(SEL_COMMAND, ReceiveDividendsPanel::ID_CASH, ReceiveDividendsPanel::onRadioCash),
    FXMAPFUNC(SEL_COMMAND, ReceiveDividendsPanel::ID_DRP, ReceiveDividendsPanel::onRadioDRP),
    FXMAPFUNC(SEL_COMMAND, ReceiveDividendsPanel::ID_RECOMPUTE, ReceiveDividendsPanel::onRecompute),
    FXMAPFUNC(SEL_CHANGED, ReceiveDividendsPanel::ID_RECOMPUTE, ReceiveDividendsPanel::onRecompute),
};

FXIMPLEMENT(ReceiveDividendsPanel, DatedPanel, ReceiveDividendsPanelMap,
            ARRAYNUMBER(ReceiveDividendsPanelMap))

namespace {

constexpr int AMOUNT_DECIMALS = 2;
constexpr int RATE_DECIMALS = 6;
constexpr std::int32_t FULLY_FRANKED = 100;

/// The number held now; of a stock that is held no more, all that was sold on the last day of a sale.
double heldOrSoldLast(const SharePortfolioUser& portfolio, const String& code) {
  const double held = portfolio.numHeld(code);
  const XMLSoldShare* stock = portfolio.findSoldShare(code);
  if (!showsAsZero(held) || !stock)
    return held;
  std::map<Date, double> soldOn;
  for (const XMLSellEvent& event : stock->sales()) {
    const SaleFigures sale(event);
    soldOn[sale.sold()] += sale.number();
  }
  return soldOn.empty() ? 0.0 : soldOn.rbegin()->second;
}

/// What would be in the cash reserve now; nothing where the dividend should have an entry there that is not
/// found.
std::optional<double> cashWithout(const XMLSharePortfolio& portfolio, const XMLDividendEvent& dividendEvent) {
  const double balance = cashBalance(portfolio, Date());
  if (!showsAsZero(dividendEvent.drpShares()))
    return balance;
  const double held = dividendEvent.number(), rate = dividendEvent.rate();
  const XMLCashEvent* entry =
      findCashEntry(portfolio, {dayText(dividendEvent.received()), moneyText(held * rate), CASH_EVENT_CREDIT,
                                dividendDescription(dividendEvent.code(), rate, held)});
  return entry ? std::optional(balance - effectOnBalance(*entry, Date())) : std::nullopt;
}

} // namespace

ReceiveDividendsPanel::ReceiveDividendsPanel(FXComposite* parent, const SharePortfolioUser* portfolio,
                                             const String& initialCode)
    : DatedPanel(parent, u"Receive a dividend",
                 u"Specify the share code, date and amount of the dividend received."),
      m_portfolio(portfolio) {
  FormRows rows(this);
  buildHoldingRows(rows);
  buildValueRows(rows);
  m_origin.addTo(rows, this, ID_RECOMPUTE);
  m_payment.addTo(rows, this, ID_CASH, ID_DRP);
  m_cashAfter.addTo(rows);
  rows.align();
  reset(initialCode);
}

void ReceiveDividendsPanel::buildHoldingRows(FormRows& rows) {
  m_code = new StockChoice(rows.addRow(u"Stock Code"), u"<select stock code>", this, ID_CODE,
                           StockChoice::Stocks::HELD_AND_SOLD);
  m_name = rows.addName(u"Stock name");
  m_held = rows.addNumber(u"On Shares Held", AMOUNT_DECIMALS, this, ID_RECOMPUTE);
  m_rate = rows.addNumber(u"Dividend Rate", RATE_DECIMALS, this, ID_RECOMPUTE);
}

void ReceiveDividendsPanel::buildValueRows(FormRows& rows) {
  m_value = rows.addNumber(u"Value", AMOUNT_DECIMALS);
  m_value->makeReadOnly();
  buildFrankingRow(*rows.addRow(u"Percent Franked"));
  addDate(rows, u"Date Received");
}

/// One row for both, so that the form fits a page of the wizard.
void ReceiveDividendsPanel::buildFrankingRow(FXHorizontalFrame& row) {
  constexpr FXint SPINNER_COLUMNS = 5, CREDIT_COLUMNS = 12;
  m_percentFranked = new NumberSpinner(&row, SPINNER_COLUMNS, 0, FULLY_FRANKED, 0, this, ID_RECOMPUTE);
  new FXLabel(&row, "Franking Credit", nullptr, JUSTIFY_LEFT | LAYOUT_CENTER_Y);
  m_frankingCredit = new NumberField(&row, AMOUNT_DECIMALS, CREDIT_COLUMNS);
  m_frankingCredit->makeReadOnly();
}

void ReceiveDividendsPanel::setPortfolio(const SharePortfolioUser* portfolio) {
  m_portfolio = portfolio;
  reset();
}

void ReceiveDividendsPanel::reset(const String& initialCode) {
  m_code->fill(m_portfolio);
  m_code->choose(initialCode);
  m_rate->setValue(0.0);
  setDate(Date());
  m_origin.reset(m_portfolio);
  showFranking();
  m_payment.reset();
  showHolding();
  showPayment();
  // Not hidden without a portfolio: a wizard is laid out before it has one, and never shows the form then.
  m_cashAfter.setBefore(m_portfolio ? cashBalance(m_portfolio->portfolio(), Date()) : 0.0);
}

void ReceiveDividendsPanel::showFranking() {
  const bool franking = CountryOfResidence::Instance().isAustralia();
  m_frankingTyped = false;
  proposeFranking();
  FXWindow* row = m_percentFranked->getParent();
  if (franking)
    row->show();
  else
    row->hide();
  recalc();
}

/// Only companies of the country itself have paid its tax.
void ReceiveDividendsPanel::proposeFranking() {
  if (m_frankingTyped)
    return;
  const bool franked = CountryOfResidence::Instance().isAustralia() && !isForeign();
  m_percentFranked->setValue(franked ? FULLY_FRANKED : 0);
}

void ReceiveDividendsPanel::showDividend(const XMLDividendEvent& dividendEvent) {
  m_code->add(dividendEvent.code());
  m_code->choose(dividendEvent.code());
  m_name->setText(StockNames::nameOf(code()));
  m_held->setValue(dividendEvent.number());
  m_rate->setValue(dividendEvent.rate());
  m_percentFranked->setValue(dividendEvent.wholePercentFranked());
  m_frankingTyped = true;
  setDate(dividendEvent.received());
  m_origin.show(dividendEvent);
  m_payment.show(dividendEvent);
  m_cashAfter.setBefore(cashWithout(m_portfolio->portfolio(), dividendEvent));
  recompute();
  showPayment();
}

void ReceiveDividendsPanel::propose(double number, double rate, const Date& day) {
  m_held->setValue(number);
  m_rate->setValue(rate);
  setDate(day);
  recompute();
}

void ReceiveDividendsPanel::showHolding() {
  m_name->setText(StockNames::nameOf(code()));
  m_held->setValue(m_portfolio ? heldOrSoldLast(*m_portfolio, code()) : 0.0);
  recompute();
}

void ReceiveDividendsPanel::recompute() {
  m_value->setValue(value());
  m_frankingCredit->setValue(frankingCredit());
  m_origin.followCheck();
  showCash();
}

void ReceiveDividendsPanel::showPayment() {
  enablePaymentFields(isReinvested());
  showCash();
}

/// New shares bring no cash, and the tax that is withheld abroad is only noted.
void ReceiveDividendsPanel::showCash() {
  m_cashAfter.showEffect(isReinvested() ? 0.0 : value());
}

FXWindow* ReceiveDividendsPanel::firstField() const {
  if (code().empty())
    return m_code->textField();
  return showsAsZero(rate()) ? m_rate : m_held;
}

bool ReceiveDividendsPanel::validate() {
  return runChecks([this] {
    if (code().empty())
      return refuse(*m_code->textField(), u"You must select the share code");
    if (!checkDate(u"You can't specify a date in the future.") ||
        !requirePositive(*m_held, u"You must select the number of shares the dividend was given for") ||
        !requirePositive(*m_rate, u"You must record the dividend rate"))
      return false;
    return checkFranking() && m_origin.check() && m_payment.check(code(), date());
  });
}

bool ReceiveDividendsPanel::checkFranking() const {
  return !m_percentFranked->isBeyondLimits() ||
         refuse(*m_percentFranked->field(), u"The percentage franked must be from 0 to 100.");
}

std::int32_t ReceiveDividendsPanel::percentFranked() const {
  return m_percentFranked->number();
}

double ReceiveDividendsPanel::value() const {
  return numHeld() * rate();
}

double ReceiveDividendsPanel::frankingCredit() const {
  return Tallymoor::frankingCredit(numHeld(), rate(), percentFranked());
}

DividendEntry ReceiveDividendsPanel::entry() const {
  return {code(),           date(),       numHeld(), rate(),          percentFranked(),
          sharesReceived(), sharePrice(), country(), withholdingTax()};
}

long ReceiveDividendsPanel::onListChanged(FXObject*, FXSelector, void*) {
  return guardedHandler(u"ReceiveDividendsPanel::onListChanged failed.", [this] { showHolding(); });
}

long ReceiveDividendsPanel::onRadioCash(FXObject*, FXSelector, void*) {
  return guardedHandler(u"ReceiveDividendsPanel::onRadioCash failed.", [this] {
    m_payment.payInCash();
    showPayment();
  });
}

long ReceiveDividendsPanel::onRadioDRP(FXObject*, FXSelector, void*) {
  return guardedHandler(u"ReceiveDividendsPanel::onRadioDRP failed.", [this] {
    m_payment.reinvest();
    showPayment();
  });
}

long ReceiveDividendsPanel::onRecompute(FXObject* sender, FXSelector, void*) {
  return guardedHandler(u"ReceiveDividendsPanel::onRecompute failed.", [this, sender] {
    if (sender == m_percentFranked)
      m_frankingTyped = true;
    const bool originChanged = m_origin.isCheck(sender);
    if (originChanged)
      proposeFranking();
    recompute();
    if (originChanged && isForeign())
      m_origin.focusCountry();
  });
}

} // namespace Tallymoor
