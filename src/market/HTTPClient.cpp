#include "market/HTTPClient.h"
#include "market/CurlHTTPClient.h"

namespace Tallymoor {

HTTPClient::~HTTPClient() = default;

String HTTPClient::getPageUnlessStopped(const URL& url, const StopCheck&) {
  return getPage(url);
}

std::unique_ptr<HTTPClient> createHTTPClient() {
  return std::make_unique<CurlHTTPClient>();
}

} // namespace Tallymoor
