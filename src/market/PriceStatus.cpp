#include "market/PriceStatus.h"
#include "foundation/BigMutex.h"
#include "foundation/Exception.h"
#include "foundation/UnforeseenFailure.h"
#include "market/Connection.h"
#include "market/HistoryFetcher.h"
#include "market/LastPrice.h"
#include "market/LocatorPrices.h"
#include "market/LocatorSet.h"
#include "market/PriceHistory.h"
#include "market/PriceUpdater.h"
#include <iterator>
#include <utility>

namespace Tallymoor {

PriceStatus::PriceStatus(Connection& connection, PriceHistory& history, PriceUpdater& updater,
                         HistoryFetcher& fetcher)
    : m_connection(connection), m_history(history), m_updater(updater), m_fetcher(fetcher) {}

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
  if (const auto last = SharePriceCache::lastTradedClose(known, Date::realToday())) {
    const PriceOrigin origin = known.find(last->day)->origin;
    status.day = last->day;
    status.price = last->close;
    status.isTyped = origin == PriceOrigin::Typed;
    // A current price stands in today's row, even if it is one of days ago.
    if (origin == PriceOrigin::Current && told.price && told.price->day)
      status.day = std::min(*told.price->day, last->day);
    status.age = Date::realToday().daysSince(status.day);
  }
  const bool isByLocators = told.source.empty() || told.source == LocatorPrices::NAME;
  status.isSample = status.price && !status.isTyped && isByLocators && isSampleMarket();
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
    status.told = m_connection.sources().log().summaryOf(listed.name);
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

bool PriceStatus::isSampleMarket() {
  const BigMutexLock lock;
  return m_connection.locators().isSample() && m_connection.sources().isOn(LocatorPrices::NAME);
}

bool PriceStatus::hasSourceOn() {
  const BigMutexLock lock;
  return m_connection.sources().hasSourceOn();
}

PriceStatus::MarketChange PriceStatus::marketChangeBy(const String& name, bool isOn) {
  const BigMutexLock lock;
  if (!isOn || !m_connection.locators().isSample() || isSampleMarket() == (name == LocatorPrices::NAME))
    return MarketChange::None;
  return name == LocatorPrices::NAME ? MarketChange::BeginsSample : MarketChange::EndsSample;
}

void PriceStatus::setOn(const String& name, bool isOn) {
  const BigMutexLock lock;
  SourceList& sources = m_connection.sources();
  const MarketChange change = marketChangeBy(name, isOn);
  if (change == MarketChange::BeginsSample && sources.hasSourceOn())
    throw Exception(u"The prices of the sample market are made up. Switch all other sources off first.");
  if (change == MarketChange::None)
    sources.setOn(name, isOn);
  else
    changeMarket([&] {
      sources.setOn(name, isOn, change == MarketChange::EndsSample ? LocatorPrices::NAME : String());
    });
}

/// What is being fetched ends first: it would be stored, with prices of the market that has ended. On disk
/// the prices are gone before the sources are others, since the program may be killed at any moment.
void PriceStatus::changeMarket(const std::function<void()>& changeSources) {
  const bool wasRunning = m_updater.isRunning();
  m_updater.stopAndJoin();
  m_fetcher.cancel();
  try {
    m_updater.tellPricesForgotten();
    m_history.forgetFetched(changeSources);
    for (const String& code : m_updater.codes())
      m_updater.setCurrentPrice(code, 0.0);
  } catch (...) {
    if (wasRunning)
      m_updater.start();
    throw;
  }
  if (wasRunning)
    m_updater.start();
}

PriceStatus::TrialFetch PriceStatus::beginTrial(const String& name, const String& code) {
  const BigMutexLock lock;
  const std::shared_ptr<const PriceProvider> source = m_connection.provider(name);
  if (!source)
    throw Exception(u"The document of the source " + name + u" can't be read");
  const ListedSource& listed = m_connection.sources().source(name);
  const String tried = !code.empty() || !listed.document ? code : listed.document->tryCode();
  if (tried.empty())
    throw Exception(u"The source " + name + u" names no code to try it with");
  const auto count = [name, perDay = source->requestsADay(), &log = m_connection.sources().log()] {
    if (const auto refusal = log.beginTrialRequest(name, perDay))
      throw SourceException(refusal->fault, refusal->text);
  };
  return [=](const std::stop_token& stop) {
    constexpr std::ptrdiff_t SHOWN_DAYS = 5;
    Trial result;
    try {
      withUnforeseenFailures([&] {
        if (source->offersHistory()) {
          count();
          const AnsweredHistory history = source->history(tried, recentDays(), stop);
          const auto count = std::min<std::ptrdiff_t>(SHOWN_DAYS, std::ssize(history.prices));
          result.lastDays = {std::prev(history.prices.end(), count), history.prices.end()};
          result.days = history.prices.size();
          result.passedOver = history.passedOver;
          result.currency = history.currency;
        }
        if (source->offersCurrentPrice()) {
          count();
          result.price = source->currentPrice(tried, stop);
        }
      });
      if (result.lastDays.empty() && !result.price)
        result.failure = SourceReason{name, SourceFault::NoPrice, u"it has no price for " + tried};
    } catch (const OpenFormatException& open) {
      result.doubts = open.doubts();
      result.failure = SourceReason{name, faultOf(open), open.message()};
    } catch (const Exception& failure) {
      result.failure = SourceReason{name, faultOf(failure), failure.message()};
    }
    return result;
  };
}

void PriceStatus::endTrial(const String& name, const Trial& trial) {
  const BigMutexLock lock;
  SourceList& sources = m_connection.sources();
  if (!trial.failure && !sources.source(name).isTried)
    sources.noteTried(name);
}

std::vector<PriceFile> PriceStatus::filesOf(const String& name) {
  const BigMutexLock lock;
  const ListedSource& listed = m_connection.sources().source(name);
  if (listed.kind != SourceKind::Folder)
    return {};
  return CsvFolder(listed.name, listed.folder, listed.answers, std::make_shared<CsvFolderFiles>()).files();
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
  if (isSampleMarket())
    changeMarket([this]() REQUIRES(bigMutex()) { m_connection.sources().setOn(LocatorPrices::NAME, false); });
  import.first = history.prices.begin()->first;
  import.last = history.prices.rbegin()->first;
  import.changed =
      m_history
          .keepRecent(code, {import.first, import.last}, {std::move(history.prices), history.currency, {}})
          .size();
  return import;
}

} // namespace Tallymoor
