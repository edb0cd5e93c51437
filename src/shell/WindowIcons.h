#pragma once
#include <fx.h>
#include <memory>

namespace Tallymoor {

/// The pictures of the main window, its buttons and the tree's nodes. Made before the window, which creates
/// them.
class WindowIcons {
public:
  explicit WindowIcons(FXApp* app);
  /// Puts all of them on the display.
  void create();

  std::unique_ptr<FXIcon> big, mini, banner;
  std::unique_ptr<FXIcon> tray; ///< keeps its pixels; not for widgets
  std::unique_ptr<FXIcon> newPortfolio, newWatchlist, buy, sell, dividend, interest, deposit, withdraw,
      report, priceUpdate;
  std::unique_ptr<FXIcon> online, offline, trying;
  std::unique_ptr<FXIcon> forwardWeek, forwardDay, backDay, backWeek;
  std::unique_ptr<FXIcon> portfolio, sharesHeld, sharesSold, dividends, cashReserve;
  std::unique_ptr<FXIcon> watchHeld, watchlist;
};

} // namespace Tallymoor
