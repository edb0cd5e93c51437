#include "workbench/PageText.h"
#include "pages/HTMLParser.h"
#include "support/StringPrinting.h"
#include "workbench/NumberRemark.h"
#include "workbench/PlainOutput.h"
#include <gtest/gtest.h>
#include <sstream>

namespace Tallymoor {
namespace {

TEST(PageText, TextsAreReadAsABrowserShowsThem) {
  EXPECT_EQ(asShown(u" \r\n a\t b&nbsp;\u00A0c "), u"a b c");
  EXPECT_EQ(asShown(u"&amp;&lt;&gt;&quot;&#65;&#x42;&#X43;&pound;"), u"&<>\"ABC\u00A3");
  EXPECT_EQ(asShown(u"&unknown; &#; &#xD800; &#99999; a&b; & &amp"),
            u"&unknown; &#; &#xD800; &#99999; a&b; & &amp");
}

TEST(PageText, LongTextsAreCut) {
  EXPECT_EQ(shortened(String(60, u'x')), String(60, u'x'));
  EXPECT_EQ(shortened(String(61, u'x')), String(60, u'x') + u"...");
  EXPECT_EQ(shortened(String(5000000, u' ')), u"...");
  EXPECT_EQ(shortened(u"a\nb\u2003c", 10), u"a b\u2003c");
}

TEST(PageText, TagsAreShownWithWhatMarksThem) {
  const HTMLPage page =
      HTMLParser::Parse(u"<html><body z=1 class=c a id=\"i\"><p></p></body><b>x</b></html>");
  EXPECT_EQ(tagSummary(*page->firstSubTag()), u"<body id=\"i\" class=\"c\" a>, 1 tag in it");
  EXPECT_EQ(placeOf(*page->firstSubTag()->firstSubTag()), u"html > body id=\"i\" > p");
  EXPECT_EQ(tagSummary(*page->firstSubTag()->firstSubTag()), u"<p>, empty");
}

TEST(PageText, KnowsWhatXmlHolds) {
  EXPECT_TRUE(isWritableInXml(u"a\t\n\u00E9\U0001F600"));
  EXPECT_FALSE(isWritableInXml(u"a\x1B"));
  EXPECT_FALSE(isWritableInXml(String(1, char16_t(0xD800))));
  EXPECT_FALSE(isWritableInXml(String(1, char16_t(0xDC00))));
  EXPECT_FALSE(isWritableInXml(String(1, char16_t(0xFFFF))));
}

TEST(PageText, CountsInWords) {
  EXPECT_EQ(counted(1, u"row", u"rows"), u"1 row");
  EXPECT_EQ(counted(0, u"row", u"rows"), u"0 rows");
  EXPECT_EQ(padded(u"ab", 4), u"ab  ");
  EXPECT_EQ(padded(u"abcde", 4), u"abcde");
}

TEST(NumberRemark, NumbersThatReadAsTheyLookNeedNone) {
  for (const char16_t* const text :
       {u"3.42", u" 1,234,567.50 ", u"-1", u"+.5", u"12.34&nbsp;AUD", u"7 AUD", u"100%", u"&nbsp;3.42"})
    EXPECT_EQ(remarkOnNumber(text), u"") << String(text).toUTF8();
}

TEST(NumberRemark, TellsWhatIsNotRead) {
  const auto says = [](const char16_t* text, const char16_t* part) {
    EXPECT_TRUE(remarkOnNumber(text).contains(part)) << remarkOnNumber(text).toUTF8();
  };
  says(u"", u"is not a number");
  says(u"n/a", u"\"n/a\" is not a number");
  for (const char16_t* const text : {u"$3.42", u"12,30", u"1.234,50", u"1,2345", u"1 234.50", u"1.2M"})
    says(text, u"can't be read as a number");
}

TEST(PlainOutput, LinesAreIndentedAndHarmless) {
  std::ostringstream stream;
  PlainOutput out(stream);
  out.line(u"a\n\nb\x7F\x9B\u202E\u2028", 2);
  out.line();
  EXPECT_EQ(stream.str(), "    a\n\n    b\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\n\n");
}

} // namespace
} // namespace Tallymoor
