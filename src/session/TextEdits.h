#pragma once
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Tallymoor {

/// A place at which two texts differ. It goes both ways, so a change and its reverse are the same data.
struct TextEdit {
  std::size_t place; ///< bytes before it, in the text before
  std::string removed;
  std::string inserted;

  bool operator==(const TextEdit&) const = default;
};

/// The edits that lead from one text to the other, in the order of their places. They are small where the
/// texts have most in common, and need not be the smallest. The time is that of comparing both texts.
std::vector<TextEdit> editsBetween(std::string_view before, std::string_view after);

/// The edits that lead back.
std::vector<TextEdit> reversed(std::vector<TextEdit> edits);

/// Whether the edits belong to this text.
bool fits(std::string_view before, const std::vector<TextEdit>& edits);
/// Makes edits that fit in place: a few small ones of a large text do not copy it.
void applyTo(std::string& text, const std::vector<TextEdit>& edits);
/// The text after the edits. Nothing where they don't fit.
std::optional<std::string> edited(std::string_view before, const std::vector<TextEdit>& edits);

} // namespace Tallymoor
