#include "session/TextEdits.h"
#include <algorithm>
#include <cstring>
#include <utility>

namespace Tallymoor {

namespace {

constexpr std::size_t WINDOW = 256; ///< equal bytes that are taken for the same place in both texts
constexpr std::size_t REACH = std::size_t{256} * 1024; ///< how far such a place is looked for
constexpr std::size_t FIRST_STEP = 16;        ///< between the windows that are tried, and doubled each time
constexpr std::size_t MOST_EDITS = 1000;      ///< behind them one edit takes the rest
constexpr std::size_t COMPARED_AT_ONCE = 256; ///< by memcmp

std::size_t commonStart(std::string_view left, std::string_view right) {
  const std::size_t most = std::min(left.size(), right.size());
  std::size_t length = 0;
  while (length + COMPARED_AT_ONCE <= most &&
         left.substr(length, COMPARED_AT_ONCE) == right.substr(length, COMPARED_AT_ONCE))
    length += COMPARED_AT_ONCE;
  while (length < most && left[length] == right[length])
    ++length;
  return length;
}

std::size_t commonEnd(std::string_view left, std::string_view right) {
  const std::size_t most = std::min(left.size(), right.size());
  std::size_t length = 0;
  while (length + COMPARED_AT_ONCE <= most &&
         left.substr(left.size() - length - COMPARED_AT_ONCE, COMPARED_AT_ONCE) ==
             right.substr(right.size() - length - COMPARED_AT_ONCE, COMPARED_AT_ONCE))
    length += COMPARED_AT_ONCE;
  while (length < most && left[left.size() - length - 1] == right[right.size() - length - 1])
    ++length;
  return length;
}

/// How many bytes of each text to skip.
struct Skipped {
  std::size_t before;
  std::size_t after;
  std::size_t sum() const { return before + after; }
};

/// Where a window of one text, `from` bytes behind its start, stands within the reach of the other.
std::optional<std::size_t> placeOfWindow(std::string_view text, std::size_t from, std::string_view other,
                                         std::size_t reach) {
  if (from + WINDOW > text.size() || WINDOW > other.size())
    return std::nullopt;
  const void* const found =
      ::memmem(other.data(), std::min(other.size(), reach + WINDOW), text.data() + from, WINDOW);
  return found ? std::optional<std::size_t>(static_cast<const char*>(found) - other.data()) : std::nullopt;
}

/// Both texts begin with a difference: where they go on alike. Nothing when that is not found nearby.
std::optional<Skipped> endOfDifference(std::string_view before, std::string_view after) {
  std::optional<Skipped> best;
  std::size_t reach = REACH;
  for (std::size_t from = 0; from < reach; from = std::max(FIRST_STEP, from * 2)) {
    if (const auto place = placeOfWindow(before, from, after, reach); place && from + *place < reach)
      best = {from, *place};
    reach = best ? best->sum() : REACH;
    if (const auto place = placeOfWindow(after, from, before, reach); place && from + *place < reach)
      best = {*place, from};
    reach = best ? best->sum() : REACH;
  }
  return best;
}

} // namespace

std::vector<TextEdit> editsBetween(std::string_view before, std::string_view after) {
  std::vector<TextEdit> edits;
  std::size_t place = 0;
  for (;;) {
    const std::size_t same = commonStart(before, after);
    place += same;
    before.remove_prefix(same);
    after.remove_prefix(same);
    if (before.empty() && after.empty())
      return edits;
    std::optional<Skipped> skipped;
    if (edits.size() < MOST_EDITS)
      skipped = endOfDifference(before, after);
    if (!skipped) {
      const std::size_t end = commonEnd(before, after);
      edits.push_back({place, std::string(before.substr(0, before.size() - end)),
                       std::string(after.substr(0, after.size() - end))});
      return edits;
    }
    edits.push_back({place, std::string(before.substr(0, skipped->before)),
                     std::string(after.substr(0, skipped->after))});
    place += skipped->before;
    before.remove_prefix(skipped->before);
    after.remove_prefix(skipped->after);
  }
}

std::vector<TextEdit> reversed(std::vector<TextEdit> edits) {
  std::size_t inserted = 0;
  std::size_t removed = 0;
  for (TextEdit& edit : edits) {
    edit.place = edit.place - removed + inserted;
    inserted += edit.inserted.size();
    removed += edit.removed.size();
    std::swap(edit.removed, edit.inserted);
  }
  return edits;
}

bool fits(std::string_view before, const std::vector<TextEdit>& edits) {
  std::size_t done = 0;
  for (const TextEdit& edit : edits) {
    if (edit.place < done || edit.place > before.size() ||
        before.substr(edit.place, edit.removed.size()) != edit.removed)
      return false;
    done = edit.place + edit.removed.size();
  }
  return true;
}

// Each edit in place may move the rest of the text.
void applyTo(std::string& text, const std::vector<TextEdit>& edits) {
  constexpr std::size_t FEW = 8;
  if (edits.size() <= FEW) {
    for (auto edit = edits.rbegin(); edit != edits.rend(); ++edit)
      text.replace(edit->place, edit->removed.size(), edit->inserted);
    return;
  }
  std::string after;
  std::size_t done = 0;
  for (const TextEdit& edit : edits) {
    after.append(text, done, edit.place - done);
    after.append(edit.inserted);
    done = edit.place + edit.removed.size();
  }
  after.append(text, done);
  text = std::move(after);
}

std::optional<std::string> edited(std::string_view before, const std::vector<TextEdit>& edits) {
  if (!fits(before, edits))
    return std::nullopt;
  std::string after(before);
  applyTo(after, edits);
  return after;
}

} // namespace Tallymoor
