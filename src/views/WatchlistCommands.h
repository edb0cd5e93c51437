#pragma once
#include "analysis/Performance.h"
#include "foundation/String.h"
#include <optional>

namespace Tallymoor {

struct PriceLimits;

/// What a watchlist asks of the program around it. GUI thread only.
class WatchlistCommands {
public:
  virtual ~WatchlistCommands();

  /// Asks for a portfolio and a purchase, with nothing filled in, and records it.
  virtual void buyShares() = 0;
  /// The user has typed the limits of a stock: they are the stock's in every portfolio and watchlist.
  virtual void limitsTyped(const String& code, const PriceLimits& limits) = 0;
  /// Capital of the portfolio of that name, 0 when there is none; of all of them for an empty name. Nothing
  /// before the records were brought up to date after the start.
  virtual std::optional<double> capitalOf(const String& portfolio) const = 0;
  /// All open portfolios, for use at once.
  virtual Portfolios portfolios() const = 0;
};

} // namespace Tallymoor
