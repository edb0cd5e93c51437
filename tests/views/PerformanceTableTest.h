#pragma once
#include "ViewsTest.h"
#include "views/PerformanceView.h"
#include "views/PortfolioPerformanceTable.h"

namespace Tallymoor {

/// The performance tables of a portfolio "Trading" and of the total.
class PerformanceTableTest : public ViewsTest {
protected:
  PortfolioPerformanceTable& table(const String& name = u"Trading") {
    return *withHistory([&] { return &node(name).performance()->table(); });
  }
  PortfolioPerformanceTable& totalTable() { return root().performance()->table(); }

  /// 1,000.00 a month ago, 1,200.00 today, including a deposit of 100.00.
  SharePortfolioUser& addGrowing() {
    SharePortfolioUser& user = addPortfolio(u"Trading", 1000.0, Date(2026, 2, 1));
    market().setHistory(u"AAA.AX", Date(2026, 1, 20), Date(2026, 2, 27), 10.0);
    market().setHistory(u"AAA.AX", Date(2026, 3, 2), Date(2026, 3, 3), 11.0);
    user.buyShares(u"AAA.AX", {Date(2026, 2, 2), 100, 10.0, 0.0, String()});
    user.creditCash(Date(2026, 3, 2), 100.0, CASH_EVENT_DEPOSIT, u"DEPOSIT more");
    return user;
  }
};

} // namespace Tallymoor
