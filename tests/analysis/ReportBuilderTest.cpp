#include "ReportTest.h"
#include "market/StockNames.h"
#include <gmock/gmock.h>

namespace Tallymoor {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ReportBuilderTest : public ReportTest {};

TEST_F(ReportBuilderTest, TheReportSaysWhatItIsAbout) {
  trade();
  const auto report = ReportTest::report({&user()}, m_january, u"Report for last month");
  expectTexts(*report, {{u"title", u"Report for last month"}});
  expectValues(*report, {{u"from", u"1/1/2026 01/01/2026"},
                         {u"to", u"31/1/2026 31/01/2026"},
                         {u"made", u"3/3/2026 03/03/2026"}});
  EXPECT_EQ(report->numSubElements(u"Portfolios"), 1u);
  EXPECT_EQ(report->numSubElements(u"Total"), 0u);
  EXPECT_EQ(part(*report).attribute(u"name"), String(u"Trading"));
  EXPECT_THAT(notes(part(*report)), IsEmpty());
}

TEST_F(ReportBuilderTest, PerformanceSubtractsDepositsFromTheGain) {
  trade();
  const auto report = january();
  const XMLElement& performance = part(*report).subElement(u"Performance");
  expectValues(performance, {{u"start", u"31/12/2025 31/12/2025"},
                             {u"end", u"31/1/2026 31/01/2026"},
                             {u"capitalStart", u"10070.00 $10,070.00"},
                             {u"externalFlow", u"437.66 $437.66"},
                             {u"capitalEnd", u"11944.00 $11,944.00"},
                             {u"sharesEnd", u"4444.00 $4,444.00"},
                             {u"cashEnd", u"7500.00 $7,500.00"},
                             {u"gain", u"1436.34 $1,436.34"},
                             {u"gainPercent", u"14.26 14.26%"},
                             {u"indexGainPercent", u" "}});
  EXPECT_EQ(performance.attribute(u"index"), String());
}

TEST_F(ReportBuilderTest, TheIndexStandsBesideTheGain) {
  trade();
  user().setComparisonIndex(u"^IDX");
  setPrice(u"^IDX", Date(2025, 12, 31), 200);
  setPrice(u"^IDX", Date(2026, 1, 31), 190);
  const auto report = january();
  const XMLElement& performance = part(*report).subElement(u"Performance");
  expectTexts(performance, {{u"index", u"^IDX"}});
  expectValues(performance, {{u"indexGainPercent", u"-5.00 -5.00%"}});
}

TEST_F(ReportBuilderTest, AnIndexWithoutAPriceIsNoted) {
  trade();
  user().setComparisonIndex(u"^IDX");
  const auto report = january();
  expectValues(part(*report).subElement(u"Performance"), {{u"indexGainPercent", u" "}});
  EXPECT_THAT(notes(part(*report)), ElementsAre(u"The price of the comparison index is unavailable."));
}

TEST_F(ReportBuilderTest, HoldingsAreThoseOfTheEndWithWhatWasSoldSince) {
  trade();
  const auto report = january();
  const XMLElement& held = part(*report).subElement(u"SharesHeld");
  expectValues(held, {{u"date", u"31/1/2026 31/01/2026"}});
  ASSERT_EQ(held.numSubElements(u"Shares"), 1u);
  const XMLElement& row = held.subElement(u"Shares");
  expectTexts(row, {{u"code", u"ABC.AX"}, {u"name", u""}, {u"number", u"202.00"}, {u"daysHeld", u"52"}});
  expectValues(row, {{u"buyPrice", u"15.0990 15.0990"},
                     {u"price", u"22.0000 22.00"},
                     {u"purchaseValue", u"3050.00 $3,050.00"},
                     {u"value", u"4444.00 $4,444.00"},
                     {u"grossGain", u"1394.00 $1,394.00"},
                     {u"gainPercent", u"45.70 45.70%"},
                     {u"portfolioPercent", u"37.21 37.21%"}});
  expectValues(held.subElement(u"Totals"), {{u"purchaseValue", u"3050.00 $3,050.00"},
                                            {u"value", u"4444.00 $4,444.00"},
                                            {u"grossGain", u"1394.00 $1,394.00"},
                                            {u"portfolioPercent", u"37.21 37.21%"}});
}

TEST_F(ReportBuilderTest, NamesAndCommentsStandBesideTheCodes) {
  trade();
  StockNames::remember(u"ABC.AX", u"Alpha & Co");
  user().buyShares(u"ABC.AX", {Date(2026, 1, 12), 10, 20, 20, u"on a tip"});
  user().buyShares(u"ABC.AX", {Date(2026, 1, 13), 10, 20, 20, u"<once> more"});
  const auto january = report(m_january), february = report(m_february);
  const XMLElement& held = part(*january).subElement(u"SharesHeld").subElement(u"Shares");
  expectTexts(held, {{u"name", u"Alpha & Co"}});
  EXPECT_TRUE(held.attribute(u"comment").contains(u"on a tip; <once> more"))
      << held.attribute(u"comment").toUTF8();
  expectTexts(part(*january).subElement(u"Dividends").subElement(u"Dividends"), {{u"name", u"Alpha & Co"}});
  expectTexts(part(*february).subElement(u"Sales").subElement(u"Sales"),
              {{u"name", u"Alpha & Co"}, {u"comment", COMMENT}});
}

TEST_F(ReportBuilderTest, SalesAreThoseOfThePeriod) {
  trade();
  EXPECT_EQ(part(*january()).subElement(u"Sales").numSubElements(u"Sales"), 0u);
  const auto report = this->report(m_february);
  const XMLElement& sales = part(*report).subElement(u"Sales");
  ASSERT_EQ(sales.numSubElements(u"Sales"), 1u);
  const XMLElement& row = sales.subElement(u"Sales");
  expectTexts(row,
              {{u"code", u"ABC.AX"}, {u"number", u"50.00"}, {u"daysHeld", u"62"}, {u"comment", COMMENT}});
  expectValues(row, {{u"bought", u"10/12/2025 10/12/2025"},
                     {u"sold", u"10/2/2026 10/02/2026"},
                     {u"buyPrice", u"10.0000 10.00"},
                     {u"sellPrice", u"30.0000 30.00"},
                     {u"grossCost", u"500.00 $500.00"},
                     {u"grossSale", u"1500.00 $1,500.00"},
                     {u"grossProfit", u"1000.00 $1,000.00"},
                     {u"brokerage", u"15.00 $15.00"},
                     {u"netProfit", u"985.00 $985.00"},
                     {u"netGain", u"197.00 197.00%"}});
  expectValues(sales, {{u"grossCost", u"500.00 $500.00"},
                       {u"grossSale", u"1500.00 $1,500.00"},
                       {u"grossProfit", u"1000.00 $1,000.00"},
                       {u"brokerage", u"15.00 $15.00"},
                       {u"netProfit", u"985.00 $985.00"}});
}

TEST_F(ReportBuilderTest, SalesOfSplitSharesAreInSharesOfTheirDay) {
  setPrices(u"ABC.AX", Date(2025, 12, 10), m_today, 6);
  user().buyShares(u"ABC.AX", {Date(2025, 12, 10), 100, 9, 30, String()});
  user().recordAdjustment(u"ABC.AX", Date(2026, 1, 5), 3, false);
  user().sellShares(u"ABC.AX", {Date(2026, 1, 10), 100, 6, 20, String()}, true);
  const auto made = january();
  const XMLElement& sale = part(*made).subElement(u"Sales").subElement(u"Sales");
  expectTexts(sale, {{u"number", u"100.00"}});
  expectValues(sale, {{u"buyPrice", u"3.0000 3.00"},
                      {u"grossCost", u"300.00 $300.00"},
                      {u"grossSale", u"600.00 $600.00"},
                      {u"netProfit", u"280.00 $280.00"}});
  const XMLElement& held = part(*made).subElement(u"SharesHeld").subElement(u"Shares");
  expectTexts(held, {{u"number", u"200.00"}});
  expectValues(held, {{u"purchaseValue", u"600.00 $600.00"}});
}

TEST_F(ReportBuilderTest, DividendsShowFrankingReinvestmentAndTax) {
  trade();
  const auto report = january();
  const XMLElement& dividends = part(*report).subElement(u"Dividends");
  ASSERT_EQ(dividends.numSubElements(u"Dividends"), 2u);
  const XMLElement& paid = dividends.subElement(u"Dividends", 0);
  expectTexts(paid, {{u"code", u"ABC.AX"},
                     {u"number", u"200.00"},
                     {u"rate", u"0.500000"},
                     {u"receivedAs", u"Cash"},
                     {u"foreignSource", u""}});
  expectValues(paid, {{u"received", u"15/1/2026 15/01/2026"},
                      {u"value", u"100.00 $100.00"},
                      {u"percentFranked", u"70.00 70.00%"},
                      {u"frankingCredit", u"30.00 $30.00"},
                      {u"withholdingTax", u"0.00 $0.00"}});
  const XMLElement& reinvested = dividends.subElement(u"Dividends", 1);
  expectTexts(reinvested, {{u"receivedAs", u"2.00 shares at 25.0000"}, {u"foreignSource", u"New <Zealand>"}});
  expectValues(reinvested, {{u"value", u"50.00 $50.00"}, {u"withholdingTax", u"7.50 $7.50"}});
  expectValues(dividends, {{u"value", u"150.00 $150.00"},
                           {u"paidOut", u"100.00 $100.00"},
                           {u"reinvested", u"50.00 $50.00"},
                           {u"frankingCredit", u"30.00 $30.00"},
                           {u"withholdingTax", u"7.50 $7.50"}});
}

TEST_F(ReportBuilderTest, InterestIsListedAndSummed) {
  trade();
  user().creditCash(Date(2026, 1, 2), 0.66, CASH_EVENT_INTEREST, u"INTEREST first");
  user().creditCash(Date(2026, 2, 1), 5, CASH_EVENT_INTEREST, u"INTEREST later");
  const auto report = january();
  const XMLElement& interests = part(*report).subElement(u"Interests");
  ASSERT_EQ(interests.numSubElements(u"Interests"), 2u);
  expectTexts(interests.subElement(u"Interests", 0), {{u"description", u"INTEREST first"}});
  expectTexts(interests.subElement(u"Interests", 1), {{u"description", u"INTEREST <1> & more"}});
  expectValues(interests.subElement(u"Interests", 1),
               {{u"date", u"21/1/2026 21/01/2026"}, {u"amount", u"12.34 $12.34"}});
  expectValues(interests, {{u"amount", u"13.00 $13.00"}});
}

TEST_F(ReportBuilderTest, CashGoesFromItsOpeningToItsClosing) {
  trade();
  const auto report = january();
  const XMLElement& cash = part(*report).subElement(u"CashFlows");
  expectValues(cash, {{u"opening", u"8970.00 $8,970.00"},
                      {u"closing", u"7500.00 $7,500.00"},
                      {u"credit", u"612.34 $612.34"},
                      {u"debit", u"2082.34 $2,082.34"},
                      {u"deposits", u"500.00 $500.00"},
                      {u"withdrawals", u"62.34 $62.34"}});
  ASSERT_EQ(cash.numSubElements(u"CashFlows"), 5u);
  const XMLElement& purchase = cash.subElement(u"CashFlows", 0);
  expectTexts(purchase, {{u"description", u"BUY 100.00 of ABC.AX @ 20.0000"}});
  expectValues(purchase, {{u"date", u"5/1/2026 05/01/2026"},
                          {u"credit", u" "},
                          {u"debit", u"2020.00 $2,020.00"},
                          {u"balance", u"6950.00 $6,950.00"}});
  expectValues(cash.subElement(u"CashFlows", 2), {{u"credit", u"12.34 $12.34"}, {u"debit", u" "}});
}

TEST_F(ReportBuilderTest, BothEndsOfThePeriodCount) {
  user().creditCash(Date(2025, 12, 31), 1, CASH_EVENT_INTEREST, u"a");
  user().creditCash(Date(2026, 1, 31), 2, CASH_EVENT_INTEREST, u"b");
  user().creditCash(Date(2026, 1, 1), 4, CASH_EVENT_INTEREST, u"c");
  user().creditCash(Date(2026, 2, 1), 8, CASH_EVENT_INTEREST, u"d");
  const auto report = january();
  const XMLElement& interests = part(*report).subElement(u"Interests");
  ASSERT_EQ(interests.numSubElements(u"Interests"), 2u);
  expectTexts(interests.subElement(u"Interests", 0), {{u"description", u"c"}});
  expectValues(interests, {{u"amount", u"6.00 $6.00"}});
}

TEST_F(ReportBuilderTest, APortfolioThatBeganWithinThePeriodHasNoPercentage) {
  user().creditCash(Date(2026, 1, 10), 100, CASH_EVENT_DEPOSIT, u"DEPOSIT ");
  user().creditCash(Date(2026, 1, 11), 5, CASH_EVENT_INTEREST, u"INTEREST ");
  const auto report = january();
  expectValues(part(*report).subElement(u"Performance"), {{u"capitalStart", u"0.00 $0.00"},
                                                          {u"externalFlow", u"100.00 $100.00"},
                                                          {u"capitalEnd", u"105.00 $105.00"},
                                                          {u"gain", u"5.00 $5.00"},
                                                          {u"gainPercent", u" "}});
  EXPECT_THAT(
      notes(part(*report)),
      ElementsAre(u"The portfolio has no records from before the period, so its gain has no percentage."));
}

TEST_F(ReportBuilderTest, AHoldingWithoutAPriceCountsAsInTheCapitalAndTheDayIsNotedAsProvisional) {
  trade();
  user().addBuyEvent(u"NOP.AX", {Date(2026, 1, 7), 10, 3, 0, String()});
  const auto report = january();
  const XMLElement& held = part(*report).subElement(u"SharesHeld");
  ASSERT_EQ(held.numSubElements(u"Shares"), 2u);
  expectValues(held.subElement(u"Shares", 1),
               {{u"buyPrice", u"3.0000 3.00"}, {u"price", u"3.0000 3.00"}, {u"value", u"30.00 $30.00"}});
  expectValues(held.subElement(u"Totals"), {{u"value", u"4474.00 $4,474.00"}});
  EXPECT_EQ(part(*report).subElement(u"Performance").attribute(u"sharesEnd"), String(u"4474.00"));
  EXPECT_THAT(
      notes(part(*report)),
      ElementsAre(u"The figures of 31/01/2026 are provisional. Where a price is unavailable, the last "
                  u"known one, or that of a purchase or sale, stands in."));
}

TEST_F(ReportBuilderTest, SeveralPortfoliosHaveATotal) {
  trade();
  XMLSharePortfolio second;
  second.subElement(u"Name").setValue(u"Second");
  SharePortfolioUser other(second, gatewayPrices());
  other.creditCash(Date(2025, 12, 1), 930, CASH_EVENT_DEPOSIT, u"DEPOSIT ");
  other.creditCash(Date(2026, 1, 31), 63.66, CASH_EVENT_INTEREST, u"INTEREST ");
  std::vector<std::size_t> charted;
  const auto report = ReportTest::report({&user(), &other}, m_january, u"Report",
                                         [&](const Portfolios& portfolios, const ReportPeriod& period) {
                                           EXPECT_EQ(period.last, m_january.last);
                                           charted.push_back(portfolios.size());
                                           return portfolios.front() == &other ? String() : String(u"<svg/>");
                                         });
  ASSERT_EQ(report->numSubElements(u"Portfolios"), 2u);
  EXPECT_EQ(part(*report, 1).attribute(u"name"), String(u"Second"));
  const XMLElement& total = report->subElement(u"Total");
  EXPECT_EQ(total.attribute(u"name"), String(u"All portfolios"));
  // (1,436.34 + 63.66) of (10,070.00 + 930.00)
  expectValues(total.subElement(u"Performance"), {{u"capitalStart", u"11000.00 $11,000.00"},
                                                  {u"capitalEnd", u"12937.66 $12,937.66"},
                                                  {u"gain", u"1500.00 $1,500.00"},
                                                  {u"gainPercent", u"13.64 13.64%"}});
  expectValues(total.subElement(u"SharesHeld").subElement(u"Totals"), {{u"value", u"4444.00 $4,444.00"}});
  EXPECT_EQ(total.subElement(u"SharesHeld").numSubElements(u"Shares"), 0u);
  expectValues(total.subElement(u"Dividends"), {{u"value", u"150.00 $150.00"}});
  expectValues(total.subElement(u"Interests"), {{u"amount", u"76.00 $76.00"}});
  expectValues(total.subElement(u"CashFlows"),
               {{u"opening", u"9900.00 $9,900.00"}, {u"closing", u"8493.66 $8,493.66"}});
  EXPECT_EQ(total.subElement(u"CashFlows").numSubElements(u"CashFlows"), 0u);
  EXPECT_THAT(charted, ElementsAre(1u, 1u, 2u));
  EXPECT_EQ(part(*report, 0).numSubElements(u"Chart"), 1u);
  EXPECT_EQ(part(*report, 1).numSubElements(u"Chart"), 0u);
}

TEST_F(ReportBuilderTest, AYoungPortfolioIsNotInThePercentageOfAll) {
  trade();
  XMLSharePortfolio second;
  second.subElement(u"Name").setValue(u"Second");
  SharePortfolioUser other(second, gatewayPrices());
  other.creditCash(Date(2026, 1, 20), 930, CASH_EVENT_DEPOSIT, u"DEPOSIT ");
  const auto report = ReportTest::report({&user(), &other}, m_january, u"Report");
  const XMLElement& total = report->subElement(u"Total");
  expectValues(total.subElement(u"Performance"), {{u"gainPercent", u"14.26 14.26%"}});
  EXPECT_THAT(notes(total),
              ElementsAre(u"Portfolios without records from before the period are left out of the "
                          u"gain in percent."));
}

TEST_F(ReportBuilderTest, APortfolioWithoutRecordsOfThePeriodIsEmpty) {
  trade();
  const auto report = this->report({Date(2024, 1, 1), Date(2024, 12, 31)});
  expectValues(part(*report).subElement(u"Performance"),
               {{u"capitalEnd", u"0.00 $0.00"}, {u"gain", u"0.00 $0.00"}, {u"gainPercent", u" "}});
  EXPECT_EQ(part(*report).subElement(u"SharesHeld").numSubElements(u"Shares"), 0u);
}

TEST_F(ReportBuilderTest, NoReportIsMadeOfARecordThatStopsEarlier) {
  trade();
  m_interaction.progress.cancelAfter = 1; // At the end of December.
  EXPECT_EQ(messageOf([&] { january(); }),
            String(u"The capital record of Trading does not reach 31/01/2026, so no report was made."));
}

TEST_F(ReportBuilderTest, AmountsAreShownInTheUsersForm) {
  trade();
  m_profile.setLocale("de_DE");
  const auto report = january();
  expectValues(part(*report).subElement(u"Performance"),
               {{u"end", u"31/1/2026 31.1.2026"}, {u"cashEnd", u"7500.00 7.500,00\u00A0\u20AC"}});
}

} // namespace
} // namespace Tallymoor
