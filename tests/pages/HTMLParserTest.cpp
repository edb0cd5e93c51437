#include "pages/HTMLParser.h"
#include "ReferenceHTMLParser.h"
#include "TestPaths.h"
#include "foundation/Exception.h"
#include "pages/HTMLTagSearch.h"
#include "support/FailureOf.h"
#include "support/MessageOf.h"
#include "support/StringPrinting.h"
#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <map>
#include <random>
#include <set>
#include <sstream>

namespace Tallymoor {
namespace {

std::string readFile(const std::string& name) {
  std::ifstream file(std::string(TALLYMOOR_TEST_DATA) + "/" + name, std::ios::binary);
  EXPECT_TRUE(file) << name;
  return {std::istreambuf_iterator<char>(file), {}};
}

/// The tree as text: name, attributes, quoted text, "/" if closed, sub-tags in brackets.
String shape(const HTMLTag& tag) {
  String text = tag.name();
  for (const auto& [name, value] : tag.attributes())
    text += u"@" + name + u"=" + value;
  if (!tag.text().empty())
    text += u"'" + tag.text() + u"'";
  if (tag.isClosed())
    text += u"/";
  if (tag.numSubTags() != 0) {
    String subs;
    for (const HTMLTag* sub = tag.firstSubTag(); sub != nullptr; sub = tag.nextSubTag(sub))
      subs += (subs.empty() ? String() : String(u" ")) + shape(*sub);
    text += u"[" + subs + u"]";
  }
  return text;
}

String parsed(const String& html) {
  return shape(*HTMLParser::Parse(html));
}

TEST(HTMLParser, OneCell) {
  EXPECT_EQ(parsed(u"<html><td>1.5</td></html>"), u"html/[td'1.5'/]");
}

TEST(HTMLParser, TextCountsOnlyBeforeAClosingTagAndOnlyOnce) {
  EXPECT_EQ(parsed(u"<html><td>1.5<b>x</b>2.5</td></html>"), u"html/[td/[b'x'/]]");
  EXPECT_EQ(parsed(u"<html><td><br>1.5</td></html>"), u"html/[td/[br'1.5']]");
  EXPECT_EQ(parsed(u"<html><td></td>2.5</html>"), u"html/[td'2.5'/]")
      << "a closed tag without children has no sub tags";
  EXPECT_EQ(parsed(u"<html><td><b></b></td>2.5</html>"), u"html/[td/[b/]]");
}

TEST(HTMLParser, ClosingTagWithoutOpenerChangesNothing) {
  EXPECT_EQ(parsed(u"<html><i>1</b></i><u></b></u></html>"), u"html/[i'1'/ u/]");
  EXPECT_EQ(parsed(u"</b><html></html></b>"), u"html/");
}

TEST(HTMLParser, PagesWithoutTagsOrWithoutHtmlFail) {
  EXPECT_EQ(failureOf<HTMLException>([] { HTMLParser::Parse(u""); }), u"HTMLParser::Parse - no tags found");
  EXPECT_EQ(failureOf<HTMLException>([] { HTMLParser::Parse(u"only text"); }),
            u"HTMLParser::Parse - no tags found");
  EXPECT_EQ(failureOf<HTMLException>([] { HTMLParser::Parse(u"</p>"); }),
            u"HTMLParser::Parse - no tags found");
  EXPECT_EQ(failureOf<HTMLException>([] { HTMLParser::Parse(u"<p>x</p>"); }),
            u"HTMLParser::Parse - no html tag found");
  EXPECT_EQ(failureOf<HTMLException>([] { HTMLParser::Parse(u"<x><html></html></x>"); }),
            u"HTMLParser::Parse - no html tag found");
}

TEST(HTMLParser, HtmlThatIsNeverClosedHasNoSubTags) {
  const HTMLPage page = HTMLParser::Parse(u"<html><body><p>x</p></body>");
  EXPECT_EQ(page->numSubTags(), 0u);
  EXPECT_FALSE(page->isClosed());
  EXPECT_EQ(failureOf<HTMLException>([&] { page->subTag(u"body"); }), u"HTMLTag::subTag - no sub tags");
}

TEST(HTMLParser, HtmlInsideAClosedTagStaysUsable) {
  const HTMLPage page = HTMLParser::Parse(u"<div><html><p>x</p></html><div/></div>");
  EXPECT_EQ(shape(*page), u"html/[p'x'/]");
  ASSERT_NE(page->parent(), nullptr);
  EXPECT_EQ(page->parent()->name(), u"div");
  EXPECT_EQ(page->parent()->numSubTags(), 2u);
}

TEST(HTMLParser, NamesAreLowerCaseAttributesKeepTheirs) {
  EXPECT_EQ(parsed(u"<HTML><TD CLASS=\"A&amp;B\" noWrap>&nbsp;</Td></hTmL>"),
            u"html/[td@CLASS=A&amp;B@noWrap='&nbsp;'/]");
  EXPECT_EQ(parsed(u"<html><\u00C4B></\u00E4b></html>"), u"html/[\u00E4b/]");
}

TEST(HTMLParser, ReadsAttributes) {
  const std::vector<std::pair<String, String>> cases = {
      {u"<td a=1 b=\"2\" c>", u"td@a=1@b=2@c="},
      {u"<td b=1 a=2>", u"td@a=2@b=1"},
      {u"<td a=1 a=2 A=3>", u"td@A=3@a=1"},
      {u"<td a = 1 b\t=\r\n\"2\">", u"td@a=1@b=2"},
      {u"<td a=\"x > y\nz\">", u"td@a=x > y\nz"},
      {u"<td a='x y'>", u"td@a='x@y'="},
      {u"<td/b>", u"td@/b="},
      {u"<td a=b/>", u"td@a=b/"},
      {u"<td a=\"b\"/>", u"td@a=b/"},
      {u"<td a=\"b\"c=\"d\">", u"td@a=b@c=d"},
      {u"<td / >", u"td@/="},
      {u"<td =x>", u"td@=x"},
      {u"<td a=>", u"td@a="},
      {u"<td a==b>", u"td@a==b"},
  };
  for (const auto& [html, expected] : cases)
    EXPECT_EQ(parsed(u"<html>" + html + u"</html>"), u"html/[" + expected + u"]") << html.toUTF8();
}

TEST(HTMLParser, SelfClosedTagsAreNoOpeners) {
  EXPECT_EQ(parsed(u"<html><td/>1</td><b />2</html>"), u"html/[td'1'/ b'2'/]");
}

TEST(HTMLParser, SkipsComments) {
  EXPECT_EQ(parsed(u"<html><td>1<!-- <b>x</b> -->2<!---->3</td></html>"), u"html/[td'123'/]");
  EXPECT_EQ(parsed(u"<html><!--><td>1</td></html>"), u"html/[td'1'/]");
  EXPECT_EQ(parsed(u"<html><!-- a -- > b --- --><td>1</td></html>"), u"html/[td'1'/]");
  EXPECT_EQ(parsed(u"<html><td>1</td></html><!-- <b>"), u"html/[td'1'/]");
}

TEST(HTMLParser, DeclarationsAreTags) {
  EXPECT_EQ(parsed(u"<html><!DOCTYPE x></html>"), u"html/[!doctype@x=]");
}

TEST(HTMLParser, SkipsScripts) {
  EXPECT_EQ(parsed(u"<html><script>if (a<b) write(\"<td>\")</script><p>x</p></html>"),
            u"html/[script/ p'x'/]");
  EXPECT_EQ(parsed(u"<html><Script a=b><td></Script></SCRIPT></html>"), u"html/[script@a=b/]");
  EXPECT_EQ(parsed(u"<html><script><td></SCRIPT><i></i></script></html>"), u"html/[script/ i/]");
  EXPECT_EQ(parsed(u"<html><script/><td></script><i></i></html>"), u"html/[script/ i/]")
      << "a script closed by \"/>\" is skipped all the same";
  EXPECT_EQ(failureOf<HTMLException>([] { HTMLParser::Parse(u"<html><script><td></Script></html>"); }),
            u"HTMLParser::FindScriptEnd - failed to find script end!");
}

TEST(HTMLParser, ClosingTagStepsOverOneUnit) {
  EXPECT_EQ(parsed(u"<html><tr><td>1</td >2</tr></html>"), u"html/[tr/[td'1'/]]");
  EXPECT_EQ(parsed(u"<html><tr><td></td >2</tr></html>"), u"html/[tr/[td'>2'/]]");
  EXPECT_EQ(parsed(u"<html><tr><td></td/x></tr></html>"), u"html/[tr/[td'x>'/]]");
}

TEST(HTMLParser, UnclosedTagsBecomeSiblings) {
  EXPECT_EQ(parsed(u"<html><p>a<p>b<table><tr><td>1<td>2</table></html>"), u"html/[p p table/[tr td td'2']]");
}

TEST(HTMLParser, ClosedTagInATagOfItsNameIsFoundTwice) {
  const HTMLPage page = HTMLParser::Parse(u"<html><div><p></p><div>x</div>y<b></b></div></html>");
  EXPECT_EQ(shape(*page), u"html/[div/[p/ div'x'/ b/] p/ div'x'/]");
  const HTMLTag& outer = page->subTag(u"div");
  const HTMLTag* const inner = HTMLParser::FindTag(&outer, u"div", 0);
  EXPECT_EQ(inner, HTMLParser::FindTag(page.get(), u"div", 1));
  EXPECT_EQ(inner->parent(), page.get()) << "the later parent counts";
  EXPECT_EQ(outer.subTag(u"b").parent(), &outer);
  EXPECT_EQ(page->countTags(), 5u) << "each tag once";
}

TEST(HTMLParser, StopsAtTheEndOfTheText) {
  // An incomplete construct ends as if by ">".
  for (const char16_t* const end : {u"<", u"</", u"<!--", u"<!-- x --", u"text", u"</td", u"<td", u"<td ",
                                    u"<td a", u"<td a=", u"<td a=\"b", u"<td a=b", u"<td /", u"<!", u"<!-"})
    EXPECT_EQ(parsed(String(u"<html><p>x</p></html>") + end), u"html/[p'x'/]") << String(end).toUTF8();
  EXPECT_EQ(parsed(u"<html a=\"b c"), u"html@a=b c");
  EXPECT_EQ(parsed(u"<html a = "), u"html@a=");
  EXPECT_EQ(parsed(u"<html"), u"html");
  EXPECT_EQ(parsed(u"<html><b>x</b></html"), u"html/[b'x'/]");
}

TEST(HTMLParser, FindsTagsByNameAndIndex) {
  const HTMLPage page = HTMLParser::Parse(u"<html><td>0</td><th>x</th><td>1</td><b></b><td>2</td></html>");
  EXPECT_EQ(HTMLParser::FindTag(page.get(), u"td", 0)->text(), u"0");
  const HTMLTag* const last = HTMLParser::FindTag(page.get(), u"td", 2);
  ASSERT_NE(last, nullptr);
  EXPECT_EQ(last->text(), u"2");
  EXPECT_EQ(HTMLParser::FindTag(page.get(), u"td", 3), nullptr);
  EXPECT_EQ(HTMLParser::FindTag(page.get(), u"TD", 0), nullptr);
  EXPECT_EQ(HTMLParser::FindTag(last, u"td", 0), nullptr) << "no sub tags at all";
  for (const auto& work : std::vector<std::function<void()>>{
           [] { HTMLParser::FindTag(nullptr, u"td", 0); }, [&] { HTMLParser::FindTag(page.get(), u"", 0); },
           [] { HTMLParser::FindSiblingTag(nullptr, u"td", 0); },
           [&] { HTMLParser::FindSiblingTag(page.get(), u"", 0); }})
    EXPECT_EQ(failureOf<HTMLException>(work), u"HTMLParser::FindTag - bad param");
}

TEST(HTMLParser, FindsFollowingSiblings) {
  const HTMLPage page = HTMLParser::Parse(u"<html><td>0</td><th>x</th><td>1</td><b></b><td>2</td></html>");
  const HTMLTag* const first = HTMLParser::FindTag(page.get(), u"td", 0);
  EXPECT_EQ(HTMLParser::FindSiblingTag(first, u"td", 0)->text(), u"1");
  EXPECT_EQ(HTMLParser::FindSiblingTag(first, u"td", 1)->text(), u"2");
  EXPECT_EQ(HTMLParser::FindSiblingTag(first, u"td", 2), nullptr);
  EXPECT_EQ(HTMLParser::FindSiblingTag(page.get(), u"td", 0), nullptr) << "no parent";
}

// --- Comparison with the reference parser

/// Walks both trees in parallel. A tag must always match the same reference tag.
class Comparison {
public:
  void compare(const HTMLTag* tag, const ReferenceTag* reference) {
    const auto [place, isNew] = m_pairs.emplace(tag, reference);
    ASSERT_EQ(place->second, reference) << "another tag in this place";
    if (!isNew)
      return;
    ASSERT_EQ(tag->name(), reference->name);
    ASSERT_EQ(tag->text(), reference->text);
    ASSERT_EQ(tag->isClosed(), reference->closed);
    compareAttributes(tag, reference);
    ASSERT_EQ(tag->parent() == nullptr, reference->parent == nullptr);
    if (tag->parent() != nullptr)
      m_parents.emplace_back(tag->parent(), reference->parent);
    const std::size_t count = reference->subTags ? reference->subTags->size() : 0;
    ASSERT_EQ(tag->numSubTags(), count);
    const HTMLTag* sub = tag->firstSubTag();
    for (std::size_t i = 0; i < count; ++i, sub = tag->nextSubTag(sub)) {
      ASSERT_NE(sub, nullptr);
      compare(sub, (*reference->subTags)[i]);
      if (::testing::Test::HasFatalFailure())
        return;
    }
    ASSERT_EQ(sub, nullptr);
  }

