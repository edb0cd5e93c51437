#include "books/CapitalRecordWalk.h"
#include "books/PortfolioEvents.h"
#include "books/SplitTerms.h"
#include "foundation/Amounts.h"
#include "foundation/LengthyFunctions.h"
#include "market/HistoryPage.h"
#include "market/MarketPrices.h"
#include "xml/PortfolioRecords.h"
#include <algorithm>
#include <utility>

namespace Tallymoor {

WalkedPortfolio::~WalkedPortfolio() = default;

CapitalRecordWalk::CapitalRecordWalk(WalkedPortfolio& portfolio, MarketPrices& prices, WalkedRecords& records)
    : m_portfolio(portfolio), m_prices(prices), m_cash(records.cash), m_parcels(records.parcels),
      m_cashTotal(moneyText(0.0)) {
  m_cash.read(m_portfolio.portfolio());
  readParcels();
  std::stable_sort(m_changes.begin(), m_changes.end(),
                   [](const Change& a, const Change& b) { return a.day < b.day; });
}

CapitalRecordWalk::~CapitalRecordWalk() = default;

void CapitalRecordWalk::readParcels() {
  m_parcels.read(m_portfolio.portfolio());
  std::size_t rank = 0;
  for (const WalkedParcels::Stock* kept : m_parcels.stocks()) {
    if (kept->parcels.empty())
      continue;
    Stock& stock = stockOf(kept->code);
    stock.parcels.push_back({&kept->parcels, rank});
    rank += kept->parcels.size();
    for (const WalkedParcels::Parcel& parcel : kept->parcels)
      noteChanges(parcel, static_cast<std::size_t>(&stock - m_stocks.data()));
  }
}

CapitalRecordWalk::Stock& CapitalRecordWalk::stockOf(const String& code) {
  const auto [place, isNew] = m_places.try_emplace(code, m_stocks.size());
  if (isNew)
    m_stocks.emplace_back().code = code;
  return m_stocks[place->second];
}

void CapitalRecordWalk::noteChanges(const WalkedParcels::Parcel& parcel, std::size_t stock) {
  m_changes.push_back({parcel.from, stock});
  if (parcel.sold)
    m_changes.push_back({parcel.until, stock});
  if (parcel.adjusted.empty())
    return;
  // Adjustments don't count on the day of purchase itself.
  m_changes.push_back({parcel.from.plusDays(1), stock});
  for (const Date& start : parcel.adjusted)
    m_changes.push_back({start, stock});
}

const String& CapitalRecordWalk::cashTotal(const Date& day) {
  const std::vector<Date>& days = m_cash.days();
  const auto passed =
      std::upper_bound(days.begin() + static_cast<std::ptrdiff_t>(m_nextCashDay), days.end(), day);
  const auto next = static_cast<std::size_t>(passed - days.begin());
  if (next == m_nextCashDay)
    return m_cashTotal;
  m_nextCashDay = next;
  // Summed in the order of the records: another order could differ in the last digit, or in the sign of
  // nothing.
  double total = 0.0;
  for (const WalkedCash::Entry& event : m_cash.entries())
    if (event.day <= day)
      total += event.value;
  m_cashTotal = moneyText(total);
  return m_cashTotal;
}

String CapitalRecordWalk::cashInjected(const Date& day) const {
  if (!std::binary_search(m_cash.days().begin(), m_cash.days().end(), day))
    return String();
  double injected = 0.0;
  for (const WalkedCash::Entry& event : m_cash.entries())
    if (event.external && event.day == day)
      injected += event.value;
  return showsAsZero(injected, 2) ? String() : moneyText(injected);
}

void CapitalRecordWalk::advanceTo(const Date& day) {
  bool changed = false;
  for (; m_nextChange < m_changes.size() && m_changes[m_nextChange].day <= day; ++m_nextChange) {
    m_stocks[m_changes[m_nextChange].stock].stale = true;
    changed = true;
  }
  if (!changed)
    return;
  m_held.clear();
  for (std::size_t i = 0; i < m_stocks.size(); ++i) {
    if (m_stocks[i].stale)
      recompute(m_stocks[i], day);
    if (m_stocks[i].rank != NOT_HELD)
      m_held.push_back(i);
  }
  std::sort(m_held.begin(), m_held.end(),
            [this](std::size_t a, std::size_t b) { return m_stocks[a].rank < m_stocks[b].rank; });
}

void CapitalRecordWalk::recompute(Stock& stock, const Date& day) {
  stock.stale = false;
  stock.rank = NOT_HELD;
  stock.number = numberText(0.0);
  double divided = 0.0;
  for (const auto& [parcels, firstRank] : stock.parcels) {
    for (std::size_t i = 0; i < parcels->size(); ++i) {
      const WalkedParcels::Parcel& parcel = (*parcels)[i];
      if (parcel.from > day || parcel.until <= day)
        continue;
      if (stock.rank == NOT_HELD)
        stock.rank = firstRank + i;
      const bool isKnown = parcel.number && !stock.adjusted;
      const double number = isKnown ? *parcel.number : sharesOn(*parcel.event, day).number;
      if (parcel.divided)
        divided += number;
      else
        stock.number = numberText(stock.number.toDouble() + number);
    }
  }
  if (!showsAsZero(divided, 2))
    stock.number = numberText(stock.number.toDouble() + divided);
}

/// What the walk will ask for from the day on: of each stock the days on which it is held and, for splits,
/// the day before each purchase. Today's price is a current one.
std::vector<HistoryNeed> CapitalRecordWalk::pricesFrom(const Date& day) const {
  const Date last = Date::hasFixedDate() ? Date() : Date().plusDays(-1);
  std::vector<HistoryNeed> held;
  for (const Stock& stock : m_stocks)
    for (const Parcels& parcels : stock.parcels)
      for (const WalkedParcels::Parcel& parcel : *parcels.all)
        held.push_back({stock.code, std::max(parcel.from, day), std::min(parcel.until.plusDays(-1), last)});
  std::erase_if(held, [](const HistoryNeed& days) { return days.first > days.last; });
  std::stable_sort(held.begin(), held.end(),
                   [](const HistoryNeed& a, const HistoryNeed& b) { return a.first < b.first; });
  std::vector<HistoryNeed> needs;
  for (const HistoryNeed& days : held) {
    needs.push_back({days.code, days.first, days.first});
    needs.push_back({days.code, days.first.plusDays(-1), days.last});
  }
  return needs;
}

bool CapitalRecordWalk::isCancelled(const Progress* progress) const {
  return (progress && progress->isCancelled()) || m_portfolio.isStopWanted();
}

/// Has the prices of all stocks from the day on fetched when that of the stock is missing. False when it was
/// cancelled.
bool CapitalRecordWalk::fetchPrices(const Stock& stock, const Date& day, Progress* progress) const {
  return day >= Date::realToday() || !m_prices.isToBeFetched(stock.code, day) ||
         m_prices.completeHistory(pricesFrom(day), progress);
}

void CapitalRecordWalk::announceFetch(Stock& stock, const Date& day, Progress* progress) {
  if (!progress)
    return;
  stock.historyKnown = stock.historyKnown || m_prices.hasCachedHistory(stock.code);
  // A page is asked for again where the last one ends; the price of today comes with the current ones.
  if (!stock.historyKnown || (day < Date::realToday() && !m_prices.hasCachedPrice(stock.code, day)))
    progress->setText(u"Retrieving historical prices for " + stock.code);
}

const std::vector<CapitalRecordWalk::Holding>* CapitalRecordWalk::holdings(const Date& day,
                                                                           Progress* progress) {
  advanceTo(day);
  m_holdings.clear();
  for (std::size_t place : m_held) {
    Stock& stock = m_stocks[place];
    if (!fetchPrices(stock, day, progress))
      return nullptr;
    announceFetch(stock, day, progress);
    if (isCancelled(progress))
      return nullptr;
    const CheckedPrice checked = m_portfolio.checkPriceForSplit(stock.code, day);
    if (isCancelled(progress))
      return nullptr; // its fetch may have been broken off, and the price a stand-in
    if (checked.adjusted) {
      stock.adjusted = true;
      recompute(stock, day);
    }
    if (stock.price.empty() || checked.price.price != stock.lastPrice) {
      stock.price = recordedPriceText(checked.price.price);
      stock.lastPrice = checked.price.price;
    }
    m_holdings.push_back({stock.code, stock.number, stock.price, checked.price.standing});
  }
  return &m_holdings;
}

CapitalRecordWalk::SplitCheck CapitalRecordWalk::checkForSplits(const Date& day) {
  advanceTo(day);
  SplitCheck check;
  for (std::size_t place : m_held) {
    try {
      check.adjusted |= m_portfolio.checkPriceForSplit(m_stocks[place].code, day).adjusted;
    } catch (const Exception&) {
      // A day that is already recorded stays; a stock that is still held fails again where its next day is
      // computed.
      check.complete = false;
    }
  }
  return check;
}

} // namespace Tallymoor
