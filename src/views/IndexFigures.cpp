#include "views/IndexFigures.h"
#include "books/SharePortfolioUser.h"
#include "foundation/NotYetKnown.h"
#include "foundation/RunTimeSettings.h"
#include "market/TallymoorInternet.h"
#include <algorithm>
#include <set>
#include <utility>

namespace Tallymoor {

IndexFigures::IndexFigures(SharePortfolioUser& portfolio) : m_portfolio(portfolio) {}

void IndexFigures::outdate() {
  m_outdated = true;
  const bool hasIndex = m_portfolio.hasComparisonIndex();
  m_watchedIndex.watch(hasIndex ? std::set<String>{m_portfolio.comparisonIndex()} : std::set<String>());
}

const String& IndexFigures::gainToday() {
  readOutdated();
  return m_gainToday;
}

const String& IndexFigures::gainThisWeek() {
  readOutdated();
  return m_gainThisWeek;
}

const String& IndexFigures::trend() {
  readOutdated();
  return m_trend;
}

const String& IndexFigures::trendTip() {
  readOutdated();
  return m_trendTip;
}

void IndexFigures::readOutdated() {
  if (std::exchange(m_outdated, false))
    read();
}

void IndexFigures::read() {
  m_gainToday = m_gainThisWeek = u"n/a";
  if (!m_portfolio.hasComparisonIndex()) {
    m_trend = u"No index to compare with yet: \"set index\" chooses one.";
    m_trendTip = u"With an index, as that of your stock exchange, you see here and in the table whether the "
                 u"portfolio does better than its market.";
    return;
  }
  m_trend = u"<index trend disabled>";
  // Before the portfolio's first day there is nothing to compare, and perhaps no index to ask for.
  if (Date::hasFixedDate() && !m_portfolio.capitalRecord().hasDayCap(Date())) {
    m_trendTip = u"The portfolio has no record of the day shown.";
    return;
  }
  m_gainToday = m_gainThisWeek = u"failed";
  m_trendTip = String(u"The prices of ") + m_portfolio.comparisonIndex() +
               u" that its moving averages need are unavailable.";
  // The table has already asked about a missing price; the user is not asked again.
  const BackgroundPassScope quiet;
  try {
    requirePrices();
    readGains();
    readTrend();
  } catch (const NotYetKnown&) {
    m_outdated = true;
    m_gainToday = m_gainThisWeek = m_trend = NOT_YET_KNOWN;
    m_trendTip = String(u"The prices of ") + m_portfolio.comparisonIndex() + u" are being fetched.";
  } catch (const Exception&) {
    // What has been read stays, the rest shows as failed.
  }
}

/// Throws NotYetKnown while some of them are being fetched.
void IndexFigures::requirePrices() const {
  TallymoorInternet& gateway = TallymoorInternet::Instance();
  const String index = m_portfolio.comparisonIndex();
  const Date today, yesterday = today.plusDays(-1);
  for (const Date& day : {today, yesterday, today.fridayBeforeLastWeekend()})
    gateway.requirePrice(index, day);
  const Date first = IndexTrend::firstDayOfAverage(std::max(indexTrendShort.load(), indexTrendLong.load()));
  gateway.requireHistory({index, first, yesterday, HistoryNeed::Kind::Forward});
}

void IndexFigures::readGains() {
  m_portfolio.indexValueOn(Date());
  const String today = String::toPercent(m_portfolio.indexDailyGain());
  m_gainThisWeek = String::toPercent(m_portfolio.indexWeeklyGain());
  m_gainToday = today;
}

void IndexFigures::readTrend() {
  const String shortAverage = String::fromDouble(m_portfolio.indexMovingAverage(indexTrendShort), 2);
  const String longAverage = String::fromDouble(m_portfolio.indexMovingAverage(indexTrendLong), 2);
  const double difference = shortAverage.toDouble() - longAverage.toDouble();
  const String direction = difference > 0.0 ? u"rising" : difference < 0.0 ? u"falling" : u"steady";
  const String shortDays = String::fromLong(SharePortfolioUser::trendDays(indexTrendShort));
  const String longDays = String::fromLong(SharePortfolioUser::trendDays(indexTrendLong));
  m_trend = String(u"Index trend: ") + direction + u" (" + shortDays + u" day average " + shortAverage +
            u", " + longDays + u" day " + longAverage + u")";
  m_trendTip = m_portfolio.comparisonIndex() + u" is " + direction + u": its average of the last " +
               shortDays + u" weekdays is " + shortAverage + u", that of the last " + longDays + u" is " +
               longAverage + u".\nRecent days weigh more in both (exponential averages).";
}

} // namespace Tallymoor
