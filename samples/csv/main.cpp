#include "service/IsoDay.h"
#include "service/SampleMarket.h"
#include <cstdio>

using namespace SampleService;

namespace {

void printPrice(std::int64_t price) {
  std::printf(",%lld.%04lld", static_cast<long long>(price / 10000), static_cast<long long>(price % 10000));
}

void printRow(const DayRow& row) {
  const std::chrono::year_month_day ymd(row.day);
  std::printf("%04d-%02u-%02u", int(ymd.year()), unsigned(ymd.month()), unsigned(ymd.day()));
  for (const std::int64_t price : {row.open, row.high, row.low, row.close, row.adjustedClose})
    printPrice(price);
  std::printf(",%lld\n", static_cast<long long>(row.volume));
}

} // namespace

/// Prints a code's prices in the sample market up to the day before the given one, in the CSV form of the
/// prices folder.
int main(int argc, char** argv) {
  const auto today = argc == 3 ? isoDay(argv[2]) : std::nullopt;
  if (!today) {
    std::fputs("usage: sample_prices CODE YYYY-MM-DD\n", stderr);
    return 2;
  }
  const auto history = SampleMarket().history(argv[1], *today);
  if (!history) {
    std::fprintf(stderr, "sample_prices: %s is not listed\n", argv[1]);
    return 1;
  }
  std::puts("date,open,high,low,close,adjclose,volume");
  for (const DayRow& row : history->rows)
    printRow(row);
  return 0;
}
