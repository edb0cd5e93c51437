#pragma once
#include "books/BooksWithGatewayTest.h"

namespace Tallymoor {

/// Access to the days of the portfolio's capital record and to its file.
class CapitalRecordTest : public BooksWithGatewayTest {
protected:
  std::size_t numDays(const Date& first, const Date& last) {
    std::size_t days = 0;
    for (Date day = first; day <= last; day.addDays(1))
      days += record().hasDayCap(day);
    return days;
  }
  void update() { updateCapitalRecord(user()); }
  /// Creates a record from the first day to today by a deposit.
  void makeDays(const Date& first) {
    user().creditCash(first, 100, CASH_EVENT_DEPOSIT, u"DEPOSIT ");
    update();
  }
  String file() const { return m_profile.dataFolder() + u"TradingCapRecord.xml"; }
  void reopen() {
    m_user.reset();
    m_user = std::make_unique<SharePortfolioUser>(m_portfolio, gatewayPrices());
  }

  const Date m_yesterday{2026, 3, 2};
};

} // namespace Tallymoor
