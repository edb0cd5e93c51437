#include "shell/TrayTip.h"
#include "books/SharePortfolioUser.h"
#include "market/PriceStatus.h"
#include "market/TallymoorInternet.h"
#include "views/IndexFigures.h"
#include "views/SharePortfolioTreeItem.h"
#include "views/TotalCapTreeItem.h"

namespace Tallymoor {

namespace {

String tipOf(const SharePortfolioTreeItem& node, double change) {
  return node.portfolio().name() + u" : " + (change >= 0.0 ? u"+" : u"") + String::toPercent(change) + u" (" +
         node.indexFigures().gainToday() + u")";
}

/// Behind each figure that stands on prices of the sample market.
String madeUpRemark() {
  return TallymoorInternet::Instance().priceStatus().isSampleMarket() ? String(u" (made-up prices)")
                                                                      : String();
}

} // namespace

std::optional<String> trayTip(const TotalCapTreeItem& totalCapital, const String& format) {
  if (Date::hasFixedDate())
    return std::nullopt;
  double total = 0.0, weighted = 0.0;
  std::optional<String> tip;
  for (const SharePortfolioTreeItem* node : totalCapital.portfolioNodes()) {
    const SharePortfolioUser& portfolio = node->portfolio();
    if (!node->hasRecordOfToday())
      return std::nullopt;
    const double capital = portfolio.sharesValueToday() + portfolio.cashReserveToday();
    const double change = portfolio.dailyGain();
    total += capital;
    weighted += capital * change;
    if (portfolio.name() == format)
      tip = tipOf(*node, change);
  }
  if (!tip)
    tip = String(u"Total Capital today: ") + String::toPercent(total != 0.0 ? weighted / total : 0.0);
  return *tip + madeUpRemark();
}

} // namespace Tallymoor
