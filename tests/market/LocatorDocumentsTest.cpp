#include "xml/LocatorDocuments.h"
#include "support/FailureOf.h"
#include "support/StringPrinting.h"
#include <gtest/gtest.h>
#include <sstream>

namespace Tallymoor {
namespace {

const std::string STEP = "<TagFind><TagMove move=\"In\" name=\"td\"/></TagFind>";
const std::string WALK = "<TagLocator>" + STEP + "</TagLocator>";
const std::string ADDRESS = "<URLLocator><URLPart>http://h/</URLPart></URLLocator>";
const std::string TABLE = "<TableLocator>" + WALK + WALK + WALK + "</TableLocator>";

template <class Document>
String loadFailureOf(const std::string& text) {
  return failureOf<XMLException>([&text] { Document().decode(text.c_str()); });
}

TEST(LocatorDocuments, CurrentPriceLocators) {
  XMLCurrentPriceLocators document;
  document.decode(("<CurrentPriceLocators active=\"a\" version=\"3\"><CurrentPrice domain=\"a\">" + ADDRESS +
                   "<TagLocator format=\"Float\">" + STEP +
                   "</TagLocator></CurrentPrice><CurrentPrice domain=\"a\">" + ADDRESS + WALK +
                   "</CurrentPrice></CurrentPriceLocators>")
                      .c_str());
  EXPECT_EQ(document.attribute(u"active"), u"a");
  EXPECT_EQ(document.attribute(u"version"), u"3");
  ASSERT_EQ(document.numSubElements(u"CurrentPrices"), 2u);
  const XMLElement& first = document.subElement(u"CurrentPrices", 0);
  EXPECT_EQ(static_cast<const XMLTagLocator&>(first.subElement(u"TagLocator")).format(), VALUE_FORMAT_FLOAT);
  EXPECT_EQ(first.subElement(u"URLLocator").subElement(u"URLParts").value(), u"http://h/");
}

TEST(LocatorDocuments, CodeSearchLocators) {
  XMLCodeSearchLocators document;
  document.decode(
      ("<CodeSearchLocators active=\"a\" version=\"1\"><CodeSearch domain=\"a\"><CodeSearchDetail>" +
       ADDRESS + TABLE + "</CodeSearchDetail><CodeSearchDetail>" + ADDRESS + TABLE +
       "</CodeSearchDetail></CodeSearch></CodeSearchLocators>")
          .c_str());
  EXPECT_EQ(document.subElement(u"CodeSearchs").numSubElements(u"Details"), 2u);
}

TEST(LocatorDocuments, HistoricalPricesLocators) {
  XMLHistoricalPricesLocators document;
  document.decode(("<HistoricalPricesLocators active=\"a\" version=\"1\"><HistoricalPrices domain=\"d\" "
                   "maxEntries=\"66\">" +
                   ADDRESS + TABLE + "</HistoricalPrices></HistoricalPricesLocators>")
                      .c_str());
  auto& locator = static_cast<XMLHistoricalPrices&>(document.subElement(u"HistPrices"));
  EXPECT_EQ(locator.domain(), u"d");
  EXPECT_EQ(locator.maxEntries(), 66);
}

TEST(LocatorDocuments, IncompleteDocumentsFailAtLoad) {
  EXPECT_EQ(loadFailureOf<XMLTableLocator>("<TableLocator>" + WALK + WALK + "</TableLocator>"),
            u"XMLElement::checkSubElements - required at least one Columns in TableLocator");
  EXPECT_EQ(loadFailureOf<XMLTableLocator>("<TableLocator/>"),
            u"XMLElement::checkSubElements - required at least one TableRoot in TableLocator");
  EXPECT_EQ(loadFailureOf<XMLTagLocator>("<TagLocator/>"),
            u"XMLElement::checkSubElements - required at least one TagFinds in TagLocator");
  EXPECT_EQ(loadFailureOf<XMLURLLocator>("<URLLocator/>"),
            u"XMLElement::checkSubElements - required at least one URLParts in URLLocator");
  EXPECT_EQ(loadFailureOf<XMLCodeSearch>("<CodeSearch domain=\"a\"/>"),
            u"XMLElement::checkSubElements - required at least one Details in CodeSearch");
  EXPECT_EQ(loadFailureOf<XMLCodeSearchDetail>("<CodeSearchDetail>" + ADDRESS + "</CodeSearchDetail>"),
            u"XMLElement::checkSubElements - required at least one TableLocator in CodeSearchDetail");
  EXPECT_EQ(loadFailureOf<XMLCurrentPrice>("<CurrentPrice domain=\"a\">" + ADDRESS + "</CurrentPrice>"),
            u"XMLElement::checkSubElements - required at least one TagLocator in CurrentPrice");
  EXPECT_EQ(loadFailureOf<XMLHistoricalPrices>("<HistoricalPrices domain=\"a\" maxEntries=\"1\"/>"),
            u"XMLElement::checkSubElements - required at least one URLLocator in HistoricalPrices");
}

TEST(LocatorDocuments, MissingAttributesFailAtLoad) {
  EXPECT_EQ(loadFailureOf<XMLCurrentPriceLocators>("<CurrentPriceLocators version=\"1\"/>"),
            u"XMLElement::checkAttributes, missing attribute active in CurrentPriceLocators");
  EXPECT_EQ(loadFailureOf<XMLCodeSearchLocators>("<CodeSearchLocators active=\"a\"/>"),
            u"XMLElement::checkAttributes, missing attribute version in CodeSearchLocators");
  EXPECT_EQ(loadFailureOf<XMLHistoricalPricesLocators>("<HistoricalPricesLocators active=\"a\"/>"),
            u"XMLElement::checkAttributes, missing attribute version in HistoricalPricesLocators");
  EXPECT_EQ(loadFailureOf<XMLHistoricalPrices>("<HistoricalPrices domain=\"a\">" + ADDRESS + TABLE +
                                               "</HistoricalPrices>"),
            u"XMLElement::checkAttributes, missing attribute maxEntries in HistoricalPrices");
  EXPECT_EQ(loadFailureOf<XMLTagMove>("<TagMove move=\"In\"/>"),
            u"XMLElement::checkAttributes, missing attribute name in TagMove");
  EXPECT_EQ(loadFailureOf<XMLTagMove>("<TagMove name=\"td\"/>"),
            u"XMLElement::checkAttributes, missing attribute move in TagMove");
  EXPECT_EQ(loadFailureOf<XMLTagSearch>("<TagSearch val=\"x\"/>"),
            u"XMLElement::checkAttributes, missing attribute tagname in TagSearch");
}

TEST(LocatorDocuments, AStepIsExactlyOneOfSearchAndMove) {
  EXPECT_EQ(loadFailureOf<XMLTagFind>(
                "<TagFind><TagSearch tagname=\"a\"/><TagMove move=\"In\" name=\"b\"/></TagFind>"),
            u"XMLTagFind::endElement - both are present");
  EXPECT_EQ(loadFailureOf<XMLTagFind>("<TagFind/>"), u"XMLTagFind::endElement - neither are present");
  EXPECT_EQ(loadFailureOf<XMLTagFind>("<TagFind><TagSearch tagname=\"a\"/></TagFind>"), u"no failure");
  EXPECT_EQ(loadFailureOf<XMLTagFind>(STEP), u"no failure");
}

TEST(LocatorDocuments, APartWithATypeThatNoRequestHasLoads) {
  XMLURLPart part;
  part.decode("<URLPart type=\"MarketCode\"/>");
  EXPECT_EQ(part.type(), URL_VARIABLE_MARKET_CODE);
}

TEST(LocatorDocuments, ColumnTypesByName) {
  const char16_t* const names[] = {u"Code", u"StockName", u"MarketName", u"Date",   u"Open",
                                   u"High", u"Low",       u"Close",      u"Volume", u"AdjClose"};
  XMLTagLocator locator;
  EXPECT_EQ(locator.type(), COLUMN_TYPE_NONE);
  int value = 1;
  for (const char16_t* const name : names) {
    locator.setAttribute(u"type", name);
    EXPECT_EQ(locator.type(), value);
    locator.setType(static_cast<ColumnType>(value++));
    EXPECT_EQ(locator.attribute(u"type"), name);
  }
  locator.setAttribute(u"type", u"code");
  EXPECT_EQ(locator.type(), COLUMN_TYPE_NONE) << "the comparison is exact";
  locator.setType(COLUMN_TYPE_NONE);
  EXPECT_FALSE(locator.hasAttribute(u"type"));
}

TEST(LocatorDocuments, ValueFormatsByName) {
  const char16_t* const names[] = {u"UTF8", u"MidDate1", u"Long", u"Float", u"CommaLong"};
  XMLTagLocator locator;
  EXPECT_EQ(locator.format(), VALUE_FORMAT_NONE);
  int value = 1;
  for (const char16_t* const name : names) {
    locator.setAttribute(u"format", name);
    EXPECT_EQ(locator.format(), value);
    locator.setFormat(static_cast<ValueFormat>(value++));
    EXPECT_EQ(locator.attribute(u"format"), name);
  }
}

TEST(LocatorDocuments, URLVariablesByName) {
  const char16_t* const names[] = {u"Code",      u"MarketCode", u"StartDay",    u"StartMonth",
                                   u"StartYear", u"EndDay",     u"EndMonth",    u"EndYear",
                                   u"DMY",       u"Country",    u"IndexOrShare"};
  XMLURLPart part;
  EXPECT_EQ(part.type(), URL_VARIABLE_NONE);
  int value = 1;
  for (const char16_t* const name : names) {
    part.setAttribute(u"type", name);
    EXPECT_EQ(part.type(), value);
    part.setType(static_cast<URLVariableType>(value++));
    EXPECT_EQ(part.attribute(u"type"), name);
  }
  part.setAttribute(u"type", u"");
  EXPECT_EQ(part.type(), URL_VARIABLE_NONE);
}

TEST(LocatorDocuments, MovesByDefaultToTheFirst) {
  XMLTagMove move;
  move.decode("<TagMove move=\"Down\" name=\"td\"/>");
  EXPECT_FALSE(move.movesIn());
  EXPECT_EQ(move.index(), 0u);
  move.setAttribute(u"index", u"12");
  move.setAttribute(u"move", u"In");
  EXPECT_TRUE(move.movesIn());
  EXPECT_EQ(move.index(), 12u);
}

TEST(LocatorDocuments, AddressesAreWrittenEscaped) {
  XMLURLLocator locator;
  locator.addSubElement(new XMLURLPart, u"URLParts").setValue(u"http://h/?a=b&c=d");
  std::ostringstream stream;
  locator.encode(stream);
  EXPECT_EQ(stream.str(), "<URLLocator><URLPart>http://h/?a=b&amp;c=d</URLPart></URLLocator>");
}

} // namespace
} // namespace Tallymoor
