#include "pages/HTMLTagLocator.h"
#include "foundation/Exception.h"
#include "pages/HTMLParser.h"
#include "pages/HTMLTagSearch.h"
#include "pages/HTMLWalkLimit.h"
#include "xml/LocatorDocuments.h"
#include <vector>

namespace Tallymoor {

namespace {

String attributeOrEmpty(const XMLElement& element, std::u16string_view name) {
  return element.hasAttribute(name) ? element.attribute(name) : String();
}

/// What a search step wants of a tag.
class Wanted {
public:
  explicit Wanted(const XMLElement& search) : name(search.attribute(u"tagname")) {
    if (search.hasAttribute(u"val")) {
      text = search.attribute(u"val");
    } else {
      attribute = attributeOrEmpty(search, u"attr");
      attributeValue = attributeOrEmpty(search, u"attrVal");
    }
  }

  bool matches(const HTMLTag& tag) const {
    if (tag.nameView() != name)
      return false;
    if (!text.empty() && tag.textView() == text)
      return true;
    return !attribute.empty() && tag.hasAttr(attribute) &&
           (attributeValue.empty() || tag.attrVal(attribute) == attributeValue);
  }

  String name;
  String text;
  String attribute;
  String attributeValue;
};

XMLTagFind* newMoveIn(const HTMLTag* parent, const HTMLTag* tag) {
  auto find = std::make_unique<XMLTagFind>();
  XMLElement& move = find->addSubElement(new XMLTagMove, u"TagMove");
  move.setAttribute(u"move", u"In");
  move.setAttribute(u"name", tag->name());
  move.setAttribute(u"index",
                    String::fromLong(static_cast<std::int64_t>(HTMLTagLocator::indexUnder(parent, tag))));
  return find.release();
}

} // namespace

HTMLTagLocator::HTMLTagLocator(const XMLTagLocator* locator)
    : HTMLTagLocator(static_cast<const XMLElement*>(locator)) {}

HTMLTagLocator::HTMLTagLocator(const XMLElement* locator) : m_locator(locator) {
  if (dynamic_cast<const XMLTagLocator*>(locator) == nullptr)
    throw HTMLException(u"HTMLTagLocator::HTMLTagLocator - bad param");
}

const HTMLTag* HTMLTagLocator::operator()(const HTMLTag* root, HTMLWalkLimit* limit) const {
  if (root == nullptr)
    throw HTMLException(u"HTMLTagLocator::operator() - bad param");
  const HTMLTag* current = root;
  const std::size_t count = m_locator->numSubElements(u"TagFinds");
  for (std::size_t i = 0; i < count; ++i)
    current = applyStep(m_locator->subElement(u"TagFinds", i), current, limit);
  return current;
}

const HTMLTag* HTMLTagLocator::applyStep(const XMLElement& tagFind, const HTMLTag* current,
                                         HTMLWalkLimit* limit) {
  return tagFind.numSubElements(u"TagMove") != 0
             ? applyMove(tagFind.subElement(u"TagMove"), current, limit)
             : applySearch(tagFind.subElement(u"TagSearch"), current, limit);
}

const HTMLTag* HTMLTagLocator::applyMove(const XMLElement& element, const HTMLTag* current,
                                         HTMLWalkLimit* limit) {
  const auto& move = static_cast<const XMLTagMove&>(element);
  const String& name = move.attribute(u"name");
  const bool in = move.movesIn();
  const HTMLTag* const found = in ? HTMLParser::FindTag(current, name, move.index(), limit)
                                  : HTMLParser::FindSiblingTag(current, name, move.index(), limit);
  if (found == nullptr)
    throw HTMLException(String(u"HTMLTagLocator::operator() - ") +
                        (in ? u"FindIndexedSubTag" : u"FindIndexedSiblingTag") + u" failed for " + name +
                        u" from " + current->name());
  return found;
}

const HTMLTag* HTMLTagLocator::applySearch(const XMLElement& search, const HTMLTag* current,
                                           HTMLWalkLimit* limit) {
  const Wanted wanted(search);
  const HTMLTagSearch below(*current);
  if (limit != nullptr)
    limit->take(below.numTags());
  const HTMLTag* const found = below.first([&](const HTMLTag& tag) {
    if (limit != nullptr && !wanted.attribute.empty() && tag.nameView() == wanted.name)
      limit->take(tag.attributesSize());
    return wanted.matches(tag);
  });
  if (found == nullptr)
    throw HTMLException(u"HTMLTagLocator::FindTagForTagSearch - failed to find " + wanted.name + u", w/attr" +
                        wanted.attribute + u" from " + current->name());
  return found;
}

std::size_t HTMLTagLocator::indexUnder(const HTMLTag* parent, const HTMLTag* tag) {
  std::size_t index = 0;
  for (const HTMLTag* sub = parent->firstSubTag(); sub != nullptr; sub = parent->nextSubTag(sub)) {
    if (sub == tag)
      return index;
    if (sub->nameView() == tag->nameView())
      ++index;
  }
  throw HTMLException(u"HTMLTagLocator::fillTagMovesFor(): Couldn't find node " + tag->name() +
                      u" from parent " + parent->name());
}

void HTMLTagLocator::fillTagMovesFor(XMLTagLocator& locator, const HTMLTag* start, const HTMLTag* target) {
  std::vector<const HTMLTag*> way;
  for (const HTMLTag* tag = target; tag != start && tag->parent() != nullptr; tag = tag->parent())
    way.push_back(tag);
  for (auto tag = way.rbegin(); tag != way.rend(); ++tag)
    locator.addSubElement(newMoveIn((*tag)->parent(), *tag), u"TagFinds");
}

} // namespace Tallymoor
