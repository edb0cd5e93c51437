#include "books/SharePortfolioCapitalRecordUser.h"
#include "books/CapitalRecordWalk.h"
#include "books/PortfolioEvents.h"
#include "books/PortfolioFiles.h"
#include "foundation/Amounts.h"
#include "foundation/Constants.h"
#include "foundation/Exception.h"
#include "foundation/FileReplacement.h"
#include "foundation/RunTimeSettings.h"
#include "foundation/UserInteraction.h"
#include "market/TallymoorInternet.h"
#include "xml/CapitalRecord.h"
#include "xml/DocumentFile.h"
#include <algorithm>
#include <iterator>
#include <utility>

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

const String STANDING = u"Standing";
const String RECOMPUTE_FROM = u"RecomputeFrom";

XMLElement& addShareVal(XMLElement& dayCap, const CapitalRecordWalk::Holding& holding) {
  XMLElement& shareVal = dayCap.addSubElement(XMLShareVal::create(), u"ShareVals");
  shareVal.subElement(u"Code").setValue(holding.code);
  shareVal.subElement(u"Number").setValue(holding.number);
  shareVal.subElement(u"Price").setValue(holding.price);
  return shareVal;
}

PriceStanding standingOf(const XMLElement& shareVal) {
  return shareVal.hasAttribute(STANDING) ? standingNamed(shareVal.attribute(STANDING)) : PriceStanding::Final;
}

bool isOfAnotherMonth(const Date& day, const Date& before) {
  return day.month() != before.month() || day.year() != before.year();
}

} // namespace

SharePortfolioCapitalRecordUser::SharePortfolioCapitalRecordUser(const String& name)
    : m_record(std::make_unique<XMLSharePortfolioCapitalRecord>()), m_fileName(capitalRecordFile(name)),
      m_name(name) {
  load();
  TallymoorInternet::Instance().priceUpdater().addObserver(this, PriceUpdater::Rank::Records);
}

SharePortfolioCapitalRecordUser::~SharePortfolioCapitalRecordUser() {
  if (TallymoorInternet::exists())
    TallymoorInternet::Instance().priceUpdater().removeObserver(this);
}

void SharePortfolioCapitalRecordUser::load() {
  try {
    m_record->reset();
    if (filePresence(m_fileName) != FilePresence::Missing) {
      m_record->decode(m_fileName);
      if (!(textValue(*m_record, u"Name") == m_name))
        throw Exception(
            u"SharePortfolioCapitalRecordUser::load - another portfolio's record, clear and start again");
    }
    indexDays();
    if (m_record->hasAttribute(RECOMPUTE_FROM))
      m_recomputeFrom = Date(m_record->attribute(RECOMPUTE_FROM), DATE_DISPLAY_DMY);
  } catch (const Exception&) {
    // All of it can be worked out again, so there is nothing to tell the user.
    startAgain();
  }
  m_record->subElement(u"Name").setValue(m_name);
  m_modified = false;
}

void SharePortfolioCapitalRecordUser::indexDays() {
  m_dayCaps.clear();
  m_lookUps.clear();
  m_splitLook.reset();
  m_unsettled.clear();
  const std::size_t count = m_record->numSubElements(u"DayCaps");
  for (std::size_t i = 0; i < count; ++i) {
    XMLElement& dayCap = m_record->subElement(u"DayCaps", i);
    const Date day = dateValue(dayCap, u"Date");
    if (!m_dayCaps.empty() && day <= m_dayCaps.rbegin()->first)
      throw Exception(u"SharePortfolioCapitalRecordUser::load - days out of order, clear and start again");
    m_dayCaps.emplace_hint(m_dayCaps.end(), day, &dayCap);
    for (std::size_t j = 0; j < dayCap.numSubElements(u"ShareVals"); ++j) {
      const XMLElement& shareVal = dayCap.subElement(u"ShareVals", j);
      if (standingOf(shareVal) != PriceStanding::Final)
        m_unsettled[textValue(shareVal, u"Code")].insert(day);
    }
  }
}

void SharePortfolioCapitalRecordUser::startAgain() {
  m_dayCaps.clear();
  m_lookUps.clear();
  m_splitLook.reset();
  m_unsettled.clear();
  m_record->reset();
  m_record->subElement(u"Name").setValue(m_name);
}

void SharePortfolioCapitalRecordUser::save() {
  if (!m_modified)
    return;
  saveDocument(m_fileName, *m_record, RECORDS_DTD, newElement<XMLSharePortfolioCapitalRecord>);
  m_modified = false;
}

void SharePortfolioCapitalRecordUser::removeFile() {
  Tallymoor::removeFile(m_fileName);
  m_modified = true;
}

