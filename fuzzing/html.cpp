// Pages. The first byte selects a table locator of the sample data source and whether the page arrives as
// bytes or as code units. The rest is the page. The tree must equal the reference parser's, every tag must be
// found at its place, and a table may contain only text of the page.
#include "foundation/Exception.h"
#include "market/LocatorSet.h"
#include "pages/HTMLParser.h"
#include "pages/HTMLTable.h"
#include "pages/HTMLTag.h"
#include "pages/HTMLTagLocator.h"
#include "pages/HTMLTagSearch.h"
#include "pages/ReferenceHTMLParser.h"
#include "support/Input.h"
#include "support/Require.h"
#include <map>
#include <optional>
#include <set>
#include <vector>

namespace Tallymoor::Fuzz {
namespace {

/// The reference parser needs quadratic time, and comparing the trees recurses to their depth.
constexpr std::size_t LONGEST_COMPARED = 8192;
/// Each costs a walk over the page.
constexpr std::size_t MOST_WAYS = 12;
constexpr std::uint8_t AS_UNITS = 0x80;

/// Walks both trees in parallel. A tag must always match the same reference tag.
class Comparison {
public:
  void compare(const HTMLTag* tag, const ReferenceTag* plain) {
    const auto [place, isNew] = m_pairs.emplace(tag, plain);
    require(place->second == plain, "a tag stands in the same places as in the plain tree");
    if (!isNew)
      return;
    require(tag->name() == plain->name && tag->text() == plain->text && tag->isClosed() == plain->closed,
            "name, text and end of a tag are those of the plain parser");
    compareAttributes(*tag, *plain);
    require((tag->parent() == nullptr) == (plain->parent == nullptr),
            "a tag has a parent as in the plain tree");
    if (tag->parent() != nullptr)
      m_parents.emplace_back(tag->parent(), plain->parent);
    compareSubTags(*tag, *plain);
  }

  /// A parent may be outside the html tag, so parents and their parents are compared too.
  void compareParents() {
    while (!m_parents.empty()) {
      const auto [tag, plain] = m_parents.back();
      m_parents.pop_back();
      compare(tag, plain);
    }
  }

private:
  static void compareAttributes(const HTMLTag& tag, const ReferenceTag& plain) {
    require(tag.attributes() == plain.attributes, "a tag has the plain parser's attributes");
    for (const auto& [name, value] : plain.attributes)
      require(tag.attrVal(name) == value, "an attribute is that of the plain parser");
  }

  void compareSubTags(const HTMLTag& tag, const ReferenceTag& plain) {
    const std::size_t count = plain.subTags ? plain.subTags->size() : 0;
    require(tag.numSubTags() == count, "a tag has as many sub tags as in the plain tree");
    const HTMLTag* sub = tag.firstSubTag();
    for (std::size_t i = 0; i < count; ++i, sub = tag.nextSubTag(sub)) {
      require(sub != nullptr, "a tag's sub tags can be walked to the last");
      compare(sub, (*plain.subTags)[i]);
    }
    require(sub == nullptr, "a tag has no more sub tags than it says");
  }

