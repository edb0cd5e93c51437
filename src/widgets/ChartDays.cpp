#include "widgets/ChartDays.h"
#include <algorithm>
#include <cmath>
#include <iterator>

namespace Tallymoor {

ChartDays::ChartDays(const ChartModel& model) {
  addSeries(model, false);
  if (m_days.empty())
    addSeries(model, true);
  if (m_days.empty())
    return;
  std::vector<Date> traded;
  for (const ChartMarker& marker : model.markers)
    traded.push_back(marker.day);
  std::sort(traded.begin(), traded.end());
  add(traded);
  findAxisEnds(model);
}

/// Of the series that are straight lines, or of the others. Each has its days in order, which makes merging
/// them cheap.
void ChartDays::addSeries(const ChartModel& model, bool straight) {
  for (const ChartSeries& series : model.series) {
    if (series.straight != straight)
      continue;
    std::vector<Date> days;
    days.reserve(series.points.size());
    for (const ChartPoint& point : series.points)
      if (point.isFinite())
        days.push_back(point.day);
    add(days);
  }
}

/// Takes days in order.
void ChartDays::add(const std::vector<Date>& days) {
  std::vector<Date> merged;
  merged.reserve(m_days.size() + days.size());
  std::set_union(m_days.begin(), m_days.end(), days.begin(), days.end(), std::back_inserter(merged));
  merged.erase(std::unique(merged.begin(), merged.end()), merged.end());
  m_days = std::move(merged);
}

/// A straight line may reach beyond the days with values, as up to today on a Sunday.
void ChartDays::findAxisEnds(const ChartModel& model) {
  m_axisStart = m_days.front();
  m_axisEnd = m_days.back();
  for (const ChartSeries& series : model.series)
    for (const ChartPoint& point : series.points)
      if (series.straight && point.isFinite()) {
        m_axisStart = std::min(m_axisStart, point.day);
        m_axisEnd = std::max(m_axisEnd, point.day);
      }
}

double ChartDays::partOf(const Date& day) const {
  const int days = m_axisEnd.daysSince(m_axisStart);
  return days == 0 ? 0.5 : double(day.daysSince(m_axisStart)) / days;
}

Date ChartDays::nearest(double part) const {
  const double place = std::clamp(part, 0.0, 1.0) * m_axisEnd.daysSince(m_axisStart);
  const auto after = std::upper_bound(m_days.begin(), m_days.end(), m_axisStart.plusDays(int(place)));
  if (after == m_days.end())
    return m_days.back();
  if (after == m_days.begin())
    return m_days.front();
  const double toBefore = place - (after - 1)->daysSince(m_axisStart);
  const double toAfter = after->daysSince(m_axisStart) - place;
  return toBefore <= toAfter ? *(after - 1) : *after;
}

Date ChartDays::beside(const Date& day, int steps) const {
  const auto at = std::lower_bound(m_days.begin(), m_days.end(), day);
  const auto place =
      std::clamp<std::ptrdiff_t>(at - m_days.begin() + steps, 0, std::ptrdiff_t(m_days.size()) - 1);
  return m_days[std::size_t(place)];
}

} // namespace Tallymoor
