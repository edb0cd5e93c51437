// Runs the queries of data/performance. The expected results come from expected_performance.py, an
// independent implementation, and are compared to the last displayed digit.
#include "TestPaths.h"
#include "analysis/CapitalGrowth.h"
#include "analysis/Indicators.h"
#include "analysis/Performance.h"
#include "books/BooksWithGatewayTest.h"
#include "books/SequenceArguments.h"
#include "books/SequenceFile.h"
#include "foundation/Settings.h"
#include "market/SharePriceCache.h"
#include "service/PriceFolder.h"
#include "service/SampleMarket.h"
#include "xml/CountryOfResidence.h"
#include <algorithm>
#include <iostream>
#include <limits>
#include <map>
#include <set>
#include <stdexcept>

namespace Tallymoor {
namespace {

constexpr int FEWEST_FIGURES = 20000;
const Date LAST_DAY(2026, 3, 2); ///< Of all prices.

using Texts = std::vector<std::string>;

std::string number(std::optional<double> value, int places) {
  return value ? String::fromDouble(*value, places).toUTF8() : "-";
}
std::string money(std::optional<double> value) {
  return number(value, 2);
}
std::string price(std::optional<double> value) {
  return number(value, 4);
}
std::string percent(std::optional<double> value) {
  return value ? String::toPercent(*value).toUTF8() : "-";
}
std::string dayText(const Date& day) {
  return day.toString(DATE_DISPLAY_DMY).toUTF8();
}

/// An index figure is empty on a day without a price.
template <class Figure>
std::optional<double> ifPriced(Figure figure) {
  try {
    return figure();
  } catch (const Exception&) {
    return std::nullopt;
  }
}

using Arguments = SequenceArguments;

/// A portfolio of a case with its records up to the last day.
struct CasePortfolio {
  XMLSharePortfolio records;
  std::unique_ptr<SharePortfolioUser> user;
};

class PerformanceFiguresTest : public BooksWithGatewayTest {
protected:
  PerformanceFiguresTest() { CountryOfResidence::destroyInstance(); }
  ~PerformanceFiguresTest() override { CountryOfResidence::destroyInstance(); }

  void run(const Sequence& sequence) {
    begin(sequence.title);
    for (const SequenceStep& step : sequence.steps) {
      SCOPED_TRACE("line " + std::to_string(step.line) + ": " + step.text);
      Arguments arguments(step.words);
      if (const auto change = changes().find(step.words[0]); change != changes().end())
        (this->*change->second)(arguments);
      else
        compare(step, (this->*questions().at(step.words[0]))(arguments));
    }
  }

  int figures() const { return m_figures; }
  int emptyCells() const { return m_emptyCells; }

private:
  using Change = void (PerformanceFiguresTest::*)(Arguments&);
  using Question = Texts (PerformanceFiguresTest::*)(Arguments&);

  static const std::map<std::string, Change>& changes();
  static const std::map<std::string, Question>& questions();

  void compare(const SequenceStep& step, const Texts& texts) {
    ASSERT_TRUE(step.expected);
    std::string line;
    for (const std::string& text : texts) {
      line += line.empty() ? text : ' ' + text;
      ++(text == "-" ? m_emptyCells : m_figures);
    }
    EXPECT_EQ(line, *step.expected);
  }

  // ---- The market ----

  static SharePriceCache::Rows rowsOf(const SampleService::PriceHistory& history) {
    SharePriceCache::Rows rows;
    for (const SampleService::DayRow& row : history.rows) {
      const std::chrono::year_month_day ymd(row.day);
      const Date day(int(ymd.year()), int(unsigned(ymd.month())), int(unsigned(ymd.day())));
      const auto volume = std::min<std::int64_t>(row.volume, std::numeric_limits<std::int32_t>::max());
      rows[day] = {double(row.close) / 10000, double(row.high) / 10000, double(row.low) / 10000,
                   std::int32_t(volume)};
    }
    return rows;
  }
  static std::optional<SampleService::PriceHistory> historyOf(const std::string& code) {
    using namespace std::chrono;
    const auto history = SampleService::PriceFolder(TALLYMOOR_SAMPLES "/prices").history(code);
    return history ? history : SampleService::SampleMarket().history(code, sys_days(2026y / March / 3));
  }
  /// Writes the code's cache file before the gateway first reads it. An unlisted code gets none.
  void provide(const String& code) {
    if (!m_provided.insert(code).second)
      return;
    if (const auto history = historyOf(code.toUTF8())) {
      SharePriceCache cache(m_profile.cacheFolder());
      const auto rows = rowsOf(*history);
      cache.merge(code, rows, {rows.begin()->first, LAST_DAY});
      cache.save();
    }
  }

