#include "IsoDay.h"
#include <charconv>

namespace SampleService {

using namespace std::chrono;

namespace {

template <typename Number>
bool readDigits(std::string_view text, Number& number) {
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc() && end == text.data() + text.size();
}

} // namespace

std::optional<Day> isoDay(std::string_view text) {
  int y = 0;
  unsigned m = 0, d = 0;
  if (text.size() != 10 || text[4] != '-' || text[7] != '-' || !readDigits(text.substr(0, 4), y) ||
      !readDigits(text.substr(5, 2), m) || !readDigits(text.substr(8, 2), d))
    return std::nullopt;
  const year_month_day ymd{year(y), month(m), day(d)};
  return ymd.ok() ? std::optional<Day>(ymd) : std::nullopt;
}

} // namespace SampleService
