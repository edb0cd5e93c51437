#include "views/SharesHeldTreeItem.h"
#include "engine/SharePortfolioUser.h"
#include "foundation/Platform.h"
#include "views/HeldShareCells.h"
#include "views/ShareHeldTable.h"
#include "views/SharePortfolioTreeItem.h"
#include "views/SharesHeldTable.h"
#include "views/TotalCapTreeItem.h"
#include "views/TotalsBar.h"
#include "views/TreeState.h"
#include "widgets/ContextMenu.h"
#include "widgets/HandlerScope.h"
#include "widgets/InvestmentTree.h"
#include "xml/Leaves.h"
#include <algorithm>

namespace Tallymoor {

FXDEFMAP(SharesHeldTreeItem)
SharesHeldTreeItemMap[] = {
    FXMAPFUNC(SEL_COMMAND, SharesHeldTreeItem::ID_BUY_SHARES, SharesHeldTreeItem::onBuyShares),
    FXMAPFUNC(SEL_COMMAND, SharesHeldTreeItem::ID_ADD_SHARES, SharesHeldTreeItem::onAddShares),
    FXMAPFUNC(SEL_COMMAND, SharesHeldTreeItem::ID_REMOVE_SHARES, SharesHeldTreeItem::onRemoveShares),
};

FXIMPLEMENT_ABSTRACT(SharesHeldTreeItem, InvestmentTreeItem, SharesHeldTreeItemMap,
                     ARRAYNUMBER(SharesHeldTreeItemMap))

namespace {

using namespace HeldShareCells;

/// The totals that are plain sums of money.
const Column::Function SUMMED[] = {&purchaseValue, &currentValue, &dayGain, &grossGain};

} // namespace

SharesHeldTreeItem::SharesHeldTreeItem(InvestmentTree* tree, SharePortfolioTreeItem* portfolioNode)
    : InvestmentTreeItem(tree, portfolioNode, u"Shares Held", portfolioNode->icons().sharesHeld,
                         portfolioNode->icons().sharesHeld),
      m_portfolioNode(portfolioNode) {
  buildPage();
  updateChildren();
}

SharesHeldTreeItem::SharesHeldTreeItem(InvestmentTree* tree, SharesHeldTreeItem* sharesHeld,
                                       const String& code)
    : InvestmentTreeItem(tree, sharesHeld, code + u" Purchases", nullptr, nullptr),
      m_portfolioNode(sharesHeld->m_portfolioNode), m_code(code) {
  buildPage();
}

SharesHeldTreeItem::~SharesHeldTreeItem() {
  HandlerScope::forget(this);
}

void SharesHeldTreeItem::buildPage() {
  buildView([this] {
    auto* frame = new FXVerticalFrame(page(), LAYOUT_FILL_X | LAYOUT_FILL_Y | FRAME_SUNKEN, 0, 0, 0, 0, 4, 4,
                                      4, 4, 4, 4);
    if (isPurchases())
      m_table = new ShareHeldTable(portfolio(), m_code, *m_portfolioNode, frame, this);
    else
      m_table = new SharesHeldTable(portfolio(), *m_portfolioNode, frame, this);
    m_totalsBar = new TotalsBar(page(), m_table);
    m_table->setTotalsBar(m_totalsBar);
    tableChanged(true);
    page()->create();
  });
  if (!page()) {
    m_table = nullptr;
    m_totalsBar = nullptr;
  }
}

SharePortfolioUser& SharesHeldTreeItem::portfolio() const {
  return m_portfolioNode->portfolio();
}

void SharesHeldTreeItem::update() {
  if (!isPurchases())
    HandlerScope::whenDone(this, [this] { updateChildren(); });
  if (isSound())
    m_table->updateTable();
}

FXint SharesHeldTreeItem::onLeftClick(FXint x, FXint y) {
  if (isSound())
    m_portfolioNode->makeRecordCurrent();
  return InvestmentTreeItem::onLeftClick(x, y);
}

std::vector<String> SharesHeldTreeItem::codesToShow() const {
  std::vector<String> codes;
  if (Date::hasFixedDate())
    return codes;
  const XMLElement& held = portfolio().portfolio().subElement(u"HeldShares");
  for (std::size_t i = 0; i < held.numSubElements(u"HeldShares"); ++i)
    codes.push_back(textValue(held.subElement(u"HeldShares", i), u"Code"));
  std::sort(codes.begin(), codes.end());
  return codes;
}

void SharesHeldTreeItem::updateChildren() {
  const std::vector<String> codes = codesToShow();
  std::vector<String> shown;
  for (TreeViewItem* child = firstChild(); child; child = child->nextSibling())
    shown.push_back(static_cast<SharesHeldTreeItem*>(child)->code());
  if (codes == shown)
    return;
  const TreeState state(*investmentTree());
  while (TreeViewItem* child = firstChild())
    tree()->removeItem(child);
  for (const String& code : codes)
    new SharesHeldTreeItem(investmentTree(), this, code);
  state.restore();
}

void SharesHeldTreeItem::recordsChanged() {
  if (m_table)
    m_table->recordsChanged();
  for (TreeViewItem* child = firstChild(); child; child = child->nextSibling())
    static_cast<SharesHeldTreeItem*>(child)->recordsChanged();
}

void SharesHeldTreeItem::tableChanged(bool rebuilt) {
  if (!isSound() || !m_table || !m_totalsBar)
    return;
  if (rebuilt)
    buildTotals();
  showTotals();
}

void SharesHeldTreeItem::buildTotals() {
  std::vector<Column::Function> functions(std::begin(SUMMED), std::end(SUMMED));
  if (!isPurchases())
    functions.push_back(&portfolioPercent);
  functions.push_back(&dayPercent);
  m_totalsBar->showColumns(functions);
}

void SharesHeldTreeItem::showTotals() {
  for (const Column::Function function : SUMMED)
    m_totalsBar->setTotal(function, Platform::Instance().currencyFormat(m_table->sumColumn(function)));
  if (!isPurchases())
    m_totalsBar->setTotal(&portfolioPercent, String::toPercent(m_table->sumColumn(&portfolioPercent)));
  m_totalsBar->setTotal(&dayPercent, String::toPercent(m_table->percentGainSince(Date().plusDays(-1))));
}

FXint SharesHeldTreeItem::onRightClick(FXint x, FXint y) {
  return static_cast<FXint>(guardedHandler(u"SharesHeldTreeItem::onRightClick failed.", [&] {
    if (!checkSound())
      return;
    ContextMenu menu(tree(), this);
    menu.addCommand(isPurchases() ? String(u"Buy more ") + m_code + u"..." : String(u"Buy shares..."),
                    ID_BUY_SHARES);
    menu.run(x, y);
  }));
}

long SharesHeldTreeItem::onBuyShares(FXObject*, FXSelector, void*) {
  return guardedHandler(u"SharesHeldTreeItem::onBuyShares failed.", [this] {
    if (checkSound())
      m_portfolioNode->buyShares(m_code);
  });
}

// No menu leads to these two; they tell of an unsound node and do nothing else.

long SharesHeldTreeItem::onAddShares(FXObject*, FXSelector, void*) {
  return guardedHandler(u"SharesHeldTreeItem::onAddShares failed.", [this] { checkSound(); });
}

long SharesHeldTreeItem::onRemoveShares(FXObject*, FXSelector, void*) {
  return guardedHandler(u"SharesHeldTreeItem::onRemoveShares failed.", [this] { checkSound(); });
}

} // namespace Tallymoor