  std::map<const HTMLTag*, const ReferenceTag*> m_pairs;
  std::vector<std::pair<const HTMLTag*, const ReferenceTag*>> m_parents;
};

template <class Parse>
String failureOf(const Parse& parse) {
  try {
    parse();
  } catch (const HTMLException& exception) {
    return exception.message();
  }
  return String();
}

void compareWithPlainParser(const String& html, const HTMLPage& page, const String& failure) {
  ReferenceHTMLParser parser(html);
  const ReferenceTag* plain = nullptr;
  const String plainFailure = failureOf([&] { plain = parser.parse(); });
  require(failure == plainFailure, "a page fails as it does with the plain parser");
  if (plain == nullptr)
    return;
  Comparison comparison;
  comparison.compare(page.get(), plain);
  comparison.compareParents();
}

/// The tags at and below one, each once.
std::vector<const HTMLTag*> tagsBelow(const HTMLTag* start) {
  std::vector<const HTMLTag*> tags{start};
  std::set<const HTMLTag*> seen{start};
  for (std::size_t i = 0; i < tags.size(); ++i)
    for (const HTMLTag* sub = tags[i]->firstSubTag(); sub != nullptr; sub = tags[i]->nextSubTag(sub))
      if (seen.insert(sub).second)
        tags.push_back(sub);
  return tags;
}

/// A walk must lead to its target. A walk by parents may fail, because a tag can be in several lists.
void checkWay(const HTMLTag* start, const HTMLTag* target) {
  XMLTagLocator locator;
  try {
    HTMLTagLocator::fillTagMovesFor(locator, start, target);
  } catch (const HTMLException&) {
    return;
  }
  const HTMLTag* top = target;
  while (top != start && top->parent() != nullptr)
    top = top->parent();
  // A tag without a name can't be searched for.
  const String failure = failureOf([&] {
    require(HTMLTagLocator(&locator)(top) == target, "the way that was written to a tag leads to it");
  });
  require(failure.empty() || failure == String(u"HTMLParser::FindTag - bad param"),
          "the way to a tag can be gone");
}

void checkTags(const HTMLTag* root) {
  if (root->pageSize() > LONGEST_COMPARED)
    return;
  const std::vector<const HTMLTag*> tags = tagsBelow(root);
  require(root->countTags() == tags.size(), "as many tags are counted as can be walked to");
  for (std::size_t i = 0; i < tags.size() && i < MOST_WAYS; ++i) {
    checkWay(root, tags[i]);
    const HTMLTagSearch search(*root);
    require(search.first([&](const HTMLTag& tag) { return &tag == tags[i]; }) == tags[i],
            "a search finds each tag");
  }
}

void checkTable(const XMLElement& locator, const HTMLTag* root, const String& html) {
  HTMLTable table(static_cast<const XMLTableLocator*>(&locator));
  if (!failureOf([&] { table.fillFrom(root); }).empty())
    return require(table.numRows() == 0, "a table that can't be read has no rows");
  require(table.numRows() > 0, "a table that can be read has a row");
  for (std::size_t row = 0; row < table.numRows(); ++row)
    for (std::size_t column = 0; column < table.numColumns(); ++column) {
      const String cell = table.cellValue(row, column);
      // A comment inside the text is removed.
      require(html.contains(cell) || html.contains(u"<!--"), "a cell's text stands in the page");
    }
}

const LocatorSet& locators() {
  static const LocatorSet set(u"" TALLYMOOR_LOCATORS);
  return set;
}

const XMLElement& tableLocator(bool ofHistory) {
  return ofHistory ? locators().historicalPrices().subElement(u"TableLocator")
                   : locators().codeSearch().subElement(u"Details", 0).subElement(u"TableLocator");
}

void checkPrice(const HTMLTag* root) {
  const auto& locator =
      static_cast<const XMLTagLocator&>(locators().currentPrice().subElement(u"TagLocator"));
  failureOf(
      [&] { require(HTMLTagLocator(&locator)(root) != nullptr, "a walk that does not fail ends at a tag"); });
}

String pageOf(std::string_view bytes, bool asUnits) {
  if (!asUnits)
    return String::fromUTF8(bytes.substr(0, bytes.find('\0')));
  String page;
  for (std::size_t i = 0; i + 1 < bytes.size(); i += 2)
    page.push_back(static_cast<char16_t>(static_cast<std::uint8_t>(bytes[i]) |
                                         static_cast<std::uint8_t>(bytes[i + 1]) << 8));
  return page;
}

void check(const String& html, bool ofHistory) {
  HTMLPage page;
  const String failure = failureOf([&] { page = HTMLParser::Parse(html); });
  require((page == nullptr) == !failure.empty(), "a page is read or fails");
  if (html.size() <= LONGEST_COMPARED)
    compareWithPlainParser(html, page, failure);
  if (page == nullptr)
    return;
  checkTags(page.get());
  checkTable(tableLocator(ofHistory), page.get(), html);
  checkPrice(page.get());
}

} // namespace
} // namespace Tallymoor::Fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace Tallymoor::Fuzz;
  Input input(data, size);
  const std::uint8_t first = input.byte();
  check(pageOf(input.rest(), (first & AS_UNITS) != 0), (first & 1) != 0);
  return 0;
}
