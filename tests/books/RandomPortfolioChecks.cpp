// Invariants of every portfolio.
#include "books/RandomPortfolio.h"
#include "session/BookQuestions.h"
#include "support/StringPrinting.h"
#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <sstream>

namespace Tallymoor {

namespace {

/// The content of a portfolio's element, by reference name.
struct Layout {
  std::u16string_view reference;
  std::vector<Layout> parts = {};
};

const std::vector<Layout>& portfolioLayout() {
  static const std::vector<Layout> adjustments{{u"StartDate"}, {u"Factor"}};
  static const std::vector<Layout> layout{
      {u"Name"},
      {u"HeldShares",
       {{u"HeldShares",
         {{u"Code"},
          {u"BuyEvents",
           {{u"BuyDate"},
            {u"NumHeld"},
            {u"BuyPrice"},
            {u"Brokerage"},
            {u"Comment"},
            {u"Adjustments", adjustments}}},
          {u"MinPrice"},
          {u"MaxPrice"},
          {u"PortfolioMax"}}}}},
      {u"SoldShares",
       {{u"SoldShares",
         {{u"Code"},
          {u"SellEvents",
           {{u"BuyDate"},
            {u"SellDate"},
            {u"NumHeld"},
            {u"BuyPrice"},
            {u"SellPrice"},
            {u"BuyBrokerage"},
            {u"SellBrokerage"},
            {u"Comment"},
            {u"Adjustments", adjustments}}}}}}},
      {u"Dividends",
       {{u"DividendEvents",
         {{u"Code"},
          {u"ReceiveDate"},
          {u"NumHeld"},
          {u"Rate"},
          {u"PercentFranked"},
          {u"DRPShares"},
          {u"DRPRate"},
          {u"ForeignDividend"},
          {u"WithholdingTax"}}}}},
      {u"CashReserve", {{u"CashEvents", {{u"Date"}, {u"Value"}, {u"Type"}, {u"Description"}}}}},
      {u"ComparisonIndex"}};
  return layout;
}

void describe(const XMLElement& element, const std::vector<Layout>& layout, String& text) {
  for (const Layout& part : layout) {
    const std::size_t count = element.numSubElements(part.reference);
    for (std::size_t i = 0; i < count; ++i) {
      const XMLElement& child = element.subElement(part.reference, i);
      text.append(part.reference).append(u"=").append(child.value()).append(u"\n");
      describe(child, part.parts, text);
    }
  }
}

String described(const XMLElement& portfolio) {
  String text;
  describe(portfolio, portfolioLayout(), text);
  return text;
}

/// A day of a record as text; empty if missing. The stocks' order is ignored, because it is that of the
/// records at the time of computing, and a sale changes it.
String recordedDay(const SharePortfolioCapitalRecordUser& record, const Date& day) {
  if (!record.hasDayCap(day))
    return String();
  const XMLElement& dayCap = record.dayCapFor(day);
  String text = textValue(dayCap, u"Date") + u' ' + textValue(dayCap, u"CashTotal");
  if (dayCap.numSubElements(u"CashInjected") > 0)
    text = text + u'+' + textValue(dayCap, u"CashInjected");
  std::vector<String> stocks;
  for (std::size_t i = 0; i < dayCap.numSubElements(u"ShareVals"); ++i) {
    const XMLElement& shareVal = dayCap.subElement(u"ShareVals", i);
    stocks.push_back(u" " + textValue(shareVal, u"Code") + u' ' + textValue(shareVal, u"Number") + u'x' +
                     textValue(shareVal, u"Price"));
  }
  std::sort(stocks.begin(), stocks.end());
  for (const String& stock : stocks)
    text = text + stock;
  return text;
}

} // namespace

RandomPortfolio::Ledger RandomPortfolio::held() const {
  Ledger ledger{};
  for (const XMLHeldShare& stock : m_portfolio.heldShares()) {
    auto& days = ledger[static_cast<std::size_t>(indexOfCode(textValue(stock, u"Code")))];
    for (const XMLBuyEvent& parcel : stock.parcels())
      days[static_cast<std::size_t>(indexOfDay(parcel.bought()))] += hundredths(parcel, u"NumHeld");
  }
  return ledger;
}

RandomPortfolio::Ledger RandomPortfolio::sold() const {
  Ledger ledger{};
  for (const XMLSoldShare& stock : m_portfolio.soldShares()) {
    auto& days = ledger[static_cast<std::size_t>(indexOfCode(textValue(stock, u"Code")))];
    for (const XMLSellEvent& sale : stock.sales())
      days[static_cast<std::size_t>(indexOfDay(sale.bought()))] += hundredths(sale, u"NumHeld");
  }
  return ledger;
}

void RandomPortfolio::checkStocks(const XMLElement& stocks, std::u16string_view reference,
                                  std::u16string_view events) const {
  std::array<int, CODES> times{};
  for (std::size_t i = 0; i < stocks.numSubElements(reference); ++i) {
    const XMLElement& stock = stocks.subElement(reference, i);
    EXPECT_GT(stock.numSubElements(events), 0u) << "a stock without a parcel or sale";
    EXPECT_EQ(++times[static_cast<std::size_t>(indexOfCode(textValue(stock, u"Code")))], 1)
        << "a stock twice";
    for (std::size_t j = 0; j < stock.numSubElements(events); ++j)
      EXPECT_GT(hundredths(stock.subElement(events, j), u"NumHeld"), 0) << "a parcel or sale of nothing";
  }
}

void RandomPortfolio::checkShares() {
  const XMLSharePortfolio& portfolio = m_portfolio;
  checkStocks(portfolio.subElement(u"HeldShares"), u"HeldShares", u"BuyEvents");
  checkStocks(portfolio.subElement(u"SoldShares"), u"SoldShares", u"SellEvents");
  const Ledger parcels = held(), sales = sold();
  for (int code = 0; code < CODES; ++code) {
    const auto place = static_cast<std::size_t>(code);
    Hundredths soldSum = 0, heldToday = 0;
    for (int day = 0; day < DAYS; ++day) {
      const auto bought = static_cast<std::size_t>(day);
      EXPECT_EQ(m_bought[place][bought] - sales[place][bought] - parcels[place][bought], 0)
          << "code " << code << " bought on day " << day;
      soldSum += sales[place][bought];
      heldToday += adjusted(m_bought[place][bought] - sales[place][bought], code, day, DAYS - 1);
    }
    EXPECT_EQ(soldSum, m_soldSum[place]) << "code " << code;
    EXPECT_EQ(std::llround(m_user.numHeld(codeText(code)) * 100), heldToday) << "code " << code;
  }
}

RandomPortfolio::Hundredths RandomPortfolio::expectedOn(int code, int day) const {
  const auto place = static_cast<std::size_t>(code);
  Hundredths sum = 0;
  for (int bought = 0; bought <= day; ++bought)
    sum += adjusted(m_bought[place][static_cast<std::size_t>(bought)], code, bought, day);
  if (const auto* stock = m_user.findSoldShare(codeText(code)))
    for (std::size_t i = 0; i < stock->sales().size(); ++i) {
      const auto& sale = stock->sales()[i];
      if (indexOfDay(dateValue(sale, u"SellDate")) <= day)
        sum -= adjusted(hundredths(sale, u"NumHeld"), code, indexOfDay(dateValue(sale, u"BuyDate")), day);
    }
  return sum;
}

void RandomPortfolio::checkDay(const SharePortfolioCapitalRecordUser& record, int day) const {
  Hundredths cash = 0, injected = 0;
  const XMLElement& reserve = m_portfolio.subElement(u"CashReserve");
  for (std::size_t i = 0; i < reserve.numSubElements(u"CashEvents"); ++i) {
    const XMLElement& event = reserve.subElement(u"CashEvents", i);
    const int when = indexOfDay(dateValue(event, u"Date"));
    const std::int32_t type = longValue(event, u"Type");
    const bool comesIn =
        type == CASH_EVENT_CREDIT || type == CASH_EVENT_INTEREST || type == CASH_EVENT_DEPOSIT;
    const Hundredths value = comesIn ? hundredths(event, u"Value") : -hundredths(event, u"Value");
    if (when <= day)
      cash += value;
    if (when == day && (type == CASH_EVENT_DEPOSIT || type == CASH_EVENT_WITHDRAWAL))
      injected += value;
  }
  const XMLElement& dayCap = record.dayCapFor(dayAt(day));
  EXPECT_EQ(hundredths(dayCap, u"CashTotal"), cash) << "cash of day " << day;
  const bool isInjected = dayCap.numSubElements(u"CashInjected") > 0;
  EXPECT_EQ(isInjected, injected != 0) << "day " << day;
  EXPECT_EQ(isInjected ? hundredths(dayCap, u"CashInjected") : 0, injected) << "day " << day;

  std::array<Hundredths, CODES> recorded{};
  for (std::size_t i = 0; i < dayCap.numSubElements(u"ShareVals"); ++i) {
    const XMLElement& shareVal = dayCap.subElement(u"ShareVals", i);
    recorded[static_cast<std::size_t>(indexOfCode(textValue(shareVal, u"Code")))] +=
        hundredths(shareVal, u"Number");
  }
  for (int code = 0; code < CODES; ++code)
    EXPECT_EQ(recorded[static_cast<std::size_t>(code)], expectedOn(code, day))
        << "code " << code << " day " << day;
}

void RandomPortfolio::checkRecord() {
  updateCapitalRecord(m_user);
  m_fresh.recordsChangedFrom(dayAt(-1));
  AskingPortfolio asking(m_user);
  m_fresh.update(asking);
  const int first = indexOfDay(m_user.portfolioStartDate());
  for (int day = 0; day < DAYS; ++day) {
    EXPECT_EQ(recordedDay(m_user.capitalRecord(), dayAt(day)), recordedDay(m_fresh, dayAt(day)));
    EXPECT_EQ(m_fresh.hasDayCap(dayAt(day)), day >= first) << "day " << day;
    if (m_fresh.hasDayCap(dayAt(day)))
      checkDay(m_fresh, day);
  }
}

void RandomPortfolio::checkDocument() {
  std::ostringstream written;
  m_portfolio.encode(written);
  XMLSharePortfolio decoded;
  decoded.decode(written.str().c_str());
  EXPECT_EQ(described(decoded), described(m_portfolio));
}

} // namespace Tallymoor
