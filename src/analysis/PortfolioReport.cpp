#include "analysis/PortfolioReport.h"
#include "analysis/DividendFigures.h"
#include "analysis/HoldingOnDay.h"
#include "analysis/PeriodEvents.h"
#include "analysis/ReportValues.h"
#include "analysis/SaleFigures.h"
#include "books/Gains.h"
#include "books/PortfolioEvents.h"
#include "books/SharePortfolioUser.h"
#include "foundation/Exception.h"
#include "market/StockNames.h"
#include "xml/PortfolioRecords.h"
#include "xml/ReportDocument.h"
#include <algorithm>

namespace Tallymoor {

namespace {

void addNote(XMLElement& report, const String& text) {
  report.addSubElement(new XMLReportNote, u"Notes").setValue(text);
}

double cashOn(const SharePortfolioUser& portfolio, const Date& day) {
  const SharePortfolioCapitalRecordUser& record = portfolio.capitalRecord();
  return record.hasDayCap(day) ? record.cashOn(day) : 0.0;
}

double cashOn(const Portfolios& portfolios, const Date& day) {
  double sum = 0.0;
  for (const SharePortfolioUser* portfolio : portfolios)
    sum += cashOn(*portfolio, day);
  return sum;
}

/// The gain of the comparison index; nothing, and a note, where its price is unavailable.
std::optional<double> indexGain(const Portfolios& portfolios, const ReportPeriod& period,
                                XMLElement& report) {
  try {
    return indexGainBetween(portfolios, period.dayBefore(), period.last);
  } catch (const Exception&) {
    addNote(report, u"The price of the comparison index is unavailable.");
    return std::nullopt;
  }
}

void noteMissingStart(const Portfolios& portfolios, const ReportPeriod& period, XMLElement& report) {
  const auto began = [&](const SharePortfolioUser* portfolio) {
    return !portfolio->capitalRecord().hasDayCap(period.dayBefore());
  };
  if (std::none_of(portfolios.begin(), portfolios.end(), began))
    return;
  addNote(report, portfolios.size() == 1
                      ? u"The portfolio has no records from before the period, so its gain has no percentage."
                      : u"Portfolios without records from before the period are left out of the gain in "
                        u"percent.");
}

/// Names the days at either end of the period on which another price stands in for one that is unavailable.
void noteProvisionalDays(const Portfolios& portfolios, const ReportPeriod& period, XMLElement& report) {
  for (const Date& day : {period.dayBefore(), period.last})
    if (isProvisional(portfolios, day))
      addNote(report, u"The figures of " + day.toString(DATE_DISPLAY_LOCAL) +
                          u" are provisional. Where a price is unavailable, the last known one, or that of a "
                          u"purchase or sale, stands in.");
}

/// One stock at the end of a period, like a row of the table of held shares. Figures that need a price are
/// nothing without one.
struct Holding {
  Holding(const SharePortfolioUser& portfolio, const CapitalRecord::Holding& recorded, const HeldOnDay& held,
          const Date& day)
      : code(recorded.code), number(recorded.number), buyPrice(held.cost.averagePrice()),
        purchaseValue(held.cost.value), daysHeld(day.daysSince(held.earliest)), comments(held.comments) {
    try {
      price = shownPrice(portfolio, code, day);
    } catch (const Exception&) {
    }
  }
  std::optional<double> value() const { return price ? std::optional(*price * number) : std::nullopt; }
  std::optional<double> grossGain() const {
    return price ? finiteOrNothing(*price * number - buyPrice * number) : std::nullopt;
  }
  std::optional<double> gainPercent() const {
    return price ? percentOf(*price - buyPrice, buyPrice) : std::nullopt;
  }

