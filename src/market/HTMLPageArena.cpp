#include "market/HTMLPageArena.h"
#include <algorithm>
#include <memory>

namespace Tallymoor {

HTMLPageArena::HTMLPageArena(std::size_t expectedTags) : m_texts(16 * 1024) {
  m_tags.reserve(expectedTags);
}

std::uint32_t HTMLPageArena::addTag(std::u16string_view name, std::uint32_t previous,
                                    std::uint32_t position) {
  HTMLTag& tag = m_tags.emplace_back(HTMLTag(*this));
  tag.m_name = name;
  tag.m_previous = previous;
  tag.m_position = position;
  return size() - 1;
}

std::u16string_view HTMLPageArena::keep(std::u16string_view text) {
  if (text.empty())
    return {};
  auto* const kept =
      static_cast<char16_t*>(m_texts.allocate(text.size() * sizeof(char16_t), alignof(char16_t)));
  std::copy(text.begin(), text.end(), kept);
  return {kept, text.size()};
}

void HTMLPageArena::setAttributes(std::uint32_t tag, std::vector<HTMLTag::Attribute>& attributes) {
  using Attribute = HTMLTag::Attribute;
  if (attributes.empty())
    return;
  if (attributes.size() > 1) {
    std::stable_sort(attributes.begin(), attributes.end(),
                     [](const Attribute& a, const Attribute& b) { return a.name < b.name; });
    const auto end = std::unique(attributes.begin(), attributes.end(),
                                 [](const Attribute& a, const Attribute& b) { return a.name == b.name; });
    attributes.erase(end, attributes.end());
  }
  auto* const kept =
      static_cast<Attribute*>(m_texts.allocate(attributes.size() * sizeof(Attribute), alignof(Attribute)));
  std::transform(attributes.begin(), attributes.end(), kept, [this](const Attribute& attribute) {
    return Attribute{keep(attribute.name), keep(attribute.value)};
  });
  m_tags[tag].m_attributes = kept;
  m_tags[tag].m_numAttributes = static_cast<std::uint32_t>(attributes.size());
}

void HTMLPageArena::linkFollowers() {
  for (const HTMLTag& tag : m_tags)
    if (tag.m_previous != HTMLTag::NONE)
      ++m_tags[tag.m_previous].m_numFollowers;
  std::uint32_t total = 0;
  for (HTMLTag& tag : m_tags) {
    tag.m_firstFollower = total;
    total += tag.m_numFollowers;
    tag.m_numFollowers = 0; // counted again while they are filled in
  }
  m_followers.resize(total);
  for (std::uint32_t i = 0; i < size(); ++i)
    if (m_tags[i].m_previous != HTMLTag::NONE) {
      HTMLTag& previous = m_tags[m_tags[i].m_previous];
      m_followers[previous.m_firstFollower + previous.m_numFollowers++] = i;
    }
}

std::uint32_t HTMLPageArena::follower(std::uint32_t tag, std::uint32_t last) const {
  // What was put behind the tag earlier had been taken away again before the run's own follower came, and
  // what was put there later came after the run's end.
  const std::uint32_t* const begin = m_followers.data() + m_tags[tag].m_firstFollower;
  return *(std::upper_bound(begin, begin + m_tags[tag].m_numFollowers, last) - 1);
}

} // namespace Tallymoor
