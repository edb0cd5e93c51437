#include "foundation/FileReplacement.h"
#include "market/GatewayTest.h"
#include "market/HTTPClient.h"
#include "support/TestHttpServer.h"
#include <filesystem>

namespace Tallymoor {
namespace {

// Lifetime of the gateway: construction, going online and offline, new locators, shutdown.

/// A machine with all network interfaces down.
class UnconnectedClient : public HTTPClient {
public:
  void goOnline() override { throw HTTPException(u"no interface"); }
  HTTPAnswer get(const URL&, const HTTPHeaders&, const std::stop_token&) override {
    throw HTTPException(u"not online");
  }
  void setBodyLimit(std::size_t) override {}
};

class TallymoorInternetTest : public GatewayTest {
protected:
  /// Replaces a text in one of the locator documents.
  void changeDocument(const String& name, const std::string& from, const std::string& to) const {
    const String path = m_profile.configFolder() + name;
    std::string text = TestProfile::readFile(path);
    const std::size_t place = text.find(from);
    ASSERT_NE(place, std::string::npos);
    TestProfile::writeFile(path, text.replace(place, from.size(), to));
  }
  static String instanceFailure() {
    return failureOf<HTMLException>([] { TallymoorInternet::Instance(); });
  }
  /// Creates the gateway on a machine without a network.
  static void startUnconnected() {
    TallymoorInternet::Options options = GatewayScope::defaults();
    options.startUpdater = true;
    options.makeClient = [] { return std::make_unique<UnconnectedClient>(); };
    TallymoorInternet::setOptions(options);
  }

