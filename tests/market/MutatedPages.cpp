#include "MutatedPages.h"
#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <utility>

namespace Tallymoor {

namespace {

const std::array<const char*, 12> MONTHS{"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                         "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

const char* const HEAD =
    "<!DOCTYPE html>\n<html>\n<head><title>Prices</title><meta charset=utf-8>\n"
    "<script>// <td>9.99</td>\nif (1 < 2) { var t = \"<table><tr>\"; }</script></head>\n<body>\n"
    "<table width=\"100%\"><tr><td><img src=/l.gif alt=\"a > b\"></td><td>Home<br>7.77</td></tr></table>\n";
const char* const FOOT = "<p>&copy; Prices<br><ul><li>Help<li>Terms</ul>\n</body>\n</html>\n";

std::string withCommas(long whole) {
  std::string text = std::to_string(whole);
  for (std::size_t at = text.size(); at > 3; at -= 3)
    text.insert(at - 3, 1, ',');
  return text;
}

/// A price in ten-thousandths as written on a page.
std::string priceText(long price, bool fourDecimals) {
  std::array<char, 16> decimals{};
  if (fourDecimals)
    std::snprintf(decimals.data(), decimals.size(), ".%04ld", price % 10000);
  else
    std::snprintf(decimals.data(), decimals.size(), ".%02ld", price / 100 % 100);
  return withCommas(price / 10000) + decimals.data();
}

std::string withoutCommas(std::string text) {
  std::erase(text, ',');
  return text;
}

std::string dateText(long day) {
  const std::chrono::year_month_day date{std::chrono::sys_days(std::chrono::days(day))};
  std::array<char, 24> text{};
  std::snprintf(text.data(), text.size(), "%u-%s-%02d", unsigned(date.day()),
                MONTHS[unsigned(date.month()) - 1], int(date.year()) % 100);
  return text.data();
}

/// The day that a person reads in a date. Empty if there is none.
std::optional<long> dayStated(std::string text) {
  for (std::size_t at = text.find("&nbsp;"); at != std::string::npos; at = text.find("&nbsp;"))
    text.erase(at, 6);
  unsigned day = 0;
  int year = 0;
  std::array<char, 4> month{};
  int length = 0;
  if (std::sscanf(text.c_str(), "%2u-%3[A-Za-z]-%2d %n", &day, month.data(), &year, &length) != 3 ||
      static_cast<std::size_t>(length) != text.size())
    return std::nullopt;
  for (unsigned i = 0; i < MONTHS.size(); ++i) {
    const std::chrono::year_month_day date{std::chrono::year(year < 70 ? 2000 + year : 1900 + year),
                                           std::chrono::month(i + 1), std::chrono::day(day)};
    if (std::string(MONTHS[i]) == month.data() && date.ok())
      return std::chrono::sys_days(date).time_since_epoch().count();
  }
  return std::nullopt;
}

void makeUnclear(PageCell& cell) {
  cell.number.reset();
  cell.day.reset();
  cell.isUnclear = true;
}

bool isMark(char c) {
  return c == '<' || c == '>';
}

} // namespace

MutatedHistoryPage::MutatedHistoryPage(unsigned seed)
    : m_random(seed), m_lastPrice(10000 + static_cast<long>(m_random() % 20000000)),
      m_headings{"Date", "Open", "High", "Low", "Close", "Volume", "Adj Close*"},
      m_untidy(m_random() % 3 == 0) {
  makeRows();
  const std::size_t tableMutations = pick(3);
  for (std::size_t i = 0; i < tableMutations; ++i)
    mutateTable();
  const std::size_t cellMutations = pick(4);
  for (std::size_t i = 0; i < cellMutations; ++i) {
    Row& row = m_rows[pick(m_rows.size())];
    if (!row.empty())
      mutateCell(row[pick(row.size())]);
  }
  state();
  write();
  // A lost table cell and a cell doubled by a tag could form a row with other values.
  if (!m_ragged && chance(3))
    mutateTags();
}

PageCell MutatedHistoryPage::priceCell(const std::string& column) {
  // The prices differ enough to stay different when their last decimals are cut.
  m_lastPrice += 100 + static_cast<long>(pick(300)) * 100;
  const bool fourDecimals = m_lastPrice < 100000;
  PageCell cell{priceText(m_lastPrice, fourDecimals), column, std::nullopt, std::nullopt};
  cell.number = std::strtod(withoutCommas(cell.text).c_str(), nullptr);
  return cell;
}

void MutatedHistoryPage::makeRows() {
  const std::size_t count = 2 + pick(24);
  long day = 20000 + static_cast<long>(pick(400)); // From October 2024 on.
  for (std::size_t i = 0; i < count; ++i, day -= 1 + static_cast<long>(pick(3))) {
    Row row;
    for (const std::string& heading : m_headings) {
      if (heading == "Date")
        row.push_back({dateText(day), heading, std::nullopt, day});
      else if (heading == "Volume")
        row.push_back({withCommas(m_lastPrice * 7 + static_cast<long>(i)), heading,
                       static_cast<double>(m_lastPrice * 7 + static_cast<long>(i)), std::nullopt});
      else
        row.push_back(priceCell(heading));
    }
    m_rows.push_back(std::move(row));
  }
}

/// Moves, adds and removes columns with their headings, rows, and cells of single rows.
void MutatedHistoryPage::mutateTable() {
  const std::size_t column = pick(m_headings.size());
  const std::size_t other = pick(m_headings.size());
  const std::size_t rowIndex = pick(m_rows.size());
  Row& row = m_rows[rowIndex];
  switch (m_ragged ? 4 + pick(4) : pick(10)) {
  case 0:
    note("columns exchanged");
    std::swap(m_headings[column], m_headings[other]);
    for (Row& each : m_rows)
      std::swap(each[column], each[other]);
    break;
  case 1:
    note("column added");
    for (Row& each : m_rows)
      each.insert(each.begin() + static_cast<std::ptrdiff_t>(column), priceCell("Change"));
    m_headings.insert(m_headings.begin() + static_cast<std::ptrdiff_t>(column), "Change");
    break;
  case 2:
    note("column dropped");
    for (Row& each : m_rows)
      each.erase(each.begin() + static_cast<std::ptrdiff_t>(column));
    m_headings.erase(m_headings.begin() + static_cast<std::ptrdiff_t>(column));
    break;
  case 3:
    note("column doubled");
    for (Row& each : m_rows)
      each.insert(each.begin() + static_cast<std::ptrdiff_t>(column), Row::value_type(each[column]));
    m_headings.insert(m_headings.begin() + static_cast<std::ptrdiff_t>(column),
                      std::string(m_headings[column]));
    break;
  case 4:
    note("row dropped");
    if (m_rows.size() > 1)
      m_rows.erase(m_rows.begin() + static_cast<std::ptrdiff_t>(rowIndex));
    break;
  case 5:
    note("row doubled");
    m_rows.insert(m_rows.begin() + static_cast<std::ptrdiff_t>(rowIndex), Row(row));
    break;
  case 6:
    note("rows exchanged");
    std::swap(m_rows[rowIndex], m_rows[pick(m_rows.size())]);
    break;
  case 7:
    note("row of a dividend");
    for (PageCell& cell : row)
      if (cell.column != "Date")
        cell = {"", cell.column, std::nullopt, std::nullopt};
    break;
  case 8:
    note("cell dropped");
    m_ragged = true;
    row.erase(row.begin() + static_cast<std::ptrdiff_t>(pick(row.size())));
    break;
  default:
    note("cell doubled");
    m_ragged = true;
    const std::size_t at = pick(row.size());
    row.insert(row.begin() + static_cast<std::ptrdiff_t>(at), PageCell(row[at]));
  }
}

void MutatedHistoryPage::mutateCell(PageCell& cell) {
  if (cell.text.find_first_of("0123456789") == std::string::npos)
    return;
  if (chance(2))
    changeDigit(cell);
  else
    changeWriting(cell);
}

/// Changes a digit. The page then states another number or day.
void MutatedHistoryPage::changeDigit(PageCell& cell) {
  note("digit changed in " + cell.text);
  std::size_t at = pick(cell.text.size());
  while (cell.text[at] < '0' || cell.text[at] > '9')
    at = (at + 1) % cell.text.size();
  cell.text[at] = static_cast<char>('0' + pick(10));
  if (cell.isUnclear)
    return;
  if (cell.day || cell.column == "Date")
    cell.day = dayStated(cell.text);
  else
    cell.number = std::strtod(withoutCommas(cell.text).c_str(), nullptr);
}

/// Changes the notation. The page states the same value or none, possibly in a form unknown to the program.
void MutatedHistoryPage::changeWriting(PageCell& cell) {
  note("writing changed of " + cell.text);
  const std::size_t point = cell.text.find('.');
  switch (pick(12)) {
  case 0:
    if (point != std::string::npos)
      cell.text.replace(point, 1, "&#46;");
    break;
  case 1:
    cell.text = "&nbsp;" + cell.text + "&nbsp;";
    break;
  case 2: // Continental notation: a point groups, a comma is the decimal sign.
    for (char& c : cell.text)
      c = c == '.' ? ',' : c == ',' ? '.' : c;
    break;
  case 3:
    std::replace(cell.text.begin(), cell.text.end(), ',', ' ');
    break;
  case 4:
    for (std::size_t at = 0; (at = cell.text.find(',', at)) != std::string::npos;)
      cell.text.replace(at, 1, "&nbsp;");
    break;
  case 5:
    cell.text = "$" + cell.text;
    break;
  case 6:
    cell.text += " AUD";
    break;
  case 7:
    cell = {chance(2) ? "N/A" : "-", cell.column, std::nullopt, std::nullopt};
    break;
  case 8: // The number is lost.
    cell.text.insert(cell.text.size() / 2, "x");
    makeUnclear(cell);
    break;
  case 9:
    cell.text = "\n  " + cell.text + "\t\n";
    break;
  case 10: // A hundredth of the number.
    cell.text += "p";
    makeUnclear(cell);
    break;
  default:
    cell.text = "<b>" + cell.text.substr(0, 1) + "</b>" + cell.text.substr(1);
  }
}

/// A row with too many or too few cells states only what its cells were made for, if anything.
void MutatedHistoryPage::state() {
  for (const Row& row : m_rows) {
    std::set<long> days;
    std::map<std::string, std::set<double>> figures;
    for (std::size_t i = 0; i < row.size(); ++i) {
      const std::string& heading = row.size() == m_headings.size() ? m_headings[i] : row[i].column;
      if (heading == "Date" && row[i].day)
        days.insert(*row[i].day);
      else if (row[i].number)
        figures[heading].insert(*row[i].number);
    }
    for (const long day : days)
      for (const auto& [heading, numbers] : figures)
        m_statements[day][heading].insert(numbers.begin(), numbers.end());
  }
}

std::string MutatedHistoryPage::tag(const std::string& name) {
  std::string text = "<" + name;
  if (m_untidy && chance(8)) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return char(std::toupper(c)); });
    text += " class=\"x > y\" nowrap";
  }
  return text + ">";
}

