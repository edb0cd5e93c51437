#include "pages/HTMLTag.h"
#include "foundation/Exception.h"
#include "pages/HTMLParser.h"
#include "support/FailureOf.h"
#include "support/StringPrinting.h"
#include <gtest/gtest.h>

namespace Tallymoor {
namespace {

TEST(HTMLTag, GivesTheFirstSubTagOfAName) {
  const HTMLPage page = HTMLParser::Parse(u"<html><td>1</td><th></th><td>2</td></html>");
  EXPECT_EQ(page->subTag(u"td").text(), u"1");
  EXPECT_EQ(page->numSubTags(), 3u);
  EXPECT_EQ(failureOf<HTMLException>([&] { page->subTag(u"b"); }),
            u"HTMLTag::subTag - sub tag not found : b");
}

TEST(HTMLTag, HasNoSubTagsWhenClosedWithoutOrNeverClosed) {
  const HTMLPage page = HTMLParser::Parse(u"<html><td></td><br></html>");
  EXPECT_EQ(failureOf<HTMLException>([&] { page->subTag(u"td").subTag(u"b"); }),
            u"HTMLTag::subTag - no sub tags");
  EXPECT_EQ(failureOf<HTMLException>([&] { page->subTag(u"br").subTag(u"b"); }),
            u"HTMLTag::subTag - no sub tags");
  EXPECT_EQ(page->subTag(u"br").numSubTags(), 0u);
  EXPECT_EQ(page->subTag(u"br").firstSubTag(), nullptr);
}

TEST(HTMLTag, GivesAttributesByNameAndAllOfThem) {
  const HTMLPage page = HTMLParser::Parse(u"<html b=2 B=3 a=1 c></html>");
  EXPECT_EQ(page->attrVal(u"b"), u"2");
  EXPECT_EQ(page->attrVal(u"c"), u"");
  EXPECT_TRUE(page->hasAttr(u"c"));
  EXPECT_FALSE(page->hasAttr(u"C"));
  EXPECT_EQ(failureOf<HTMLException>([&] { page->attrVal(u"C"); }), u"HTMLTag::attrVal - not found attr: C");
  EXPECT_EQ(page->attributes(),
            (std::map<String, String>{{u"B", u"3"}, {u"a", u"1"}, {u"b", u"2"}, {u"c", u""}}));
  EXPECT_EQ(page->attributes().begin()->first, u"B") << "sorted as text, capitals first";
}

TEST(HTMLTag, CountsTheTagsOfItsSubtree) {
  const HTMLPage page = HTMLParser::Parse(u"<html><tr><td></td><td><b></b></td></tr><br></html>");
  EXPECT_EQ(page->countTags(), 6u);
  EXPECT_EQ(page->subTag(u"tr").countTags(), 4u);
  EXPECT_EQ(page->subTag(u"br").countTags(), 1u);
}

TEST(HTMLTag, LivesAsLongAsAPageReferringToIt) {
  HTMLPage page = HTMLParser::Parse(u"<html><td>1.5</td></html>");
  const HTMLTag& cell = page->subTag(u"td");
  const HTMLPage other = page;
  page.reset();
  EXPECT_EQ(cell.text(), u"1.5");
  EXPECT_EQ(cell.parent(), other.get());
}

} // namespace
} // namespace Tallymoor
