#include "widgets/RowChanges.h"
#include "widgets/Row.h"
#include <array>
#include <gtest/gtest.h>
#include <initializer_list>

namespace Tallymoor {
namespace {

using Runs = std::vector<RowChanges::Run>;

class RowChangesTest : public testing::Test {
protected:
  /// Rows by number.
  std::vector<Row*> rows(std::initializer_list<std::size_t> numbers) {
    std::vector<Row*> chosen;
    for (const std::size_t number : numbers)
      chosen.push_back(&m_rows.at(number));
    return chosen;
  }
  Row& row(std::size_t number) { return m_rows.at(number); }

  static constexpr std::size_t COUNT = 50;

private:
  template <std::size_t... Numbers>
  static std::array<Row, COUNT> makeRows(std::index_sequence<Numbers...>) {
    return {((void)Numbers, Row(u"key"))...};
  }
  std::array<Row, COUNT> m_rows = makeRows(std::make_index_sequence<COUNT>());
};

TEST_F(RowChangesTest, NothingChanges) {
  const auto changes = RowChanges::between(rows({0, 1, 2}), rows({0, 1, 2}));
  ASSERT_TRUE(changes);
  EXPECT_TRUE(changes->removed.empty());
  EXPECT_TRUE(changes->added.empty());
}

TEST_F(RowChangesTest, RemovedRowsComeFromTheLastByTheirOldPlaces) {
  const auto changes = RowChanges::between(rows({0, 1, 2, 3, 4}), rows({1, 4}));
  ASSERT_TRUE(changes);
  EXPECT_EQ(changes->removed, (Runs{{2, 2}, {0, 1}}));
  EXPECT_TRUE(changes->added.empty());
}

TEST_F(RowChangesTest, AddedRowsComeFromTheFirstByTheirNewPlaces) {
  const auto changes = RowChanges::between(rows({0, 1}), rows({5, 0, 6, 7, 1, 8}));
  ASSERT_TRUE(changes);
  EXPECT_TRUE(changes->removed.empty());
  EXPECT_EQ(changes->added, (Runs{{0, 1}, {2, 2}, {5, 1}}));
}

TEST_F(RowChangesTest, OneRowInThePlaceOfAnother) {
  const auto changes = RowChanges::between(rows({0, 1, 2}), rows({0, 5, 2}));
  ASSERT_TRUE(changes);
  EXPECT_EQ(changes->removed, (Runs{{1, 1}}));
  EXPECT_EQ(changes->added, (Runs{{1, 1}}));
}

TEST_F(RowChangesTest, FromNothingAndToNothing) {
  EXPECT_EQ(RowChanges::between({}, rows({0, 1}))->added, (Runs{{0, 2}}));
  EXPECT_EQ(RowChanges::between(rows({0, 1}), {})->removed, (Runs{{0, 2}}));
}

TEST_F(RowChangesTest, RowsThatChangePlacesAreNoChangeInPlace) {
  EXPECT_FALSE(RowChanges::between(rows({0, 1, 2}), rows({1, 0, 2})));
  EXPECT_FALSE(RowChanges::between(rows({0, 1, 2}), rows({2, 0, 1})));
}

TEST_F(RowChangesTest, ManyRunsAreReplacedByAFullChange) {
  std::vector<Row*> all;
  std::vector<Row*> everySecond;
  for (std::size_t i = 0; i < 2 * RowChanges::MOST_RUNS; ++i) {
    all.push_back(&row(i));
    if (i % 2 == 0)
      everySecond.push_back(&row(i));
  }
  EXPECT_TRUE(RowChanges::between(everySecond, all));
  EXPECT_TRUE(RowChanges::between(all, everySecond));
  all.insert(all.begin(), {&row(48), &row(0)});
  all.erase(all.begin() + 2);
  all.insert(all.begin() + 1, &row(49)); // 48, 49, 0, 1, 2 ...: one more run.
  EXPECT_FALSE(RowChanges::between(everySecond, all));
  EXPECT_FALSE(RowChanges::between(all, everySecond));
}

} // namespace
} // namespace Tallymoor
