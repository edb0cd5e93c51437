#pragma once
#include "foundation/String.h"
#include <iosfwd>

namespace Tallymoor {

/// Where the workbench's commands write: plain lines of UTF-8 for a terminal. Names, addresses and texts of
/// pages from anywhere go through here, so whatever could move the cursor, change colours or turn the order
/// of the characters round is replaced in every line.
class PlainOutput {
public:
  /// The stream is not owned and must outlive this.
  explicit PlainOutput(std::ostream& stream) : m_stream(stream) {}

  /// A line, or several where the text holds line feeds, each indented by two blanks a level.
  void line(const String& text = String(), unsigned level = 0);

  /// The text with every control character, and every one that turns the writing direction, replaced by
  /// U+FFFD.
  static String harmless(const String& text);

private:
  std::ostream& m_stream;
};

} // namespace Tallymoor
