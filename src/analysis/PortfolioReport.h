#pragma once
#include "analysis/Performance.h"
#include "analysis/ReportPeriod.h"

namespace Tallymoor {

class XMLElement;

/// Fills the sections of a portfolio's report (XMLPortfolioReport) for a period. Every figure is what the
/// tables show: holdings, capital and cash as of the end of the period, sales, dividends and cash of its
/// days.
///
/// Of one portfolio there is a row for each holding and event; of several together only the sums, which are
/// the sums of theirs. The capital records must be there up to the end of the period. GUI thread, under the
/// big mutex.
class PortfolioReport {
public:
  enum class Rows { All, None };

  /// The portfolios are not owned.
  PortfolioReport(const Portfolios& portfolios, const ReportPeriod& period, Rows rows)
      : m_portfolios(portfolios), m_period(period), m_rows(rows) {}

  void fill(XMLElement& report) const;

private:
  void fillPerformance(XMLElement& section) const;
  void fillSharesHeld(XMLElement& section, XMLElement& report) const;
  void fillSales(XMLElement& section) const;
  void fillDividends(XMLElement& section) const;
  void fillInterests(XMLElement& section) const;
  void fillCashFlows(XMLElement& section) const;
  bool withRows() const { return m_rows == Rows::All; }

  Portfolios m_portfolios;
  ReportPeriod m_period;
  Rows m_rows;
};

} // namespace Tallymoor
