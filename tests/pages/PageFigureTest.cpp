#include "pages/PageFigure.h"
#include "foundation/Exception.h"
#include "support/MessageOf.h"
#include "support/StringPrinting.h"
#include <gtest/gtest.h>

namespace Tallymoor {
namespace {

TEST(PageFigure, ReadsNumbersAsPagesWriteThem) {
  struct Case {
    const char16_t* text;
    double number;
  };
  for (const Case& each :
       {Case{u"12.34", 12.34}, Case{u"1,234.50", 1234.5}, Case{u"1,234,567", 1234567.0},
        Case{u"1234567", 1234567.0}, Case{u"-3.5", -3.5}, Case{u"+3.5", 3.5}, Case{u".5", 0.5},
        Case{u"0.0", 0.0}, Case{u"12.34 AUD", 12.34}, Case{u"5.1%", 5.1}, Case{u"12.34*", 12.34},
        Case{u"\n 12.34\t", 12.34}, Case{u"&nbsp;12.34&nbsp; ", 12.34}, Case{u"\u00A012.34", 12.34},
        Case{u"&#160;7&#160;", 7.0}}) {
    ASSERT_TRUE(readFigure(each.text).has_value()) << String(each.text).toUTF8();
    EXPECT_EQ(*readFigure(each.text), each.number) << String(each.text).toUTF8();
  }
}

TEST(PageFigure, ReadsNothingElse) {
  for (const char16_t* const text : {u"",
                                     u" ",
                                     u"&nbsp;",
                                     u"N/A",
                                     u"-",
                                     u"--",
                                     u".",
                                     u"+",
                                     u"$12.34",
                                     u"12,34",
                                     u"1.234,50",
                                     u"1,2345",
                                     u"1234,567",
                                     u",123",
                                     u"1,234,56",
                                     u"1 234.50",
                                     u"1&nbsp;234.50",
                                     u"12&#46;30",
                                     u"1'234.50",
                                     u"12.34.5",
                                     u"12.3x4",
                                     u"1.2M",
                                     u"1e5",
                                     u"12.34AUD",
                                     u"--5",
                                     u"x",
                                     u"12.3 (was 12.1)"})
    EXPECT_FALSE(readFigure(text).has_value()) << String(text).toUTF8();
}

TEST(PageFigure, APriceInPenceIsNotOneInPounds) {
  for (const char16_t* const text : {u"3200p", u"3,200p", u"32.00p", u"3200 p1"})
    EXPECT_FALSE(readFigure(text).has_value()) << String(text).toUTF8();
}

TEST(PageFigure, VolumesMayBeShortened) {
  const std::pair<const char16_t*, double> cases[] = {
      {u"850", 850}, {u"1,004,500", 1004500}, {u"1.2M", 1.2e6},  {u" 12.5k&nbsp;", 12500}, {u"3B", 3e9},
      {u"0", 0},     {u"1.2m", 1.2e6},        {u"&nbsp;2b", 2e9}};
  for (const auto& [text, volume] : cases)
    EXPECT_EQ(readVolume(text), volume) << String(text).toUTF8();
  for (const char16_t* const text : {u"", u"M", u"-", u"1.2x", u"1.2MM", u"1,2M"})
    EXPECT_FALSE(readVolume(text).has_value()) << String(text).toUTF8();
}

TEST(PageFigure, NamesTextsThatAreNotNumbers) {
  EXPECT_EQ(requireFigure(u"1.5"), 1.5);
  EXPECT_EQ(messageOf([] { requireFigure(u"N/A"); }), String(u"TallymoorInternet - no number: N/A"));
}

TEST(PageFigure, BlanksAroundATextHoldNoDigits) {
  EXPECT_EQ(withoutPageBlanks(u" &nbsp;&#160; a&nbsp;b &nbsp;"), String(u"a&nbsp;b"));
  EXPECT_EQ(withoutPageBlanks(u"&nbsp;"), String());
  EXPECT_FALSE(holdsDigits(u"&#160;"));
  EXPECT_TRUE(holdsDigits(u"x&#160;1"));
}

} // namespace
} // namespace Tallymoor
