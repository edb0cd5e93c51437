#include "pages/HTMLTagSearch.h"
#include "pages/HTMLPageArena.h"
#include <numeric>

namespace Tallymoor {

HTMLTagSearch::HTMLTagSearch(const HTMLTag& start) : m_tags(start.m_arena->tags), m_start(start.index()) {
  std::vector<std::uint32_t> pending{m_start};
  reach(m_start);
  while (!pending.empty()) {
    const std::uint32_t opener = pending.back();
    pending.pop_back();
    // Where a tag of a run was reached, all before it on the run were too: every list that has the one has
    // the others, or begins behind one of them. So a run is followed backwards to the first reached tag and
    // no further.
    std::uint32_t tag = m_tags[opener].m_lastSub;
    for (; tag != HTMLTag::NONE && (tag - m_start >= m_reached.size() || !isReached(tag));
         tag = m_tags[tag].m_previous) {
      reach(tag);
      pending.push_back(tag);
    }
  }
}

void HTMLTagSearch::reach(std::uint32_t tag) {
  if (tag - m_start >= m_reached.size())
    m_reached.resize(tag - m_start + 1);
  m_reached[tag - m_start] = true;
  ++m_numTags;
}

const HTMLTag* HTMLTagSearch::first(const std::function<bool(const HTMLTag&)>& matches) const {
  // First, for every tag, whether it or anything below it matches. Sub tags have higher indices than their
  // openers, so the highest come first. nearest[i] leads, by short cuts, from a tag back along its run to the
  // nearest one that has a match or isn't decided yet; the openers of its lists are among the latter until
  // their turn comes.
  std::vector<std::uint32_t> nearest(m_reached.size());
  std::iota(nearest.begin(), nearest.end(), 0u);
  const auto find = [&nearest](std::uint32_t i) {
    while (nearest[i] != i)
      i = nearest[i] = nearest[nearest[i]];
    return i;
  };
  std::vector<bool> leads(m_reached.size());
  for (std::uint32_t i = static_cast<std::uint32_t>(m_reached.size()); i-- > 0;) {
    if (!m_reached[i])
      continue;
    const HTMLTag& tag = m_tags[m_start + i];
    leads[i] = matches(tag) || (tag.m_lastSub != HTMLTag::NONE && find(tag.m_lastSub - m_start) != i);
    if (!leads[i] && i != 0)
      nearest[i] = tag.m_previous - m_start;
  }
  if (!leads[0])
    return nullptr;
  // Then down to the match, at each tag along its run to the first sub tag that leads to one.
  const HTMLTag* tag = &m_tags[m_start];
  while (!matches(*tag)) {
    const HTMLTag* sub = tag->firstSubTag();
    while (!leads[sub->index() - m_start])
      sub = tag->nextSubTag(sub);
    tag = sub;
  }
  return tag;
}

} // namespace Tallymoor
