#include "market/RetryAfter.h"
#include "market/HTTPAnswer.h"
#include <charconv>
#include <cstdint>
#include <ctime>
#include <curl/curl.h>
#include <string>

namespace Tallymoor {

namespace {

/// Nothing for a text that is no date.
std::optional<std::int64_t> momentOf(std::string_view text) {
  const time_t moment = curl_getdate(std::string(text).c_str(), nullptr);
  return moment < 0 ? std::nullopt : std::optional<std::int64_t>(moment);
}

} // namespace

std::optional<std::chrono::seconds> retryAfter(const HTTPAnswer& answer) {
  const std::string_view text = answer.header("Retry-After");
  std::uint32_t seconds = 0;
  const auto [end, failure] = std::from_chars(text.data(), text.data() + text.size(), seconds);
  if (failure == std::errc() && end == text.data() + text.size())
    return std::chrono::seconds(seconds);
  const std::optional<std::int64_t> until = momentOf(text);
  if (!until)
    return std::nullopt;
  const std::int64_t now = momentOf(answer.header("Date")).value_or(std::time(nullptr));
  return std::chrono::seconds(std::max<std::int64_t>(*until - now, 0));
}

} // namespace Tallymoor
