#pragma once
#include "market/PriceUpdater.h"
#include "widgets/PacedWakeUp.h"
#include <functional>
#include <set>

namespace Tallymoor {

/// Lets a node follow the prices: they arrive on the updater's thread, and the node hears of them on the GUI
/// thread, under the big mutex, as part of a background pass, so that nothing is asked because a price came.
/// Many prices may be told in one call.
class PriceWatch : public PriceUpdater::PricesObserver {
public:
  /// The codes whose prices came since the last call; none when only a round of prices has ended. An
  /// Exception from it shows in the status line.
  using Handler = std::function<void(const std::set<String>& codes)>;

  /// GUI thread, as the destructor. Throws what the gateway's first construction throws.
  PriceWatch(FX::FXApp* app, const String& context, Handler handler);
  ~PriceWatch() override;
  PriceWatch(const PriceWatch&) = delete;
  PriceWatch& operator=(const PriceWatch&) = delete;

  void currentPriceUpdated(const String& code, double price) override;
  void pricesUpdateFinished() override;
  void historicalPriceChanged(const String& code, const Date& date, double close) override;
  void historyArrived(const String& code) override;

private:
  void tell();

  const String m_context; ///< what a failure is reported with
  const Handler m_handler;
  std::set<String> m_codes; ///< not told yet; guarded by the big mutex
  PacedWakeUp m_wakeUp;
};

} // namespace Tallymoor