std::string MutatedHistoryPage::closing(const std::string& name) {
  return m_untidy && chance(60) ? "" : "</" + name + ">";
}

/// Meaningless text between tags.
std::string MutatedHistoryPage::between() {
  static const std::array<const char*, 4> PIECES{"\n", "<!-- <td>6.66</td> -->",
                                                 "<script>'<td>6.66</td>'</script>", "  "};
  return m_untidy && chance(20) ? PIECES[pick(PIECES.size())] : "";
}

std::string MutatedHistoryPage::written(const std::string& text) {
  if (text.empty() || text.find('<') != std::string::npos || !m_untidy || !chance(30))
    return text;
  const std::size_t middle = text.size() / 2;
  const std::string piece = chance(2) ? "<!-- 6 -->" : "<script>6</script>";
  return text.substr(0, middle) + piece + text.substr(middle);
}

void MutatedHistoryPage::write() {
  m_html =
      std::string(HEAD) + "<table id=frame><tr><td>\n" + "<table class=prices id=\"prices\">\n" + tag("tr");
  for (const std::string& heading : m_headings)
    m_html += tag("th") + heading + closing("th");
  m_html += closing("tr") + "\n";
  for (const Row& row : m_rows) {
    m_html += tag("tr");
    for (const PageCell& cell : row)
      m_html += between() + tag("td") + written(cell.text) + closing("td");
    m_html += closing("tr") + between() + "\n";
  }
  m_html += "</table>\n<small>* adjusted</small>\n</td></tr></table>\n" + std::string(FOOT);
}

