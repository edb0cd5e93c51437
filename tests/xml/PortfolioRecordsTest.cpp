#include "xml/PortfolioRecords.h"
#include "XmlTestTools.h"
#include "foundation/Constants.h"

namespace Tallymoor {
namespace {

const char* const SAMPLE_LINE =
    "<Portfolios><SharePortfolio><String>Trading</String><HeldShares><HeldShare><String>ABC.AX</"
    "String><BuyEvent>"
    "<Date>3/3/2006</Date><Constant>100.00</Constant><Constant>12.3400</Constant><Constant>30.00</"
    "Constant><String/>"
    "</BuyEvent><Constant/><Constant/><Constant/></HeldShare></HeldShares><SoldShares/><Dividends/"
    "><CashReserve>"
    "<CashEvent><Date>3/3/2006</Date><Constant>1264.00</Constant><Constant>2</Constant><String>BUY 100.00 of "
    "ABC.AX @ "
    "12.3400</String></CashEvent></CashReserve><String/></SharePortfolio></Portfolios>";

std::string document(XMLElement& root) {
  std::ostringstream stream;
  root.encodeWithDoctype(stream, RECORDS_DTD);
  return stream.str();
}

XMLElement& addPortfolio(XMLElement& root, const String& name) {
  XMLElement& portfolio = root.addSubElement(new XMLSharePortfolio, u"SharePortfolios");
  portfolio.subElement(u"Name").setValue(name);
  return portfolio;
}

void set(XMLElement& element, std::initializer_list<std::pair<std::u16string_view, const char16_t*>> values) {
  for (const auto& [reference, value] : values)
    element.subElement(reference).setValue(value);
}

TEST(PortfolioRecordsTest, AFileIsWrittenExactly) {
  XMLPortfolios root;
  XMLElement& portfolio = addPortfolio(root, u"Trading");
  XMLElement& share = portfolio.subElement(u"HeldShares").addSubElement(new XMLHeldShare, u"HeldShares");
  share.subElement(u"Code").setValue(u"ABC.AX");
  set(share.addSubElement(new XMLBuyEvent, u"BuyEvents"), {{u"BuyDate", u"3/3/2006"},
                                                           {u"NumHeld", u"100.00"},
                                                           {u"BuyPrice", u"12.3400"},
                                                           {u"Brokerage", u"30.00"}});
  set(portfolio.subElement(u"CashReserve").addSubElement(new XMLCashEvent, u"CashEvents"),
      {{u"Date", u"3/3/2006"},
       {u"Value", u"1264.00"},
       {u"Type", u"2"},
       {u"Description", u"BUY 100.00 of ABC.AX @ 12.3400"}});
  EXPECT_EQ(document(root),
            std::string("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!DOCTYPE Portfolios SYSTEM "
                        "\"Tallymoor Records.dtd\">\n") +
                SAMPLE_LINE);
}

TEST(PortfolioRecordsTest, APortfolioWithoutAnIndexIsWrittenBackWithoutOne) {
  const std::string text =
      "<Portfolios><SharePortfolio><String>T</String><HeldShares/><SoldShares/><Dividends/>"
      "<CashReserve/></SharePortfolio></Portfolios>";
  XMLPortfolios root;
  root.decode(text.c_str());
  EXPECT_EQ(text, encoded(root));
  EXPECT_EQ(String(), root.portfolios()[0].comparisonIndex());
}

TEST(PortfolioRecordsTest, AFileThatIsReadIsWrittenBackExactly) {
  XMLPortfolios root;
  root.decode(SAMPLE_LINE);
  EXPECT_EQ(encoded(root), SAMPLE_LINE);
  const XMLElement& portfolio = root.subElement(u"SharePortfolios");
  const XMLElement& event =
      portfolio.subElement(u"HeldShares").subElement(u"HeldShares").subElement(u"BuyEvents");
  EXPECT_EQ(dateValue(event, u"BuyDate"), Date(2006, 3, 3));
  EXPECT_EQ(doubleValue(event, u"BuyPrice"), 12.34);
  EXPECT_EQ(textValue(event, u"Comment"), String());
  EXPECT_EQ(textValue(portfolio, u"ComparisonIndex"), String());
  XMLPortfolios again;
  again.decode(document(root).c_str());
  EXPECT_EQ(document(again), document(root));
}

TEST(PortfolioRecordsTest, AnEmptyRootIsWritten) {
  XMLPortfolios root;
  EXPECT_EQ(encoded(root), "<Portfolios/>");
}

TEST(PortfolioRecordsTest, EveryClassWritesItsElementsInOrder) {
  XMLSharePortfolio portfolio;
  EXPECT_EQ(encoded(portfolio),
            "<SharePortfolio><String/><HeldShares/><SoldShares/><Dividends/><CashReserve/>"
            "<String/></SharePortfolio>");
  XMLSellEvent sale;
  set(sale, {{u"BuyDate", u"1"},
             {u"SellDate", u"2"},
             {u"NumHeld", u"3"},
             {u"BuyPrice", u"4"},
             {u"SellPrice", u"5"},
             {u"BuyBrokerage", u"6"},
             {u"SellBrokerage", u"7"},
             {u"Comment", u"8"}});
  set(sale.addSubElement(new XMLSplitAdjustment, u"Adjustments"),
      {{u"StartDate", u"9"}, {u"Factor", u"-10"}});
  EXPECT_EQ(encoded(sale),
            "<SellEvent><Date>1</Date><Date>2</Date><Constant>3</Constant><Constant>4</Constant>"
            "<Constant>5</Constant><Constant>6</Constant><Constant>7</Constant><String>8</String>"
            "<SplitAdjustment><Date>9</Date><Constant>-10</Constant></SplitAdjustment></SellEvent>");
  XMLDividendEvent dividend;
  set(dividend, {{u"Code", u"1"},
                 {u"ReceiveDate", u"2"},
                 {u"NumHeld", u"3"},
                 {u"Rate", u"4"},
                 {u"PercentFranked", u"5"},
                 {u"DRPShares", u"6"},
                 {u"DRPRate", u"7"},
                 {u"ForeignDividend", u"8"},
                 {u"WithholdingTax", u"9"}});
  EXPECT_EQ(encoded(dividend),
            "<DividendEvent><String>1</String><Date>2</Date><Constant>3</Constant><Constant>4"
            "</Constant><Constant>5</Constant><Constant>6</Constant><Constant>7</Constant>"
            "<String>8</String><Constant>9</Constant></DividendEvent>");
  XMLHeldShare share;
  set(share, {{u"Code", u"1"}, {u"MinPrice", u"3"}, {u"MaxPrice", u"4"}, {u"PortfolioMax", u"5"}});
  share.addSubElement(new XMLBuyEvent, u"BuyEvents").addSubElement(new XMLSplitAdjustment, u"Adjustments");
  EXPECT_EQ(encoded(share),
            "<HeldShare><String>1</String><BuyEvent><Date/><Constant/><Constant/><Constant/><String/>"
            "<SplitAdjustment><Date/><Constant/></SplitAdjustment></BuyEvent><Constant>3</Constant>"
            "<Constant>4</Constant><Constant>5</Constant></HeldShare>");
  XMLSoldShare sold;
  sold.addSubElement(new XMLSellEvent, u"SellEvents");
  EXPECT_TRUE(encoded(sold).starts_with("<SoldShare><String/><SellEvent><Date/>"));
  XMLSoldShares soldShares;
  soldShares.addSubElement(new XMLSoldShare, u"SoldShares");
  XMLDividends dividends;
  dividends.addSubElement(new XMLDividendEvent, u"DividendEvents");
  EXPECT_EQ(soldShares.name(), String(u"SoldShares"));
  EXPECT_TRUE(encoded(dividends).starts_with("<Dividends><DividendEvent><String/><Date/>"));
}

TEST(PortfolioRecordsTest, OnlyTheNameAndTheIndexAreWrittenRaw) {
  XMLPortfolios root;
  XMLElement& portfolio = addPortfolio(root, u"A&B");
  portfolio.subElement(u"ComparisonIndex").setValue(u"<I>");
  const std::string raw = encoded(root);
  EXPECT_NE(raw.find("<String>A&B</String>"), std::string::npos);
  EXPECT_NE(raw.find("<String><I></String>"), std::string::npos);
  XMLPortfolios again;
  EXPECT_TRUE(
      failureOf([&] { again.decode(raw.c_str()); }).startsWith(u"XMLElement::decode, parse fatal error in "));

  for (const auto& [element, reference] : std::initializer_list<std::pair<XMLElement*, const char16_t*>>{
           {new XMLBuyEvent, u"Comment"},
           {new XMLSellEvent, u"Comment"},
           {new XMLDividendEvent, u"Code"},
           {new XMLDividendEvent, u"ForeignDividend"},
           {new XMLCashEvent, u"Description"}}) {
    element->subElement(reference).setValue(u"a<b");
    EXPECT_NE(encoded(*element).find("<String>a&lt;b</String>"), std::string::npos)
        << element->name().toUTF8();
    element->destroy();
  }
}

TEST(PortfolioRecordsTest, CodesOfHoldingsAndSalesAreEscaped) {
  XMLHeldShare held;
  held.subElement(u"Code").setValue(u"A&B");
  held.addSubElement(new XMLBuyEvent, u"BuyEvents");
  EXPECT_TRUE(encoded(held).starts_with("<HeldShare><String>A&amp;B</String>"));
  XMLSoldShare sold;
  sold.subElement(u"Code").setValue(u"A&B");
  sold.addSubElement(new XMLSellEvent, u"SellEvents");
  EXPECT_TRUE(encoded(sold).starts_with("<SoldShare><String>A&amp;B</String>"));
}

TEST(PortfolioRecordsTest, ADescriptionWithMarkupComesBackIntact) {
  XMLCashEvent event;
  event.subElement(u"Description").setValue(u"a < b & \"c\"");
  XMLCashEvent again;
  again.decode(encoded(event).c_str());
  EXPECT_EQ(textValue(again, u"Description"), String(u"a < b & \"c\""));
}

TEST(PortfolioRecordsTest, AnEmptyWithholdingTaxReadsAsZero) {
  XMLDividendEvent event;
  event.decode(
      "<DividendEvent><String>A</String><Date/><Constant/><Constant/><Constant/><Constant/><Constant/>"
      "<String/><Constant/></DividendEvent>");
  EXPECT_EQ(doubleValue(event, u"WithholdingTax"), 0.0);
  EXPECT_EQ(event.numSubElements(u"WithholdingTax"), 1u);
}

TEST(PortfolioRecordsTest, MissingSinglesShiftAndReadAsZero) {
  XMLBuyEvent event;
  event.decode(
      "<BuyEvent><Date>3/3/2006</Date><Constant>100.00</Constant><Constant>30.00</Constant></BuyEvent>");
  EXPECT_EQ(doubleValue(event, u"NumHeld"), 100.0);
  EXPECT_EQ(doubleValue(event, u"BuyPrice"), 30.0); // the brokerage, one place too early
  EXPECT_EQ(doubleValue(event, u"Brokerage"), 0.0);
  EXPECT_EQ(textValue(event, u"Comment"), String());
}

TEST(PortfolioRecordsTest, HoldingsWithoutEventsReadButAreNotWritten) {
  XMLHeldShare held;
  held.decode("<HeldShare><String>ABC.AX</String></HeldShare>");
  EXPECT_EQ(failureOf([&] { encoded(held); }),
            String(u"XMLElement::checkSubElements - required at least one BuyEvents in HeldShare"));
  XMLSoldShare sold;
  sold.decode("<SoldShare><String>ABC.AX</String></SoldShare>");
  EXPECT_EQ(failureOf([&] { encoded(sold); }),
            String(u"XMLElement::checkSubElements - required at least one SellEvents in SoldShare"));
}

TEST(PortfolioRecordsTest, AnOrderThatIsBrokenOrAnUnknownElementIsRefused) {
  XMLPortfolios root;
  EXPECT_EQ(failureOf([&] {
              root.decode("<Portfolios><SharePortfolio><SoldShares/><HeldShares/></SharePortfolio>"
                          "</Portfolios>");
            }),
            String(u"XMLElement::startElement - pFoundSubElementRego == NULL in SharePortfolio"));
  XMLPortfolios other;
  EXPECT_EQ(failureOf([&] { other.decode("<Portfolios><Watchlist/></Portfolios>"); }),
            String(u"XMLElement::startElement - pFoundSubElementRego == NULL in Portfolios"));
}

TEST(PortfolioRecordsTest, CashEventTypes) {
  struct Expected {
    const char16_t* type;
    bool credit;
    bool external;
  };
  for (const Expected& expected : {Expected{u"1", true, false},
                                   {u"2", false, false},
                                   {u"3", true, false},
                                   {u"4", true, true},
                                   {u"5", false, true},
                                   {u"", false, false},
                                   {u"6", false, false}}) {
    XMLCashEvent event;
    event.subElement(u"Type").setValue(expected.type);
    EXPECT_EQ(event.isCredit(), expected.credit) << String(expected.type).toUTF8();
    EXPECT_EQ(event.isExternal(), expected.external) << String(expected.type).toUTF8();
    EXPECT_EQ(isCreditType(event.type()), expected.credit);
    EXPECT_EQ(isExternalType(event.type()), expected.external);
  }
  EXPECT_EQ(CASH_EVENT_CREDIT, 1);
  EXPECT_EQ(CASH_EVENT_DEBIT, 2);
  EXPECT_EQ(CASH_EVENT_INTEREST, 3);
  EXPECT_EQ(CASH_EVENT_DEPOSIT, 4);
  EXPECT_EQ(CASH_EVENT_WITHDRAWAL, 5);
}

} // namespace
} // namespace Tallymoor
