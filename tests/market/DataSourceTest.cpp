#include "market/DataSource.h"
#include "market/HistoryPage.h"
#include "support/MessageOf.h"
#include "support/StringPrinting.h"
#include "support/TestProfile.h"
#include <filesystem>
#include <functional>
#include <gtest/gtest.h>

namespace Tallymoor {
namespace {

/// A source that answers as the test says and counts how often it is asked.
class ScriptedSource : public PriceProvider {
public:
  explicit ScriptedSource(const String& name, const String& served = String())
      : m_name(name), m_served(served) {}

  const String& name() const override { return m_name; }
  bool serves(const String& code) const override { return m_served.empty() || code == m_served; }
  bool offersSearch() const override { return search_ != nullptr; }
  std::size_t requestsADay() const override { return perDay; }
  std::optional<AnsweredPrice> currentPrice(const String& code, const std::stop_token&) const override {
    asked.push_back(code);
    if (failure)
      failure();
    return price;
  }
  AnsweredHistory history(const String& code, const HistoryRange&, const std::stop_token&) const override {
    asked.push_back(code);
    if (failure)
      failure();
    return days;
  }
  void search(const String&, bool, bool, std::vector<CodeSearchResult>& results,
              const std::stop_token&) const override {
    search_(results);
  }

  std::function<void()> failure;
  std::optional<AnsweredPrice> price;
  AnsweredHistory days;
  std::function<void(std::vector<CodeSearchResult>&)> search_;
  std::size_t perDay = 0;
  mutable std::vector<String> asked;

private:
  const String m_name;
  const String m_served;
};

class DataSourceTest : public testing::Test {
protected:
  DataSource source() const { return DataSource({{m_first, m_second}, m_pins, m_log}); }
  String reasons(const String& code) const {
    String text;
    for (const SourceReason& reason : m_log->toldOf(code).reasons)
      text += reason.source + u"|" + wordsOf(reason.fault) + u"|" + reason.text + u";";
    return text;
  }
  static void refuse() { throw HTTPException(u"status 403", 403); }

