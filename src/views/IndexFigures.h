#pragma once
#include "foundation/String.h"
#include "views/WatchedCodes.h"

namespace Tallymoor {

class SharePortfolioUser;

/// What a portfolio's comparison index did, as texts for its page and the tray: read when the first of them
/// is wanted, and again only after outdate. The index's price is kept current meanwhile.
///
/// GUI thread only, under the big mutex.
class IndexFigures {
public:
  /// The portfolio outlives the figures. The index is watched from the first call of outdate on.
  explicit IndexFigures(SharePortfolioUser& portfolio);

  /// The index, its prices or the day may be others now.
  void outdate();

  /// Each a percentage, "n/a", "failed", or NOT_YET_KNOWN while its prices are being fetched.
  const String& gainToday();
  const String& gainThisWeek();
  /// Where the index is going; without an index, how to choose one.
  const String& trend();
  /// How to read the trend.
  const String& trendTip();

private:
  void readOutdated();
  void read();
  void requirePrices() const;
  void readGains();
  void readTrend();

  SharePortfolioUser& m_portfolio;
  WatchedCodes m_watchedIndex;
  bool m_outdated = true;
  String m_gainToday;
  String m_gainThisWeek;
  String m_trend;
  String m_trendTip;
};

} // namespace Tallymoor
