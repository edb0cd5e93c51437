#pragma once
#include "foundation/String.h"
#include <cstddef>
#include <functional>

namespace Tallymoor {

/// The room that a text has on the screen, by the font that it is shown in.
struct MessageRoom {
  std::function<int(const String& line)> widthOf; ///< pixels
  int width = 0;                                  ///< pixels of the longest line
  std::size_t lines = 0;                          ///< at least three are taken
};

/// The text with line ends that keep it within the room: a line breaks at its last blank that fits, a word
/// that is wider than the room breaks anywhere but within a character. A line of more than 150 units always
/// breaks, since it would be hard to read. If there are too many lines, "…" replaces those in the middle:
/// what happened stands at the beginning, what is asked at the end.
String fittedMessage(const String& text, const MessageRoom& room);

} // namespace Tallymoor
