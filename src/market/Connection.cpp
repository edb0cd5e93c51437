#include "market/Connection.h"
#include "foundation/Constants.h"
#include "foundation/Exception.h"
#include "foundation/Platform.h"
#include "market/DataSource.h"
#include "market/HTTPClient.h"
#include "market/LocatorSet.h"
#include <utility>

namespace Tallymoor {

Connection::Connection(ClientFactory makeClient)
    : m_makeClient(makeClient ? std::move(makeClient) : ClientFactory(createHTTPClient)) {}

Connection::~Connection() = default;

std::unique_ptr<const LocatorSet> Connection::readLocators() {
  return std::make_unique<const LocatorSet>(configDirectory(Platform::Instance(), APP_NAME));
}

void Connection::setLocators(std::unique_ptr<const LocatorSet> locators) {
  m_locators = std::move(locators);
}

void Connection::goOnline() {
  std::shared_ptr<HTTPClient> client = m_makeClient();
  client->goOnline();
  m_client = std::move(client);
}

void Connection::goOffline() {
  m_client.reset();
}

DataSource Connection::source(const String& operation) const {
  if (!m_client)
    throw HTTPException(u"TallymoorInternet::" + operation + u" - internet offline.");
  return DataSource(m_client, *m_locators);
}

HistoryRange Connection::pageAround(const Date& day, bool upTo) const {
  return HistoryRange::around(day, upTo, m_locators->historicalPrices().maxEntries());
}

} // namespace Tallymoor
