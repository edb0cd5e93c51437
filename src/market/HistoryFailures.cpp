#include "market/HistoryFailures.h"
#include <algorithm>
#include <utility>

namespace Tallymoor {

namespace {

bool touches(const HistoryRange& a, const HistoryRange& b) {
  return a.start <= b.end.plusDays(1) && b.start <= a.end.plusDays(1);
}

/// At least half of the request lies in the range.
bool coversHalf(const HistoryRange& range, const HistoryRange& request) {
  const Date first = std::max(range.start, request.start);
  const Date last = std::min(range.end, request.end);
  return first <= last && 2 * (last.daysSince(first) + 1) >= request.end.daysSince(request.start) + 1;
}

} // namespace

void HistoryFailures::noteFailure(const String& code, const HistoryRange& range, std::exception_ptr what) {
  ++m_changeStamp;
  m_codes[code].failures.push_back({range, std::move(what)});
}

void HistoryFailures::noteAbsent(const String& code, const HistoryRange& days) {
  ++m_changeStamp;
  HistoryRange joined = days;
  std::vector<HistoryRange>& absent = m_codes[code].absent;
  std::erase_if(absent, [&joined](const HistoryRange& known) {
    if (!touches(known, joined))
      return false;
    joined = {std::min(known.start, joined.start), std::max(known.end, joined.end)};
    return true;
  });
  absent.push_back(joined);
}

const HistoryFailures::OfCode* HistoryFailures::find(const String& code) const {
  const auto known = m_codes.find(code);
  return known == m_codes.end() ? nullptr : &known->second;
}

const HistoryFailures::Failure* HistoryFailures::failureOn(const String& code, const Date& day) const {
  const OfCode* known = find(code);
  if (!known)
    return nullptr;
  const auto failure = std::find_if(known->failures.begin(), known->failures.end(),
                                    [&day](const Failure& f) { return f.range.contains(day); });
  return failure == known->failures.end() ? nullptr : &*failure;
}

const HistoryFailures::Failure* HistoryFailures::failureOf(const String& code, const Date& day,
                                                           const HistoryRange& request) const {
  const OfCode* known = find(code);
  if (!known)
    return nullptr;
  const auto failure = std::find_if(known->failures.begin(), known->failures.end(), [&](const Failure& f) {
    return f.range.contains(day) || coversHalf(f.range, request);
  });
  return failure == known->failures.end() ? nullptr : &*failure;
}

bool HistoryFailures::isAbsent(const String& code, const Date& day) const {
  const OfCode* known = find(code);
  return known && std::any_of(known->absent.begin(), known->absent.end(),
                              [&day](const HistoryRange& range) { return range.contains(day); });
}

void HistoryFailures::endCompletionAt(const String& code, const Date& day) {
  ++m_changeStamp;
  m_codes[code].completionEnd = day;
}

bool HistoryFailures::isBeyondCompletion(const String& code, const Date& day) const {
  const OfCode* known = find(code);
  return known && known->completionEnd && day <= *known->completionEnd;
}

void HistoryFailures::forgetFailuresOn(const String& code, const Date& day) {
  const auto known = m_codes.find(code);
  if (known == m_codes.end())
    return;
  ++m_changeStamp;
  std::erase_if(known->second.failures, [&day](const Failure& f) { return f.range.contains(day); });
}

void HistoryFailures::forget() {
  ++m_changeStamp;
  m_codes.clear();
}

void HistoryFailures::forget(const String& code) {
  ++m_changeStamp;
  m_codes.erase(code);
}

} // namespace Tallymoor
