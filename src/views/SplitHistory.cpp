#include "views/SplitHistory.h"
#include "books/RecordedSplits.h"
#include "books/SharePortfolioUser.h"
#include "foundation/Amounts.h"
#include "market/TallymoorInternet.h"
#include <cmath>

namespace Tallymoor {

namespace {

constexpr int DAYS_AROUND_SPLIT = 14; ///< within which there are trading days on either side

/// True when the closes change at the split by about its ratio rather than hardly at all.
bool jumps(const String& code, const Date& day, double ratio) {
  const auto rows = TallymoorInternet::Instance().cachedRows(code, day.plusDays(-DAYS_AROUND_SPLIT),
                                                             day.plusDays(DAYS_AROUND_SPLIT));
  const auto after = rows.lower_bound(day);
  if (after == rows.begin() || after == rows.end())
    return true;
  const double before = std::prev(after)->second.close;
  if (showsAsZero(before) || showsAsZero(after->second.close))
    return true;
  const double change = std::log(before / after->second.close);
  return std::abs(change - std::log(ratio)) < std::abs(change);
}

} // namespace

SplitHistory::SplitHistory(const String& code, const Portfolios& portfolios) {
  RecordedSplits::Ratios all;
  for (const SharePortfolioUser* portfolio : portfolios)
    all.merge(RecordedSplits::Ratios(RecordedSplits(portfolio->holdings(), code).ratios()));
  for (const auto& [day, ratio] : all)
    m_splits.push_back({day, ratio, jumps(code, day, ratio)});
}

double SplitHistory::sharesBetween(const Date& from, const Date& to) const {
  if (to < from)
    return 1.0 / sharesBetween(to, from);
  double shares = 1.0;
  for (const Split& split : m_splits)
    if (from < split.day && split.day <= to)
      shares *= split.ratio;
  return shares;
}

double SplitHistory::closeDivisor(const Date& from, const Date& to) const {
  double divisor = 1.0;
  for (const Split& split : m_splits)
    if (split.inCloses && from < split.day && split.day <= to)
      divisor *= split.ratio;
  return divisor;
}

} // namespace Tallymoor
