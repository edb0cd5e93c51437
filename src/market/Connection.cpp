#include "market/Connection.h"
#include "foundation/Constants.h"
#include "foundation/Exception.h"
#include "foundation/Platform.h"
#include "market/DataSource.h"
#include "market/HTTPClient.h"
#include "market/HostQueues.h"
#include "market/LocatorSet.h"
#include "market/PoliteHTTPClient.h"
#include "market/SourceList.h"
#include <utility>

namespace Tallymoor {

Connection::Connection(ClientFactory makeClient)
    : m_makeClient(makeClient ? std::move(makeClient) : ClientFactory(createHTTPClient)),
      m_sources(std::make_unique<SourceList>(configDirectory(Platform::Instance(), APP_NAME))) {
  HostQueues::startAgain();
}

Connection::~Connection() = default;

std::unique_ptr<const LocatorSet> Connection::readLocators() {
  return std::make_unique<const LocatorSet>(configDirectory(Platform::Instance(), APP_NAME));
}

void Connection::setLocators(std::unique_ptr<const LocatorSet> locators) {
  m_locators = std::move(locators);
}

void Connection::goOnline() {
  auto client = std::make_shared<PoliteHTTPClient>(m_makeClient(), HostQueues::ofProgram());
  client->goOnline();
  m_client = std::move(client);
}

void Connection::goOffline() {
  m_client.reset();
}

DataSource Connection::source(const String& operation) const {
  if (!m_client)
    throw HTTPException(u"TallymoorInternet::" + operation + u" - internet offline.");
  return DataSource(m_sources->choice(m_client, *m_locators));
}

std::shared_ptr<const PriceProvider> Connection::provider(const String& name) const {
  if (!m_client)
    throw HTTPException(u"TallymoorInternet::beginTrial - internet offline.");
  return m_sources->provider(name, m_client, *m_locators);
}

/// Sources other than the locators divide a long range into their own pages.
HistoryRange Connection::pageAround(const Date& day, bool upTo) const {
  constexpr int TEN_YEARS = 2600; // of trading days
  const bool isByLocators = m_sources->isLocatorsAlone();
  return HistoryRange::around(day, upTo,
                              isByLocators ? m_locators->historicalPrices().maxEntries() : TEN_YEARS);
}

HistoryRange Connection::recentPage() const {
  constexpr int THREE_MONTHS = 65;
  return m_sources->isLocatorsAlone() ? pageAround(Date(), true)
                                      : HistoryRange::around(Date(), true, THREE_MONTHS);
}

} // namespace Tallymoor
