#include "views/UnseenStocks.h"
#include "foundation/Date.h"
#include "foundation/Exception.h"
#include "views/PriceLimits.h"
#include <utility>

namespace Tallymoor {

UnseenStocks::UnseenStocks(FX::FXApp* app, LimitsOf limitsOf, PriceOf priceOf)
    : m_limitsOf(std::move(limitsOf)), m_priceOf(std::move(priceOf)),
      m_prices(app, u"UnseenStocks::check failed.", [this](const std::set<String>& codes) { check(codes); }) {
}

void UnseenStocks::watch(const std::set<String>& codes) {
  if (Date::hasFixedDate())
    return; // those of today stay watched
  m_codes = codes;
  m_unchecked = codes;
  m_watchedCodes.watch(codes);
}

void UnseenStocks::recheck(const std::set<String>& codes) {
  for (const String& code : codes)
    if (m_codes.contains(code))
      m_unchecked.insert(code);
}

bool UnseenStocks::checkNext() {
  if (m_unchecked.empty())
    return false;
  const auto next = m_unchecked.extract(m_unchecked.begin());
  check({next.value()});
  return true;
}

void UnseenStocks::checkAll() {
  while (checkNext()) {
  }
}

/// Without limits no price is asked for.
void UnseenStocks::check(const std::set<String>& codes) const {
  if (Date::hasFixedDate())
    return; // a price of the past is no news
  for (const String& code : codes) {
    if (!m_codes.contains(code))
      continue;
    try {
      const PriceLimits limits = m_limitsOf(code);
      if (limits.areNone())
        forgetLimitWarnings(code);
      else
        warnOfLimits(code, limits, m_priceOf(code));
    } catch (const Exception&) {
      // The table will tell of the price that is missing; no limit is known to be left.
    }
  }
}

} // namespace Tallymoor
