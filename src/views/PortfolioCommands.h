#pragma once
#include "foundation/Date.h"
#include "foundation/String.h"
#include <functional>

namespace Tallymoor {

struct PriceLimits;

/// What the views below a portfolio's node ask of it. GUI thread only.
class PortfolioCommands {
public:
  virtual ~PortfolioCommands();

  /// Asks for a purchase, with the code filled in unless it is empty, and records it.
  virtual void buyShares(const String& code) = 0;
  /// Likewise for a sale.
  virtual void sellShares(const String& code) = 0;
  /// Shows the page of the share's purchases; nothing happens where there is none, as under a view date.
  virtual void showPurchases(const String& code) = 0;
  /// Changes the portfolio's records by makeChange. Its tables stop reading them before that, and everything
  /// that shows them is rebuilt when the running handler has returned, also when the change fails.
  virtual void change(const String& sentence, const std::function<void()>& command) = 0;
  /// The user has typed the price of a share on a day: it counts in every portfolio that held the share.
  virtual void priceTyped(const String& code, const Date& date, double price) = 0;
  /// The user may have corrected past prices, of which the capital records have heard.
  virtual void pricesCorrected() = 0;
  /// The user has typed the limits of a share: they are the stock's in every portfolio and watchlist.
  virtual void limitsTyped(const String& code, const PriceLimits& limits) = 0;
};

} // namespace Tallymoor
