#include "views/SharesHeldTreeItem.h"
#include "books/SharePortfolioUser.h"
#include "foundation/RunTimeSettings.h"
#include "foundation/Settings.h"
#include "market/StockNames.h"
#include "market/TallymoorInternet.h"
#include "views/CellFigures.h"
#include "views/HeldShareCells.h"
#include "views/IndicatorCells.h"
#include "views/PriceChart.h"
#include "views/ShareHeldTable.h"
#include "views/SharePortfolioTreeItem.h"
#include "views/SharesHeldTable.h"
#include "views/TotalCapTreeItem.h"
#include "views/TotalsBar.h"
#include "views/TreeState.h"
#include "views/UnseenStocks.h"
#include "widgets/ContextMenu.h"
#include "widgets/HandlerScope.h"
#include "widgets/InvestmentTree.h"
#include "widgets/RememberedSplitter.h"
#include "xml/PortfolioRecords.h"
#include <algorithm>
#include <set>
#include <utility>

namespace Tallymoor {

FXDEFMAP(SharesHeldTreeItem)
SharesHeldTreeItemMap[] = {
    FXMAPFUNC(SEL_COMMAND, SharesHeldTreeItem::ID_BUY_SHARES, SharesHeldTreeItem::onBuyShares),
    FXMAPFUNC(SEL_COMMAND, SharesHeldTreeItem::ID_SELL_SHARES, SharesHeldTreeItem::onSellShares),
    FXMAPFUNC(SEL_COMMAND, SharesHeldTreeItem::ID_ADD_SHARES, SharesHeldTreeItem::onAddShares),
    FXMAPFUNC(SEL_COMMAND, SharesHeldTreeItem::ID_REMOVE_SHARES, SharesHeldTreeItem::onRemoveShares),
};

FXIMPLEMENT_ABSTRACT(SharesHeldTreeItem, PortfolioTableTreeItem, SharesHeldTreeItemMap,
                     ARRAYNUMBER(SharesHeldTreeItemMap))

using namespace HeldShareCells;

namespace {

const String& codeOf(const TreeViewItem& purchases) {
  return static_cast<const SharesHeldTreeItem&>(purchases).code();
}

/// The limits for warnings; none for a stock that is no longer held.
PriceLimits holdingLimits(const SharePortfolioUser& portfolio, const String& code) {
  const XMLHeldShare* share = portfolio.findHeldShare(code);
  if (!share)
    return {};
  return autoMinMaxPrices ? automaticLimits(code) : PriceLimits::ofHeldShare(*share);
}

} // namespace

SharesHeldTreeItem::SharesHeldTreeItem(InvestmentTree* tree, SharePortfolioTreeItem* portfolioNode)
    : PortfolioTableTreeItem(tree, portfolioNode, portfolioNode, u"Shares Held",
                             portfolioNode->icons().sharesHeld) {
  checkDates();
  watchStocks();
  updateChildren();
}

SharesHeldTreeItem::SharesHeldTreeItem(InvestmentTree* tree, SharesHeldTreeItem* sharesHeld,
                                       const String& code)
    : PortfolioTableTreeItem(tree, sharesHeld, sharesHeld->portfolioNode(), code + u" Purchases", nullptr),
      m_code(code) {
  checkDates();
}

SharesHeldTreeItem::~SharesHeldTreeItem() {
  HandlerScope::forget(this);
}

void SharesHeldTreeItem::viewsGone() {
  PortfolioTableTreeItem::viewsGone();
  m_splitter = nullptr;
  m_chart = nullptr;
}

/// That all days can be read is seen from reading them.
std::vector<WrongDate> SharesHeldTreeItem::wrongDates() const {
  if (const XMLHeldShare* share = isPurchases() ? portfolio().findHeldShare(m_code) : nullptr)
    for (const XMLBuyEvent& parcel : share->parcels())
      parcel.bought();
  return {};
}

/// Also while the table is in sight: when it is left and opened again no price may be forgotten in between.
void SharesHeldTreeItem::watchStocks() {
  if (!isSound() || isPurchases())
    return;
  if (!m_unseen)
    m_unseen = std::make_unique<UnseenStocks>(
        tree()->getApp(), [this](const String& code) { return holdingLimits(portfolio(), code); },
        [this](const String& code) {
          TallymoorInternet::Instance().requirePrice(code, Date());
          return portfolio().sharePriceFor(code, Date(), true);
        });
  // Those of today stay watched, and prices that change meanwhile are not heard.
  if (Date::hasFixedDate())
    m_changedHoldings.forget();
  else
    watchHoldings();
  if (portfolioNode()->isUpToDate())
    m_unseen->checkAll();
}

/// Price changes are heard, so only limits that may be other ones are looked at.
void SharesHeldTreeItem::watchHoldings() {
  std::optional<LimitsBasis> basis;
  if (autoMinMaxPrices)
    basis = {TallymoorInternet::Instance().changeStamp(), Settings::Instance().changeStamp(), Date()};
  if (m_limitsBasis != basis)
    m_changedHoldings.forget();
  m_limitsBasis = basis;
  std::vector<const XMLHeldShare*> shares;
  for (const XMLHeldShare& share : portfolio().portfolio().heldShares())
    shares.push_back(&share);
  const ChangedHoldings::Changes changes = m_changedHoldings.look(shares);
  if (changes.areOtherStocks) {
    std::set<String> codes;
    for (const XMLHeldShare* share : shares)
      codes.insert(share->code());
    m_unseen->watch(codes);
  }
  m_unseen->recheck(changes.codes);
}

bool SharesHeldTreeItem::checkNextLimit() {
  return m_unseen && m_unseen->checkNext();
}

void SharesHeldTreeItem::limitsChanged() {
  if (isShown()) {
    table()->updateTable();
    return;
  }
  PortfolioTableTreeItem::update();
  watchStocks();
}

PortfolioTable* SharesHeldTreeItem::makeTable(FXComposite* frame) {
  if (isPurchases())
    return new ShareHeldTable(portfolio(), m_code, *portfolioNode(), frame, this);
  return new SharesHeldTable(portfolio(), *portfolioNode(), frame, this);
}

FXComposite* SharesHeldTreeItem::makeTableArea() {
  if (!isPurchases())
    return page();
  m_splitter = new RememberedSplitter(page(), u"Y Splitter Purchases");
  auto* area = new FXVerticalFrame(m_splitter, LAYOUT_FILL_X | LAYOUT_FILL_Y, 0, 0, 0, 0, 0, 0, 0, 0);
  m_chart = new PriceChart(m_splitter, {&portfolio()});
  return area;
}

SharesHeldTable* SharesHeldTreeItem::table() {
  return static_cast<SharesHeldTable*>(PortfolioTableTreeItem::table());
}

PriceChart* SharesHeldTreeItem::chart() {
  page();
  return m_chart;
}

SharesHeldTreeItem* SharesHeldTreeItem::purchasesOf(const String& code) const {
  for (TreeViewItem* child = firstChild(); child; child = child->nextSibling())
    if (auto* purchases = static_cast<SharesHeldTreeItem*>(child); purchases->code() == code)
      return purchases;
  return nullptr;
}

void SharesHeldTreeItem::update() {
  if (!isPurchases())
    HandlerScope::whenDone(this, [this] { updateChildren(); });
  else
    showName();
  watchStocks();
  PortfolioTableTreeItem::update();
  if (m_chart && isShown())
    showChart();
}

/// It may have become known since.
void SharesHeldTreeItem::showName() {
  const String name = StockNames::nameOf(m_code);
  setHeading(name.empty() ? label() : label() + u" (" + name + u")");
}

void SharesHeldTreeItem::showChart() {
  m_splitter->recalc(); // the bar may have been moved on another page
  if (m_chart->code() != m_code)
    m_chart->show(m_code);
}

void SharesHeldTreeItem::tableChanged(bool rebuilt) {
  // One price changes the whole of which each share is a part.
  if (!rebuilt && !isPurchases() && isShown())
    table()->refreshColumn(&portfolioPercent);
  PortfolioTableTreeItem::tableChanged(rebuilt);
  if (m_chart)
    m_chart->refresh();
}

std::vector<String> SharesHeldTreeItem::codesToShow() const {
  std::vector<String> codes;
  if (Date::hasFixedDate())
    return codes;
  for (const XMLHeldShare& share : portfolio().portfolio().heldShares())
    codes.push_back(share.code());
  std::sort(codes.begin(), codes.end());
  return codes;
}

void SharesHeldTreeItem::updateChildren() {
  const std::vector<String> codes = codesToShow();
  std::vector<String> shown;
  for (TreeViewItem* child = firstChild(); child; child = child->nextSibling())
    shown.push_back(codeOf(*child));
  if (codes == shown)
    return;
  const TreeState state(*investmentTree());
  arrangeChildren(codes);
  state.restore();
}

/// Nodes of stocks that are still held stay as they are: there may be hundreds, each with a page. Both the
/// nodes and the codes are in order.
void SharesHeldTreeItem::arrangeChildren(const std::vector<String>& codes) {
  TreeViewItem* next = firstChild();
  const auto removeNext = [&] {
    TreeViewItem* gone = std::exchange(next, next->nextSibling());
    tree()->removeItem(gone);
  };
  for (const String& code : codes) {
    while (next && codeOf(*next) < code)
      removeNext();
    if (next && codeOf(*next) == code) {
      next = next->nextSibling();
      continue;
    }
    auto* child = new SharesHeldTreeItem(investmentTree(), this, code);
    if (next)
      tree()->moveItem(next, this, child);
  }
  while (next)
    removeNext();
}

void SharesHeldTreeItem::recordsChanged() {
  PortfolioTableTreeItem::recordsChanged();
  for (TreeViewItem* child = firstChild(); child; child = child->nextSibling())
    static_cast<SharesHeldTreeItem*>(child)->recordsChanged();
}

std::vector<Column::Function> SharesHeldTreeItem::summedColumns() const {
  return {&purchaseValue, &currentValue, &dayGain, &grossGain};
}

std::vector<Column::Function> SharesHeldTreeItem::totalledColumns() const {
  std::vector<Column::Function> functions = summedColumns();
  if (!isPurchases())
    functions.push_back(&portfolioPercent);
  functions.push_back(&dayPercent);
  return functions;
}

void SharesHeldTreeItem::showTotals() {
  PortfolioTableTreeItem::showTotals();
  if (!isPurchases())
    totalsBar()->setTotal(&portfolioPercent, textOrNotYetKnown([this] {
      return String::toPercent(table()->sumColumn(&portfolioPercent));
    }));
  totalsBar()->setTotal(&dayPercent, textOrNotYetKnown([this] {
    return String::toPercent(table()->percentGainSince(Date().plusDays(-1)));
  }));
}

FXint SharesHeldTreeItem::onRightClick(FXint x, FXint y) {
  return static_cast<FXint>(guardedHandler(u"SharesHeldTreeItem::onRightClick failed.", [&] {
    if (!checkSound())
      return;
    ContextMenu menu(tree(), this);
    menu.addCommand(isPurchases() ? String(u"Buy more ") + m_code + u"..." : String(u"Buy shares..."),
                    ID_BUY_SHARES);
    menu.addCommand(isPurchases() ? String(u"Sell some ") + m_code + u"..." : String(u"Sell shares..."),
                    ID_SELL_SHARES);
    menu.run(x, y);
  }));
}

long SharesHeldTreeItem::onBuyShares(FXObject*, FXSelector, void*) {
  return guardedHandler(u"SharesHeldTreeItem::onBuyShares failed.", [this] {
    if (checkSound())
      portfolioNode()->buyShares(m_code);
  });
}

long SharesHeldTreeItem::onSellShares(FXObject*, FXSelector, void*) {
  return guardedHandler(u"SharesHeldTreeItem::onSellShares failed.", [this] {
    if (checkSound())
      portfolioNode()->sellShares(m_code);
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