void MutatedHistoryPage::mutateTags() {
  note("a tag mutated");
  m_html = withOneTagMutated(m_html, m_random);
}

MutatedQuotePage::MutatedQuotePage(unsigned seed) {
  constexpr unsigned IN_PENCE = 5; // The page then states a hundredth of the number.
  std::mt19937 random(seed);
  struct Line {
    std::string label;
    std::string text;
  };
  long price = 10000 + static_cast<long>(random() % 20000000);
  std::vector<Line> lines;
  for (const char* const label : {"Last Trade:", "Prev Close:", "Bid:", "Ask:", "Year High:"})
    lines.push_back(
        {label, priceText(price += 1100 + static_cast<long>(random() % 900) * 100, price < 100000)});
  std::shuffle(lines.begin() + static_cast<std::ptrdiff_t>(random() % 2), lines.end(), random);
  if (random() % 5 == 0)
    lines.push_back(lines[random() % lines.size()]);
  if (random() % 8 == 0)
    lines[random() % lines.size()].label = "Last:";
  m_html = std::string(HEAD) + "<table id=layout><tr><td valign=top>\n<table id=\"quote\">\n";
  for (Line& line : lines) {
    const unsigned writing = random() % 12;
    if (line.label == "Last Trade:" && writing != IN_PENCE)
      m_prices.insert(std::strtod(withoutCommas(line.text).c_str(), nullptr));
    switch (writing) {
    case 0:
      line.text.replace(line.text.find('.'), 1, "&#46;");
      break;
    case 1:
      std::replace(line.text.begin(), line.text.end(), ',', ' ');
      break;
    case 2:
      line.text = "$" + line.text;
      break;
    case 3:
      line.text += "<sup>1</sup>";
      break;
    case 4:
      line.text = "&nbsp;" + line.text + " AUD";
      break;
    case IN_PENCE:
      line.text += "p";
      break;
    default:
      break;
    }
    m_html += "<tr><th>" + line.label + "</th><td><b>" + line.text + "</b></td></tr>\n";
  }
  m_html += "</table>\n</td><td>Chart 8.88</td></tr></table>\n" + std::string(FOOT);
  if (random() % 2 == 0)
    m_html = withOneTagMutated(m_html, random);
}

