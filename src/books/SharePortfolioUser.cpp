#include "books/SharePortfolioUser.h"
#include "books/Gains.h"
#include "books/SplitTerms.h"
#include "xml/PortfolioRecords.h"

namespace Tallymoor {

SharePortfolioUser::SharePortfolioUser(XMLSharePortfolio& portfolio, MarketPrices& prices)
    : m_capitalRecord(portfolio.portfolioName(), prices), m_holdings(portfolio), m_prices(m_holdings, prices),
      m_index(portfolio, m_prices, prices), m_splits(m_holdings, m_prices, m_capitalRecord),
      m_cash(portfolio, m_capitalRecord), m_trades(m_holdings, m_cash, m_splits, m_capitalRecord),
      m_dividends(m_holdings, m_trades, m_cash, m_splits, m_capitalRecord) {}

SharePortfolioUser::~SharePortfolioUser() = default;

const String& SharePortfolioUser::name() const {
  return portfolio().portfolioName();
}

void SharePortfolioUser::rename(const String& newName) {
  m_capitalRecord.rename(newName);
  portfolio().setPortfolioName(newName);
}

void SharePortfolioUser::setMinMax(XMLHeldShare& heldShare, double min, double max) {
  heldShare.setMinMax(min, max);
}

void SharePortfolioUser::setPortfolioMax(XMLHeldShare& heldShare, double value) {
  heldShare.setPortfolioMax(value);
}

double SharePortfolioUser::sharesValueToday() const {
  const Date today;
  return m_capitalRecord.hasDayCap(today) ? m_capitalRecord.sharesValueOn(today) : 0.0;
}

double SharePortfolioUser::cashReserveToday() const {
  const Date today;
  return m_capitalRecord.hasDayCap(today) ? m_capitalRecord.cashOn(today) : 0.0;
}

double SharePortfolioUser::dailyGain() const {
  return gainSince(Date().plusDays(-1));
}

double SharePortfolioUser::weeklyGain() const {
  return gainSince(Date().fridayBeforeLastWeekend());
}

double SharePortfolioUser::gainSince(const Date& then) const {
  const Date today;
  if (!m_capitalRecord.hasDayCap(then) || !m_capitalRecord.hasDayCap(today))
    return 0.0;
  return gainPercent(m_capitalRecord.capitalOn(today), m_capitalRecord.capitalOn(then),
                     m_capitalRecord.externalFlowBetween(then, today))
      .value_or(0.0);
}

SharePortfolioUser::CashReserve SharePortfolioUser::checkCashReserve() const {
  return cashReserveToday() < 0.0 ? CashReserve::Negative : CashReserve::Sound;
}

SharesAt SharePortfolioUser::adjustedBuyEvent(const XMLBuyEvent& event, const Date& date) const {
  return sharesOn(event, date);
}

SharesAt SharePortfolioUser::adjustedSellEvent(const XMLSellEvent& event, const Date& date) const {
  const bool held = event.bought() < date && event.sold() > date;
  // A day on which no split counts leaves number and price as recorded.
  return sharesOn(event, held ? date : event.bought());
}

void SharePortfolioUser::setAdjustment(XMLSplitAdjustment& adjustment, const Date& date, std::int32_t factor,
                                       bool reverse) {
  adjustment.set(date, reverse ? -std::int64_t(factor) : factor);
}

} // namespace Tallymoor
