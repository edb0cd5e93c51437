#include "views/SharePortfolioTreeItem.h"
#include "books/CashBalance.h"
#include "books/SharePortfolioUser.h"
#include "entry/BuySharesDialog.h"
#include "entry/BuySharesPanel.h"
#include "entry/GetFloatDialog.h"
#include "entry/GetFloatPanel.h"
#include "entry/PortfolioPropertiesDialog.h"
#include "entry/ReceiveDividendsDialog.h"
#include "entry/ReceiveDividendsPanel.h"
#include "entry/SellSharesDialog.h"
#include "entry/SellSharesPanel.h"
#include "foundation/Amounts.h"
#include "foundation/Platform.h"
#include "foundation/RunTimeSettings.h"
#include "session/BookQuestions.h"
#include "views/CapitalChart.h"
#include "views/CashReserveTreeItem.h"
#include "views/DividendsTreeItem.h"
#include "views/PerformanceView.h"
#include "views/PortfolioPerformanceTable.h"
#include "views/PriceWatch.h"
#include "views/SharesHeldTable.h"
#include "views/SharesHeldTreeItem.h"
#include "views/SharesSoldTreeItem.h"
#include "views/SummaryFrame.h"
#include "views/TotalCapTreeItem.h"
#include "views/WatchedCodes.h"
#include "widgets/ContextMenu.h"
#include "widgets/GetStringDialog.h"
#include "widgets/HandlerScope.h"
#include "widgets/InvestmentTree.h"
#include "widgets/MainWindow.h"
#include "widgets/ToolkitText.h"
#include "xml/CleanName.h"
#include "xml/PortfolioRecords.h"

