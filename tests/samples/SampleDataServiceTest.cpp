#include "service/SampleDataService.h"
#include "TestPaths.h"
#include "foundation/BigMutex.h"
#include "foundation/Exception.h"
#include "market/HTTPClient.h"
#include "market/TallymoorInternet.h"
#include "market/URL.h"
#include "support/FakeUserInteraction.h"
#include "support/GatewayScope.h"
#include "support/TestProfile.h"
#include <gtest/gtest.h>
#include <thread>

namespace Tallymoor {
namespace {

/// The service as the program meets it: through the documents that are installed with the program.
class SampleDataServiceTest : public ::testing::Test {
protected:
  SampleDataServiceTest() {
    SampleService::ServiceOptions options;
    options.port = 0;
    options.prices = std::string(TALLYMOOR_SAMPLES) + "/prices";
    options.updates = m_profile.folder() + "/updates";
    options.today = std::chrono::sys_days(std::chrono::year(2026) / std::chrono::March / 3);
    m_service.emplace(options);
    EXPECT_TRUE(m_service->bind());
    m_thread = std::thread([this] { m_service->serve(); });
    for (const char* name :
         {"CurrentPriceLocators.xml", "CodeSearchLocators.xml", "HistoricalPricesLocators.xml"})
      installDocument(name);
    m_gateway.emplace();
  }
  ~SampleDataServiceTest() override {
    m_gateway.reset();
    m_service->stop();
    m_thread.join();
  }

  const TestProfile& profile() const { return m_profile; }
  TallymoorInternet& gateway() { return TallymoorInternet::Instance(); }

  String page(const std::string& target) {
    const std::string address = "http://127.0.0.1:" + std::to_string(m_service->port()) + target;
    const std::unique_ptr<HTTPClient> client = createHTTPClient();
    client->goOnline();
    return client->getPage(URL(String::fromUTF8(address)));
  }

private:
  void installDocument(const std::string& name) {
    const std::string defaults = std::string(TALLYMOOR_SAMPLES) + "/../assets/defaults/Config/";
    std::string document = TestProfile::readFile(String::fromUTF8(defaults + name));
    const std::string standard = "127.0.0.1:8317";
    document.replace(document.find(standard), standard.size(),
                     "127.0.0.1:" + std::to_string(m_service->port()));
    TestProfile::writeFile(m_profile.configFolder() + String::fromUTF8(name), document);
  }

