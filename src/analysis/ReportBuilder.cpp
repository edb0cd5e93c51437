#include "analysis/ReportBuilder.h"
#include "analysis/PortfolioReport.h"
#include "analysis/ReportValues.h"
#include "books/SharePortfolioUser.h"
#include "foundation/Exception.h"

namespace Tallymoor {

namespace {

void checkRecord(const SharePortfolioUser& portfolio, const Date& last) {
  if (portfolio.portfolioStartDate() <= last && !portfolio.capitalRecord().hasDayCap(last))
    throw Exception(u"The capital record of " + portfolio.name() + u" does not reach " +
                    last.toString(DATE_DISPLAY_LOCAL) + u", so no report was made.");
}

void addPart(XMLElement& part, const String& name, const Portfolios& portfolios, const ReportPeriod& period,
             PortfolioReport::Rows rows, const ReportChart& chart) {
  part.setAttribute(u"name", name);
  PortfolioReport(portfolios, period, rows).fill(part);
  if (const String picture = chart ? chart(portfolios, period) : String(); !picture.empty())
    part.addSubElement(new XMLReportChart, u"Chart").setValue(picture);
}

} // namespace

std::unique_ptr<XMLReport> makeReport(const Portfolios& portfolios, const ReportPeriod& period,
                                      const String& title, const ReportChart& chart) {
  for (const SharePortfolioUser* portfolio : portfolios)
    checkRecord(*portfolio, period.last);
  auto report = std::make_unique<XMLReport>();
  report->setAttribute(u"title", title);
  putDate(*report, u"from", period.first);
  putDate(*report, u"to", period.last);
  putDate(*report, u"made", Date::realToday());
  for (SharePortfolioUser* portfolio : portfolios)
    addPart(report->addSubElement(new XMLPortfolioReport, u"Portfolios"), portfolio->name(), {portfolio},
            period, PortfolioReport::Rows::All, chart);
  if (portfolios.size() > 1)
    addPart(report->addSubElement(new XMLTotalReport, u"Total"), u"All portfolios", portfolios, period,
            PortfolioReport::Rows::None, chart);
  return report;
}

} // namespace Tallymoor
