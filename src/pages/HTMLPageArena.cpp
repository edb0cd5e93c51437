#include "pages/HTMLPageArena.h"
#include <algorithm>
#include <numeric>
#include <utility>

namespace Tallymoor {

HTMLPageArena::HTMLPageArena(String text) : page(std::move(text)) {
  // A tag has two units at least. Room that isn't used costs nothing, growing costs a copy.
  const auto brackets = static_cast<std::size_t>(std::count(page.begin(), page.end(), u'<'));
  const std::size_t mostTags = std::min(brackets, page.size() / 2 + 1);
  tags.reserve(mostTags);
  followersEnd.reserve(mostTags);
  names.reserve(std::min(mostTags, MOST_NAMES));
}

void HTMLPageArena::linkFollowers() {
  std::exclusive_scan(followersEnd.begin(), followersEnd.end(), followersEnd.begin(), 0u);
  followers.resize(tags.size() - 1);
  for (std::uint32_t i = 1; i < tags.size(); ++i)
    followers[followersEnd[tags[i].m_previous]++] = i;
}

std::uint32_t HTMLPageArena::follower(std::uint32_t tag, std::uint32_t last) const {
  // What was put behind the tag earlier had been taken away again before the run's own follower came, and
  // what was put there later came after the run's end.
  const auto begin = followers.begin() + (tag == 0 ? 0 : followersEnd[tag - 1]);
  return *(std::upper_bound(begin, followers.begin() + followersEnd[tag], last) - 1);
}

} // namespace Tallymoor
