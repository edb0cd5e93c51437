#include "widgets/ChartLegend.h"
#include "widgets/ChartTexts.h"
#include <algorithm>

namespace Tallymoor {

namespace {

constexpr double SAMPLE_LINES = 1.8; ///< width of a sample of a line, in heights of a text
constexpr double LINE_SPACING = 1.1;

class Legend {
public:
  Legend(const ChartModel& model, const ChartArea& room, const ChartMetrics& metrics)
      : m_model(model), m_room(room), m_metrics(metrics) {}

  std::vector<ChartKey> place() {
    for (std::size_t i = 0; i < m_model.series.size(); ++i)
      if (m_model.series[i].hasValues())
        add(ChartKey::SERIES, i, m_model.series[i].name);
    for (std::size_t i = 0; i < m_model.levels.size(); ++i) {
      const ChartLevel& level = m_model.levels[i];
      add(ChartKey::LEVEL, i, level.name + u" " + chartValueText(level.value, m_model.unit));
    }
    if (hasMarkers(true))
      add(ChartKey::PURCHASES, 0, u"Purchases");
    if (hasMarkers(false))
      add(ChartKey::SALES, 0, u"Sales");
    return std::all_of(m_keys.begin(), m_keys.end(), [this](const ChartKey& key) { return fits(key); })
               ? m_keys
               : std::vector<ChartKey>();
  }

private:
  bool hasMarkers(bool up) const {
    return std::any_of(m_model.markers.begin(), m_model.markers.end(),
                       [up](const ChartMarker& marker) { return marker.up == up; });
  }
  double endOf(const ChartText& name) const { return name.x + m_metrics.textWidth(name.text); }
  bool fits(const ChartKey& key) const {
    const double bottom = key.name.y + m_metrics.lineHeight + m_metrics.gap();
    return endOf(key.name) <= m_room.right() && bottom <= m_room.bottom();
  }

  /// Behind the last entry, or on the next line.
  void add(ChartKey::Kind kind, std::size_t index, const String& name) {
    const double line = m_metrics.lineHeight;
    const double gap = m_metrics.gap();
    const bool isMarker = kind == ChartKey::PURCHASES || kind == ChartKey::SALES;
    const double sample = isMarker ? line : line * SAMPLE_LINES;
    double x = m_room.x + gap;
    double y = m_room.y;
    if (!m_keys.empty()) {
      x = endOf(m_keys.back().name) + line;
      y = m_keys.back().name.y;
      if (x + sample + gap + m_metrics.textWidth(name) > m_room.right() - gap) {
        x = m_room.x + gap;
        y += line * LINE_SPACING;
      }
    }
    m_keys.push_back({kind, index, {x, y, sample, line}, {x + sample + gap, y, name}});
  }

  const ChartModel& m_model;
  const ChartArea m_room;
  const ChartMetrics& m_metrics;
  std::vector<ChartKey> m_keys;
};

} // namespace

std::vector<ChartKey> placeLegend(const ChartModel& model, const ChartArea& room,
                                  const ChartMetrics& metrics) {
  return Legend(model, room, metrics).place();
}

} // namespace Tallymoor
