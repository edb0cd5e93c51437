#include "market/StockNames.h"
#include "foundation/Settings.h"
#include "support/TestProfile.h"
#include <gtest/gtest.h>

namespace Tallymoor {
namespace {

class StockNamesTest : public testing::Test {
protected:
  StockNamesTest() { forget(); }
  ~StockNamesTest() override { forget(); }
  static void forget() { Settings::Instance().deleteSection(u"Stock Names"); }
  TestProfile m_profile;
};

TEST_F(StockNamesTest, ANameIsKnownByItsCode) {
  EXPECT_EQ(String(), StockNames::nameOf(u"BHP.AX"));
  StockNames::remember(u"BHP.AX", u"BHP Group");
  StockNames::remember(u"GC=F", u"Gold");
  EXPECT_EQ(String(u"BHP Group"), StockNames::nameOf(u"BHP.AX"));
  EXPECT_EQ(String(u"Gold"), StockNames::nameOf(u"GC=F"));
  EXPECT_EQ(String(), StockNames::nameOf(u"BHP"));
}

TEST_F(StockNamesTest, TheLastNameCounts) {
  StockNames::remember(u"WOW.AX", u"Woolworths Limited");
  StockNames::remember(u"WOW.AX", u"Woolworths Group");
  EXPECT_EQ(String(u"Woolworths Group"), StockNames::nameOf(u"WOW.AX"));
}

TEST_F(StockNamesTest, EmptyCodesAndNamesAreIgnored) {
  StockNames::remember(u"", u"Nobody");
  StockNames::remember(u"BHP.AX", u"BHP Group");
  StockNames::remember(u"BHP.AX", u" \n ");
  EXPECT_EQ(String(), StockNames::nameOf(u""));
  EXPECT_EQ(String(u"BHP Group"), StockNames::nameOf(u"BHP.AX"));
}

TEST_F(StockNamesTest, ACodeIsNoName) {
  StockNames::remember(u"BHP.AX", u"BHP Group");
  StockNames::remember(u"BHP.AX", u"BHP.AX"); // what a search in a folder of files gives
  EXPECT_EQ(String(u"BHP Group"), StockNames::nameOf(u"BHP.AX"));
}

TEST_F(StockNamesTest, ANameIsOneLineOfLimitedLength) {
  StockNames::remember(u"A.AX", u"\n Alpha \t\u00A0 & Beta\u0085Ltd ");
  EXPECT_EQ(String(u"Alpha & Beta Ltd"), StockNames::nameOf(u"A.AX"));
  StockNames::remember(u"B.AX", String(String::Base(150, u'x')));
  EXPECT_EQ(100u, StockNames::nameOf(u"B.AX").size());
  // A surrogate pair is not split.
  StockNames::remember(u"C.AX", String(String::Base(99, u'x') + u"\U0001F600" + u"y"));
  EXPECT_EQ(99u, StockNames::nameOf(u"C.AX").size());
}

} // namespace
} // namespace Tallymoor
