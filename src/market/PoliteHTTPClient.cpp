#include "market/PoliteHTTPClient.h"
#include "market/HostQueues.h"
#include "market/URL.h"
#include <utility>

namespace Tallymoor {

PoliteHTTPClient::PoliteHTTPClient(std::unique_ptr<HTTPClient> client, std::shared_ptr<HostQueues> queues)
    : m_client(std::move(client)), m_queues(std::move(queues)) {}

void PoliteHTTPClient::goOnline() {
  m_client->goOnline();
}

HTTPAnswer PoliteHTTPClient::get(const URL& url, const HTTPHeaders& headers, const std::stop_token& stop) {
  HostQueues::Turn turn = m_queues->waitForTurn(HostQueues::hostOf(url), stop);
  try {
    HTTPAnswer answer = m_client->get(url, headers, stop);
    turn.answered(answer);
    return answer;
  } catch (const HTTPException& failure) {
    const auto* transfer = dynamic_cast<const TransferFailure*>(&failure);
    if (!stop.stop_requested())
      turn.failed(transfer ? transfer->reason() : failure.message());
    throw;
  }
}

void PoliteHTTPClient::setBodyLimit(std::size_t bytes) {
  m_client->setBodyLimit(bytes);
}

} // namespace Tallymoor
