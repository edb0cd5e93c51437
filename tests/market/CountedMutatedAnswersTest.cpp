// Answers that changed after their source's document was written, in JSON, CSV and as a table of a page. All
// prices of an answer are different, and the answer knows what it states: each price that is read must be
// stated for its day, or nothing may be read.
#include "market/SourceAnswer.h"
#include "support/TestProfile.h"
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <functional>
#include <gtest/gtest.h>
#include <map>
#include <optional>
#include <random>
#include <set>
#include <string>
#include <vector>

namespace Tallymoor {
namespace {

constexpr unsigned ANSWERS = 1000;

struct Cell {
  std::string text;
  std::optional<double> number; ///< what a careful person reads in it
};

/// What an answer states for a column, by day.
using Statements = std::map<std::string, std::map<std::string, std::set<double>>>;

/// A table of prices and the changes made to it.
class MutatedAnswer {
public:
  explicit MutatedAnswer(unsigned seed) : m_random(seed) {
    makeRows();
    for (std::size_t count = pick(4); count > 0; --count)
      mutate();
    state();
  }

  std::string csv();
  std::string objects();
  std::string parallelArrays();
  std::string page();

  /// By heading, then by day.
  const Statements& statements() const { return m_statements; }
  const std::string& history() const { return m_history; }

private:
  using Row = std::vector<Cell>;

  std::size_t pick(std::size_t count) { return m_random() % count; }
  bool chance(std::size_t oneIn) { return pick(oneIn) == 0; }
  void note(const std::string& what) { m_history += what + "; "; }

  Cell price() {
    m_lastPrice += 1 + static_cast<long>(pick(900));
    char text[32];
    std::snprintf(text, sizeof text, "%ld.%02ld", m_lastPrice / 100, m_lastPrice % 100);
    return {text, m_lastPrice / 100.0};
  }

  Cell volume() {
    const std::size_t number = 1000 + pick(9000);
    return {std::to_string(number), static_cast<double>(number)};
  }

  void makeRows() {
    m_headings = {"Date", "Open", "High", "Low", "Close", "Volume", "Note"};
    const std::size_t count = 3 + pick(6);
    for (std::size_t i = 0; i < count; ++i) {
      char day[64];
      std::snprintf(day, sizeof day, "2025-%02zu-%02zu", 1 + i, 10 + i);
      m_rows.push_back({{day, {}}, price(), price(), price(), price(), volume(), {"x", {}}});
    }
  }

  Row& anyRow() { return m_rows[pick(m_rows.size())]; }
  std::size_t placeOf(const std::string& heading) const {
    return static_cast<std::size_t>(std::find(m_headings.begin(), m_headings.end(), heading) -
                                    m_headings.begin());
  }

  void mutate() {
    static const std::vector<std::pair<const char*, void (MutatedAnswer::*)()>> ALL{
        {"columns exchanged", &MutatedAnswer::exchangeColumns},
        {"headings exchanged", &MutatedAnswer::exchangeHeadings},
        {"heading renamed", &MutatedAnswer::renameHeading},
        {"heading twice", &MutatedAnswer::repeatHeading},
        {"cell removed", &MutatedAnswer::removeCell},
        {"cell added", &MutatedAnswer::addCell},
        {"no price", &MutatedAnswer::withoutPrice},
        {"unclear price", &MutatedAnswer::unclearPrice},
        {"grouped price", &MutatedAnswer::groupedPrice},
        {"unclear day", &MutatedAnswer::unclearDay},
        {"another price", &MutatedAnswer::repeatDay},
        {"rows reversed", &MutatedAnswer::reverseRows},
        {"line between", &MutatedAnswer::lineBetween}};
    const auto& [name, change] = ALL[pick(ALL.size())];
    note(name);
    (this->*change)();
  }

