#include "market/HTMLPageArena.h"
#include <algorithm>
#include <array>
#include <memory>
#include <numeric>

namespace Tallymoor {

namespace {

// Denser than most pages are. Room that isn't used costs nothing, growing costs a copy.
constexpr std::size_t UNITS_PER_TAG = 20;
constexpr std::size_t UNITS_PER_ATTRIBUTE = 20;
constexpr std::size_t FIRST_TEXT_BUFFER = 1024;

/// Sorts attributes by name, those of one name in the order in which they stand. Many of them are dealt out
/// unit by unit, which takes time in proportion to their names, where comparing them with each other would
/// take more.
class NameSort {
public:
  NameSort(const HTMLPageArena& arena, HTMLAttribute* attributes, std::size_t number)
      : m_arena(arena), m_attributes(attributes), m_number(number) {}

  void run() {
    m_waiting = {{0, m_number, 0}};
    while (!m_waiting.empty()) {
      const Group group = m_waiting.back();
      m_waiting.pop_back();
      if (group.end - group.begin < FEW || hasWideUnits(group))
        compare(group);
      else
        dealOut(group);
    }
  }

private:
  static constexpr std::size_t FEW = 32;
  static constexpr std::size_t NARROW = 256; ///< units below have a pile of their own
  static constexpr std::size_t PILES = NARROW + 1;
  /// Names that are the same up to the unit.
  struct Group {
    std::size_t begin;
    std::size_t end;
    std::size_t unit;
  };

  /// 0 for a name that has ended.
  std::size_t pileOf(const HTMLAttribute& attribute, std::size_t unit) const {
    return unit < attribute.nameLength ? std::size_t{m_arena.page()[attribute.name + unit]} + 1 : 0;
  }
  bool hasWideUnits(const Group& group) const {
    return std::any_of(
        m_attributes + group.begin, m_attributes + group.end,
        [&](const HTMLAttribute& attribute) { return pileOf(attribute, group.unit) > NARROW; });
  }
  void compare(const Group& group) {
    std::stable_sort(m_attributes + group.begin, m_attributes + group.end,
                     [this](const HTMLAttribute& a, const HTMLAttribute& b) {
                       return m_arena.nameOf(a) < m_arena.nameOf(b);
                     });
  }
  void dealOut(const Group& group) {
    std::array<std::size_t, PILES + 1> starts{};
    for (std::size_t i = group.begin; i < group.end; ++i)
      ++starts[pileOf(m_attributes[i], group.unit) + 1];
    std::partial_sum(starts.begin(), starts.end(), starts.begin());
    m_dealt.resize(group.end - group.begin);
    auto places = starts;
    for (std::size_t i = group.begin; i < group.end; ++i)
      m_dealt[places[pileOf(m_attributes[i], group.unit)]++] = m_attributes[i];
    std::copy(m_dealt.begin(), m_dealt.end(), m_attributes + group.begin);
    for (std::size_t pile = 1; pile < PILES; ++pile)
      if (starts[pile + 1] - starts[pile] > 1)
        m_waiting.push_back({group.begin + starts[pile], group.begin + starts[pile + 1], group.unit + 1});
  }

  const HTMLPageArena& m_arena;
  HTMLAttribute* m_attributes;
  std::size_t m_number;
  std::vector<Group> m_waiting;
  std::vector<HTMLAttribute> m_dealt;
};

} // namespace

HTMLPageArena::HTMLPageArena(String page) : m_page(std::move(page)), m_texts(FIRST_TEXT_BUFFER) {
  m_tags.reserve(m_page.size() / UNITS_PER_TAG + 1);
  m_attributes.reserve(m_page.size() / UNITS_PER_ATTRIBUTE + 1);
}

std::uint32_t HTMLPageArena::addTag(std::u16string_view name, std::uint32_t previous,
                                    std::uint32_t position) {
  HTMLTag& tag = m_tags.emplace_back(HTMLTag(*this));
  tag.m_name = name.data();
  tag.m_nameLength = static_cast<std::uint32_t>(name.size());
  tag.m_previous = previous;
  tag.m_position = position;
  tag.m_firstAttribute = static_cast<std::uint32_t>(m_attributes.size());
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

bool HTMLPageArena::addAttribute(const HTMLAttribute& attribute) {
  const bool isFirst = m_attributes.size() == m_tags.back().m_firstAttribute;
  if (!isFirst && nameOf(m_attributes.back()) == nameOf(attribute))
    return false;
  m_attributes.push_back(attribute);
  return true;
}

void HTMLPageArena::endAttributes(std::uint32_t tag) {
  const auto begin = m_attributes.begin() + m_tags[tag].m_firstAttribute;
  if (m_attributes.end() - begin > 1) {
    const auto precedes = [this](const HTMLAttribute& a, const HTMLAttribute& b) {
      return nameOf(a) < nameOf(b);
    };
    if (!std::is_sorted(begin, m_attributes.end(), precedes))
      NameSort(*this, &*begin, static_cast<std::size_t>(m_attributes.end() - begin)).run();
    const auto end =
        std::unique(begin, m_attributes.end(), [this](const HTMLAttribute& a, const HTMLAttribute& b) {
          return nameOf(a) == nameOf(b);
        });
    m_attributes.erase(end, m_attributes.end());
  }
  m_tags[tag].m_numAttributes = static_cast<std::uint32_t>(m_attributes.end() - begin);
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
