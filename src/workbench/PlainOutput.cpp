#include "workbench/PlainOutput.h"
#include <algorithm>
#include <ostream>

namespace Tallymoor {

namespace {

bool isControl(char16_t unit) {
  return unit < 0x20 || (unit >= 0x7F && unit < 0xA0);
}

bool turnsDirection(char16_t unit) {
  return unit == 0x061C || unit == 0x200E || unit == 0x200F || (unit >= 0x2028 && unit <= 0x202E) ||
         (unit >= 0x2066 && unit <= 0x2069) || unit == 0xFEFF;
}

} // namespace

String PlainOutput::harmless(const String& text) {
  String result = text;
  std::replace_if(
      result.begin(), result.end(), [](char16_t unit) { return isControl(unit) || turnsDirection(unit); },
      u'\uFFFD');
  return result;
}

void PlainOutput::line(const String& text, unsigned level) {
  std::size_t start = 0;
  for (;;) {
    const std::size_t end = std::min(text.find(u'\n', start), text.size());
    const String piece = text.substr(start, end - start);
    if (!piece.empty())
      m_stream << std::string(std::size_t{2} * level, ' ') << harmless(piece).toUTF8();
    m_stream << '\n';
    if (end == text.size())
      return;
    start = end + 1;
  }
}

} // namespace Tallymoor
