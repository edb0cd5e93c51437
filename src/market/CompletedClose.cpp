#include "market/CompletedClose.h"
#include "market/TallymoorInternet.h"

namespace Tallymoor {

std::optional<double> completedClose(const String& code, const Date& day) {
  TallymoorInternet& gateway = TallymoorInternet::Instance();
  gateway.completeHistory(code, day, day);
  const std::optional<KnownClose> known = gateway.closeOn(code, day);
  return known ? std::optional(known->close) : std::nullopt;
}

} // namespace Tallymoor
