#include "market/AddressTemplate.h"
#include "foundation/Exception.h"
#include "foundation/IcuText.h"
#include "market/PercentEncoding.h"
#include "market/StockCode.h"
#include <algorithm>
#include <unicode/gregocal.h>
#include <unicode/smpdtfmt.h>
#include <unicode/timezone.h>

namespace Tallymoor {

namespace {

constexpr std::int64_t SECONDS_A_DAY = std::int64_t{24} * 60 * 60;
constexpr std::int64_t MILLISECONDS = 1000;

/// RFC 3986's unreserved characters stay.
bool mustBeEncoded(unsigned char byte) {
  const bool isPlain = (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') ||
                       (byte >= '0' && byte <= '9') || byte == '-' || byte == '.' || byte == '_' ||
                       byte == '~';
  return !isPlain;
}

std::int64_t daysSince1970(const Date& day) {
  static const Date EPOCH(1970, 1, 1);
  return static_cast<std::int64_t>(day.julianDay()) - static_cast<std::int64_t>(EPOCH.julianDay());
}

String encoded(const String& value) {
  return String::fromUTF8(percentEncoded(value.toUTF8(), mustBeEncoded));
}

icu::UnicodeString toIcu(const String& text) {
  return {text.data(), static_cast<int32_t>(text.size())};
}

String byPattern(const Date& day, const String& pattern) {
  if (pattern == u"days")
    return String::fromLong(daysSince1970(day));
  if (pattern == u"unixtime")
    return String::fromLong(daysSince1970(day) * SECONDS_A_DAY);
  if (pattern == u"milliseconds")
    return String::fromLong(daysSince1970(day) * SECONDS_A_DAY * MILLISECONDS);
  UErrorCode error = U_ZERO_ERROR;
  icu::SimpleDateFormat format(toIcu(pattern), icu::Locale("en"), error);
  format.setTimeZone(*icu::TimeZone::getGMT());
  icu::UnicodeString text;
  format.format(static_cast<UDate>(daysSince1970(day)) * static_cast<UDate>(SECONDS_A_DAY * MILLISECONDS),
                text);
  return fromIcu(text);
}

[[noreturn]] void fail(const String& address, const String& cause) {
  throw Exception(u"The address " + address + u" " + cause);
}

} // namespace

AddressTemplate::AddressTemplate(const String& text) {
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t open = std::min(text.find(u'{', at), text.size());
    const String literal = text.substr(at, open - at);
    if (literal.contains(u"}"))
      fail(text, u"has a \"}\" without its \"{\"");
    if (!literal.empty())
      m_parts.push_back({Variable::None, literal});
    if (open == text.size())
      break;
    const std::size_t close = text.find(u'}', open);
    if (close == String::npos)
      fail(text, u"has a \"{\" without its \"}\"");
    m_parts.push_back(partOf(text.substr(open + 1, close - open - 1), text));
    at = close + 1;
  }
}

String AddressTemplate::server() const {
  const String start = m_parts.empty() ? String() : m_parts.front().text;
  const bool isLiteral = !m_parts.empty() && m_parts.front().variable == Variable::None;
  for (const std::u16string_view scheme : {u"https://", u"http://"})
    if (isLiteral && start.startsWith(String(String::Base(scheme))))
      if (const std::size_t path = start.find(u'/', scheme.size());
          path != String::npos && path > scheme.size())
        return start.substr(0, path);
  fail(start, u"does not begin with a server, as \"https://host/\"");
}

AddressTemplate::Part AddressTemplate::partOf(const String& inBraces, const String& whole) {
  const std::size_t colon = std::min(inBraces.find(u':'), inBraces.size());
  const String name = inBraces.substr(0, colon);
  const String detail = colon < inBraces.size() ? inBraces.substr(colon + 1) : String();
  if (name == u"FROM" && !detail.empty())
    return {Variable::From, detail};
  if (name == u"TO" && !detail.empty())
    return {Variable::To, detail};
  if (inBraces == u"CODE")
    return {Variable::Code, {}};
  if (inBraces == u"CODE:stem")
    return {Variable::CodeStem, {}};
  if (inBraces == u"CODE:suffix")
    return {Variable::CodeSuffix, {}};
  if (inBraces == u"TEXT")
    return {Variable::Text, {}};
  if (inBraces == u"PAGE")
    return {Variable::Page, {}};
  if (inBraces == u"KEY")
    return {Variable::Key, {}};
  fail(whole, u"has an unknown variable: {" + inBraces + u"}");
}

String AddressTemplate::valueOf(const Part& part, const AddressValues& values) {
  switch (part.variable) {
  case Variable::Code:
    return values.code;
  case Variable::CodeStem:
    return StockCode(values.code).base();
  case Variable::CodeSuffix:
    return StockCode(values.code).suffix();
  case Variable::Text:
    return values.text;
  case Variable::From:
    return byPattern(values.first, part.text);
  case Variable::To:
    return byPattern(values.last, part.text);
  case Variable::Page:
    return String::fromLong(static_cast<std::int64_t>(values.page));
  case Variable::Key:
    return values.key;
  default:
    return part.text;
  }
}

template <typename Encode>
String AddressTemplate::joined(const AddressValues& values, Encode encode) const {
  String text;
  for (const Part& part : m_parts)
    text += part.variable == Variable::None ? part.text : encode(part.variable, valueOf(part, values));
  return text;
}

String AddressTemplate::fill(const AddressValues& values) const {
  return joined(values, [](Variable, const String& value) { return encoded(value); });
}

String AddressTemplate::fillForShow(const AddressValues& values) const {
  return joined(values, [](Variable variable, const String& value) {
    return variable == Variable::Key ? String(u"(key)") : encoded(value);
  });
}

String AddressTemplate::fillPlainly(const AddressValues& values) const {
  return joined(values, [](Variable, const String& value) { return value; });
}

bool AddressTemplate::uses(Variable variable) const {
  return std::any_of(m_parts.begin(), m_parts.end(),
                     [variable](const Part& part) { return part.variable == variable; });
}

bool AddressTemplate::usesKey() const {
  return uses(Variable::Key);
}

bool AddressTemplate::usesRange() const {
  return uses(Variable::From) || uses(Variable::To);
}

bool AddressTemplate::usesPage() const {
  return uses(Variable::Page);
}

} // namespace Tallymoor
