#pragma once
#include "foundation/String.h"
#include "market/CachedShare.h"

namespace Tallymoor {

/// Of a price in the file: at most, as in the capital record. There are at least four.
inline constexpr int PRICE_CACHE_DECIMALS = 6;

/// What the file of a code holds.
struct PriceCacheFile {
  String code;
  CachedShare share;
};

/// Reads a price cache document. Prices after the real today, of a clock that was ahead, are dropped, but for
/// typed ones. Throws XMLException or Exception.
PriceCacheFile readPriceCache(const String& path);

/// True when the first rows of the file show that its code is not marked as delisted. False when it is, and
/// when all of the file must be read to know.
bool isSurelyListed(const String& path);

/// Replaces the file by a document of the share. Throws Exception.
void writePriceCache(const String& path, const String& code, const CachedShare& share);

} // namespace Tallymoor
