#include "views/SharesHeldTable.h"
#include "analysis/ShareAsOfDay.h"
#include "books/SharePortfolioUser.h"
#include "foundation/Amounts.h"
#include "foundation/NotYetKnown.h"
#include "foundation/Platform.h"
#include "market/TallymoorInternet.h"
#include "views/HeldShareCells.h"
#include "views/HeldShareColumns.h"
#include "views/PortfolioCommands.h"
#include "views/PriceHistoryDialog.h"
#include "views/PriceLimits.h"
#include "widgets/ContextMenu.h"
#include "widgets/HandlerScope.h"
#include "widgets/MainWindow.h"
#include "xml/Leaves.h"
#include <algorithm>
#include <map>
#include <set>
#include <utility>

namespace Tallymoor {

FXDEFMAP(SharesHeldTable)
SharesHeldTableMap[] = {
    FXMAPFUNC(SEL_COMMAND, SharesHeldTable::ID_SELL, SharesHeldTable::onSell),
    FXMAPFUNC(SEL_COMMAND, SharesHeldTable::ID_BUY, SharesHeldTable::onBuy),
    FXMAPFUNC(SEL_COMMAND, SharesHeldTable::ID_DELETE, SharesHeldTable::onDelete),
    FXMAPFUNC(SEL_COMMAND, SharesHeldTable::ID_HISTORY, SharesHeldTable::onHistory),
};

FXIMPLEMENT_ABSTRACT(SharesHeldTable, PortfolioTable, SharesHeldTableMap, ARRAYNUMBER(SharesHeldTableMap))

SharesHeldTable::SharesHeldTable(SharePortfolioUser& portfolio, PortfolioCommands& commands,
                                 FXComposite* parent, Watcher* watcher)
    : SharesHeldTable(portfolio, commands, parent, watcher, COMPARE_TEXT, Unfilled()) {
  updateTable();
}

SharesHeldTable::SharesHeldTable(SharePortfolioUser& portfolio, PortfolioCommands& commands,
                                 FXComposite* parent, Watcher* watcher, std::int32_t rowCompareType, Unfilled)
    : PortfolioTable(u"Shares Held Table", portfolio, commands, parent, watcher, rowCompareType) {
  TallymoorInternet::Instance().priceUpdater().addObserver(this);
}

SharesHeldTable::~SharesHeldTable() {
  if (TallymoorInternet::exists())
    TallymoorInternet::Instance().priceUpdater().removeObserver(this);
}

void SharesHeldTable::clearShares() {
  clear();
  m_rowData.clear();
  m_rowDataBefore.clear();
  m_viewDateShares.clear();
}

void SharesHeldTable::releaseShares() {
  releaseRows();
  m_rowDataBefore = std::exchange(m_rowData, {});
  m_viewDateShares.clear();
}

void SharesHeldTable::addShare(const String& key, HeldShareRow share) {
  share.portfolio = &portfolio();
  share.table = this;
  const auto before = std::find_if(m_rowDataBefore.begin(), m_rowDataBefore.end(),
                                   [&share](const HeldShareRow& other) { return other.code == share.code; });
  if (before != m_rowDataBefore.end()) {
    keepShare(*before, std::move(share));
    m_rowData.splice(m_rowData.end(), m_rowDataBefore, before);
    return;
  }
  m_rowData.push_back(std::move(share));
  HeldShareRow& added = m_rowData.back();
  auto row = std::make_unique<Row>(key, &added);
  if (added.buyEvent && added.buyEvent->isSetAside())
    row->leaveOutOfTotals();
  added.row = &addRow(std::move(row));
}

/// The portfolio may hold hundreds of shares, of which a transaction changes one.
void SharesHeldTable::keepShare(HeldShareRow& before, HeldShareRow share) {
  share.row = before.row;
  const bool isUnchanged = share.basis && share.basis == before.basis && !before.row->hasFailed();
  if (isUnchanged)
    share.earlierValue = before.earlierValue;
  else
    before.row->resetColour(); // its price may be unavailable now, which tints no row
  before = std::move(share);
  keepRow(*before.row, !isUnchanged);
}

// While the past is shown no current price is asked for, and those of today must still be there when it
// comes back.
void SharesHeldTable::watchShares() {
  if (Date::hasFixedDate())
    return;
  std::set<String> codes;
  for (const HeldShareRow& share : m_rowData)
    codes.insert(share.code);
  m_watchedCodes.watch(codes);
}

void SharesHeldTable::fillTable() {
  try {
    fillWithShares();
  } catch (...) {
    clearShares(); // no row may refer to a share that has gone
    throw;
  }
}

void SharesHeldTable::fillWithShares() {
  if (columns().empty())
    declareHeldShareColumns(*this);
  releaseShares();
  setEmptyText(emptyText());
  const SharePortfolioCapitalRecordUser& record = portfolio().capitalRecord();
  const HeldShareBases stocks(portfolio());
  if (record.hasDayCap(Date()))
    for (const CapitalRecord::Holding& holding : record.holdingsOn(Date()))
      addShareOfDay(holding, stocks);
  watchShares();
  rebuild();
  m_rowDataBefore.clear();
}

String SharesHeldTable::emptyText() const {
  if (Date::hasFixedDate())
    return u"No shares were held on the day shown.";
  if (!portfolio().portfolio().heldShares().empty() && !portfolio().capitalRecord().hasDayCap(Date()))
    return u"This day has not been computed, since that was cancelled.\nClick \"Shares Held\" in the tree to "
           u"have it done.";
  return u"No shares are held.\nRecord a purchase by Portfolios, Buy Shares... (Ctrl+B).";
}

void SharesHeldTable::addShareOfDay(const CapitalRecord::Holding& holding, const HeldShareBases& stocks) {
  HeldShareRow share;
  share.code = holding.code;
  share.numberOnDay = holding.number;
  share.heldShare = stocks.heldShare(share.code);
  share.basis = stocks.of(share.code, holding.number, holding.price.standing);
  if (Date::hasFixedDate())
    if (auto ofThatDay = shareWithParcelsSoldSince(portfolio(), share.code, *share.numberOnDay, Date())) {
      const PriceLimits limits = PriceLimits::ofRow(share);
      portfolio().setMinMax(*ofThatDay, limits.min, limits.max);
      share.heldShare = ofThatDay.get();
      m_viewDateShares.push_back(std::move(ofThatDay));
    }
  if (share.heldShare)
    addShare(holding.code, std::move(share));
}

double SharesHeldTable::percentGainSince(const Date& date) {
  struct Worth {
    double now = 0.0;
    double then = 0.0;
    bool complete = true;
  };
  std::map<String, Worth> worths;
  for (Row* row : rows()) {
    if (!row->countsInTotals())
      continue;
    HeldShareRow& share = row->payload<HeldShareRow>();
    const bool firstOfCode = !worths.contains(share.code);
    Worth& worth = worths[share.code];
    try {
      worth.now += cell(&HeldShareCells::currentValue, *row).amount();
      if (firstOfCode)
        worth.then = earlierValue(share, date);
    } catch (const NotYetKnown&) {
      throw;
    } catch (const Exception&) {
      worth.complete = false;
    }
  }
  double now = 0.0;
  double then = 0.0;
  for (const auto& [code, worth] : worths) {
    now += worth.complete ? worth.now : 0.0;
    then += worth.complete ? worth.then : 0.0;
  }
  return showsAsZero(then) ? 0.0 : (now - then) / then * 100.0;
}

double SharesHeldTable::earlierValue(HeldShareRow& share, const Date& date) {
  const std::uint64_t prices = TallymoorInternet::Instance().changeStamp();
  if (share.earlierValue && share.earlierValue->day == date && share.earlierValue->prices == prices)
    return share.earlierValue->value;
  const double value = heldValueSince(share, date);
  if (share.basis)
    share.earlierValue = {date, prices, value};
  return value;
}

void SharesHeldTable::markPrice(const String& code) {
  markStale(code);
}

void SharesHeldTable::currentPriceUpdated(const String& code, double) {
  markPrice(code);
}

void SharesHeldTable::pricesUpdateFinished() {
  markRoundFinished();
}

void SharesHeldTable::historicalPriceChanged(const String& code, const Date&, double) {
  markPrice(code);
}

void SharesHeldTable::historyArrived(const String& code) {
  markPrice(code);
}

void SharesHeldTable::cellEdited(Column& column, Row& row) {
  const String text = shownText(column, row);
  const HeldShareRow& share = row.payload<HeldShareRow>();
  if (column.function() == &HeldShareCells::priceMinMax)
    limitsEdited(text, share);
  else if (column.function() == &HeldShareCells::priceNow)
    priceEdited(text, share.code);
}

void SharesHeldTable::limitsEdited(const String& text, const HeldShareRow& share) {
  const PriceLimits old = PriceLimits::ofRow(share);
  if (const auto limits = changedLimits(text, old.text(), old))
    commands().limitsTyped(share.code, *limits);
}

void SharesHeldTable::priceEdited(const String& text, const String& code) {
  const double price = Platform::Instance().parseAmount(text);
  if (showsAsZero(price))
    return;
  if (price < 0.0) {
    MainWindow::error(u"The price of " + code + u" can't be less than zero.");
    return;
  }
  const Date date;
  const String question = String(u"Do you want to manually update the price of ") + code + u" on " +
                          date.toString(DATE_DISPLAY_LOCAL) + u" to " +
                          Platform::Instance().currencyFormat(price) + u"?";
  if (!MainWindow::question(question))
    return;
  TallymoorInternet::Instance().setCachedPrice(code, date, price);
  commands().priceTyped(code, date, price);
}

void SharesHeldTable::rowPopup(const TableClick& click) {
  if (!click.row)
    return;
  setInputRow(click.row);
  const HeldShareRow& share = click.row->payload<HeldShareRow>();
  // Under a view date a row may be of a share that has been sold since.
  const bool stillHeld = portfolio().findHeldShare(share.code) != nullptr;
  ContextMenu menu(this, this);
  if (stillHeld)
    menu.addCommand(String(u"Sell ") + share.code + u"...", ID_SELL);
  menu.addCommand(String(u"Buy ") + share.code + u"...", ID_BUY);
  menu.addCommand(u"Price history...", ID_HISTORY);
  if (stillHeld) {
    menu.addSeparator();
    menu.addCommand(u"Delete from records!...", ID_DELETE);
  }
  menu.run(click.screenX, click.screenY);
}

void SharesHeldTable::editRow(Row& row) {
  commands().showPurchases(String(row.payload<HeldShareRow>().code));
}

const String& SharesHeldTable::deletionWarning() {
  static const String WORDS = u"Warning! Deleting this share will affect the Total Capital.\n "
                              u"If you sold this share, use the \"Sell Share\" menu. \nThis "
                              u"action should only be used to correct a mistake. \n";
  return WORDS;
}

long SharesHeldTable::onSell(FXObject*, FXSelector, void*) {
  return guardedHandler(u"SharesHeldTable::onSell failed.", [this] {
    if (const Row* row = inputRow())
      commands().sellShares(String(row->payload<HeldShareRow>().code));
  });
}

long SharesHeldTable::onBuy(FXObject*, FXSelector, void*) {
  return guardedHandler(u"SharesHeldTable::onBuy failed.", [this] {
    if (const Row* row = inputRow())
      commands().buyShares(String(row->payload<HeldShareRow>().code));
  });
}

long SharesHeldTable::onHistory(FXObject*, FXSelector, void*) {
  return guardedHandler(u"SharesHeldTable::onHistory failed.", [this] {
    if (!inputRow())
      return;
    const String code = inputRow()->payload<HeldShareRow>().code;
    PriceHistoryDialog(&MainWindow::Instance(), code, {&portfolio()}).execute();
    commands().pricesCorrected();
  });
}

long SharesHeldTable::onDelete(FXObject*, FXSelector, void*) {
  return guardedHandler(u"SharesHeldTable::onDelete failed.", [this] {
    if (!inputRow())
      return;
    const String code = inputRow()->payload<HeldShareRow>().code;
    if (!MainWindow::question(deletionWarning() + u"Continue to delete all share holdings of " + code + u"?"))
      return;
    commands().change(u"Deletion of all holdings of " + code, [&] { portfolio().removeHeldShare(code); });
  });
}

} // namespace Tallymoor
