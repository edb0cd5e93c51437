#include "shell/ReportCommands.h"
#include "entry/ReportPeriodDialog.h"
#include "shell/Reports.h"
#include "shell/TallymoorWindow.h"
#include "xml/CountryOfResidence.h"

namespace Tallymoor {

namespace {

using Window = TallymoorWindow;

/// A report that is made at once.
struct Report {
  FXuint id;
  const char* label;
  const char16_t* handler;
  const char16_t* title;
  ReportPeriod (*period)(const Date& today);
};
constexpr Report REPORTS[] = {
    {Window::ID_REPORT_LAST_MONTH, "Report for last &month...", u"onReportLastMonth",
     u"Report for last month", ReportPeriod::lastMonth},
    {Window::ID_REPORT_LAST_FQ, "Report for last &financial quarter...", u"onReportLastFQ",
     u"Report for last financial quarter", ReportPeriod::lastFinancialQuarter},
    {Window::ID_REPORT_LAST_CQ, "Report for last &calendar quarter...", u"onReportLastCQ",
     u"Report for last calendar quarter", ReportPeriod::lastCalendarQuarter},
    {Window::ID_REPORT_LAST_FY, "Report for last financial &year...", u"onReportLastFY",
     u"Report for last financial year", ReportPeriod::lastFinancialYear},
    {Window::ID_REPORT_LAST_CY, "Report for last ca&lendar year...", u"onReportLastCY",
     u"Report for last calendar year", ReportPeriod::lastCalendarYear},
};

/// What the user is offered first: the financial year so far.
ReportPeriod yearSoFar() {
  const Date today;
  return {CountryOfResidence::Instance().financialYearOf(today), today};
}

} // namespace

std::vector<Command> ReportCommands::commands(FXIcon* icon, const std::function<bool()>& isUsable) {
  std::vector<Command> commands;
  for (const Report& report : REPORTS)
    commands.push_back({report.id, report.label, "", "", nullptr, report.handler,
                        [this, &report] { makeReport(report.period(Date()), report.title); }, isUsable});
  commands.push_back({Window::ID_REPORT_CUSTOM, "Custom &Report...", "", "Report\tGenerate a report", icon,
                      u"onReportCustom", [this] { makeCustomReport(); }, isUsable});
  return commands;
}

void ReportCommands::makeReport(const ReportPeriod& period, const String& title) {
  m_window.loadedTree();
  showReport(m_window.store().portfolios(), period, title);
}

void ReportCommands::makeCustomReport() {
  m_window.loadedTree();
  ReportPeriodDialog dialog(&m_window, yearSoFar());
  if (dialog.execute())
    makeReport(dialog.period(), u"Custom report");
}

} // namespace Tallymoor
