#include "market/PriceStatus.h"
#include "foundation/BigMutex.h"
#include "foundation/Exception.h"
#include "market/Connection.h"
#include "market/LastPrice.h"
#include "market/LocatorPrices.h"
#include "market/LocatorSet.h"
#include "market/PriceHistory.h"
#include "market/PriceUpdater.h"
#include "market/WatchedFetch.h"
#include <iterator>
#include <utility>

namespace Tallymoor {

namespace {

/// The last row that somebody has told, without those filled in for days without trade.
std::optional<std::pair<Date, ShareValue>> lastToldRow(const CachedShare& known) {
  for (auto row = known.values.rbegin(); row != known.values.rend(); ++row)
    if (row->second.origin != PriceOrigin::Filled && row->second.close > 0.0)
      return *row;
  return std::nullopt;
}

} // namespace

PriceStatus::PriceStatus(Connection& connection, PriceHistory& history, PriceUpdater& updater)
    : m_connection(connection), m_history(history), m_updater(updater) {}

PriceStatus::OfCode PriceStatus::ofCode(const String& code) {
  const BigMutexLock lock;
  ToldOfCode told = m_connection.sources().log().toldOf(code);
  const CachedShare& known = m_history.cache().shareOrEmpty(code);
  OfCode status;
  status.code = code;
  status.source = told.source;
  status.currency = told.currency;
  status.isDelisted = known.isBad;
  status.reasons = std::move(told.reasons);
  status.dividends = std::move(told.dividends);
  status.splits = std::move(told.splits);
  const bool isBySample =
      told.source.empty() ? m_connection.sources().isLocatorsAlone() : told.source == LocatorPrices::NAME;
  if (const auto row = lastToldRow(known)) {
    status.day = row->first;
    status.price = row->second.close;
    status.isTyped = row->second.origin == PriceOrigin::Typed;
    // A current price stands in today's row, even if it is one of days ago.
    if (row->second.origin == PriceOrigin::Current && told.price && told.price->day)
      status.day = std::min(*told.price->day, row->first);
    status.age = Date::realToday().daysSince(status.day);
  }
  status.isSample = status.price && !status.isTyped && isBySample && m_connection.locators().isSample();
  return status;
}

std::vector<PriceStatus::OfSource> PriceStatus::ofSources() {
  const BigMutexLock lock;
  std::vector<OfSource> all;
  for (const ListedSource& listed : m_connection.sources().sources()) {
    OfSource status;
    status.listed = listed;
    status.isSample = listed.kind == SourceKind::Locators && m_connection.locators().isSample();
    status.needsKey = listed.document && listed.document->needsKey();
    status.hasKey = status.needsKey && m_connection.sources().hasKey(listed.name);
    if (listed.document && !listed.isTried)
      status.notTried = listed.document->notTried();
    status.lastFailure = m_connection.sources().log().lastFailure(listed.name);
    all.push_back(std::move(status));
  }
  return all;
}

std::vector<SourceComplaint> PriceStatus::complaints() {
  const BigMutexLock lock;
  return m_connection.sources().complaints();
}

SourceList& PriceStatus::sources() {
  const BigMutexLock lock;
  return m_connection.sources();
}

void PriceStatus::setOn(const String& name, bool isOn) {
  const BigMutexLock lock;
  SourceList& sources = m_connection.sources();
  const bool endsSample = isOn && name != LocatorPrices::NAME && m_connection.locators().isSample() &&
                          sources.source(LocatorPrices::NAME).isOn;
  sources.setOn(name, isOn);
  if (!endsSample)
    return;
  sources.setOn(LocatorPrices::NAME, false);
  m_history.forgetFetched();
  for (const String& code : m_updater.codes())
    m_updater.setCurrentPrice(code, 0.0);
}

PriceStatus::Trial PriceStatus::trySource(const String& name, const String& code) {
  const BigMutexLock lock;
  constexpr std::ptrdiff_t SHOWN_DAYS = 5;
  const std::shared_ptr<const PriceProvider> source = m_connection.provider(name);
  if (!source)
    throw Exception(u"The document of the source " + name + u" can't be read");
  const ListedSource& listed = m_connection.sources().source(name);
  const String tried = !code.empty() || !listed.document ? code : listed.document->tryCode();
  if (tried.empty())
    throw Exception(u"The source " + name + u" names no code to try it with");
  Trial trial = watchedFetch([&](const std::stop_token& stop) {
    Trial result;
    try {
      if (source->offersHistory()) {
        const AnsweredHistory history = source->history(tried, recentDays(), stop);
        const auto count = std::min<std::ptrdiff_t>(SHOWN_DAYS, std::ssize(history.prices));
        result.lastDays = {std::prev(history.prices.end(), count), history.prices.end()};
        result.currency = history.currency;
      }
      if (source->offersCurrentPrice())
        result.price = source->currentPrice(tried, stop);
      if (result.lastDays.empty() && !result.price)
        result.failure = SourceReason{name, SourceFault::NoPrice, u"it has no price for " + tried};
    } catch (const Exception& failure) {
      result.failure = SourceReason{name, faultOf(failure), failure.message()};
    }
    return result;
  });
  if (!trial.failure)
    m_connection.sources().noteTried(name);
  return trial;
}

PriceStatus::Import PriceStatus::importFile(const String& code, const String& path,
                                            const CsvAnswers& answers) {
  const BigMutexLock lock;
  const std::string bytes = csvBytes(path.toUTF8());
  Import import;
  import.doubts = csvFormat(bytes, answers).doubts;
  if (!import.doubts.empty())
    return import;
  AnsweredHistory history = readCsv(bytes, answers);
  dropAfter(history, Date::realToday());
  import.passedOver = history.passedOver;
  import.days = history.prices.size();
  if (history.prices.empty())
    return import;
  import.first = history.prices.begin()->first;
  import.last = history.prices.rbegin()->first;
  import.changed =
      m_history
          .keepRecent(code, {import.first, import.last}, {std::move(history.prices), history.currency, {}})
          .size();
  return import;
}

} // namespace Tallymoor
