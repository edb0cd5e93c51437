#include "books/SharePortfolioCapitalRecordUser.h"
#include "books/CapitalRecordWalk.h"
#include "foundation/Amounts.h"
#include "foundation/Exception.h"
#include "foundation/RunTimeSettings.h"
#include "market/HistoryNeed.h"
#include "market/MarketPrices.h"
#include <algorithm>

namespace Tallymoor {

namespace {

constexpr int LONGEST_QUIET_UPDATE = 15; ///< from so many days on, an update shows its progress
constexpr unsigned DAYS_OF_A_STEP = 30;
constexpr int UPDATE_WALK = 3; ///< the argument by which the progress dialog asks for the walk

/// Marks an update for its time, also when it fails.
class UpdateScope {
public:
  UpdateScope(WalkedPortfolio*& updating, WalkedPortfolio& portfolio) : m_updating(updating) {
    m_updating = &portfolio;
  }
  ~UpdateScope() { m_updating = nullptr; }
  UpdateScope(const UpdateScope&) = delete;
  UpdateScope& operator=(const UpdateScope&) = delete;

private:
  WalkedPortfolio*& m_updating;
};

bool isOfAnotherMonth(const Date& day, const Date& before) {
  return day.month() != before.month() || day.year() != before.year();
}

} // namespace

SharePortfolioCapitalRecordUser::SharePortfolioCapitalRecordUser(const String& name, MarketPrices& prices)
    : CapitalRecord(name), m_prices(prices) {
  m_prices.addRecord(*this);
}

SharePortfolioCapitalRecordUser::~SharePortfolioCapitalRecordUser() {
  m_prices.removeRecord(*this);
}

void SharePortfolioCapitalRecordUser::dropDaysAfterToday() {
  // While a view date is set, the days after it are no strays: they come back with today.
  if (!Date::hasFixedDate())
    recordsChangedFrom(Date().plusDays(1));
}

Date SharePortfolioCapitalRecordUser::nextDay(const WalkedPortfolio& portfolio) const {
  const std::optional<Date> last = lastRecordDate();
  return last ? last->plusDays(1) : portfolio.portfolioStartDate();
}

void SharePortfolioCapitalRecordUser::update(WalkedPortfolio& portfolio) {
  if (m_updating || inBackgroundPass)
    return;
  const UpdateScope scope(m_updating, portfolio);
  dropDaysAfterToday();
  settlePrices();
  askAboutToldSplits(portfolio);
  updateDays(portfolio);
  // The pages that were fetched for the missing days may have told of others.
  if (isToBeRecomputed())
    updateDays(portfolio);
}

/// The walk asks about those of the days that it computes. Others may be told of days that are long computed;
/// each is looked at once.
void SharePortfolioCapitalRecordUser::askAboutToldSplits(WalkedPortfolio& portfolio) {
  for (const auto& [code, day] : m_prices.toldSplitDays()) {
    if (day > Date() || !holdingOn(code, day) || !m_splitsAskedAbout.insert({code, day}).second)
      continue;
    try {
      if (portfolio.checkPriceForSplit(code, day).adjusted)
        recomputeFrom(day);
    } catch (const Exception&) {
      // Without a price nothing is asked; the day is computed again when one comes.
    }
  }
}

const WalkedCash& SharePortfolioCapitalRecordUser::cashOf(const XMLSharePortfolio& portfolio) {
  m_records.cash.read(portfolio);
  return m_records.cash;
}

void SharePortfolioCapitalRecordUser::updateDays(WalkedPortfolio& portfolio) {
  if (const std::optional<Date> changed = takeRecomputeFrom())
    recordsChangedFrom(*changed);
  const Date today;
  if (hasDayCap(today) || nextDay(portfolio) > today)
    return;
  checkLastDayForSplits(portfolio);
  const int days = today.daysSince(nextDay(portfolio));
  if (days < LONGEST_QUIET_UPDATE)
    updateTo(portfolio, nullptr);
  else
    portfolio.runLengthy(u"Updating daily capital records for " + name(),
                         u"Updating daily capital records from portfolio records      ",
                         static_cast<unsigned>(days) / DAYS_OF_A_STEP, *this, UPDATE_WALK);
}

void SharePortfolioCapitalRecordUser::runLengthyFunction(Progress& progress, int argument) {
  if (m_updating && argument == UPDATE_WALK)
    updateTo(*m_updating, &progress);
}

void SharePortfolioCapitalRecordUser::checkLastDayForSplits(WalkedPortfolio& portfolio) {
  const std::optional<Date> last = lastRecordDate();
  // A price that came in during the day replaced the day's without a question, since none may be asked then.
  if (!last || m_splitLook == SplitLook{*last, splitRatioDetect, reverseSplitRatioDetect})
    return;
  const CapitalRecordWalk::SplitCheck found =
      CapitalRecordWalk(portfolio, m_prices, m_records).checkForSplits(*last);
  if (found.adjusted)
    recordsChangedFrom(*last);
  else if (found.complete)
    m_splitLook = {*last, splitRatioDetect, reverseSplitRatioDetect};
}

void SharePortfolioCapitalRecordUser::daysChanged(const Date& first, const Date& last) {
  if (first == Date(0u))
    m_settled.reset(); // the record may have been read
  if (m_splitLook && first <= m_splitLook->day && m_splitLook->day <= last)
    m_splitLook.reset();
}

void SharePortfolioCapitalRecordUser::updateTo(WalkedPortfolio& portfolio, Progress* progress) {
  CapitalRecordWalk walk(portfolio, m_prices, m_records);
  const Date today;
  Date before = nextDay(portfolio);
  for (Date day = before; day <= today; day.addDays(1)) {
    if (progress && isOfAnotherMonth(day, before)) {
      progress->setText(u"updating capital record for month " + String::fromLong(day.year()) + u" " +
                        String(Date::monthName(day.month())));
      progress->step(1, String());
    }
    before = day;
    if (!computeDay(walk, day, progress))
      return;
  }
}

/// False when the user has cancelled.
bool SharePortfolioCapitalRecordUser::computeDay(CapitalRecordWalk& walk, const Date& day,
                                                 Progress* progress) {
  // Only a day on which each stock has a price becomes part of the record.
  const std::vector<CapitalRecordWalk::Holding>* holdings = walk.holdings(day, progress);
  if (!holdings)
    return false;
  addDay(day, walk.cashTotal(day), walk.cashInjected(day));
  for (const CapitalRecordWalk::Holding& holding : *holdings) {
    if (isStandIn(holding.standing))
      m_settled.reset();
    addHolding(holding.code, holding.number, holding.price, holding.standing);
  }
  return !progress || !progress->isCancelled();
}

// --- Prices that come later

void SharePortfolioCapitalRecordUser::currentPriceUpdated(const String& code, double price) {
  setPrice(code, Date(), {price, PriceStanding::Open});
}

bool SharePortfolioCapitalRecordUser::wantsHistory(const String& code) const {
  if (!isLoaded())
    return false;
  const auto unsettled = unsettledPrices().find(code);
  if (unsettled == unsettledPrices().end())
    return false;
  const HistoryRange recent = m_prices.recentRange();
  return std::any_of(unsettled->second.begin(), unsettled->second.end(), [&](const Date& day) {
    const std::optional<DayPrice> price = priceOn(code, day);
    // That of today comes with the current prices.
    return day < Date::realToday() && recent.contains(day) && price && isStandIn(price->standing) &&
           !m_prices.hasAnsweredFor(code, day);
  });
}

void SharePortfolioCapitalRecordUser::historicalPriceChanged(const String& code, const Date& date,
                                                             double close) {
  if (showsAsZero(close)) {
    if (holdingOn(code, date))
      recomputeFrom(date);
    return;
  }
  const std::optional<KnownClose> known = m_prices.closeOn(code, date);
  setPrice(code, date, {close, known && known->isFinal ? PriceStanding::Final : PriceStanding::Open});
}

void SharePortfolioCapitalRecordUser::pricesForgotten() {
  recomputeFrom(firstRecordDate());
  removeFile();
}

/// Looks for the closes that were missing, or may have been those of a day that was not over. Most updates
/// follow a transaction, which changes no price.
void SharePortfolioCapitalRecordUser::settlePrices() {
  if (Date::hasFixedDate())
    return;
  const auto now = [this] { return SettledAt{m_prices.changeStamp(), Date::realToday()}; };
  if (m_settled == now())
    return;
  // A fetch tells this record of what it brings, which changes the index.
  const UnsettledPrices unsettled = unsettledPrices();
  const std::vector<HistoryNeed> needs = unsettledNeeds();
  if (!needs.empty())
    m_prices.completeHistory(needs, nullptr);
  for (const auto& [code, days] : unsettled)
    for (const Date& day : days)
      settlePrice(code, day);
  m_settled = needs.empty() ? std::optional(now()) : std::nullopt;
}

std::vector<HistoryNeed> SharePortfolioCapitalRecordUser::unsettledNeeds() const {
  std::vector<HistoryNeed> needs;
  for (const auto& [code, days] : unsettledPrices())
    addNeeds(needs, code, days);
  return needs;
}

void SharePortfolioCapitalRecordUser::addNeeds(std::vector<HistoryNeed>& needs, const String& code,
                                               const std::set<Date>& days) const {
  std::optional<Date> firstOpen;
  std::optional<Date> firstMissing, lastMissing;
  for (const Date& day : days) {
    const std::optional<KnownClose> known = m_prices.closeOn(code, day);
    if (known && !known->isFinal && !firstOpen && day < Date::realToday())
      firstOpen = day;
    if (known)
      continue;
    firstMissing = firstMissing.value_or(day);
    lastMissing = day;
  }
  if (firstMissing)
    needs.push_back({code, *firstMissing, *lastMissing, HistoryNeed::Kind::Backward});
  if (firstOpen)
    needs.push_back({code, *firstOpen, *firstOpen, HistoryNeed::Kind::Refresh});
}

/// Takes over what the cache knows of the day; it may have been fetched while this record was not there to
/// hear of it.
void SharePortfolioCapitalRecordUser::settlePrice(const String& code, const Date& day) {
  if (const std::optional<KnownClose> known = m_prices.closeOn(code, day))
    if (known->isFinal || (priceOn(code, day) && isStandIn(priceOn(code, day)->standing)))
      historicalPriceChanged(code, day, known->close);
}

} // namespace Tallymoor
