#include "workbench/TagLists.h"
#include "pages/HTMLTag.h"
#include "pages/HTMLTagSearch.h"
#include "workbench/PageText.h"
#include "workbench/PlainOutput.h"
#include <algorithm>
#include <map>

namespace Tallymoor {

namespace {

constexpr std::size_t LONGEST_LIST = 15;

void showRest(PlainOutput& out, std::size_t count, unsigned level) {
  if (count > LONGEST_LIST)
    out.line(u"... and " + numberText(count - LONGEST_LIST) + u" more", level);
}

} // namespace

std::vector<const HTMLTag*> tagsBelow(const HTMLTag& start,
                                      const std::function<bool(const HTMLTag&)>& matches) {
  std::vector<const HTMLTag*> found;
  // The search visits every tag once, because the predicate never accepts one.
  HTMLTagSearch(start).first([&](const HTMLTag& tag) {
    if (matches(tag))
      found.push_back(&tag);
    return false;
  });
  std::sort(found.begin(), found.end()); // The tags' order in memory is their order on the page.
  return found;
}

std::vector<const HTMLTag*> tagsIn(const HTMLTag& parent) {
  std::vector<const HTMLTag*> tags;
  for (const HTMLTag* tag = parent.firstSubTag(); tag != nullptr; tag = parent.nextSubTag(tag))
    tags.push_back(tag);
  return tags;
}

std::vector<const HTMLTag*> tagsBehind(const HTMLTag& tag) {
  std::vector<const HTMLTag*> tags;
  const HTMLTag* const parent = tag.parent();
  for (const HTMLTag* next = parent ? parent->nextSubTag(&tag) : nullptr; next != nullptr;
       next = parent->nextSubTag(next))
    tags.push_back(next);
  return tags;
}

std::vector<const HTMLTag*> tagsBefore(const HTMLTag& tag) {
  if (tag.parent() == nullptr)
    return {};
  std::vector<const HTMLTag*> tags = tagsIn(*tag.parent());
  tags.erase(std::find(tags.begin(), tags.end(), &tag), tags.end());
  std::reverse(tags.begin(), tags.end());
  return tags;
}

void showIndexed(PlainOutput& out, const std::vector<const HTMLTag*>& tags, unsigned level) {
  std::map<std::u16string_view, std::size_t> met;
  for (std::size_t i = 0; i < std::min(tags.size(), LONGEST_LIST); ++i) {
    const HTMLTag& tag = *tags[i];
    out.line(shortened(tag.nameView(), 20) + u" " + numberText(met[tag.nameView()]++) + u": " +
                 tagSummary(tag),
             level);
  }
  showRest(out, tags.size(), level);
}

void showTags(PlainOutput& out, const std::vector<const HTMLTag*>& tags, unsigned level) {
  for (std::size_t i = 0; i < std::min(tags.size(), LONGEST_LIST); ++i)
    out.line(tagSummary(*tags[i]), level);
  showRest(out, tags.size(), level);
}

} // namespace Tallymoor
