#include "shell/Reports.h"
#include "analysis/ReportBuilder.h"
#include "analysis/ReportFiles.h"
#include "books/SharePortfolioUser.h"
#include "foundation/Platform.h"
#include "foundation/UserInteraction.h"
#include "market/PriceStatus.h"
#include "market/TallymoorInternet.h"
#include "session/BookQuestions.h"
#include "views/ChartModels.h"
#include "widgets/ChartDocument.h"
#include "widgets/MainWindow.h"
#include <algorithm>

namespace Tallymoor {

namespace {

// As wide to high as the page has room for; the page scales it.
constexpr int CHART_WIDTH = 960;
constexpr int CHART_HEIGHT = 300;

/// A report is written once, so it waits for the prices of the index.
void fetchIndex(const Portfolios& portfolios, const ReportPeriod& period) {
  if (portfolios.size() == 1 && portfolios.front()->hasComparisonIndex())
    TallymoorInternet::Instance().completeHistory({{portfolios.front()->comparisonIndex(), period.dayBefore(),
                                                    period.last, HistoryNeed::Kind::Backward}},
                                                  nullptr);
}

/// Empty where there is no record within the period to draw.
String chartOf(const Portfolios& portfolios, const ReportPeriod& period) {
  fetchIndex(portfolios, period);
  const ChartModel model = capitalChartModel(portfolios, period.dayBefore(), period.last);
  const bool drawn = std::any_of(model.series.begin(), model.series.end(),
                                 [](const ChartSeries& series) { return series.points.size() > 1; });
  return drawn ? chartSvg(model, CHART_WIDTH, CHART_HEIGHT) : String();
}

String writeReport(const Portfolios& portfolios, const ReportPeriod& period, const String& title) {
  const WaitCursor wait;
  MainWindow::setStatusText(u"making the report...");
  for (SharePortfolioUser* portfolio : portfolios)
    updateCapitalRecord(*portfolio);
  const bool isMadeUp = TallymoorInternet::Instance().priceStatus().isSampleMarket();
  return writeReportFiles(
      *makeReport(portfolios, period, isMadeUp ? title + u" with made-up prices" : title, chartOf),
      period.fileName());
}

} // namespace

void showReport(const OpenPortfolios& open, const ReportPeriod& period, const String& title) {
  if (open.empty()) {
    MainWindow::information(u"There are no portfolios to report on.");
    return;
  }
  const String page = writeReport(listOf(open), period, title);
  MainWindow::setStatusText(u"launching web browser...");
  if (!Platform::Instance().openDocument(page))
    MainWindow::information(u"Failed to open the report for you.\nThe report is at\n" + page);
}

} // namespace Tallymoor
