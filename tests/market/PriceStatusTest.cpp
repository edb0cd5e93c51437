#include "market/PriceStatus.h"
#include "market/GatewayTest.h"
#include "support/MessageOf.h"
#include "support/StringPrinting.h"
#include "support/TestPriceService.h"
#include <filesystem>

// The gateway with several sources of prices.

namespace Tallymoor {
namespace {

const String KEY = u"s3cr+t/key";

/// Notes that prices are forgotten, and what happens to the files at that moment.
class ForgettingObserver : public RecordingObserver {
public:
  void pricesForgotten() override {
    if (atThat)
      atThat();
    hasForgotten = true;
  }
  std::function<void()> atThat;
  bool hasForgotten = false;
};

class PriceStatusTest : public GatewayTest {
protected:
  PriceStatusTest() { std::filesystem::create_directory(m_folder.toUTF8()); }

  static PriceStatus& status() { return gateway().priceStatus(); }

  void writeFile(const std::string& name, const std::string& text) const {
    TestProfile::writeFile(m_folder + u"/" + String(name.c_str()), text);
  }
  void makeSample() const { pretendSampleMarket(m_profile); }
  void useService() {
    m_answer.body = R"({"days":[{"date":"2006-11-10","close":5.25,"split":1},
                                {"date":"2006-11-14","close":2.75,"split":2}]})";
    status().sources().setKey(u"Service", KEY);
    EXPECT_FALSE(trySource(u"Service").failure);
    status().setOn(u"Service", true);
  }
  static PriceStatus::Trial trySource(const String& name, const String& code = String()) {
    const PriceStatus::Trial trial = status().beginTrial(name, code)({});
    status().endTrial(name, trial);
    return trial;
  }
  void addFolder() const {
    status().sources().addFolder(u"My files", m_folder);
    status().setOn(u"My files", true);
  }
  static String reasonsOf(const String& code) {
    String text;
    for (const SourceReason& reason : status().ofCode(code).reasons)
      text += reason.source + u"|" + wordsOf(reason.fault) + u"|" + reason.text + u";";
    return text;
  }

  TestPriceService m_service{m_profile};
  TestHttpServer::Response& m_answer = m_service.answer;
  const String m_folder = m_profile.path("prices");
};

TEST_F(PriceStatusTest, PricesInAnotherCurrencyWaitForADecision) {
  const String file = m_profile.configFolder() + u"Sources/Service.xml";
  std::string document = TestProfile::readFile(file);
  document.replace(document.find("AUD"), 3, "USD");
  TestProfile::writeFile(file, document);
  useService();
  updater().addCode(u"NEW.AX");
  updater().runPass();
  EXPECT_EQ(updater().getCurrentPrice(u"NEW.AX"), 0.0);
  EXPECT_FALSE(gateway().hasCachedPrice(u"NEW.AX", Date(2006, 11, 14)));
  const auto waiting = gateway().doubtfulPrices().at(u"NEW.AX");
  EXPECT_EQ(waiting.rbegin()->second.reason, DoubtReason::Currency);
  EXPECT_EQ(waiting.rbegin()->second.currency, u"USD");
  EXPECT_EQ(waiting.rbegin()->second.usualCurrency, u"AUD");
  gateway().acceptDoubtful(u"NEW.AX", false);
  EXPECT_EQ(updater().getCurrentPrice(u"NEW.AX"), 2.75);
  updater().runPass();
  EXPECT_TRUE(gateway().doubtfulPrices().empty());
}

TEST_F(PriceStatusTest, TellsOfSplitsOfASource) {
  useService();
  EXPECT_FALSE(gateway().toldSplit(u"NEW.AX", Date(2006, 11, 14), Date(2006, 11, 14)));
  gateway().historicalPrice(u"NEW.AX", Date(2006, 11, 14), true);
  EXPECT_EQ(gateway().toldSplit(u"NEW.AX", Date(2006, 11, 14), Date(2006, 11, 14)), 2.0);
  EXPECT_FALSE(gateway().toldSplit(u"NEW.AX", Date(2006, 11, 10), Date(2006, 11, 13)));
}

