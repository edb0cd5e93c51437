#include "views/WatchHeldSharesTreeItem.h"
#include "books/SharePortfolioUser.h"
#include "views/WatchlistRootTreeItem.h"
#include "xml/PortfolioRecords.h"
#include <algorithm>

namespace Tallymoor {

FXIMPLEMENT_ABSTRACT(WatchHeldSharesTreeItem, WatchlistTreeItem, nullptr, 0)

namespace {

bool isHeldOn(const XMLBuyEvent& parcel, const Date& day) {
  return parcel.bought() <= day;
}

bool isHeldOn(const XMLSellEvent& sale, const Date& day) {
  return sale.bought() <= day && sale.sold() > day;
}

template <class Parcel>
bool anyHeldOn(const ElementList<Parcel>& parcels, const Date& day) {
  return std::any_of(parcels.begin(), parcels.end(),
                     [&day](const Parcel& parcel) { return isHeldOn(parcel, day); });
}

} // namespace

std::vector<String> codesHeld(const SharePortfolioUser& portfolio) {
  std::vector<String> codes;
  const Date shown;
  for (const XMLHeldShare& stock : portfolio.portfolio().heldShares())
    if (anyHeldOn(stock.parcels(), shown))
      codes.push_back(stock.code());
  if (Date::hasFixedDate())
    for (const XMLSoldShare& stock : portfolio.portfolio().soldShares())
      if (anyHeldOn(stock.sales(), shown))
        codes.push_back(stock.code());
  if (portfolio.hasComparisonIndex())
    codes.push_back(portfolio.comparisonIndex());
  return codes;
}

WatchHeldSharesTreeItem::WatchHeldSharesTreeItem(WatchlistRootTreeItem& root,
                                                 const SharePortfolioUser& portfolio)
    : WatchlistTreeItem(root, portfolio.name(), codesHeld(portfolio)) {}

void WatchHeldSharesTreeItem::update() {
  if (!isSound())
    return;
  if (const SharePortfolioUser* portfolio = root().portfolio(name()))
    setCodes(codesHeld(*portfolio));
  WatchlistTreeItem::update();
}

FXint WatchHeldSharesTreeItem::onRightClick(FXint, FXint) {
  return 0;
}

} // namespace Tallymoor
