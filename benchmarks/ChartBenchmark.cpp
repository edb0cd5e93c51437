// Redraws a chart of 20 years of days with its index, compared with the same chart of one year, which has as
// many points as fit into the pixels, and with a frame at 60 Hz. With a display, draws in a window and waits
// for the server; without one, in memory.
#include "Ratio.h"
#include "widgets/ChartPicture.h"
#include "widgets/ChartView.h"
#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace Tallymoor {
namespace {

constexpr int ROUNDS = 41;
constexpr int WIDTH = 1000;
constexpr int HEIGHT = 320;
constexpr int TWENTY_YEARS = 7300;
constexpr int ONE_YEAR = 365;
constexpr double FRAME_SECONDS = 0.016;
constexpr double LENGTH_LIMIT = 4.0;

ChartSeries makeSeries(const String& name, int days, double swing, ChartStyle style) {
  ChartSeries series{name, ChartColours::BLUE, style, {}};
  const Date first = Date(2026, 3, 3).plusDays(-days);
  for (int i = 0; i < days; ++i)
    series.points.push_back({first.plusDays(i), 50000.0 + 10.0 * i + swing * std::sin(i * 0.9)});
  return series;
}

ChartModel makeModel(int days) {
  ChartModel model;
  model.title = u"Capital";
  model.series = {makeSeries(u"Capital", days, 3000.0, ChartStyle::LINE),
                  makeSeries(u"Index", days, 2000.0, ChartStyle::DASHES)};
  return model;
}

template <class Work>
double secondsOf(const Work& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

/// The time from a new model to the screen.
class Redraw {
public:
  explicit Redraw(FXApp& app)
      : m_app(app), m_window(&app, "Chart", nullptr, nullptr, DECOR_ALL, 0, 0, WIDTH, HEIGHT) {
    if (!m_app.getDisplay())
      return;
    m_view = new ChartView(&m_window);
    m_app.create();
    m_window.show(PLACEMENT_SCREEN);
    m_window.layout();
    settle();
  }

  double seconds(const ChartModel& model) { return m_view ? secondsOnScreen(model) : secondsInMemory(model); }

private:
  void settle() {
    m_app.flush(TRUE);
    m_app.runWhileEvents();
    m_app.repaint();
    m_app.flush(TRUE);
  }
  double secondsOnScreen(const ChartModel& model) {
    m_view->setModel(model);
    return secondsOf([this] {
      m_app.repaint();
      m_app.flush(TRUE);
    });
  }
  static double secondsInMemory(const ChartModel& model) {
    return secondsOf([&model] {
      const ChartFont font("sans-serif", 12.0, ChartFont::Target::SCREEN);
      const ChartLayout layout(model, WIDTH, HEIGHT, font.metrics());
      ChartPicture(model, layout, WIDTH, HEIGHT, font);
    });
  }

  FXApp& m_app;
  FXMainWindow m_window;
  ChartView* m_view = nullptr;
};

bool measure(FXApp& app) {
  Redraw redraw(app);
  const ChartModel decades = makeModel(TWENTY_YEARS);
  const ChartModel year = makeModel(ONE_YEAR);
  std::vector<double> seconds;
  const auto ours = [&] {
    seconds.push_back(redraw.seconds(decades));
    return seconds.back();
  };
  const double length = Bench::measureRatio(ROUNDS, ours, [&] { return redraw.seconds(year); });
  // The fastest run, to exclude other load on the machine.
  const double fastest = *std::min_element(seconds.begin(), seconds.end());
  std::printf("20 years of days redrawn %s in %.2f ms, mostly %.2f ms\n",
              app.getDisplay() ? "on the screen" : "in memory", fastest * 1000,
              Bench::median(seconds) * 1000);
  const bool isShort = Bench::printRatio("chart_20_years_to_1", length, LENGTH_LIMIT);
  const bool isInFrame = Bench::printRatio("chart_redraw_to_frame", fastest / FRAME_SECONDS, 1.0);
  return isShort && isInFrame;
}

} // namespace
} // namespace Tallymoor

int main(int argc, char** argv) {
  FXApp app("Tallymoor", "Brindlecove");
  app.init(argc, argv, std::getenv("DISPLAY") != nullptr);
  return Tallymoor::measure(app) ? 0 : 1;
}
