#include "foundation/RunTimeSettings.h"
#include "market/GatewayTest.h"
#include "market/StockNames.h"
#include "support/TestHttpServer.h"

namespace Tallymoor {
namespace {

// The gateway's answers from the cache and from the network. For failures see TallymoorInternetFailureTest.

class TallymoorInternetPricesTest : public GatewayTest {
protected:
  /// A page of past prices with these rows.
  static std::string historyPage(const std::vector<std::vector<std::string>>& rows) {
    std::string html = "<html><body><table id=\"prices\">";
    for (const auto& row : rows) {
      html += "<tr>";
      for (const std::string& cell : row)
        html += "<td>" + cell + "</td>";
      html += "</tr>";
    }
    return html + "</table></body></html>";
  }
  static std::string searchPage(const std::vector<std::vector<std::string>>& rows) {
    std::string html = historyPage(rows);
    return html.replace(html.find("prices"), 6, "results");
  }
};

// --- Current prices

TEST_F(TallymoorInternetPricesTest, OfTwoRowsOfOneDayTheLaterCounts) {
  m_market.answerWith(Page::History,
                      "<html><table id=\"prices\">"
                      "<tr><td>10-Nov-06</td><td>5.5</td><td>4.5</td><td>5</td><td>1000</td></tr>"
                      "<tr><td>10-Nov-06</td><td>6.5</td><td>5.5</td><td>6</td><td>2000</td></tr>"
                      "<tr><td>9-Nov-06</td><td>4.5</td><td>3.5</td><td>4</td><td>1000</td></tr>"
                      "</table></html>");
  EXPECT_DOUBLE_EQ(gateway().historicalPrice(m_code, m_friday, true), 6.0);
  EXPECT_DOUBLE_EQ(gateway().getCachedPrice(m_code, m_friday, 1), 6.5);
}

TEST_F(TallymoorInternetPricesTest, ACloseWithAShortenedVolumeIsTheSourcesOwn) {
  m_market.answerWith(Page::History,
                      "<html><table id=\"prices\"><tr><td>15-Nov-06</td><td>5.5</td><td>4.5</td>"
                      "<td>5</td><td>1.2M</td></tr></table></html>");
  EXPECT_DOUBLE_EQ(gateway().historicalPrice(m_code, m_today, true), 5.0);
  EXPECT_EQ(gateway().cachedRows(m_code, m_today, m_today).begin()->second.volume, 1200000);
  gateway().currentPriceUpdated(m_code, 7.0);
  EXPECT_DOUBLE_EQ(gateway().getCachedPrice(m_code, m_today, 0), 5.0);
}

TEST_F(TallymoorInternetPricesTest, FetchesACurrentPrice) {
  m_market.setCurrentPrice(m_code, 12.34);
  EXPECT_DOUBLE_EQ(gateway().currentPrice(m_code, false, false), 12.34);
  EXPECT_EQ(m_market.requested(Page::Quote), std::vector<String>{m_code});
}

TEST_F(TallymoorInternetPricesTest, TheUpdaterLearnsTheNameOfACodeThatHasNone) {
  m_market.setCurrentPrice(m_code, 12.34);
  m_market.answerWith(Page::Search, searchPage({{(m_code + u"X").toUTF8(), "Another Company", "X"},
                                                {m_code.toUTF8(), "Alphabet Bricks", "X"}}));
  gateway().currentPrice(m_code, false, false);
  EXPECT_EQ(StockNames::nameOf(m_code), String()) << "a form's price asks for nothing else";
  updater().addCode(m_code);
  updater().runPass();
  EXPECT_EQ(StockNames::nameOf(m_code), String(u"Alphabet Bricks"));
  EXPECT_EQ(StockNames::nameOf(m_code + u"X"), String());
  updater().runPass();
  EXPECT_EQ(m_market.requested(Page::Search), std::vector<String>{m_code});
}

TEST_F(TallymoorInternetPricesTest, ANameThatIsNotFoundIsRequestedOncePerRunSilently) {
  m_market.setCurrentPrice(m_code, 12.34);
  m_market.refuse(Page::Search, 500);
  updater().addCode(m_code);
  updater().runPass();
  updater().runPass();
  EXPECT_EQ(m_market.requested(Page::Search), std::vector<String>{m_code});
  EXPECT_DOUBLE_EQ(updater().getCurrentPrice(m_code), 12.34);
  EXPECT_TRUE(StockNames::nameOf(m_code).empty());
  for (const String& text : m_user.texts(FakeUserInteraction::Kind::Status))
    EXPECT_FALSE(text.contains(u"failed")) << text.toUTF8();
  gateway().forgetFailures();
  updater().runPass();
  EXPECT_EQ(m_market.requested(Page::Search).size(), 2u);
}

TEST_F(TallymoorInternetPricesTest, TheNameOfAnIndexIsSearchedAmongIndexes) {
  m_market.setCurrentPrice(u"^AORD", 5000.0);
  m_market.answerWith(Page::Search, searchPage({{"^AORD", "All Ordinaries", "X"}}));
  updater().addCode(u"^AORD");
  updater().runPass();
  EXPECT_EQ(StockNames::nameOf(u"^AORD"), String(u"All Ordinaries"));
  EXPECT_TRUE(m_market.server().requests().back().target.ends_with("&kind=I"));
}

TEST_F(TallymoorInternetPricesTest, TakesTheUpdatersPriceIfWanted) {
  m_market.setCurrentPrice(m_code, 12.34);
  updater().addCode(m_code);
  updater().setCurrentPrice(m_code, 11.0);
  EXPECT_DOUBLE_EQ(gateway().currentPrice(m_code, true, false), 11.0);
  EXPECT_TRUE(m_market.requested(Page::Quote).empty());
  EXPECT_DOUBLE_EQ(gateway().currentPrice(m_code, false, false), 12.34);
}

TEST_F(TallymoorInternetPricesTest, AnUpdaterPriceOfZeroGoesToTheNetwork) {
  m_market.setCurrentPrice(m_code, 12.34);
  updater().addCode(m_code);
  EXPECT_DOUBLE_EQ(gateway().currentPrice(m_code, true, false), 12.34);
}

TEST_F(TallymoorInternetPricesTest, ACodeUnknownToTheUpdaterGoesToTheNetwork) {
  m_market.setCurrentPrice(m_code, 12.34);
  EXPECT_DOUBLE_EQ(gateway().currentPrice(m_code, true, false), 12.34);
}

TEST_F(TallymoorInternetPricesTest, TheUpdatersPriceIsThereOffline) {
  updater().addCode(m_code);
  updater().setCurrentPrice(m_code, 11.0);
  gateway().goOffline();
  EXPECT_DOUBLE_EQ(gateway().currentPrice(m_code, true, false), 11.0);
}

TEST_F(TallymoorInternetPricesTest, AQuoteRequestHasNoDates) {
  TestProfile::writeFile(
      m_profile.configFolder() + u"CurrentPriceLocators.xml",
      "<CurrentPriceLocators active=\"x\" version=\"1\"><CurrentPrice domain=\"x\"><URLLocator><URLPart>" +
          m_market.server().url("/quote?code=") +
          "</URLPart><URLPart type=\"Code\"/><URLPart>&amp;v=</URLPart><URLPart type=\"Country\"/>"
          "<URLPart type=\"IndexOrShare\"/><URLPart type=\"StartDay\"/><URLPart type=\"StartMonth\"/>"
          "<URLPart type=\"StartYear\"/><URLPart type=\"EndDay\"/><URLPart type=\"EndMonth\"/>"
          "<URLPart type=\"EndYear\"/></URLLocator><TagLocator format=\"Float\"><TagFind>"
          "<TagSearch tagname=\"div\" "
          "attr=\"id\"/></TagFind></TagLocator></CurrentPrice></CurrentPriceLocators>");
  m_market.setCurrentPrice(m_code, 12.34);
  EXPECT_DOUBLE_EQ(gateway().currentPrice(m_code, false, false), 12.34);
  EXPECT_EQ(m_market.server().requests().back().target, "/quote?code=ABC.AX&v=USS");
}

// --- Past prices

TEST_F(TallymoorInternetPricesTest, ADateInTheCacheIsAnsweredOffline) {
  m_market.setHistory(m_code, Date(2006, 1, 2), m_friday, 5.0);
  EXPECT_DOUBLE_EQ(gateway().historicalPrice(m_code, m_friday, true), 5.0);
  gateway().goOffline();
  EXPECT_DOUBLE_EQ(gateway().historicalPrice(m_code, m_friday, true), 5.0);
  EXPECT_DOUBLE_EQ(gateway().historicalPrice(m_code, m_friday, false), 5.0);
  EXPECT_EQ(m_market.requested(Page::History).size(), 1u);
}

TEST_F(TallymoorInternetPricesTest, ACachedDateIsAnsweredInTheNextRun) {
  m_market.setDay(m_code, m_friday, 5.25, 5.5, 5.0, 700);
  gateway().historicalPrice(m_code, m_friday, true);
  m_scope.restart();
  gateway().goOffline();
  EXPECT_DOUBLE_EQ(gateway().historicalPrice(m_code, m_friday, true), 5.25);
  EXPECT_DOUBLE_EQ(gateway().getCachedPrice(m_code, m_friday, 1), 5.5);
}

TEST_F(TallymoorInternetPricesTest, ASaturdayHasTheFridaysCloseAndNoVolume) {
  m_market.setDay(m_code, m_friday, 5.0);
  m_market.setDay(m_code, Date(2006, 11, 13), 6.0);
  const Date saturday(2006, 11, 11);
  EXPECT_DOUBLE_EQ(gateway().historicalPrice(m_code, saturday, true), 5.0);
  EXPECT_DOUBLE_EQ(gateway().getCachedPrice(m_code, saturday, 1), 0.0);
  EXPECT_DOUBLE_EQ(gateway().getCachedPrice(m_code, saturday, 2), 0.0);
  // Volume 0 means that a current price may replace it.
  Clock::setToday(saturday.julianDay());
  gateway().currentPriceUpdated(m_code, 5.5);
  EXPECT_DOUBLE_EQ(gateway().getCachedPrice(m_code, saturday, 0), 5.5);
  Clock::setToday(m_friday.julianDay());
  gateway().currentPriceUpdated(m_code, 5.5);
  EXPECT_DOUBLE_EQ(gateway().getCachedPrice(m_code, m_friday, 0), 5.0);
}

TEST_F(TallymoorInternetPricesTest, DaysBeforeTheFirstFetchedRowStayEmpty) {
  m_market.setDay(m_code, m_friday, 5.0);
  gateway().historicalPrice(m_code, Date(2006, 11, 13), true);
  EXPECT_FALSE(gateway().hasCachedPrice(m_code, Date(2006, 11, 9)));
  EXPECT_TRUE(gateway().hasCachedPrice(m_code, m_today));
  EXPECT_FALSE(gateway().hasCachedPrice(m_code, Date(2006, 11, 16)));
}

TEST_F(TallymoorInternetPricesTest, AsksForAsManyDaysAsAPageHolds) {
  m_market.setMaxEntries(100);
  m_market.setHistory(m_code, Date(2005, 1, 3), m_today, 5.0);
  gateway().historicalPrice(m_code, Date(2006, 6, 30), true);
  gateway().historicalPrice(m_code, Date(2005, 2, 1), false);
  const auto ranges = m_market.requestedRanges();
  ASSERT_EQ(ranges.size(), 2u);
  EXPECT_EQ(ranges[0].start, Date(2006, 2, 10));
  EXPECT_EQ(ranges[0].end, Date(2006, 6, 30));
  EXPECT_EQ(ranges[1].start, Date(2005, 2, 1));
  EXPECT_EQ(ranges[1].end, Date(2005, 6, 21));
}

// A caller that goes back day by day requests the next page from the day before the last page's start.
TEST_F(TallymoorInternetPricesTest, APageThatBeginsOnASaturdayHasTheFridaysClose) {
  m_market.setMaxEntries(100);
  m_market.setHistory(m_code, Date(2005, 1, 3), m_today, [](const Date& day) { return 100.0 + day.day(); });
  const Date saturday(2006, 6, 3);
  gateway().historicalPrice(m_code, saturday.plusDays(-141), false); // A page up to Friday.
  ASSERT_TRUE(gateway().hasCachedPrice(m_code, saturday.plusDays(-1)));
  ASSERT_FALSE(gateway().hasCachedPrice(m_code, saturday));
  EXPECT_DOUBLE_EQ(gateway().historicalPrice(m_code, saturday, false), 102.0);
  EXPECT_DOUBLE_EQ(gateway().historicalPrice(m_code, saturday.plusDays(1), false), 102.0);
  EXPECT_DOUBLE_EQ(gateway().historicalPrice(m_code, saturday.plusDays(2), false), 105.0);
  EXPECT_EQ(m_market.requestedRanges().size(), 2u);
}

TEST_F(TallymoorInternetPricesTest, AFromRequestCloseToTodayReachesBackAFortnight) {
  m_market.setHistory(m_code, Date(2006, 1, 2), m_today, 5.0);
  gateway().historicalPrice(m_code, Date(2006, 11, 13), false);
  const auto ranges = m_market.requestedRanges();
  ASSERT_EQ(ranges.size(), 1u);
  EXPECT_EQ(ranges[0].start, Date(2006, 11, 1));
  EXPECT_EQ(ranges[0].end, m_today);
}

TEST_F(TallymoorInternetPricesTest, MonthsInARequestCountFromZero) {
  m_market.setHistory(m_code, Date(2006, 1, 2), m_today, 5.0);
  gateway().historicalPrice(m_code, Date(2006, 11, 13), false);
  EXPECT_EQ(
      m_market.server().requests().back().target,
      "/history?code=ABC.AX&startDay=1&startMonth=10&startYear=2006&endDay=15&endMonth=10&endYear=2006");
}

TEST_F(TallymoorInternetPricesTest, ShowsWhatItFetchesUnderAWaitCursor) {
  m_market.setHistory(m_code, Date(2006, 1, 2), m_today, 5.0);
  gateway().historicalPrice(m_code, m_friday, true);
  gateway().historicalPrice(m_code, Date(2006, 11, 9), false); // Cached by now.
  EXPECT_EQ(statuses(),
            (std::vector<String>{u"updating historical price for ABC.AX for days up to " + local(m_friday)}));
  EXPECT_EQ(m_user.calls(Kind::BeginWait).size(), 1u);
  EXPECT_EQ(m_user.openWaits(), 0);
}

TEST_F(TallymoorInternetPricesTest, ShowsARequestFromADay) {
  m_market.setHistory(m_code, Date(2006, 1, 2), m_today, 5.0);
  gateway().historicalPrice(m_code, Date(2006, 1, 2), false);
  EXPECT_EQ(statuses(), (std::vector<String>{u"updating historical price for ABC.AX for days from " +
                                             local(Date(2006, 1, 2))}));
}

TEST_F(TallymoorInternetPricesTest, ABackgroundPassShowsNothing) {
  m_market.setHistory(m_code, Date(2006, 1, 2), m_today, 5.0);
  m_market.addListing(m_code, u"ABC Limited", u"Australia");
  const BackgroundPassScope pass;
  gateway().historicalPrice(m_code, m_friday, true);
  gateway().stockSearch(u"abc", true, false);
  EXPECT_TRUE(m_user.calls().empty());
}

TEST_F(TallymoorInternetPricesTest, RowsWithoutADateOrACloseAreLeftOut) {
  m_market.answerWith(Page::History,
                      historyPage({{"13-Nov-06", "1,006.5", "1,005.5", "1,006.00", "1,234,567"},
                                   {"12-Nov-06", "", "", "", "Dividend"},
                                   {"", "1", "1", "9", "5"},
                                   {"10-Nov-06", "1,005.5", "1,004.5", "1,005.00", "99999999999"}}));
  EXPECT_DOUBLE_EQ(gateway().historicalPrice(m_code, Date(2006, 11, 13), true), 1006.0);
  EXPECT_DOUBLE_EQ(gateway().getCachedPrice(m_code, Date(2006, 11, 13), 1), 1006.5);
  EXPECT_DOUBLE_EQ(gateway().getCachedPrice(m_code, Date(2006, 11, 13), 2), 1005.5);
  EXPECT_DOUBLE_EQ(gateway().getCachedPrice(m_code, Date(2006, 11, 12), 0), 1005.0);
  EXPECT_DOUBLE_EQ(gateway().getCachedPrice(m_code, m_friday, 0), 1005.0);
  gateway().save();
  const std::string file = TestProfile::readFile(m_profile.cacheFolder() + u"PriceCache.ABC.AX.xml");
  EXPECT_NE(file.find("<Constant>1234567</Constant>"), std::string::npos);
  EXPECT_NE(file.find("<Constant>2147483647</Constant>"), std::string::npos);
}

TEST_F(TallymoorInternetPricesTest, DaysLongAgoAreIgnoredAndDaysToComeAskedAbout) {
  // The short years 70 to 99 are in the last century, and pages use no others.
  m_market.answerWith(Page::History, historyPage({{"3-Jan-1802", "9", "1", "7.00", "1"},
                                                  {"17-Nov-06", "9", "1", "8.00", "1"},
                                                  {"16-Nov-06", "9", "1", "6.00", "1"},
                                                  {"10-Nov-06", "9", "1", "5.00", "1"}}));
  EXPECT_DOUBLE_EQ(gateway().historicalPrice(m_code, m_today, true), 5.0);
  EXPECT_FALSE(gateway().hasCachedPrice(m_code, Date(2006, 11, 16))); // Tomorrow.
  EXPECT_FALSE(gateway().hasCachedPrice(m_code, Date(2006, 11, 17)));
  EXPECT_FALSE(gateway().hasCachedPrice(m_code, Date(2006, 11, 9)));
  const PriceQuarantine::Prices doubtful = gateway().doubtfulPrices().at(m_code);
  ASSERT_EQ(doubtful.size(), 1u);
  EXPECT_EQ(doubtful.begin()->first, Date(2006, 11, 17)) << "the clock of an exchange may be a day ahead";
  EXPECT_EQ(doubtful.begin()->second.reason, DoubtReason::Future);
  EXPECT_DOUBLE_EQ(doubtful.begin()->second.value.close, 8.0);
}

TEST_F(TallymoorInternetPricesTest, TheViewDateIsTodayInARange) {
  m_market.setHistory(m_code, Date(2006, 1, 2), m_today, 5.0);
  Date::setFixedDate(Date(2006, 3, 15));
  gateway().historicalPrice(m_code, Date(2006, 3, 10), false);
  EXPECT_EQ(m_market.requestedRanges().at(0).start, Date(2006, 3, 1));
  EXPECT_EQ(m_market.requestedRanges().at(0).end, Date(2006, 3, 15));
}

TEST_F(TallymoorInternetPricesTest, ARefreshFetchesWhatIsCached) {
  m_market.setHistory(m_code, Date(2006, 1, 2), m_today, 5.0);
  EXPECT_DOUBLE_EQ(gateway().historicalPrice(m_code, m_today, true), 5.0);
  m_market.setHistory(m_code, Date(2006, 1, 2), m_today, 5.04);
  EXPECT_DOUBLE_EQ(gateway().historicalPrice(m_code, m_today, true), 5.0);
  gateway().completeHistory({{m_code, m_friday, m_friday, HistoryNeed::Kind::Refresh}}, nullptr);
  EXPECT_DOUBLE_EQ(gateway().historicalPrice(m_code, m_friday, true), 5.04);
}

// --- The cache

TEST_F(TallymoorInternetPricesTest, ColumnsOfACachedDay) {
  m_market.setDay(m_code, m_friday, 5.0, 6.0, 4.0, 100);
  gateway().historicalPrice(m_code, m_friday, true);
  EXPECT_DOUBLE_EQ(gateway().getCachedPrice(m_code, m_friday, 0), 5.0);
  EXPECT_DOUBLE_EQ(gateway().getCachedPrice(m_code, m_friday, 1), 6.0);
  EXPECT_DOUBLE_EQ(gateway().getCachedPrice(m_code, m_friday, 2), 4.0);
  EXPECT_DOUBLE_EQ(gateway().getCachedPrice(m_code, m_friday, 3), 5.0);
  EXPECT_DOUBLE_EQ(gateway().getCachedPrice(m_code, m_friday, -1), 5.0);
}

TEST_F(TallymoorInternetPricesTest, KnowsWhatIsCached) {
  EXPECT_FALSE(gateway().hasCachedHistory(m_code));
  EXPECT_FALSE(gateway().hasCachedPrice(m_code, m_friday));
  EXPECT_EQ(gateway().cachedClose(m_code, m_friday), std::nullopt);
  gateway().setCachedPrice(m_code, m_friday, 5.0);
  EXPECT_TRUE(gateway().hasCachedHistory(m_code));
  EXPECT_TRUE(gateway().hasCachedPrice(m_code, m_friday));
  EXPECT_EQ(gateway().cachedClose(m_code, m_friday), 5.0);
  EXPECT_FALSE(gateway().hasCachedPrice(m_code, m_today));
  EXPECT_TRUE(m_market.server().requests().empty());
}

TEST_F(TallymoorInternetPricesTest, APriceTypedForTodayIsTheCurrentPrice) {
  updater().addCode(m_code);
  gateway().setCachedPrice(m_code, m_friday, 5.0);
  EXPECT_DOUBLE_EQ(updater().getCurrentPrice(m_code), 0.0);
  gateway().setCachedPrice(m_code, m_today, 6.0);
  EXPECT_DOUBLE_EQ(updater().getCurrentPrice(m_code), 6.0);
  EXPECT_DOUBLE_EQ(gateway().getCachedPrice(m_code, m_today, 0), 6.0);
}

TEST_F(TallymoorInternetPricesTest, APriceTypedForTheViewDateIsNoCurrentPrice) {
  updater().addCode(m_code);
  Date::setFixedDate(m_friday);
  gateway().setCachedPrice(m_code, m_friday, 5.0);
  EXPECT_DOUBLE_EQ(updater().getCurrentPrice(m_code), 0.0);
  EXPECT_DOUBLE_EQ(gateway().getCachedPrice(m_code, m_friday, 0), 5.0);
}

TEST_F(TallymoorInternetPricesTest, ACurrentPriceGoesIntoTodaysRow) {
  gateway().currentPriceUpdated(m_code, 5.5);
  EXPECT_DOUBLE_EQ(gateway().getCachedPrice(m_code, m_today, 0), 5.5);
  gateway().markBadCode(m_code);
  gateway().currentPriceUpdated(m_code, 6.5);
  EXPECT_DOUBLE_EQ(gateway().getCachedPrice(m_code, m_today, 0), 5.5);
}

TEST_F(TallymoorInternetPricesTest, ClearForgetsAndDeletes) {
  gateway().setCachedPrice(m_code, m_friday, 5.0);
  gateway().save();
  ASSERT_TRUE(TestProfile::fileExists(m_profile.cacheFolder() + u"PriceCache.ABC.AX.xml"));
  gateway().clear();
  EXPECT_FALSE(TestProfile::fileExists(m_profile.cacheFolder() + u"PriceCache.ABC.AX.xml"));
  EXPECT_FALSE(gateway().hasCachedPrice(m_code, m_friday));
}

TEST_F(TallymoorInternetPricesTest, ManyLookUpsAgreeWithTheRows) {
  m_market.setMaxEntries(2000);
  m_market.setHistory(m_code, Date(2000, 1, 3), m_today,
                      [](const Date& day) { return day.julianDay() % 100 + 100; });
  gateway().historicalPrice(m_code, Date(2000, 1, 3), false);
  double sum = 0.0;
  double expected = 0.0;
  for (Date day(2000, 1, 3); day <= m_today; day.addDays(1)) {
    sum += gateway().cachedClose(m_code, day).value_or(0.0);
    expected += (day.isWeekend() ? day.lastFriday() : day).julianDay() % 100 + 100;
  }
  EXPECT_DOUBLE_EQ(sum, expected);
}

// --- Delisted codes

TEST_F(TallymoorInternetPricesTest, AMarkOfADelistedCodeLastsUntilItIsCleared) {
  gateway().markBadCode(m_code);
  EXPECT_TRUE(gateway().isBadCode(m_code));
  m_scope.restart();
  EXPECT_EQ(gateway().badCodes(), std::vector<String>{m_code});
  EXPECT_TRUE(gateway().isBadCode(m_code));
  gateway().clearBadCode(m_code);
  EXPECT_TRUE(gateway().badCodes().empty());
  m_scope.restart();
  EXPECT_FALSE(gateway().isBadCode(m_code));
}

TEST_F(TallymoorInternetPricesTest, ADelistedCodeStillHasItsCachedPrices) {
  gateway().setCachedPrice(m_code, m_friday, 5.0);
  gateway().markBadCode(m_code);
  EXPECT_DOUBLE_EQ(gateway().historicalPrice(m_code, m_friday, true), 5.0);
}

// --- Searches

TEST_F(TallymoorInternetPricesTest, SearchesByName) {
  m_market.addListing(u"ABC.AX", u"Alphabet Soup", u"Australia");
  m_market.addListing(u"XYZ", u"Soup Kitchens", u"New York");
  m_market.addListing(u"NON", u"Nonsense", u"New York");
  const auto results = gateway().stockSearch(u"soup", true, false);
  ASSERT_EQ(results.size(), 2u);
  EXPECT_EQ(results[0].code, String(u"ABC.AX"));
  EXPECT_EQ(results[0].name, String(u"Alphabet Soup"));
  EXPECT_EQ(results[0].market, String(u"Australia"));
  EXPECT_EQ(results[1].code, String(u"XYZ"));
  EXPECT_EQ(statuses(), std::vector<String>{u"searching for stock codes matching soup"});
  EXPECT_EQ(m_user.calls(Kind::BeginWait).size(), 1u);
  EXPECT_EQ(m_user.openWaits(), 0);
}

TEST_F(TallymoorInternetPricesTest, ASearchWithoutMatchesIsEmpty) {
  EXPECT_TRUE(gateway().stockSearch(u"soup", true, false).empty());
  EXPECT_TRUE(questions().empty());
}

TEST_F(TallymoorInternetPricesTest, ASearchSendsTheTextAndTheMarket) {
  gateway().stockSearch(u"a&b", true, false);
  gateway().stockSearch(u"x", false, true);
  const auto requests = m_market.server().requests();
  ASSERT_EQ(requests.size(), 2u);
  EXPECT_EQ(requests[0].target, "/search?code=a%26b&country=ALL&kind=S");
  EXPECT_EQ(requests[1].target, "/search?code=x&country=US&kind=I");
}

TEST_F(TallymoorInternetPricesTest, AMissingMarketIsDerivedFromTheCode) {
  m_market.answerWith(Page::Search, searchPage({{"A.AX", "a", "N/A"},
                                                {"B.VX", "b", "N/A"},
                                                {"C.MC", "c", "N/A"},
                                                {"D.SI", "d", "N/A"},
                                                {"E.TA", "e", "N/A"},
                                                {"F.SW", "f", "N/A"},
                                                {"G.AXE.SW", "g", "N/A"},
                                                {"H.XX", "h", "N/A"},
                                                {"I.AX", "i", "Sydney"}}));
  std::vector<String> markets;
  for (const CodeSearchResult& result : gateway().stockSearch(u"any", true, false))
    markets.push_back(result.market);
  EXPECT_EQ(markets, (std::vector<String>{u"Australia", u"Austria", u"Spain", u"Singapore", u"Israel",
                                          u"Switzerland", u"Australia", u"N/A", u"Sydney"}));
}

TEST_F(TallymoorInternetPricesTest, NamesAreReadUnchangedFromThePage) {
  m_market.answerWith(Page::Search,
                      searchPage({{"A", "Bricks &amp; Mortar", "X"},
                                  {"B", "&#66;&#x62;&#X42; &lt;&gt;&quot;&apos;&nbsp;!", "X"},
                                  {"C", "&#128200; &amp;amp; R&D; &#0; &#xD800; &#1114112; &#; &", "X"}}));
  std::vector<String> names;
  for (const CodeSearchResult& result : gateway().stockSearch(u"any", true, false))
    names.push_back(result.name);
  EXPECT_EQ(names, (std::vector<String>{u"Bricks & Mortar", u"BbB <>\"' !",
                                        u"\U0001F4C8 &amp; R&D; &#0; &#xD800; &#1114112; &#; &"}));
}

TEST_F(TallymoorInternetPricesTest, RowsWithoutACodeOrWithAMarkedCodeAreIgnored) {
  m_market.answerWith(Page::Search,
                      searchPage({{"", "none", "X"}, {"E:ABC", "marked", "X"}, {"AE:C", "fine", "X"}}));
  const auto results = gateway().stockSearch(u"any", true, false);
  ASSERT_EQ(results.size(), 1u);
  EXPECT_EQ(results[0].code, String(u"AE:C"));
}

TEST_F(TallymoorInternetPricesTest, TheRecordsHearThatATypedPriceIsGone) {
  gateway().setCachedPrice(m_code, m_friday, 7.0);
  gateway().goOffline();
  const RecordingObserver records(PriceUpdater::Rank::Records);
  gateway().removeTypedPrice(m_code, m_friday);
  EXPECT_EQ(records.heard(), std::vector<String>{u"close ABC.AX 10/11/2006 0.0000"});
  gateway().setCachedPrice(m_code, m_friday.plusDays(-1), 6.0);
  gateway().setCachedPrice(m_code, m_friday, 7.0);
  gateway().removeTypedPrice(m_code, m_friday);
  EXPECT_EQ(records.heard().back(), u"close ABC.AX 10/11/2006 6.0000") << "the last one before it";
}

} // namespace
} // namespace Tallymoor
