#include "workbench/WalkTrace.h"
#include "foundation/Exception.h"
#include "pages/HTMLTag.h"
#include "pages/HTMLTagLocator.h"
#include "workbench/PageText.h"
#include "workbench/PlainOutput.h"
#include "workbench/TagLists.h"
#include "xml/LocatorDocuments.h"
#include <algorithm>

namespace Tallymoor {

namespace {

const XMLTagMove* moveOf(const XMLElement& tagFind) {
  return tagFind.numSubElements(u"TagMove") == 0
             ? nullptr
             : &static_cast<const XMLTagMove&>(tagFind.subElement(u"TagMove"));
}

String describeMove(const XMLTagMove& move) {
  const String index = move.hasAttribute(u"index") ? move.attribute(u"index") : String(u"0");
  return (move.movesIn() ? u"in: " : u"down: ") + shortened(move.attribute(u"name")) + u" " + index;
}

String describeSearch(const XMLElement& search) {
  String text = u"search: <" + shortened(search.attribute(u"tagname")) + u">";
  if (search.hasAttribute(u"val"))
    return text + u" with the text " + inQuotes(search.attribute(u"val"));
  if (search.hasAttribute(u"attr"))
    text += u" with " + shortened(search.attribute(u"attr"));
  if (search.hasAttribute(u"attrVal"))
    text += u"=" + inQuotes(search.attribute(u"attrVal"));
  return text;
}

String describe(const XMLElement& tagFind) {
  const XMLTagMove* const move = moveOf(tagFind);
  return move ? describeMove(*move) : describeSearch(tagFind.subElement(u"TagSearch"));
}

void showStopInside(PlainOutput& out, const XMLTagMove& move, const HTMLTag& current, unsigned level) {
  const std::vector<const HTMLTag*> inside = tagsIn(current);
  const String head = u"STOPPED: " + tagTitle(current);
  if (!inside.empty()) {
    out.line(head + u" has no " + describeMove(move).substr(4) + u" directly in it. It has:", level);
    showIndexed(out, inside, level + 1);
    return;
  }
  out.line(head + u" has no tags in it.", level);
  if (!current.isClosed())
    out.line(u"It is never closed, so the tags after it are its siblings: use a move \"Down\".", level);
}

void showStopBehind(PlainOutput& out, const XMLTagMove& move, const HTMLTag& current, unsigned level) {
  const std::vector<const HTMLTag*> behind = tagsBehind(current);
  out.line(u"STOPPED: after " + tagTitle(current) + u" there is no " + describeMove(move).substr(6) +
               u" under the same parent. The tags after it are:",
           level);
  showIndexed(out, behind, level + 1);
  if (behind.empty())
    out.line(u"nothing", level + 1);
}

/// Near matches of a search by text: tags whose text or name differs slightly.
std::vector<const HTMLTag*> nearText(const HTMLTag& start, const String& name, const String& text) {
  const String wanted = asShown(text).toLower();
  return tagsBelow(start, [&](const HTMLTag& tag) {
    if (wanted.empty() || tag.textView().empty())
      return false;
    const String shown = asShown(tag.textView()).toLower();
    return shown == wanted || (tag.nameView() == name && shown.contains(wanted));
  });
}

void showStopOfSearch(PlainOutput& out, const XMLElement& search, const HTMLTag& current, unsigned level) {
  const String& name = search.attribute(u"tagname");
  const auto named = tagsBelow(current, [&name](const HTMLTag& tag) { return tag.nameView() == name; });
  out.line(u"STOPPED: there is no such tag in " + tagTitle(current) + u".", level);
  if (search.hasAttribute(u"val")) {
    const std::vector<const HTMLTag*> near = nearText(current, name, search.attribute(u"val"));
    if (!near.empty()) {
      out.line(u"The text and the tag's name must match exactly. Similar tags are:", level);
      showTags(out, near, level + 1);
      return;
    }
  }
  out.line(named.empty() ? u"There is no <" + shortened(name) + u"> at all."
                         : u"The <" + shortened(name) + u"> tags are:",
           level);
  showTags(out, named, level + 1);
}

} // namespace

const HTMLTag* WalkTrace::show(PlainOutput& out, unsigned level) const {
  const HTMLTag* current = &m_start;
  for (std::size_t i = 0; i < m_locator.numSubElements(u"TagFinds"); ++i) {
    const XMLElement& step = m_locator.subElement(u"TagFinds", i);
    out.line(numberText(i + 1) + u". " + describe(step), level);
    try {
      current = HTMLTagLocator::applyStep(step, current);
    } catch (const HTMLException&) {
      showStop(out, step, *current, level + 2);
      return nullptr;
    }
    out.line(u"reached " + tagSummary(*current), level + 2);
  }
  return current;
}

void WalkTrace::showStop(PlainOutput& out, const XMLElement& tagFind, const HTMLTag& current,
                         unsigned level) {
  const XMLTagMove* const move = moveOf(tagFind);
  if (move == nullptr)
    showStopOfSearch(out, tagFind.subElement(u"TagSearch"), current, level);
  else if (move->movesIn())
    showStopInside(out, *move, current, level);
  else
    showStopBehind(out, *move, current, level);
}

String WalkTrace::steps() const {
  String text;
  for (std::size_t i = 0; i < m_locator.numSubElements(u"TagFinds"); ++i)
    text += (i == 0 ? u"" : u", then ") + describe(m_locator.subElement(u"TagFinds", i));
  return text;
}

} // namespace Tallymoor
