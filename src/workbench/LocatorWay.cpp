#include "workbench/LocatorWay.h"
#include "foundation/Exception.h"
#include "pages/HTMLTag.h"
#include "pages/HTMLTagLocator.h"
#include "workbench/PageText.h"
#include "workbench/TagLists.h"
#include <algorithm>
#include <array>
#include <memory>
#include <optional>

namespace Tallymoor {

namespace {

using Way = std::optional<LocatorWay>;

constexpr std::size_t DEEPEST = 200; ///< No page of prices is nested this deep.

XMLElement& addStep(XMLTagLocator& locator, XMLElement* step, std::u16string_view kind) {
  auto find = std::make_unique<XMLTagFind>();
  XMLElement& added = find->addSubElement(step, kind);
  locator.addSubElement(find.release(), u"TagFinds");
  return added;
}

std::size_t depth(const HTMLTag& tag) {
  std::size_t count = 0;
  for (const HTMLTag* at = &tag; at != nullptr && count <= DEEPEST; at = at->parent())
    ++count;
  return count;
}

/// Returns the walk if it leads to the target, otherwise nothing.
Way tried(LocatorWay way, const HTMLTag& target, const HTMLTag& root) {
  if (way.locator.numSubElements(u"TagFinds") == 0)
    return std::nullopt;
  try {
    if (HTMLTagLocator(&way.locator)(&root) == &target)
      return way;
  } catch (const HTMLException&) {
  }
  return std::nullopt;
}

Way byPosition(const HTMLTag& target, const HTMLTag& root) {
  LocatorWay way{LocatorWay::By::Position, {}};
  return LocatorWay::addMovesIn(way.locator, root, target) ? tried(std::move(way), target, root)
                                                           : std::nullopt;
}

Way fromAttribute(const HTMLTag& marked, const String& attribute, const HTMLTag& target,
                  const HTMLTag& root) {
  if (!marked.hasAttr(attribute) || marked.attrVal(attribute).empty() ||
      !isWritableInXml(marked.attrVal(attribute)))
    return std::nullopt;
  LocatorWay way{LocatorWay::By::Attribute, {}};
  LocatorWay::addSearchByAttribute(way.locator, marked, attribute);
  return LocatorWay::addMovesIn(way.locator, marked, target) ? tried(std::move(way), target, root)
                                                             : std::nullopt;
}

/// Starts at the nearest tag with an identifying attribute, at the target or above it. Prefers naming
/// attributes to styling ones, because a value's style can change with the value.
Way byAttribute(const HTMLTag& target, const HTMLTag& root) {
  static const std::array<String, 2> NAMING{u"id", u"name"};
  static const std::array<String, 2> STYLING{u"class", u"summary"};
  for (const HTMLTag* marked = &target; marked != nullptr && marked != &root; marked = marked->parent())
    for (const String& attribute : NAMING)
      if (Way way = fromAttribute(*marked, attribute, target, root))
        return way;
  const bool isValue = target.numSubTags() == 0;
  for (const HTMLTag* marked = isValue ? target.parent() : &target; marked != nullptr && marked != &root;
       marked = marked->parent())
    for (const String& attribute : STYLING)
      if (Way way = fromAttribute(*marked, attribute, target, root))
        return way;
  return std::nullopt;
}

/// True if the text looks like the label of a value.
bool isLabel(const HTMLTag& tag) {
  constexpr std::size_t LONGEST = 60;
  const std::u16string_view text = tag.textView();
  const auto isLetter = [](char16_t unit) {
    return (unit >= u'a' && unit <= u'z') || (unit >= u'A' && unit <= u'Z') || unit >= 0xC0;
  };
  const auto isDigit = [](char16_t unit) { return unit >= u'0' && unit <= u'9'; };
  return tag.nameView() != u"title" && text.size() <= LONGEST && isWritableInXml(text) &&
         std::any_of(text.begin(), text.end(), isLetter) && std::none_of(text.begin(), text.end(), isDigit);
}

/// Starts at a label before the target or before one of its ancestors.
Way byLabel(const HTMLTag& target, const HTMLTag& root) {
  constexpr std::size_t LEVELS = 4;
  constexpr std::size_t NEAREST = 4;
  const HTMLTag* around = &target;
  for (std::size_t level = 0; level < LEVELS && around != nullptr && around != &root; ++level) {
    const std::vector<const HTMLTag*> before = tagsBefore(*around);
    for (std::size_t i = 0; i < std::min(before.size(), NEAREST); ++i) {
      if (!isLabel(*before[i]))
        continue;
      LocatorWay way{LocatorWay::By::Label, {}};
      LocatorWay::addSearchByText(way.locator, *before[i]);
      if (LocatorWay::addMoveDown(way.locator, *before[i], *around) &&
          LocatorWay::addMovesIn(way.locator, *around, target))
        if (Way found = tried(std::move(way), target, root))
          return found;
    }
    around = around->parent();
  }
  return std::nullopt;
}

void add(std::vector<LocatorWay>& ways, Way way) {
  if (way)
    ways.push_back(std::move(*way));
}

} // namespace

void LocatorWay::addSearchByText(XMLTagLocator& locator, const HTMLTag& tag) {
  XMLElement& search = addStep(locator, new XMLTagSearch, u"TagSearch");
  search.setAttribute(u"tagname", tag.name());
  search.setAttribute(u"val", tag.text());
}

void LocatorWay::addSearchByAttribute(XMLTagLocator& locator, const HTMLTag& tag, const String& attribute) {
  XMLElement& search = addStep(locator, new XMLTagSearch, u"TagSearch");
  search.setAttribute(u"tagname", tag.name());
  search.setAttribute(u"attr", attribute);
  search.setAttribute(u"attrVal", tag.attrVal(attribute));
}

bool LocatorWay::addMoveDown(XMLTagLocator& locator, const HTMLTag& from, const HTMLTag& to) {
  std::size_t index = 0;
  for (const HTMLTag* const tag : tagsBehind(from)) {
    if (tag == &to) {
      XMLElement& move = addStep(locator, new XMLTagMove, u"TagMove");
      move.setAttribute(u"move", u"Down");
      move.setAttribute(u"name", to.name());
      move.setAttribute(u"index", numberText(index));
      return true;
    }
    index += tag->nameView() == to.nameView();
  }
  return false;
}

bool LocatorWay::addMovesIn(XMLTagLocator& locator, const HTMLTag& from, const HTMLTag& to) {
  for (const HTMLTag* tag = &to; tag != &from; tag = tag->parent())
    if (tag == nullptr || !isWritableInXml(tag->nameView()))
      return false;
  try {
    HTMLTagLocator::fillTagMovesFor(locator, &from, &to);
  } catch (const HTMLException&) {
    return false;
  }
  return true;
}

std::vector<LocatorWay> LocatorWay::to(const HTMLTag& target, const HTMLTag& root) {
  std::vector<LocatorWay> ways;
  if (depth(target) > DEEPEST)
    return ways;
  add(ways, byLabel(target, root));
  add(ways, byAttribute(target, root));
  add(ways, byPosition(target, root));
  return ways;
}

std::vector<LocatorWay> LocatorWay::withoutLabels(const HTMLTag& target, const HTMLTag& root) {
  std::vector<LocatorWay> ways;
  if (depth(target) > DEEPEST)
    return ways;
  // A walk needs at least one step, so only a search by attribute can lead to the root itself.
  if (const auto attributes = root.attributes(); &target == &root && !attributes.empty())
    add(ways, fromAttribute(root, attributes.begin()->first, root, root));
  add(ways, byAttribute(target, root));
  add(ways, byPosition(target, root));
  return ways;
}

} // namespace Tallymoor
