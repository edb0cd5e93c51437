#pragma once
#include "foundation/BigMutex.h"
#include "foundation/String.h"
#include <atomic>
#include <cstdint>

namespace Tallymoor {

// Copies of the settings of section "Operation" that background threads read without any lock. Written on the
// GUI thread under the big mutex by readSettings.
extern std::atomic<std::uint32_t> currentPriceUpdateMins;     ///< minutes between passes over current prices
extern std::atomic<std::uint32_t> historicalPriceUpdateHours; ///< hours between refreshes of recent closes
extern std::atomic<double> splitRatioDetect;                  ///< day multiple that flags a share split
extern std::atomic<double> reverseSplitRatioDetect;           ///< day multiple that flags a merge
extern std::atomic<double> indexTrendShort;                   ///< days of the short moving average
extern std::atomic<double> indexTrendLong;                    ///< days of the long moving average
extern std::atomic<bool> hideLastFYTransactions;              ///< hide events from before the financial year
extern std::atomic<bool> autoMinMaxPrices; ///< warn by the automatic limits; false at every start
extern String trayFormat;                  ///< read and written under the big mutex

/// True while a background pass holds the big mutex: no dialog may open and no wait cursor start.
extern std::atomic<bool> inBackgroundPass;

/// Reads the variables above from the settings store.
void readSettings();

/// What the user can change of the variables above, for a form to work on; made with the defaults.
struct OperationSettings {
  std::uint32_t currentPriceUpdateMins = 10;
  std::uint32_t historicalPriceUpdateHours = 8;
  double splitRatioDetect = 2.0;
  double reverseSplitRatioDetect = 2.0;
  double indexTrendShort = 10.0;
  double indexTrendLong = 30.0;
  bool autoMinMaxPrices = false;
  String trayFormat; ///< empty, as a name that no portfolio has, stands for the total
  bool hideLastFYTransactions = false;
};

/// The variables as they are. GUI thread, under the big mutex, as below.
OperationSettings operationSettings();
/// Takes the values into the variables and the settings store.
void writeSettings(const OperationSettings& values);

/// One stretch of a background pass: takes the big mutex, then sets inBackgroundPass; clears it before the
/// mutex goes.
class BackgroundPassScope {
public:
  BackgroundPassScope();
  ~BackgroundPassScope();
  BackgroundPassScope(const BackgroundPassScope&) = delete;
  BackgroundPassScope& operator=(const BackgroundPassScope&) = delete;

private:
  BigMutexLock m_lock;
  bool m_previous;
};

} // namespace Tallymoor