  void exchangeColumns() {
    const std::size_t some = pick(6);
    const std::size_t other = pick(6);
    std::swap(m_headings[some], m_headings[other]);
    for (Row& row : m_rows)
      if (row.size() > std::max(some, other))
        std::swap(row[some], row[other]);
  }
  void exchangeHeadings() { std::swap(m_headings[1 + pick(4)], m_headings[1 + pick(4)]); }
  void renameHeading() { m_headings[pick(6)] += " (new)"; }
  void repeatHeading() { m_headings[pick(6)] = m_headings[pick(6)]; }
  void removeCell() {
    Row& row = anyRow();
    if (row.size() > 1)
      row.erase(row.begin() + static_cast<std::ptrdiff_t>(pick(row.size())));
  }
  void addCell() {
    Row& row = anyRow();
    row.insert(row.begin() + static_cast<std::ptrdiff_t>(pick(row.size() + 1)), price());
  }
  void setClose(const Cell& cell) {
    Row& row = anyRow();
    if (placeOf("Close") < row.size())
      row[placeOf("Close")] = cell;
  }
  void withoutPrice() {
    static const std::vector<std::string> TEXTS{"", "N/A", "-", "null", "n.a."};
    setClose({TEXTS[pick(TEXTS.size())], {}});
  }
  void unclearPrice() {
    static const std::vector<std::string> TEXTS{"12,5", "1.234,50",  "1.2.3",  "12.5.2025",
                                                "1 2",  "12.5 13.5", "1,23,4", "12:30",
                                                "~12",  "1.2M",      "0x10",   "12-13"};
    setClose({TEXTS[pick(TEXTS.size())], {}});
  }
  void groupedPrice() { setClose({"1,234,567.25", 1234567.25}); }
  void unclearDay() {
    static const std::vector<std::string> TEXTS{"26/02/2025", "2025-13-01", "2025-02-30",
                                                "02-03-25",   "20250226",   "2025"};
    Row& row = anyRow();
    if (placeOf("Date") < row.size())
      row[placeOf("Date")] = {TEXTS[pick(TEXTS.size())], {}};
  }
  void repeatDay() {
    Row row = anyRow();
    for (Cell& cell : row)
      if (cell.number)
        cell = price();
    m_rows.insert(m_rows.begin() + static_cast<std::ptrdiff_t>(pick(m_rows.size() + 1)), row);
  }
  void reverseRows() { std::reverse(m_rows.begin(), m_rows.end()); }
  void lineBetween() {
    static const std::vector<std::string> TEXTS{"2025-02-11 dividend 0.25", "Average 12.5", "Page 2 of 3"};
    m_rows.insert(m_rows.begin() + static_cast<std::ptrdiff_t>(pick(m_rows.size() + 1)),
                  {{TEXTS[pick(TEXTS.size())], {}}});
  }

  void state() {
    const std::size_t date = placeOf("Date");
    for (const Row& row : m_rows)
      for (std::size_t i = 0; row.size() == m_headings.size() && date < row.size() && i < row.size(); ++i)
        if (row[i].number)
          m_statements[m_headings[i]][row[date].text].insert(*row[i].number);
  }

  /// Some answers end in the middle, but for the notes of the last column.
  std::string perhapsCut(std::string text) {
    if (!chance(8))
      return text;
    note("cut");
    return text.substr(0, pick(text.size()));
  }
  std::string quoted(const std::string& text) { return "\"" + text + "\""; }
  std::string jsonValue(const Cell& cell) {
    if (cell.text == "null")
      return "null";
    return cell.number && cell.text.find(',') == std::string::npos && chance(2) ? cell.text
                                                                                : quoted(cell.text);
  }
  std::string blank() { return chance(6) ? " \n" : ""; }
  std::string written(const std::string& text) {
    switch (pick(8)) {
    case 0:
      return "<a href='/x?a=1>2'>" + text + "</a>";
    case 1:
      return "\n  <span class=\"p\">" + text + "</span>&nbsp;";
    case 2:
      return "<!-- 9.99 -->" + text;
    case 3:
      return "<i style='display:none'>77</i>" + text;
    default:
      return text;
    }
  }

  std::mt19937 m_random;
  long m_lastPrice = 1000;
  std::vector<std::string> m_headings;
  std::vector<Row> m_rows;
  Statements m_statements;
  std::string m_history;
};

std::string MutatedAnswer::csv() {
  const std::string end = chance(2) ? "\r\n" : "\n";
  std::string text = chance(4) ? "\xEF\xBB\xBF" : "";
  text += chance(4) ? "Prices of a share" + end + end : "";
  for (std::size_t i = 0; i < m_headings.size(); ++i)
    text += (i == 0 ? "" : ",") + (chance(3) ? quoted(m_headings[i]) : m_headings[i]);
  text += end;
  for (const Row& row : m_rows) {
    for (std::size_t i = 0; i < row.size(); ++i) {
      // Sometimes the commas of a number are not quoted.
      const bool needsQuotes = row[i].text.find(',') != std::string::npos && !chance(4);
      text += (i == 0 ? "" : ",") + (needsQuotes || chance(5) ? quoted(row[i].text) : row[i].text);
    }
    text += end;
  }
  return perhapsCut(text);
}

std::string MutatedAnswer::objects() {
  std::string text = "{\"meta\":{\"x\":[1,2]}," + blank() + "\"rows\":[";
  for (const Row& row : m_rows) {
    text += (&row == &m_rows.front() ? "{" : ",{") + blank();
    // A row with too few or too many cells has members without a name.
    for (std::size_t i = 0; i < row.size(); ++i)
      text += (i == 0 ? "" : ",") + blank() +
              quoted(row.size() == m_headings.size() ? m_headings[i] : "c" + std::to_string(i)) + ":" +
              jsonValue(row[i]);
    text += "}";
  }
  return perhapsCut(text + "]}");
}

std::string MutatedAnswer::parallelArrays() {
  std::string text = "{\"columns\":{";
  for (std::size_t i = 0; i < m_headings.size(); ++i) {
    text += (i == 0 ? "" : ",") + quoted(m_headings[i]) + ":[" + blank();
    bool isFirst = true;
    // A row with too few or too many cells is missing in all columns but one.
    for (const Row& row : m_rows)
      if (row.size() == m_headings.size() || (i == placeOf("Date") && i < row.size())) {
        text += (isFirst ? "" : ",") + jsonValue(row[i]);
        isFirst = false;
      }
    text += "]";
  }
  return perhapsCut(text + "}}");
}

std::string MutatedAnswer::page() {
  const bool isClosed = !chance(4);
  const std::string heading = chance(3) ? "td" : "th";
  const auto cell = [&](const std::string& tag, const std::string& text) {
    return blank() + "<" + tag + (chance(4) ? " class='c' align=right>" : ">") + text +
           (isClosed ? "</" + tag + ">" : "");
  };
  std::string text = "<html><body><table><tr><td>Menu</td></tr></table><TABLE>";
  text += chance(3) ? "<thead><tr>" : "<tr>";
  for (const std::string& each : m_headings)
    text += cell(heading, each);
  text += isClosed ? "</tr>" : "";
  for (const Row& row : m_rows) {
    text += "<tr>";
    for (const Cell& each : row)
      text += row.size() == 1 ? "<td colspan=7>" + each.text + "</td>" : cell("td", written(each.text));
    text += isClosed ? "</tr>" : "";
  }
  return perhapsCut(text + "</TABLE></body></html>");
}

class CountedMutatedAnswers : public testing::Test {
protected:
  using Write = std::function<std::string(MutatedAnswer&)>;

