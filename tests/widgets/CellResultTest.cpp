#include "widgets/CellResult.h"
#include "foundation/Exception.h"
#include "support/TestProfile.h"
#include <gtest/gtest.h>
#include <limits>

namespace Tallymoor {
namespace {

class CellResultTest : public ::testing::Test {
protected:
  TestProfile m_profile{"en_AU"};

  static std::string shown(const CellResult& result) { return result.shown().toUTF8(); }
};

/// A result with an invalid type.
class StrayResult : public CellResult {
public:
  StrayResult() : CellResult(1) { m_type = static_cast<CellResultType>(8); }
};

TEST_F(CellResultTest, TypesKeepTheirNumbers) {
  EXPECT_EQ(0, CELL_TEXT);
  EXPECT_EQ(1, CELL_MONEY);
  EXPECT_EQ(2, CELL_PRICE);
  EXPECT_EQ(3, CELL_PERCENT);
  EXPECT_EQ(4, CELL_WHOLE_PERCENT);
  EXPECT_EQ(5, CELL_WHOLE_NUMBER);
  EXPECT_EQ(6, CELL_DATE);
  EXPECT_EQ(7, CELL_NUMBER);
}

TEST_F(CellResultTest, TextIsShownAsItIs) {
  const CellResult result(String(u" A & B "));
  EXPECT_EQ(CELL_TEXT, result.type());
  EXPECT_EQ(" A & B ", shown(result));
  EXPECT_EQ(0.0, result.amount());
}

TEST_F(CellResultTest, MoneyTakesTheUsersForm) {
  EXPECT_EQ("$1,234.50", shown(CellResult(1234.5, CELL_MONEY)));
  EXPECT_EQ("-$0.50", shown(CellResult(-0.5, CELL_MONEY)));
}

TEST_F(CellResultTest, PriceDropsItsLastTwoDecimalsWhenTheyAreZero) {
  EXPECT_EQ("1.23", shown(CellResult(1.23, CELL_PRICE)));
  EXPECT_EQ("1.2345", shown(CellResult(1.2345, CELL_PRICE)));
  EXPECT_EQ("1.2310", shown(CellResult(1.231, CELL_PRICE)));
  EXPECT_EQ("100.00", shown(CellResult(100.0, CELL_PRICE)));
  EXPECT_EQ("0.0001", shown(CellResult(0.0001, CELL_PRICE)));
}

TEST_F(CellResultTest, PercentHasTwoDecimals) {
  EXPECT_EQ("12.50%", shown(CellResult(12.5, CELL_PERCENT)));
  EXPECT_EQ("-0.01%", shown(CellResult(-0.01, CELL_PERCENT)));
}

TEST_F(CellResultTest, WholePercentIsCutTowardZero) {
  EXPECT_EQ("12%", shown(CellResult(12.9, CELL_WHOLE_PERCENT)));
  EXPECT_EQ("-12%", shown(CellResult(-12.9, CELL_WHOLE_PERCENT)));
  EXPECT_EQ("0%", shown(CellResult(-0.9, CELL_WHOLE_PERCENT)));
  EXPECT_EQ("0%", shown(CellResult(std::numeric_limits<double>::infinity(), CELL_WHOLE_PERCENT)));
}

TEST_F(CellResultTest, WholeNumberReadsFromTheIntegerField) {
  const CellResult result(-42);
  EXPECT_EQ(CELL_WHOLE_NUMBER, result.type());
  EXPECT_EQ(-42, result.number());
  EXPECT_EQ("-42", shown(result));
  EXPECT_EQ(-42.0, result.amount());
}

TEST_F(CellResultTest, DateTakesTheUsersShortForm) {
  const CellResult result(Date(2006, 3, 4));
  EXPECT_EQ(CELL_DATE, result.type());
  EXPECT_EQ(Date(2006, 3, 4).toString(DATE_DISPLAY_LOCAL), result.shown());
  EXPECT_EQ(0.0, result.amount());
}

TEST_F(CellResultTest, NumberHasTwoDecimals) {
  EXPECT_EQ("1234.57", shown(CellResult(1234.567, CELL_NUMBER)));
  EXPECT_EQ(1234.567, CellResult(1234.567, CELL_NUMBER).amount());
}

TEST_F(CellResultTest, RefusesTypesThatHoldNoDouble) {
  for (const int type : {CELL_TEXT + 0, CELL_WHOLE_NUMBER + 0, CELL_DATE + 0, 8, -1}) {
    try {
      CellResult(1.0, static_cast<CellResultType>(type));
      ADD_FAILURE() << "type " << type << " was taken";
    } catch (const Exception& exception) {
      EXPECT_EQ("CellResult(double d, CellResultType t) - bad type", exception.message().toUTF8());
    }
  }
}

TEST_F(CellResultTest, TypeOutsideTheListHasNoText) {
  try {
    StrayResult().shown();
    ADD_FAILURE() << "a text was given";
  } catch (const Exception& exception) {
    EXPECT_EQ("Column::operator() - bad type", exception.message().toUTF8());
  }
}

} // namespace
} // namespace Tallymoor
