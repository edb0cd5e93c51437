#pragma once
#include "pages/HTMLTag.h"
#include <deque>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace Tallymoor {

/// Everything that a parsed page consists of: its tags in the order of their opening, and the texts they
/// refer to. Filled by the parser, constant afterwards. Tags are addressed by their index here, since they
/// may move while the page is read.
struct HTMLPageArena {
  explicit HTMLPageArena(String text) : page(std::move(text)) {}

  const String page;
  std::deque<std::u16string> kept; ///< names and texts that are no part of the page's text
  std::unordered_map<std::u16string_view, std::uint32_t> names; ///< see HTMLName
  std::vector<HTMLTag> tags;
};

} // namespace Tallymoor