  TestProfile m_profile;
  FakeUserInteraction m_user;
  std::optional<SampleService::SampleDataService> m_service;
  std::thread m_thread;
  std::optional<GatewayScope> m_gateway;
};

double closeOf(const std::string& code, SampleService::Day day) {
  const auto history = SampleService::SampleMarket().history(code, day + std::chrono::days(1));
  return double(history->rows.back().close) / 10000.0;
}

SampleService::Day dayOf(int year, unsigned month, unsigned day) {
  return std::chrono::sys_days(std::chrono::year(year) / std::chrono::month(month) / std::chrono::day(day));
}

TEST_F(SampleDataServiceTest, EveryQuotePageGivesItsPrice) {
  BigMutexLock lock;
  for (const auto& listing : SampleService::SampleMarket::listings()) {
    const double expected =
        double(*SampleService::SampleMarket().quote(listing.code, dayOf(2026, 3, 3), 720)) / 10000.0;
    EXPECT_NEAR(expected, gateway().currentPrice(String::fromUTF8(listing.code), false, true), 0.005)
        << listing.code;
  }
}

TEST_F(SampleDataServiceTest, HistoryPageGivesClosesHighsAndVolumes) {
  BigMutexLock lock;
  const Date day(2024, 5, 17);
  EXPECT_NEAR(closeOf("GRV.AX", dayOf(2024, 5, 17)), gateway().historicalPrice(u"GRV.AX", day, true), 0.005);
  EXPECT_GT(gateway().getCachedPrice(u"GRV.AX", day, 1), gateway().getCachedPrice(u"GRV.AX", day, 2));
  EXPECT_EQ(gateway().getCachedPrice(u"GRV.AX", Date(2024, 5, 10), 0),
            gateway().getCachedPrice(u"GRV.AX", Date(2024, 5, 11), 0))
      << "Saturday has Friday's close";
}

TEST_F(SampleDataServiceTest, SplitRowsFallOutOfTheHistory) {
  BigMutexLock lock;
  gateway().historicalPrice(u"GRV.AX", Date(2024, 5, 17), true);
  EXPECT_NEAR(closeOf("GRV.AX", dayOf(2024, 5, 14)),
              gateway().getCachedPrice(u"GRV.AX", Date(2024, 5, 14), 0), 0.005);
  EXPECT_NEAR(closeOf("GRV.AX", dayOf(2024, 5, 13)),
              gateway().getCachedPrice(u"GRV.AX", Date(2024, 5, 13), 0), 0.005);
}

TEST_F(SampleDataServiceTest, PriceFilesTakePrecedenceOverTheSampleMarket) {
  BigMutexLock lock;
  EXPECT_EQ(1455.22, gateway().historicalPrice(u"^SPHIST", Date(2000, 1, 3), false));
  EXPECT_EQ(2874.56, gateway().currentPrice(u"^SPHIST", false, true)) << "the last close of the file";
}

TEST_F(SampleDataServiceTest, SearchFindsByNameAndByCode) {
  BigMutexLock lock;
  const auto byName = gateway().stockSearch(u"grevillea", true, false);
  ASSERT_EQ(1u, byName.size());
  EXPECT_EQ(String("GRV.AX"), byName[0].code);
  EXPECT_EQ(String("Grevillea Health"), byName[0].name);
  EXPECT_EQ(String("Australia"), byName[0].market);
  EXPECT_EQ(1u, gateway().stockSearch(u"GRV.AX", true, false).size());
}

TEST_F(SampleDataServiceTest, SearchTellsIndexesAndTheUnitedStatesApart) {
  BigMutexLock lock;
  for (const CodeSearchResult& index : gateway().stockSearch(u"sample", false, false))
    EXPECT_TRUE(index.code.startsWith(u"^"));
  EXPECT_EQ(3u, gateway().stockSearch(u"sample", false, false).size());
  const auto american = gateway().stockSearch(u"test", true, true);
  ASSERT_EQ(1u, american.size());
  EXPECT_EQ(String("TSTA"), american[0].code);
}

TEST_F(SampleDataServiceTest, MarketIsKnownFromTheCodeWhereThePageDoesNotSay) {
  BigMutexLock lock;
  EXPECT_EQ(String("Australia"), gateway().stockSearch(u"YRR.AX", true, false).at(0).market);
}

TEST_F(SampleDataServiceTest, ReconnectingFindsSomethingForTest) {
  BigMutexLock lock;
  EXPECT_TRUE(gateway().reconnect());
}

TEST_F(SampleDataServiceTest, AnInvalidRangeGivesTheWholeHistory) {
  const String whole = page("/history?s=ABC.AX");
  EXPECT_TRUE(whole.contains(u"2-Mar-26"));
  for (const char* const range : {"&a=2147483647&b=1&c=2020", "&a=-1&b=1&c=2020", "&a=0&b=300&c=2020",
                                  "&a=x&b=y&c=z", "&a=0&b=1&c=99999999"})
    EXPECT_EQ(page(std::string("/history?s=ABC.AX") + range), whole) << range;
  EXPECT_TRUE(page("/history?s=ABC.AX&a=0&b=1&c=2020&d=0&e=31&f=2020").contains(u"31-Jan-20"));
}

TEST_F(SampleDataServiceTest, UnknownCodeIsRefusedWithItsStatus) {
  BigMutexLock lock;
  try {
    gateway().currentPrice(u"NOPE.AX", false, true);
    FAIL() << "there is no such code";
  } catch (const HTTPException& exception) {
    EXPECT_EQ(404u, exception.code());
  }
}

TEST_F(SampleDataServiceTest, ServesUpdatesFromItsFolder) {
  const std::string query = "/updates/update.php?filename=";
  TestProfile::writeFile(profile().path("updates/Tallymoor Report.xsl"), "new stylesheet");
  TestProfile::writeFile(profile().path("secret"), "not for anybody");
  EXPECT_EQ(String(u"new stylesheet"), page(query + "Tallymoor%20Report.xsl"));
  EXPECT_EQ(String(u"<VersionsAvailable/>"), page(query + "configupdates.xml")) << "none is there";
  EXPECT_EQ(String(u"<VersionsAvailable/>"), page(query + "binaryupdates.xml"));
  TestProfile::writeFile(profile().path("updates/configupdates.xml"), "the list");
  EXPECT_EQ(String(u"the list"), page(query + "configupdates.xml"));
  for (const char* name : {"missing.xml", "../secret", "..%2Fsecret", "..", "", "."})
    EXPECT_THROW(page(query + name), HTTPException) << name;
}

} // namespace
} // namespace Tallymoor
