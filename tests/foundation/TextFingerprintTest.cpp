#include "foundation/TextFingerprint.h"
#include <algorithm>
#include <gtest/gtest.h>
#include <random>
#include <set>
#include <string>

namespace Tallymoor {
namespace {

using Values = std::array<std::uint64_t, TextFingerprint::PLACES>;

Values valuesOf(const std::string& text) {
  return TextFingerprint(text).values();
}

TEST(TextFingerprintTest, OfPartsIsThatOfTheWhole) {
  std::mt19937 random(7);
  std::string text;
  for (int i = 0; i < 1000; ++i)
    text.push_back(static_cast<char>(random()));
  for (int round = 0; round < 300; ++round) {
    const std::size_t first = random() % (text.size() + 1);
    const std::size_t second = first + random() % (text.size() + 1 - first);
    TextFingerprint parts;
    for (const std::string& part :
         {text.substr(0, first), text.substr(first, second - first), text.substr(second)})
      parts.append(TextFingerprint(part));
    ASSERT_EQ(valuesOf(text), parts.values()) << first << " " << second;
    ASSERT_EQ(text.size(), parts.length());
  }
}

// Journals hold them.
TEST(TextFingerprintTest, NeverChanges) {
  EXPECT_EQ((Values{0, 0}), valuesOf(""));
  EXPECT_EQ((Values{'a', 'a'}), valuesOf("a"));
  EXPECT_EQ((Values{750951605426087002U, 1455782863702680921U}), valuesOf("Nothing typed is lost."));
}

TEST(TextFingerprintTest, SmallChangesDiffer) {
  const std::string text = "<CashEvent><Date>3/3/2006</Date><Constant>1.00</Constant></CashEvent>";
  std::set<Values> met{valuesOf(text)};
  std::size_t count = 1;
  for (std::size_t i = 0; i < text.size(); ++i)
    for (int other = 0; other < 256; ++other) {
      std::string changed = text;
      changed[i] = static_cast<char>(other);
      if (changed == text)
        continue;
      met.insert(valuesOf(changed));
      ++count;
    }
  for (std::size_t i = 0; i < text.size(); ++i)
    for (std::size_t j = i + 1; j < text.size(); ++j) {
      std::string changed = text;
      std::swap(changed[i], changed[j]);
      if (changed[i] == changed[j])
        continue;
      met.insert(valuesOf(changed));
      ++count;
    }
  EXPECT_EQ(count, met.size());
}

TEST(TextFingerprintTest, ZeroBytesInFrontShowInTheLengthAlone) {
  const TextFingerprint text(std::string(3, '\0') + "a");
  EXPECT_EQ(valuesOf("a"), text.values());
  EXPECT_EQ(4U, text.length());
}

} // namespace
} // namespace Tallymoor
