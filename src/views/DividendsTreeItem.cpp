#include "views/DividendsTreeItem.h"
#include "engine/SharePortfolioUser.h"
#include "engine/UnreadableDates.h"
#include "views/DividendCells.h"
#include "views/DividendsTable.h"
#include "views/EventDates.h"
#include "views/NodeIcons.h"
#include "views/SharePortfolioTreeItem.h"
#include "widgets/ContextMenu.h"
#include "widgets/HandlerScope.h"
#include "widgets/InvestmentTree.h"
#include "xml/Leaves.h"

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
  buildPage();
  if (isSound())
    checkDates();
}

PortfolioTable* DividendsTreeItem::makeTable(FXComposite* frame) {
  return new DividendsTable(portfolio(), *portfolioNode(), frame, this);
}

std::vector<Column::Function> DividendsTreeItem::summedColumns() const {
  return {&DividendCells::value, &DividendCells::frankingCreditOf};
}

void DividendsTreeItem::checkDates() const {
  const Date today = Date::realToday();
  const XMLElement& dividends = portfolio().portfolio().subElement(u"Dividends");
  for (std::size_t i = 0; i < dividends.numSubElements(u"DividendEvents"); ++i) {
    const XMLElement& dividend = dividends.subElement(u"DividendEvents", i);
    if (dateValue(dividend, u"ReceiveDate") > today && !isSetAside(dividend, u"ReceiveDate"))
      tellOfWrongDate(portfolio(), u"dividend for ", textValue(dividend, u"Code"), u"in the future");
  }
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