  TestProfile m_profile;
  SourceLog::Clock::time_point m_now{};
  std::shared_ptr<SourceLog> m_log = std::make_shared<SourceLog>([this] { return m_now; });
  std::shared_ptr<ScriptedSource> m_first = std::make_shared<ScriptedSource>(u"First");
  std::shared_ptr<ScriptedSource> m_second = std::make_shared<ScriptedSource>(u"Second");
  std::map<String, SourcePin> m_pins;
  const HistoryRange m_range{Date(2026, 1, 1), Date(2026, 2, 1)};
};

TEST_F(DataSourceTest, TheFirstSourceThatServesTheCodeAnswers) {
  m_first->price = {5.0, std::nullopt, u"AUD"};
  m_second->price = {6.0, std::nullopt, u"AUD"};
  EXPECT_EQ(source().currentPrice(u"ABC").price, 5.0);
  EXPECT_TRUE(m_second->asked.empty());
  EXPECT_EQ(m_log->toldOf(u"ABC").source, u"First");
  EXPECT_EQ(m_log->toldOf(u"ABC").currency, u"AUD");
  EXPECT_EQ(reasons(u"ABC"), u"");

  m_first = std::make_shared<ScriptedSource>(u"First", u"XYZ");
  EXPECT_EQ(source().currentPrice(u"ABC").price, 6.0);
  EXPECT_TRUE(m_first->asked.empty());
}

TEST_F(DataSourceTest, TheNextSourceAnswersForOneThatBreaksAndTheReasonIsKept) {
  m_first->failure = refuse;
  m_second->price = {6.0, Date(2026, 3, 2), {}};
  EXPECT_EQ(source().currentPrice(u"ABC").price, 6.0);
  EXPECT_EQ(m_log->toldOf(u"ABC").source, u"Second");
  EXPECT_EQ(m_log->toldOf(u"ABC").price->day, Date(2026, 3, 2));
  EXPECT_EQ(reasons(u"ABC"), u"First|refused|status 403;");
  EXPECT_EQ(m_log->summaryOf(u"First").lastFailure->code, u"ABC");
  EXPECT_FALSE(m_log->summaryOf(u"Second").lastFailure);
}

TEST_F(DataSourceTest, AnEmptyAnswerGoesOnToTheNextSource) {
  m_second->days.prices[Date(2026, 1, 5)] = {.close = 7.0};
  m_second->days.splits[Date(2026, 1, 5)] = 2.0;
  m_second->days.dividends[Date(2026, 1, 6)] = 0.25;
  EXPECT_EQ(source().history(u"ABC", m_range).size(), 1u);
  EXPECT_EQ(reasons(u"ABC"), u"First|no price|it has no price for these days;");
  EXPECT_EQ(m_log->toldOf(u"ABC").splits.at(Date(2026, 1, 5)), 2.0);
  EXPECT_EQ(m_log->toldOf(u"ABC").dividends.at(Date(2026, 1, 6)), 0.25);

  m_second->days.prices.clear();
  EXPECT_TRUE(source().history(u"ABC", m_range).empty());
  EXPECT_EQ(source().currentPrice(u"ABC").price, 0.0);
}

TEST_F(DataSourceTest, AFailureBesideAnEmptyAnswerIsAFailure) {
  m_second->failure = refuse;
  const HistoryPage page = source().historyPage(u"ABC", m_range, {});
  ASSERT_TRUE(page.failure);
  EXPECT_EQ(messageOf([&] { source().currentPrice(u"ABC"); }), u"Second (refused): status 403");
}

TEST_F(DataSourceTest, AWrongCodeIsNotAskedForAgainInThisRun) {
  m_first->failure = [] { throw HTTPException(u"status 404", 404); };
  m_second->price = {6.0, std::nullopt, {}};
  source().currentPrice(u"ABC");
  source().currentPrice(u"ABC");
  EXPECT_EQ(m_first->asked, std::vector<String>{u"ABC"});
  EXPECT_EQ(reasons(u"ABC"), u"First|wrong code|it did not know the code earlier in this run;");
  source().currentPrice(u"XYZ");
  EXPECT_EQ(m_first->asked.size(), 2u);

  m_log->forgetFailures();
  source().currentPrice(u"ABC");
  EXPECT_EQ(m_first->asked.size(), 3u);
}

TEST_F(DataSourceTest, ASourceRestsAfterFiveRefusalsInARow) {
  m_first->failure = refuse;
  m_second->price = {6.0, std::nullopt, {}};
  for (int i = 0; i < 7; ++i)
    EXPECT_EQ(source().currentPrice(u"ABC" + String::fromLong(i)).price, 6.0);
  EXPECT_EQ(m_first->asked.size(), 5u);
  EXPECT_EQ(reasons(u"ABC6"), u"First|resting|it is not asked for a quarter of an hour after: status 403;");
  m_now += SourceLog::REST;
  m_first->failure = nullptr;
  m_first->price = {5.0, std::nullopt, {}};
  EXPECT_EQ(source().currentPrice(u"ABC6").price, 5.0);
}

TEST_F(DataSourceTest, ASourceThatWantsToRestFiveTimesInARowRests) {
  m_first->failure = [] { throw HTTPException(u"status 429", 429); };
  m_second->price = {6.0, std::nullopt, {}};
  for (int i = 0; i < 7; ++i)
    source().currentPrice(u"ABC" + String::fromLong(i));
  EXPECT_EQ(m_first->asked.size(), 5u);
}

TEST_F(DataSourceTest, TheRequestsOfADayAreCounted) {
  m_first->perDay = 2;
  m_first->price = {5.0, std::nullopt, {}};
  m_second->price = {6.0, std::nullopt, {}};
  source().currentPrice(u"ABC");
  source().currentPrice(u"ABC");
  EXPECT_EQ(m_first->asked.size(), 1u) << "a price of a short time ago is not asked for again";
  source().currentPrice(u"XYZ");
  m_now += SourceLog::FRESH;
  EXPECT_EQ(source().currentPrice(u"ABC").price, 6.0);
  EXPECT_EQ(reasons(u"ABC"), u"First|resting|its 2 requests of the day are used up;");
  m_profile.setToday(Date(2026, 3, 4));
  m_first->failure = [] { throw HTTPException(u"no route"); };
  for (int i = 0; i < 3; ++i)
    EXPECT_EQ(source().currentPrice(u"ABC").price, 6.0);
  m_first->failure = nullptr;
  EXPECT_EQ(source().currentPrice(u"ABC").price, 5.0) << "what did not reach the source does not count";
}

TEST_F(DataSourceTest, TheRequestsOfADayOutliveTheProgram) {
  m_first->perDay = 2;
  m_first->price = {5.0, std::nullopt, {}};
  m_second->price = {6.0, std::nullopt, {}};
  const String file = m_profile.configFolder() + u"PriceRequests.xml";
  const auto newRun = [&] { m_log = std::make_shared<SourceLog>(file); };
  newRun();
  EXPECT_EQ(source().currentPrice(u"ABC").price, 5.0);
  newRun();
  EXPECT_EQ(source().currentPrice(u"DEF").price, 5.0);
  newRun();
  EXPECT_EQ(source().currentPrice(u"GHI").price, 6.0);
  EXPECT_EQ(reasons(u"GHI"), u"First|resting|its 2 requests of the day are used up;");
  m_profile.setToday(Date(2026, 3, 4));
  newRun();
  EXPECT_EQ(source().currentPrice(u"GHI").price, 5.0) << "another day";
}

TEST_F(DataSourceTest, WithoutADailyLimitNoRequestIsWritten) {
  m_first->price = {5.0, std::nullopt, {}};
  const String file = m_profile.configFolder() + u"PriceRequests.xml";
  m_log = std::make_shared<SourceLog>(file);
  source().currentPrice(u"ABC");
  EXPECT_FALSE(std::filesystem::exists(file.toUTF8()));
}

TEST_F(DataSourceTest, CountsThatCantBeReadDoNotStopARequest) {
  m_first->perDay = 1;
  m_first->price = {5.0, std::nullopt, {}};
  const String file = m_profile.configFolder() + u"PriceRequests.xml";
  TestProfile::writeFile(file, "<PriceRequests><Counted");
  m_log = std::make_shared<SourceLog>(file);
  EXPECT_EQ(source().currentPrice(u"ABC").price, 5.0);
}

TEST_F(DataSourceTest, SplitsOfSeveralDaysMultiply) {
  m_first->days.prices[Date(2026, 1, 5)] = {.close = 5};
  m_first->days.splits = {{Date(2026, 1, 5), 2.0}, {Date(2026, 1, 7), 3.0}};
  EXPECT_FALSE(m_log->splitBetween(u"ABC", Date(2026, 1, 1), Date(2026, 1, 9)));
  source().history(u"ABC", m_range);
  EXPECT_EQ(m_log->splitBetween(u"ABC", Date(2026, 1, 5), Date(2026, 1, 7)), 6.0);
  EXPECT_EQ(m_log->splitBetween(u"ABC", Date(2026, 1, 6), Date(2026, 1, 9)), 3.0);
  EXPECT_FALSE(m_log->splitBetween(u"ABC", Date(2026, 1, 8), Date(2026, 1, 9)));
  EXPECT_FALSE(m_log->splitBetween(u"XYZ", Date(2026, 1, 1), Date(2026, 1, 9)));
}

TEST_F(DataSourceTest, APinnedCodeIsAskedForAtItsSourceAloneAndByItsCodeThere) {
  m_pins = {{u"ABC", {u"Second", u"ABC.XT"}}};
  m_first->price = {5.0, std::nullopt, {}};
  m_second->price = {6.0, std::nullopt, {}};
  EXPECT_EQ(source().currentPrice(u"ABC").price, 6.0);
  EXPECT_EQ(m_second->asked, std::vector<String>{u"ABC.XT"});
  EXPECT_EQ(source().currentPrice(u"XYZ").price, 5.0);

  m_second->failure = refuse;
  EXPECT_THROW(source().currentPrice(u"ABC"), SourceException);
  m_pins = {{u"ABC", {u"Third", u"ABC"}}};
  EXPECT_EQ(messageOf([&] { source().currentPrice(u"ABC"); }),
            u"Third (refused): the code is for this source alone, which is off or does not offer this");
}

TEST_F(DataSourceTest, WithoutASourceForACodeTheFailureSaysSo) {
  m_first = std::make_shared<ScriptedSource>(u"First", u"XYZ");
  m_second = m_first;
  EXPECT_EQ(messageOf([&] { source().currentPrice(u"ABC"); }), u"no source that is on serves the code ABC");
}

TEST_F(DataSourceTest, TheFirstSearchThatFindsAnythingCounts) {
  const auto find = [](const char16_t* code) {
    return [code](std::vector<CodeSearchResult>& results) { results.push_back({code, u"", u""}); };
  };
  std::vector<CodeSearchResult> results;
  m_first->search_ = [](auto&) { refuse(); };
  m_second->search_ = find(u"ABC");
  source().search(u"abc", true, false, results);
  ASSERT_EQ(results.size(), 1u);
  EXPECT_EQ(results[0].code, u"ABC");
  m_second->perDay = 10;
  results.clear();
  messageOf([&] { source().search(u"abc", true, false, results, {}, DataSource::SearchFor::NameOfCode); });
  EXPECT_TRUE(results.empty()) << "the requests of a day are for prices";
  m_second->search_ = nullptr;
  EXPECT_EQ(messageOf([&] { source().search(u"abc", true, false, results); }),
            u"First (refused): status 403");
}

} // namespace
} // namespace Tallymoor
