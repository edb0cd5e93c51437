#include "foundation/RunTimeSettings.h"
#include "market/GatewayTest.h"
#include "support/TestHttpServer.h"

namespace Tallymoor {
namespace {

// Failing fetches: the questions asked, the effect of the answers and the result for the caller.

class TallymoorInternetFailureTest : public GatewayTest {
protected:
  String accessQuestion(const Date& start, const Date& end) const {
    return u"There was a problem accessing the internet for code\nABC.AX between " + local(start) + u" and " +
           local(end) + u". \nThe price source answered with status 503.\nDo you want to retry?";
  }
  static String delistedQuestion(const String& code, const String& cause) {
    return u"Tallymoor cannot find any internet data for the code\n" + code + u". It may be delisted. \n" +
           cause + u"\nDo you want to treat this share as delisted to avoid price queries?";
  }
  void failHistory(const String& code, const Date& day) const {
    EXPECT_THROW(gateway().historicalPrice(code, day, true), Exception)
        << code.toUTF8() << " on " << local(day).toUTF8();
  }
  std::size_t numFetches() const { return m_market.requested(Page::History).size(); }

  const String m_quoteQuestion =
      u"There was a problem accessing the internet to get the current price for\n"
      u"ABC.AX. \nThe price source answered with status 500.\nDo you want to retry?";
  const String m_searchQuestion =
      u"There was a problem accessing the internet to search for\nsoup. \nDo you want to retry?";
  const String m_unknownQuestion =
      delistedQuestion(m_code, u"The page that the price source sent can't be read.\n"
                               u"You may need an update to support new internet data.");
  // Start of a request that ends on the Friday: a page of 200 trading days covers 280 calendar days.
  const Date m_start{2006, 2, 3};
};

// --- Current prices

TEST_F(TallymoorInternetFailureTest, NoCurrentPriceOffline) {
  gateway().goOffline();
  EXPECT_EQ(failureOf<HTTPException>([&] { gateway().currentPrice(m_code, true, false); }),
            String(u"TallymoorInternet::currentPrice - internet offline."));
  EXPECT_TRUE(questions().empty());
}

TEST_F(TallymoorInternetFailureTest, ARefusedQuoteAsksOnceAndFails) {
  m_market.refuse(Page::Quote, 500);
  m_user.answerQuestion(false);
  for (int again = 0; again < 3; ++again)
    try {
      gateway().currentPrice(m_code, false, false);
      ADD_FAILURE();
    } catch (const HTTPException& failure) {
      EXPECT_EQ(failure.code(), 500u);
    }
  EXPECT_EQ(questions(), std::vector<String>{m_quoteQuestion});
  EXPECT_TRUE(gateway().isOnline());
}

TEST_F(TallymoorInternetFailureTest, AQuoteThatIsNotFoundAsksNoQuestion) {
  for (const int status : {404, 410}) {
    m_market.refuse(Page::Quote, status);
    EXPECT_THROW(gateway().currentPrice(m_code, false, false), HTTPException);
  }
  EXPECT_TRUE(questions().empty());
}

TEST_F(TallymoorInternetFailureTest, ARetryOfAQuoteIsACompleteAttempt) {
  m_market.setCurrentPrice(m_code, 12.34);
  m_market.refuse(Page::Quote, 500);
  m_user.answerQuestion(true);
  m_user.beforeAnswer = [this] { m_market.refuse(Page::Quote, 200); };
  EXPECT_DOUBLE_EQ(gateway().currentPrice(m_code, false, false), 12.34);
  EXPECT_EQ(m_market.requested(Page::Quote).size(), 2u);
}

TEST_F(TallymoorInternetFailureTest, ARetryThatFailsIsNotFollowedByAnotherQuestion) {
  m_market.refuse(Page::Quote, 500);
  m_user.answerQuestion(true);
  EXPECT_THROW(gateway().currentPrice(m_code, false, false), HTTPException);
  EXPECT_EQ(questions().size(), 1u);
  EXPECT_EQ(m_market.requested(Page::Quote).size(), 2u);
}

TEST_F(TallymoorInternetFailureTest, TheQuestionNamesTheReasonOfABrokenConnection) {
  m_market.server().stop();
  m_user.answerQuestion(false);
  EXPECT_THROW(gateway().currentPrice(m_code, false, false), HTTPException);
  EXPECT_TRUE(questions().at(0).contains(u"\nCouldn't connect to server.\n")) << questions().at(0).toUTF8();
}

TEST_F(TallymoorInternetFailureTest, AQuoteWithoutANumberIsNoPrice) {
  for (const char* const text : {"N/A", "-", "", "&nbsp;"}) {
    m_market.answerWith(Page::Quote, std::string("<html><div id=\"price\">") + text + "</div></html>");
    EXPECT_EQ(gateway().currentPrice(m_code, false, false), 0.0) << text;
  }
  EXPECT_TRUE(m_user.calls().empty());
  m_market.answerWith(Page::Quote, "<html><div id=\"price\">3200p</div></html>");
  EXPECT_EQ(failureOf<HTMLException>([&] { gateway().currentPrice(m_code, false, false); }),
            String(u"TallymoorInternet - no number: 3200p"));
}

TEST_F(TallymoorInternetFailureTest, ARetryOfAQuoteTakesThePriceThatTheUpdaterHasByThen) {
  updater().addCode(m_code);
  m_market.refuse(Page::Quote, 500);
  m_user.answerQuestion(true);
  m_user.beforeAnswer = [this] { updater().setCurrentPrice(m_code, 9.0); };
  EXPECT_DOUBLE_EQ(gateway().currentPrice(m_code, true, false), 9.0);
}

TEST_F(TallymoorInternetFailureTest, ASilentQuoteAsksNothing) {
  m_market.refuse(Page::Quote, 500);
  EXPECT_THROW(gateway().currentPrice(m_code, false, true), HTTPException);
  EXPECT_TRUE(m_user.calls().empty());
}

TEST_F(TallymoorInternetFailureTest, ABackgroundPassIsAskedNothingForAQuote) {
  m_market.refuse(Page::Quote, 500);
  const BackgroundPassScope pass;
  EXPECT_THROW(gateway().currentPrice(m_code, false, false), HTTPException);
  EXPECT_TRUE(m_user.calls().empty());
}

TEST_F(TallymoorInternetFailureTest, AnUnreadableQuoteGoesStraightToTheCaller) {
  EXPECT_THROW(gateway().currentPrice(m_code, false, false), HTMLException);
  EXPECT_TRUE(m_user.calls().empty());
}

TEST_F(TallymoorInternetFailureTest, AQuoteMustBeAFloat) {
  const String path = m_profile.configFolder() + u"CurrentPriceLocators.xml";
  std::string text = TestProfile::readFile(path);
  text.replace(text.find("Float"), 5, "Long");
  TestProfile::writeFile(path, text);
  m_market.setCurrentPrice(m_code, 12.34);
  EXPECT_EQ(failureOf<HTMLException>([&] { gateway().currentPrice(m_code, false, false); }),
            String(u"TallymoorInternet::CurrentPrice - locator format not a double!"));
}

// --- Past prices

TEST_F(TallymoorInternetFailureTest, NoUncachedPastPriceOffline) {
  gateway().goOffline();
  EXPECT_EQ(failureOf<HTTPException>([&] { gateway().historicalPrice(m_code, m_friday, true); }),
            String(u"TallymoorInternet::historicalPrice - internet offline."));
  EXPECT_TRUE(m_user.calls().empty());
}

TEST_F(TallymoorInternetFailureTest, ADelistedCodeIsNotFetched) {
  gateway().markBadCode(m_code);
  const String message = u"TallymoorInternet::historicalPrice - code does not exist(cached): ABC.AX";
  EXPECT_EQ(failureOf<Exception>([&] { gateway().historicalPrice(m_code, m_friday, true); }), message);
  gateway().goOffline();
  EXPECT_EQ(failureOf<Exception>([&] { gateway().historicalPrice(m_code, m_friday, true); }), message);
  EXPECT_TRUE(m_market.server().requests().empty());
}

TEST_F(TallymoorInternetFailureTest, ARefusedHistoryAsksOnceAndIsRememberedForItsDays) {
  m_market.refuse(Page::History, 503);
  m_user.answerQuestion(false);
  for (const Date& day : {m_friday, m_friday, m_start, m_friday.plusDays(-100)})
    EXPECT_THROW(gateway().historicalPrice(m_code, day, true), HTTPException);
  EXPECT_EQ(questions(), (std::vector<String>{accessQuestion(m_start, m_friday)}));
  EXPECT_EQ(numFetches(), 1u);
  failHistory(m_code, m_start.plusDays(-1));
  EXPECT_EQ(numFetches(), 2u) << "another range is another request";
  EXPECT_EQ(questions().size(), 1u);
  EXPECT_TRUE(gateway().isOnline());
  EXPECT_EQ(m_user.openWaits(), 0);
}

TEST_F(TallymoorInternetFailureTest, AfterAnAnswerOfNoNothingIsAskedUntilTheUserRefreshes) {
  m_market.refuse(Page::History, 503);
  m_user.answerQuestion(false);
  for (const char16_t* const code : {u"ABC.AX", u"DEF.AX", u"GHI.AX"})
    failHistory(code, m_friday);
  m_market.refuse(Page::Quote, 500);
  EXPECT_THROW(gateway().currentPrice(u"DEF.AX", false, false), HTTPException);
  EXPECT_EQ(questions().size(), 1u);
  EXPECT_EQ(numFetches(), 3u) << "each code has its try";
  gateway().forgetFailures();
  m_user.answerQuestion(false);
  failHistory(m_code, m_friday);
  EXPECT_EQ(questions().size(), 2u);
  EXPECT_EQ(numFetches(), 4u);
}

TEST_F(TallymoorInternetFailureTest, GoingOnlineNewLocatorsAndAnEmptyCacheAllowAnotherTry) {
  m_market.addListing(u"TEST.AX", u"Test", u"Australia"); // Going online searches for it.
  m_market.refuse(Page::History, 503);
  const std::vector<std::function<void()>> occasions{[] { EXPECT_TRUE(gateway().reconnect()); },
                                                     [] { TallymoorInternet::reset(); },
                                                     [] { gateway().clear(); }};
  std::size_t tries = 0;
  for (const auto& happens : occasions) {
    happens();
    m_user.answerQuestion(false);
    failHistory(m_code, m_friday);
    failHistory(m_code, m_friday);
    EXPECT_EQ(numFetches(), ++tries);
    EXPECT_EQ(questions().size(), tries);
  }
}

TEST_F(TallymoorInternetFailureTest, AFailureInTheBackgroundIsAskedAboutWhenTheUserNeedsThePrice) {
  m_market.refuse(Page::History, 503);
  gateway().completeHistory({{m_code, m_friday, m_friday, HistoryNeed::Kind::UpTo}}, nullptr);
  EXPECT_TRUE(questions().empty());
  m_user.answerQuestion(true);
  m_user.beforeAnswer = [this] {
    m_market.setDay(m_code, m_friday, 5.0);
    m_market.refuse(Page::History, 200);
  };
  EXPECT_DOUBLE_EQ(gateway().historicalPrice(m_code, m_friday, true), 5.0);
  EXPECT_EQ(numFetches(), 2u);
}

TEST_F(TallymoorInternetFailureTest, ARetryOfAHistoryIsACompleteAttempt) {
  m_market.setDay(m_code, m_friday, 5.0);
  m_market.refuse(Page::History, 503);
  m_user.answerQuestion(true);
  m_user.beforeAnswer = [this] { m_market.refuse(Page::History, 200); };
  EXPECT_DOUBLE_EQ(gateway().historicalPrice(m_code, m_friday, true), 5.0);
  EXPECT_EQ(questions(), (std::vector<String>{accessQuestion(m_start, m_friday)}));
  EXPECT_EQ(statuses().size(), 2u);
  EXPECT_EQ(m_user.openWaits(), 0);
}

TEST_F(TallymoorInternetFailureTest, ARetryOfAHistoryIsAnsweredByWhatIsCachedByThen) {
  m_market.refuse(Page::History, 503);
  m_user.answerQuestion(true);
  m_user.beforeAnswer = [this] { gateway().setCachedPrice(m_code, m_friday, 7.0); };
  EXPECT_DOUBLE_EQ(gateway().historicalPrice(m_code, m_friday, true), 7.0);
  EXPECT_EQ(m_market.requested(Page::History).size(), 1u);
}

TEST_F(TallymoorInternetFailureTest, AnUnreadableHistoryAsksOnceWhetherTheShareIsDelisted) {
  m_user.answerQuestion(false);
  for (int again = 0; again < 3; ++again)
    EXPECT_THROW(gateway().historicalPrice(m_code, m_friday, true), HTMLException);
  EXPECT_EQ(questions(), std::vector<String>{m_unknownQuestion});
  EXPECT_EQ(numFetches(), 1u);
  EXPECT_FALSE(gateway().isBadCode(m_code));
  EXPECT_TRUE(gateway().isOnline());
  EXPECT_EQ(m_user.openWaits(), 0);
}

TEST_F(TallymoorInternetFailureTest, ACodeThatIsNotFoundIsNoFailureOfTheNetwork) {
  m_market.refuse(Page::History, 404);
  m_user.answerQuestion(false);
  EXPECT_THROW(gateway().historicalPrice(m_code, m_friday, true), HTTPException);
  EXPECT_EQ(questions(),
            std::vector<String>{delistedQuestion(m_code, u"The price source answered with status 404.")});
}

TEST_F(TallymoorInternetFailureTest, TheUserMayDeclareTheShareDelisted) {
  m_user.answerQuestion(true);
  EXPECT_THROW(gateway().historicalPrice(m_code, m_friday, true), HTMLException);
  EXPECT_TRUE(gateway().isBadCode(m_code));
  updater().addCode(m_code);
  EXPECT_FALSE(updater().hasCode(m_code));
}

TEST_F(TallymoorInternetFailureTest, AYesForOneCodeLeavesTheQuestionForTheNext) {
  m_user.answerQuestion(true);
  m_user.answerQuestion(true);
  failHistory(m_code, m_friday);
  failHistory(u"DEF.AX", m_friday);
  EXPECT_EQ(gateway().badCodes().size(), 2u);
}

TEST_F(TallymoorInternetFailureTest, ABackgroundPassIsAskedNothingForAHistory) {
  const BackgroundPassScope pass;
  EXPECT_THROW(gateway().historicalPrice(m_code, m_friday, true), HTMLException);
  m_market.refuse(Page::History, 503);
  EXPECT_THROW(gateway().historicalPrice(u"DEF.AX", m_friday, true), HTTPException);
  EXPECT_TRUE(m_user.calls().empty());
  EXPECT_FALSE(gateway().isBadCode(m_code));
}

TEST_F(TallymoorInternetFailureTest, AShareThatHadNotListedYetHasNoPrice) {
  m_market.setDay(m_code, m_friday, 5.0);
  const Date before(2006, 11, 9);
  EXPECT_EQ(failureOf<Exception>([&] { gateway().historicalPrice(m_code, before, false); }),
            String(u"TallymoorInternet::getCachedPrice - dont have cached price for code ABC.AX at " +
                   local(before)));
  EXPECT_TRUE(questions().empty());
  EXPECT_EQ(m_user.openWaits(), 0);
  EXPECT_TRUE(gateway().hasCachedPrice(m_code, m_friday));
}

TEST_F(TallymoorInternetFailureTest, DaysBeforeTheFirstPriceCostAFewRequestsForAllOfThem) {
  // Bought two years before the source begins, and requested day by day, as for a portfolio's days.
  const Date listed(2006, 11, 1);
  m_market.setHistory(m_code, listed, m_today, 5.0);
  for (Date day(2004, 11, 1); day < listed; day.addDays(1)) {
    EXPECT_THROW(gateway().historicalPrice(m_code, day, false), Exception);
    EXPECT_THROW(gateway().historicalPrice(m_code, day, true), Exception);
  }
  EXPECT_DOUBLE_EQ(gateway().historicalPrice(m_code, listed, false), 5.0);
  EXPECT_LE(numFetches(), 6u); // Pages of 280 days.
  EXPECT_TRUE(questions().empty());
}

TEST_F(TallymoorInternetFailureTest, ADayBeforeARangeFromItOnHasTheCloseBeforeIt) {
  m_market.setHistory(m_code, Date(2006, 1, 2), m_today, [](const Date& day) { return 100.0 + day.day(); });
  const Date saturday(2006, 3, 4);
  EXPECT_DOUBLE_EQ(gateway().historicalPrice(m_code, saturday, false), 103.0);
  EXPECT_EQ(numFetches(), 2u);
}

TEST_F(TallymoorInternetFailureTest, PagesSmallerThanDocumentedHideNoDays) {
  // The document says 200 days per page, but a page has ten. Earlier days must be found all the same.
  std::string rows;
  for (Date day(2006, 11, 10); day > Date(2006, 10, 27); day.addDays(-1))
    if (!day.isWeekend())
      rows += "<tr><td>" + day.toString(DATE_DISPLAY_MIDDATE1).toUTF8() +
              "</td><td>5</td><td>5</td><td>5</td><td>1000</td></tr>";
  m_market.answerWith(Page::History, "<html><table id=\"prices\">" + rows + "</table></html>");
  EXPECT_DOUBLE_EQ(gateway().historicalPrice(m_code, m_friday, true), 5.0);
  m_market.answerWith(Page::History, "");
  m_market.setDay(m_code, Date(2006, 10, 27), 4.0);
  EXPECT_DOUBLE_EQ(gateway().historicalPrice(m_code, Date(2006, 10, 27), true), 4.0);
}

TEST_F(TallymoorInternetFailureTest, APriceThatIsNotCachedCantBeRead) {
  EXPECT_EQ(failureOf<Exception>([&] { gateway().getCachedPrice(m_code, m_friday, 1); }),
            String(u"TallymoorInternet::getCachedPrice - dont have cached price for code ABC.AX at " +
                   local(m_friday)));
}

TEST_F(TallymoorInternetFailureTest, ATableWithoutAColumnFailsTheFetch) {
  const String path = m_profile.configFolder() + u"HistoricalPricesLocators.xml";
  std::string text = TestProfile::readFile(path);
  text.replace(text.find("\"Volume\""), 8, "\"Open\"");
  TestProfile::writeFile(path, text);
  m_market.setDay(m_code, m_friday, 5.0);
  const BackgroundPassScope pass;
  EXPECT_EQ(failureOf<HTMLException>([&] { gateway().historicalPrice(m_code, m_friday, true); }),
            String(u"HTMLTable::columnByType - no such type 9"));
  EXPECT_FALSE(gateway().hasCachedPrice(m_code, m_friday));
}

TEST_F(TallymoorInternetFailureTest, AnUnreadableDateGoesStraightToTheCaller) {
  m_market.answerWith(Page::History,
                      "<html><table id=\"prices\"><tr><td>3-Foo-06</td><td>1</td><td>1</td><td>1</td>"
                      "<td>1</td></tr></table></html>");
  EXPECT_EQ(failureOf<Exception>([&] { gateway().historicalPrice(m_code, m_friday, true); }),
            String(u"Date::fromString - DATE_DISPLAY_MIDDATE1 unknown month: 3-Foo-06"));
  EXPECT_TRUE(questions().empty());
  EXPECT_EQ(m_user.openWaits(), 0);
}

TEST_F(TallymoorInternetFailureTest, FailuresOfOneCodeLeaveOthersAlone) {
  m_market.setDay(u"DEF.AX", m_friday, 5.0);
  EXPECT_DOUBLE_EQ(gateway().historicalPrice(u"DEF.AX", m_friday, true), 5.0);
  m_user.answerQuestion(true);
  EXPECT_THROW(gateway().historicalPrice(m_code, m_friday, true), HTMLException);
  EXPECT_FALSE(gateway().isBadCode(u"DEF.AX"));
  EXPECT_DOUBLE_EQ(gateway().historicalPrice(u"DEF.AX", m_friday, true), 5.0);
}

TEST_F(TallymoorInternetFailureTest, WithoutAWindowNothingIsAsked) {
  UserInteraction::setInstance(nullptr);
  m_market.refuse(Page::Quote, 500);
  EXPECT_THROW(gateway().currentPrice(m_code, false, false), HTTPException);
  EXPECT_THROW(gateway().historicalPrice(m_code, m_friday, true), HTMLException);
}

// --- Fetches cancelled by the user or by the end of the program

TEST_F(TallymoorInternetFailureTest, AHistoryThatDoesNotComeCanBeCancelled) {
  m_market.stall(Page::History);
  m_user.stopWanted = [this] { return numFetches() == 1; };
  failHistory(m_code, m_friday);
  EXPECT_EQ(numFetches(), 1u);
  EXPECT_TRUE(questions().empty());
  failHistory(u"DEF.AX", m_friday);
  gateway().completeHistory({{u"GHI.AX", m_start, m_friday}}, nullptr);
  EXPECT_EQ(numFetches(), 1u) << "as long as the end is wanted, nothing else is begun";
  m_user.stopWanted = {};
  m_market.release(Page::History);
  m_market.setDay(m_code, m_friday, 5.0);
  m_market.setDay(u"DEF.AX", m_friday, 6.0);
  failHistory(m_code, m_friday);
  EXPECT_EQ(numFetches(), 1u) << "who has cancelled a code does not wait for it again";
  EXPECT_TRUE(questions().empty());
  EXPECT_DOUBLE_EQ(gateway().historicalPrice(u"DEF.AX", m_friday, true), 6.0);
  gateway().forgetFailures();
  EXPECT_DOUBLE_EQ(gateway().historicalPrice(m_code, m_friday, true), 5.0);
}

TEST_F(TallymoorInternetFailureTest, ACompletionQuoteAndSearchCanBeCancelled) {
  for (const Page page : {Page::History, Page::Quote, Page::Search})
    m_market.stall(page);
  m_user.stopWanted = [this] { return !m_market.server().requests().empty(); };
  gateway().completeHistory({{m_code, m_start, m_friday}}, nullptr);
  EXPECT_EQ(m_market.server().requests().size(), 1u);
  m_user.stopWanted = [this] { return m_market.server().requests().size() == 2; };
  EXPECT_THROW(gateway().currentPrice(u"DEF.AX", false, false), HTTPException);
  m_user.stopWanted = [this] { return m_market.server().requests().size() == 3; };
  EXPECT_THROW(gateway().stockSearch(u"soup", true, false), HTTPException);
  EXPECT_TRUE(questions().empty());
  EXPECT_EQ(m_user.openWaits(), 0);
}

// --- Searches

TEST_F(TallymoorInternetFailureTest, NoSearchOffline) {
  gateway().goOffline();
  EXPECT_EQ(failureOf<HTTPException>([&] { gateway().stockSearch(u"soup", true, false); }),
            String(u"TallymoorInternet::stockSearch - internet offline."));
}

TEST_F(TallymoorInternetFailureTest, ARefusedSearchAsksTwiceAndFails) {
  m_market.refuse(Page::Search, 500);
  m_user.answerQuestion(false);
  m_user.answerQuestion(false);
  EXPECT_THROW(gateway().stockSearch(u"soup", true, false), HTTPException);
  EXPECT_EQ(questions(), (std::vector<String>{m_searchQuestion, OFFLINE_QUESTION}));
  EXPECT_TRUE(gateway().isOnline());
  EXPECT_EQ(m_user.openWaits(), 0);
}

TEST_F(TallymoorInternetFailureTest, TheUserMayGoOfflineAfterARefusedSearch) {
  m_market.refuse(Page::Search, 500);
  m_user.answerQuestion(false);
  m_user.answerQuestion(true);
  EXPECT_THROW(gateway().stockSearch(u"soup", true, false), HTTPException);
  EXPECT_FALSE(gateway().isOnline());
}

TEST_F(TallymoorInternetFailureTest, ARetryOfASearchIsACompleteAttempt) {
  m_market.addListing(m_code, u"Soup", u"Australia");
  m_market.refuse(Page::Search, 500);
  m_user.answerQuestion(true);
  m_user.beforeAnswer = [this] { m_market.refuse(Page::Search, 200); };
  EXPECT_EQ(gateway().stockSearch(u"soup", true, false).size(), 1u);
}

TEST_F(TallymoorInternetFailureTest, ABackgroundPassIsAskedNothingForASearch) {
  m_market.refuse(Page::Search, 500);
  const BackgroundPassScope pass;
  EXPECT_THROW(gateway().stockSearch(u"soup", true, false), HTTPException);
  EXPECT_TRUE(m_user.calls().empty());
}

TEST_F(TallymoorInternetFailureTest, AnUnreadableSearchPageHasNoMatches) {
  m_market.answerWith(Page::Search, "<html><p>We have moved.</p></html>");
  EXPECT_TRUE(gateway().stockSearch(u"soup", true, false).empty());
  EXPECT_TRUE(questions().empty());
  EXPECT_EQ(m_user.openWaits(), 0);
}

TEST_F(TallymoorInternetFailureTest, AnUnreadableSecondPageLeavesTheResultsOfTheFirst) {
  const String path = m_profile.configFolder() + u"CodeSearchLocators.xml";
  std::string text = TestProfile::readFile(path);
  const std::size_t begin = text.find("<CodeSearchDetail>");
  const std::string end = "</CodeSearchDetail>";
  const std::string detail = text.substr(begin, text.find(end) + end.size() - begin);
  std::string broken = detail;
  broken.replace(broken.find("\"results\""), 9, "\"missing\"");
  const auto writeDetails = [&](const std::string& details) {
    std::string changed = text;
    TestProfile::writeFile(path, changed.replace(begin, detail.size(), details));
    TallymoorInternet::reset();
  };
  m_market.addListing(m_code, u"Soup", u"Australia");
  writeDetails(detail + broken);
  EXPECT_EQ(gateway().stockSearch(u"soup", true, false).size(), 1u);
  writeDetails(broken + detail);
  EXPECT_TRUE(gateway().stockSearch(u"soup", true, false).empty());
  writeDetails(detail + detail);
  EXPECT_EQ(gateway().stockSearch(u"soup", true, false).size(), 2u);
}

// --- Cache files

TEST_F(TallymoorInternetFailureTest, AMalformedCacheFileFailsTheFirstRequestForAPrice) {
  const String path = m_profile.cacheFolder() + u"PriceCache.ABC.AX.xml";
  TestProfile::writeFile(path, "<ShareValues><Str");
  m_market.setDay(m_code, m_friday, 5.0);
  EXPECT_FALSE(gateway().isBadCode(m_code));
  EXPECT_FALSE(gateway().hasCachedPrice(m_code, m_friday));
  updater().addCode(m_code);
  EXPECT_THROW(gateway().historicalPrice(m_code, m_friday, true), XMLException);
  EXPECT_DOUBLE_EQ(gateway().historicalPrice(m_code, m_friday, true), 5.0);
  gateway().save();
  EXPECT_EQ(TestProfile::readFile(path), "<ShareValues><Str");
}

TEST_F(TallymoorInternetFailureTest, AMalformedCacheFileFailsRequestsForACurrentOrCachedPrice) {
  TestProfile::writeFile(m_profile.cacheFolder() + u"PriceCache.ABC.AX.xml", "<ShareValues><Str");
  TestProfile::writeFile(m_profile.cacheFolder() + u"PriceCache.DEF.AX.xml", "<ShareValues><Str");
  m_market.setCurrentPrice(m_code, 5.0);
  EXPECT_THROW(gateway().currentPrice(m_code, false, false), XMLException);
  EXPECT_DOUBLE_EQ(gateway().currentPrice(m_code, false, false), 5.0);
  EXPECT_THROW(gateway().getCachedPrice(u"DEF.AX", m_friday, 0), XMLException);
}

} // namespace
} // namespace Tallymoor
