#include "market/SourceLog.h"
#include <utility>

namespace Tallymoor {

ToldOfCode& SourceLog::answered(const String& code, const String& source, std::vector<SourceReason> earlier,
                                const String& currency) {
  m_sources[source].refusalsInARow = 0;
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
}

void SourceLog::noteNoAnswer(const String& code, std::vector<SourceReason> reasons) {
  const std::lock_guard lock(m_mutex);
  m_codes[code].reasons = std::move(reasons);
}

void SourceLog::noteFailure(const String& code, const SourceReason& reason) {
  const std::lock_guard lock(m_mutex);
  OfSource& source = m_sources[reason.source];
  source.lastFailure = Failure{code, reason};
  if (reason.fault == SourceFault::WrongCode)
    source.wrongCodes.insert(code);
  const bool isUnasked = reason.fault == SourceFault::Network || reason.fault == SourceFault::Resting;
  if (isUnasked && source.requests > 0)
    --source.requests;
  const bool isRefusal = reason.fault == SourceFault::Refused || reason.fault == SourceFault::Resting;
  if (isRefusal && ++source.refusalsInARow >= REFUSALS_BEFORE_REST)
    source.restsUntil = m_now() + REST;
}

std::optional<SourceReason> SourceLog::beginRequest(const String& code, const String& source,
                                                    std::size_t perDay) {
  const std::lock_guard lock(m_mutex);
  OfSource& known = m_sources[source];
  if (known.wrongCodes.contains(code))
    return SourceReason{source, SourceFault::WrongCode, u"it did not know the code earlier in this run"};
  if (known.restsUntil && m_now() < *known.restsUntil)
    return SourceReason{source, SourceFault::Resting,
                        u"it is not asked for a quarter of an hour" +
                            (known.lastFailure ? u" after: " + known.lastFailure->reason.text : String())};
  known.restsUntil.reset();
  const Date today = Date::realToday();
  if (std::exchange(known.day, today) != today)
    known.requests = 0;
  if (perDay != 0 && known.requests >= perDay)
    return SourceReason{source, SourceFault::Resting,
                        u"its " + String::fromLong(static_cast<std::int64_t>(perDay)) +
                            u" requests of the day are used up"};
  ++known.requests;
  return std::nullopt;
}

ToldOfCode SourceLog::toldOf(const String& code) const {
  const std::lock_guard lock(m_mutex);
  const auto told = m_codes.find(code);
  return told == m_codes.end() ? ToldOfCode() : told->second;
}

std::optional<SourceLog::Failure> SourceLog::lastFailure(const String& source) const {
  const std::lock_guard lock(m_mutex);
  const auto known = m_sources.find(source);
  return known == m_sources.end() ? std::nullopt : known->second.lastFailure;
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
