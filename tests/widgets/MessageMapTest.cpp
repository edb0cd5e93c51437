#include "support/windows/MessageMaps.h"
#include "widgets/InvestmentTree.h"
#include "widgets/Table.h"
#include "widgets/TableHeader.h"
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Tallymoor {
namespace {

class DoubleEntries : public FXObject {
  FXDECLARE(DoubleEntries)
public:
  long onFirst(FXObject*, FXSelector, void*) { return 1; }
  long onSecond(FXObject*, FXSelector, void*) { return 1; }
};

FXDEFMAP(DoubleEntries)
doubleEntriesMap[] = {
    FXMAPFUNCS(SEL_COMMAND, 1, 3, DoubleEntries::onFirst),
    FXMAPFUNC(SEL_COMMAND, 2, DoubleEntries::onSecond),
};

FXIMPLEMENT(DoubleEntries, FXObject, doubleEntriesMap, ARRAYNUMBER(doubleEntriesMap))

TEST(MessageMapTest, NoClassAnswersOneSelectorTwice) {
  EXPECT_THAT(MessageMaps::classesWithDuplicates(), testing::ElementsAre("DoubleEntries"))
      << "only the class of this test has a row that is never reached";
}

TEST(MessageMapTest, WalksTheClassesOfTheProgram) {
  const std::vector<const FXMetaClass*> own = MessageMaps::ownClasses();
  EXPECT_THAT(own, testing::IsSupersetOf({&Table::metaClass, &TableHeader::metaClass, &TreeView::metaClass}));
  EXPECT_THAT(own, testing::Not(testing::Contains(&FXTable::metaClass)));
  EXPECT_EQ(15u, MessageMaps::rangesOf(CellGrid::metaClass).size());
  EXPECT_EQ(3u, MessageMaps::rangesOf(Table::metaClass).size());
}

} // namespace
} // namespace Tallymoor
