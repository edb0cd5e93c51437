#include "foundation/RunTimeSettings.h"
#include "foundation/Settings.h"
#include "support/TestProfile.h"
#include <gtest/gtest.h>
#include <thread>

namespace Tallymoor {
namespace {

class RunTimeSettingsTest : public testing::Test {
protected:
  TestProfile profile;
  Settings& settings = Settings::Instance();
};

TEST_F(RunTimeSettingsTest, DefaultsOfAnEmptyStore) {
  readSettings();
  EXPECT_EQ(currentPriceUpdateMins, 10u);
  EXPECT_EQ(historicalPriceUpdateHours, 8u);
  EXPECT_EQ(splitRatioDetect, 2.0);
  EXPECT_EQ(reverseSplitRatioDetect, 2.0);
  EXPECT_EQ(indexTrendShort, 10.0);
  EXPECT_EQ(indexTrendLong, 30.0);
  EXPECT_FALSE(hideLastFYTransactions);
  EXPECT_FALSE(autoMinMaxPrices);
  EXPECT_EQ(trayFormat, u"");
  EXPECT_FALSE(inBackgroundPass);
}

TEST_F(RunTimeSettingsTest, ReadsEveryKey) {
  settings.writeUnsigned(u"Operation", u"CurrentPriceUpdateMins", 3);
  settings.writeUnsigned(u"Operation", u"HistoricalPriceUpdateHours", 4);
  settings.writeReal(u"Operation", u"SplitRatioDetect", 1.5);
  settings.writeReal(u"Operation", u"ReverseSplitRatioDetect", 2.5);
  settings.writeReal(u"Operation", u"IndexTrendShort", 5.0);
  settings.writeReal(u"Operation", u"IndexTrendLong", 50.0);
  settings.writeUnsigned(u"Operation", u"HideLastFYTransactions", 2);
  settings.writeString(u"Operation", u"TrayFormat", u"no such portfolio");
  readSettings();
  EXPECT_EQ(currentPriceUpdateMins, 3u);
  EXPECT_EQ(historicalPriceUpdateHours, 4u);
  EXPECT_EQ(splitRatioDetect, 1.5);
  EXPECT_EQ(reverseSplitRatioDetect, 2.5);
  EXPECT_EQ(indexTrendShort, 5.0);
  EXPECT_EQ(indexTrendLong, 50.0);
  EXPECT_TRUE(hideLastFYTransactions);
  EXPECT_EQ(trayFormat, u"no such portfolio"); // Kept unchanged.
}

TEST_F(RunTimeSettingsTest, AutomaticLimitsAreAlwaysOffAtTheStart) {
  settings.writeUnsigned(u"Operation", u"AutoMinMaxPrices", 1);
  autoMinMaxPrices = true;
  readSettings();
  EXPECT_FALSE(autoMinMaxPrices);
}

TEST_F(RunTimeSettingsTest, ABackgroundPassHoldsTheMutexWhileTheFlagIsSet) {
  {
    const BackgroundPassScope pass;
    EXPECT_TRUE(inBackgroundPass);
    EXPECT_TRUE(bigMutex().heldByThisThread());
    {
      const BackgroundPassScope inner;
      EXPECT_TRUE(inBackgroundPass);
    }
    EXPECT_TRUE(inBackgroundPass);
  }
  EXPECT_FALSE(inBackgroundPass);
  EXPECT_FALSE(bigMutex().heldByThisThread());
}

TEST_F(RunTimeSettingsTest, AThreadWithTheMutexNeverSeesTheFlagOfAnother) {
  std::thread pass([] {
    for (int i = 0; i < 500; ++i)
      const BackgroundPassScope scope;
  });
  int seen = 0;
  for (int i = 0; i < 500; ++i) {
    const BigMutexLock lock;
    seen += inBackgroundPass ? 1 : 0;
  }
  pass.join();
  EXPECT_EQ(seen, 0);
}

} // namespace
} // namespace Tallymoor