TEST_F(PriceStatusTest, TheLocatorsAloneAreTheSourceOfANewProfile) {
  m_market.setCurrentPrice(m_code, 5.5);
  EXPECT_EQ(gateway().currentPrice(m_code, false, true), 5.5);
  const PriceStatus::OfCode code = status().ofCode(m_code);
  EXPECT_EQ(code.source, u"locators");
  EXPECT_FALSE(code.isSample);
  const auto sources = status().ofSources();
  ASSERT_EQ(sources.size(), 2u);
  EXPECT_TRUE(sources[0].listed.isOn);
  EXPECT_FALSE(sources[1].listed.isOn);
  EXPECT_EQ(sources[1].notTried, u"2026-11-22");
  EXPECT_TRUE(sources[1].needsKey);
  EXPECT_FALSE(sources[1].hasKey);
}

TEST_F(PriceStatusTest, ATrialShowsWhatTheSourceGivesAndAllowsItToBeSwitchedOn) {
  m_answer.body = R"({"error":"no such key: s3cr+t/key"})";
  status().sources().setKey(u"Service", KEY);
  PriceStatus::Trial trial = trySource(u"Service");
  ASSERT_TRUE(trial.failure);
  EXPECT_EQ(trial.failure->fault, SourceFault::Refused);
  EXPECT_EQ(trial.failure->text, u"no such key: (key)");
  EXPECT_THROW(status().setOn(u"Service", true), Exception);

  m_answer.body = R"({"days":[{"date":"2006-11-14","close":2.75}]})";
  trial = trySource(u"Service");
  EXPECT_FALSE(trial.failure);
  EXPECT_EQ(trial.price->price, 2.75);
  EXPECT_EQ(trial.currency, u"AUD");
  ASSERT_EQ(trial.lastDays.size(), 1u);
  EXPECT_EQ(trial.lastDays.begin()->first, Date(2006, 11, 14));
  EXPECT_NE(m_service.server().requests().back().target.find("code=KNOWN.AX"), std::string::npos);
  status().setOn(u"Service", true);
  EXPECT_TRUE(status().ofSources()[1].listed.isOn);
}

TEST_F(PriceStatusTest, TheFolderAnswersWhenTheQuotaOfTheServiceIsUsedUp) {
  useService();
  addFolder();
  status().setOn(u"locators", false);
  writeFile("ABC.AX.csv", "Date,Close\n2006-11-08,4.5\n2006-11-10,4.75\n");
  EXPECT_EQ(gateway().historicalPrice(m_code, Date(2006, 11, 10), true), 5.25);
  EXPECT_EQ(status().ofCode(m_code).source, u"Service");
  EXPECT_EQ(status().ofCode(m_code).currency, u"AUD");
  EXPECT_EQ(status().ofCode(m_code).splits.at(Date(2006, 11, 14)), 2.0);

  m_answer.body = R"({"error":"25 requests per day"})";
  writeFile("XYZ.AX.csv", "Date,Close\n2006-11-08,4.5\n2006-11-10,4.75\n");
  EXPECT_EQ(gateway().historicalPrice(u"XYZ.AX", Date(2006, 11, 10), true), 4.75);
  const PriceStatus::OfCode code = status().ofCode(u"XYZ.AX");
  EXPECT_EQ(code.source, u"My files");
  EXPECT_EQ(code.price, 4.75);
  EXPECT_EQ(code.day, Date(2006, 11, 10));
  EXPECT_EQ(code.age, 5);
  EXPECT_EQ(reasonsOf(u"XYZ.AX"), u"Service|refused|25 requests per day;");
  EXPECT_EQ(status().ofSources()[1].told.lastFailure->reason.text, u"25 requests per day");
  EXPECT_TRUE(questions().empty());
}

TEST_F(PriceStatusTest, OneCodeThatFailsDoesNotStopTheOthersOfAPass) {
  addFolder();
  status().setOn(u"locators", false);
  writeFile("BAD.csv", "nonsense");
  writeFile("OKAY.csv", "Date,Close\n2006-11-14,4.75\n");
  for (const char16_t* code : {u"ABSENT", u"BAD", u"OKAY"})
    updater().addCode(code);
  updater().runPass();
  EXPECT_EQ(updater().getCurrentPrice(u"OKAY"), 4.75);
  EXPECT_EQ(status().ofCode(u"OKAY").day, Date(2006, 11, 14));
  EXPECT_EQ(status().ofCode(u"OKAY").age, 1);
  EXPECT_TRUE(reasonsOf(u"BAD").startsWith(u"My files|answer not readable|BAD.csv: "));
  EXPECT_FALSE(status().ofCode(u"ABSENT").price);
}

TEST_F(PriceStatusTest, AFolderIsEnoughToGoOnline) {
  addFolder();
  status().setOn(u"locators", false);
  EXPECT_TRUE(gateway().reconnect());
  gateway().pauseUpdates();
}

