#pragma once
#include "xml/XMLElement.h"
#include <initializer_list>

namespace Tallymoor {

// A report: what each portfolio did within a period, and all of them together. The program writes it and
// never reads it back; the stylesheet turns it into a page.
//
// All values are attributes. A date, amount or percentage "x" stands in a fixed form ("30/6/2026", "1234.50")
// and beside it as "xShown" in the user's; both are empty where there is no figure. Every attribute is always
// there. None is registered: that is what makes the framework escape them all.

/// What the elements of a report have in common.
class XMLReportElement : public XMLElement {
protected:
  using XMLElement::XMLElement;
  /// Texts that stand for themselves; empty at first.
  void declareTexts(std::initializer_list<const char16_t*> names);
  /// Values with their shown form; both empty at first.
  void declareValues(std::initializer_list<const char16_t*> names);
};

/// Root: texts "title", "directory"; values "from", "to", "made". "Portfolios", then "Total" (0..1), which is
/// there for several portfolios.
class XMLReport : public XMLReportElement {
public:
  XMLReport();
};

/// Text "name". "Notes" (0..n), "Chart" (0..1), and a section each: "Performance",
/// "SharesHeld", "Sales", "Dividends", "Interests", "CashFlows". The sections of the total have sums and no
/// rows.
class XMLPortfolioReport : public XMLReportElement {
public:
  XMLPortfolioReport() : XMLPortfolioReport(u"PortfolioReport") {}

protected:
  explicit XMLPortfolioReport(const String& tag);
};

/// The same for all portfolios together.
class XMLTotalReport : public XMLPortfolioReport {
public:
  XMLTotalReport() : XMLPortfolioReport(u"TotalReport") {}
};

/// Something that the reader of the figures has to know.
class XMLReportNote : public XMLElement {
public:
  XMLReportNote();
};

/// An SVG element as text.
class XMLReportChart : public XMLElement {
public:
  XMLReportChart();
};

/// Text "index". Values "start", "end", "capitalStart", "externalFlow", "capitalEnd", "gain", "gainPercent",
/// "indexGainPercent", "sharesEnd", "cashEnd".
class XMLPerformanceReport : public XMLReportElement {
public:
  XMLPerformanceReport();
};

/// Value "date". "Shares", and "Totals".
class XMLSharesHeldAt : public XMLReportElement {
public:
  XMLSharesHeldAt();
};

/// Texts "code", "name", "number", "daysHeld", "comment" (those of the purchases). Values "buyPrice",
/// "price", "purchaseValue", "value", "grossGain", "gainPercent", "portfolioPercent".
class XMLShareHeldAt : public XMLReportElement {
public:
  XMLShareHeldAt();
};

/// Values "purchaseValue", "value", "grossGain", "portfolioPercent".
class XMLSharesHeldAtTotals : public XMLReportElement {
public:
  XMLSharesHeldAtTotals();
};

/// Sums "grossCost", "grossSale", "grossProfit", "brokerage", "netProfit". "Sales".
class XMLSalesReport : public XMLReportElement {
public:
  XMLSalesReport();
};

/// Texts "code", "name", "number", "daysHeld", "comment". Values "bought", "sold", "buyPrice", "sellPrice",
/// "grossCost", "grossSale", "grossProfit", "brokerage", "netProfit", "netGain".
class XMLSaleReport : public XMLReportElement {
public:
  XMLSaleReport();
};

/// Sums "value", "paidOut", "reinvested", "frankingCredit", "withholdingTax". "Dividends".
class XMLDividendsReport : public XMLReportElement {
public:
  XMLDividendsReport();
};

/// Texts "code", "name", "number", "rate", "receivedAs", "foreignSource". Values "received", "value",
/// "percentFranked", "frankingCredit", "withholdingTax".
class XMLDividendReport : public XMLReportElement {
public:
  XMLDividendReport();
};

/// Sum "amount". "Interests".
class XMLInterestsReport : public XMLReportElement {
public:
  XMLInterestsReport();
};

/// Text "description". Values "date", "amount".
class XMLInterestReport : public XMLReportElement {
public:
  XMLInterestReport();
};

/// Values "opening", "closing", and the sums "credit", "debit", "deposits", "withdrawals". "CashFlows".
class XMLCashFlowsReport : public XMLReportElement {
public:
  XMLCashFlowsReport();
};

/// Text "description". Values "date", "credit", "debit", "balance".
class XMLCashFlowReport : public XMLReportElement {
public:
  XMLCashFlowReport();
};

} // namespace Tallymoor
