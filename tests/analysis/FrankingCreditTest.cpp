#include "analysis/FrankingCredit.h"
#include "foundation/String.h"
#include "support/StringPrinting.h"
#include <gtest/gtest.h>

namespace Tallymoor {
namespace {

TEST(FrankingCreditTest, IsThreeSeventhsOfTheFrankedPart) {
  EXPECT_EQ(String::fromDouble(frankingCredit(100, 0.5, 100), 2), String(u"21.43"));
  EXPECT_EQ(String::fromDouble(frankingCredit(1000, 0.10, 100), 6), String(u"42.857143"));
  EXPECT_EQ(String::fromDouble(frankingCredit(1000, 0.10, 35), 2), String(u"15.00"));
}

TEST(FrankingCreditTest, IsNothingWithoutFranking) {
  EXPECT_EQ(frankingCredit(1000, 0.10, 0), 0.0);
}

} // namespace
} // namespace Tallymoor
