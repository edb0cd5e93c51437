#include "xml/ReportDocument.h"

namespace Tallymoor {

void XMLReportElement::declareTexts(std::initializer_list<const char16_t*> names) {
  for (const char16_t* name : names)
    setAttribute(name, String());
}

void XMLReportElement::declareValues(std::initializer_list<const char16_t*> names) {
  for (const char16_t* name : names) {
    setAttribute(name, String());
    setAttribute(String(name) + u"Shown", String());
  }
}

XMLReport::XMLReport() : XMLReportElement(u"Report") {
  declareTexts({u"title", u"directory"});
  declareValues({u"from", u"to", u"made"});
  registerSubElements(u"PortfolioReport", u"Portfolios", newElement<XMLPortfolioReport>, false);
  registerSubElement(u"TotalReport", u"Total", newElement<XMLTotalReport>, true);
}

XMLPortfolioReport::XMLPortfolioReport(const String& tag) : XMLReportElement(tag) {
  declareTexts({u"name"});
  registerSubElements(u"Note", u"Notes", newElement<XMLReportNote>, false);
  registerSubElement(u"Chart", u"Chart", newElement<XMLReportChart>, true);
  registerAndCreate(u"PerformanceReport", u"Performance", newElement<XMLPerformanceReport>);
  registerAndCreate(u"SharesHeldAt", u"SharesHeld", newElement<XMLSharesHeldAt>);
  registerAndCreate(u"SalesReport", u"Sales", newElement<XMLSalesReport>);
  registerAndCreate(u"DividendsReport", u"Dividends", newElement<XMLDividendsReport>);
  registerAndCreate(u"InterestsReport", u"Interests", newElement<XMLInterestsReport>);
  registerAndCreate(u"CashFlowsReport", u"CashFlows", newElement<XMLCashFlowsReport>);
}

XMLReportNote::XMLReportNote() : XMLElement(u"Note") {
  XMLElement::markContentUnsafe();
}

XMLReportChart::XMLReportChart() : XMLElement(u"Chart") {
  XMLElement::markContentUnsafe();
}

XMLPerformanceReport::XMLPerformanceReport() : XMLReportElement(u"PerformanceReport") {
  declareTexts({u"index"});
  declareValues({u"start", u"end", u"capitalStart", u"externalFlow", u"capitalEnd", u"gain", u"gainPercent",
                 u"indexGainPercent", u"sharesEnd", u"cashEnd"});
}

XMLSharesHeldAt::XMLSharesHeldAt() : XMLReportElement(u"SharesHeldAt") {
  declareValues({u"date"});
  registerSubElements(u"ShareHeldAt", u"Shares", newElement<XMLShareHeldAt>, false);
  registerAndCreate(u"SharesHeldAtTotals", u"Totals", newElement<XMLSharesHeldAtTotals>);
}

XMLShareHeldAt::XMLShareHeldAt() : XMLReportElement(u"ShareHeldAt") {
  declareTexts({u"code", u"name", u"number", u"daysHeld", u"comment"});
  declareValues(
      {u"buyPrice", u"price", u"purchaseValue", u"value", u"grossGain", u"gainPercent", u"portfolioPercent"});
}

XMLSharesHeldAtTotals::XMLSharesHeldAtTotals() : XMLReportElement(u"SharesHeldAtTotals") {
  declareValues({u"purchaseValue", u"value", u"grossGain", u"portfolioPercent"});
}

XMLSalesReport::XMLSalesReport() : XMLReportElement(u"SalesReport") {
  declareValues({u"grossCost", u"grossSale", u"grossProfit", u"brokerage", u"netProfit"});
  registerSubElements(u"SaleReport", u"Sales", newElement<XMLSaleReport>, false);
}

XMLSaleReport::XMLSaleReport() : XMLReportElement(u"SaleReport") {
  declareTexts({u"code", u"name", u"number", u"daysHeld", u"comment"});
  declareValues({u"bought", u"sold", u"buyPrice", u"sellPrice", u"grossCost", u"grossSale", u"grossProfit",
                 u"brokerage", u"netProfit", u"netGain"});
}

XMLDividendsReport::XMLDividendsReport() : XMLReportElement(u"DividendsReport") {
  declareValues({u"value", u"paidOut", u"reinvested", u"frankingCredit", u"withholdingTax"});
  registerSubElements(u"DividendReport", u"Dividends", newElement<XMLDividendReport>, false);
}

XMLDividendReport::XMLDividendReport() : XMLReportElement(u"DividendReport") {
  declareTexts({u"code", u"name", u"number", u"rate", u"receivedAs", u"foreignSource"});
  declareValues({u"received", u"value", u"percentFranked", u"frankingCredit", u"withholdingTax"});
}

XMLInterestsReport::XMLInterestsReport() : XMLReportElement(u"InterestsReport") {
  declareValues({u"amount"});
  registerSubElements(u"InterestReport", u"Interests", newElement<XMLInterestReport>, false);
}

XMLInterestReport::XMLInterestReport() : XMLReportElement(u"InterestReport") {
  declareTexts({u"description"});
  declareValues({u"date", u"amount"});
}

XMLCashFlowsReport::XMLCashFlowsReport() : XMLReportElement(u"CashFlowsReport") {
  declareValues({u"opening", u"closing", u"credit", u"debit", u"deposits", u"withdrawals"});
  registerSubElements(u"CashFlowReport", u"CashFlows", newElement<XMLCashFlowReport>, false);
}

XMLCashFlowReport::XMLCashFlowReport() : XMLReportElement(u"CashFlowReport") {
  declareTexts({u"description"});
  declareValues({u"date", u"credit", u"debit", u"balance"});
}

} // namespace Tallymoor
