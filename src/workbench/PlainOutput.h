#pragma once
#include "foundation/String.h"
#include <iosfwd>

namespace Tallymoor {

/// Output of the workbench: lines of UTF-8 for a terminal. Names, addresses and page texts are untrusted, so
/// control characters and changes of writing direction are replaced in every line.
class PlainOutput {
public:
  /// The stream is not owned and must outlive this object.
  explicit PlainOutput(std::ostream& stream) : m_stream(stream) {}

  /// Writes a line, or several if the text contains line feeds, indented by two blanks per level.
  void line(const String& text = String(), unsigned level = 0);

  /// Replaces control characters and direction marks by U+FFFD.
  static String harmless(const String& text);

private:
  std::ostream& m_stream;
};

} // namespace Tallymoor
