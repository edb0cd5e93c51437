#pragma once
#include "ShellTest.h"
#include "foundation/BigMutex.h"
#include "session/BookQuestions.h"
#include "views/CashReserveTreeItem.h"
#include "views/DividendsTreeItem.h"
#include "views/SharePortfolioTreeItem.h"
#include "views/SharesHeldTreeItem.h"
#include "views/SharesSoldTreeItem.h"
#include "views/TotalCapTreeItem.h"
#include "widgets/HandlerScope.h"
#include "widgets/InvestmentTree.h"
#include "xml/PortfolioRecords.h"
#include <array>
#include <atomic>
#include <thread>

namespace Tallymoor {

/// A year in a single session: 200 stocks, 40 transactions on each of 250 weekdays, two price passes over all
/// stocks every five days, another page every second day, a save every tenth day.
class YearInOneSession : public ShellTest {
protected:
  static constexpr int CODES = 200;
  static constexpr int DAYS = 250;
  static constexpr int CASH_PAGE = 6; ///< As counted by openPage.
  static constexpr int TRANSACTIONS_A_DAY = 40;

  /// Comparisons use fewer stocks.
  explicit YearInOneSession(int codes = CODES) : m_codes(codes) {
    profile().setToday(m_day);
    for (int i = 0; i < m_codes; ++i) {
      market().setHistory(codeAt(i), Date(2024, 12, 2), Date(2026, 3, 3), basePrice(i));
      market().setCurrentPrice(codeAt(i), basePrice(i));
    }
    TestProfile::writeFile(
        recordsPath(),
        "<Portfolios><SharePortfolio><String>Trading</String><HeldShares/><SoldShares/><Dividends/>"
        "<CashReserve/><String/></SharePortfolio></Portfolios>");
  }
  void TearDown() override {
    m_nextRun.reset();
    ShellTest::TearDown();
  }

  /// The initial money and stocks, also counted as transactions.
  void buyTheStocks() {
    transact([this](SharePortfolioUser& portfolio) {
      portfolio.creditCash(m_day, 10'000'000.0, CASH_EVENT_DEPOSIT, u"DEPOSIT opening");
      for (int i = 0; i < m_codes; ++i)
        portfolio.buyShares(codeAt(i), {m_day, 1000.0, basePrice(i), 19.95, u""});
    });
    m_transactions += m_codes; // transact has already counted the deposit.
  }

  void nextDay() {
    beginDay();
    for (int i = 0; i < TRANSACTIONS_A_DAY; ++i)
      makeTransaction(i == TRANSACTIONS_A_DAY - 1);
    if (m_daysGone % 5 == 1 || m_daysGone % 5 == 3)
      passOfPrices();
    if (m_daysGone % 2 == 0)
      openPage(m_daysGone / 2 % 7);
    if (m_daysGone % 10 == 0)
      command(TallymoorWindow::ID_SAVE);
  }

  /// The same transactions without updates of views and prices.
  void nextDayOutOfSight() {
    beginDay();
    for (int i = 0; i < TRANSACTIONS_A_DAY; ++i)
      makeTransaction(false);
  }

  /// One of eight kinds in turn. Views update at once or with the next transaction that updates them.
  void makeTransaction(bool viewsFollow) {
    const int number = ++m_made;
    if (viewsFollow)
      transact([&](SharePortfolioUser& portfolio) { record(portfolio, number); });
    else {
      BigMutexLock lock;
      record(node().portfolio(), number);
      ++m_transactions;
    }
  }

  /// A purchase of today.
  void purchase() {
    transact([this](SharePortfolioUser& portfolio) {
      portfolio.buyShares(codeAt(0), {m_day, 10.0, basePrice(0), 19.95, u"one more"});
    });
  }
  /// Today's record of capital, as after a change of today.
  void computeTodayAgain() {
    BigMutexLock lock;
    SharePortfolioUser& portfolio = node().portfolio();
    portfolio.capitalRecord().recordsChangedFrom(m_day);
    updateCapitalRecord(portfolio);
  }

  /// Gives all stocks new prices through the updater on a background thread.
  void passOfPrices() {
    for (int i = 0; i < m_codes; ++i)
      market().setCurrentPrice(codeAt(i), basePrice(i) * (1.0 + 0.001 * ((m_daysGone + i) % 9)));
    std::atomic<bool> done = false;
    std::thread pass([&done] {
      TallymoorInternet::Instance().priceUpdater().runPass();
      done = true;
    });
    runUntil([&done] { return done.load(); });
    pass.join();
    m_priceUpdates += m_codes;
  }

