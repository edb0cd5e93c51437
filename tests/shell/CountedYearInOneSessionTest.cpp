// Not built with sanitizers: they use their own heap and take ten times as long.
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
#include "YearInOneSession.h"
#include "support/WholeCounts.h"
#include <cstdio>
#include <malloc.h>
#include <unistd.h>

namespace Tallymoor {
namespace {

/// Heap memory in use, in megabytes. The C library counts large blocks separately.
double heapInUse() {
  const struct mallinfo2 info = mallinfo2();
  return static_cast<double>(info.uordblks + info.hblkhd) / 1e6;
}

class CountedYearInOneSession : public YearInOneSession {
protected:
  void SetUp() override {
    m_before = heapInUse();
    YearInOneSession::SetUp();
    alarm(600); // Longer than other window tests.
  }
  double grown() const { return heapInUse() - m_before; }

private:
  double m_before = 0.0;
};

/// Compares the memory at the end of the session with that of a new session on the same records.
TEST_F(CountedYearInOneSession, HoldsNoMoreThanANewSessionOnTheSameRecords) {
  buyTheStocks();
  const int days = wholeCounts() ? DAYS : DAYS / 5;
  for (int day = 0; day < days; ++day)
    nextDay();
  for (int page = 0; page < 7; ++page)
    openPage(page);
  const double atTheEnd = grown();
  startAgain();
  for (int page = 0; page < 7; ++page)
    openPage(page);
  const double startedAgain = grown();
  std::printf(
      "COUNT: year in one session: %d days, %d transactions, %d stocks, %d price updates; %.1f MB in use at "
      "its end, %.1f MB "
      "by a new session on the same records\n",
      days, transactions(), CODES, priceUpdates(), atTheEnd, startedAgain);
  EXPECT_LE(days * TRANSACTIONS_A_DAY, transactions());
  EXPECT_LE(days * CODES / 5 * 2, priceUpdates());
  EXPECT_LT(atTheEnd, 1.1 * startedAgain);
}

} // namespace
} // namespace Tallymoor
#endif
