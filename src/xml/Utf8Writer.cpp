#include "xml/Utf8Writer.h"
#include <algorithm>
#include <cstring>
#include <ostream>
#include <string>
#include <unicode/utf16.h>
#include <unicode/utf8.h>

namespace Tallymoor {

namespace {

constexpr std::size_t BUFFER_SIZE = std::size_t{64} * 1024;
constexpr std::size_t LONGEST_OUTPUT = 6; ///< bytes that one unit can become: "&quot;"
constexpr std::size_t CHUNK = 4096;       ///< units between two looks at the room left

std::string_view entityFor(char16_t unit) {
  switch (unit) {
  case u'&':
    return "&amp;";
  case u'"':
    return "&quot;";
  case u'\'':
    return "&apos;";
  case u'<':
    return "&lt;";
  case u'>':
    return "&gt;";
  default:
    return {};
  }
}

bool isControlOutsideXml(char16_t unit) {
  return unit < 0x20 && unit != u'\t' && unit != u'\n' && unit != u'\r';
}

} // namespace

Utf8Writer::Utf8Writer(std::ostream& stream)
    : m_stream(stream), m_buffer(new char[BUFFER_SIZE]), m_next(m_buffer.get()), m_end(m_next + BUFFER_SIZE) {
}

void Utf8Writer::raw(std::string_view bytes) {
  while (static_cast<std::size_t>(m_end - m_next) < bytes.size()) {
    const std::size_t room = static_cast<std::size_t>(m_end - m_next);
    std::memcpy(m_next, bytes.data(), room);
    m_next += room;
    bytes.remove_prefix(room);
    flush();
  }
  std::memcpy(m_next, bytes.data(), bytes.size());
  m_next += bytes.size();
}

void Utf8Writer::text(std::u16string_view units) {
  write<false>(units);
}

void Utf8Writer::escaped(std::u16string_view units) {
  write<true>(units);
}

void Utf8Writer::attribute(std::u16string_view units) {
  const auto isWhite = [](char16_t unit) { return unit == u'\t' || unit == u'\n' || unit == u'\r'; };
  for (std::size_t done = 0; done < units.size();) {
    const auto white = std::find_if(units.begin() + static_cast<std::ptrdiff_t>(done), units.end(), isWhite);
    const auto end = static_cast<std::size_t>(white - units.begin());
    escaped(units.substr(done, end - done));
    if (white != units.end())
      raw("&#" + std::to_string(static_cast<unsigned>(*white)) + ";");
    done = end + 1;
  }
}

void Utf8Writer::flush() {
  m_flushed = written();
  m_stream.write(m_buffer.get(), m_next - m_buffer.get());
  m_next = m_buffer.get();
}

template <bool Escape>
void Utf8Writer::write(std::u16string_view units) {
  std::size_t index = 0;
  while (index < units.size()) {
    const std::size_t chunkEnd = std::min(index + CHUNK, units.size());
    // One unit more than the chunk, since a surrogate pair may cross its end.
    if (static_cast<std::size_t>(m_end - m_next) < (chunkEnd - index + 1) * LONGEST_OUTPUT)
      flush();
    char* out = m_next;
    while (index < chunkEnd) {
      const char16_t unit = units[index];
      if (unit >= 0x80) {
        out = writeNonAscii(units, index, out);
        continue;
      }
      ++index;
      if constexpr (Escape) {
        const std::string_view entity = entityFor(unit);
        if (!entity.empty()) {
          std::memcpy(out, entity.data(), entity.size());
          out += entity.size();
          continue;
        }
      }
      if (!isControlOutsideXml(unit))
        *out++ = static_cast<char>(unit);
    }
    m_next = out;
  }
}

/// Writes the character at the index, which moves behind it.
char* Utf8Writer::writeNonAscii(std::u16string_view units, std::size_t& index, char* out) {
  UChar32 character = 0;
  U16_NEXT(units, index, units.size(), character);
  if (U_IS_SURROGATE(character) || character == 0xFFFE || character == 0xFFFF)
    return out; // half a pair, and what XML has no place for
  std::size_t length = 0;
  U8_APPEND_UNSAFE(out, length, character);
  return out + length;
}

} // namespace Tallymoor
