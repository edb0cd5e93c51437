#include "market/AnswerText.h"
#include <unicode/ucnv.h>
#include <unicode/unistr.h>
#include <unicode/utf8.h>

namespace Tallymoor {

namespace {

bool isUtf8(std::string_view bytes) {
  const auto* const data = reinterpret_cast<const std::uint8_t*>(bytes.data());
  const auto size = static_cast<int32_t>(bytes.size());
  for (int32_t at = 0; at < size;) {
    UChar32 character = 0;
    U8_NEXT(data, at, size, character);
    if (character < 0)
      return false;
  }
  return true;
}

std::string converted(std::string_view bytes, const char* encoding) {
  std::string text;
  icu::UnicodeString(bytes.data(), static_cast<int32_t>(bytes.size()), encoding).toUTF8String(text);
  return text;
}

bool isKnown(const std::string& encoding) {
  UErrorCode error = U_ZERO_ERROR;
  UConverter* const converter = ucnv_open(encoding.c_str(), &error);
  if (U_FAILURE(error))
    return false;
  ucnv_close(converter);
  return true;
}

} // namespace

std::string utf8Of(std::string_view bytes, const String& encoding) {
  if (bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF"))
    return converted(bytes, "UTF-16");
  if (isUtf8(bytes))
    return std::string(bytes);
  const std::string named = encoding.toLatin1();
  const bool isUsable = !named.empty() && isKnown(named) && encoding.toLower() != String(u"utf-8");
  return converted(bytes, isUsable ? named.c_str() : "windows-1252");
}

String encodingIn(std::string_view contentType) {
  const String text = String::fromUTF8(contentType).toLower();
  constexpr std::u16string_view MARK = u"charset=";
  const std::size_t at = text.find(MARK);
  if (at == String::npos)
    return {};
  const String rest = text.substr(at + MARK.size());
  const std::size_t from = rest.startsWith(u"\"") ? 1 : 0;
  return rest.substr(from, rest.find_first_of(u"\"; ", from) - from);
}

} // namespace Tallymoor
