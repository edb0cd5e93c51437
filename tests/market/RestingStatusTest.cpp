#include "market/RestingStatus.h"
#include "market/GatewayTest.h"
#include "market/PriceStatus.h"
#include "support/StringPrinting.h"
#include "support/TestPriceService.h"

namespace Tallymoor {
namespace {

class RestingStatusTest : public GatewayTest {
protected:
  RestingStatusTest() { gateway(); }
  ~RestingStatusTest() override { Date::clearFixedDate(); }
};

TEST_F(RestingStatusTest, ThereIsNothingToSay) {
  EXPECT_EQ(restingStatusText(), u"Ready.");
}

TEST_F(RestingStatusTest, MadeUpPricesAreToldOf) {
  pretendSampleMarket(m_profile);
  TallymoorInternet::reset();
  EXPECT_EQ(restingStatusText(), u"Ready. The prices are made up: they are those of the sample market.");
  Date::setFixedDate(m_friday);
  EXPECT_EQ(restingStatusText(), u"You are looking at 10/11/2006, not at today. The prices are made up: they "
                                 u"are those of the sample market.");
}

TEST_F(RestingStatusTest, WithoutASourceItSaysWhereToFindOne) {
  gateway().priceStatus().setOn(u"locators", false);
  EXPECT_EQ(restingStatusText(), u"Ready. No source of prices is on: see Tools, Prices.");
}

} // namespace
} // namespace Tallymoor
