#include "market/HTTPClient.h"

namespace Tallymoor {

HTTPClient::~HTTPClient() = default;

} // namespace Tallymoor