  String code;
  double number;
  double buyPrice;
  double purchaseValue;
  std::int32_t daysHeld;
  std::vector<String> comments; ///< of the purchases
  std::optional<double> price;
};

std::vector<Holding> holdingsOn(const SharePortfolioUser& portfolio, const Date& day) {
  std::vector<Holding> holdings;
  if (!portfolio.capitalRecord().hasDayCap(day))
    return holdings;
  for (const CapitalRecord::Holding& recorded : portfolio.capitalRecord().holdingsOn(day))
    if (const auto held = heldOn(portfolio, recorded.code, recorded.number, day))
      holdings.emplace_back(portfolio, recorded, *held, day);
  std::stable_sort(holdings.begin(), holdings.end(),
                   [](const Holding& a, const Holding& b) { return a.code < b.code; });
  return holdings;
}

void putCode(XMLElement& row, const String& code) {
  row.setAttribute(u"code", code);
  row.setAttribute(u"name", StockNames::nameOf(code));
}

String joined(const std::vector<String>& comments) {
  String text;
  for (const String& comment : comments)
    text += text.empty() ? comment : u"; " + comment;
  return text;
}

void addHolding(XMLElement& section, const Holding& holding, double capital) {
  XMLElement& row = section.addSubElement(new XMLShareHeldAt, u"Shares");
  putCode(row, holding.code);
  row.setAttribute(u"number", numberText(holding.number));
  row.setAttribute(u"daysHeld", String::fromLong(holding.daysHeld));
  row.setAttribute(u"comment", joined(holding.comments));
  putPrice(row, u"buyPrice", holding.buyPrice);
  putPrice(row, u"price", holding.price);
  putMoney(row, u"purchaseValue", holding.purchaseValue);
  putMoney(row, u"value", holding.value());
  putMoney(row, u"grossGain", holding.grossGain());
  putPercent(row, u"gainPercent", holding.gainPercent());
  if (holding.price)
    putPercent(row, u"portfolioPercent", percentOf(*holding.value(), capital));
}

void addSale(XMLElement& section, const SaleFigures& sale) {
  XMLElement& row = section.addSubElement(new XMLSaleReport, u"Sales");
  putCode(row, sale.code());
  row.setAttribute(u"number", numberText(sale.number()));
  row.setAttribute(u"daysHeld", String::fromLong(sale.daysHeld()));
  row.setAttribute(u"comment", sale.comment());
  putDate(row, u"bought", sale.bought());
  putDate(row, u"sold", sale.sold());
  putPrice(row, u"buyPrice", sale.buyPrice());
  putPrice(row, u"sellPrice", sale.sellPrice());
  putMoney(row, u"grossCost", sale.grossCost());
  putMoney(row, u"grossSale", sale.grossSale());
  putMoney(row, u"grossProfit", sale.grossProfit());
  putMoney(row, u"brokerage", sale.totalBrokerage());
  putMoney(row, u"netProfit", sale.netProfit());
  putPercent(row, u"netGain", sale.netGain());
}

void addDividend(XMLElement& section, const DividendFigures& dividend) {
  XMLElement& row = section.addSubElement(new XMLDividendReport, u"Dividends");
  putCode(row, dividend.code());
  row.setAttribute(u"number", numberText(dividend.numHeld()));
  row.setAttribute(u"rate", dividend.rateText());
  row.setAttribute(u"receivedAs", dividend.receivedAs());
  row.setAttribute(u"foreignSource", dividend.foreignSource());
  putDate(row, u"received", dividend.received());
  putMoney(row, u"value", dividend.value());
  putPercent(row, u"percentFranked", dividend.percentFranked());
  putMoney(row, u"frankingCredit", dividend.frankingCredit());
  putMoney(row, u"withholdingTax", dividend.withholdingTax());
}

void addInterest(XMLElement& section, const CashFlow& event) {
  XMLElement& row = section.addSubElement(new XMLInterestReport, u"Interests");
  row.setAttribute(u"description", event.record->description());
  putDate(row, u"date", event.day);
  putMoney(row, u"amount", event.record->amount());
}

void addCashFlow(XMLElement& section, const CashFlow& event) {
  XMLElement& row = section.addSubElement(new XMLCashFlowReport, u"CashFlows");
  const bool credit = event.record->isCredit();
  row.setAttribute(u"description", event.record->description());
  putDate(row, u"date", event.day);
  putMoney(row, credit ? u"credit" : u"debit", event.record->amount());
  putMoney(row, u"balance", cashOn(*event.portfolio, event.day));
}

} // namespace

void PortfolioReport::fill(XMLElement& report) const {
  noteMissingStart(m_portfolios, m_period, report);
  noteProvisionalDays(m_portfolios, m_period, report);
  XMLElement& performance = report.subElement(u"Performance");
  fillPerformance(performance);
  putPercent(performance, u"indexGainPercent", indexGain(m_portfolios, m_period, report));
  fillSharesHeld(report.subElement(u"SharesHeld"), report);
  fillSales(report.subElement(u"Sales"));
  fillDividends(report.subElement(u"Dividends"));
  fillInterests(report.subElement(u"Interests"));
  fillCashFlows(report.subElement(u"CashFlows"));
}

void PortfolioReport::fillPerformance(XMLElement& section) const {
  const Date start = m_period.dayBefore();
  const double before = capitalOn(m_portfolios, start);
  const double after = capitalOn(m_portfolios, m_period.last);
  const double flow = externalFlow(m_portfolios, {start, m_period.last}).value_or(0.0);
  const double cash = cashOn(m_portfolios, m_period.last);
  if (m_portfolios.size() == 1)
    section.setAttribute(u"index", m_portfolios.front()->comparisonIndex());
  putDate(section, u"start", start);
  putDate(section, u"end", m_period.last);
  putMoney(section, u"capitalStart", before);
  putMoney(section, u"externalFlow", flow);
  putMoney(section, u"capitalEnd", after);
  putMoney(section, u"gain", after - before - flow);
  putPercent(section, u"gainPercent", gainBetween(m_portfolios, start, m_period.last));
  putMoney(section, u"cashEnd", cash);
  putMoney(section, u"sharesEnd", after - cash);
}

void PortfolioReport::fillSharesHeld(XMLElement& section, XMLElement& report) const {
  double purchaseValue = 0.0, value = 0.0, grossGain = 0.0;
  for (SharePortfolioUser* portfolio : m_portfolios) {
    const double capital = capitalOn({portfolio}, m_period.last);
    for (const Holding& holding : holdingsOn(*portfolio, m_period.last)) {
      purchaseValue += holding.purchaseValue;
      value += holding.value().value_or(0.0);
      grossGain += holding.grossGain().value_or(0.0);
      if (!holding.price)
        addNote(report, u"The price of " + holding.code + u" on " +
                            m_period.last.toString(DATE_DISPLAY_LOCAL) +
                            u" is unavailable: its value and gain are missing in the totals of the shares "
                            u"held.");
      if (withRows())
        addHolding(section, holding, capital);
    }
  }
  putDate(section, u"date", m_period.last);
  XMLElement& totals = section.subElement(u"Totals");
  putMoney(totals, u"purchaseValue", purchaseValue);
  putMoney(totals, u"value", value);
  putMoney(totals, u"grossGain", grossGain);
  putPercent(totals, u"portfolioPercent", percentOf(value, capitalOn(m_portfolios, m_period.last)));
}

void PortfolioReport::fillSales(XMLElement& section) const {
  double cost = 0.0, proceeds = 0.0, profit = 0.0, brokerage = 0.0, net = 0.0;
  for (const SaleOf& event : salesWithin(m_portfolios, m_period)) {
    const SaleFigures sale(*event.record);
    cost += sale.grossCost();
    proceeds += sale.grossSale();
    profit += sale.grossProfit();
    brokerage += sale.totalBrokerage();
    net += sale.netProfit();
    if (withRows())
      addSale(section, sale);
  }
  putMoney(section, u"grossCost", cost);
  putMoney(section, u"grossSale", proceeds);
  putMoney(section, u"grossProfit", profit);
  putMoney(section, u"brokerage", brokerage);
  putMoney(section, u"netProfit", net);
}

void PortfolioReport::fillDividends(XMLElement& section) const {
  double value = 0.0, reinvested = 0.0, franking = 0.0, tax = 0.0;
  for (const DividendOf& event : dividendsWithin(m_portfolios, m_period)) {
    const DividendFigures dividend(*event.record);
    value += dividend.value();
    reinvested += dividend.isReinvested() ? dividend.value() : 0.0;
    franking += dividend.frankingCredit();
    tax += dividend.withholdingTax();
    if (withRows())
      addDividend(section, dividend);
  }
  putMoney(section, u"value", value);
  putMoney(section, u"paidOut", value - reinvested);
  putMoney(section, u"reinvested", reinvested);
  putMoney(section, u"frankingCredit", franking);
  putMoney(section, u"withholdingTax", tax);
}

void PortfolioReport::fillInterests(XMLElement& section) const {
  double amount = 0.0;
  for (const CashFlow& event : cashFlowsWithin(m_portfolios, m_period)) {
    if (event.record->type() != CASH_EVENT_INTEREST)
      continue;
    amount += event.record->amount();
    if (withRows())
      addInterest(section, event);
  }
  putMoney(section, u"amount", amount);
}

void PortfolioReport::fillCashFlows(XMLElement& section) const {
  double credit = 0.0, debit = 0.0, deposits = 0.0, withdrawals = 0.0;
  for (const CashFlow& event : cashFlowsWithin(m_portfolios, m_period)) {
    const double value = event.record->amount();
    const CashEventType type = event.record->type();
    (isCreditType(type) ? credit : debit) += value;
    deposits += type == CASH_EVENT_DEPOSIT ? value : 0.0;
    withdrawals += type == CASH_EVENT_WITHDRAWAL ? value : 0.0;
    if (withRows())
      addCashFlow(section, event);
  }
  putMoney(section, u"opening", cashOn(m_portfolios, m_period.dayBefore()));
  putMoney(section, u"closing", cashOn(m_portfolios, m_period.last));
  putMoney(section, u"credit", credit);
  putMoney(section, u"debit", debit);
  putMoney(section, u"deposits", deposits);
  putMoney(section, u"withdrawals", withdrawals);
}

} // namespace Tallymoor
