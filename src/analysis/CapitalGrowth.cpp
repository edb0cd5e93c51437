#include "analysis/CapitalGrowth.h"
#include "books/Gains.h"
#include "books/SharePortfolioUser.h"
#include "foundation/Amounts.h"
#include "market/TallymoorInternet.h"
#include <algorithm>
#include <utility>

namespace Tallymoor {

namespace {

/// The comparison index in the scale of the growth.
class ScaledIndex {
public:
  explicit ScaledIndex(const Portfolios& portfolios)
      : m_code(portfolios.size() == 1 ? portfolios.front()->comparisonIndex() : String()) {}

  /// Has its gaps filled, which would be drawn as straight lines.
  void requestBetween(const Date& from, const Date& to) const {
    if (!m_code.empty())
      TallymoorInternet::Instance().requestHistory({m_code, from, to, HistoryNeed::Kind::Backward});
  }
  void startAgain() { m_scale.reset(); }
  /// The first close since the start is scaled to the growth of its day.
  std::optional<double> valueOn(const Date& day, double growth) {
    const std::optional<double> close = closeOn(day);
    if (!close)
      return std::nullopt;
    if (!m_scale)
      m_scale = growth / *close;
    return finiteOrNothing(*close * *m_scale);
  }

private:
  std::optional<double> closeOn(const Date& day) const {
    if (m_code.empty())
      return std::nullopt;
    const std::optional<double> close = TallymoorInternet::Instance().cachedClose(m_code, day);
    return close && !showsAsZero(*close) ? close : std::nullopt;
  }

  String m_code;
  std::optional<double> m_scale;
};

/// Goes from day to day; each portfolio's capital is summed up once a day.
class GrowthWalk {
public:
  GrowthWalk(const Portfolios& portfolios, const Date& from, const Date& to) : m_index(portfolios) {
    m_index.requestBetween(from, to);
    for (const SharePortfolioUser* portfolio : portfolios)
      m_walked.push_back({&portfolio->capitalRecord(), std::nullopt});
  }

  /// Days rise, and each has a record.
  GrowthDay walkTo(const Date& day) {
    const Sums sums = sumsOn(day);
    if (const std::optional<double> factor = factorOf(sums)) {
      m_growth *= *factor;
    } else {
      m_growth = sums.capital;
      m_index.startAgain();
    }
    m_lastDay = day;
    return {day, sums.capital, m_growth, m_index.valueOn(day, m_growth)};
  }

private:
  struct Walked {
    const SharePortfolioCapitalRecordUser* record;
    std::optional<double> capital; ///< on the last day, if it has a record
  };
  struct Sums {
    double capital = 0.0; ///< of all with a record of the day
    // Of those with a record of the last day too.
    double now = 0.0;
    double before = 0.0;
    double flow = 0.0;
  };

  Sums sumsOn(const Date& day) {
    Sums sums;
    for (Walked& walked : m_walked) {
      const std::optional<double> before = std::exchange(walked.capital, std::nullopt);
      if (!walked.record->hasDayCap(day))
        continue;
      const double capital = walked.record->capitalOn(day);
      walked.capital = capital;
      sums.capital += capital;
      if (!before)
        continue;
      sums.now += capital;
      sums.before += *before;
      sums.flow += walked.record->externalFlowBetween(m_lastDay, day);
    }
    return sums;
  }

  /// Nothing where the chain can't go on.
  static std::optional<double> factorOf(const Sums& sums) {
    const std::optional<double> gain = gainPercent(sums.now, sums.before, sums.flow);
    const double factor = 1 + gain.value_or(-100.0) / 100;
    return factor > 0.0 ? std::optional(factor) : std::nullopt;
  }

  std::vector<Walked> m_walked;
  ScaledIndex m_index;
  Date m_lastDay;
  double m_growth = 0.0;
};

Date firstRecordOf(const Portfolios& portfolios) {
  Date first;
  for (const SharePortfolioUser* portfolio : portfolios)
    first = std::min(first, portfolio->capitalRecord().firstRecordDate());
  return first;
}

} // namespace

std::vector<GrowthDay> capitalGrowth(const Portfolios& portfolios, const Date& from, const Date& to) {
  std::vector<GrowthDay> days;
  const Date first = std::max(from, firstRecordOf(portfolios));
  GrowthWalk walk(portfolios, first, to);
  for (Date day = first; day <= to; day.addDays(1))
    if (hasRecordOn(portfolios, day))
      days.push_back(walk.walkTo(day));
  return days;
}

} // namespace Tallymoor
