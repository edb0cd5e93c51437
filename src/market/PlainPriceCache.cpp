#include "market/PlainPriceCache.h"
#include "foundation/Constants.h"
#include "xml/DocumentLimits.h"
#include "xml/PlainDocument.h"
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

double readPrice(PlainDocument& document) {
  document.expect("<Constant>");
  const std::string_view text = document.take(isFigure);
  double value = 0.0;
  const char* const end = text.data() + text.size();
  const auto read = std::from_chars(text.data(), end, value);
  if (read.ec != std::errc() || read.ptr != end)
    document.fail();
  document.expect("</Constant>");
  return value;
}

std::optional<PriceOrigin> originAttribute(PlainDocument& walk) {
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

/// The code and its mark.
PriceCacheFile readHead(PlainDocument& walk) {
  PriceCacheFile file;
  walk.expect(HEAD);
  file.share.isBad = walk.accept(" IsBad=\"true\"");
  walk.expect("><String>");
  file.code = String::fromUTF8(walk.take(isPlain));
  walk.expect("</String>");
  return file;
}

/// The rest of a row whose tag is open.
bool readRow(PlainDocument& walk, std::map<Date, ShareValue>& rows) {
  const std::optional<PriceOrigin> origin = originAttribute(walk);
  walk.expect(">");
  const std::optional<Date> day = walk.dayElement();
  ShareValue value;
  value.close = readPrice(walk);
  value.high = readPrice(walk);
  value.low = readPrice(walk);
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

bool hasPlainRowsOfListed(std::string_view beginning) {
  PlainDocument walk(beginning);
  std::map<Date, ShareValue> rows;
  return !readHead(walk).share.isBad && walk.accept("<ShareValue") && readRow(walk, rows) &&
         walk.accept("<ShareValue") && readRow(walk, rows);
}

std::optional<PriceCacheFile> readPlainPriceCache(std::string_view document) {
  const DocumentLimits limits = DocumentLimits::of(u"ShareValues");
  if (document.size() > limits.bytes)
    return std::nullopt;
  PlainDocument walk(document);
  PriceCacheFile file = readHead(walk);
  for (std::size_t rows = 0; !walk.failed() && walk.accept("<ShareValue"); ++rows)
    if (rows == limits.siblings || !readRow(walk, file.share.values))
      return std::nullopt;
  walk.expect("</ShareValues>");
  return walk.failed() || !walk.isAtEnd() ? std::nullopt : std::optional(std::move(file));
}

} // namespace Tallymoor
