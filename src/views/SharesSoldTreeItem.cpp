#include "views/SharesSoldTreeItem.h"
#include "books/SharePortfolioUser.h"
#include "views/NodeIcons.h"
#include "views/SharePortfolioTreeItem.h"
#include "views/SharesSoldTable.h"
#include "views/SoldShareCells.h"
#include "widgets/HandlerScope.h"
#include "xml/PortfolioRecords.h"

namespace Tallymoor {

FXIMPLEMENT_ABSTRACT(SharesSoldTreeItem, PortfolioTableTreeItem, nullptr, 0)

SharesSoldTreeItem::SharesSoldTreeItem(InvestmentTree* tree, SharePortfolioTreeItem* portfolioNode)
    : PortfolioTableTreeItem(tree, portfolioNode, portfolioNode, u"Shares Sold",
                             portfolioNode->icons().sharesSold) {
  checkDates();
}

PortfolioTable* SharesSoldTreeItem::makeTable(FXComposite* frame) {
  return new SharesSoldTable(portfolio(), *portfolioNode(), frame, this);
}

std::vector<Column::Function> SharesSoldTreeItem::summedColumns() const {
  using namespace SoldShareCells;
  return {&grossProfit, &totalBrokerage, &netProfit, &grossSale, &grossCost};
}

std::vector<WrongDate> SharesSoldTreeItem::wrongDates() const {
  const Date today = Date::realToday();
  std::vector<WrongDate> wrong;
  for (const XMLSoldShare& stock : portfolio().portfolio().soldShares())
    for (const XMLSellEvent& sale : stock.sales()) {
      if (sale.isSetAside())
        continue;
      const Date bought = sale.bought();
      const Date sold = sale.sold();
      if (bought > today)
        wrong.push_back({u"buy date for sold share", stock.code(), u"in the future"});
      if (sold > today)
        wrong.push_back({u"sell date for sold share", stock.code(), u"in the future"});
      if (sold < bought)
        wrong.push_back({u"sell date for sold share", stock.code(), u"before its buy date"});
    }
  return wrong;
}

FXint SharesSoldTreeItem::onRightClick(FXint, FXint) {
  return static_cast<FXint>(
      guardedHandler(u"SharesSoldTreeItem::onRightClick failed.", [this] { checkSound(); }));
}

} // namespace Tallymoor
