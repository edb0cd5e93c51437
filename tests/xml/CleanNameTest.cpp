#include "xml/CleanName.h"
#include "support/StringPrinting.h"
#include <gtest/gtest.h>

namespace Tallymoor {
namespace {

TEST(CleanNameTest, RemovesForbiddenCharacters) {
  EXPECT_EQ(String(u"abcdefghi"), cleanName(u"a&b<c>d\"e'f/g\\h\u0007i"));
  EXPECT_EQ(String(u"ab"), cleanName(u"a\n\tb\u0085"));
  EXPECT_EQ(String(u"..etcpasswd"), cleanName(u"../etc/passwd"));
  EXPECT_EQ(String(u"My first portfolio"), cleanName(u"  My first portfolio "));
  EXPECT_EQ(String(u"\u00c5ngstr\u00f6m \u682a"), cleanName(u"\u00c5ngstr\u00f6m \u682a"));
  EXPECT_EQ(String(), cleanName(u" &<>\"'/\\ "));
}

TEST(CleanNameTest, LeavesNoGapForRemovedCharacters) {
  EXPECT_EQ(String(u"A B"), cleanName(u"A & B"));
  EXPECT_EQ(String(u"A B"), cleanName(u"A   B"));
}

TEST(CleanNameTest, IsShortEnoughForAFileName) {
  const std::u16string sixty(60, u'x');
  EXPECT_EQ(String(sixty), cleanName(sixty));
  EXPECT_EQ(String(sixty), cleanName(sixty + u"y"));
  EXPECT_EQ(String(sixty.substr(1)), cleanName(sixty.substr(1) + u" y"));
  // A surrogate pair is kept or removed as a whole.
  EXPECT_EQ(String(sixty.substr(1)), cleanName(sixty.substr(1) + u"\U0001F600"));
  EXPECT_EQ(String(sixty.substr(2) + u"\U0001F600"), cleanName(sixty.substr(2) + u"\U0001F600"));
}

} // namespace
} // namespace Tallymoor
