#include "foundation/RunTimeSettings.h"
#include "foundation/Settings.h"

namespace Tallymoor {

namespace {

const String SECTION = u"Operation";
const OperationSettings DEFAULTS;

void take(const OperationSettings& values) {
  currentPriceUpdateMins = values.currentPriceUpdateMins;
  historicalPriceUpdateHours = values.historicalPriceUpdateHours;
  splitRatioDetect = values.splitRatioDetect;
  reverseSplitRatioDetect = values.reverseSplitRatioDetect;
  indexTrendShort = values.indexTrendShort;
  indexTrendLong = values.indexTrendLong;
  autoMinMaxPrices = values.autoMinMaxPrices;
  trayFormat = values.trayFormat;
  hideLastFYTransactions = values.hideLastFYTransactions;
}

} // namespace

std::atomic<std::uint32_t> currentPriceUpdateMins = OperationSettings().currentPriceUpdateMins;
std::atomic<std::uint32_t> historicalPriceUpdateHours = OperationSettings().historicalPriceUpdateHours;
std::atomic<double> splitRatioDetect = OperationSettings().splitRatioDetect;
std::atomic<double> reverseSplitRatioDetect = OperationSettings().reverseSplitRatioDetect;
std::atomic<double> indexTrendShort = OperationSettings().indexTrendShort;
std::atomic<double> indexTrendLong = OperationSettings().indexTrendLong;
std::atomic<bool> hideLastFYTransactions = false;
std::atomic<bool> autoMinMaxPrices = false;
String trayFormat;
std::atomic<bool> inBackgroundPass = false;

void readSettings() {
  const BigMutexLock lock;
  const Settings& settings = Settings::Instance();
  const auto real = [&settings](const char16_t* key, double fallback) {
    return settings.readReal(SECTION, key, fallback);
  };
  OperationSettings values;
  values.currentPriceUpdateMins =
      settings.readUnsigned(SECTION, u"CurrentPriceUpdateMins", DEFAULTS.currentPriceUpdateMins);
  values.historicalPriceUpdateHours =
      settings.readUnsigned(SECTION, u"HistoricalPriceUpdateHours", DEFAULTS.historicalPriceUpdateHours);
  values.splitRatioDetect = real(u"SplitRatioDetect", DEFAULTS.splitRatioDetect);
  values.reverseSplitRatioDetect = real(u"ReverseSplitRatioDetect", DEFAULTS.reverseSplitRatioDetect);
  values.indexTrendShort = real(u"IndexTrendShort", DEFAULTS.indexTrendShort);
  values.indexTrendLong = real(u"IndexTrendLong", DEFAULTS.indexTrendLong);
  values.autoMinMaxPrices = false; // The option is stored, but is off at every start.
  values.trayFormat = settings.readString(SECTION, u"TrayFormat");
  values.hideLastFYTransactions = settings.readUnsigned(SECTION, u"HideLastFYTransactions") != 0;
  take(values);
}

OperationSettings operationSettings() {
  return {currentPriceUpdateMins, historicalPriceUpdateHours,
          splitRatioDetect,       reverseSplitRatioDetect,
          indexTrendShort,        indexTrendLong,
          autoMinMaxPrices,       trayFormat,
          hideLastFYTransactions};
}

void writeSettings(const OperationSettings& values) {
  take(values);
  Settings& settings = Settings::Instance();
  settings.writeUnsigned(SECTION, u"CurrentPriceUpdateMins", values.currentPriceUpdateMins);
  settings.writeUnsigned(SECTION, u"HistoricalPriceUpdateHours", values.historicalPriceUpdateHours);
  settings.writeReal(SECTION, u"SplitRatioDetect", values.splitRatioDetect);
  settings.writeReal(SECTION, u"ReverseSplitRatioDetect", values.reverseSplitRatioDetect);
  settings.writeReal(SECTION, u"IndexTrendShort", values.indexTrendShort);
  settings.writeReal(SECTION, u"IndexTrendLong", values.indexTrendLong);
  settings.writeUnsigned(SECTION, u"AutoMinMaxPrices", values.autoMinMaxPrices ? 1 : 0);
  settings.writeString(SECTION, u"TrayFormat", values.trayFormat);
  settings.writeUnsigned(SECTION, u"HideLastFYTransactions", values.hideLastFYTransactions ? 1 : 0);
}

BackgroundPassScope::BackgroundPassScope() NO_THREAD_SAFETY_ANALYSIS
    : m_previous(inBackgroundPass.exchange(true)) {}

BackgroundPassScope::~BackgroundPassScope() NO_THREAD_SAFETY_ANALYSIS {
  inBackgroundPass.store(m_previous);
}

} // namespace Tallymoor
