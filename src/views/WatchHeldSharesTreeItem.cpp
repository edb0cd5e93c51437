#include "views/WatchHeldSharesTreeItem.h"
#include "engine/SharePortfolioUser.h"
#include "views/WatchlistRootTreeItem.h"
#include "xml/Leaves.h"

namespace Tallymoor {

FXIMPLEMENT_ABSTRACT(WatchHeldSharesTreeItem, WatchlistTreeItem, nullptr, 0)

namespace {

template <class Test>
bool anyEvent(const XMLElement& stock, const char16_t* events, Test test) {
  for (std::size_t i = 0; i < stock.numSubElements(events); ++i)
    if (test(stock.subElement(events, i)))
      return true;
  return false;
}

bool isBoughtBy(const XMLElement& event, const Date& day) {
  return dateValue(event, u"BuyDate") <= day;
}

void addHeld(const XMLElement& portfolio, std::vector<String>& codes) {
  const Date shown;
  const XMLElement& held = portfolio.subElement(u"HeldShares");
  for (std::size_t i = 0; i < held.numSubElements(u"HeldShares"); ++i) {
    const XMLElement& share = held.subElement(u"HeldShares", i);
    if (anyEvent(share, u"BuyEvents", [&](const XMLElement& event) { return isBoughtBy(event, shown); }))
      codes.push_back(textValue(share, u"Code"));
  }
}

void addSoldSince(const XMLElement& portfolio, std::vector<String>& codes) {
  const Date shown;
  const XMLElement& sold = portfolio.subElement(u"SoldShares");
  const auto wasHeld = [&](const XMLElement& sale) {
    return isBoughtBy(sale, shown) && dateValue(sale, u"SellDate") > shown;
  };
  for (std::size_t i = 0; i < sold.numSubElements(u"SoldShares"); ++i) {
    const XMLElement& share = sold.subElement(u"SoldShares", i);
    if (anyEvent(share, u"SellEvents", wasHeld))
      codes.push_back(textValue(share, u"Code"));
  }
}

} // namespace

std::vector<String> codesHeld(const SharePortfolioUser& portfolio) {
  std::vector<String> codes;
  addHeld(portfolio.portfolio(), codes);
  if (Date::hasFixedDate())
    addSoldSince(portfolio.portfolio(), codes);
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
    table()->setCodes(codesHeld(*portfolio));
  WatchlistTreeItem::update();
}

FXint WatchHeldSharesTreeItem::onRightClick(FXint, FXint) {
  return 0;
}

} // namespace Tallymoor
