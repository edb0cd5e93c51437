#include "session/TextEdits.h"
#include <gtest/gtest.h>
#include <random>

namespace Tallymoor {
namespace {

/// What leads from one to the other does so, and back.
std::vector<TextEdit> checkedEdits(const std::string& before, const std::string& after) {
  std::vector<TextEdit> edits = editsBetween(before, after);
  EXPECT_EQ(after, edited(before, edits));
  EXPECT_EQ(before, edited(after, reversed(edits)));
  return edits;
}

std::string entries(int from, int to) {
  std::string text;
  for (int i = from; i < to; ++i)
    text += "<CashEvent><Date>3/3/2006</Date><Constant>" + std::to_string(i) + ".00</Constant></CashEvent>";
  return text;
}

TEST(TextEditsTest, EqualTextsHaveNoEdits) {
  EXPECT_TRUE(checkedEdits("", "").empty());
  EXPECT_TRUE(checkedEdits(entries(0, 100), entries(0, 100)).empty());
}

TEST(TextEditsTest, OneInsertionIsOneEdit) {
  const std::string before = entries(0, 1000);
  const std::string after = before + entries(1000, 1001);
  EXPECT_EQ((std::vector<TextEdit>{{before.size(), "", entries(1000, 1001)}}), checkedEdits(before, after));
}

TEST(TextEditsTest, EditsFarApartStaySmall) {
  const std::string before = entries(0, 20) + entries(100, 5000) + entries(6000, 6001);
  const std::string after = entries(0, 21) + entries(100, 5000) + entries(6000, 6003);
  std::size_t bytes = 0;
  for (const TextEdit& edit : checkedEdits(before, after))
    bytes += edit.removed.size() + edit.inserted.size();
  EXPECT_GT(500u, bytes);
}

TEST(TextEditsTest, ADifferenceThatIsNotFoundNearbyBecomesOneEdit) {
  const std::string start = entries(0, 10);
  EXPECT_EQ((std::vector<TextEdit>{{start.size(), std::string(300000, 'a'), std::string(400000, 'b')}}),
            checkedEdits(start + std::string(300000, 'a') + "same end",
                         start + std::string(400000, 'b') + "same end"));
}

TEST(TextEditsTest, EditsOfAnotherTextAreRefused) {
  const std::vector<TextEdit> edits{{3, "abc", "x"}};
  EXPECT_EQ("012x6", edited("012abc6", edits));
  EXPECT_EQ(std::nullopt, edited("012abd6", edits));
  EXPECT_EQ(std::nullopt, edited("012ab", edits));
  EXPECT_EQ(std::nullopt, edited("", edits));
  EXPECT_EQ(std::nullopt, edited("aabb", {{2, "b", ""}, {1, "a", ""}}));
}

TEST(TextEditsTest, RandomTextsAreReachedBothWays) {
  std::mt19937 random(1);
  const auto below = [&random](std::size_t count) { return random() % count; };
  for (int round = 0; round < 300; ++round) {
    std::string before = entries(0, static_cast<int>(below(200)));
    std::string after = before;
    for (std::size_t change = below(6); change > 0; --change) {
      const std::size_t place = below(after.size() + 1);
      after.replace(place, below(150), entries(0, static_cast<int>(below(3))) + std::string(below(5), 'z'));
    }
    checkedEdits(before, after);
  }
}

} // namespace
} // namespace Tallymoor
