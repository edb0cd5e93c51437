#include "widgets/RowCompare.h"
#include "foundation/Platform.h"
#include "support/TestProfile.h"
#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Tallymoor {
namespace {

class RowCompareTest : public ::testing::Test {
protected:
  TestProfile m_profile{"en_AU"};

  static std::vector<std::string> sorted(CompareType type, const std::vector<std::string>& texts) {
    const RowCompare compare(type);
    std::vector<SortKey> keys;
    for (const std::string& text : texts)
      keys.push_back(compare.key(text.c_str()));
    std::stable_sort(keys.begin(), keys.end(), compare);
    std::vector<std::string> result;
    for (const SortKey& key : keys)
      result.push_back(key.text.toUTF8());
    return result;
  }
};

using testing::ElementsAre;

TEST_F(RowCompareTest, TypesKeepTheirNumbers) {
  EXPECT_EQ(0, COMPARE_TEXT);
  EXPECT_EQ(1, COMPARE_NEWEST_FIRST);
  EXPECT_EQ(2, COMPARE_OLDEST_FIRST);
  EXPECT_EQ(3, COMPARE_AMOUNT);
  EXPECT_EQ(4, COMPARE_PERCENT);
  EXPECT_EQ(5, COMPARE_NUMBER);
}

TEST_F(RowCompareTest, TextsGoByCharacterValue) {
  EXPECT_THAT(sorted(COMPARE_TEXT, {"b", "a", "B", "10", "9"}), ElementsAre("10", "9", "B", "a", "b"));
}

TEST_F(RowCompareTest, DatesGoByTheirDayAndBadOnesAreOldest) {
  const std::string early = Date(2005, 12, 31).toString(DATE_DISPLAY_LOCAL).toUTF8();
  const std::string late = Date(2006, 1, 2).toString(DATE_DISPLAY_LOCAL).toUTF8();
  EXPECT_THAT(sorted(COMPARE_OLDEST_FIRST, {late, "never", early}), ElementsAre("never", early, late));
  EXPECT_THAT(sorted(COMPARE_NEWEST_FIRST, {early, "never", late}), ElementsAre(late, early, "never"));
}

TEST_F(RowCompareTest, AmountsGoByTheirValueWithoutSigns) {
  EXPECT_THAT(sorted(COMPARE_AMOUNT, {"$1,000.00", "$9.00", "-$20.00"}),
              ElementsAre("-$20.00", "$9.00", "$1,000.00"));
}

TEST_F(RowCompareTest, AmountsAreReadInTheUsersForm) {
  m_profile.setLocale("de_DE");
  const auto money = [](double amount) { return Platform::Instance().currencyFormat(amount).toUTF8(); };
  EXPECT_THAT(sorted(COMPARE_AMOUNT, {money(1000), money(9.5), money(20), money(-1500)}),
              ElementsAre(money(-1500), money(9.5), money(20), money(1000)));
}

TEST_F(RowCompareTest, PercentagesAndNumbersGoByTheirValue) {
  EXPECT_THAT(sorted(COMPARE_PERCENT, {"10.00%", "9.00%", "-1.00%"}),
              ElementsAre("-1.00%", "9.00%", "10.00%"));
  EXPECT_THAT(sorted(COMPARE_NUMBER, {"1,000", "9", "-1", "none"}), ElementsAre("-1", "none", "9", "1,000"));
}

TEST_F(RowCompareTest, EqualTextsKeepTheirOrder) {
  EXPECT_THAT(sorted(COMPARE_NUMBER, {"2", "1.0", "1.00", "1"}), ElementsAre("1.0", "1.00", "1", "2"));
}

} // namespace
} // namespace Tallymoor
