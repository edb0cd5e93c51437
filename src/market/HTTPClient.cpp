#include "market/HTTPClient.h"
#include "foundation/KeptTexts.h"

namespace Tallymoor {

namespace {

constexpr unsigned STATUS_OK = 200;
constexpr std::size_t STATUS_TEXT_LIMIT = 500; ///< a text that doesn't fit with its end mark is left out

[[noreturn]] void failByStatus(const HTTPAnswer& answer) {
  String message = kept::BAD_STATUS + String::fromLong(answer.status);
  const std::string& text = answer.statusText;
  if (!text.empty() && text.size() < STATUS_TEXT_LIMIT)
    message += u" and status: " + String::fromUTF8(text);
  throw HTTPException(message, answer.status);
}

std::vector<std::uint8_t> pageOf(HTTPAnswer answer) {
  if (answer.status != STATUS_OK)
    failByStatus(answer);
  return std::move(answer.body);
}

} // namespace

HTTPClient::~HTTPClient() = default;

String HTTPClient::getPage(const URL& url, const std::stop_token& stop) {
  std::vector<std::uint8_t> body = pageOf(get(url, {{"Accept", "text/html"}}, stop));
  body.push_back(0);
  return String(reinterpret_cast<const char*>(body.data()));
}

/// Not compressed: a file that is compressed itself must come as it is.
void HTTPClient::getPage(const URL& url, std::vector<std::uint8_t>& body, const std::stop_token& stop) {
  body = pageOf(get(url, {{"Accept", "*/*"}, {"Accept-Encoding", "identity"}}, stop));
}

} // namespace Tallymoor
