#pragma once
#include "market/PriceProvider.h"
#include "market/SourceLog.h"
#include <map>
#include <memory>
#include <vector>

namespace Tallymoor {

/// A stock that is asked for at one source alone.
struct SourcePin {
  String source;
  String codeThere; ///< as the source knows it
};

/// The sources in their order, and the pins. A copy may be used on any thread.
struct SourceChoice {
  std::vector<std::shared_ptr<const PriceProvider>> sources;
  std::map<String, SourcePin> pins; ///< by code
  std::shared_ptr<SourceLog> log;
};

} // namespace Tallymoor
