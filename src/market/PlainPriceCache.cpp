#include "market/PlainPriceCache.h"
#include "foundation/Constants.h"
#include "xml/DocumentLimits.h"
#include <algorithm>
#include <charconv>
#include <string>

namespace Tallymoor {

namespace {

const std::string HEAD = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!DOCTYPE ShareValues SYSTEM \"" +
                         SHARE_CACHE_DTD.toUTF8() + "\">\n<ShareValues";

bool isPlain(char letter) {
  return letter >= ' ' && letter <= '~' && letter != '<' && letter != '>' && letter != '&';
}

bool isFigure(char letter) {
  return (letter >= '0' && letter <= '9') || letter == '.';
}

/// Walks through the document. Whatever is not as expected makes it fail for good.
class Walk {
public:
  explicit Walk(std::string_view document) : m_rest(document) {}

  bool failed() const { return m_failed; }
  void fail() { m_failed = true; }
  bool isAtEnd() const { return m_rest.empty(); }

  bool accept(std::string_view text) {
    if (!m_rest.starts_with(text))
      return false;
    m_rest.remove_prefix(text.size());
    return true;
  }
  void expect(std::string_view text) { m_failed |= !accept(text); }
  /// As far as the letters belong, at least one.
  template <class Belongs>
  std::string_view take(Belongs belongs) {
    const auto end = std::find_if_not(m_rest.begin(), m_rest.end(), belongs);
    const std::string_view taken = m_rest.substr(0, static_cast<std::size_t>(end - m_rest.begin()));
    m_failed |= taken.empty();
    m_rest.remove_prefix(taken.size());
    return taken;
  }
  /// A whole number without a sign or a zero before it.
  std::int32_t number(std::int32_t most) {
    std::int32_t value = 0;
    const auto read = std::from_chars(m_rest.data(), m_rest.data() + m_rest.size(), value);
    const auto length = static_cast<std::size_t>(read.ptr - m_rest.data());
    m_failed |=
        read.ec != std::errc() || value > most || m_rest[0] == '-' || (m_rest[0] == '0' && length > 1);
    m_rest.remove_prefix(length);
    return value;
  }
  double price() {
    expect("<Constant>");
    const std::string_view text = take(isFigure);
    double value = 0.0;
    const char* const end = text.data() + text.size();
    const auto read = std::from_chars(text.data(), end, value);
    m_failed |= read.ec != std::errc() || read.ptr != end;
    expect("</Constant>");
    return value;
  }

private:
  std::string_view m_rest;
  bool m_failed = false;
};

std::optional<PriceOrigin> originAttribute(Walk& walk) {
  if (!walk.accept(" Origin=\""))
    return std::nullopt;
  for (const NamedPriceOrigin& named : NAMED_PRICE_ORIGINS)
    if (walk.accept(named.asWritten)) {
      walk.expect("\"");
      return named.origin;
    }
  walk.fail();
  return std::nullopt;
}

/// A day that is in each month, or one of the last few that comes back the same.
std::optional<Date> readDay(Walk& walk) {
  constexpr int FIRST_YEAR = 1900, LAST_YEAR = 2199;
  walk.expect("<Date>");
  const std::int32_t day = walk.number(31);
  walk.expect("/");
  const std::int32_t month = walk.number(12);
  walk.expect("/");
  const std::int32_t year = walk.number(LAST_YEAR);
  walk.expect("</Date>");
  if (walk.failed() || day < 1 || month < 1 || year < FIRST_YEAR)
    return std::nullopt;
  const Date date(year, month, day);
  return day <= 28 || date.day() == day ? std::optional(date) : std::nullopt;
}

/// The rest of a row whose tag is open.
bool readRow(Walk& walk, std::map<Date, ShareValue>& rows) {
  const std::optional<PriceOrigin> origin = originAttribute(walk);
  walk.expect(">");
  const std::optional<Date> day = readDay(walk);
  ShareValue value;
  value.close = walk.price();
  value.high = walk.price();
  value.low = walk.price();
  walk.expect("<Constant>");
  value.volume = walk.number(std::numeric_limits<std::int32_t>::max());
  walk.expect("</Constant></ShareValue>");
  value.origin = origin.value_or(unnamedOrigin(value.volume));
  if (walk.failed() || !day)
    return false;
  rows.emplace_hint(rows.end(), *day, value);
  return true;
}

} // namespace

std::optional<PriceCacheFile> readPlainPriceCache(std::string_view document) {
  const DocumentLimits limits = DocumentLimits::of(u"ShareValues");
  if (document.size() > limits.bytes)
    return std::nullopt;
  Walk walk(document);
  PriceCacheFile file;
  walk.expect(HEAD);
  file.share.isBad = walk.accept(" IsBad=\"true\"");
  walk.expect("><String>");
  file.code = String::fromUTF8(walk.take(isPlain));
  walk.expect("</String>");
  for (std::size_t rows = 0; !walk.failed() && walk.accept("<ShareValue"); ++rows)
    if (rows == limits.siblings || !readRow(walk, file.share.values))
      return std::nullopt;
  walk.expect("</ShareValues>");
  return walk.failed() || !walk.isAtEnd() ? std::nullopt : std::optional(std::move(file));
}

} // namespace Tallymoor