  // ---- Portfolios ----

  void begin(const std::string& title) {
    Date::setFixedDate(LAST_DAY);
    m_recorded = false;
    m_lastDay = LAST_DAY;
    CasePortfolio& portfolio = m_portfolios[title];
    portfolio.records.subElement(u"Name").setValue(String::fromUTF8(title));
    portfolio.user = std::make_unique<SharePortfolioUser>(portfolio.records, gatewayPrices());
    m_table = {portfolio.user.get()};
  }
  SharePortfolioUser& only() { return *m_table.at(0); }
  const Portfolios& table() {
    if (!m_recorded) {
      Date::setFixedDate(m_lastDay);
      for (SharePortfolioUser* portfolio : m_table)
        updateCapitalRecord(*portfolio);
      m_recorded = true;
    }
    return m_table;
  }

  void index(Arguments& a) {
    const String code = a.text();
    provide(code);
    only().setComparisonIndex(code);
  }
  void lastDay(Arguments& a) {
    m_lastDay = a.date();
    Date::setFixedDate(m_lastDay);
  }
  void answerSplit(Arguments& a) { m_interaction.answerRatio(a.whole()); }
  void buy(Arguments& a) {
    const String code = a.text();
    provide(code);
    const Date day = a.date();
    const double number = a.number(), price = a.number(), brokerage = a.number();
    only().buyShares(code, {day, number, price, brokerage, a.text()});
  }
  void sell(Arguments& a) {
    const String code = a.text();
    const Date day = a.date();
    const double number = a.number(), price = a.number(), brokerage = a.number();
    const bool firstInFirstOut = a.text() == u"fifo";
    only().sellShares(code, {day, number, price, brokerage, a.text()}, firstInFirstOut);
  }
  void dividend(Arguments& a) {
    const String code = a.text();
    const Date day = a.date();
    const double number = a.number(), rate = a.number();
    const std::int32_t franked = a.whole();
    const double shares = a.number(), price = a.number();
    const String country = a.text();
    only().receiveDividend({code, day, number, rate, franked, shares, price, country, a.number()});
  }
  void credit(Arguments& a) {
    const Date day = a.date();
    const double value = a.number();
    const std::int32_t type = a.whole();
    only().creditCash(day, value, type, a.text());
  }
  void debit(Arguments& a) {
    const Date day = a.date();
    const double value = a.number();
    const std::int32_t type = a.whole();
    only().debitCash(day, value, type, a.text());
  }
  void portfolios(Arguments& a) {
    m_table.clear();
    while (!a.atEnd())
      m_table.push_back(m_portfolios.at(a.text().toUTF8()).user.get());
  }
  void financialYear(Arguments& a) {
    Settings::Instance().writeString(u"Config", u"Country", u"United States");
    Settings::Instance().writeString(u"Config", u"FinYearStart", a.text() + u"/2000");
    CountryOfResidence::destroyInstance();
  }

  // ---- Queries ----

