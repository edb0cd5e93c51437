#include "books/CapitalRecord.h"
#include "books/PortfolioEvents.h"
#include "books/PortfolioFiles.h"
#include "foundation/Amounts.h"
#include "foundation/BackgroundWriting.h"
#include "foundation/Exception.h"
#include "foundation/FileReplacement.h"
#include "xml/RecordTexts.h"
#include <algorithm>
#include <utility>

namespace Tallymoor {

namespace {

const String RECOMPUTE_FROM = u"RecomputeFrom";
constexpr std::size_t MOST_WAITING_PRICES = 1000; ///< more take more memory than the record

} // namespace

CapitalRecord::CapitalRecord(const String& name) : m_fileName(capitalRecordFile(name)), m_name(name) {}

// --- The file

void CapitalRecord::load() {
  m_isLoaded = true;
  m_recomputeFrom.reset();
  try {
    readFile();
  } catch (const Exception&) {
    // All of it can be worked out again, so there is nothing to tell the user.
    startAgain();
  }
  m_document.head.subElement(u"Name").setValue(m_name);
  m_modified = false;
  for (const auto& [place, price] : std::exchange(m_waitingPrices, {}))
    setPrice(place.first, place.second, price);
}

void CapitalRecord::readFile() {
  startAgain();
  if (filePresence(m_fileName) == FilePresence::Missing)
    return;
  m_document.read(m_fileName);
  if (!(textValue(m_document.head, u"Name") == m_name))
    throw Exception(u"CapitalRecord::load - another portfolio's record, clear and start again");
  const CapitalDays& days = m_document.days;
  for (std::size_t day = 0; day < days.size(); ++day)
    for (const CapitalDays::Holding& holding : days.holdings(day))
      if (holding.standing != PriceStanding::Final)
        m_unsettled[days.code(holding)].insert(days.date(day));
  if (m_document.head.hasAttribute(RECOMPUTE_FROM))
    m_recomputeFrom = Date(m_document.head.attribute(RECOMPUTE_FROM), DATE_DISPLAY_DMY);
}

const CapitalDays& CapitalRecord::days() const {
  if (!m_isLoaded)
    const_cast<CapitalRecord*>(this)->load();
  return m_document.days;
}

void CapitalRecord::startAgain() {
  daysChanged(Date(0u), FAR_OFF);
  m_unsettled.clear();
  m_document.clear();
  m_document.head.subElement(u"Name").setValue(m_name);
}

bool CapitalRecord::isModified() const {
  if (!m_waitingPrices.empty())
    days();
  return m_modified;
}

void CapitalRecord::save() {
  if (!isModified())
    return;
  BackgroundWriting::finish();
  m_document.writeFile(m_fileName);
  m_modified = false;
}

CapitalRecordDocument CapitalRecord::takeToWrite() {
  days();
  m_modified = false;
  return m_document;
}

void CapitalRecord::removeFile() {
  days();
  BackgroundWriting::finish();
  Tallymoor::removeFile(m_fileName);
  m_modified = true;
}

void CapitalRecord::rename(const String& newName) {
  if (newName == m_name)
    return;
  days();
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

void CapitalRecord::setName(const String& name) {
  m_name = name;
  m_fileName = capitalRecordFile(name);
  m_document.head.subElement(u"Name").setValue(name);
}

// --- Days that come and go

void CapitalRecord::recordsChangedFrom(const Date& date) {
  const std::size_t first = days().firstFrom(date);
  if (first == days().size())
    return;
  m_modified = true;
  if (first == 0) {
    startAgain();
    return;
  }
  const Date firstDate = days().date(first);
  daysChanged(firstDate, FAR_OFF);
  for (auto& [code, dates] : m_unsettled)
    dates.erase(dates.lower_bound(firstDate), dates.end());
  std::erase_if(m_unsettled, [](const auto& item) { return item.second.empty(); });
  days().dropFrom(first);
}

void CapitalRecord::recomputeFrom(const Date& date) {
  days();
  m_recomputeFrom = m_recomputeFrom ? std::min(*m_recomputeFrom, date) : date;
  // The program may be left before the next update.
  m_modified = true;
  m_document.head.setAttribute(RECOMPUTE_FROM, dayText(*m_recomputeFrom));
}

std::optional<Date> CapitalRecord::takeRecomputeFrom() {
  days();
  if (m_recomputeFrom)
    m_document.head.removeAttribute(RECOMPUTE_FROM);
  return std::exchange(m_recomputeFrom, std::nullopt);
}

void CapitalRecord::addDay(const Date& date, const String& cash, const String& injected) {
  m_modified = true;
  days().addDay(date, days().written(cash));
  if (!injected.empty())
    days().setInjected(days().written(injected));
}

void CapitalRecord::addHolding(const String& code, const String& number, const String& price,
                               PriceStanding standing) {
  days().addHolding(days().placeOf(code), days().written(number), days().written(price), standing);
  noteUnsettled(code, days().date(days().size() - 1), standing);
}

void CapitalRecord::setPrice(const String& code, const Date& date, const DayPrice& price) {
  if (!m_isLoaded && m_waitingPrices.size() < MOST_WAITING_PRICES) {
    m_waitingPrices.insert_or_assign(std::pair(code, date), price);
    return;
  }
  // A jump is one from the day before.
  daysChanged(date, date.plusDays(1));
  const std::optional<std::size_t> day = days().find(date);
  const std::optional<std::size_t> place = day ? days().placeInDay(*day, code) : std::nullopt;
  if (!place)
    return;
  m_modified = true;
  days().setStanding(*day, *place, price.standing);
  noteUnsettled(code, date, price.standing);
  const String text = recordedPriceText(price.price);
  if (days().text(days().holdings(*day)[*place].price) == text)
    return;
  days().setPrice(*day, *place, text);
  // The last day is looked at for a split before the next one is computed.
  if (date < *lastRecordDate())
    recomputeFrom(date);
}

void CapitalRecord::noteUnsettled(const String& code, const Date& date, PriceStanding standing) {
  if (standing != PriceStanding::Final)
    m_unsettled[code].insert(date);
  else if (const auto dates = m_unsettled.find(code); dates != m_unsettled.end())
    dates->second.erase(date);
}

const CapitalRecord::UnsettledPrices& CapitalRecord::unsettledPrices() const {
  days();
  return m_unsettled;
}

// --- Figures

std::size_t CapitalRecord::placeOf(const Date& date) const {
  const std::optional<std::size_t> day = days().find(date);
  if (!day)
    throw Exception(u"SharePortfolioCapitalRecordUser::dayCapFor - doesn't have one for " +
                    date.toString(DATE_DISPLAY_LOCAL));
  return *day;
}

bool CapitalRecord::hasDayCap(const Date& date) const {
  return days().find(date).has_value();
}

const XMLElement& CapitalRecord::dayCapFor(const Date& date) const {
  m_askedDay = days().element(placeOf(date));
  return *m_askedDay;
}

bool CapitalRecord::isProvisional(const Date& date) const {
  const std::optional<std::size_t> day = days().find(date);
  return day && std::ranges::any_of(days().holdings(*day), [](const CapitalDays::Holding& holding) {
           return isStandIn(holding.standing);
         });
}

CapitalRecord::Holding CapitalRecord::holdingAt(const CapitalDays::Holding& holding) const {
  return {
      days().code(holding), days().value(holding.number), {days().value(holding.price), holding.standing}};
}

std::vector<CapitalRecord::Holding> CapitalRecord::holdingsOn(const Date& date) const {
  std::vector<Holding> holdings;
  for (const CapitalDays::Holding& holding : days().holdings(placeOf(date)))
    holdings.push_back(holdingAt(holding));
  return holdings;
}

std::optional<CapitalRecord::Holding> CapitalRecord::holdingOn(const String& code, const Date& date) const {
  const std::optional<std::size_t> day = days().find(date);
  const CapitalDays::Holding* const found = day ? days().holding(*day, code) : nullptr;
  return found ? std::optional(holdingAt(*found)) : std::nullopt;
}

std::optional<DayPrice> CapitalRecord::priceOn(const String& code, const Date& date) const {
  const std::optional<Holding> holding = holdingOn(code, date);
  return holding ? std::optional(holding->price) : std::nullopt;
}

Date CapitalRecord::firstRecordDate() const {
  return days().empty() ? Date() : days().date(0);
}

std::optional<Date> CapitalRecord::lastRecordDate() const {
  return days().empty() ? std::nullopt : std::optional(days().date(days().size() - 1));
}

double CapitalRecord::capitalOn(const Date& date) const {
  return sharesValueOn(date) + cashOn(date);
}

double CapitalRecord::sharesValueOn(const Date& date) const {
  return days().sharesValue(placeOf(date));
}

double CapitalRecord::cashOn(const Date& date) const {
  return days().cash(placeOf(date));
}

double CapitalRecord::externalFlowBetween(const Date& from, const Date& to) const {
  return days().injectedBetween(days().firstAfter(from), days().firstAfter(to));
}

} // namespace Tallymoor
