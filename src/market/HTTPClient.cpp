#include "market/HTTPClient.h"
#include "foundation/String.h"

namespace Tallymoor {

HTTPClient::~HTTPClient() = default;

String HTTPClient::getPageUnlessStopped(const URL& url, const StopCheck&) {
  return getPage(url);
}

} // namespace Tallymoor
