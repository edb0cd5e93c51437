#include "market/DataSource.h"
#include "foundation/Exception.h"
#include "market/HTTPClient.h"
#include "market/HistoryPage.h"
#include "market/LocatorPrices.h"
#include "market/LocatorSet.h"
#include <algorithm>
#include <utility>

namespace Tallymoor {

DataSource::DataSource(std::shared_ptr<HTTPClient> client, const LocatorSet& locators)
    : DataSource({{std::make_shared<const LocatorPrices>(std::move(client), locators)},
                  {},
                  std::make_shared<SourceLog>()}) {}

DataSource::DataSource(SourceChoice choice) : m_choice(std::move(choice)) {}

/// Their callers remember what has failed, and ask the user.
bool DataSource::isLocatorsAlone() const {
  return m_choice.pins.empty() && m_choice.sources.size() == 1 &&
         m_choice.sources.front()->name() == LocatorPrices::NAME;
}

template <class Offers>
std::vector<DataSource::Candidate> DataSource::candidatesFor(const String& code, Offers offers,
                                                             std::vector<SourceReason>& reasons) const {
  const auto pin = m_choice.pins.find(code);
  const bool isPinned = pin != m_choice.pins.end();
  const String& codeThere = isPinned ? pin->second.codeThere : code;
  std::vector<Candidate> candidates;
  for (const auto& source : m_choice.sources)
    if (isPinned ? source->name() == pin->second.source && offers(*source)
                 : offers(*source) && source->serves(code))
      candidates.push_back({source.get(), codeThere});
  if (isPinned && candidates.empty())
    reasons.push_back({pin->second.source, SourceFault::Refused,
                       u"the code is for this source alone, which is off or does not offer this"});
  return candidates;
}

/// Nothing when a source answered without a price and none failed. What is known already is not asked for.
template <class Offers, class Known, class Ask>
auto DataSource::firstAnswer(const String& code, const std::stop_token& stop, Offers offers, Known known,
                             Ask ask) const {
  std::vector<SourceReason> reasons;
  decltype(ask(std::declval<const PriceProvider&>(), code)) answer;
  const std::vector<Candidate> candidates = candidatesFor(code, offers, reasons);
  bool hasAnswered = false;
  for (const auto& [source, codeThere] : candidates) {
    if (answer = known(*source); answer)
      return answer;
    if (!isLocatorsAlone())
      if (auto refusal = m_choice.log->beginRequest(code, source->name(), source->requestsADay())) {
        reasons.push_back(std::move(*refusal));
        continue;
      }
    try {
      answer = ask(*source, codeThere);
      if (answer) {
        m_choice.log->noteAnswer(code, source->name(), std::move(reasons), *answer);
        return answer;
      }
      hasAnswered = true;
      reasons.push_back({source->name(), SourceFault::NoPrice, u"it has no price for these days"});
    } catch (const Exception& failure) {
      if (stop.stop_requested())
        throw;
      reasons.push_back({source->name(), faultOf(failure), failure.message()});
      m_choice.log->noteFailure(code, reasons.back());
      if (isLocatorsAlone()) {
        m_choice.log->noteNoAnswer(code, std::move(reasons));
        throw;
      }
    }
  }
  if (candidates.empty() && reasons.empty())
    throw SourceException(SourceFault::WrongCode, u"no source that is on serves the code " + code);
  m_choice.log->noteNoAnswer(code, reasons);
  std::erase_if(reasons, [](const SourceReason& reason) { return reason.fault == SourceFault::NoPrice; });
  if (!reasons.empty() || !hasAnswered)
    throw SourceException(reasons);
  return answer;
}

AnsweredPrice DataSource::currentPrice(const String& code, const std::stop_token& stop) const {
  const std::optional<AnsweredPrice> answer = firstAnswer(
      code, stop, [](const PriceProvider& source) { return source.offersCurrentPrice(); },
      [&](const PriceProvider& source) {
        return source.requestsADay() == 0 ? std::nullopt : m_choice.log->freshPrice(code, source.name());
      },
      [&](const PriceProvider& source, const String& codeThere) {
        return source.currentPrice(codeThere, stop);
      });
  return answer.value_or(AnsweredPrice{});
}

DataSource::Rows DataSource::history(const String& code, const HistoryRange& range,
                                     const std::stop_token& stop) const {
  std::optional<AnsweredHistory> answer = firstAnswer(
      code, stop, [](const PriceProvider& source) { return source.offersHistory(); },
      [](const PriceProvider&) { return std::optional<AnsweredHistory>(); },
      [&](const PriceProvider& source, const String& codeThere) {
        std::optional<AnsweredHistory> history = source.history(codeThere, range, stop);
        if (history->prices.empty() && history->future.empty())
          history.reset();
        return history;
      });
  if (!answer)
    return {};
  return {std::move(answer->prices), std::move(answer->currency), std::move(answer->future)};
}

HistoryPage DataSource::historyPage(const String& code, const HistoryRange& range,
                                    const std::stop_token& stop) const {
  HistoryPage page;
  try {
    page.rows = history(code, range, stop);
  } catch (const Exception&) {
    page.failure = std::current_exception();
  }
  return page;
}

/// Those that are not asked, because one before them answers, don't count.
bool DataSource::hasNewHistory(const String& code) const {
  std::vector<SourceReason> none;
  const std::vector<Candidate> candidates = candidatesFor(
      code, [](const PriceProvider& source) { return source.offersHistory(); }, none);
  const String last = m_choice.log->toldOf(code).source;
  return std::any_of(candidates.begin(), candidates.end(), [&](const Candidate& candidate) {
    const bool isAsked = candidate.source == candidates.front().source || candidate.source->name() == last;
    return isAsked && candidate.source->hasNewHistory(candidate.codeThere);
  });
}

void DataSource::search(const String& text, bool isShare, bool usOnly, std::vector<CodeSearchResult>& results,
                        const std::stop_token& stop, SearchFor purpose) const {
  std::vector<SourceReason> reasons;
  for (const auto& source : m_choice.sources) {
    if (!source->offersSearch() || (purpose == SearchFor::NameOfCode && source->requestsADay() != 0))
      continue;
    if (!isLocatorsAlone())
      if (auto refusal = m_choice.log->beginRequest(String(), source->name(), source->requestsADay())) {
        reasons.push_back(std::move(*refusal));
        continue;
      }
    try {
      source->search(text, isShare, usOnly, results, stop);
    } catch (const Exception& failure) {
      if (isLocatorsAlone() || stop.stop_requested())
        throw;
      reasons.push_back({source->name(), faultOf(failure), failure.message()});
    }
    if (!results.empty())
      return;
  }
  if (!reasons.empty())
    throw SourceException(reasons);
}

} // namespace Tallymoor