  static AnswerFormat formatOf(AnswerReader reader, const std::string& before,
                               const std::string& behind = {}) {
    AnswerFormat format;
    format.reader = reader;
    const auto at = [&](const char* name) { return String((before + name + behind).c_str()); };
    format.columns = {{AnswerColumn::Date, at("Date")},
                      {AnswerColumn::Close, at("Close")},
                      {AnswerColumn::High, at("High")},
                      {AnswerColumn::Low, at("Low")}};
    return format;
  }

  static bool isStated(const MutatedAnswer& answer, const std::string& heading, const Date& day,
                       double value) {
    char text[64];
    std::snprintf(text, sizeof text, "%04d-%02d-%02d", day.year(), day.month(), day.day());
    const auto column = answer.statements().find(heading);
    if (column == answer.statements().end() || !column->second.contains(text))
      return false;
    const std::set<double>& stated = column->second.at(text);
    return std::any_of(stated.begin(), stated.end(),
                       [value](double each) { return std::fabs(each - value) < 1e-6; });
  }

  static bool isRight(const MutatedAnswer& answer, const Date& day, const ShareValue& value) {
    return isStated(answer, "Close", day, value.close) &&
           (value.high == 0.0 || isStated(answer, "High", day, value.high)) &&
           (value.low == 0.0 || isStated(answer, "Low", day, value.low));
  }

  static void count(const char* kind, const AnswerFormat& format, const Write& write) {
    unsigned read = 0, refused = 0, right = 0, wrong = 0;
    for (unsigned seed = 1; seed <= ANSWERS; ++seed) {
      MutatedAnswer answer(seed);
      const std::string bytes = write(answer);
      AnsweredHistory history;
      try {
        history = readHistory(bytes, format);
      } catch (const AnswerException&) {
      }
      (history.prices.empty() ? refused : read) += 1;
      for (const auto& [day, value] : history.prices) {
        const bool isGood = isRight(answer, day, value);
        (isGood ? right : wrong) += 1;
        EXPECT_TRUE(isGood) << "seed " << seed << " (" << answer.history()
                            << "): " << day.toString(DATE_DISPLAY_DMY).toUTF8() << " close " << value.close
                            << " high " << value.high << " low " << value.low << " of\n"
                            << bytes;
      }
    }
    EXPECT_GT(read, ANSWERS / 4);
    EXPECT_GT(refused, ANSWERS / 10);
    std::printf(
        "COUNT: mutated answers, %s: %u, of which %u were read and %u refused; %u days right, %u wrong\n",
        kind, ANSWERS, read, refused, right, wrong);
  }

  TestProfile m_profile;
};

TEST_F(CountedMutatedAnswers, CsvGivesRightPricesOrNone) {
  count("CSV", formatOf(AnswerReader::Csv, ""), &MutatedAnswer::csv);
}

TEST_F(CountedMutatedAnswers, JsonObjectsGiveRightPricesOrNone) {
  count("objects in JSON", formatOf(AnswerReader::Json, "$.rows[*].", ""), &MutatedAnswer::objects);
}

TEST_F(CountedMutatedAnswers, ParallelArraysGiveRightPricesOrNone) {
  count("parallel arrays in JSON", formatOf(AnswerReader::Json, "$.columns.", ""),
        &MutatedAnswer::parallelArrays);
}

TEST_F(CountedMutatedAnswers, PagesGiveRightPricesOrNone) {
  count("tables of pages", formatOf(AnswerReader::Headings, ""), &MutatedAnswer::page);
}

} // namespace
} // namespace Tallymoor
