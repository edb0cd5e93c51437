#include "service/PriceFolder.h"
#include "support/TestProfile.h"
#include <gtest/gtest.h>

using namespace std::chrono;

namespace SampleService {
namespace {

class PriceFolderTest : public ::testing::Test {
protected:
  void writePrices(const std::string& fileName, const std::string& content) {
    Tallymoor::TestProfile::writeFile(m_profile.path("prices/" + fileName), content);
  }

  Tallymoor::TestProfile m_profile;
  const PriceFolder m_prices{m_profile.folder() + "/prices"};
};

TEST_F(PriceFolderTest, ReadsRowsInTheOrderOfTheirDays) {
  writePrices("AB.X.csv", "Date,Open,High,Low,Close,Adj Close,Volume\n"
                          "2026-03-02,1.5,2.25,1.25,2,1.99995,1234567890123\r\n"
                          "2026-02-27,1,1,1,1,1,1\n");
  const auto history = m_prices.history("AB.X");
  ASSERT_TRUE(history);
  ASSERT_EQ(history->rows.size(), 2u);
  EXPECT_EQ(history->rows[0].day, sys_days(2026y / February / 27));
  const DayRow& last = history->rows[1];
  EXPECT_EQ(last.day, sys_days(2026y / March / 2));
  EXPECT_EQ(last.open, 15000);
  EXPECT_EQ(last.high, 22500);
  EXPECT_EQ(last.low, 12500);
  EXPECT_EQ(last.close, 20000);
  EXPECT_EQ(last.adjustedClose, 20000) << "rounded to ten-thousandths";
  EXPECT_EQ(last.volume, 1234567890123);
}

TEST_F(PriceFolderTest, LeavesOutLinesThatCannotBeRead) {
  writePrices("A.csv", "Date,Open,High,Low,Close,Adj Close,Volume\n"
                       "2026-02-30,1,1,1,1,1,1\n"
                       "2026-03-02,null,null,null,null,null,null\n"
                       "2026-03-02,1,inf,1,1,1,1\n"
                       "2026-03-02,1,1\n"
                       "\n"
                       "2026-03-03,1,1,1,1,1,1");
  const auto history = m_prices.history("A");
  ASSERT_TRUE(history);
  ASSERT_EQ(history->rows.size(), 1u);
  EXPECT_EQ(history->rows[0].day, sys_days(2026y / March / 3));
}

TEST_F(PriceFolderTest, ReadsNoFileOutsideOfTheFolder) {
  writePrices("A.csv", "2026-03-03,1,1,1,1,1,1\n");
  Tallymoor::TestProfile::writeFile(m_profile.path("outside.csv"), "2026-03-03,1,1,1,1,1,1\n");
  EXPECT_TRUE(m_prices.history("A"));
  for (const std::string code : {"", ".", "..", "../outside", "./A", "NONE"})
    EXPECT_FALSE(m_prices.history(code)) << code;
  EXPECT_FALSE(m_prices.history(m_profile.folder() + "/outside"));
  EXPECT_FALSE(m_prices.history(std::string("A\0", 2)));
}

TEST_F(PriceFolderTest, ListsEachFileUnderItsCode) {
  for (const char* const name : {"B.csv", "^A.csv", "note.txt", ".csv"})
    writePrices(name, "");
  const auto listings = m_prices.listings();
  ASSERT_EQ(listings.size(), 2u);
  EXPECT_EQ(listings[0].code, "B");
  EXPECT_FALSE(listings[0].isIndex);
  EXPECT_EQ(listings[1].code, "^A");
  EXPECT_EQ(listings[1].name, "^A");
  EXPECT_TRUE(listings[1].isIndex);
  EXPECT_TRUE(PriceFolder(m_profile.folder() + "/nowhere").listings().empty());
}

} // namespace
} // namespace SampleService
