#include "market/RequestedClose.h"
#include "market/TallymoorInternet.h"

namespace Tallymoor {

std::optional<double> requestedClose(const String& code, const Date& day) {
  TallymoorInternet& gateway = TallymoorInternet::Instance();
  gateway.requireHistory({code, day, day, HistoryNeed::Kind::Backward});
  const std::optional<KnownClose> known = gateway.closeOn(code, day);
  return known ? std::optional(known->close) : std::nullopt;
}

} // namespace Tallymoor