namespace Tallymoor {

FXDEFMAP(SharePortfolioTreeItem)
SharePortfolioTreeItemMap[] = {
    FXMAPFUNC(SEL_COMMAND, SharePortfolioTreeItem::ID_DELETE_SHARE_PORTFOLIO,
              SharePortfolioTreeItem::onDeleteSharePortfolio),
    FXMAPFUNC(SEL_COMMAND, SharePortfolioTreeItem::ID_RENAME_SHARE_PORTFOLIO,
              SharePortfolioTreeItem::onRenamePortfolio),
    FXMAPFUNC(SEL_COMMAND, SharePortfolioTreeItem::ID_BUY_SHARES, SharePortfolioTreeItem::onBuyShares),
    FXMAPFUNC(SEL_COMMAND, SharePortfolioTreeItem::ID_SELL_SHARES, SharePortfolioTreeItem::onSellShares),
    FXMAPFUNC(SEL_COMMAND, SharePortfolioTreeItem::ID_RECEIVE_DIVIDENDS,
              SharePortfolioTreeItem::onReceiveDividends),
    FXMAPFUNC(SEL_COMMAND, SharePortfolioTreeItem::ID_RECEIVE_INTEREST,
              SharePortfolioTreeItem::onReceiveInterest),
    FXMAPFUNC(SEL_COMMAND, SharePortfolioTreeItem::ID_DEPOSIT_CASH, SharePortfolioTreeItem::onDepositCash),
    FXMAPFUNC(SEL_COMMAND, SharePortfolioTreeItem::ID_WITHDRAW_CASH, SharePortfolioTreeItem::onWithdrawCash),
    FXMAPFUNC(SEL_COMMAND, SharePortfolioTreeItem::ID_PROPERTIES, SharePortfolioTreeItem::onProperties),
};

FXIMPLEMENT_ABSTRACT(SharePortfolioTreeItem, InvestmentTreeItem, SharePortfolioTreeItemMap,
                     ARRAYNUMBER(SharePortfolioTreeItemMap))

SharePortfolioTreeItem::SharePortfolioTreeItem(InvestmentTree* tree, TotalCapTreeItem* root,
                                               SharePortfolioUser& portfolio)
    : InvestmentTreeItem(tree, root, portfolio.name(), root->icons().portfolio, root->icons().portfolio),
      m_root(root), m_portfolio(&portfolio) {
  buildView([this] {
    makeRecordCurrent();
    makeChildren();
    m_watchedIndex = std::make_unique<WatchedCodes>();
    m_summaryFrame = new SummaryFrame(page());
    m_performance = new PerformanceView(page(), {m_portfolio}, false, m_portfolio->name(), this);
    tableChanged(true);
    m_priceWatch =
        std::make_unique<PriceWatch>(page()->getApp(), u"SharePortfolioTreeItem::tableChanged failed.",
                                     [this](const std::set<String>& codes) { pricesCame(codes); });
  });
  if (!page()) {
    m_summaryFrame = nullptr;
    m_performance = nullptr;
  }
}

SharePortfolioTreeItem::~SharePortfolioTreeItem() {
  HandlerScope::forget(this);
}

void SharePortfolioTreeItem::makeChildren() {
  m_sharesHeldItem = new SharesHeldTreeItem(investmentTree(), this);
  m_sharesSoldItem = new SharesSoldTreeItem(investmentTree(), this);
  m_dividendsItem = new DividendsTreeItem(investmentTree(), this);
  m_cashReserveItem = new CashReserveTreeItem(investmentTree(), this);
}

const NodeIcons& SharePortfolioTreeItem::icons() const {
  return m_root->icons();
}

void SharePortfolioTreeItem::makeRecordCurrent() {
  checkCashReserve(*m_portfolio);
}

void SharePortfolioTreeItem::update() {
  if (!isSound())
    return;
  makeRecordCurrent();
  if (investmentTree()->shownItem() == this) {
    m_performance->update();
  } else {
    m_performance->updateWhenWanted();
    readIndexFigures();
    showFigures();
  }
  // The total above was shown before this portfolio's record was current.
  m_root->tableChanged(false);
}

// ---- Summary ----

void SharePortfolioTreeItem::tableChanged(bool rebuilt) {
  // After midnight there is no record of today until the user's next action makes one: the figures stay
  // meanwhile.
  if (!isSound() || !m_performance || (!rebuilt && !hasRecordOfToday()))
    return;
  if (rebuilt) {
    buildSummary();
    readIndexFigures();
  }
  showFigures();
}

void SharePortfolioTreeItem::showFigures() {
  showCapital();
  showGains();
  showTrend();
  m_summaryFrame->align();
  m_performance->chart().refresh();
}

bool SharePortfolioTreeItem::hasRecordOfToday() const {
  return m_portfolio->capitalRecord().hasDayCap(Date());
}

void SharePortfolioTreeItem::buildSummary() {
  SummaryFrame& summary = *m_summaryFrame;
  summary.clear();
  summary.reserveCaption(0, u"Capital in shares", 40);
  summary.reserveCaption(1, u"Gain this week (index)", 20);
  summary.reserveValue(u"-10.10% (-10.10%)");
  summary.startRow();
  m_sharesCapitalLabel = summary.addFigure(u"Capital in shares");
  m_percentSharesLabel = summary.addFigure(u"Percent in shares");
  summary.startRow();
  m_cashCapitalLabel = summary.addFigure(u"Capital in cash");
  m_percentCashLabel = summary.addFigure(u"Percent in cash");
  summary.addSeparator();
  summary.startRow();
  m_capitalLabel = summary.addFigure(u"Total Capital");
  summary.addSeparator();
  summary.startRow();
  m_gainTodayLabel = summary.addFigure(u"Gain today (index)");
  m_gainWeekLabel = summary.addFigure(u"Gain this week (index)");
  summary.addButton(u" set index ", this, ID_PROPERTIES);
  m_trendLabel = summary.addRemark();
}

void SharePortfolioTreeItem::showCapital() {
  const double shares = m_portfolio->sharesValueToday();
  const double cash = m_portfolio->cashReserveToday();
  const double total = shares + cash;
  const bool worthSomething = tenThousandths(total) > 0;
  const auto percentOfTotal = [&](double part) {
    return String::toPercent(worthSomething ? part / total * 100.0 : 0.0);
  };
  Platform& platform = Platform::Instance();
  SummaryFrame::setValue(m_capitalLabel, platform.currencyFormat(total));
  SummaryFrame::setValue(m_cashCapitalLabel, platform.currencyFormat(cash));
  SummaryFrame::setValue(m_sharesCapitalLabel, platform.currencyFormat(shares));
  SummaryFrame::setValue(m_percentSharesLabel, percentOfTotal(shares));
  SummaryFrame::setValue(m_percentCashLabel, percentOfTotal(cash));
}

void SharePortfolioTreeItem::showGains() {
  const auto gainText = [](double gain, const String& index) {
    return String::toPercent(gain) + u" (" + index + u")";
  };
  SummaryFrame::setValue(m_gainTodayLabel, gainText(m_portfolio->dailyGain(), m_indexGainToday));
  SummaryFrame::setValue(m_gainWeekLabel, gainText(m_portfolio->weeklyGain(), m_indexGainWeek));
}

void SharePortfolioTreeItem::showTrend() {
  SummaryFrame::setValue(m_trendLabel, m_indexTrend);
  if (m_trendLabel)
    m_trendLabel->setTipText(toFox(m_indexTrendTip));
}

void SharePortfolioTreeItem::readIndexFigures() {
  m_indexGainToday = m_indexGainWeek = u"n/a";
  if (!m_portfolio->hasComparisonIndex()) {
    m_watchedIndex->watch({});
    m_indexTrend = u"No index to compare with yet: \"set index\" chooses one.";
    m_indexTrendTip =
        u"With an index, as that of your stock exchange, you see here and in the table whether the "
        u"portfolio does better than its market.";
    return;
  }
  m_watchedIndex->watch({m_portfolio->comparisonIndex()});
  m_indexTrend = u"<index trend disabled>";
  // Before the portfolio's first day there is nothing to compare, and perhaps no index to ask for.
  if (Date::hasFixedDate() && !m_portfolio->capitalRecord().hasDayCap(Date())) {
    m_indexTrendTip = u"The portfolio has no record of the day shown.";
    return;
  }
  m_indexGainToday = m_indexGainWeek = u"failed";
  m_indexTrendTip = String(u"The prices of ") + m_portfolio->comparisonIndex() +
                    u" that its moving averages need are unavailable.";
  // The table has asked already for what is missing; the user is not asked a second time.
  const BackgroundPassScope quiet;
  try {
    readIndexGains();
    readIndexTrend();
  } catch (const Exception&) {
    // What has been read stays, the rest shows as failed.
  }
}

void SharePortfolioTreeItem::readIndexGains() {
  m_portfolio->indexValueOn(Date());
  const String today = String::toPercent(m_portfolio->indexDailyGain());
  m_indexGainWeek = String::toPercent(m_portfolio->indexWeeklyGain());
  m_indexGainToday = today;
}

void SharePortfolioTreeItem::readIndexTrend() {
  const String shortAverage = String::fromDouble(m_portfolio->indexMovingAverage(indexTrendShort), 2);
  const String longAverage = String::fromDouble(m_portfolio->indexMovingAverage(indexTrendLong), 2);
  const double difference = shortAverage.toDouble() - longAverage.toDouble();
  const String direction = difference > 0.0 ? u"rising" : difference < 0.0 ? u"falling" : u"steady";
  const String shortDays = String::fromLong(SharePortfolioUser::trendDays(indexTrendShort));
  const String longDays = String::fromLong(SharePortfolioUser::trendDays(indexTrendLong));
  m_indexTrend = String(u"Index trend: ") + direction + u" (" + shortDays + u" day average " + shortAverage +
                 u", " + longDays + u" day " + longAverage + u")";
  m_indexTrendTip = m_portfolio->comparisonIndex() + u" is " + direction + u": its average of the last " +
                    shortDays + u" weekdays is " + shortAverage + u", that of the last " + longDays +
                    u" is " + longAverage + u".\nRecent days weigh more in both (exponential averages).";
}

/// The table tells of all other prices. The index is read again only for a price of its own: one that is
/// unavailable would otherwise be fetched for every price.
void SharePortfolioTreeItem::pricesCame(const std::set<String>& codes) {
  if (!m_performance || !hasRecordOfToday() || !codes.contains(m_portfolio->comparisonIndex()))
    return;
  readIndexFigures();
  tableChanged(false);
}

// ---- Changes ----

void SharePortfolioTreeItem::transactionMade() {
  m_root->transactionMade();
  for (TreeViewItem* child = firstChild(); child; child = child->nextSibling())
    static_cast<PortfolioTableTreeItem*>(child)->recordsChanged();
  if (m_performance)
    m_performance->recordsChanged();
  // The record is made current first: the root adds up all portfolios before their own nodes are reached.
  HandlerScope::whenDone(this, [this] {
    m_root->shareLimitsOfHoldings();
    makeRecordCurrent();
    tree()->updateItems();
  });
}

void SharePortfolioTreeItem::priceTyped(const String& code, const Date& date, double price) {
  m_root->priceTyped(code, date, price);
}

void SharePortfolioTreeItem::limitsTyped(const String& code, const PriceLimits& limits) {
  m_root->limitsTyped(code, limits);
}

void SharePortfolioTreeItem::buyShares(const String& code) {
  HandlerScope scope;
  BuySharesDialog dialog(&MainWindow::Instance(), *m_portfolio, code);
  if (dialog.execute() == 0)
    return;
  const BuySharesPanel& panel = *dialog.panel();
  // Asked for before the change, here and below: a sale takes parcels away that tables may be reading.
  transactionMade();
  m_portfolio->buyShares(panel.code(), panel.trade());
}

void SharePortfolioTreeItem::sellShares(const String& code) {
  HandlerScope scope;
  SellSharesDialog dialog(&MainWindow::Instance(), *m_portfolio, code);
  if (dialog.execute() == 0)
    return;
  const SellSharesPanel& panel = *dialog.panel();
  transactionMade();
  m_portfolio->sellShares(panel.code(), panel.trade(), true);
}

void SharePortfolioTreeItem::showPurchases(const String& code) {
  SharesHeldTreeItem* const purchases = m_sharesHeldItem ? m_sharesHeldItem->purchasesOf(code) : nullptr;
  if (!purchases || !purchases->table())
    return;
  tree()->makeItemVisible(purchases);
  purchases->activate();
  purchases->table()->takeKeyboard();
}

void SharePortfolioTreeItem::receiveDividend() {
  HandlerScope scope;
  ReceiveDividendsDialog dialog(&MainWindow::Instance(), *m_portfolio);
  if (dialog.execute() == 0)
    return;
  const ReceiveDividendsPanel& panel = *dialog.panel();
  transactionMade();
  m_portfolio->receiveDividend(panel.entry());
}

void SharePortfolioTreeItem::receiveInterest() {
  bookCash(u"Receive interest", CASH_EVENT_INTEREST, u"INTEREST ");
}

void SharePortfolioTreeItem::depositCash() {
  bookCash(u"Deposit cash", CASH_EVENT_DEPOSIT, u"DEPOSIT ");
}

void SharePortfolioTreeItem::withdrawCash() {
  bookCash(u"Withdraw cash", CASH_EVENT_WITHDRAWAL, u"WITHDRAWAL ");
}

void SharePortfolioTreeItem::payAccountFee() {
  bookCash(u"Pay account fee", CASH_EVENT_DEBIT, u"Account fee ");
}

void SharePortfolioTreeItem::changeProperties() {
  HandlerScope scope;
  const String name = m_portfolio->name();
  PortfolioPropertiesDialog dialog(&MainWindow::Instance(), name, m_portfolio->comparisonIndex(),
                                   [this](const String& newName) { return m_root->checkNewName(newName); });
  if (dialog.execute() == 0)
    return;
  if (!(dialog.indexCode() == m_portfolio->comparisonIndex()))
    m_portfolio->setComparisonIndex(dialog.indexCode());
  // Under the root's name: a rename takes its place, since that makes all nodes anew.
  HandlerScope::whenDone(m_root, [this] { tree()->updateItems(); });
  m_root->renamePortfolio(name, dialog.name());
}

void SharePortfolioTreeItem::bookCash(const String& title, std::int32_t type,
                                      const String& descriptionStart) {
  HandlerScope scope;
  GetFloatDialog dialog(&MainWindow::Instance(), title);
  dialog.panel()->setCashBefore(cashBalance(m_portfolio->portfolio(), Date()), isCreditType(type));
  if (dialog.execute() == 0)
    return;
  const GetFloatPanel& panel = *dialog.panel();
  const String description = descriptionStart + panel.text();
  transactionMade();
  if (isCreditType(type))
    m_portfolio->creditCash(panel.date(), panel.value(), type, description);
  else
    m_portfolio->debitCash(panel.date(), panel.value(), type, description);
}

// ---- Commands ----

FXint SharePortfolioTreeItem::onRightClick(FXint x, FXint y) {
  return static_cast<FXint>(guardedHandler(u"SharePortfolioTreeItem::onRightClick failed.", [&] {
    if (!checkSound())
      return;
    const String name = m_portfolio->name();
    ContextMenu menu(tree(), this);
    menu.addCommand(u"Buy shares...", ID_BUY_SHARES);
    menu.addCommand(u"Sell shares...", ID_SELL_SHARES);
    menu.addCommand(u"Receive a dividend...", ID_RECEIVE_DIVIDENDS);
    menu.addCommand(u"Receive interest...", ID_RECEIVE_INTEREST);
    menu.addCommand(u"Deposit cash...", ID_DEPOSIT_CASH);
    menu.addCommand(u"Withdraw cash...", ID_WITHDRAW_CASH);
    menu.addSeparator();
    menu.addCommand(String(u"Rename share portfolio ") + name + u"...", ID_RENAME_SHARE_PORTFOLIO);
    menu.addCommand(String(u"Delete share portfolio ") + name + u"...", ID_DELETE_SHARE_PORTFOLIO);
    menu.addSeparator();
    menu.addCommand(u"Set portfolio comparison index...", ID_PROPERTIES);
    menu.run(x, y);
  }));
}

long SharePortfolioTreeItem::onBuyShares(FXObject*, FXSelector, void*) {
  return guardedHandler(u"SharePortfolioTreeItem::onBuyShares failed.", [this] {
    if (checkSound())
      buyShares(String());
  });
}

long SharePortfolioTreeItem::onSellShares(FXObject*, FXSelector, void*) {
  return guardedHandler(u"SharePortfolioTreeItem::onSellShares failed.", [this] {
    if (checkSound())
      sellShares(String());
  });
}

long SharePortfolioTreeItem::handleCommand(const String& context, Operation operation) {
  return guardedHandler(context, [&] {
    if (checkSound())
      (this->*operation)();
  });
}

long SharePortfolioTreeItem::onReceiveDividends(FXObject*, FXSelector, void*) {
  return handleCommand(u"SharePortfolioTreeItem::onReceiveDividends failed.",
                       &SharePortfolioTreeItem::receiveDividend);
}

long SharePortfolioTreeItem::onReceiveInterest(FXObject*, FXSelector, void*) {
  return handleCommand(u"SharePortfolioTreeItem::onReceiveInterest failed.",
                       &SharePortfolioTreeItem::receiveInterest);
}

long SharePortfolioTreeItem::onDepositCash(FXObject*, FXSelector, void*) {
  return handleCommand(u"SharePortfolioTreeItem::onDepositCash failed.",
                       &SharePortfolioTreeItem::depositCash);
}

long SharePortfolioTreeItem::onWithdrawCash(FXObject*, FXSelector, void*) {
  return handleCommand(u"SharePortfolioTreeItem::onWithdrawCash failed.",
                       &SharePortfolioTreeItem::withdrawCash);
}

long SharePortfolioTreeItem::onProperties(FXObject*, FXSelector, void*) {
  return handleCommand(u"SharePortfolioTreeItem::onProperties failed.",
                       &SharePortfolioTreeItem::changeProperties);
}

long SharePortfolioTreeItem::onRenamePortfolio(FXObject*, FXSelector, void*) {
  return guardedHandler(u"SharePortfolioTreeItem::onRenamePortfolio failed.", [this] {
    if (!checkSound())
      return;
    const String name = m_portfolio->name();
    GetStringDialog dialog(&MainWindow::Instance(), u"Rename portfolio",
                           String(u"Please choose a new name for ") + name, name, cleanName);
    if (dialog.execute() != 0)
      m_root->renamePortfolio(name, dialog.text());
  });
}

long SharePortfolioTreeItem::onDeleteSharePortfolio(FXObject*, FXSelector, void*) {
  return guardedHandler(u"SharePortfolioTreeItem::onDeleteSharePortfolio failed.", [this] {
    if (!checkSound())
      return;
    const String name = m_portfolio->name();
    if (!MainWindow::question(String(u"Are you sure you want to delete share portfolio ") + name + u"?"))
      return;
    m_root->activate();
    m_root->removeChild(this);
  });
}

} // namespace Tallymoor
