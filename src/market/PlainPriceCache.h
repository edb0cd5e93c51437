#pragma once
#include "market/PriceCacheFile.h"
#include <optional>
#include <string_view>

namespace Tallymoor {

/// Reads a price cache document that is in the very form in which this program writes it, ten times as fast
/// as by elements: the start of the program reads a file for each stock. Nothing for any other document, be
/// it good or bad, or longer than one that is accepted; those are read by elements.
std::optional<PriceCacheFile> readPlainPriceCache(std::string_view document);

/// True for the beginning of such a document if it has no mark of a delisted code and goes on with two rows:
/// a single one may be such a mark.
bool hasPlainRowsOfListed(std::string_view beginning);

/// How a row says where it came from. Rows of the data source with a volume say nothing, as they always did;
/// an earlier version ignores the attribute.
struct NamedPriceOrigin {
  PriceOrigin origin;
  std::u16string_view name;
  std::string_view asWritten;
};
inline constexpr NamedPriceOrigin NAMED_PRICE_ORIGINS[] = {{PriceOrigin::Source, u"source", "source"},
                                                           {PriceOrigin::Filled, u"filled", "filled"},
                                                           {PriceOrigin::Current, u"current", "current"},
                                                           {PriceOrigin::Typed, u"typed", "typed"}};

/// The origin of a row without the attribute.
constexpr PriceOrigin unnamedOrigin(std::int32_t volume) {
  return volume != 0 ? PriceOrigin::Source : PriceOrigin::Unknown;
}

} // namespace Tallymoor
