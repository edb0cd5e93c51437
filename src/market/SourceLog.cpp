#include "market/SourceLog.h"
#include "foundation/Exception.h"
#include "foundation/FileReplacement.h"
#include "xml/DocumentFile.h"
#include "xml/PriceRequestsDocument.h"
#include <algorithm>
#include <utility>

namespace Tallymoor {

namespace {

const String COUNTED = u"Counted";
const String SOURCE = u"source";
const String DAY = u"day";
const String REQUESTS = u"requests";
const String DTD = u"PriceRequests.dtd";

} // namespace

ToldOfCode& SourceLog::answered(const String& code, const String& source, std::vector<SourceReason> earlier,
                                const String& currency) {
  m_sources[source].refusalsInARow = 0;
  m_sources[source].lastAnswered = code;
  ToldOfCode& told = m_codes[code];
  told.source = source;
  told.currency = currency;
  told.reasons = std::move(earlier);
  return told;
}

void SourceLog::noteAnswer(const String& code, const String& source, std::vector<SourceReason> earlier,
                           const AnsweredPrice& price) {
  const std::lock_guard lock(m_mutex);
  answered(code, source, std::move(earlier), price.currency).price = price;
  m_prices.insert_or_assign(code, Priced{source, price, m_now()});
}

std::optional<AnsweredPrice> SourceLog::freshPrice(const String& code, const String& source) const {
  const std::lock_guard lock(m_mutex);
  const auto known = m_prices.find(code);
  const bool isFresh =
      known != m_prices.end() && known->second.source == source && m_now() < known->second.at + FRESH;
  return isFresh ? std::optional(known->second.price) : std::nullopt;
}

void SourceLog::noteAnswer(const String& code, const String& source, std::vector<SourceReason> earlier,
                           const AnsweredHistory& history) {
  const std::lock_guard lock(m_mutex);
  ToldOfCode& told = answered(code, source, std::move(earlier), history.currency);
  for (const auto& [day, dividend] : history.dividends)
    told.dividends.insert_or_assign(day, dividend);
  for (const auto& [day, split] : history.splits)
    told.splits.insert_or_assign(day, split);
  if (!history.splits.empty())
    m_hasSplits = true;
}

std::map<String, std::map<Date, double>> SourceLog::dividends() const {
  const std::lock_guard lock(m_mutex);
  std::map<String, std::map<Date, double>> all;
  for (const auto& [code, told] : m_codes)
    if (!told.dividends.empty())
      all.emplace(code, told.dividends);
  return all;
}

std::vector<std::pair<String, Date>> SourceLog::splitDays() const {
  std::vector<std::pair<String, Date>> days;
  if (!m_hasSplits)
    return days;
  const std::lock_guard lock(m_mutex);
  for (const auto& [code, told] : m_codes)
    for (const auto& [day, ratio] : told.splits)
      days.emplace_back(code, day);
  return days;
}

std::optional<double> SourceLog::splitBetween(const String& code, const Date& first, const Date& last) const {
  if (!m_hasSplits)
    return std::nullopt;
  const std::lock_guard lock(m_mutex);
  const auto told = m_codes.find(code);
  if (told == m_codes.end())
    return std::nullopt;
  std::optional<double> ratio;
  const auto& splits = told->second.splits;
  for (auto split = splits.lower_bound(first); split != splits.end() && split->first <= last; ++split)
    ratio = ratio.value_or(1.0) * split->second;
  return ratio;
}

void SourceLog::noteNoAnswer(const String& code, std::vector<SourceReason> reasons) {
  const std::lock_guard lock(m_mutex);
  m_codes[code].reasons = std::move(reasons);
}

void SourceLog::noteFailure(const String& code, const SourceReason& reason) {
  const std::lock_guard lock(m_mutex);
  OfSource& source = m_sources[reason.source];
  source.lastFailure = Failure{code, reason};
  source.lastAnswered.clear();
  if (reason.fault == SourceFault::WrongCode)
    source.wrongCodes.insert(code);
  const bool isUnasked = reason.fault == SourceFault::Network || reason.fault == SourceFault::Resting;
  if (isUnasked && source.requests > 0) {
    --source.requests;
    if (source.hasDailyLimit)
      writeRequests();
  }
  const bool isRefusal = reason.fault == SourceFault::Refused || reason.fault == SourceFault::Resting;
  if (isRefusal && ++source.refusalsInARow >= REFUSALS_BEFORE_REST)
    source.restsUntil = m_now() + REST;
}

std::optional<SourceReason> SourceLog::beginRequest(const String& code, const String& source,
                                                    std::size_t perDay) {
  const std::lock_guard lock(m_mutex);
  readRequests();
  OfSource& known = m_sources[source];
  if (known.wrongCodes.contains(code))
    return SourceReason{source, SourceFault::WrongCode, u"it did not know the code earlier in this run"};
  if (known.restsUntil && m_now() < *known.restsUntil)
    return SourceReason{source, SourceFault::Resting,
                        u"it is not asked for a quarter of an hour" +
                            (known.lastFailure ? u" after: " + known.lastFailure->reason.text : String())};
  known.restsUntil.reset();
  return count(known, source, perDay);
}

std::optional<SourceReason> SourceLog::beginTrialRequest(const String& source, std::size_t perDay) {
  const std::lock_guard lock(m_mutex);
  readRequests();
  return count(m_sources[source], source, perDay);
}

std::optional<SourceReason> SourceLog::count(OfSource& known, const String& source, std::size_t perDay) {
  const Date today = Date::realToday();
  if (std::exchange(known.day, today) != today)
    known.requests = 0;
  if (perDay != 0 && known.requests >= perDay)
    return SourceReason{source, SourceFault::Resting,
                        u"its " + String::fromLong(static_cast<std::int64_t>(perDay)) +
                            u" requests of the day are used up"};
  ++known.requests;
  known.hasDailyLimit = perDay != 0;
  if (known.hasDailyLimit)
    writeRequests();
  return std::nullopt;
}

/// Once, when the first request is made. Of a file that can't be read nothing counts.
void SourceLog::readRequests() {
  if (m_requestsFile.empty() || std::exchange(m_areRequestsRead, true) ||
      filePresence(m_requestsFile) != FilePresence::RegularFile)
    return;
  try {
    XMLPriceRequests document;
    document.decode(m_requestsFile);
    for (std::size_t i = 0; i < document.numSubElements(COUNTED); ++i) {
      const XMLElement& counted = document.subElement(COUNTED, i);
      OfSource& source = m_sources[counted.attribute(SOURCE)];
      source.day = Date(counted.attribute(DAY), DATE_DISPLAY_DMY);
      source.requests = static_cast<std::size_t>(std::max(0, counted.attribute(REQUESTS).toLong()));
      source.hasDailyLimit = true;
    }
  } catch (const Exception&) {
    // The source itself refuses what is too much.
  }
}

/// Before the request is made, so that a kill can't lose it. A failure costs no more than a refusal later.
void SourceLog::writeRequests() const {
  if (m_requestsFile.empty())
    return;
  XMLPriceRequests document;
  for (const auto& [name, source] : m_sources) {
    if (!source.hasDailyLimit)
      continue;
    XMLElement& counted = document.addSubElement(new XMLCountedRequests, COUNTED);
    counted.setAttribute(SOURCE, name);
    counted.setAttribute(DAY, source.day.toString(DATE_DISPLAY_DMY));
    counted.setAttribute(REQUESTS, String::fromLong(static_cast<std::int64_t>(source.requests)));
  }
  try {
    saveDocument(m_requestsFile, document, DTD, newElement<XMLPriceRequests>);
  } catch (const Exception&) {
    // They count for this run.
  }
}

ToldOfCode SourceLog::toldOf(const String& code) const {
  const std::lock_guard lock(m_mutex);
  const auto told = m_codes.find(code);
  return told == m_codes.end() ? ToldOfCode() : told->second;
}

SourceLog::Summary SourceLog::summaryOf(const String& source) const {
  const std::lock_guard lock(m_mutex);
  const auto known = m_sources.find(source);
  if (known == m_sources.end())
    return {};
  const OfSource& told = known->second;
  return {told.lastFailure, told.lastAnswered, told.day == Date::realToday() ? told.requests : 0};
}

void SourceLog::forgetFailures() {
  const std::lock_guard lock(m_mutex);
  for (auto& [name, source] : m_sources) {
    source.wrongCodes.clear();
    source.refusalsInARow = 0;
    source.restsUntil.reset();
    source.lastFailure.reset();
  }
  m_prices.clear();
}

} // namespace Tallymoor
