#include "views/TotalCapTreeItem.h"
#include "foundation/BackgroundWriting.h"
#include "foundation/FileReplacement.h"
#include "foundation/LengthyFunctions.h"
#include "foundation/RunTimeSettings.h"
#include "foundation/Settings.h"
#include "market/MarketPrices.h"
#include "session/RecordChanges.h"
#include "views/PriceLimits.h"
#include "views/SharePortfolioTreeItem.h"
#include "views/SharedLimits.h"
#include "views/SharesHeldTable.h"
#include "views/SharesHeldTreeItem.h"
#include "views/TotalCapPage.h"
#include "views/TreeState.h"
#include "widgets/ColumnChoice.h"
#include "widgets/ContextMenu.h"
#include "widgets/GetStringDialog.h"
#include "widgets/HandlerScope.h"
#include "widgets/InvestmentTree.h"
#include "widgets/MainWindow.h"
#include "xml/CleanName.h"
#include "xml/PortfolioRecords.h"
#include <algorithm>
#include <set>
#include <utility>

namespace Tallymoor {

FXDEFMAP(TotalCapTreeItem)
TotalCapTreeItemMap[] = {
    FXMAPFUNC(SEL_COMMAND, TotalCapTreeItem::ID_NEW_SHARE_PORTFOLIO, TotalCapTreeItem::onNewSharePortfolio),
};

FXIMPLEMENT_ABSTRACT(TotalCapTreeItem, InvestmentTreeItem, TotalCapTreeItemMap,
                     ARRAYNUMBER(TotalCapTreeItemMap))

namespace {

/// The choice of what the tray shows and of columns follows a portfolio to its new name.
void renameOutsideRecords(const String& oldName, const String& newName) {
  ColumnChoice::rename(oldName, newName);
  if (trayFormat != oldName)
    return;
  trayFormat = newName;
  Settings::Instance().writeString(u"Operation", u"TrayFormat", newName);
}

std::set<String> namesOf(const OpenPortfolios& portfolios) {
  std::set<String> names;
  for (const auto& [name, portfolio] : portfolios)
    names.insert(name);
  return names;
}

String importSentence(const std::vector<std::unique_ptr<XMLElement>>& portfolios) {
  const auto count = static_cast<std::int64_t>(portfolios.size());
  return count == 1 ? u"Import of " + elementAs<XMLSharePortfolio>(*portfolios[0]).portfolioName()
                    : u"Import of " + String::fromLong(count) + u" portfolios";
}

} // namespace

TotalCapTreeItem::TotalCapTreeItem(InvestmentTree* tree, OpenPortfolios& portfolios, XMLPortfolios& records,
                                   const NodeIcons& icons, Progress* progress)
    : InvestmentTreeItem(tree, nullptr, u"Total Investment Capital", nullptr, nullptr),
      m_portfolios(&portfolios), m_records(&records), m_icons(icons) {
  if (RecordChanges* const changes = RecordChanges::current())
    changes->beforeOtherElements([this] { stopReading(); });
  buildView([&] { loadPortfolios(progress); });
}

TotalCapTreeItem::~TotalCapTreeItem() {
  if (RecordChanges* const changes = RecordChanges::current())
    changes->beforeOtherElements({});
  HandlerScope::forget(this);
  HandlerScope::forget(m_portfolios);
  HandlerScope::forget(m_records);
}

void TotalCapTreeItem::loadPortfolios(Progress* progress) {
  while (TreeViewItem* child = firstChild())
    tree()->removeItem(child);
  shareLimitsOfHoldings();
  for (const auto& [name, portfolio] : *m_portfolios) {
    if (progress)
      progress->step(1, String(u"Loading ") + name);
    tree()->makeItemVisible(new SharePortfolioTreeItem(investmentTree(), this, *portfolio));
  }
}

void TotalCapTreeItem::reload(const TreeState& state) {
  loadPortfolios(nullptr);
  bringAllUpToDate();
  state.restore();
}

void TotalCapTreeItem::reloadPortfolios(const String& showPortfolio) {
  HandlerScope::whenDone(this, [this, showPortfolio] {
    m_portfoliosChanged = true;
    reload(TreeState(*investmentTree()));
    if (SharePortfolioTreeItem* shown = portfolioNode(showPortfolio))
      shown->activate();
  });
}

std::vector<SharePortfolioTreeItem*> TotalCapTreeItem::portfolioNodes() const {
  std::vector<SharePortfolioTreeItem*> nodes;
  for (TreeViewItem* child = firstChild(); child; child = child->nextSibling())
    nodes.push_back(static_cast<SharePortfolioTreeItem*>(child));
  return nodes;
}

SharePortfolioTreeItem* TotalCapTreeItem::portfolioNode(const String& name) const {
  for (SharePortfolioTreeItem* node : portfolioNodes())
    if (node->portfolio().name() == name)
      return node;
  return nullptr;
}

bool TotalCapTreeItem::takePortfoliosChanged() {
  if (!isSound())
    return false;
  return std::exchange(m_portfoliosChanged, false);
}

// ---- What waits for idle time ----

bool TotalCapTreeItem::bringNextUpToDate() {
  for (SharePortfolioTreeItem* node : portfolioNodes()) {
    if (!node->isUpToDate()) {
      node->ensureRecord();
      return true;
    }
    if (SharesHeldTreeItem* held = node->sharesHeldItem(); held && held->checkNextLimit())
      return true;
  }
  return false;
}

void TotalCapTreeItem::bringAllUpToDate() {
  for (SharePortfolioTreeItem* node : portfolioNodes())
    node->bringUpToDate();
  recordCame();
  while (bringNextUpToDate()) { // the limits
  }
}

bool TotalCapTreeItem::isComplete() const {
  const auto nodes = portfolioNodes();
  return std::all_of(nodes.begin(), nodes.end(),
                     [](const SharePortfolioTreeItem* node) { return node->isUpToDate(); });
}

void TotalCapTreeItem::recordCame() {
  if (!m_views)
    return;
  if (isComplete())
    m_views->showAll(listOf(*m_portfolios));
  else
    m_views->showKnown();
}

// ---- The page ----

void TotalCapTreeItem::makeViews() {
  m_views = std::make_unique<TotalCapPage>(*this, isComplete() ? listOf(*m_portfolios) : Portfolios());
}

void TotalCapTreeItem::viewsGone() {
  m_views.reset();
}

void TotalCapTreeItem::freshenViews() {
  if (m_views)
    m_views->freshen();
}

PerformanceView* TotalCapTreeItem::performance() {
  page();
  return m_views ? &m_views->performance() : nullptr;
}

void TotalCapTreeItem::figuresChanged() {
  if (m_views)
    m_views->tableChanged(false);
}

void TotalCapTreeItem::transactionMade() {
  m_portfoliosChanged = true;
  if (m_views)
    m_views->recordsChanged();
}

void TotalCapTreeItem::update() {
  const bool isFilled = takePageIsNew();
  if (!isSound())
    return;
  makeRecordsCurrent();
  if (m_views && !isFilled)
    m_views->update();
}

FXint TotalCapTreeItem::onLeftClick(FXint x, FXint y) {
  if (isSound())
    makeRecordsCurrent();
  return InvestmentTreeItem::onLeftClick(x, y);
}

void TotalCapTreeItem::makeRecordsCurrent() {
  for (SharePortfolioTreeItem* node : portfolioNodes())
    if (node->isUpToDate())
      node->makeRecordCurrent();
}

// ---- New, renamed and deleted portfolios ----

FXint TotalCapTreeItem::onRightClick(FXint x, FXint y) {
  return static_cast<FXint>(guardedHandler(u"TotalCapTreeItem::onRightClick failed.", [&] {
    if (!checkSound())
      return;
    ContextMenu menu(tree(), this);
    menu.addCommand(u"New Share Portfolio...", ID_NEW_SHARE_PORTFOLIO);
    menu.run(x, y);
  }));
}

long TotalCapTreeItem::onNewSharePortfolio(FXObject*, FXSelector, void*) {
  return guardedHandler(u"TotalCapTreeItem::onNewSharePortfolio failed.", [this] { newSharePortfolio(); });
}

void TotalCapTreeItem::newSharePortfolio() {
  HandlerScope scope;
  if (!checkSound())
    return;
  GetStringDialog dialog(&MainWindow::Instance(), u"New Portfolio",
                         u"Please enter the name for your new portfolio.", String(), cleanName);
  if (dialog.execute() == 0)
    return;
  if (checkNewName(dialog.text()))
    makePortfolio(dialog.text());
}

bool TotalCapTreeItem::checkNewName(const String& name) const {
  if (!m_portfolios->contains(name))
    return true;
  MainWindow::error(u"There is already another portfolio with this name!");
  return false;
}

void TotalCapTreeItem::makePortfolio(const String& name) {
  makeChange(u"New portfolio " + name, [&] {
    XMLSharePortfolio& portfolio = m_records->portfolios().add();
    portfolio.setPortfolioName(name);
    m_portfolios->emplace(name, std::make_unique<SharePortfolioUser>(portfolio, gatewayPrices()));
  });
  reloadPortfolios(name);
}

void TotalCapTreeItem::openPortfolio(std::unique_ptr<SharePortfolioUser> portfolio) {
  const String name = portfolio->name();
  const auto open = [&] { m_portfolios->emplace(name, std::move(portfolio)); };
  if (RecordChanges* const changes = RecordChanges::current())
    changes->take(u"New portfolio " + name, open);
  else
    open();
  reloadPortfolios(name);
}

void TotalCapTreeItem::renamePortfolio(const String& oldName, const String& newName) {
  if (!checkSound())
    return;
  const String name = cleanName(newName);
  if (!m_portfolios->contains(oldName) || name.empty() || name == oldName || !checkNewName(name))
    return;
  TreeState state(*investmentTree());
  state.rename(oldName, name);
  makeChange(u"Renaming of " + oldName + u" to " + name,
             [&] { Tallymoor::renamePortfolio(*m_portfolios, oldName, name); });
  renameOutsideRecords(oldName, name);
  m_portfoliosChanged = true;
  HandlerScope::whenDone(this, [this, state] { reload(state); });
}

void TotalCapTreeItem::removeChild(TreeViewItem* child) {
  if (!checkSound())
    return;
  const String name = static_cast<SharePortfolioTreeItem*>(child)->portfolio().name();
  // By name: the node may have been rebuilt by then.
  HandlerScope::whenDone(this, [this, name] { deletePortfolio(name); });
}

void TotalCapTreeItem::deletePortfolio(const String& name) {
  const auto found = m_portfolios->find(name);
  if (found == m_portfolios->end())
    return;
  const String file = found->second->capitalRecord().fileName();
  changePortfolios(u"Deletion of portfolio " + name, [&] {
    dropNode(name);
    removePortfolio(*m_portfolios, *m_records, name);
  });
  BackgroundWriting::finish(); // of a save
  removeFile(file);
}

void TotalCapTreeItem::changePortfolios(const String& sentence, const std::function<void()>& command) {
  const TreeState state(*investmentTree());
  m_portfoliosChanged = true;
  try {
    makeChange(sentence, command);
  } catch (...) {
    reload(state);
    throw;
  }
  reload(state);
  updateBranch();
}

/// What refers to a portfolio goes before that.
void TotalCapTreeItem::dropNode(const String& name) {
  if (SharePortfolioTreeItem* node = portfolioNode(name))
    tree()->removeItem(node);
  if (m_views)
    m_views->setPortfolios(isComplete() ? listOf(*m_portfolios, name) : Portfolios());
}

void TotalCapTreeItem::takePortfolios(std::vector<std::unique_ptr<XMLElement>> imported,
                                      const std::function<void()>& afterwards) {
  if (!checkSound())
    return;
  const auto waiting = std::make_shared<std::vector<std::unique_ptr<XMLElement>>>(std::move(imported));
  HandlerScope::whenDone(this, [this, waiting, afterwards] {
    changePortfolios(importSentence(*waiting), [this, &waiting] {
      for (auto& portfolio : *waiting) {
        const String name = elementAs<XMLSharePortfolio>(*portfolio).portfolioName();
        if (m_portfolios->contains(name)) {
          dropNode(name);
          removePortfolio(*m_portfolios, *m_records, name);
        }
        addPortfolio(*m_portfolios, *m_records, std::move(portfolio));
      }
    });
    afterwards();
  });
}

// ---- Undo and redo ----

void TotalCapTreeItem::undo() {
  RecordChanges* const changes = RecordChanges::current();
  if (!changes || !checkSound())
    return;
  changes->noticeRest();
  if (const Journal::Entry* const change = changes->toUndo())
    goOver(change->isOfWholePortfolios, [changes] { changes->undo(); });
}

void TotalCapTreeItem::redo() {
  RecordChanges* const changes = RecordChanges::current();
  if (!changes || !checkSound())
    return;
  changes->noticeRest();
  if (const Journal::Entry* const change = changes->toRedo())
    goOver(change->isOfWholePortfolios, [changes] { changes->redo(); });
}

void TotalCapTreeItem::goBackTo(std::uint64_t number) {
  RecordChanges* const changes = RecordChanges::current();
  if (!changes || !checkSound())
    return;
  const auto differs = std::make_shared<bool>(true);
  goOver(true, [changes, number, differs] {
    const WaitCursor wait;
    *differs = changes->goBackTo(number);
  });
  HandlerScope::whenDone(m_records, [differs] { // not before the nodes are there again
    if (!*differs)
      MainWindow::information(u"Nothing was taken back: your portfolios are as they were after that change.");
  });
}

void TotalCapTreeItem::goOver(bool isOfWholePortfolios, const std::function<void()>& operation) {
  const auto keepingLimits = [this, operation] {
    const LimitsOfStocks before = limitsOfHoldings(*m_portfolios);
    operation();
    keepChangedLimits(*m_portfolios, before);
  };
  if (!isOfWholePortfolios) {
    keepingLimits(); // the nodes are told when it comes to their records
    return;
  }
  HandlerScope::whenDone(this, [this, keepingLimits] { withoutNodes(keepingLimits); });
}

void TotalCapTreeItem::replaceAll(const String& sentence, std::shared_ptr<XMLPortfolios> others,
                                  const std::function<void()>& afterwards) {
  RecordChanges* const changes = RecordChanges::current();
  if (!changes || !checkSound())
    return;
  HandlerScope::whenDone(this, [this, changes, sentence, others = std::move(others), afterwards] {
    withoutNodes([&] {
      const LimitsOfStocks before = limitsOfHoldings(*m_portfolios);
      changes->replaceAll(sentence, *others);
      keepChangedLimits(*m_portfolios, before);
    });
    afterwards();
  });
}

/// For what may change which portfolios there are, under any names.
void TotalCapTreeItem::withoutNodes(const std::function<void()>& operation) {
  TreeState state(*investmentTree());
  const std::set<String> before = namesOf(*m_portfolios);
  m_portfoliosChanged = true;
  if (m_views)
    m_views->setPortfolios(Portfolios());
  while (TreeViewItem* child = firstChild())
    tree()->removeItem(child);
  try {
    operation();
  } catch (...) {
    reload(state);
    throw;
  }
  if (RecordChanges* const changes = RecordChanges::current())
    for (const auto& [oldName, newName] : changes->lastRenamings())
      if (before.contains(oldName) && !before.contains(newName) && m_portfolios->contains(newName)) {
        state.rename(oldName, newName);
        renameOutsideRecords(oldName, newName);
      }
  reload(state);
  updateBranch();
}

void TotalCapTreeItem::priceTyped(const String& code, const Date& date, double price) {
  for (const auto& [name, portfolio] : *m_portfolios)
    portfolio->capitalRecord().historicalPriceChanged(code, date, price);
  pricesCorrected();
}

void TotalCapTreeItem::pricesCorrected() {
  // Waits under a name of its own, so that it never takes the place of a change of the portfolios.
  HandlerScope::whenDone(m_portfolios, [this] { tree()->updateItems(); });
}

void TotalCapTreeItem::limitsTyped(const String& code, const PriceLimits& limits) {
  const PriceLimits before = PriceLimits::ofStock(code);
  try {
    makeChange(u"Limits of " + code, [&] { shareLimits(*m_portfolios, code, limits); });
  } catch (...) {
    before.keepForStock(code); // in the settings, which are no part of the records
    throw;
  }
  for (const SharePortfolioTreeItem* node : portfolioNodes())
    if (SharesHeldTreeItem* held = node->sharesHeldItem())
      held->limitsChanged();
  Settings::Instance().commit(); // last, since a full disk must not keep the rest from being shown
}

// Nothing of the user's is lost when that fails: the next change tells why.
void TotalCapTreeItem::shareLimitsOfHoldings() {
  try {
    m_sharedLimits.bringTogether(*m_portfolios);
  } catch (const Exception&) { // NOLINT(bugprone-empty-catch)
  }
}

// As a transaction, for all portfolios at once. Limits are left alone: this also follows when they could not
// be shared.
void TotalCapTreeItem::stopReading() {
  const auto nodes = portfolioNodes();
  if (nodes.empty())
    return;
  transactionMade();
  for (SharePortfolioTreeItem* node : nodes)
    node->stopReading();
  HandlerScope::whenDone(this, [this] {
    makeRecordsCurrent();
    tree()->updateItems();
  });
}

} // namespace Tallymoor