  /// Restarts the program on the saved records.
  void startAgain() {
    leave();
    deleteWindow();
    gateway().restart();
    m_nextRun = makeWindow(&app());
    m_nextRun->create();
    awaitReady(dynamic_cast<TallymoorWindow&>(*m_nextRun));
  }

  void openPage(int which) {
    SharePortfolioTreeItem& trading = node();
    TreeViewItem* purchases = trading.sharesHeldItem()->firstChild();
    for (int i = 0; i < m_daysGone % m_codes; ++i)
      purchases = purchases->nextSibling();
    const std::array<InvestmentTreeItem*, 7> pages = {
        window().totalCapital(),  &trading,
        trading.sharesHeldItem(), dynamic_cast<InvestmentTreeItem*>(purchases),
        trading.sharesSoldItem(), trading.dividendsItem(),
        trading.cashReserveItem()};
    {
      BigMutexLock lock;
      HandlerScope scope;
      pages.at(static_cast<std::size_t>(which))->activate();
    }
    letEventsPass();
  }

  TallymoorWindow& window() { return m_nextRun ? dynamic_cast<TallymoorWindow&>(*m_nextRun) : tallymoor(); }
  SharePortfolioTreeItem& node() { return *window().totalCapital()->portfolioNode(u"Trading"); }
  int transactions() const { return m_transactions; }
  int priceUpdates() const { return m_priceUpdates; }

private:
  void beginDay() {
    m_day = m_day.plusDays(m_day.dayOfWeek() == 5 ? 3 : 1);
    profile().setToday(m_day);
    ++m_daysGone;
  }
  static String codeAt(int i) { return String(("S" + std::to_string(100 + i) + ".AX").c_str()); }
  static double basePrice(int i) { return 10.0 + i % 7; }

  /// Like a form's command.
  template <class Step>
  void transact(Step step) {
    {
      BigMutexLock lock;
      HandlerScope scope;
      node().transactionMade();
      step(node().portfolio());
    }
    ++m_transactions;
    letEventsPass();
  }

  void record(SharePortfolioUser& portfolio, int number) const {
    const int index = (number / 8 * 7) % m_codes;
    const String text = String::fromLong(number);
    const double amount = 10.0 + number % 90;
    switch (number % 8) {
    case 0:
      portfolio.buyShares(codeAt(index), {m_day, 10.0, basePrice(index), 19.95, text});
      break;
    case 1:
      portfolio.sellShares(codeAt(index), {m_day, 10.0, basePrice(index), 19.95, text}, true);
      break;
    case 2:
      portfolio.receiveDividend({codeAt(index), m_day, 1000.0, 0.05, 100, 0.0, 0.0, u"", 0.0});
      break;
    case 3:
      portfolio.creditCash(m_day, amount, CASH_EVENT_INTEREST, u"INTEREST " + text);
      break;
    case 4:
      portfolio.debitCash(m_day, amount, CASH_EVENT_DEBIT, u"Account fee " + text);
      break;
    case 5:
      portfolio.creditCash(m_day, amount, CASH_EVENT_DEPOSIT, u"DEPOSIT " + text);
      break;
    case 6:
      portfolio.debitCash(m_day, amount, CASH_EVENT_WITHDRAWAL, u"WITHDRAWAL " + text);
      break;
    default:
      correctOrStrike(portfolio, number);
      break;
    }
  }
  /// Edits or deletes the last entry of the cash reserve, which is of one of the three kinds above.
  void correctOrStrike(SharePortfolioUser& portfolio, int number) const {
    XMLCashEvent& last = portfolio.portfolio().cashEvents().back();
    if (number % 16 < 8)
      portfolio.editCashEvent(last, m_day, m_day, 11.0, u"corrected");
    else
      portfolio.deleteCashEvent(last);
  }

  const int m_codes;
  Date m_day{2025, 3, 3};
  int m_daysGone = 0;
  int m_made = 0;
  int m_transactions = 0;
  int m_priceUpdates = 0;
  std::unique_ptr<MainWindow> m_nextRun;
};

} // namespace Tallymoor
