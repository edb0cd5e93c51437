#include "views/PriceLimits.h"
#include "foundation/Exception.h"
#include "foundation/Settings.h"
#include "support/FakeUserInteraction.h"
#include "support/TestProfile.h"
#include <gmock/gmock.h>

using namespace Tallymoor;

namespace {

TEST(PriceLimitsTest, ReadsWhatItShows) {
  const TestProfile profile("en_AU");
  const PriceLimits limits{1234.5, 2000.0};
  EXPECT_EQ(String(u"$1,234.50 - $2,000.00"), limits.text());
  EXPECT_TRUE(PriceLimits::MinMaxFromString(limits.text()) == limits);
  EXPECT_TRUE(PriceLimits::MinMaxFromString(u"1.5 - 2") == (PriceLimits{1.5, 2.0}));
}

TEST(PriceLimitsTest, EmptyTextIsNoLimits) {
  const TestProfile profile;
  EXPECT_TRUE(PriceLimits::MinMaxFromString(String()).areNone());
  EXPECT_EQ(String(), PriceLimits{}.text());
  EXPECT_EQ(String(), (PriceLimits{0.00001, -0.00001}.text()));
}

TEST(PriceLimitsTest, ALimitThatIsNotSetIsLeftOut) {
  const TestProfile profile;
  for (const PriceLimits& limits : {PriceLimits{0.0, 2.0}, PriceLimits{1.5, 0.0}})
    EXPECT_TRUE(PriceLimits::MinMaxFromString(limits.text()) == limits) << limits.text().toUTF8();
  EXPECT_EQ(String(u" - $2.00"), (PriceLimits{0.0, 2.0}.text()));
  EXPECT_EQ(String(u"$1.50 - "), (PriceLimits{1.5, 0.0}.text()));
  // The blank at the edge may be omitted.
  EXPECT_TRUE(PriceLimits::MinMaxFromString(u"- 2") == (PriceLimits{0.0, 2.0}));
  EXPECT_TRUE(PriceLimits::MinMaxFromString(u"1.5 -") == (PriceLimits{1.5, 0.0}));
}

TEST(PriceLimitsTest, SplitsAtTheFirstSeparator) {
  const TestProfile profile;
  EXPECT_TRUE(PriceLimits::MinMaxFromString(u"1 - 2 - 3").min == 1.0);
}

TEST(PriceLimitsTest, TextWithoutASeparatorIsRefused) {
  const TestProfile profile;
  try {
    PriceLimits::MinMaxFromString(u"1.00-2.00");
    FAIL() << "nothing was thrown";
  } catch (const Exception& exception) {
    EXPECT_EQ(String(u"SharesHeldTable::MinMaxFromString - bad min/max format 1.00-2.00"),
              exception.message());
  }
}

TEST(PriceLimitsTest, DecimalCommaIsReadWhereItIsUsual) {
  const TestProfile profile("de_DE");
  const PriceLimits limits = PriceLimits::MinMaxFromString(u"1,50 € - 2,25 €");
  EXPECT_DOUBLE_EQ(1.5, limits.min);
  EXPECT_DOUBLE_EQ(2.25, limits.max);
}

TEST(PriceLimitsTest, AStockKeepsItsLimitsInTheSettings) {
  const TestProfile profile;
  EXPECT_TRUE(PriceLimits::ofStock(u"AAA.AX").areNone());
  PriceLimits{1.5, 2.25}.keepForStock(u"AAA.AX");
  EXPECT_DOUBLE_EQ(1.5, Settings::Instance().readReal(u"Watchlists", u"minvalue - AAA.AX"));
  EXPECT_DOUBLE_EQ(2.25, Settings::Instance().readReal(u"Watchlists", u"maxvalue - AAA.AX"));
  EXPECT_TRUE(PriceLimits::ofStock(u"AAA.AX") == (PriceLimits{1.5, 2.25}));
}

TEST(PriceLimitsTest, OnlyAChangeIsAChange) {
  const TestProfile profile;
  FakeUserInteraction user;
  const PriceLimits old{1.2345, 2.0};
  EXPECT_FALSE(changedLimits(old.text(), old.text(), old)); // The cell's text, which has fewer decimals.
  EXPECT_FALSE(changedLimits(u"1.2345 - 2", old.text(), old));
  EXPECT_TRUE(changedLimits(u"1.23 - 2", old.text(), old) == (PriceLimits{1.23, 2.0}));
  EXPECT_TRUE(changedLimits(String(), old.text(), old)->areNone());
  EXPECT_TRUE(user.calls().empty());
}

TEST(PriceLimitsTest, NoLimitIsLessThanZero) {
  const TestProfile profile;
  FakeUserInteraction user;
  EXPECT_FALSE(changedLimits(u"-1.00 - 2.00", u"$1.00 - $2.00", {1.0, 2.0}));
  EXPECT_FALSE(changedLimits(u"1.00 - -$2.00", u"$1.00 - $2.00", {1.0, 2.0}));
  EXPECT_THAT(user.texts(FakeUserInteraction::Kind::Error),
              testing::ElementsAre(u"The limits of a price can't be less than zero.",
                                   u"The limits of a price can't be less than zero."));
}

TEST(PriceLimitsTest, WhatCannotBeReadIsToldOfAndChangesNothing) {
  const TestProfile profile;
  FakeUserInteraction user;
  EXPECT_FALSE(changedLimits(u"six", u"$1.00 - $2.00", {1.0, 2.0}));
  EXPECT_THAT(user.texts(FakeUserInteraction::Kind::Error),
              testing::ElementsAre(u"The Min Price has a bad format."));
}

} // namespace
