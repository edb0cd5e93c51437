#include "views/WatchedCodes.h"
#include "market/TallymoorInternet.h"
#include "views/PriceLimits.h"
#include <map>

namespace Tallymoor {

namespace {

/// How many views want each code.
std::map<String, unsigned>& views() {
  static std::map<String, unsigned> counts;
  return counts;
}

void release(const String& code) {
  const auto found = views().find(code);
  if (--found->second > 0)
    return;
  views().erase(found);
  forgetLimitWarnings(code);
  if (TallymoorInternet::exists())
    TallymoorInternet::Instance().priceUpdater().removeCode(code);
}

} // namespace

WatchedCodes::~WatchedCodes() {
  for (const String& code : m_codes)
    release(code);
}

void WatchedCodes::watch(const std::set<String>& codes) {
  PriceUpdater& updater = TallymoorInternet::Instance().priceUpdater();
  // The new ones first: a code in both sets never leaves the updater, which would forget its price.
  for (const String& code : codes) {
    if (!m_codes.contains(code))
      ++views()[code];
    updater.addCode(code);
  }
  for (const String& code : m_codes)
    if (!codes.contains(code))
      release(code);
  m_codes = codes;
}

} // namespace Tallymoor
