#include "widgets/MessageLayout.h"
#include "support/StringPrinting.h"
#include <gtest/gtest.h>

namespace Tallymoor {
namespace {

String repeated(const char16_t* text, int times) {
  String all;
  for (int i = 0; i < times; ++i)
    all += text;
  return all;
}

/// Ten pixels per code unit.
MessageRoom room(int width, std::size_t lines) {
  return {[](const String& line) { return 10 * static_cast<int>(line.size()); }, width, lines};
}

TEST(MessageLayoutTest, TextThatFitsIsUnchanged) {
  for (const char16_t* text : {u"", u"one", u"one\ntwo", u"\n", u"  two  blanks  ", u"ends\n"})
    EXPECT_EQ(String(text), fittedMessage(text, room(1000, 10)));
}

TEST(MessageLayoutTest, LinesBreakAtTheLastBlankThatFits) {
  EXPECT_EQ(String(u"one two\nthree"), fittedMessage(u"one two three", room(120, 10)));
  EXPECT_EQ(String(u"one two\nthree"), fittedMessage(u"one two three", room(70, 10)));
  EXPECT_EQ(String(u"one\ntwo\nthree"), fittedMessage(u"one two three", room(60, 10)));
}

TEST(MessageLayoutTest, AWordWiderThanTheRoomBreaksAnywhere) {
  EXPECT_EQ(String(u"abcdef\nghij"), fittedMessage(u"abcdefghij", room(60, 10)));
  EXPECT_EQ(String(u"a\nb\nc"), fittedMessage(u"abc", room(0, 10))) << "one at least";
}

TEST(MessageLayoutTest, NoCharacterIsCutInTwo) {
  EXPECT_EQ(String(u"a\n\U0001F4C8\nb"), fittedMessage(u"a\U0001F4C8b", room(20, 10)));
  EXPECT_EQ(String(u"\U0001F4C8\n\U0001F4C8"), fittedMessage(u"\U0001F4C8\U0001F4C8", room(10, 10)));
}

TEST(MessageLayoutTest, NoLineHasMoreThan150UnitsWhateverTheRoom) {
  const String fitted = fittedMessage(repeated(u"12345678 ", 30) + u"end", room(100000, 10));
  std::size_t longest = 0;
  for (std::size_t begin = 0; begin < fitted.size();) {
    const std::size_t end = std::min(fitted.find(u'\n', begin), fitted.size());
    longest = std::max(longest, end - begin);
    begin = end + 1;
  }
  EXPECT_EQ(143u, longest);
}

TEST(MessageLayoutTest, TheMiddleOfTooManyLinesIsOmitted) {
  EXPECT_EQ(String(u"1\n2\n3\n4\n\u2026\n9"), fittedMessage(u"1\n2\n3\n4\n5\n6\n7\n8\n9", room(100, 6)));
  EXPECT_EQ(String(u"1\n2\n3\n4\n5\n6"), fittedMessage(u"1\n2\n3\n4\n5\n6", room(100, 6)));
  EXPECT_EQ(String(u"1\n\u2026\n4"), fittedMessage(u"1\n2\n3\n4", room(100, 0))) << "three lines at least";
}

TEST(MessageLayoutTest, TheBeginningAndTheEndOfALongTextAreShown) {
  const String page = repeated(u"<td>nothing that anybody would read</td>", 100'000);
  int measured = 0;
  MessageRoom counting = room(1000, 12);
  counting.widthOf = [&measured](const String& line) { return ++measured, 10 * int(line.size()); };
  const String fitted = fittedMessage(u"It failed: " + page + u"\nTry again?", counting);
  EXPECT_TRUE(fitted.startsWith(u"It failed: "));
  EXPECT_TRUE(fitted.ends_with(u"\nTry again?"));
  EXPECT_NE(String::npos, fitted.find(u"\n\u2026\n"));
  EXPECT_EQ(11, std::count(fitted.begin(), fitted.end(), u'\n'));
  EXPECT_LT(measured, 1000) << "most of it is not even measured";
}

} // namespace
} // namespace Tallymoor
