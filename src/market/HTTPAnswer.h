#pragma once
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace Tallymoor {

/// Names and values of header lines, in the order in which they are sent.
using HTTPHeaders = std::vector<std::pair<std::string, std::string>>;

/// What a server answered, whatever the status.
struct HTTPAnswer {
  unsigned status = 0;
  std::string statusText; ///< the words behind the status; mostly empty or unimportant
  HTTPHeaders headers;
  std::vector<std::uint8_t> body; ///< decompressed; maybe cut unless the status is 200 to 299

  bool isSuccess() const { return status >= 200 && status < 300; }
  /// The value of the first header with this name in any case; empty if there is none.
  std::string_view header(std::string_view name) const;
};

} // namespace Tallymoor
