#include "workbench/AddressProposal.h"
#include "market/PercentEncoding.h"
#include <algorithm>
#include <array>

namespace Tallymoor {

namespace {

/// How a day may stand in an address: a shape in which "0" is any digit, and the variable's value.
struct DayShape {
  std::u16string_view shape;
  const char16_t* value;
};
constexpr std::array DAY_SHAPES{DayShape{u"0000-00-00", u"yyyy-MM-dd"},
                                DayShape{u"0000000000000", u"milliseconds"},
                                DayShape{u"0000000000", u"unixtime"}, DayShape{u"00000000", u"yyyyMMdd"}};

bool isDigit(char16_t unit) {
  return unit >= u'0' && unit <= u'9';
}

/// True when the shape stands at the place, with no digit before and behind it.
bool standsAt(const String& address, std::size_t at, std::u16string_view shape) {
  if (address.size() - at < shape.size() || (at > 0 && isDigit(address[at - 1])) ||
      (at + shape.size() < address.size() && isDigit(address[at + shape.size()])))
    return false;
  return std::equal(
      shape.begin(), shape.end(), address.begin() + static_cast<std::ptrdiff_t>(at),
      [](char16_t wanted, char16_t unit) { return wanted == u'0' ? isDigit(unit) : wanted == unit; });
}

bool isLetterOrDigit(char16_t unit) {
  return isDigit(unit) || (unit >= u'a' && unit <= u'z') || (unit >= u'A' && unit <= u'Z');
}

/// Replaces the value where it stands by itself, not as a part of a word; both as it is and percent-encoded.
String replacedValue(const String& text, const String& value, const String& by) {
  const String encoded =
      String(percentEncoded(value.toUTF8(), [](unsigned char byte) {
               return !isLetterOrDigit(byte) &&
                      std::string_view("-._~").find(static_cast<char>(byte)) == std::string_view::npos;
             }).c_str());
  String result;
  for (std::size_t at = 0; at < text.size();) {
    const bool isPlain = text.compare(at, value.size(), value) == 0;
    const std::size_t size = isPlain ? value.size() : encoded.size();
    const std::size_t end = at + size;
    const bool stands = !value.empty() && (isPlain || text.compare(at, size, encoded) == 0) &&
                        (at == 0 || !isLetterOrDigit(text[at - 1])) &&
                        (end >= text.size() || !isLetterOrDigit(text[end]));
    result += stands ? by : text.substr(at, 1);
    at = stands ? end : at + 1;
  }
  return result;
}

/// A day in the query or path, not one in the name of the server.
String withRange(const String& address) {
  const std::array VARIABLES{u"{FROM:", u"{TO:"};
  String result;
  std::size_t next = 0;
  for (std::size_t at = 0; at < address.size();) {
    const auto found = std::find_if(DAY_SHAPES.begin(), DAY_SHAPES.end(),
                                    [&](const DayShape& day) { return standsAt(address, at, day.shape); });
    if (next == VARIABLES.size() || found == DAY_SHAPES.end()) {
      result += address[at++];
      continue;
    }
    result += String(VARIABLES[next++]) + found->value + u"}";
    at += found->shape.size();
  }
  return result;
}

} // namespace

String proposeAddress(const String& address, const String& code, const String& key, bool hasRange) {
  const std::size_t scheme = address.find(u"://");
  const std::size_t path =
      scheme == String::npos ? 0 : std::min(address.find(u'/', scheme + 3), address.size());
  const String server = address.substr(0, path);
  String rest = address.substr(path);
  const String whole = replacedValue(rest, code, u"{CODE}");
  rest = whole == rest ? replacedValue(rest, code.substr(0, code.rfind(u'.')), u"{CODE:stem}") : whole;
  rest = replacedValue(rest, key, u"{KEY}");
  if (hasRange)
    rest = withRange(rest);
  return server + rest;
}

String addressForShow(const String& address, const String& key) {
  return replacedValue(address, key, u"(key)");
}

} // namespace Tallymoor