void SharePortfolioCapitalRecordUser::rename(const String& newName) {
  if (newName == m_name)
    return;
  const String oldName = m_name;
  const String oldFile = m_fileName;
  setName(newName);
  m_modified = true;
  try {
    save();
  } catch (const Exception&) {
    setName(oldName);
    throw;
  }
  // A later portfolio of the old name must not take these days for its own.
  Tallymoor::removeFile(oldFile);
}

void SharePortfolioCapitalRecordUser::setName(const String& name) {
  m_name = name;
  m_fileName = capitalRecordFile(name);
  m_record->subElement(u"Name").setValue(name);
}

void SharePortfolioCapitalRecordUser::recordsChangedFrom(const Date& date) {
  dropFrom(m_dayCaps.lower_bound(date));
}

void SharePortfolioCapitalRecordUser::dropFrom(DayCaps::iterator first) {
  if (first == m_dayCaps.end())
    return;
  m_modified = true;
  forgetUnsettledFrom(first->first);
  m_lookUps.erase(m_lookUps.lower_bound(first->first), m_lookUps.end());
  if (m_splitLook && m_splitLook->day >= first->first)
    m_splitLook.reset();
  if (first == m_dayCaps.begin()) {
    startAgain();
    return;
  }
  // The last day of the index is the last of the tree.
  while (first != m_dayCaps.end()) {
    m_record->removeSubElement(u"DayCaps", m_dayCaps.size() - 1);
    const auto last = std::prev(m_dayCaps.end());
    if (last == first)
      first = m_dayCaps.erase(last);
    else
      m_dayCaps.erase(last);
  }
}

void SharePortfolioCapitalRecordUser::dropDaysAfterToday() {
  // While a view date is set, the days after it are no strays: they come back with today.
  if (!Date::hasFixedDate())
    dropFrom(m_dayCaps.upper_bound(Date()));
}

Date SharePortfolioCapitalRecordUser::nextDay(const WalkedPortfolio& portfolio) const {
  return m_dayCaps.empty() ? portfolio.portfolioStartDate() : m_dayCaps.rbegin()->first.plusDays(1);
}

void SharePortfolioCapitalRecordUser::update(WalkedPortfolio& portfolio) {
  if (m_updating || inBackgroundPass)
    return;
  const UpdateScope scope(m_updating, portfolio);
  dropDaysAfterToday();
  settlePrices();
  updateDays(portfolio);
  // The pages that were fetched for the missing days may have told of others.
  if (m_recomputeFrom)
    updateDays(portfolio);
}

void SharePortfolioCapitalRecordUser::updateDays(WalkedPortfolio& portfolio) {
  if (const auto changed = std::exchange(m_recomputeFrom, std::nullopt)) {
    m_record->removeAttribute(RECOMPUTE_FROM);
    recordsChangedFrom(*changed);
  }
  const Date today;
  if (hasDayCap(today) || nextDay(portfolio) > today)
    return;
  checkLastDayForSplits(portfolio);
  const int days = today.daysSince(nextDay(portfolio));
  if (days < LONGEST_QUIET_UPDATE)
    updateTo(portfolio, nullptr);
  else
    UserInteraction::Instance().runLengthy(u"Updating daily capital records for " + m_name,
                                           u"Updating daily capital records from portfolio records      ",
                                           static_cast<unsigned>(days) / DAYS_OF_A_STEP, *this, UPDATE_WALK);
}

void SharePortfolioCapitalRecordUser::runLengthyFunction(Progress& progress, int argument) {
  if (m_updating && argument == UPDATE_WALK)
    updateTo(*m_updating, &progress);
}

void SharePortfolioCapitalRecordUser::checkLastDayForSplits(WalkedPortfolio& portfolio) {
  if (m_dayCaps.empty())
    return;
  // A price that came in during the day replaced the day's without a question, since none may be asked then.
  const SplitLook look{m_dayCaps.rbegin()->first, splitRatioDetect, reverseSplitRatioDetect};
  if (m_splitLook == look)
    return;
  const CapitalRecordWalk::SplitCheck found = CapitalRecordWalk(portfolio).checkForSplits(look.day);
  if (found.adjusted)
    recordsChangedFrom(look.day);
  else if (found.complete)
    m_splitLook = look;
}