TEST_F(PriceStatusTest, AChangedFileIsSeenByTheNextPass) {
  addFolder();
  status().setOn(u"locators", false);
  writeFile("OKAY.csv", "Date,Close\n2006-11-14,4.75\n");
  updater().addCode(u"OKAY");
  updater().runPass();
  writeFile("OKAY.csv", "Date,Close\n2006-11-14,4.75\n2006-11-15,4.80\n");
  updater().runPass();
  EXPECT_EQ(updater().getCurrentPrice(u"OKAY"), 4.8);
  RecordingObserver observer;
  writeFile("OKAY.csv", "Date,Close\n2006-11-14,4.72\n2006-11-15,4.80\n");
  updater().runPass();
  EXPECT_EQ(gateway().getCachedPrice(u"OKAY", Date(2006, 11, 14), 0), 4.72);
  const std::vector<String> heard = observer.heard();
  EXPECT_EQ(std::count(heard.begin(), heard.end(), u"close OKAY 14/11/2006 4.7200"), 1);
  updater().runPass();
  EXPECT_EQ(observer.heard().size(), heard.size() + 2) << "price and end alone: the file is the same";
}

TEST_F(PriceStatusTest, TheFirstSourceOfRealPricesEndsTheSampleMarket) {
  makeSample();
  m_market.setCurrentPrice(m_code, 5.5);
  m_market.setHistory(m_code, Date(2006, 11, 1), Date(2006, 11, 14), 5.0);
  gateway().historicalPrice(m_code, m_friday, true);
  gateway().setCachedPrice(m_code, Date(2006, 11, 2), 6.0);
  updater().addCode(m_code);
  updater().runPass();
  EXPECT_TRUE(status().ofCode(m_code).isSample);
  EXPECT_TRUE(status().ofSources()[0].isSample);

  useService();
  EXPECT_FALSE(status().ofSources()[0].listed.isOn);
  EXPECT_EQ(updater().getCurrentPrice(m_code), 0.0);
  EXPECT_FALSE(gateway().hasCachedPrice(m_code, m_friday));
  EXPECT_TRUE(gateway().hasCachedPrice(m_code, Date(2006, 11, 2))) << "typed by the user";
  EXPECT_EQ(gateway().historicalPrice(m_code, m_friday, true), 5.25);
  EXPECT_FALSE(status().ofCode(m_code).isSample);
}

TEST_F(PriceStatusTest, APassUnderWayStoresNothingOfTheSampleMarketThatHasEnded) {
  makeSample();
  m_market.setCurrentPrice(m_code, 5.5);
  m_market.stall(Page::Quote);
  m_answer.body = R"({"days":[{"date":"2006-11-14","close":2.75}]})";
  status().sources().setKey(u"Service", KEY);
  trySource(u"Service");
  m_service.server().forgetRequests();
  updater().addCode(m_code);
  updater().start();
  m_market.awaitRequests(Page::Quote, 1);
  status().setOn(u"Service", true);
  EXPECT_TRUE(m_service.server().waitForRequests(1)) << "the pass has ended, and another one has begun";
  gateway().pauseUpdates();
  m_market.release(Page::Quote);
  EXPECT_NE(updater().getCurrentPrice(m_code), 5.5);
}

TEST_F(PriceStatusTest, PastPricesOnTheirWayFromTheSampleMarketAreNotStoredAfterItHasEnded) {
  makeSample();
  m_market.setHistory(m_code, m_friday.plusDays(-30), m_friday, 5.5);
  m_market.stall(Page::History);
  {
    const BigMutexLock lock;
    ASSERT_TRUE(gateway().requestHistory({m_code, m_friday.plusDays(-10), m_friday}));
  }
  m_market.awaitRequests(Page::History, 1);
  addFolder();
  m_market.release(Page::History);
  GatewayScope::awaitHistory();
  EXPECT_FALSE(gateway().hasCachedPrice(m_code, m_friday));
}

TEST_F(PriceStatusTest, AKilledProgramLeavesNoPriceOfAMarketThatHasEnded) {
  makeSample();
  m_market.setHistory(m_code, Date(2006, 11, 1), Date(2006, 11, 14), 5.0);
  gateway().historicalPrice(m_code, m_friday, true);
  gateway().setCachedPrice(m_code, Date(2006, 11, 2), 6.0);
  gateway().save();
  ForgettingObserver observer;
  observer.atThat = [] {
    EXPECT_TRUE(status().isSampleMarket()) << "the sources are others after that alone";
  };
  addFolder();
  EXPECT_TRUE(observer.hasForgotten);
  SharePriceCache stored(m_profile.cacheFolder());
  EXPECT_FALSE(stored.closeOn(m_code, m_friday));
  EXPECT_TRUE(stored.typedPrice(m_code, Date(2006, 11, 2)));
}

