#pragma once

namespace FX {
class FXIcon;
}

namespace Tallymoor {

/// Icons of the tree's nodes. They belong to the application's window, must be created on the display and
/// outlive the tree; null means that the node has none.
struct NodeIcons {
  FX::FXIcon* portfolio = nullptr;
  FX::FXIcon* sharesHeld = nullptr;
  FX::FXIcon* sharesSold = nullptr;
  FX::FXIcon* dividends = nullptr;
  FX::FXIcon* cashReserve = nullptr;
  FX::FXIcon* watchHeld = nullptr; ///< the watchlist that each portfolio has
  FX::FXIcon* watchlist = nullptr; ///< one of the user's own
};

} // namespace Tallymoor
