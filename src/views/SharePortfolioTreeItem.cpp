#include "views/SharePortfolioTreeItem.h"
#include "analysis/UnrecordedDividends.h"
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
#include "foundation/RunTimeSettings.h"
#include "session/BookQuestions.h"
#include "session/RecordChanges.h"
#include "views/CashReserveTreeItem.h"
#include "views/ChangeSentences.h"
#include "views/DividendsTreeItem.h"
#include "views/IndexFigures.h"
#include "views/PortfolioMenu.h"
#include "views/PortfolioPage.h"
#include "views/PriceWatch.h"
#include "views/SharesHeldTable.h"
#include "views/SharesHeldTreeItem.h"
#include "views/SharesSoldTreeItem.h"
#include "views/TotalCapTreeItem.h"
#include "widgets/FlagScope.h"
#include "widgets/GetStringDialog.h"
#include "widgets/HandlerScope.h"
#include "widgets/InvestmentTree.h"
#include "widgets/MainWindow.h"
#include "xml/CleanName.h"
#include "xml/PortfolioRecords.h"
#include <utility>

namespace Tallymoor {

FXDEFMAP(SharePortfolioTreeItem)
SharePortfolioTreeItemMap[] = {
    FXMAPFUNCS(SEL_COMMAND, SharePortfolioTreeItem::ID_DELETE_SHARE_PORTFOLIO,
               SharePortfolioTreeItem::ID_PROPERTIES, SharePortfolioTreeItem::onCommand),
};

FXIMPLEMENT_ABSTRACT(SharePortfolioTreeItem, InvestmentTreeItem, SharePortfolioTreeItemMap,
                     ARRAYNUMBER(SharePortfolioTreeItemMap))

SharePortfolioTreeItem::SharePortfolioTreeItem(InvestmentTree* tree, TotalCapTreeItem* root,
                                               SharePortfolioUser& portfolio)
    : InvestmentTreeItem(tree, root, portfolio.name(), root->icons().portfolio, root->icons().portfolio),
      m_root(root), m_portfolio(&portfolio), m_indexFigures(std::make_unique<IndexFigures>(portfolio)) {
  buildView([this] {
    makeChildren();
    m_indexFigures->outdate();
    m_priceWatch =
        std::make_unique<PriceWatch>(this->tree()->getApp(), u"SharePortfolioTreeItem::tableChanged failed.",
                                     [this](const std::set<String>& codes) { pricesCame(codes); });
  });
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

void SharePortfolioTreeItem::bringUpToDate() {
  if (!m_isDue || inBackgroundPass) // in which nothing may be asked
    return;
  m_isDue = false;
  if (RecordChanges* const changes = RecordChanges::current())
    changes->prepare(*m_portfolio);
  const FlagScope coming(m_isComing);
  checkCashReserve(*m_portfolio);
  m_indexFigures->outdate();
  for (TreeViewItem* child = firstChild(); child; child = child->nextSibling())
    static_cast<PortfolioTableTreeItem*>(child)->tellWrongDates();
}

void SharePortfolioTreeItem::ensureRecord() {
  if (!m_isDue)
    return;
  bringUpToDate();
  if (!m_isDue)
    m_root->recordCame();
}

void SharePortfolioTreeItem::makeRecordCurrent() {
  if (m_isDue)
    ensureRecord();
  else
    checkCashReserve(*m_portfolio);
}

FXint SharePortfolioTreeItem::onLeftClick(FXint x, FXint y) {
  if (isSound())
    makeRecordCurrent();
  return InvestmentTreeItem::onLeftClick(x, y);
}

void SharePortfolioTreeItem::update() {
  const bool isFilled = takePageIsNew();
  if (!isSound() || m_isDue)
    return;
  makeRecordCurrent();
  m_indexFigures->outdate();
  if (m_views && !isFilled)
    m_views->update();
  // The total above was shown before this portfolio's record was current.
  m_root->figuresChanged();
}

bool SharePortfolioTreeItem::hasRecordOfToday() const {
  return isUpToDate() && m_portfolio->capitalRecord().hasDayCap(Date());
}

// ---- The page ----

void SharePortfolioTreeItem::makeViews() {
  ensureRecord();
  m_views = std::make_unique<PortfolioPage>(*this, *m_indexFigures);
}

void SharePortfolioTreeItem::viewsGone() {
  m_views.reset();
}

void SharePortfolioTreeItem::freshenViews() {
  if (m_views)
    m_views->freshen();
}

PerformanceView* SharePortfolioTreeItem::performance() {
  page();
  return m_views ? &m_views->performance() : nullptr;
}

/// The table tells of all other prices. The index is read again only for a price of its own: one that is
/// unavailable would otherwise be fetched for every price.
void SharePortfolioTreeItem::pricesCame(const std::set<String>& codes) {
  if (!hasRecordOfToday() || !codes.contains(m_portfolio->comparisonIndex()))
    return;
  m_indexFigures->outdate();
  if (m_views)
    m_views->tableChanged(false);
}

// ---- Changes ----

void SharePortfolioTreeItem::stopReading() {
  for (TreeViewItem* child = firstChild(); child; child = child->nextSibling())
    static_cast<PortfolioTableTreeItem*>(child)->recordsChanged();
  if (m_views)
    m_views->recordsChanged();
}

void SharePortfolioTreeItem::transactionMade() {
  m_root->transactionMade();
  stopReading();
  // The record is made current first: the root adds up all portfolios before their own nodes are reached.
  HandlerScope::whenDone(this, [this] {
    m_root->shareLimitsOfHoldings();
    makeRecordCurrent();
    tree()->updateItems();
  });
}

void SharePortfolioTreeItem::change(const String& sentence, const std::function<void()>& command) {
  // Asked for before the change: a sale takes parcels away that tables may be reading.
  transactionMade();
  makeChange(sentence, command);
}

void SharePortfolioTreeItem::priceTyped(const String& code, const Date& date, double price) {
  m_root->priceTyped(code, date, price);
}

void SharePortfolioTreeItem::pricesCorrected() {
  m_root->pricesCorrected();
}

void SharePortfolioTreeItem::limitsTyped(const String& code, const PriceLimits& limits) {
  m_root->limitsTyped(code, limits);
}

void SharePortfolioTreeItem::buyShares(const String& code) {
  HandlerScope scope;
  ensureRecord();
  BuySharesDialog dialog(&MainWindow::Instance(), *m_portfolio, code);
  if (dialog.execute() == 0)
    return;
  const BuySharesPanel& panel = *dialog.panel();
  const Trade purchase = panel.trade();
  change(u"Purchase of " + sharesText(purchase.number, panel.code()),
         [&] { m_portfolio->buyShares(panel.code(), purchase); });
}

void SharePortfolioTreeItem::sellShares(const String& code) {
  HandlerScope scope;
  ensureRecord();
  SellSharesDialog dialog(&MainWindow::Instance(), *m_portfolio, code);
  if (dialog.execute() == 0)
    return;
  const SellSharesPanel& panel = *dialog.panel();
  const Trade sale = panel.trade();
  change(u"Sale of " + sharesText(sale.number, panel.code()),
         [&] { m_portfolio->sellShares(panel.code(), sale, true); });
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
  ensureRecord();
  ReceiveDividendsDialog dialog(&MainWindow::Instance(), *m_portfolio);
  record(dialog);
}

bool SharePortfolioTreeItem::recordToldDividend(const UnrecordedDividend& told) {
  HandlerScope scope;
  ensureRecord();
  ReceiveDividendsDialog dialog(&MainWindow::Instance(), *m_portfolio, told.code);
  dialog.panel()->propose(told.number, told.rate, told.day);
  return record(dialog);
}

bool SharePortfolioTreeItem::record(ReceiveDividendsDialog& dialog) {
  if (dialog.execute() == 0)
    return false;
  const ReceiveDividendsPanel& panel = *dialog.panel();
  const DividendEntry dividend = panel.entry();
  change(u"Dividend of " + dividend.code, [&] { m_portfolio->receiveDividend(dividend); });
  return true;
}

void SharePortfolioTreeItem::receiveInterest() {
  bookCash(u"Receive interest", CASH_EVENT_INTEREST, u"INTEREST ", u"Interest of ");
}

void SharePortfolioTreeItem::depositCash() {
  bookCash(u"Deposit cash", CASH_EVENT_DEPOSIT, u"DEPOSIT ", u"Deposit of ");
}

void SharePortfolioTreeItem::withdrawCash() {
  bookCash(u"Withdraw cash", CASH_EVENT_WITHDRAWAL, u"WITHDRAWAL ", u"Withdrawal of ");
}

void SharePortfolioTreeItem::payAccountFee() {
  bookCash(u"Pay account fee", CASH_EVENT_DEBIT, u"Account fee ", u"Account fee of ");
}

void SharePortfolioTreeItem::changeProperties() {
  HandlerScope scope;
  ensureRecord();
  const String name = m_portfolio->name();
  PortfolioPropertiesDialog dialog(&MainWindow::Instance(), name, m_portfolio->comparisonIndex(),
                                   [this](const String& newName) { return m_root->checkNewName(newName); });
  if (dialog.execute() == 0)
    return;
  // Under the root's name: a rename takes its place, since that rebuilds all nodes.
  HandlerScope::whenDone(m_root, [this] { tree()->updateItems(); });
  makeChange(u"Properties of " + name, [&] {
    if (dialog.indexCode() != m_portfolio->comparisonIndex())
      m_portfolio->setComparisonIndex(dialog.indexCode());
    m_root->renamePortfolio(name, dialog.name());
  });
}

void SharePortfolioTreeItem::bookCash(const String& title, std::int32_t type, const String& descriptionStart,
                                      const String& sentenceStart) {
  HandlerScope scope;
  ensureRecord();
  GetFloatDialog dialog(&MainWindow::Instance(), title);
  dialog.panel()->setCashBefore(cashBalance(m_portfolio->portfolio(), Date()), isCreditType(type));
  if (dialog.execute() == 0)
    return;
  const GetFloatPanel& panel = *dialog.panel();
  const String description = descriptionStart + panel.text();
  change(sentenceStart + String::fromDouble(panel.value(), 2), [&] {
    if (isCreditType(type))
      m_portfolio->creditCash(panel.date(), panel.value(), type, description);
    else
      m_portfolio->debitCash(panel.date(), panel.value(), type, description);
  });
}

void SharePortfolioTreeItem::rename() {
  const String name = m_portfolio->name();
  GetStringDialog dialog(&MainWindow::Instance(), u"Rename portfolio",
                         String(u"Please choose a new name for ") + name, name, cleanName);
  if (dialog.execute() != 0)
    m_root->renamePortfolio(name, dialog.text());
}

void SharePortfolioTreeItem::remove() {
  const String name = m_portfolio->name();
  if (!MainWindow::question(String(u"Are you sure you want to delete share portfolio ") + name + u"?"))
    return;
  m_root->activate();
  m_root->removeChild(this);
}

// ---- Commands ----

FXint SharePortfolioTreeItem::onRightClick(FXint x, FXint y) {
  return static_cast<FXint>(guardedHandler(u"SharePortfolioTreeItem::onRightClick failed.", [&] {
    if (checkSound())
      PortfolioMenu::open(*this, x, y);
  }));
}

long SharePortfolioTreeItem::onCommand(FXObject*, FXSelector selector, void*) {
  const PortfolioMenu::Command* const command = PortfolioMenu::find(FXSELID(selector));
  return command ? guardedHandler(String(u"SharePortfolioTreeItem::") + command->handler + u" failed.",
                                  [&] {
                                    if (checkSound())
                                      command->run(*this);
                                  })
                 : 0;
}

} // namespace Tallymoor