  std::vector<PerformanceSpan> monthsOn(const Date& today) {
    const Portfolios& portfolios = table();
    Date::setFixedDate(today);
    return performanceMonths(portfolios, today);
  }
  Texts rows(Arguments& a) {
    const std::vector<PerformanceSpan> months = monthsOn(a.date());
    return {std::to_string(months.size()), dayText(months.back().end)};
  }
  Texts month(Arguments& a) {
    const Date today = a.date(), end = a.date();
    for (const PerformanceSpan& span : monthsOn(today))
      if (span.end == end)
        return figuresOf(span, today);
    return {"no such month"};
  }
  /// In the order of the file.
  Texts figuresOf(const PerformanceSpan& span, const Date& today) {
    const Date& end = span.end;
    Texts texts{dayText(span.start), money(capitalOn(m_table, end)),
                money(ifPriced([&] { return indexValue(m_table, end); })),
                percent(brokeragePercent(m_table, span)), money(externalFlow(m_table, span))};
    for (const int months : {1, 3, 6, 9, 12})
      addGains(texts, end, months);
    for (const int years : {3, 5}) {
      texts.push_back(percent(annualisedGain(m_table, end, years)));
      texts.push_back(percent(ifPriced([&] { return annualisedIndexGain(m_table, end, years); })));
    }
    addGains(texts, end, monthsOfFinancialYear(end, today));
    addGains(texts, end, int(end.month()));
    return texts;
  }
  void addGains(Texts& texts, const Date& end, int months) {
    texts.push_back(percent(periodGain(m_table, end, months)));
    texts.push_back(percent(ifPriced([&] { return indexGain(m_table, end, months); })));
  }
  Texts gain(Arguments& a) {
    const Date then = a.date(), now = a.date();
    return {percent(gainBetween(table(), then, now)),
            percent(ifPriced([&] { return indexGainBetween(table(), then, now); }))};
  }
  Texts today(Arguments& a) {
    table();
    Date::setFixedDate(a.date());
    return {percent(only().dailyGain()), percent(only().weeklyGain()), percent(only().indexDailyGain()),
            percent(only().indexWeeklyGain())};
  }
  Texts averages(Arguments& a) {
    table();
    Date::setFixedDate(a.date());
    Texts texts;
    while (!a.atEnd())
      texts.push_back(price(only().indexMovingAverage(a.number())));
    return texts;
  }
  Texts growth(Arguments& a) {
    const Date first = a.date(), last = a.date();
    const std::vector<GrowthDay> days = capitalGrowth(table(), first, last);
    if (days.empty() || days.back().day != last)
      return {"no such day"};
    return {money(days.back().capital), money(days.back().growth), money(days.back().index)};
  }
  Texts indicators(Arguments& a) {
    const String code = a.text();
    provide(code);
    const Date day = a.date();
    Date::setFixedDate(day);
    const Indicators figures = GatewayScope::awaited([&] { return indicatorsOf(code, day); });
    std::optional<double> position;
    if (figures.autoMin)
      position = autoMaxPortfolio(a.number(), gateway().getCachedPrice(code, day, 0), *figures.autoMin);
    return {price(figures.lrValue), percent(figures.lrRate), price(figures.averageTrueRange),
            price(figures.autoMin), price(figures.autoMax),  percent(figures.autoVolatility),
            money(position)};
  }

  std::map<std::string, CasePortfolio> m_portfolios;
  Portfolios m_table;
  Date m_lastDay = LAST_DAY;
  bool m_recorded = false;
  std::set<String> m_provided;
  int m_figures = 0;
  int m_emptyCells = 0;
};

const std::map<std::string, PerformanceFiguresTest::Change>& PerformanceFiguresTest::changes() {
  static const std::map<std::string, Change> known{
      {"index", &PerformanceFiguresTest::index},
      {"last-day", &PerformanceFiguresTest::lastDay},
      {"answer-split", &PerformanceFiguresTest::answerSplit},
      {"buy", &PerformanceFiguresTest::buy},
      {"sell", &PerformanceFiguresTest::sell},
      {"dividend", &PerformanceFiguresTest::dividend},
      {"credit", &PerformanceFiguresTest::credit},
      {"debit", &PerformanceFiguresTest::debit},
      {"portfolios", &PerformanceFiguresTest::portfolios},
      {"financial-year", &PerformanceFiguresTest::financialYear},
  };
  return known;
}

const std::map<std::string, PerformanceFiguresTest::Question>& PerformanceFiguresTest::questions() {
  static const std::map<std::string, Question> known{
      {"rows", &PerformanceFiguresTest::rows},
      {"month", &PerformanceFiguresTest::month},
      {"gain", &PerformanceFiguresTest::gain},
      {"today", &PerformanceFiguresTest::today},
      {"averages", &PerformanceFiguresTest::averages},
      {"growth", &PerformanceFiguresTest::growth},
      {"indicators", &PerformanceFiguresTest::indicators},
  };
  return known;
}

TEST_F(PerformanceFiguresTest, AgreeWithTheIndependentModelToTheLastDigit) {
  for (const Sequence& sequence : readSequences(TALLYMOOR_TEST_DATA "/performance")) {
    SCOPED_TRACE(sequence.title);
    run(sequence);
  }
  std::cout << figures() << " figures and " << emptyCells() << " empty cells compared\n";
  EXPECT_GE(figures(), FEWEST_FIGURES);
}

} // namespace
} // namespace Tallymoor
