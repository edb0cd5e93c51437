// The commands that make reports.
#include "entry/ReportPeriodDialog.h"
#include "shell/Reports.h"
#include "shell/TallymoorWindow.h"
#include "widgets/HandlerScope.h"
#include "xml/CountryOfResidence.h"

namespace Tallymoor {

namespace {

/// What the user is offered first: the financial year so far.
ReportPeriod yearSoFar() {
  const Date today;
  return {CountryOfResidence::Instance().financialYearOf(today), today};
}

} // namespace

long TallymoorWindow::reportOf(const String& handler, const String& title,
                               const std::function<ReportPeriod()>& period) {
  return guardedHandler(u"TallymoorWindow::" + handler + u" failed.", [&] {
    loadedTree();
    showReport(store().portfolios(), period(), title);
  });
}

long TallymoorWindow::onReportLastMonth(FXObject*, FXSelector, void*) {
  return reportOf(u"onReportLastMonth", u"Report for last month", [] { return ReportPeriod::lastMonth(); });
}

long TallymoorWindow::onReportLastFQ(FXObject*, FXSelector, void*) {
  return reportOf(u"onReportLastFQ", u"Report for last financial quarter",
                  [] { return ReportPeriod::lastFinancialQuarter(); });
}

long TallymoorWindow::onReportLastCQ(FXObject*, FXSelector, void*) {
  return reportOf(u"onReportLastCQ", u"Report for last calendar quarter",
                  [] { return ReportPeriod::lastCalendarQuarter(); });
}

long TallymoorWindow::onReportLastFY(FXObject*, FXSelector, void*) {
  return reportOf(u"onReportLastFY", u"Report for last financial year",
                  [] { return ReportPeriod::lastFinancialYear(); });
}

long TallymoorWindow::onReportLastCY(FXObject*, FXSelector, void*) {
  return reportOf(u"onReportLastCY", u"Report for last calendar year",
                  [] { return ReportPeriod::lastCalendarYear(); });
}

long TallymoorWindow::onReportCustom(FXObject*, FXSelector, void*) {
  return guardedHandler(u"TallymoorWindow::onReportCustom failed.", [this] {
    loadedTree();
    ReportPeriodDialog dialog(this, yearSoFar());
    if (dialog.execute())
      showReport(store().portfolios(), dialog.period(), u"Custom report");
  });
}

} // namespace Tallymoor
