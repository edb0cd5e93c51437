#include "market/HTTPAnswer.h"
#include <algorithm>
#include <strings.h>

namespace Tallymoor {

std::string_view HTTPAnswer::header(std::string_view name) const {
  const auto found = std::find_if(headers.begin(), headers.end(), [name](const auto& header) {
    return header.first.size() == name.size() &&
           strncasecmp(header.first.data(), name.data(), name.size()) == 0;
  });
  return found == headers.end() ? std::string_view() : std::string_view(found->second);
}

} // namespace Tallymoor