TEST_F(PriceStatusTest, TheSampleMarketIsNotSwitchedOnBesideRealSources) {
  makeSample();
  addFolder();
  EXPECT_FALSE(status().isSampleMarket());
  EXPECT_EQ(status().marketChangeBy(u"locators", true), PriceStatus::MarketChange::BeginsSample);
  EXPECT_EQ(messageOf([] { status().setOn(u"locators", true); }),
            u"The prices of the sample market are made up. Switch all other sources off first.");
  EXPECT_FALSE(status().ofSources()[0].listed.isOn);
}

TEST_F(PriceStatusTest, TheSampleMarketForgetsRealPrices) {
  makeSample();
  addFolder();
  writeFile("ABC.AX.csv", "Date,Close\n2006-11-08,4.5\n2006-11-10,4.75\n");
  gateway().historicalPrice(m_code, m_friday, true);
  gateway().setCachedPrice(m_code, Date(2006, 11, 2), 6.0);
  ForgettingObserver observer;
  status().setOn(u"My files", false);
  EXPECT_TRUE(gateway().hasCachedPrice(m_code, m_friday));
  EXPECT_FALSE(observer.hasForgotten);
  status().setOn(u"locators", true);
  EXPECT_TRUE(status().isSampleMarket());
  EXPECT_TRUE(observer.hasForgotten);
  EXPECT_FALSE(gateway().hasCachedPrice(m_code, m_friday));
  EXPECT_TRUE(gateway().hasCachedPrice(m_code, Date(2006, 11, 2))) << "typed by the user";
}

TEST_F(PriceStatusTest, AnImportedFileEndsTheSampleMarket) {
  makeSample();
  m_market.setHistory(m_code, Date(2006, 11, 1), Date(2006, 11, 14), 5.0);
  gateway().historicalPrice(m_code, m_friday, true);
  EXPECT_TRUE(status().ofCode(m_code).isSample);
  writeFile("export.csv", "Date,Close\n2006-11-08,4.5\n");
  status().importFile(m_code, m_folder + u"/export.csv", {});
  EXPECT_FALSE(status().isSampleMarket());
  EXPECT_FALSE(gateway().hasCachedPrice(m_code, m_friday));
  EXPECT_EQ(status().ofCode(m_code).price, 4.5);
  EXPECT_FALSE(status().ofCode(m_code).isSample);
}

TEST_F(PriceStatusTest, PricesOfThePreviousRunAreThoseOfTheMarketThatIsOn) {
  makeSample();
  m_market.setHistory(m_code, Date(2006, 11, 1), Date(2006, 11, 14), 5.0);
  gateway().historicalPrice(m_code, m_friday, true);
  status().sources().pin(u"XYZ.AX", {u"locators", u"XYZ"});
  m_scope.restart();
  EXPECT_TRUE(status().ofCode(m_code).isSample);
}

TEST_F(PriceStatusTest, ASourceThatCannotBeSwitchedOnLeavesTheSampleMarketAsItIs) {
  makeSample();
  status().sources().addFolder(u"My files", m_folder);
  gateway().setCachedPrice(m_code, Date(2006, 11, 2), 6.0);
  m_market.setHistory(m_code, Date(2006, 11, 1), Date(2006, 11, 14), 5.0);
  gateway().historicalPrice(m_code, m_friday, true);
  const String file = m_profile.configFolder() + u"PriceSources.xml";
  std::filesystem::remove(file.toUTF8());
  std::filesystem::create_directories((file + u"/in the way").toUTF8());
  EXPECT_THROW(status().setOn(u"My files", true), Exception);
  EXPECT_TRUE(status().isSampleMarket());
  EXPECT_FALSE(status().ofSources()[1].listed.isOn);
  EXPECT_TRUE(gateway().hasCachedPrice(m_code, m_friday));
  gateway().save();
  EXPECT_TRUE(SharePriceCache(m_profile.cacheFolder()).closeOn(m_code, m_friday));
}

