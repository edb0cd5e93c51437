#include "foundation/FileName.h"
#include <gtest/gtest.h>

namespace Tallymoor {
namespace {

TEST(FileNameTest, EscapesCharactersNotAllowedInFileNames) {
  EXPECT_EQ(fileNameFor(u"ABC.AX"), u"ABC.AX");
  EXPECT_EQ(fileNameFor(u"^AXJO"), u"^AXJO");
  EXPECT_EQ(fileNameFor(u"GC=F"), u"GC=F");
  EXPECT_EQ(fileNameFor(u"../x"), u"..%2Fx");
  EXPECT_EQ(fileNameFor(u"a%2Fb"), u"a%252Fb");
  EXPECT_EQ(fileNameFor(String(u"a\0\n\u007F", 4)), u"a%00%0A%7F");
  EXPECT_EQ(fileNameFor(u"caf\u00E9"), u"caf\u00E9");
}

TEST(FileNameTest, EscapesLoneSurrogates) {
  EXPECT_EQ(fileNameFor(String(u"a") + char16_t(0xD83D)), u"a%uD83D");
  EXPECT_EQ(fileNameFor(char16_t(0xDCC8) + String(u"a")), u"%uDCC8a");
  EXPECT_EQ(fileNameFor(u"\U0001F4C8"), u"\U0001F4C8") << "a whole pair stays";
}

TEST(FileNameTest, ALongCodeIsShortenedAndGetsAHash) {
  const String longest(String::Base(255, u'L'));
  EXPECT_EQ(fileNameFor(longest), longest);
  EXPECT_EQ(fileNameFor(longest, 1), String(String::Base(220, u'L')) + u"%~053640591808895CAF5498D950DA8A59");
  EXPECT_EQ(255u, fileNameFor(longest + u"1").toUTF8().size());
  EXPECT_FALSE(fileNameFor(longest + u"1") == fileNameFor(longest + u"2"));
  const String wide(String::Base(86, u'\u4E2D')); // 258 bytes
  EXPECT_GE(255u, fileNameFor(wide).toUTF8().size());
  EXPECT_TRUE(fileNameFor(wide).startsWith(u"\u4E2D\u4E2D"));
}

} // namespace
} // namespace Tallymoor
