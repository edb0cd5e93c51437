#include "market/StockCode.h"
#include "support/StringPrinting.h"
#include <gtest/gtest.h>

namespace Tallymoor {
namespace {

TEST(StockCodeTest, DividesAtTheFirstPoint) {
  const StockCode code(u"ABC.AX");
  EXPECT_EQ(code.base(), String(u"ABC"));
  EXPECT_EQ(code.suffix(), String(u"AX"));
  EXPECT_EQ(code.text(), String(u"ABC.AX"));
}

TEST(StockCodeTest, KeepsFurtherPointsInTheSuffix) {
  const StockCode code(u"ABC.AX.X");
  EXPECT_EQ(code.base(), String(u"ABC"));
  EXPECT_EQ(code.suffix(), String(u"AX.X"));
  EXPECT_EQ(code.text(), String(u"ABC.AX.X"));
}

TEST(StockCodeTest, IsAllBaseWithoutAPoint) {
  const StockCode code(u"^AORD");
  EXPECT_EQ(code.base(), String(u"^AORD"));
  EXPECT_EQ(code.suffix(), String());
  EXPECT_EQ(code.text(), String(u"^AORD"));
}

TEST(StockCodeTest, LosesAPointWithNothingBehindIt) {
  EXPECT_EQ(StockCode(u"ABC.").text(), String(u"ABC"));
}

TEST(StockCodeTest, HasAnEmptyBaseBeforeALeadingPoint) {
  const StockCode code(u".AX");
  EXPECT_EQ(code.base(), String());
  EXPECT_EQ(code.suffix(), String(u"AX"));
  EXPECT_EQ(code.text(), String(u".AX"));
}

TEST(StockCodeTest, IsMadeOfItsHalves) {
  EXPECT_EQ(StockCode(u"ABC", u"AX").text(), String(u"ABC.AX"));
  EXPECT_EQ(StockCode(u"ABC", String()).text(), String(u"ABC"));
}

} // namespace
} // namespace Tallymoor