void SharePortfolioCapitalRecordUser::updateTo(WalkedPortfolio& portfolio, Progress* progress) {
  CapitalRecordWalk walk(portfolio);
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
  m_modified = true;
  XMLElement& dayCap = m_record->addSubElement(XMLDayCap::create(), u"DayCaps");
  m_dayCaps.emplace_hint(m_dayCaps.end(), day, &dayCap);
  dayCap.subElement(u"Date").setValue(dayText(day));
  dayCap.subElement(u"CashTotal").setValue(walk.cashTotal(day));
  const String injected = walk.cashInjected(day);
  if (!injected.empty())
    dayCap.addSubElement(new XMLConstant, u"CashInjected").setValue(injected);
  for (const CapitalRecordWalk::Holding& holding : *holdings)
    noteStanding(addShareVal(dayCap, holding), holding.code, day, holding.standing);
  m_lookUps.erase(day);
  return !progress || !progress->isCancelled();
}

bool SharePortfolioCapitalRecordUser::hasDayCap(const Date& date) const {
  return m_dayCaps.contains(date);
}

const XMLElement& SharePortfolioCapitalRecordUser::dayCapFor(const Date& date) const {
  const auto found = m_dayCaps.find(date);
  if (found == m_dayCaps.end())
    throw Exception(u"SharePortfolioCapitalRecordUser::dayCapFor - doesn't have one for " +
                    date.toString(DATE_DISPLAY_LOCAL));
  return *found->second;
}

Date SharePortfolioCapitalRecordUser::firstRecordDate() const {
  return m_dayCaps.empty() ? Date() : m_dayCaps.begin()->first;
}

double SharePortfolioCapitalRecordUser::capitalOn(const Date& date) const {
  return sharesValueOn(date) + cashOn(date);
}

double SharePortfolioCapitalRecordUser::sharesValueOn(const Date& date) const {
  const XMLElement& dayCap = dayCapFor(date);
  std::optional<double>& known = m_lookUps[date].sharesValue;
  if (known)
    return *known;
  double value = 0.0;
  const std::size_t count = dayCap.numSubElements(u"ShareVals");
  for (std::size_t i = 0; i < count; ++i) {
    const XMLElement& shareVal = dayCap.subElement(u"ShareVals", i);
    value += doubleValue(shareVal, u"Number") * doubleValue(shareVal, u"Price");
  }
  known = value;
  return value;
}

double SharePortfolioCapitalRecordUser::cashOn(const Date& date) const {
  return doubleValue(dayCapFor(date), u"CashTotal");
}

double SharePortfolioCapitalRecordUser::externalFlowBetween(const Date& from, const Date& to) const {
  double flow = 0.0;
  for (auto day = m_dayCaps.upper_bound(from); day != m_dayCaps.end() && day->first <= to; ++day)
    if (day->second->numSubElements(u"CashInjected") > 0)
      flow += doubleValue(*day->second, u"CashInjected");
  return flow;
}

bool SharePortfolioCapitalRecordUser::isProvisional(const Date& date) const {
  const auto found = m_dayCaps.find(date);
  if (found == m_dayCaps.end())
    return false;
  for (std::size_t i = 0; i < found->second->numSubElements(u"ShareVals"); ++i)
    if (isStandIn(standingOf(found->second->subElement(u"ShareVals", i))))
      return true;
  return false;
}

std::optional<DayPrice> SharePortfolioCapitalRecordUser::priceOn(const String& code, const Date& date) const {
  const XMLElement* shareVal = knownShareVal(code, date);
  return shareVal ? std::optional(DayPrice{doubleValue(*shareVal, u"Price"), standingOf(*shareVal)})
                  : std::nullopt;
}

/// The share values that are asked for day by day, by tables above all, are found without a search.
const XMLElement* SharePortfolioCapitalRecordUser::knownShareVal(const String& code, const Date& date) const {
  const auto day = m_dayCaps.find(date);
  if (day == m_dayCaps.end())
    return nullptr;
  auto& shareVals = m_lookUps[date].shareVals;
  if (shareVals.empty())
    for (std::size_t i = 0; i < day->second->numSubElements(u"ShareVals"); ++i) {
      const XMLElement& shareVal = day->second->subElement(u"ShareVals", i);
      shareVals.emplace(textValue(shareVal, u"Code"), &shareVal);
    }
  const auto found = shareVals.find(code);
  return found == shareVals.end() ? nullptr : found->second;
}

XMLElement* SharePortfolioCapitalRecordUser::shareValOf(const String& code, const Date& date) const {
  const auto found = m_dayCaps.find(date);
  if (found == m_dayCaps.end())
    return nullptr;
  for (std::size_t i = 0; i < found->second->numSubElements(u"ShareVals"); ++i) {
    XMLElement& shareVal = found->second->subElement(u"ShareVals", i);
    if (textValue(shareVal, u"Code") == code)
      return &shareVal;
  }
  return nullptr;
}

// --- Prices that come later

void SharePortfolioCapitalRecordUser::currentPriceUpdated(const String& code, double price) {
  setPrice(code, Date(), price, PriceStanding::Open);
}

