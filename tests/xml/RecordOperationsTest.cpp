#include "XmlTestTools.h"
#include "xml/PortfolioRecords.h"

namespace Tallymoor {
namespace {

// The operations access sub-elements by registration index. Each index must match its name.

void set(XMLElement& element, std::initializer_list<std::pair<std::u16string_view, const char16_t*>> values) {
  for (const auto& [reference, value] : values)
    element.subElement(reference).setValue(value);
}

TEST(RecordOperationsTest, APurchaseIsReadAndWrittenByItsNames) {
  XMLHeldShare share;
  share.setCode(u"ABC.AX");
  EXPECT_EQ(textValue(share, u"Code"), u"ABC.AX");
  XMLBuyEvent& event = share.parcels().add();
  EXPECT_EQ(&share.subElement(u"BuyEvents"), &event);
  set(event, {{u"BuyDate", u"3/3/2006"},
              {u"NumHeld", u"100.5"},
              {u"BuyPrice", u"12.34"},
              {u"Brokerage", u"30.1"},
              {u"Comment", u"first"}});
  EXPECT_EQ(event.code(), u"ABC.AX");
  EXPECT_EQ(event.bought(), Date(2006, 3, 3));
  EXPECT_EQ(event.day(), Date(2006, 3, 3));
  EXPECT_EQ(event.boughtLeaf().value(), u"3/3/2006");
  EXPECT_EQ(event.number(), 100.5);
  EXPECT_EQ(event.numberText(), u"100.5");
  EXPECT_EQ(event.price(), 12.34);
  EXPECT_EQ(event.brokerage(), 30.1);
  EXPECT_EQ(event.comment(), u"first");

  event.setBought(Date(2007, 4, 5));
  event.setNumberText(u"33.333333");
  event.setPrice(1.5);
  event.setBrokerage(2.5);
  event.setComment(u"second");
  event.adjustments().add().set(Date(2008, 1, 2), -3);
  EXPECT_EQ(encoded(event), "<BuyEvent><Date>5/4/2007</Date><Constant>33.333333</Constant>"
                            "<Constant>1.5000</Constant><Constant>2.50</Constant><String>second</String>"
                            "<SplitAdjustment><Date>2/1/2008</Date><Constant>-3</Constant></SplitAdjustment>"
                            "</BuyEvent>");
  EXPECT_EQ(event.adjustments()[0].day(), Date(2008, 1, 2));
  EXPECT_EQ(event.adjustments()[0].factor(), -3);
}

TEST(RecordOperationsTest, ASaleIsReadAndWrittenByItsNames) {
  XMLSoldShare share;
  share.setCode(u"ABC.AX");
  XMLSellEvent& event = share.sales().add();
  EXPECT_EQ(&share.subElement(u"SellEvents"), &event);
  set(event, {{u"BuyDate", u"3/3/2006"},
              {u"SellDate", u"4/4/2007"},
              {u"NumHeld", u"1"},
              {u"BuyPrice", u"2"},
              {u"SellPrice", u"3"},
              {u"BuyBrokerage", u"4"},
              {u"SellBrokerage", u"5"},
              {u"Comment", u"sold"}});
  EXPECT_EQ(event.code(), u"ABC.AX");
  EXPECT_EQ(event.bought(), Date(2006, 3, 3));
  EXPECT_EQ(event.sold(), Date(2007, 4, 4));
  EXPECT_EQ(event.day(), Date(2007, 4, 4));
  EXPECT_EQ(event.number(), 1.0);
  EXPECT_EQ(event.price(), 2.0);
  EXPECT_EQ(event.sellPrice(), 3.0);
  EXPECT_EQ(event.brokerage(), 4.0);
  EXPECT_EQ(event.sellBrokerage(), 5.0);
  EXPECT_EQ(event.comment(), u"sold");
  EXPECT_EQ(event.buyComment(), String());

  event.setBought(Date(2008, 1, 1));
  event.setSold(Date(2009, 2, 2));
  event.setNumberText(u"6");
  event.setPrice(7);
  event.setSellPrice(8);
  event.setBrokerage(9);
  event.setSellBrokerage(10);
  event.setComment(u"again");
  event.setBuyComment(u"bought");
  event.adjustments().add().set(Date(2008, 6, 1), 2);
  EXPECT_EQ(event.buyComment(), u"bought");
  EXPECT_EQ(encoded(event),
            "<SellEvent BuyComment=\"bought\"><Date>1/1/2008</Date><Date>2/2/2009</Date>"
            "<Constant>6</Constant><Constant>7.0000</Constant><Constant>8.0000</Constant>"
            "<Constant>9.00</Constant><Constant>10.00</Constant><String>again</String>"
            "<SplitAdjustment><Date>1/6/2008</Date><Constant>2</Constant></SplitAdjustment></SellEvent>");
}

TEST(RecordOperationsTest, APurchaseIsCopiedToTheLetter) {
  XMLSellEvent sale;
  set(sale,
      {{u"BuyDate", u"03/03/2006"}, {u"NumHeld", u"1"}, {u"BuyPrice", u"2.0"}, {u"BuyBrokerage", u"4"}});
  set(sale, {{u"SellDate", u"4/4/2007"}, {u"SellPrice", u"3"}, {u"SellBrokerage", u"5"}, {u"Comment", u"x"}});
  XMLBuyEvent parcel;
  parcel.copyPurchase(sale);
  EXPECT_EQ(encoded(parcel), "<BuyEvent><Date>03/03/2006</Date><Constant>1</Constant><Constant>2.0</Constant>"
                             "<Constant>4</Constant><String/></BuyEvent>");
}

TEST(RecordOperationsTest, ADividendIsReadAndWrittenByItsNames) {
  XMLDividendEvent event;
  set(event, {{u"Code", u"ABC.AX"},
              {u"ReceiveDate", u"3/3/2006"},
              {u"NumHeld", u"1"},
              {u"Rate", u"2.50"},
              {u"PercentFranked", u"3"},
              {u"DRPShares", u"4"},
              {u"DRPRate", u"5.0"},
              {u"ForeignDividend", u"Chile"},
              {u"WithholdingTax", u"6"}});
  EXPECT_EQ(event.code(), u"ABC.AX");
  EXPECT_EQ(event.received(), Date(2006, 3, 3));
  EXPECT_EQ(event.number(), 1.0);
  EXPECT_EQ(event.rate(), 2.5);
  EXPECT_EQ(event.rateText(), u"2.50");
  EXPECT_EQ(event.percentFranked(), 3.0);
  EXPECT_EQ(event.drpShares(), 4.0);
  EXPECT_EQ(event.drpRate(), 5.0);
  EXPECT_EQ(event.drpRateText(), u"5.0");
  EXPECT_EQ(event.foreignDividend(), u"Chile");
  EXPECT_EQ(event.withholdingTax(), 6.0);

  event.setCode(u"XYZ.AX");
  event.setReceived(Date(2007, 1, 1));
  event.setNumber(10);
  event.setRate(0.5);
  event.setPercentFranked(70);
  event.setReinvestment(20, 30);
  event.setForeignDividend(u"Peru");
  event.setWithholdingTax(40);
  EXPECT_EQ(encoded(event), "<DividendEvent><String>XYZ.AX</String><Date>1/1/2007</Date>"
                            "<Constant>10.00</Constant><Constant>0.500000</Constant><Constant>70</Constant>"
                            "<Constant>20.00</Constant><Constant>30.0000</Constant><String>Peru</String>"
                            "<Constant>40.00</Constant></DividendEvent>");
}

TEST(RecordOperationsTest, MissingPartsOfAnOlderFileReadAsEmptyAndCanBeSet) {
  XMLDividendEvent event;
  event.reset();
  EXPECT_EQ(event.numSubElements(u"ForeignDividend"), 0u);
  EXPECT_EQ(event.foreignDividend(), String());
  EXPECT_EQ(event.withholdingTax(), 0.0);
  event.setForeignDividend(u"<Peru>");
  EXPECT_EQ(event.foreignDividend(), u"<Peru>");
  EXPECT_NE(encoded(event).find("<String>&lt;Peru&gt;</String></DividendEvent>"), std::string::npos);
}

TEST(RecordOperationsTest, ACashEntryIsReadAndWrittenByItsNames) {
  XMLCashEvent event;
  set(event, {{u"Date", u"3/3/2006"}, {u"Value", u"1.5"}, {u"Type", u"4"}, {u"Description", u"in"}});
  EXPECT_EQ(event.day(), Date(2006, 3, 3));
  EXPECT_EQ(event.dayText(), u"3/3/2006");
  EXPECT_EQ(event.amount(), 1.5);
  EXPECT_EQ(event.amountText(), u"1.5");
  EXPECT_EQ(event.type(), CASH_EVENT_DEPOSIT);
  EXPECT_EQ(event.description(), u"in");
  event.set(Date(2007, 1, 1), 2, u"out");
  event.setType(5);
  EXPECT_EQ(encoded(event), "<CashEvent><Date>1/1/2007</Date><Constant>2.00</Constant><Constant>5</Constant>"
                            "<String>out</String></CashEvent>");
}

TEST(RecordOperationsTest, APortfolioHoldsItsListsByTheirNames) {
  XMLPortfolios records;
  XMLSharePortfolio& portfolio = records.portfolios().add();
  EXPECT_EQ(&records.subElement(u"SharePortfolios"), &portfolio);
  portfolio.setPortfolioName(u"Trading");
  portfolio.setComparisonIndex(u"^AXJO");
  EXPECT_EQ(textValue(portfolio, u"Name"), u"Trading");
  EXPECT_EQ(textValue(portfolio, u"ComparisonIndex"), u"^AXJO");
  EXPECT_EQ(portfolio.portfolioName(), u"Trading");
  EXPECT_EQ(portfolio.comparisonIndex(), u"^AXJO");
  portfolio.setComparisonIndex(portfolio.comparisonIndex());
  EXPECT_EQ(portfolio.comparisonIndex(), u"^AXJO");
  portfolio.setComparisonIndex(String());
  EXPECT_EQ(portfolio.numSubElements(u"ComparisonIndex"), 0u);
  EXPECT_EQ(portfolio.comparisonIndex(), String());

  const void* held = &portfolio.heldShares().add();
  EXPECT_EQ(held, &portfolio.subElement(u"HeldShares").subElement(u"HeldShares"));
  const void* soldShares = &portfolio.soldShares().add();
  EXPECT_EQ(soldShares, &portfolio.subElement(u"SoldShares").subElement(u"SoldShares"));
  const void* dividends = &portfolio.dividends().add();
  EXPECT_EQ(dividends, &portfolio.subElement(u"Dividends").subElement(u"DividendEvents"));
  const void* cashEvents = &portfolio.cashEvents().add();
  EXPECT_EQ(cashEvents, &portfolio.subElement(u"CashReserve").subElement(u"CashEvents"));
}

TEST(RecordOperationsTest, LimitsAreReadAndWrittenByTheirNames) {
  XMLHeldShare share;
  EXPECT_EQ(share.minPrice(), 0.0);
  set(share, {{u"MinPrice", u"1"}, {u"MaxPrice", u"2"}, {u"PortfolioMax", u"3"}});
  EXPECT_EQ(share.minPrice(), 1.0);
  EXPECT_EQ(share.maxPrice(), 2.0);
  EXPECT_EQ(share.portfolioMax(), 3.0);
  share.setMinMax(4, 5);
  share.setPortfolioMax(6);
  EXPECT_EQ(textValue(share, u"MinPrice"), u"4.0000");
  EXPECT_EQ(textValue(share, u"MaxPrice"), u"5.0000");
  EXPECT_EQ(textValue(share, u"PortfolioMax"), u"6.00");
}

// ---- Lists ----

String codesOf(const XMLSharePortfolio& portfolio) {
  String codes;
  for (const XMLHeldShare& share : portfolio.heldShares())
    codes += share.code();
  return codes;
}

XMLSharePortfolio portfolioOf(std::u16string_view codes) {
  XMLSharePortfolio portfolio;
  for (const char16_t code : codes)
    portfolio.heldShares().add().setCode(String(1, code));
  return portfolio;
}

TEST(RecordOperationsTest, AListIsInTheOrderOfTheDocument) {
  XMLSharePortfolio portfolio = portfolioOf(u"abc");
  EXPECT_EQ(codesOf(portfolio), u"abc");
  EXPECT_EQ(portfolio.heldShares().size(), 3u);
  EXPECT_EQ(portfolio.heldShares()[1].code(), u"b");
  EXPECT_EQ(portfolio.heldShares().back().code(), u"c");
  EXPECT_TRUE(portfolio.soldShares().empty());
  EXPECT_EQ(portfolio.soldShares().begin(), portfolio.soldShares().end());
}

TEST(RecordOperationsTest, AListRemovesOnlyItsOwnElements) {
  XMLSharePortfolio portfolio = portfolioOf(u"abc"), other = portfolioOf(u"x");
  EXPECT_TRUE(portfolio.heldShares().remove(portfolio.heldShares()[1]));
  EXPECT_EQ(codesOf(portfolio), u"ac");
  EXPECT_TRUE(portfolio.heldShares().contains(portfolio.heldShares()[1]));
  EXPECT_FALSE(portfolio.heldShares().contains(other.heldShares()[0]));
  EXPECT_FALSE(portfolio.heldShares().remove(other.heldShares()[0]));
  EXPECT_EQ(codesOf(portfolio), u"ac");
  EXPECT_EQ(codesOf(other), u"x");
}

TEST(RecordOperationsTest, TheLastOfAListIsMoved) {
  XMLSharePortfolio portfolio = portfolioOf(u"abcd");
  portfolio.heldShares().moveLastTo(1);
  EXPECT_EQ(codesOf(portfolio), u"adbc");
  portfolio.heldShares().moveLastTo(3);
  EXPECT_EQ(codesOf(portfolio), u"adbc");
}

TEST(RecordOperationsTest, ACopyInAListHasWhatTheOtherHasAndItsOwnParent) {
  XMLHeldShare from, to;
  from.parcels().add().setComment(u"told");
  const XMLBuyEvent& copy = to.parcels().addCopy(from.parcels()[0]);
  EXPECT_EQ(copy.comment(), u"told");
  EXPECT_EQ(copy.parent(), &to);
  EXPECT_EQ(from.parcels().size(), 1u);
}

TEST(RecordOperationsTest, WhatIsReadAndWhatIsCopiedIsOfItsClass) {
  XMLPortfolios root;
  root.decode("<Portfolios><SharePortfolio><String>Trading</String><HeldShares><HeldShare><String>a</String>"
              "<BuyEvent><Date>3/3/2006</Date></BuyEvent></HeldShare></HeldShares></SharePortfolio>"
              "</Portfolios>");
  const XMLPortfolios copy = root;
  for (const XMLPortfolios* records : {&std::as_const(root), &copy})
    EXPECT_EQ(records->portfolios()[0].heldShares()[0].parcels()[0].bought(), Date(2006, 3, 3));
}

TEST(RecordOperationsTest, AnInstanceOfAnotherClassIsRefused) {
  XMLHeldShare share;
  share.addSubElement(new XMLSellEvent, u"BuyEvents");
  EXPECT_EQ(failureOf([&] { share.parcels()[0].number(); }),
            String(u"an element \"SellEvent\" is of another class than it should be"));
}

} // namespace
} // namespace Tallymoor
