#include "PerformanceTableTest.h"
#include "widgets/HandlerScope.h"

using namespace Tallymoor;

namespace {

/// While another page is visible, performance tables are not filled, but the figures above them are updated.
class UnseenPerformanceTest : public PerformanceTableTest {
protected:
  void showCash() {
    addGrowing();
    showTree();
    leftClick(cash());
    m_unseen = find<PortfolioPerformanceTable>(*node(u"Trading").page());
  }
  /// Like a form's command.
  template <class Change>
  void change(Change made) {
    {
      const HandlerScope scope;
      node(u"Trading").transactionMade();
      made(node(u"Trading").portfolio());
    }
    letEventsPass();
    EXPECT_TRUE(m_unseen->hasChangedRecords()) << "invisible cells are not computed";
  }
  void deposit(const Date& day = Date(2026, 3, 3)) {
    change([&](SharePortfolioUser& user) {
      user.creditCash(day, 300.0, CASH_EVENT_DEPOSIT, u"DEPOSIT salary");
    });
  }
  void passWithPrice(double price) {
    market().setCurrentPrice(u"AAA.AX", price);
    runPass();
  }
  void expectCapital(const std::string& capital) {
    EXPECT_EQ(capital, figure(node(u"Trading"), "Total Capital"));
    EXPECT_EQ(capital, figure(root(), "Total Capital"));
    EXPECT_EQ(capital, figure(root(), "Capital in Trading"));
  }

  PortfolioPerformanceTable* unseenTotal() { return find<PortfolioPerformanceTable>(*root().page()); }

  PortfolioPerformanceTable* m_unseen = nullptr;
};

TEST_F(UnseenPerformanceTest, FiguresFollowPrices) {
  showCash();
  deposit();
  expectCapital("$1,500.00");
  passWithPrice(12.0);
  expectCapital("$1,600.00");
  EXPECT_EQ("8.33%", figure(root(), "Gain today")); // Of 1,200.00.
  EXPECT_EQ("8.33% (n/a)", figure(node(u"Trading"), "Gain today (index)"));
  EXPECT_TRUE(m_unseen->hasChangedRecords());
  passWithPrice(13.0);
  expectCapital("$1,700.00");
  leftClick(node(u"Trading"));
  EXPECT_EQ("$1,700.00", cellText(*m_unseen, 0, u"Total Capital"));
}

TEST_F(UnseenPerformanceTest, FiguresFollowASinglePriceOfADayThatTheTableDoesNotKnow) {
  showCash();
  profile().setToday(Date(2026, 3, 4));
  market().setDay(u"AAA.AX", Date(2026, 3, 4), 11.0);
  deposit(Date(2026, 3, 4));
  expectCapital("$1,500.00");
  {
    BigMutexLock lock;
    for (PriceUpdater::PricesObserver* observer : std::initializer_list<PriceUpdater::PricesObserver*>{
             &node(u"Trading").portfolio().capitalRecord(), m_unseen, unseenTotal()})
      observer->currentPriceUpdated(u"AAA.AX", 12.0); // As the updater does before the end of its pass.
  }
  letEventsPass();
  expectCapital("$1,600.00");
}

TEST_F(UnseenPerformanceTest, FiguresFollowPricesAfterAViewDate) {
  showCash();
  viewDate(Date(2026, 2, 27));
  expectCapital("$1,000.00");
  Date::clearFixedDate();
  tree().updateItems();
  settle();
  expectCapital("$1,200.00");
  passWithPrice(12.0);
  expectCapital("$1,300.00");
}

TEST_F(UnseenPerformanceTest, FiguresFollowAPurchaseThatIsEdited) {
  showCash();
  change([](SharePortfolioUser& user) {
    auto& purchase = user.findHeldShare(u"AAA.AX")->parcels()[0];
    user.editBuyEvent(purchase, {Date(2026, 2, 2), 50, 10.0, 0.0, String()}, 1000.0, Date(2026, 2, 2));
  });
  expectCapital("$1,150.00"); // 550.00 in shares, 600.00 in cash.
  passWithPrice(12.0);
  expectCapital("$1,200.00");
}

TEST_F(UnseenPerformanceTest, FiguresFollowASaleAndItsDeletion) {
  showCash();
  change([](SharePortfolioUser& user) {
    user.sellShares(u"AAA.AX", {Date(2026, 3, 2), 50, 12.0, 0.0, String()}, true);
  });
  expectCapital("$1,250.00");
  change([](SharePortfolioUser& user) {
    EXPECT_TRUE(user.undoSale(user.findSoldShare(u"AAA.AX")->sales()[0]));
  });
  expectCapital("$1,200.00");
}

TEST_F(UnseenPerformanceTest, FiguresFollowASplit) {
  showCash();
  change([](SharePortfolioUser& user) {
    user.recordAdjustment(u"AAA.AX", Date(2026, 3, 3), 2, false);
    user.capitalRecord().recordsChangedFrom(Date(2026, 3, 3));
  });
  expectCapital("$2,300.00");
}

TEST_F(UnseenPerformanceTest, FiguresFollowAPriceThatIsTyped) {
  showCash();
  deposit();
  root().priceTyped(u"AAA.AX", Date(2026, 3, 3), 11.5);
  letEventsPass();
  expectCapital("$1,550.00");
}

} // namespace
