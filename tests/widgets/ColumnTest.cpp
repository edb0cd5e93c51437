#include "widgets/Column.h"
#include "foundation/Exception.h"
#include "support/TestProfile.h"
#include "widgets/Row.h"
#include <gtest/gtest.h>
#include <stdexcept>

namespace Tallymoor {
namespace {

int computed = 0;

CellResult countedKey(Row& row) {
  ++computed;
  return CellResult(row.key());
}

CellResult failing(Row&) {
  ++computed;
  throw Exception(u"no such price");
}

CellResult failingOutsideTheFamily(Row&) {
  throw std::runtime_error("out of memory");
}

class StrayResult : public CellResult {
public:
  StrayResult() : CellResult(1) { m_type = static_cast<CellResultType>(8); }
};

CellResult stray(Row&) {
  return StrayResult();
}

class ColumnTest : public ::testing::Test {
protected:
  ColumnTest() { computed = 0; }

  TestProfile m_profile;
  Row m_row{u"ABC.AX"};
};

TEST_F(ColumnTest, BeginsHiddenAndWithoutHelp) {
  const Column column(u"Price Now", countedKey, COMPARE_AMOUNT, false, FXTableItem::LEFT, true);
  EXPECT_EQ(String(u"Price Now"), column.title());
  EXPECT_EQ(-1, column.index());
  EXPECT_TRUE(column.toolTip().empty());
  EXPECT_EQ(COMPARE_AMOUNT, column.compareType());
  EXPECT_FALSE(column.defaultVisible());
  EXPECT_EQ(0x4000u, column.justify());
  EXPECT_TRUE(column.editable());
  EXPECT_EQ(nullptr, column.table());
  EXPECT_EQ(0x2000u, static_cast<FXuint>(FXTableItem::RIGHT));
}

TEST_F(ColumnTest, AColumnThatDependsOnlyOnItsPayloadIsNotOutdatedByTheTable) {
  Column column(u"Code", countedKey);
  EXPECT_FALSE(column.followsPayloadAlone());
  EXPECT_TRUE(column.followPayloadAlone().followsPayloadAlone());
  column(m_row);
  column.outdate();
  column(m_row);
  EXPECT_EQ(1, computed);
  Column other(u"Code", countedKey);
  other(m_row);
  other.outdate();
  other(m_row);
  EXPECT_EQ(3, computed);
}

TEST_F(ColumnTest, ComputesACellOnceUntilItsRowIsRefreshed) {
  Column column(u"Code", countedKey);
  EXPECT_EQ(String(u"ABC.AX"), column(m_row));
  EXPECT_EQ(String(u"ABC.AX"), column.result(m_row).text());
  EXPECT_EQ(1, computed);
  Row other(u"XYZ.AX");
  EXPECT_EQ(String(u"XYZ.AX"), column(other));
  EXPECT_EQ(2, computed);
}

TEST_F(ColumnTest, FailingCellReadsErrorAndTheFailureIsRemembered) {
  Column column(u"Code", failing);
  EXPECT_EQ(String(u"error"), column(m_row));
  EXPECT_EQ(String(u"error"), column(m_row));
  try {
    column.result(m_row);
    ADD_FAILURE() << "the failure was lost";
  } catch (const Exception& exception) {
    EXPECT_EQ(String(u"no such price"), exception.message());
  }
  EXPECT_EQ(1, computed);
}

TEST_F(ColumnTest, AnyExceptionAffectsOnlyItsCell) {
  Column column(u"Code", failingOutsideTheFamily);
  EXPECT_EQ(String(u"error"), column(m_row));
  EXPECT_THROW(column.result(m_row), std::runtime_error);
}

TEST_F(ColumnTest, ResultWithoutATextFormReadsError) {
  Column column(u"Code", stray);
  EXPECT_EQ(String(u"error"), column(m_row));
}

TEST_F(ColumnTest, RowsHaveNoPositionBeforeATablePlacesThem) {
  int payload = 7;
  Row row(u"ABC.AX", &payload);
  EXPECT_EQ(-1, row.index());
  EXPECT_EQ(nullptr, row.table());
  EXPECT_EQ(7, row.payload<int>());
  row.setColour(FXRGB(1, 2, 3)); // Nothing to paint.
  row.clearColour();
  row.resetColour();
}

} // namespace
} // namespace Tallymoor
