#include "engine/SharePortfolioCapitalRecordUser.h"
#include "engine/CapitalRecordWalk.h"
#include "engine/PortfolioEvents.h"
#include "engine/PortfolioFiles.h"
#include "engine/SharePortfolioUser.h"
#include "foundation/Constants.h"
#include "foundation/Exception.h"
#include "foundation/FileReplacement.h"
#include "foundation/RunTimeSettings.h"
#include "foundation/UserInteraction.h"
#include "market/TallymoorInternet.h"
#include "xml/CapitalRecord.h"
#include "xml/DocumentFile.h"
#include <iterator>

namespace Tallymoor {

namespace {

constexpr int LONGEST_QUIET_UPDATE = 15; ///< from so many days on, an update shows its progress
constexpr unsigned DAYS_OF_A_STEP = 30;
constexpr int UPDATE_WALK = 3; ///< the argument by which the progress dialog asks for the walk

/// Marks an update for its time, also when it fails.
class UpdateScope {
public:
  UpdateScope(SharePortfolioUser*& updating, SharePortfolioUser& portfolio) : m_updating(updating) {
    m_updating = &portfolio;
  }
  ~UpdateScope() { m_updating = nullptr; }
  UpdateScope(const UpdateScope&) = delete;
  UpdateScope& operator=(const UpdateScope&) = delete;

private:
  SharePortfolioUser*& m_updating;
};

void addShareVal(XMLElement& dayCap, const CapitalRecordWalk::Holding& holding) {
  XMLElement& shareVal = dayCap.addSubElement(XMLShareVal::create(), u"ShareVals");
  shareVal.subElement(u"Code").setValue(holding.code);
  shareVal.subElement(u"Number").setValue(holding.number);
  shareVal.subElement(u"Price").setValue(holding.price);
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
  } catch (const Exception&) {
    // All of it can be worked out again, so there is nothing to tell the user.
    startAgain();
  }
  m_record->subElement(u"Name").setValue(m_name);
  m_modified = false;
}

void SharePortfolioCapitalRecordUser::indexDays() {
  m_dayCaps.clear();
  const std::size_t count = m_record->numSubElements(u"DayCaps");
  for (std::size_t i = 0; i < count; ++i) {
    XMLElement& dayCap = m_record->subElement(u"DayCaps", i);
    const Date day = dateValue(dayCap, u"Date");
    if (!m_dayCaps.empty() && day <= m_dayCaps.rbegin()->first)
      throw Exception(u"SharePortfolioCapitalRecordUser::load - days out of order, clear and start again");
    m_dayCaps.emplace_hint(m_dayCaps.end(), day, &dayCap);
  }
}

void SharePortfolioCapitalRecordUser::startAgain() {
  m_dayCaps.clear();
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

Date SharePortfolioCapitalRecordUser::nextDay(const SharePortfolioUser& portfolio) const {
  return m_dayCaps.empty() ? portfolio.portfolioStartDate() : m_dayCaps.rbegin()->first.plusDays(1);
}

void SharePortfolioCapitalRecordUser::update(SharePortfolioUser& portfolio) {
  if (m_updating || inBackgroundPass)
    return;
  const UpdateScope scope(m_updating, portfolio);
  dropDaysAfterToday();
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

void SharePortfolioCapitalRecordUser::checkLastDayForSplits(SharePortfolioUser& portfolio) {
  if (m_dayCaps.empty())
    return;
  // A price that came in during the day replaced the day's without a question, since none may be asked then.
  const Date lastDay = m_dayCaps.rbegin()->first;
  if (CapitalRecordWalk(portfolio).checkForSplits(lastDay))
    recordsChangedFrom(lastDay);
}

void SharePortfolioCapitalRecordUser::updateTo(SharePortfolioUser& portfolio, Progress* progress) {
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
  // Only a day whose prices could all be had becomes part of the record.
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
    addShareVal(dayCap, holding);
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
  double value = 0.0;
  const std::size_t count = dayCap.numSubElements(u"ShareVals");
  for (std::size_t i = 0; i < count; ++i) {
    const XMLElement& shareVal = dayCap.subElement(u"ShareVals", i);
    value += doubleValue(shareVal, u"Number") * doubleValue(shareVal, u"Price");
  }
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

void SharePortfolioCapitalRecordUser::currentPriceUpdated(const String& code, double price) {
  setPrice(code, Date(), price);
}

void SharePortfolioCapitalRecordUser::historicalPriceChanged(const String& code, const Date& date,
                                                             double close) {
  setPrice(code, date, close);
}

void SharePortfolioCapitalRecordUser::setPrice(const String& code, const Date& date, double price) {
  const auto found = m_dayCaps.find(date);
  if (found == m_dayCaps.end())
    return;
  XMLElement& dayCap = *found->second;
  for (std::size_t i = 0; i < dayCap.numSubElements(u"ShareVals"); ++i) {
    XMLElement& shareVal = dayCap.subElement(u"ShareVals", i);
    if (!(textValue(shareVal, u"Code") == code))
      continue;
    shareVal.subElement(u"Price").setValue(String::fromDouble(price, 2));
    m_modified = true;
  }
}

} // namespace Tallymoor
