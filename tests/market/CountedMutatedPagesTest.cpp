// Price pages that changed after their locator was written. The values read from them must be right, or
// nothing must be read. All prices of a page are different, and the page knows its own values; see
// MutatedPages.h.
#include "MutatedPages.h"
#include "TestPaths.h"
#include "foundation/Exception.h"
#include "market/DataSource.h"
#include "market/HTTPClient.h"
#include "market/LocatorSet.h"
#include "support/TestProfile.h"
#include <cmath>
#include <cstdio>
#include <gtest/gtest.h>
#include <optional>

namespace Tallymoor {
namespace {

constexpr unsigned PAGES = 1000;
constexpr std::uint32_t JULIAN_DAY_OF_1970 = 2440588;

/// Returns the same page for every request.
class OnePageClient : public HTTPClient {
public:
  void goOnline() override {}
  HTTPAnswer get(const URL&, const HTTPHeaders&, const std::stop_token&) override {
    return {200, "OK", {}, {page.begin(), page.end()}};
  }
  void setBodyLimit(std::size_t) override {}

  std::string page;
};

class CountedMutatedPages : public ::testing::Test {
protected:
  CountedMutatedPages()
      : m_client(std::make_shared<OnePageClient>()),
        m_locators(String::fromUTF8(TALLYMOOR_SAMPLES "/../assets/defaults/Config/")),
        m_source(m_client, m_locators) {}

  std::optional<DataSource::Rows> history(const std::string& page) {
    m_client->page = page;
    try {
      return m_source.history(u"ABC", {Date(2024, 1, 1), Date(2026, 1, 1)});
    } catch (const Exception&) {
      return std::nullopt;
    }
  }

  std::optional<double> currentPrice(const std::string& page) {
    m_client->page = page;
    try {
      return m_source.currentPrice(u"ABC").price;
    } catch (const Exception&) {
      return std::nullopt;
    }
  }

private:
  TestProfile m_profile;
  std::shared_ptr<OnePageClient> m_client;
  LocatorSet m_locators;
  DataSource m_source;
};

bool isStated(const DayStatements& statements, const std::string& heading, double number) {
  const auto stated = statements.find(heading);
  if (stated == statements.end())
    return false;
  for (const double figure : stated->second)
    if (std::fabs(figure - number) < 1e-6)
      return true;
  return false;
}

/// A value of 0 means unknown, except for a close.
bool isRight(const DayStatements& statements, const ShareValue& value) {
  return isStated(statements, "Close", value.close) &&
         (value.high == 0.0 || isStated(statements, "High", value.high)) &&
         (value.low == 0.0 || isStated(statements, "Low", value.low)) &&
         (value.volume == 0 || isStated(statements, "Volume", value.volume));
}

TEST_F(CountedMutatedPages, PagesOfPastPricesGiveRightPricesOrNone) {
  unsigned failed = 0, read = 0, right = 0, wrong = 0;
  for (unsigned seed = 1; seed <= PAGES; ++seed) {
    const MutatedHistoryPage page(seed);
    const std::optional<DataSource::Rows> rows = history(page.html());
    (rows ? read : failed) += 1;
    for (const auto& [day, value] : rows.value_or(DataSource::Rows())) {
      const auto stated = page.statements().find(static_cast<long>(day.julianDay()) - JULIAN_DAY_OF_1970);
      const bool isGood = stated != page.statements().end() && isRight(stated->second, value);
      (isGood ? right : wrong) += 1;
      EXPECT_TRUE(isGood) << "seed " << seed << " (" << page.history()
                          << "): " << day.toString(DATE_DISPLAY_MIDDATE1).toUTF8() << " close " << value.close
                          << " high " << value.high << " low " << value.low << " volume " << value.volume;
    }
  }
  EXPECT_GT(read, PAGES / 4) << "pages that are still read";
  EXPECT_GT(failed, PAGES / 10) << "pages that can't be read any more";
  std::printf(
      "COUNT: mutated price tables: %u, of which %u were read and %u refused; %u days right, %u wrong\n",
      PAGES, read, failed, right, wrong);
}

TEST_F(CountedMutatedPages, PagesOfACurrentPriceGiveTheRightPriceOrNone) {
  unsigned failed = 0, right = 0, wrong = 0;
  for (unsigned seed = 1; seed <= PAGES; ++seed) {
    const MutatedQuotePage page(seed);
    std::optional<double> price = currentPrice(page.html());
    if (price == 0.0) // The page has no number there.
      price.reset();
    const bool isGood = !price || isStated({{"Last Trade:", page.prices()}}, "Last Trade:", *price);
    (!price ? failed : isGood ? right : wrong) += 1;
    EXPECT_TRUE(isGood) << "seed " << seed << ": " << *price << " on\n" << page.html();
  }
  EXPECT_GT(right, PAGES / 4);
  EXPECT_GT(failed, PAGES / 10);
  std::printf("COUNT: mutated pages of a price: %u; %u prices right, %u refused, %u wrong\n", PAGES, right,
              failed, wrong);
}

} // namespace
} // namespace Tallymoor
