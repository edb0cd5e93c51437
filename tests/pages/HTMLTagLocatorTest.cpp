#include "pages/HTMLTagLocator.h"
#include "foundation/Exception.h"
#include "pages/HTMLParser.h"
#include "support/FailureOf.h"
#include "support/StringPrinting.h"
#include "xml/LocatorDocuments.h"
#include <gtest/gtest.h>

namespace Tallymoor {
namespace {

std::string move(const std::string& attributes) {
  return "<TagFind><TagMove " + attributes + "/></TagFind>";
}

std::string search(const std::string& attributes) {
  return "<TagFind><TagSearch " + attributes + "/></TagFind>";
}

const HTMLTag* walk(const HTMLPage& page, const std::string& steps) {
  XMLTagLocator locator;
  locator.decode(("<TagLocator>" + steps + "</TagLocator>").c_str());
  return HTMLTagLocator(&locator)(page.get());
}

HTMLPage page() {
  return HTMLParser::Parse(u"<html><body><tr id=first><td>0</td><th>x</th><td a=b>1</td><td>2</td></tr>"
                           u"<tr id=second><td c=d>3</td><td c>4</td></tr><p>last</p></body></html>");
}

TEST(HTMLTagLocator, MovesInByNameAndIndex) {
  const std::string toRow = move("move=\"In\" name=\"body\"") + move("move=\"In\" name=\"tr\"");
  EXPECT_EQ(walk(page(), toRow + move("move=\"In\" name=\"td\" index=\"2\""))->text(), u"2")
      << "other tags between don't count";
  EXPECT_EQ(walk(page(), toRow + move("move=\"In\" name=\"td\""))->text(), u"0");
}

TEST(HTMLTagLocator, MovesAlongTheFollowingSiblings) {
  const HTMLPage tree = page();
  const std::string toCell =
      move("move=\"In\" name=\"body\"") + move("move=\"In\" name=\"tr\"") + move("move=\"In\" name=\"td\"");
  EXPECT_EQ(walk(tree, toCell + move("move=\"Down\" name=\"td\" index=\"0\""))->text(), u"1")
      << "not the tag itself";
  EXPECT_EQ(walk(tree, toCell + move("move=\"sideways\" name=\"td\" index=\"1\""))->text(), u"2");
  EXPECT_EQ(walk(tree, toCell + move("move=\"in\" name=\"th\""))->text(), u"x") << "only \"In\" moves in";
}

TEST(HTMLTagLocator, SearchesByTextAndByAttribute) {
  const HTMLPage tree = page();
  EXPECT_EQ(walk(tree, search("tagname=\"td\" val=\"4\""))->text(), u"4");
  EXPECT_EQ(walk(tree, search("tagname=\"td\" attr=\"c\""))->text(), u"3") << "its presence is enough";
  EXPECT_EQ(walk(tree, search("tagname=\"td\" attr=\"c\" attrVal=\"d\""))->text(), u"3");
  EXPECT_EQ(walk(tree, search("tagname=\"td\" val=\"4\" attr=\"a\" attrVal=\"b\""))->text(), u"4")
      << "with a text, attributes don't count";
  EXPECT_EQ(
      walk(tree, search("tagname=\"tr\" attr=\"id\" attrVal=\"second\"") + move("move=\"In\" name=\"td\""))
          ->text(),
      u"3");
}

TEST(HTMLTagLocator, ASearchBeginsWithTheTagItself) {
  const HTMLPage tree = HTMLParser::Parse(u"<html><div id=a>x<b><div id=b>y</div></b></div></html>");
  const std::string toOuter = search("tagname=\"div\" attr=\"id\"");
  EXPECT_EQ(walk(tree, toOuter + toOuter), walk(tree, toOuter));
  EXPECT_EQ(walk(tree, toOuter + search("tagname=\"div\" attr=\"id\" attrVal=\"b\""))->text(), u"y");
}

TEST(HTMLTagLocator, AWalkWithoutStepsStaysAtTheRoot) {
  const HTMLPage tree = page();
  const XMLTagLocator empty;
  EXPECT_EQ(HTMLTagLocator(&empty)(tree.get()), tree.get());
}

TEST(HTMLTagLocator, RefusesNothing) {
  const String refused = u"HTMLTagLocator::HTMLTagLocator - bad param";
  const XMLURLLocator other;
  const XMLTagLocator empty;
  EXPECT_EQ(failureOf<HTMLException>([] { HTMLTagLocator(static_cast<const XMLTagLocator*>(nullptr)); }),
            refused);
  EXPECT_EQ(failureOf<HTMLException>([] { HTMLTagLocator(static_cast<const XMLElement*>(nullptr)); }),
            refused);
  EXPECT_EQ(failureOf<HTMLException>([&] { HTMLTagLocator(static_cast<const XMLElement*>(&other)); }),
            refused);
  EXPECT_EQ(failureOf<HTMLException>([&] { HTMLTagLocator{&empty}(nullptr); }),
            u"HTMLTagLocator::operator() - bad param");
}

TEST(HTMLTagLocator, NamesTheFailingStep) {
  EXPECT_EQ(failureOf<HTMLException>([] { walk(page(), move("move=\"In\" name=\"tr\"")); }),
            u"HTMLTagLocator::operator() - FindIndexedSubTag failed for tr from html");
  EXPECT_EQ(failureOf<HTMLException>([] { walk(page(), move("move=\"In\" name=\"body\" index=\"-1\"")); }),
            u"HTMLTagLocator::operator() - FindIndexedSubTag failed for body from html");
  EXPECT_EQ(failureOf<HTMLException>([] { walk(page(), move("move=\"Down\" name=\"tr\"")); }),
            u"HTMLTagLocator::operator() - FindIndexedSiblingTag failed for tr from html");
  EXPECT_EQ(failureOf<HTMLException>([] { walk(page(), search("tagname=\"td\" attr=\"C\" attrVal=\"d\"")); }),
            u"HTMLTagLocator::FindTagForTagSearch - failed to find td, w/attrC from html");
  EXPECT_EQ(failureOf<HTMLException>([] { walk(page(), search("tagname=\"td\" val=\"5\" attr=\"c\"")); }),
            u"HTMLTagLocator::FindTagForTagSearch - failed to find td, w/attr from html");
  EXPECT_EQ(failureOf<HTMLException>([] { walk(page(), search("tagname=\"td\"")); }),
            u"HTMLTagLocator::FindTagForTagSearch - failed to find td, w/attr from html")
      << "no attribute matches nothing";
  EXPECT_EQ(failureOf<HTMLException>([] { walk(page(), search("tagname=\"td\" val=\"\"")); }),
            u"HTMLTagLocator::FindTagForTagSearch - failed to find td, w/attr from html");
}

TEST(HTMLTagLocator, WritesTheWayToATag) {
  const HTMLPage tree = page();
  const HTMLTag* const target = walk(tree, search("tagname=\"td\" val=\"4\""));
  XMLTagLocator locator;
  HTMLTagLocator::fillTagMovesFor(locator, tree.get(), target);
  ASSERT_EQ(locator.numSubElements(u"TagFinds"), 3u);
  const XMLElement& last = locator.subElement(u"TagFinds", 2).subElement(u"TagMove");
  EXPECT_EQ(last.attribute(u"move"), u"In");
  EXPECT_EQ(last.attribute(u"name"), u"td");
  EXPECT_EQ(last.attribute(u"index"), u"1");
  EXPECT_EQ(locator.subElement(u"TagFinds", 1).subElement(u"TagMove").attribute(u"index"), u"1");
  EXPECT_EQ(HTMLTagLocator(&locator)(tree.get()), target);
}

TEST(HTMLTagLocator, CannotFindATagOfAnotherParent) {
  const HTMLPage tree = page();
  const HTMLTag* const cell = walk(tree, search("tagname=\"td\" val=\"4\""));
  EXPECT_EQ(failureOf<HTMLException>([&] { HTMLTagLocator::indexUnder(tree.get(), cell); }),
            u"HTMLTagLocator::fillTagMovesFor(): Couldn't find node td from parent html");
}

} // namespace
} // namespace Tallymoor