  /// A parent may be outside the html tag, so parents and their parents are compared too.
  void compareParents() {
    while (!m_parents.empty() && !::testing::Test::HasFatalFailure()) {
      const auto [tag, reference] = m_parents.back();
      m_parents.pop_back();
      compare(tag, reference);
    }
  }

  const std::map<const HTMLTag*, const ReferenceTag*>& pairs() const { return m_pairs; }

private:
  static void compareAttributes(const HTMLTag* tag, const ReferenceTag* reference) {
    ASSERT_EQ(tag->attributes(), reference->attributes);
    for (const auto& [name, value] : reference->attributes)
      ASSERT_EQ(tag->attrVal(name), value);
  }

  std::map<const HTMLTag*, const ReferenceTag*> m_pairs;
  std::vector<std::pair<const HTMLTag*, const ReferenceTag*>> m_parents;
};

/// Recursion in document order that skips visited tags.
const ReferenceTag* searchPlainly(const ReferenceTag* tag, const String& name,
                                  std::set<const ReferenceTag*>& seen) {
  if (!seen.insert(tag).second)
    return nullptr;
  if (tag->name == name)
    return tag;
  if (tag->subTags)
    for (const ReferenceTag* const sub : *tag->subTags)
      if (const ReferenceTag* const found = searchPlainly(sub, name, seen))
        return found;
  return nullptr;
}

void compareSearches(const Comparison& comparison) {
  for (const auto& [tag, reference] : comparison.pairs()) {
    std::set<const ReferenceTag*> all;
    searchPlainly(reference, u"no such name", all);
    ASSERT_EQ(tag->countTags(), all.size());
    for (const String name : {u"div", u"td", u"b", u"i"}) {
      std::set<const ReferenceTag*> seen;
      const ReferenceTag* const expected = searchPlainly(reference, name, seen);
      const HTMLTag* const found = HTMLTagSearch(*tag).first(
          [&name](const HTMLTag& candidate) { return candidate.nameView() == name; });
      ASSERT_EQ(found == nullptr, expected == nullptr);
      if (found != nullptr) {
        ASSERT_EQ(comparison.pairs().at(found), expected);
      }
    }
  }
}

void compareWithReference(const String& html) {
  ReferenceHTMLParser plain(html);
  const ReferenceTag* reference = nullptr;
  HTMLPage page;
  const String expectedFailure = failureOf<HTMLException>([&] { reference = plain.parse(); });
  const String failure = failureOf<HTMLException>([&] { page = HTMLParser::Parse(html); });
  ASSERT_EQ(failure, expectedFailure);
  if (reference == nullptr)
    return;
  Comparison comparison;
  comparison.compare(page.get(), reference);
  comparison.compareParents();
  if (!::testing::Test::HasFatalFailure())
    compareSearches(comparison);
}

String generatedPage(std::mt19937& random, const std::vector<String>& pieces) {
  String html = u"<html>";
  const std::size_t length = 1 + random() % 60;
  for (std::size_t i = 0; i < length; ++i)
    html += pieces[random() % pieces.size()];
  if (random() % 4 != 0)
    html += u"</html>";
  if (random() % 8 == 0)
    html.resize(random() % (html.size() + 1));
  return html;
}

void comparePages(unsigned seed, int pages, const std::vector<String>& pieces) {
  std::mt19937 random(seed);
  for (int i = 0; i < pages; ++i) {
    const String html = generatedPage(random, pieces);
    compareWithReference(html);
    if (::testing::Test::HasFatalFailure())
      FAIL() << "seed " << seed << ", page " << i << ": " << html.toUTF8();
  }
}

TEST(HTMLParserAgainstReference, NestingOfFewNames) {
  comparePages(20260303, 3000,
               {u"<div>", u"</div>", u"<td>", u"</td>", u"<b>", u"</b>", u"<div/>", u"<td/>", u"x"});
}

TEST(HTMLParserAgainstReference, TagsThatCloseOutOfOrder) {
  comparePages(7, 3000,
               {u"<div>", u"<td>", u"<b>", u"<i>", u"</div>", u"</td>", u"</b>", u"</i>", u"<div/>", u"<td/>",
                u"<b/>", u"</html>", u"<html>"});
}

TEST(HTMLParserAgainstReference, AllKindsOfContentTogether) {
  comparePages(4711, 3000,
               {u"<div a=1>",
                u"</div>",
                u"<TD class=\"x > y\">",
                u"</Td >",
                u"<b",
                u"</b",
                u"<br/>",
                u" text ",
                u"&nbsp;",
                u"<!-- <b> -->",
                u"<!-->",
                u"<!--",
                u"-->",
                u"<script>",
                u"</script>",
                u"<i a='b",
                u"</SCRIPT>",
                u"\"",
                u"=",
                u"/",
                u">",
                u"<",
                u"</",
                u"<p/ a>",
                u"</p/>",
                u"\n",
                u"<td a b=\"c\"a=d>",
                u"<!DOCTYPE>",
                u"</td>",
                u"<\u0130>",
                u"<>",
                u"</>"});
}

TEST(HTMLParserAgainstReference, OddPages) {
  for (const char* const name : {"prices.html", "frames.html", "unclosed.html", "scripts.html"}) {
    SCOPED_TRACE(name);
    compareWithReference(String(readFile(name).c_str()));
  }
}

// --- Inputs with quadratic cost in a simple implementation; the test's time limit is the check
// -------------------

constexpr std::size_t MANY = 400000;

String repeated(std::u16string_view piece, std::size_t count) {
  String text;
  text.reserve(piece.size() * count + 64);
  for (std::size_t i = 0; i < count; ++i)
    text += piece;
  return text;
}

TEST(HTMLParserOnHostilePages, ManyTagsThatAreNeverClosed) {
  EXPECT_EQ(HTMLParser::Parse(u"<html>" + repeated(u"<td>", MANY) + u"</html>")->numSubTags(), MANY);
  EXPECT_EQ(HTMLParser::Parse(u"<html>" + repeated(u"< ", MANY) + u"></html>")->numSubTags(), 1u);
  EXPECT_EQ(HTMLParser::Parse(u"<html>" + repeated(u"<", MANY))->name(), u"html");
}

TEST(HTMLParserOnHostilePages, ManyClosingTagsThatCloseNothing) {
  EXPECT_EQ(HTMLParser::Parse(u"<html>" + repeated(u"<td>", MANY) + repeated(u"x</b>", MANY) + u"</html>")
                ->numSubTags(),
            MANY);
  EXPECT_EQ(HTMLParser::Parse(u"<html>" + repeated(u"<td/>x</td>", MANY) + u"</html>")->numSubTags(), MANY);
}

TEST(HTMLParserOnHostilePages, DeepNestingOfOneName) {
  const HTMLPage page = HTMLParser::Parse(u"<html>" + repeated(u"<div>", MANY) + u"<b></b>" +
                                          repeated(u"</div>", MANY) + u"</html>");
  EXPECT_EQ(page->numSubTags(), MANY);
  EXPECT_EQ(page->countTags(), MANY + 2);
  const HTMLTag* const found =
      HTMLTagSearch(*page).first([](const HTMLTag& tag) { return tag.nameView() == u"b"; });
  ASSERT_NE(found, nullptr);
  EXPECT_EQ(HTMLTagSearch(*page).first([](const HTMLTag& tag) { return tag.nameView() == u"i"; }), nullptr);
}

TEST(HTMLParserOnHostilePages, ManyFollowersOfOneTag) {
  const HTMLPage page = HTMLParser::Parse(u"<html>" + repeated(u"<div>", MANY) + u"</div>" +
                                          repeated(u"<b></b></div>", MANY - 1) + u"</html>");
  EXPECT_EQ(page->countTags(), 2 * MANY);
  EXPECT_NE(HTMLTagSearch(*page).first([](const HTMLTag& tag) { return tag.nameView() == u"b"; }), nullptr);
}

TEST(HTMLParserOnHostilePages, NamesThatTakeTurns) {
  const HTMLPage page = HTMLParser::Parse(u"<html>" + repeated(u"<div><td>", MANY / 2) +
                                          repeated(u"</div></td>", MANY / 2) + u"</html>");
  EXPECT_EQ(page->countTags(), MANY + 1);
}

TEST(HTMLParserTest, ManyAttributesAreSortedAndTheFirstOfAnyNameIsKept) {
  std::mt19937 chance(7);
  std::map<String, String> expected;
  String page = u"<html ";
  for (int i = 0; i < 3000; ++i) {
    String name;
    for (std::uint32_t length = 1 + chance() % 6; length > 0; --length)
      name.push_back(u"abcxyz\u00E9\u4E00"[chance() % (i % 3 == 0 ? 8 : 6)]);
    expected.emplace(name, String::fromLong(i));
    page += name + u"=" + String::fromLong(i) + u" ";
  }
  const HTMLPage parsed = HTMLParser::Parse(page + u">");
  EXPECT_EQ(parsed->attributes(), expected);
}

TEST(HTMLParserOnHostilePages, AttributesOfATagAreBounded) {
  constexpr std::size_t MOST = 16384;
  String attributes = u"<html ";
  for (std::size_t i = 0; i < MOST; ++i)
    attributes += u"a" + String::fromLong(static_cast<std::int64_t>(i * 7919 % MOST)) + u" ";
  EXPECT_EQ(HTMLParser::Parse(attributes + u">")->attributes().size(), MOST);
  EXPECT_EQ(messageOf([&] { HTMLParser::Parse(attributes + u"b>"); }),
            u"HTMLParser::Parse - too many attributes in a tag");
}

TEST(HTMLParserOnHostilePages, DifferentTagNamesAreBounded) {
  constexpr std::size_t MOST = 4096;
  // Two of the 4096 names are "script" and "html".
  String names = u"<html>";
  for (std::size_t i = 0; i < MOST - 2; ++i)
    names += u"<n" + String::fromLong(static_cast<std::int64_t>(i)) + u">";
  EXPECT_EQ(HTMLParser::Parse(names + u"</html>")->numSubTags(), MOST - 2);
  EXPECT_EQ(messageOf([&] { HTMLParser::Parse(names + u"<another></html>"); }),
            u"HTMLParser::Parse - too many different tag names");
}

TEST(HTMLParserOnHostilePages, ManyCommentsQuotesAndScripts) {
  EXPECT_EQ(HTMLParser::Parse(u"<html>" + repeated(u"<!--", MANY))->numSubTags(), 0u);
  EXPECT_EQ(HTMLParser::Parse(u"<html><b>" + repeated(u"x<!---->", MANY) + u"</b></html>")
                ->subTag(u"b")
                .text()
                .size(),
            MANY);
  EXPECT_EQ(HTMLParser::Parse(u"<html a=\"" + repeated(u"<b a=\\", MANY))->attributes().size(), 1u);
  EXPECT_EQ(
      HTMLParser::Parse(u"<html>" + repeated(u"<script></script>", MANY / 4) + u"</html>")->numSubTags(),
      MANY / 4);
}

} // namespace
} // namespace Tallymoor
