#include "views/SharesSoldTreeItem.h"
#include "engine/SharePortfolioUser.h"
#include "engine/UnreadableDates.h"
#include "views/EventDates.h"
#include "views/NodeIcons.h"
#include "views/SharePortfolioTreeItem.h"
#include "views/SharesSoldTable.h"
#include "views/SoldShareCells.h"
#include "widgets/HandlerScope.h"
#include "xml/Leaves.h"

namespace Tallymoor {

FXIMPLEMENT_ABSTRACT(SharesSoldTreeItem, PortfolioTableTreeItem, nullptr, 0)

SharesSoldTreeItem::SharesSoldTreeItem(InvestmentTree* tree, SharePortfolioTreeItem* portfolioNode)
    : PortfolioTableTreeItem(tree, portfolioNode, portfolioNode, u"Shares Sold",
                             portfolioNode->icons().sharesSold) {
  buildPage();
  if (isSound())
    checkDates();
}

PortfolioTable* SharesSoldTreeItem::makeTable(FXComposite* frame) {
  return new SharesSoldTable(portfolio(), *portfolioNode(), frame, this);
}

std::vector<Column::Function> SharesSoldTreeItem::summedColumns() const {
  using namespace SoldShareCells;
  return {&grossProfit, &totalBrokerage, &netProfit, &grossSale, &grossCost};
}

void SharesSoldTreeItem::checkDates() const {
  const Date today = Date::realToday();
  const XMLElement& stocks = portfolio().portfolio().subElement(u"SoldShares");
  for (std::size_t i = 0; i < stocks.numSubElements(u"SoldShares"); ++i) {
    const XMLElement& stock = stocks.subElement(u"SoldShares", i);
    const String& code = textValue(stock, u"Code");
    for (std::size_t j = 0; j < stock.numSubElements(u"SellEvents"); ++j) {
      const XMLElement& sale = stock.subElement(u"SellEvents", j);
      if (isSetAside(sale, u"SellDate"))
        continue;
      const Date bought = dateValue(sale, u"BuyDate");
      const Date sold = dateValue(sale, u"SellDate");
      if (bought > today)
        tellOfWrongDate(portfolio(), u"buy date for sold share", code, u"in the future");
      if (sold > today)
        tellOfWrongDate(portfolio(), u"sell date for sold share", code, u"in the future");
      if (sold < bought)
        tellOfWrongDate(portfolio(), u"sell date for sold share", code, u"before its buy date");
    }
  }
}

FXint SharesSoldTreeItem::onRightClick(FXint, FXint) {
  return static_cast<FXint>(
      guardedHandler(u"SharesSoldTreeItem::onRightClick failed.", [this] { checkSound(); }));
}

} // namespace Tallymoor
