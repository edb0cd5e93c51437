#include "PriceFolder.h"
#include "IsoDay.h"
#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <fstream>
#include <string_view>

namespace SampleService {

using namespace std::chrono;

namespace {

bool isPlainFileName(const std::string& code) {
  return !code.empty() && code != "." && code != ".." && code.find('/') == std::string::npos &&
         code.find('\0') == std::string::npos;
}

std::array<std::string_view, 7> splitFields(std::string_view line) {
  std::array<std::string_view, 7> fields;
  for (std::string_view& field : fields) {
    const std::size_t comma = line.find(',');
    field = line.substr(0, comma);
    line = comma == std::string_view::npos ? std::string_view() : line.substr(comma + 1);
  }
  return fields;
}

template <typename Number>
bool readNumber(std::string_view text, Number& number) {
  return std::from_chars(text.data(), text.data() + text.size(), number).ec == std::errc();
}

bool readPrice(std::string_view text, std::int64_t& price) {
  double value = 0.0;
  if (!readNumber(text, value) || !std::isfinite(value))
    return false;
  price = std::llround(value * 10000.0);
  return true;
}

bool readRow(std::string_view line, DayRow& row) {
  const auto fields = splitFields(line);
  const std::optional<Day> day = isoDay(fields[0]);
  row.day = day.value_or(Day{});
  return day && readPrice(fields[1], row.open) && readPrice(fields[2], row.high) &&
         readPrice(fields[3], row.low) && readPrice(fields[4], row.close) &&
         readPrice(fields[5], row.adjustedClose) && readNumber(fields[6], row.volume);
}

} // namespace

std::optional<PriceHistory> PriceFolder::history(const std::string& code) const {
  if (!isPlainFileName(code))
    return std::nullopt;
  std::ifstream file(m_folder / (code + ".csv"));
  if (!file)
    return std::nullopt;
  PriceHistory history;
  std::string line;
  while (std::getline(file, line)) {
    DayRow row;
    if (readRow(line, row))
      history.rows.push_back(row);
  }
  std::sort(history.rows.begin(), history.rows.end(),
            [](const DayRow& a, const DayRow& b) { return a.day < b.day; });
  return history;
}

std::vector<Listing> PriceFolder::listings() const {
  std::vector<Listing> listings;
  std::error_code error;
  for (const auto& entry : std::filesystem::directory_iterator(m_folder, error))
    if (entry.path().extension() == ".csv") {
      const std::string code = entry.path().stem().string();
      listings.push_back({code, code, "N/A", code.front() == '^'});
    }
  std::sort(listings.begin(), listings.end(),
            [](const Listing& a, const Listing& b) { return a.code < b.code; });
  return listings;
}

} // namespace SampleService
