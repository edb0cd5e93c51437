#include "market/PriceCacheFile.h"
#include "foundation/Amounts.h"
#include "foundation/Constants.h"
#include "foundation/FileReplacement.h"
#include "foundation/Uninterrupted.h"
#include "market/PlainPriceCache.h"
#include "xml/DocumentLimits.h"
#include "xml/PriceCache.h"
#include <array>
#include <filesystem>

namespace Tallymoor {

namespace {

const String ORIGIN = u"Origin";
constexpr std::size_t BYTES_OF_TWO_ROWS = 1024; ///< with the head of the document

/// The bytes of the file; none of one that is longer than any that is accepted.
std::string contentOf(const String& path) {
  const std::string name = path.toUTF8();
  std::error_code unknown;
  const std::uintmax_t size = std::filesystem::file_size(name, unknown);
  if (unknown || size > DocumentLimits::of(u"ShareValues").bytes)
    return {};
  std::string content(static_cast<std::size_t>(size), '\0');
  std::ifstream file = openToRead(name);
  if (!file.read(content.data(), static_cast<std::streamsize>(size)))
    return {};
  return content;
}

PriceOrigin originOf(const XMLShareValue& row) {
  if (row.hasAttribute(ORIGIN))
    for (const NamedPriceOrigin& named : NAMED_PRICE_ORIGINS)
      if (row.attribute(ORIGIN) == String(named.name))
        return named.origin;
  return unnamedOrigin(row.volume());
}

PriceCacheFile readElements(const String& path) {
  XMLShareValues document;
  document.decode(path);
  PriceCacheFile file;
  file.code = textValue(document, u"Code");
  file.share.isBad = document.isBad();
  auto& rows = file.share.values;
  const std::size_t count = document.numSubElements(u"Values");
  for (std::size_t i = 0; i < count; ++i) {
    const auto& row = static_cast<const XMLShareValue&>(document.subElement(u"Values", i));
    rows.emplace_hint(rows.end(), row.date(),
                      ShareValue{row.close(), row.high(), row.low(), row.volume(), originOf(row)});
  }
  return file;
}

/// Of a clock that was ahead. It may as well be slow now, and what was typed can't be fetched again.
void dropFuture(CachedShare& share) {
  for (auto row = share.values.upper_bound(Date::realToday()); row != share.values.end();) {
    const bool stays = row->second.origin == PriceOrigin::Typed;
    share.modified |= !stays;
    row = stays ? std::next(row) : share.values.erase(row);
  }
}

/// A row without a price in it, alone in its file, is how delisted codes were marked before there was an
/// attribute.
void readOldDelistedMark(CachedShare& share) {
  if (share.values.size() != 1 || !showsAsZero(share.values.begin()->second.close))
    return;
  share.values.clear();
  share.isBad = true;
  share.modified = true;
}

String cachedPriceText(double price) {
  const String text = String::fromDouble(price, PRICE_CACHE_DECIMALS);
  return text.ends_with(u"00") ? String::fromDouble(price, 4) : text;
}

void setOrigin(XMLElement& row, const ShareValue& value) {
  if (value.origin == PriceOrigin::Source && value.volume != 0)
    return;
  for (const NamedPriceOrigin& named : NAMED_PRICE_ORIGINS)
    if (named.origin == value.origin)
      row.setAttribute(ORIGIN, String(named.name));
}

void addRow(XMLShareValues& document, const Date& day, const ShareValue& value) {
  XMLElement& row = document.addSubElement(XMLShareValue::create(), u"Values");
  setOrigin(row, value);
  row.subElement(u"Date").setValue(day.toString(DATE_DISPLAY_DMY));
  row.subElement(u"Close").setValue(cachedPriceText(value.close));
  row.subElement(u"High").setValue(cachedPriceText(value.high));
  row.subElement(u"Low").setValue(cachedPriceText(value.low));
  row.subElement(u"Volume").setValue(String::fromLong(value.volume));
}

} // namespace

PriceCacheFile readPriceCache(const String& path) {
  std::optional<PriceCacheFile> plain = readPlainPriceCache(contentOf(path));
  PriceCacheFile file = plain ? std::move(*plain) : readElements(path);
  dropFuture(file.share);
  readOldDelistedMark(file.share);
  return file;
}

bool isSurelyListed(const String& path) {
  if (filePresence(path) != FilePresence::RegularFile)
    return false;
  std::array<char, BYTES_OF_TWO_ROWS> head{};
  std::ifstream file = openToRead(path.toUTF8());
  file.read(head.data(), head.size());
  return hasPlainRowsOfListed({head.data(), static_cast<std::size_t>(file.gcount())});
}

void writePriceCache(const String& path, const String& code, const CachedShare& share) {
  XMLShareValues document;
  document.subElement(u"Code").setValue(code);
  if (share.isBad)
    document.setAttribute(u"IsBad", u"true");
  for (const auto& [day, value] : share.values)
    addRow(document, day, value);
  replaceFile(path,
              [&document](std::ostream& stream) { document.encodeWithDoctype(stream, SHARE_CACHE_DTD); });
}

} // namespace Tallymoor
