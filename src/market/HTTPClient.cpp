#include "market/HTTPClient.h"
#include "market/CurlHTTPClient.h"

namespace Tallymoor {

HTTPClient::~HTTPClient() = default;

std::unique_ptr<HTTPClient> createHTTPClient() {
  return std::make_unique<CurlHTTPClient>();
}

} // namespace Tallymoor
