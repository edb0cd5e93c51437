#include "views/CashReserveTreeItem.h"
#include "books/SharePortfolioUser.h"
#include "foundation/Platform.h"
#include "views/CashReserveTable.h"
#include "views/NodeIcons.h"
#include "views/SharePortfolioTreeItem.h"
#include "widgets/ContextMenu.h"
#include "widgets/HandlerScope.h"
#include "widgets/InvestmentTree.h"
#include "widgets/ToolkitText.h"
#include "xml/CountryOfResidence.h"
#include "xml/PortfolioRecords.h"

namespace Tallymoor {

FXDEFMAP(CashReserveTreeItem)
CashReserveTreeItemMap[] = {
    FXMAPFUNC(SEL_COMMAND, CashReserveTreeItem::ID_DEPOSIT, CashReserveTreeItem::onDeposit),
    FXMAPFUNC(SEL_COMMAND, CashReserveTreeItem::ID_WITHDRAW, CashReserveTreeItem::onWithdraw),
    FXMAPFUNC(SEL_COMMAND, CashReserveTreeItem::ID_INTEREST, CashReserveTreeItem::onInterest),
    FXMAPFUNC(SEL_COMMAND, CashReserveTreeItem::ID_FEE, CashReserveTreeItem::onFee),
};

FXIMPLEMENT_ABSTRACT(CashReserveTreeItem, PortfolioTableTreeItem, CashReserveTreeItemMap,
                     ARRAYNUMBER(CashReserveTreeItemMap))

CashReserveTreeItem::CashReserveTreeItem(InvestmentTree* tree, SharePortfolioTreeItem* portfolioNode)
    : PortfolioTableTreeItem(tree, portfolioNode, portfolioNode, u"Cash Reserve",
                             portfolioNode->icons().cashReserve) {
  checkDates();
}

PortfolioTable* CashReserveTreeItem::makeTable(FXComposite* frame) {
  return new CashReserveTable(portfolio(), *portfolioNode(), frame, this);
}

void CashReserveTreeItem::buildFooter() {
  auto* frame = new FXVerticalFrame(page(), LAYOUT_FILL_X | FRAME_SUNKEN, 0, 0, 0, 0, 8, 8, 6, 6, 4, 4);
  m_availableLabel = new FXLabel(frame, FXString(), nullptr, JUSTIFY_LEFT, 0, 0, 0, 0, 0, 0, 0, 0);
  m_interestLabel = new FXLabel(frame, FXString(), nullptr, JUSTIFY_LEFT, 0, 0, 0, 0, 0, 0, 0, 0);
}

// The blanks are part of the texts.
void CashReserveTreeItem::showTotals() {
  Platform& platform = Platform::Instance();
  m_availableLabel->setText(
      toFox(u"Total available cash reserve:    " + platform.currencyFormat(portfolio().cashReserveToday())));
  m_interestLabel->setText(
      toFox(u"Total interest this FY:          " + platform.currencyFormat(interestOfFinancialYear())));
}

double CashReserveTreeItem::interestOfFinancialYear() const {
  const Date today;
  // What came after a day in the past that is looked at is not shown in the table either.
  const Date last = Date::hasFixedDate() ? today : XMLDate::farOff();
  return portfolio().interestBetween(CountryOfResidence::Instance().financialYearOf(today), last);
}

std::vector<WrongDate> CashReserveTreeItem::wrongDates() const {
  const Date today = Date::realToday();
  std::vector<WrongDate> wrong;
  for (const XMLCashEvent& event : portfolio().portfolio().cashEvents())
    if (event.day() > today && !event.isSetAside()) // which has been told of
      wrong.push_back({u"cash transaction", event.description(), u"in the future"});
  return wrong;
}

FXint CashReserveTreeItem::onRightClick(FXint x, FXint y) {
  return static_cast<FXint>(guardedHandler(u"CashReserveTreeItem::onRightClick failed.", [&] {
    if (!checkSound())
      return;
    ContextMenu menu(tree(), this);
    menu.addCommand(u"Deposit cash...", ID_DEPOSIT);
    menu.addCommand(u"Withdraw cash...", ID_WITHDRAW);
    menu.addCommand(u"Receive Interest...", ID_INTEREST);
    menu.addCommand(u"Pay account fee...", ID_FEE);
    menu.run(x, y);
  }));
}

long CashReserveTreeItem::handleCommand(const String& context, Operation operation) {
  return guardedHandler(context, [&] {
    if (checkSound())
      (portfolioNode()->*operation)();
  });
}

long CashReserveTreeItem::onDeposit(FXObject*, FXSelector, void*) {
  return handleCommand(u"CashReserveTreeItem::onDeposit failed.", &SharePortfolioTreeItem::depositCash);
}

long CashReserveTreeItem::onWithdraw(FXObject*, FXSelector, void*) {
  return handleCommand(u"CashReserveTreeItem::onWithdraw failed.", &SharePortfolioTreeItem::withdrawCash);
}

long CashReserveTreeItem::onInterest(FXObject*, FXSelector, void*) {
  return handleCommand(u"CashReserveTreeItem::onInterest failed.", &SharePortfolioTreeItem::receiveInterest);
}

long CashReserveTreeItem::onFee(FXObject*, FXSelector, void*) {
  return handleCommand(u"CashReserveTreeItem::onFee failed.", &SharePortfolioTreeItem::payAccountFee);
}

} // namespace Tallymoor
