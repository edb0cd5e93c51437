#include "foundation/RunTimeSettings.h"
#include "foundation/Settings.h"

namespace Tallymoor {

namespace {

constexpr std::uint32_t DEFAULT_CURRENT_PRICE_MINS = 10;
constexpr std::uint32_t DEFAULT_HISTORICAL_PRICE_HOURS = 8;
constexpr double DEFAULT_SPLIT_RATIO = 2.0;
constexpr double DEFAULT_TREND_SHORT = 10.0;
constexpr double DEFAULT_TREND_LONG = 30.0;

} // namespace

std::atomic<std::uint32_t> currentPriceUpdateMins = DEFAULT_CURRENT_PRICE_MINS;
std::atomic<std::uint32_t> historicalPriceUpdateHours = DEFAULT_HISTORICAL_PRICE_HOURS;
std::atomic<double> splitRatioDetect = DEFAULT_SPLIT_RATIO;
std::atomic<double> reverseSplitRatioDetect = DEFAULT_SPLIT_RATIO;
std::atomic<double> indexTrendShort = DEFAULT_TREND_SHORT;
std::atomic<double> indexTrendLong = DEFAULT_TREND_LONG;
std::atomic<bool> hideLastFYTransactions = false;
std::atomic<bool> autoMinMaxPrices = false;
String trayFormat;
std::atomic<bool> inBackgroundPass = false;

void readSettings() {
  const BigMutexLock lock;
  const Settings& settings = Settings::Instance();
  const String section = u"Operation";
  currentPriceUpdateMins =
      settings.readUnsigned(section, u"CurrentPriceUpdateMins", DEFAULT_CURRENT_PRICE_MINS);
  historicalPriceUpdateHours =
      settings.readUnsigned(section, u"HistoricalPriceUpdateHours", DEFAULT_HISTORICAL_PRICE_HOURS);
  splitRatioDetect = settings.readReal(section, u"SplitRatioDetect", DEFAULT_SPLIT_RATIO);
  reverseSplitRatioDetect = settings.readReal(section, u"ReverseSplitRatioDetect", DEFAULT_SPLIT_RATIO);
  indexTrendShort = settings.readReal(section, u"IndexTrendShort", DEFAULT_TREND_SHORT);
  indexTrendLong = settings.readReal(section, u"IndexTrendLong", DEFAULT_TREND_LONG);
  hideLastFYTransactions = settings.readUnsigned(section, u"HideLastFYTransactions") != 0;
  autoMinMaxPrices = false; // the option is written, but a run always starts without it
  trayFormat = settings.readString(section, u"TrayFormat");
}

BackgroundPassScope::BackgroundPassScope() : m_previous(inBackgroundPass.exchange(true)) {}

BackgroundPassScope::~BackgroundPassScope() {
  inBackgroundPass.store(m_previous);
}

} // namespace Tallymoor