TEST_F(PriceStatusTest, TellsWhatASourceSaidLastAndHowOftenItWasAsked) {
  useService();
  const auto told = [] { return status().ofSources()[1].told; };
  gateway().historicalPrice(m_code, m_friday, true);
  EXPECT_EQ(told().lastAnswered, m_code);
  EXPECT_EQ(told().requests, 3u) << "with those of the trial";
  m_answer.body = R"({"error":"25 requests per day"})";
  messageOf([&] { gateway().historicalPrice(u"XYZ.AX", m_friday, true); });
  EXPECT_EQ(told().lastAnswered, u"");
  EXPECT_EQ(told().lastFailure->code, u"XYZ.AX");
  EXPECT_EQ(told().requests, 4u);
}

TEST_F(PriceStatusTest, TellsWhichFilesOfAFolderCanBeRead) {
  addFolder();
  writeFile("C.csv", "nonsense");
  writeFile("A.csv", "Date,Close\n2006-11-08,4.5\n");
  writeFile("B.csv", "Date;Close\n06/11/2006;12,345\n07/11/2006;12,346\n");
  const auto files = status().filesOf(u"My files");
  ASSERT_EQ(files.size(), 3u);
  EXPECT_EQ(files[0].name, u"A.csv");
  EXPECT_EQ(files[0].failure, u"");
  EXPECT_TRUE(files[0].doubts.empty());
  EXPECT_EQ(files[1].doubts.size(), 2u);
  EXPECT_NE(files[2].failure, u"");
  EXPECT_TRUE(status().filesOf(u"locators").empty());
}

TEST_F(PriceStatusTest, AFileIsImportedForACodeOnceItsDoubtsAreAnswered) {
  writeFile("export.csv", "Date;Close\n06/11/2006;12,345\n07/11/2006;12,346\n");
  const String path = m_folder + u"/export.csv";
  PriceStatus::Import import = status().importFile(m_code, path, {});
  EXPECT_EQ(import.doubts.size(), 2u);
  EXPECT_FALSE(gateway().hasCachedHistory(m_code));
  import = status().importFile(m_code, path,
                               {{FormatDoubt::About::DateOrder, u"dd/MM/yyyy"},
                                { FormatDoubt::About::DecimalSign,
                                  u"," }});
  EXPECT_TRUE(import.doubts.empty());
  EXPECT_EQ(import.days, 2u);
  EXPECT_EQ(import.first, Date(2006, 11, 6));
  EXPECT_EQ(import.last, Date(2006, 11, 7));
  EXPECT_EQ(gateway().getCachedPrice(m_code, Date(2006, 11, 7), 0), 12.346);
}

TEST_F(PriceStatusTest, TheKeyIsShownNowhere) {
  useService();
  status().setOn(u"locators", false);
  m_answer = {401, R"({"error":"s3cr+t/key and s3cr%2Bt%2Fkey are wrong"})"};
  updater().addCode(m_code);
  updater().runPass();
  messageOf([&] { gateway().historicalPrice(u"XYZ.AX", m_friday, true); });
  gateway().save();
  String shown =
      reasonsOf(m_code) + reasonsOf(u"XYZ.AX") + status().ofSources()[1].told.lastFailure->reason.text;
  for (const Kind kind : {Kind::Status, Kind::Question, Kind::Warning, Kind::Error})
    for (const String& text : m_user.texts(kind))
      shown += text;
  EXPECT_TRUE(shown.contains(u"(key)"));
  EXPECT_FALSE(shown.contains(u"s3cr")) << shown.toUTF8();
  std::size_t files = 0;
  for (const auto& file : std::filesystem::recursive_directory_iterator(m_profile.folder()))
    if (file.is_regular_file() &&
        TestProfile::readFile(String(file.path().c_str())).find("s3cr") != std::string::npos) {
      EXPECT_EQ(file.path().filename(), "PriceSourceKeys.xml");
      ++files;
    }
  EXPECT_EQ(files, 1u);
}

TEST_F(PriceStatusTest, ATrialCountsAmongTheRequestsOfTheDayAndEndsWithThem) {
  const String file = m_profile.configFolder() + u"Sources/Service.xml";
  std::string document = TestProfile::readFile(file);
  document.replace(document.find("<TryCode>"), 0, "<Limits perDay=\"3\"/>");
  TestProfile::writeFile(file, document);
  useService(); // which begins with a trial: past days, then the price
  EXPECT_EQ(status().ofSources()[1].told.requests, 2u);
  const PriceStatus::Trial trial = trySource(u"Service");
  ASSERT_TRUE(trial.failure);
  EXPECT_EQ(trial.failure->fault, SourceFault::Resting);
  EXPECT_EQ(trial.failure->text, u"its 3 requests of the day are used up");
}

} // namespace
} // namespace Tallymoor
