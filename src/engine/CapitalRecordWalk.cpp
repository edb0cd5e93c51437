#include "engine/CapitalRecordWalk.h"
#include "engine/CashBalance.h"
#include "engine/PortfolioEvents.h"
#include "engine/SharePortfolioUser.h"
#include "foundation/Amounts.h"
#include "foundation/LengthyFunctions.h"
#include "foundation/UserInteraction.h"
#include "market/TallymoorInternet.h"
#include "xml/PortfolioRecords.h"
#include <algorithm>
#include <utility>

namespace Tallymoor {

namespace {

/// Of a purchase that a sale has divided into parts that are no hundredths.
bool isDivided(const XMLElement& event) {
  return hasFractionOfHundredths(textValue(event, u"NumHeld"));
}

/// True when the user, or the end of the program, wants the walk to end.
bool isCancelled(const Progress* progress) {
  return (progress && progress->isCancelled()) ||
         (UserInteraction::exists() && UserInteraction::Instance().isStopWanted());
}

} // namespace

CapitalRecordWalk::CapitalRecordWalk(SharePortfolioUser& portfolio)
    : m_portfolio(portfolio), m_cashTotal(moneyText(0.0)) {
  readCash();
  readHeldShares();
  readSoldShares();
  std::stable_sort(m_changes.begin(), m_changes.end(),
                   [](const Change& a, const Change& b) { return a.day < b.day; });
}

CapitalRecordWalk::~CapitalRecordWalk() = default;

void CapitalRecordWalk::readCash() {
  const XMLElement& reserve = m_portfolio.portfolio().subElement(u"CashReserve");
  const std::size_t count = reserve.numSubElements(u"CashEvents");
  for (std::size_t i = 0; i < count; ++i) {
    const XMLElement& event = reserve.subElement(u"CashEvents", i);
    m_cash.push_back(
        {dateValue(event, u"Date"), signedAmount(event), isExternalType(longValue(event, u"Type"))});
    m_cashDays.push_back(m_cash.back().day);
  }
  std::sort(m_cashDays.begin(), m_cashDays.end());
  m_cashDays.erase(std::unique(m_cashDays.begin(), m_cashDays.end()), m_cashDays.end());
}

void CapitalRecordWalk::readHeldShares() {
  const XMLElement& stocks = std::as_const(m_portfolio).portfolio().subElement(u"HeldShares");
  for (std::size_t i = 0; i < stocks.numSubElements(u"HeldShares"); ++i) {
    const XMLElement& stock = stocks.subElement(u"HeldShares", i);
    for (std::size_t j = 0; j < stock.numSubElements(u"BuyEvents"); ++j) {
      const XMLElement& event = stock.subElement(u"BuyEvents", j);
      addParcel(textValue(stock, u"Code"),
                {&event, false, isDivided(event), dateValue(event, u"BuyDate"), FAR_OFF, m_parcelCount++});
    }
  }
}

void CapitalRecordWalk::readSoldShares() {
  const XMLElement& stocks = std::as_const(m_portfolio).portfolio().subElement(u"SoldShares");
  for (std::size_t i = 0; i < stocks.numSubElements(u"SoldShares"); ++i) {
    const XMLElement& stock = stocks.subElement(u"SoldShares", i);
    for (std::size_t j = 0; j < stock.numSubElements(u"SellEvents"); ++j) {
      const XMLElement& event = stock.subElement(u"SellEvents", j);
      addParcel(textValue(stock, u"Code"), {&event, true, isDivided(event), dateValue(event, u"BuyDate"),
                                            dateValue(event, u"SellDate"), m_parcelCount++});
    }
  }
}

CapitalRecordWalk::Stock& CapitalRecordWalk::stockOf(const String& code) {
  const auto [place, isNew] = m_places.try_emplace(code, m_stocks.size());
  if (isNew)
    m_stocks.emplace_back().code = code;
  return m_stocks[place->second];
}

void CapitalRecordWalk::addParcel(const String& code, const Parcel& parcel) {
  Stock& stock = stockOf(code);
  stock.parcels.push_back(parcel);
  noteChanges(parcel, static_cast<std::size_t>(&stock - m_stocks.data()));
}

void CapitalRecordWalk::noteChanges(const Parcel& parcel, std::size_t stock) {
  m_changes.push_back({parcel.from, stock});
  if (parcel.sold)
    m_changes.push_back({parcel.until, stock});
  const std::size_t adjustments = parcel.event->numSubElements(u"Adjustments");
  if (adjustments == 0)
    return;
  // Adjustments don't count on the day of purchase itself.
  m_changes.push_back({parcel.from.plusDays(1), stock});
  for (std::size_t i = 0; i < adjustments; ++i)
    m_changes.push_back({dateValue(parcel.event->subElement(u"Adjustments", i), u"StartDate"), stock});
}

const String& CapitalRecordWalk::cashTotal(const Date& day) {
  const auto passed = std::upper_bound(m_cashDays.begin() + static_cast<std::ptrdiff_t>(m_nextCashDay),
                                       m_cashDays.end(), day);
  const auto next = static_cast<std::size_t>(passed - m_cashDays.begin());
  if (next == m_nextCashDay)
    return m_cashTotal;
  m_nextCashDay = next;
  // Summed in the order of the records: another order could differ in the last digit, or in the sign of
  // nothing.
  double total = 0.0;
  for (const CashEvent& event : m_cash)
    if (event.day <= day)
      total += event.value;
  m_cashTotal = moneyText(total);
  return m_cashTotal;
}

String CapitalRecordWalk::cashInjected(const Date& day) const {
  if (!std::binary_search(m_cashDays.begin(), m_cashDays.end(), day))
    return String();
  double injected = 0.0;
  for (const CashEvent& event : m_cash)
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
  for (const Parcel& parcel : stock.parcels) {
    if (parcel.from > day || parcel.until <= day)
      continue;
    if (stock.rank == NOT_HELD)
      stock.rank = parcel.rank;
    if (parcel.divided)
      divided += numberOn(parcel, day);
    else
      stock.number = numberText(stock.number.toDouble() + numberOn(parcel, day));
  }
  if (!showsAsZero(divided, 2))
    stock.number = numberText(stock.number.toDouble() + divided);
}

double CapitalRecordWalk::numberOn(const Parcel& parcel, const Date& day) const {
  double number = 0.0;
  double price = 0.0;
  if (parcel.sold)
    m_portfolio.adjustedSellEvent(*parcel.event, day, number, price);
  else
    m_portfolio.adjustedBuyEvent(*parcel.event, day, number, price, true);
  return number;
}

void CapitalRecordWalk::announceFetch(Stock& stock, const Date& day, Progress* progress) {
  if (!progress)
    return;
  TallymoorInternet& gateway = TallymoorInternet::Instance();
  stock.historyKnown = stock.historyKnown || gateway.hasCachedHistory(stock.code);
  // A page is asked for again where the last one ends; the price of today comes with the current ones.
  if (!stock.historyKnown || (day < Date::realToday() && !gateway.hasCachedPrice(stock.code, day)))
    progress->setText(u"Retrieving historical prices for " + stock.code);
}

const std::vector<CapitalRecordWalk::Holding>* CapitalRecordWalk::holdings(const Date& day,
                                                                           Progress* progress) {
  advanceTo(day);
  m_holdings.clear();
  for (std::size_t place : m_held) {
    Stock& stock = m_stocks[place];
    announceFetch(stock, day, progress);
    if (isCancelled(progress))
      return nullptr;
    const SharePortfolioUser::CheckedPrice checked = m_portfolio.checkPriceForSplit(stock.code, day);
    if (isCancelled(progress))
      return nullptr; // its fetch may have been broken off, and the price a stand-in
    if (checked.adjusted)
      recompute(stock, day);
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
