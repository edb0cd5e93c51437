#include "entry/DividendPayment.h"
#include "entry/FormChecks.h"
#include "foundation/Amounts.h"
#include "foundation/Platform.h"
#include "widgets/FormRows.h"
#include "widgets/NumberField.h"
#include "xml/PortfolioRecords.h"

namespace Tallymoor {

namespace {

constexpr int AMOUNT_DECIMALS = 2;
constexpr int PRICE_DECIMALS = 4;

} // namespace

void DividendPayment::addTo(FormRows& rows, FXObject* target, FXSelector cash, FXSelector reinvested) {
  FXHorizontalFrame* row = rows.addRow(String());
  m_cash = new FXRadioButton(row, "Paid in cash", target, cash);
  m_reinvested = new FXRadioButton(row, "Dividend reinvestment", target, reinvested);
  m_shares = rows.addNumber(u"Shares received", AMOUNT_DECIMALS);
  m_sharesLabel = rows.lastLabel();
  m_sharePrice = rows.addNumber(u"Share price", PRICE_DECIMALS);
  m_sharePriceLabel = rows.lastLabel();
}

void DividendPayment::reset() {
  payInCash();
  m_sharePriceDoubt.forget();
}

void DividendPayment::show(const XMLDividendEvent& dividendEvent) {
  const double shares = dividendEvent.drpShares();
  if (showsAsZero(shares)) {
    payInCash();
    return;
  }
  reinvest();
  m_shares->setValue(shares);
  m_sharePrice->setValue(dividendEvent.drpRate());
  m_sharePriceDoubt.beginWith(*m_sharePrice, dividendEvent.received());
}

void DividendPayment::payInCash() {
  m_cash->setCheck(TRUE);
  m_reinvested->setCheck(FALSE);
  m_shares->setValue(0.0);
  m_sharePrice->setValue(0.0);
}

void DividendPayment::reinvest() {
  m_cash->setCheck(FALSE);
  m_reinvested->setCheck(TRUE);
}

void DividendPayment::enableShares(bool enabled) {
  for (FXWindow* widget : {static_cast<FXWindow*>(m_sharesLabel), static_cast<FXWindow*>(m_shares),
                           static_cast<FXWindow*>(m_sharePriceLabel), static_cast<FXWindow*>(m_sharePrice)})
    if (enabled)
      widget->enable();
    else
      widget->disable();
}

bool DividendPayment::isReinvested() const {
  return m_reinvested->getCheck() == TRUE;
}

double DividendPayment::shares() const {
  return m_shares->value();
}

double DividendPayment::sharePrice() const {
  return m_sharePrice->value();
}

/// Without shares a reinvestment would be booked as cash.
bool DividendPayment::check(const String& code, const Date& day) const {
  if (!isReinvested())
    return true;
  if (!requirePositive(*m_shares, u"You must enter the number of shares received.") ||
      !requireNotNegative(*m_sharePrice, u"The share price"))
    return false;
  if (showsAsZero(sharePrice()))
    return confirm(*m_sharePrice, u"Do you really want to record a share price of " +
                                      Platform::Instance().currencyFormat(sharePrice()) + u"?");
  return m_sharePriceDoubt.check(*m_sharePrice, code, day);
}

} // namespace Tallymoor
