// What a transaction costs at the end of a year in one session, from its entry to the tables that follow it,
// against the same transaction in a session that has just been started on the same records. Needs a display.
#include "Ratio.h"
#include "YearInOneSession.h"
#include <cstdio>
#include <ctime>
#include <unistd.h>

namespace Tallymoor {
namespace {

constexpr int ROUNDS = 24; // three of each kind of transaction
constexpr double LIMIT = 1.25;

/// Of this program alone, whatever else the machine does.
double processorSeconds() {
  timespec now{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) / 1e9;
}

class SessionBenchmark : public YearInOneSession {
protected:
  void SetUp() override {
    YearInOneSession::SetUp();
    alarm(600); // longer than tests of windows take
  }
  double medianOfTransactions() {
    std::vector<double> seconds;
    for (int round = 0; round < ROUNDS; ++round) {
      const double start = processorSeconds();
      makeTransaction(true);
      seconds.push_back(processorSeconds() - start);
    }
    return Bench::median(seconds);
  }
};

TEST_F(SessionBenchmark, ATransactionCostsNoMoreAfterAYear) {
  buyTheStocks();
  for (int day = 0; day < DAYS; ++day)
    nextDay();
  const double afterAYear = medianOfTransactions();
  startAgain();
  makeTransaction(true); // reads what a session reads once
  const double startedAgain = medianOfTransactions();
  std::printf("a transaction after a year in one session: %.1f ms, in a new session: %.1f ms\n",
              1000.0 * afterAYear, 1000.0 * startedAgain);
  EXPECT_TRUE(Bench::printRatio("session_year_to_new", afterAYear / startedAgain, LIMIT));
}

} // namespace
} // namespace Tallymoor