bool SharePortfolioCapitalRecordUser::wantsHistory(const String& code) const {
  const auto unsettled = m_unsettled.find(code);
  if (unsettled == m_unsettled.end())
    return false;
  TallymoorInternet& gateway = TallymoorInternet::Instance();
  const HistoryRange recent = gateway.recentRange();
  return std::any_of(unsettled->second.begin(), unsettled->second.end(), [&](const Date& day) {
    const std::optional<DayPrice> price = priceOn(code, day);
    // That of today comes with the current prices.
    return day < Date::realToday() && recent.contains(day) && price && isStandIn(price->standing) &&
           !gateway.hasAnsweredFor(code, day);
  });
}

void SharePortfolioCapitalRecordUser::historicalPriceChanged(const String& code, const Date& date,
                                                             double close) {
  const std::optional<KnownClose> known = TallymoorInternet::Instance().closeOn(code, date);
  setPrice(code, date, close, known && known->isFinal ? PriceStanding::Final : PriceStanding::Open);
}

void SharePortfolioCapitalRecordUser::setPrice(const String& code, const Date& date, double price,
                                               PriceStanding standing) {
  // A jump is one from the day before.
  if (m_splitLook && (date == m_splitLook->day || date.plusDays(1) == m_splitLook->day))
    m_splitLook.reset();
  XMLElement* shareVal = shareValOf(code, date);
  if (!shareVal)
    return;
  m_modified = true;
  m_lookUps.erase(date);
  noteStanding(*shareVal, code, date, standing);
  const String text = recordedPriceText(price);
  if (textValue(*shareVal, u"Price") == text)
    return;
  shareVal->subElement(u"Price").setValue(text);
  // The last day is looked at for a split before the next one is computed.
  if (date < m_dayCaps.rbegin()->first)
    recomputeFrom(date);
}

void SharePortfolioCapitalRecordUser::noteStanding(XMLElement& shareVal, const String& code, const Date& date,
                                                   PriceStanding standing) {
  if (standing == PriceStanding::Final) {
    shareVal.removeAttribute(STANDING);
    if (const auto days = m_unsettled.find(code); days != m_unsettled.end())
      days->second.erase(date);
    return;
  }
  shareVal.setAttribute(STANDING, standingName(standing));
  m_unsettled[code].insert(date);
}

void SharePortfolioCapitalRecordUser::recomputeFrom(const Date& date) {
  m_recomputeFrom = m_recomputeFrom ? std::min(*m_recomputeFrom, date) : date;
  // The program may be left before the next update.
  m_modified = true;
  m_record->setAttribute(RECOMPUTE_FROM, dayText(*m_recomputeFrom));
}

void SharePortfolioCapitalRecordUser::forgetUnsettledFrom(const Date& date) {
  for (auto& [code, days] : m_unsettled)
    days.erase(days.lower_bound(date), days.end());
  std::erase_if(m_unsettled, [](const auto& item) { return item.second.empty(); });
}

/// Looks for the closes that were missing, or may have been those of a day that was not over.
void SharePortfolioCapitalRecordUser::settlePrices() {
  if (Date::hasFixedDate())
    return;
  // A fetch tells this record of what it brings, which changes the index.
  const auto unsettled = m_unsettled;
  for (const auto& [code, days] : unsettled)
    fetchUnsettled(code, days);
  for (const auto& [code, days] : unsettled)
    for (const Date& day : days)
      settlePrice(code, day);
}

void SharePortfolioCapitalRecordUser::fetchUnsettled(const String& code, const std::set<Date>& days) {
  std::optional<Date> firstOpen;
  std::optional<Date> firstMissing, lastMissing;
  TallymoorInternet& gateway = TallymoorInternet::Instance();
  for (const Date& day : days) {
    const std::optional<KnownClose> known = gateway.closeOn(code, day);
    if (known && !known->isFinal && !firstOpen && day < Date::realToday())
      firstOpen = day;
    if (known)
      continue;
    firstMissing = firstMissing.value_or(day);
    lastMissing = day;
  }
  if (firstMissing)
    gateway.completeHistory(code, *firstMissing, *lastMissing);
  if (firstOpen)
    gateway.refreshClosesFrom(code, *firstOpen);
}

/// Takes over what the cache knows of the day; it may have been fetched while this record was not there to
/// hear of it.
void SharePortfolioCapitalRecordUser::settlePrice(const String& code, const Date& day) {
  if (const std::optional<KnownClose> known = TallymoorInternet::Instance().closeOn(code, day))
    if (known->isFinal || (priceOn(code, day) && isStandIn(priceOn(code, day)->standing)))
      historicalPriceChanged(code, day, known->close);
}

} // namespace Tallymoor
