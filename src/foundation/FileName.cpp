#include "foundation/FileName.h"
#include <algorithm>
#include <climits>
#include <string_view>
#include <unicode/utf16.h>

namespace Tallymoor {

namespace {

constexpr std::u16string_view HEX = u"0123456789ABCDEF";

/// True for a surrogate without its partner, which UTF-8 can't encode.
bool isLoneSurrogate(const String& text, std::size_t i) {
  UChar32 character = 0;
  U16_GET(text, 0, i, text.size(), character);
  return U_IS_SURROGATE(character);
}

/// The low digits of a number, in hexadecimal.
template <typename Number>
String hexDigits(Number number, int digits) {
  String text;
  for (int shift = 4 * (digits - 1); shift >= 0; shift -= 4)
    text.push_back(HEX[static_cast<std::size_t>(number >> shift) & 15]);
  return text;
}

String escapedForFile(const String& name) {
  String escaped;
  for (std::size_t i = 0; i < name.size(); ++i) {
    const char16_t unit = name[i];
    // "%" is escaped too, so that different names stay different.
    if (unit < 0x20 || unit == 0x7F || unit == u'/' || unit == u'%')
      escaped += u'%' + hexDigits(unit, 2);
    else if (isLoneSurrogate(name, i))
      escaped += u"%u" + hexDigits(unit, 4);
    else
      escaped.push_back(unit);
  }
  return escaped;
}

/// 128-bit FNV-1a. Collisions between a user's names are practically impossible.
String fingerprintOf(const String& text) {
  __extension__ using Hash = unsigned __int128;
  constexpr Hash PRIME = (Hash(1) << 88) + 0x13B;
  Hash hash = (Hash(0x6C62272E07BB0142) << 64) + 0x62B821756295C58D;
  for (const char16_t unit : text)
    for (const unsigned byte : {unit & 0xFFu, unsigned(unit >> 8)}) {
      hash ^= byte;
      hash *= PRIME;
    }
  return hexDigits(hash, 32);
}

/// The longest prefix that fits into this number of bytes, without splitting a character.
String firstBytes(const String& text, std::size_t bytes) {
  String first = text.substr(0, bytes);
  while (!first.empty() && (first.toUTF8().size() > bytes || U16_IS_LEAD(first.back())))
    first.pop_back();
  return first;
}

} // namespace

String fileNameFor(const String& code, std::size_t bytesBeside) {
  const std::size_t room = NAME_MAX - std::min<std::size_t>(bytesBeside, NAME_MAX);
  String name = escapedForFile(code);
  if (name.toUTF8().size() <= room)
    return name;
  // No escaped name contains "%~".
  const String tail = u"%~" + fingerprintOf(code);
  return firstBytes(name, room - std::min(room, tail.size())) + tail;
}

} // namespace Tallymoor
