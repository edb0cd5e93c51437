#include "TradingCalendar.h"

namespace SampleService {

using namespace std::chrono;

Day easterSunday(int y) {
  const int a = y % 19, b = y / 100, c = y % 100, d = b / 4, e = b % 4, f = (b + 8) / 25, g = (b - f + 1) / 3;
  const int h = (19 * a + b - d - g + 15) % 30, i = c / 4, k = c % 4, l = (32 + 2 * e + 2 * i - h - k) % 7;
  const int m = (a + 11 * h + 22 * l) / 451, n = h + l - 7 * m + 114;
  return sys_days(year(y) / month(unsigned(n / 31)) / day(unsigned(n % 31 + 1)));
}

bool isTradingDay(Day date) {
  const weekday inWeek(date);
  if (inWeek == Saturday || inWeek == Sunday)
    return false;
  const year_month_day ymd(date);
  const month_day inYear(ymd.month(), ymd.day());
  for (const month_day holiday : {January / 1, January / 26, April / 25, December / 25, December / 26})
    if (inYear == holiday)
      return false;
  const Day easter = easterSunday(int(ymd.year()));
  return date != easter - days(2) && date != easter + days(1);
}

} // namespace SampleService
