#pragma once
#include "market/HTTPClient.h"
#include <memory>

namespace Tallymoor {

class HostQueues;

/// A client whose requests wait for their turn at the host; see HostQueues.
class PoliteHTTPClient : public HTTPClient {
public:
  PoliteHTTPClient(std::unique_ptr<HTTPClient> client, std::shared_ptr<HostQueues> queues);

  void goOnline() override;
  /// Throws HostResting where the host is not to be asked now.
  HTTPAnswer get(const URL& url, const HTTPHeaders& headers, const std::stop_token& stop = {}) override;
  void setBodyLimit(std::size_t bytes) override;

private:
  const std::unique_ptr<HTTPClient> m_client;
  const std::shared_ptr<HostQueues> m_queues;
};

} // namespace Tallymoor
