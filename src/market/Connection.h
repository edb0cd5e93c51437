#pragma once
#include "foundation/BigMutex.h"
#include "foundation/String.h"
#include "market/HistoryRange.h"
#include <functional>
#include <memory>

namespace Tallymoor {

class DataSource;
class HTTPClient;
class LocatorSet;
class PriceProvider;
class SourceList;

/// The connection to the sources of prices: an HTTP client while the program is online, the locator
/// documents, and the list of all sources, which say where prices are found. Callers hold the big mutex.
class Connection {
public:
  using ClientFactory = std::function<std::unique_ptr<HTTPClient>()>;

  /// Starts offline, without locators, and with the user's list of sources. An empty factory means
  /// createHTTPClient.
  explicit Connection(ClientFactory makeClient);
  ~Connection();

  /// Reads the user's locator documents; any thread. Throws XMLException for one that can't be read,
  /// HTMLException when one names no locator to use.
  static std::unique_ptr<const LocatorSet> readLocators();
  void setLocators(std::unique_ptr<const LocatorSet> locators) REQUIRES(bigMutex());

  /// Makes a new client. Throws HTTPException when there is no network.
  void goOnline() REQUIRES(bigMutex());
  void goOffline() REQUIRES(bigMutex());
  bool isOnline() const REQUIRES(bigMutex()) { return m_client != nullptr; }

  /// What a fetch needs. The result may be used without the big mutex. Throws HTTPException, which names the
  /// operation, when offline.
  DataSource source(const String& operation) const REQUIRES(bigMutex());
  /// The range of days of one request for past prices.
  HistoryRange pageAround(const Date& day, bool upTo) const REQUIRES(bigMutex());
  /// The days up to today for which a pass of the updater asks.
  HistoryRange recentPage() const REQUIRES(bigMutex());

  SourceList& sources() REQUIRES(bigMutex()) { return *m_sources; }
  const LocatorSet& locators() const REQUIRES(bigMutex()) { return *m_locators; }
  /// A source for a trial, whether it is on or not. Throws as source does, and for a name that no source has.
  std::shared_ptr<const PriceProvider> provider(const String& name) const REQUIRES(bigMutex());

private:
  const ClientFactory m_makeClient;
  std::unique_ptr<const LocatorSet> m_locators GUARDED_BY(bigMutex());
  std::unique_ptr<SourceList> m_sources GUARDED_BY(bigMutex()); ///< never null
  std::shared_ptr<HTTPClient>
      m_client GUARDED_BY(bigMutex()); ///< null while offline; shared with the fetches under way
};

} // namespace Tallymoor