  const std::string m_active = "active=\"exchange\"";
  const std::string m_inactive = "active=\"elsewhere\"";
};

// --- Construction and end

TEST_F(TallymoorInternetTest, IsBuiltAtTheFirstCall) {
  EXPECT_FALSE(TallymoorInternet::exists());
  TallymoorInternet& first = TallymoorInternet::Instance();
  EXPECT_TRUE(TallymoorInternet::exists());
  EXPECT_EQ(&TallymoorInternet::Instance(), &first);
  EXPECT_TRUE(first.isOnline());
}

TEST_F(TallymoorInternetTest, AfterTheShutDownEveryCallFails) {
  gateway();
  EXPECT_TRUE(TallymoorInternet::shutdown());
  EXPECT_FALSE(TallymoorInternet::exists());
  for (int i = 0; i < 2; ++i)
    EXPECT_EQ(failureOf<Exception>([] { TallymoorInternet::Instance(); }), String(u"in shutdown mode"));
  EXPECT_EQ(failureOf<Exception>([] { TallymoorInternet::reset(); }), String(u"in shutdown mode"));
  EXPECT_TRUE(TallymoorInternet::shutdown());
}

TEST_F(TallymoorInternetTest, AShutDownBeforeTheFirstCallIsPermanentToo) {
  EXPECT_TRUE(TallymoorInternet::shutdown());
  EXPECT_EQ(failureOf<Exception>([] { TallymoorInternet::Instance(); }), String(u"in shutdown mode"));
}

TEST_F(TallymoorInternetTest, TheShutDownSavesThePrices) {
  gateway().setCachedPrice(m_code, m_friday, 5.0);
  EXPECT_TRUE(TallymoorInternet::shutdown());
  EXPECT_TRUE(TallymoorInternet::shutdown());
  EXPECT_NE(TestProfile::readFile(m_profile.cacheFolder() + u"PriceCache.ABC.AX.xml").find("5.0000"),
            std::string::npos);
}

TEST_F(TallymoorInternetTest, TheShutDownSavesWhatItCanAndReportsFailures) {
  gateway().setCachedPrice(u"AAA", m_friday, 5.0);
  gateway().setCachedPrice(u"BBB", m_friday, 5.0);
  gateway().setCachedPrice(u"CCC", m_friday, 5.0);
  std::filesystem::create_directory((m_profile.cacheFolder() + u"PriceCache.BBB.xml").toUTF8());
  EXPECT_THROW(gateway().save(), Exception);
  EXPECT_FALSE(TallymoorInternet::shutdown());
  EXPECT_FALSE(TallymoorInternet::exists());
  EXPECT_TRUE(TestProfile::fileExists(m_profile.cacheFolder() + u"PriceCache.AAA.xml"));
  EXPECT_TRUE(TestProfile::fileExists(m_profile.cacheFolder() + u"PriceCache.CCC.xml"));
}

TEST_F(TallymoorInternetTest, ARunThatFetchesNothingWritesNothing) {
  gateway().setCachedPrice(m_code, m_friday, 5.0);
  m_scope.restart();
  EXPECT_TRUE(gateway().hasCachedPrice(m_code, m_friday));
  const String path = m_profile.cacheFolder() + u"PriceCache.ABC.AX.xml";
  removeFile(path);
  m_scope.restart();
  EXPECT_FALSE(TestProfile::fileExists(path));
}

TEST_F(TallymoorInternetTest, AMachineWithoutAConnectionStartsOfflineSilently) {
  gateway().setCachedPrice(m_code, m_friday, 5.0);
  m_scope.restart();
  startUnconnected();
  EXPECT_FALSE(gateway().isOnline());
  EXPECT_TRUE(m_user.calls().empty());
  EXPECT_FALSE(updater().isRunning());
  EXPECT_DOUBLE_EQ(gateway().historicalPrice(m_code, m_friday, true), 5.0);
}

// --- Locator documents

TEST_F(TallymoorInternetTest, ADocumentMustHoldTheLocatorThatItNames) {
  changeDocument(u"HistoricalPricesLocators.xml", m_active, m_inactive);
  EXPECT_EQ(instanceFailure(),
            String(u"TallymoorInternet::TallymoorInternet - failed to find a historical prices locator"));
  changeDocument(u"CurrentPriceLocators.xml", m_active, m_inactive);
  EXPECT_EQ(instanceFailure(),
            String(u"TallymoorInternet::TallymoorInternet - failed to find a price locator"));
  changeDocument(u"CodeSearchLocators.xml", m_active, m_inactive);
  EXPECT_EQ(instanceFailure(),
            String(u"TallymoorInternet::TallymoorInternet - failed to find a code search locator"));
  EXPECT_FALSE(TallymoorInternet::exists());
  m_market.writeLocators();
  EXPECT_TRUE(gateway().isOnline());
}

TEST_F(TallymoorInternetTest, AMissingOrMalformedDocumentStopsTheStart) {
  removeFile(m_profile.configFolder() + u"CodeSearchLocators.xml");
  EXPECT_THROW(TallymoorInternet::Instance(), XMLException);
  TestProfile::writeFile(m_profile.configFolder() + u"CodeSearchLocators.xml", "<CodeSearchLocators>");
  EXPECT_THROW(TallymoorInternet::Instance(), XMLException);
  EXPECT_FALSE(TallymoorInternet::exists());
}

TEST_F(TallymoorInternetTest, OfTwoLocatorsWithOneDomainTheFirstIsUsed) {
  const String path = m_profile.configFolder() + u"CurrentPriceLocators.xml";
  std::string text = TestProfile::readFile(path);
  const std::size_t begin = text.find("<CurrentPrice domain");
  const std::string end = "</CurrentPrice>";
  std::string second = text.substr(begin, text.find(end) + end.size() - begin);
  std::string other = second;
  second.replace(second.find("quote"), 5, "wrong");
  other.replace(other.find("domain=\"exchange\""), 17, "domain=\"other\"");
  other.replace(other.find("quote"), 5, "wrong");
  text.insert(text.find("</CurrentPriceLocators>"), second);
  text.insert(begin, other);
  TestProfile::writeFile(path, text);
  m_market.setCurrentPrice(m_code, 12.34);
  EXPECT_DOUBLE_EQ(gateway().currentPrice(m_code, false, true), 12.34);
}

TEST_F(TallymoorInternetTest, NewLocatorsAreLoadedIntoTheRunningGateway) {
  updater().addCode(m_code);
  updater().setCurrentPrice(m_code, 3.0);
  gateway().setCachedPrice(u"DEF.AX", m_friday, 5.0);
  m_market.setCurrentPrice(m_code, 12.34);
  TallymoorInternet* before = &gateway();
  changeDocument(u"CurrentPriceLocators.xml", "/quote?", "/nowhere?");
  TallymoorInternet::reset();
  EXPECT_EQ(&gateway(), before);
  EXPECT_THROW(gateway().currentPrice(m_code, false, true), HTTPException);
  EXPECT_DOUBLE_EQ(updater().getCurrentPrice(m_code), 3.0);
  EXPECT_TRUE(gateway().hasCachedPrice(u"DEF.AX", m_friday));
  m_market.writeLocators();
  TallymoorInternet::reset();
  EXPECT_DOUBLE_EQ(gateway().currentPrice(m_code, false, true), 12.34);
}

TEST_F(TallymoorInternetTest, NewLocatorsLeaveTheGatewayOffline) {
  gateway().goOffline();
  TallymoorInternet::reset();
  EXPECT_FALSE(gateway().isOnline());
}

TEST_F(TallymoorInternetTest, InvalidNewLocatorsLeaveTheOldOnesInUse) {
  m_market.setCurrentPrice(m_code, 12.34);
  gateway();
  changeDocument(u"CurrentPriceLocators.xml", m_active, m_inactive);
  EXPECT_THROW(TallymoorInternet::reset(), HTMLException);
  TestProfile::writeFile(m_profile.configFolder() + u"CodeSearchLocators.xml", "broken");
  EXPECT_THROW(TallymoorInternet::reset(), XMLException);
  EXPECT_DOUBLE_EQ(gateway().currentPrice(m_code, false, true), 12.34);
}

TEST_F(TallymoorInternetTest, AResetBeforeTheFirstCallBuildsTheGateway) {
  TallymoorInternet::reset();
  EXPECT_TRUE(TallymoorInternet::exists());
}

// --- Online and offline

TEST_F(TallymoorInternetTest, ReconnectsWhenASearchFindsSomething) {
  m_market.addListing(u"TST", u"Test", u"Australia");
  gateway().goOffline();
  EXPECT_FALSE(gateway().isOnline());
  EXPECT_TRUE(gateway().reconnect());
  EXPECT_TRUE(gateway().isOnline());
  EXPECT_TRUE(updater().isRunning());
  EXPECT_EQ(m_market.server().requests().back().target, "/search?code=test&country=ALL&kind=S");
}

TEST_F(TallymoorInternetTest, AReconnectWithoutAResultStaysOfflineButTheThreadRuns) {
  updater().addCode(m_code);
  EXPECT_FALSE(gateway().reconnect());
  EXPECT_FALSE(gateway().isOnline());
  EXPECT_TRUE(updater().isRunning());
  updater().stopAndJoin();
  EXPECT_TRUE(questions().empty());
}

TEST_F(TallymoorInternetTest, AReconnectThatFailsAsksNothingAndStaysOffline) {
  m_market.refuse(Page::Search, 500);
  EXPECT_FALSE(gateway().reconnect());
  EXPECT_FALSE(gateway().isOnline());
  EXPECT_FALSE(updater().isRunning());
  EXPECT_TRUE(m_user.calls().empty());
}

TEST_F(TallymoorInternetTest, AReconnectWithoutANetworkStaysOffline) {
  startUnconnected();
  EXPECT_FALSE(gateway().reconnect());
  EXPECT_FALSE(updater().isRunning());
}

TEST_F(TallymoorInternetTest, AReconnectUnderAViewDateDoesNotStartTheUpdater) {
  m_market.addListing(u"TST", u"Test", u"Australia");
  gateway();
  Date::setFixedDate(m_friday);
  EXPECT_TRUE(gateway().reconnect());
  EXPECT_FALSE(updater().isRunning());
}

TEST_F(TallymoorInternetTest, GoingOfflineStopsTheUpdater) {
  updater().start();
  EXPECT_TRUE(updater().isRunning());
  gateway().goOffline();
  EXPECT_FALSE(updater().isRunning());
  gateway().goOffline();
  EXPECT_FALSE(gateway().isOnline());
}

TEST_F(TallymoorInternetTest, AViewDatePausesTheUpdater) {
  m_market.setCurrentPrice(m_code, 12.34);
  updater().start();
  gateway().pauseUpdates();
  EXPECT_FALSE(updater().isRunning());
  Date::setFixedDate(m_friday);
  gateway().resumeUpdates();
  updater().start();
  updater().wakeUp();
  EXPECT_FALSE(updater().isRunning());
  EXPECT_TRUE(gateway().isOnline());
  EXPECT_DOUBLE_EQ(gateway().currentPrice(m_code, false, true), 12.34);
  Date::clearFixedDate();
  gateway().resumeUpdates();
  EXPECT_TRUE(updater().isRunning());
}

TEST_F(TallymoorInternetTest, ReturningToTodayOfflineDoesNotStartTheUpdater) {
  gateway().goOffline();
  gateway().resumeUpdates();
  EXPECT_FALSE(updater().isRunning());
}

} // namespace
} // namespace Tallymoor
