#include "xml/DocumentLimits.h"
#include <algorithm>

namespace Tallymoor {

namespace {

constexpr DocumentLimits DELIVERED{.bytes = 2 * DocumentLimits::MEGABYTE};
constexpr DocumentLimits PRICES{.bytes = 16 * DocumentLimits::MEGABYTE, .siblings = 65000};

constexpr std::u16string_view DELIVERED_ROOTS[] = {
    u"CurrentPriceLocators", u"CodeSearchLocators", u"HistoricalPricesLocators",
    u"PriceSource",          u"CountryOptions",     u"VersionsAvailable",
    u"Advertisement",        u"stylesheet"};

} // namespace

DocumentLimits DocumentLimits::of(std::u16string_view rootName) {
  if (rootName == u"ShareValues")
    return PRICES;
  const bool isDelivered = std::ranges::find(DELIVERED_ROOTS, rootName) != std::end(DELIVERED_ROOTS);
  return isDelivered ? DELIVERED : DocumentLimits();
}

String inMegabytes(std::size_t bytes) {
  return String::fromLong(static_cast<std::int64_t>(bytes / DocumentLimits::MEGABYTE)) + u" MB";
}

} // namespace Tallymoor