std::string withOneTagMutated(const std::string& html, std::mt19937& random) {
  std::vector<std::pair<std::size_t, std::size_t>> tags; // Start and end of each.
  for (std::size_t at = 0; (at = html.find('<', at)) != std::string::npos;) {
    const std::size_t end =
        std::find_if(html.begin() + static_cast<std::ptrdiff_t>(at) + 1, html.end(), isMark) - html.begin();
    if (end < html.size() && html[end] == '>')
      tags.emplace_back(at, end + 1);
    at = end;
  }
  const auto [begin, end] = tags[random() % tags.size()];
  const auto [otherBegin, otherEnd] = tags[random() % tags.size()];
  const std::string other = html.substr(otherBegin, otherEnd - otherBegin);
  const std::string tag = html.substr(begin, end - begin);
  switch (random() % 6) {
  case 0:
    return html.substr(0, begin) + html.substr(end);
  case 1:
    return html.substr(0, end) + tag + html.substr(end);
  case 2:
    return html.substr(0, begin) + other + html.substr(end);
  case 3:
    return html.substr(0, begin) + other + html.substr(begin);
  case 4:
    return html.substr(0, end - 1) + html.substr(end); // Without its ">".
  default:
    return html.substr(0, begin + 1);
  }
}

} // namespace Tallymoor
