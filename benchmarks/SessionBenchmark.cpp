// Cost of a transaction, from its entry to the updated tables, at the end of a year in one session, compared
// with a new session on the same records; and the latter compared with a small portfolio. Needs a display.
#include "Ratio.h"
#include "YearInOneSession.h"
#include <array>
#include <cstdio>
#include <ctime>
#include <numeric>
#include <unistd.h>

namespace Tallymoor {
namespace {

constexpr std::size_t KINDS = 8; // of transactions
constexpr std::size_t ROUNDS = 3 * KINDS;
constexpr double LIMIT = 1.25;
constexpr int SMALL_CODES = 5;
constexpr int SMALL_DAYS = 2;
constexpr int PAGES = 7;
constexpr std::array<const char*, PAGES> PAGE_NAMES{"total", "portfolio", "held", "purchases",
                                                    "sold",  "dividends", "cash"};
/// Limit for 40 times the stocks and 100 times the transactions, over all pages. It is less than proportional
/// to the stocks, so it excludes a search of all stocks per stock and reading all records for an invisible
/// page.
constexpr double LARGE_LIMIT = 35.0;
constexpr int HELD_PAGE = 2;
constexpr double SHOWN_LIMIT = 3.0;

/// CPU time of this program.
double processorSeconds() {
  timespec now{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) / 1e9;
}

class SessionBenchmark : public YearInOneSession {
protected:
  explicit SessionBenchmark(int codes = CODES) : YearInOneSession(codes) {}

  void SetUp() override {
    YearInOneSession::SetUp();
    alarm(900); // Longer than window tests.
  }
  /// The mean over the kinds of the median of each: kinds differ in cost by more than what is looked for, so
  /// a median over all would jump from one kind to another.
  double costOfTransactions(int page) {
    openPage(page);
    makeTransaction(true); // Reads everything that is read only once.
    std::array<std::vector<double>, KINDS> seconds;
    for (std::size_t round = 0; round < ROUNDS; ++round) {
      const double start = processorSeconds();
      makeTransaction(true);
      seconds.at(round % KINDS).push_back(processorSeconds() - start);
    }
    double sum = 0.0;
    for (const std::vector<double>& ofKind : seconds)
      sum += Bench::median(ofKind);
    return sum / KINDS;
  }
};

/// Seconds, by visible page.
using ByPage = std::array<double, PAGES>;

/// A new session on records of this many days.
class PortfolioBenchmark : public SessionBenchmark {
protected:
  PortfolioBenchmark(int codes, int days) : SessionBenchmark(codes), m_days(days) {}

  ByPage measure() {
    buyTheStocks();
    for (int day = 0; day < m_days; ++day)
      nextDayOutOfSight();
    startAgain();
    ByPage times{};
    for (int page = 0; page < PAGES; ++page)
      times.at(static_cast<std::size_t>(page)) = costOfTransactions(page);
    return times;
  }

  /// A purchase of today, from its form to the table of all shares, compared with computing the day that it
  /// changes in the capital record.
  double purchaseShownToDayComputed() {
    openPage(HELD_PAGE);
    purchase(); // reads what is read once
    return Bench::measureRatio(
        ROUNDS, [this] { return secondsOf([this] { purchase(); }); },
        [this] { return secondsOf([this] { computeTodayAgain(); }); });
  }

private:
  template <class Work>
  static double secondsOf(const Work& work) {
    const double start = processorSeconds();
    work();
    return processorSeconds() - start;
  }

  const int m_days;
};

ByPage smallPortfolio{};

class SmallPortfolioBenchmark : public PortfolioBenchmark {
protected:
  SmallPortfolioBenchmark() : PortfolioBenchmark(SMALL_CODES, SMALL_DAYS) {}
};

class LargePortfolioBenchmark : public PortfolioBenchmark {
protected:
  LargePortfolioBenchmark() : PortfolioBenchmark(CODES, DAYS) {}
};

TEST_F(SmallPortfolioBenchmark, IsMeasuredFirst) {
  smallPortfolio = measure();
  for (const double seconds : smallPortfolio)
    EXPECT_LT(0.0, seconds);
}

/// The cost of a transaction must not grow in proportion to the records.
TEST_F(LargePortfolioBenchmark, ATransactionCostsLittleMoreThanInASmallOne) {
  const ByPage large = measure();
  for (std::size_t page = 0; page < PAGES; ++page)
    std::printf("a transaction with the page %s in front: %.1f ms, in a small portfolio: %.1f ms\n",
                PAGE_NAMES.at(page), 1000.0 * large.at(page), 1000.0 * smallPortfolio.at(page));
  const auto total = [](const ByPage& times) { return std::accumulate(times.begin(), times.end(), 0.0); };
  EXPECT_TRUE(
      Bench::printRatio("transaction_large_to_small", total(large) / total(smallPortfolio), LARGE_LIMIT));
  EXPECT_TRUE(Bench::printRatio("transaction_shown", purchaseShownToDayComputed(), SHOWN_LIMIT));
}

TEST_F(SessionBenchmark, ATransactionCostsNoMoreAfterAYear) {
  buyTheStocks();
  for (int day = 0; day < DAYS; ++day)
    nextDay();
  const double afterAYear = costOfTransactions(CASH_PAGE);
  startAgain();
  const double startedAgain = costOfTransactions(CASH_PAGE);
  std::printf("a transaction after a year in one session: %.1f ms, in a new session: %.1f ms\n",
              1000.0 * afterAYear, 1000.0 * startedAgain);
  EXPECT_TRUE(Bench::printRatio("session_year_to_new", afterAYear / startedAgain, LIMIT));
}

} // namespace
} // namespace Tallymoor
