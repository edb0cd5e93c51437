#pragma once
#include "foundation/String.h"
#include "market/HistoryRange.h"
#include <functional>
#include <memory>

namespace Tallymoor {

class DataSource;
class HTTPClient;
class LocatorSet;

/// The way to the data source: an HTTP client while the program is online, and the locator documents that say
/// where prices lie. Guarded by the big mutex, which its callers hold.
class Connection {
public:
  using ClientFactory = std::function<std::unique_ptr<HTTPClient>()>;

  /// Offline, and without locators. createHTTPClient for an empty factory.
  explicit Connection(ClientFactory makeClient);
  ~Connection();

  /// Reads the user's locator documents; any thread. Throws XMLException for one that can't be read,
  /// HTMLException when one names no locator to use.
  static std::unique_ptr<const LocatorSet> readLocators();
  void setLocators(std::unique_ptr<const LocatorSet> locators);

  /// With a new client. Throws HTTPException when there is no network.
  void goOnline();
  void goOffline();
  bool isOnline() const { return m_client != nullptr; }

  /// What a fetch needs, for use with or without the big mutex. Throws HTTPException, with the operation's
  /// name, when offline.
  DataSource source(const String& operation) const;
  /// The days that one request for past prices asks for.
  HistoryRange pageAround(const Date& day, bool upTo) const;

private:
  const ClientFactory m_makeClient;
  std::unique_ptr<const LocatorSet> m_locators;
  std::shared_ptr<HTTPClient> m_client; ///< null while offline; shared with the fetches under way
};

} // namespace Tallymoor
