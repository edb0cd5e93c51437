#include "views/DividendsTreeItem.h"
#include "books/SharePortfolioUser.h"
#include "views/DividendCells.h"
#include "views/DividendsTable.h"
#include "views/NodeIcons.h"
#include "views/SharePortfolioTreeItem.h"
#include "widgets/ContextMenu.h"
#include "widgets/HandlerScope.h"
#include "widgets/InvestmentTree.h"
#include "xml/PortfolioRecords.h"

namespace Tallymoor {

FXDEFMAP(DividendsTreeItem)
DividendsTreeItemMap[] = {
    FXMAPFUNC(SEL_COMMAND, DividendsTreeItem::ID_RECEIVE_DIVIDENDS, DividendsTreeItem::onReceiveDividends),
};

FXIMPLEMENT_ABSTRACT(DividendsTreeItem, PortfolioTableTreeItem, DividendsTreeItemMap,
                     ARRAYNUMBER(DividendsTreeItemMap))

DividendsTreeItem::DividendsTreeItem(InvestmentTree* tree, SharePortfolioTreeItem* portfolioNode)
    : PortfolioTableTreeItem(tree, portfolioNode, portfolioNode, u"Dividends Received",
                             portfolioNode->icons().dividends) {
  checkDates();
}

PortfolioTable* DividendsTreeItem::makeTable(FXComposite* frame) {
  return new DividendsTable(portfolio(), *portfolioNode(), frame, this);
}

std::vector<Column::Function> DividendsTreeItem::summedColumns() const {
  return {&DividendCells::value, &DividendCells::frankingCreditOf};
}

std::vector<WrongDate> DividendsTreeItem::wrongDates() const {
  const Date today = Date::realToday();
  std::vector<WrongDate> wrong;
  for (const XMLDividendEvent& dividend : portfolio().portfolio().dividends())
    if (dividend.received() > today && !dividend.isSetAside())
      wrong.push_back({u"dividend for ", dividend.code(), u"in the future"});
  return wrong;
}

FXint DividendsTreeItem::onRightClick(FXint x, FXint y) {
  return static_cast<FXint>(guardedHandler(u"DividendsTreeItem::onRightClick failed.", [&] {
    if (!checkSound())
      return;
    ContextMenu menu(tree(), this);
    menu.addCommand(u"Receive a dividend...", ID_RECEIVE_DIVIDENDS);
    menu.run(x, y);
  }));
}

long DividendsTreeItem::onReceiveDividends(FXObject*, FXSelector, void*) {
  return guardedHandler(u"DividendsTreeItem::onReceiveDividends failed.", [this] {
    if (checkSound())
      portfolioNode()->receiveDividend();
  });
}

} // namespace Tallymoor
