#include "views/HeldShareBasis.h"
#include "books/SharePortfolioUser.h"
#include "foundation/RunTimeSettings.h"
#include "foundation/Settings.h"
#include "market/TallymoorInternet.h"
#include "xml/PortfolioRecords.h"

namespace Tallymoor {

HeldShareBases::HeldShareBases(SharePortfolioUser& portfolio)
    : m_common{.prices = TallymoorInternet::Instance().changeStamp(),
               .settings = Settings::Instance().changeStamp(),
               .hasAutomaticLimits = autoMinMaxPrices} {
  // Where a code stands twice, the books know the first one.
  for (XMLHeldShare& share : portfolio.portfolio().heldShares())
    m_stocks.try_emplace(share.code(), Stock{&share, 0});
  for (const XMLSoldShare& share : portfolio.portfolio().soldShares())
    if (std::uint64_t& sales = m_stocks[share.code()].sales; sales == 0)
      sales = share.changeStamp();
}

XMLHeldShare* HeldShareBases::heldShare(const String& code) const {
  const auto stock = m_stocks.find(code);
  return stock == m_stocks.end() ? nullptr : stock->second.held;
}

std::optional<HeldShareBasis> HeldShareBases::of(const String& code, double number,
                                                 PriceStanding standing) const {
  const auto stock = m_stocks.find(code);
  if (Date::hasFixedDate() || stock == m_stocks.end() || !stock->second.held)
    return std::nullopt;
  HeldShareBasis basis = m_common;
  basis.number = number;
  basis.standing = standing;
  basis.purchases = stock->second.held->changeStamp();
  basis.sales = stock->second.sales;
  return basis;
}

} // namespace Tallymoor
