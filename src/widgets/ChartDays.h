#pragma once
#include "widgets/ChartModel.h"
#include <vector>

namespace Tallymoor {

/// The days of a chart that have values, and where a day stands on the time axis: from 0 at its start to 1 at
/// its end.
class ChartDays {
public:
  explicit ChartDays(const ChartModel& model);

  bool empty() const { return m_days.empty(); }
  // None of the rest in an empty chart.

  const Date& axisStart() const { return m_axisStart; }
  const Date& axisEnd() const { return m_axisEnd; }
  const Date& last() const { return m_days.back(); }
  /// In the middle when the axis is a single day.
  double partOf(const Date& day) const;
  /// The day with values that is nearest to this part of the axis.
  Date nearest(double part) const;
  /// The day with values so many such days later; the last or first one where the days end there.
  Date beside(const Date& day, int steps) const;

private:
  void addSeries(const ChartModel& model, bool straight);
  void add(const std::vector<Date>& days);
  void findAxisEnds(const ChartModel& model);

  std::vector<Date> m_days; ///< rising
  Date m_axisStart;
  Date m_axisEnd;
};

} // namespace Tallymoor
