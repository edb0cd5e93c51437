#pragma once
#include "foundation/BigMutex.h"
#include "foundation/String.h"
#include <atomic>
#include <cstdint>

namespace Tallymoor {

// Settings of the section "Operation", copied for background threads, which read them without a lock. Set by
// readSettings and writeSettings on the GUI thread under the big mutex.
extern std::atomic<std::uint32_t> currentPriceUpdateMins;     ///< Minutes between updates of current prices.
extern std::atomic<std::uint32_t> historicalPriceUpdateHours; ///< Hours between updates of recent closes.
extern std::atomic<double> splitRatioDetect;        ///< Daily price ratio that suggests a share split.
extern std::atomic<double> reverseSplitRatioDetect; ///< Daily price ratio that suggests a merge.
extern std::atomic<double> indexTrendShort;         ///< Days of the short moving average.
extern std::atomic<double> indexTrendLong;          ///< Days of the long moving average.
extern std::atomic<bool> hideLastFYTransactions;    ///< Hides events before the current financial year.
extern std::atomic<bool> autoMinMaxPrices;          ///< Warns by automatic price limits. Off at every start.
extern String trayFormat;                           ///< Guarded by the big mutex.

/// True while a background pass holds the big mutex. No dialog or wait cursor may then be shown.
extern std::atomic<bool> inBackgroundPass;

/// Reads these variables from the settings.
void readSettings();

/// Values of the variables above for a settings form, initialised to the defaults.
struct OperationSettings {
  std::uint32_t currentPriceUpdateMins = 10;
  std::uint32_t historicalPriceUpdateHours = 8;
  double splitRatioDetect = 2.0;
  double reverseSplitRatioDetect = 2.0;
  double indexTrendShort = 10.0;
  double indexTrendLong = 30.0;
  bool autoMinMaxPrices = false;
  String trayFormat; ///< Portfolio shown in the tray. Empty for the total.
  bool hideLastFYTransactions = false;
};

/// The current values. GUI thread, under the big mutex.
OperationSettings operationSettings();
/// Stores the values in the variables and the settings. GUI thread, under the big mutex.
void writeSettings(const OperationSettings& values);

/// One step of a background pass: takes the big mutex and sets inBackgroundPass. Clears the flag before it
/// releases the mutex.
class SCOPED_CAPABILITY BackgroundPassScope {
public:
  BackgroundPassScope() ACQUIRE(bigMutex());
  ~BackgroundPassScope() RELEASE();
  BackgroundPassScope(const BackgroundPassScope&) = delete;
  BackgroundPassScope& operator=(const BackgroundPassScope&) = delete;

private:
  BigMutexLock m_lock;
  bool m_previous;
};

} // namespace Tallymoor
