#include "pages/HTMLTable.h"
#include "TestPaths.h"
#include "foundation/Exception.h"
#include "pages/HTMLParser.h"
#include "support/FailureOf.h"
#include "support/StringPrinting.h"
#include <fstream>
#include <gtest/gtest.h>

namespace Tallymoor {
namespace {

std::string in(const std::string& name, int index = 0) {
  return "<TagFind><TagMove move=\"In\" name=\"" + name + "\" index=\"" + std::to_string(index) +
         "\"/></TagFind>";
}

std::string column(const std::string& attributes, int index) {
  return "<TagLocator " + attributes + ">" + in("td", index) + "</TagLocator>";
}

void decode(XMLTableLocator& locator, const std::string& table, int firstRow, const std::string& columns) {
  locator.decode(("<TableLocator><TagLocator>" + table + "</TagLocator><TagLocator>" + in("tr", firstRow) +
                  "</TagLocator>" + columns + "</TableLocator>")
                     .c_str());
}

const std::string COLUMNS = column("type=\"Date\" format=\"MidDate1\"", 0) +
                            column("type=\"Close\" format=\"Float\"", 4) +
                            column("type=\"Volume\" format=\"CommaLong\"", 5) + column("type=\"Close\"", 1);

HTMLPage prices() {
  std::ifstream file(std::string(TALLYMOOR_TEST_DATA) + "/prices.html", std::ios::binary);
  EXPECT_TRUE(file);
  return HTMLParser::Parse(String(std::string(std::istreambuf_iterator<char>(file), {}).c_str()));
}

const std::string TO_PRICES =
    "<TagFind><TagSearch tagname=\"table\" attr=\"class\" attrVal=\"data\"/></TagFind>";

class HTMLTableTest : public ::testing::Test {
protected:
  HTMLTableTest() { decode(m_locator, TO_PRICES, 1, COLUMNS); }

  XMLTableLocator m_locator;
  const HTMLPage m_page = prices();
};

TEST_F(HTMLTableTest, ReadsARealPage) {
  HTMLTable table(&m_locator);
  EXPECT_EQ(table.numRows(), 0u);
  table.fillFrom(m_page.get());
  ASSERT_EQ(table.numRows(), 3u);
  EXPECT_EQ(table.numColumns(), 4u);
  EXPECT_EQ(table.cellValue(0, 0), u"3-Mar-06");
  EXPECT_EQ(table.cellValue(0, 1), u"1.52");
  EXPECT_EQ(table.cellValue(2, 2), u"1,004,500");
  table.fillFrom(m_page.get());
  EXPECT_EQ(table.numRows(), 3u) << "a second fill replaces the first";
}

TEST_F(HTMLTableTest, KnowsItsColumns) {
  const HTMLTable table(&m_locator);
  EXPECT_EQ(table.columnByType(COLUMN_TYPE_VOLUME), 2u);
  EXPECT_EQ(table.columnByType(COLUMN_TYPE_CLOSE), 1u) << "the first of two";
  EXPECT_TRUE(table.hasColumn(COLUMN_TYPE_DATE));
  EXPECT_FALSE(table.hasColumn(COLUMN_TYPE_HIGH));
  EXPECT_EQ(failureOf<HTMLException>([&] { table.columnByType(COLUMN_TYPE_HIGH); }),
            u"HTMLTable::columnByType - no such type 6");
  EXPECT_EQ(table.columnType(3), COLUMN_TYPE_CLOSE);
  EXPECT_EQ(table.columnType(4), COLUMN_TYPE_NONE);
}

TEST_F(HTMLTableTest, MissingCellsThrow) {
  HTMLTable table(&m_locator);
  table.fillFrom(m_page.get());
  EXPECT_EQ(failureOf<HTMLException>([&] { table.cellValue(3, 0); }),
            u"HTMLTable::cellValue - no such row index3");
  EXPECT_EQ(failureOf<HTMLException>([&] { table.cellValue(2, 4); }),
            u"HTMLTable::cellValue - no such column index4");
}

TEST_F(HTMLTableTest, TheLastRowAloneIsATableOfOneRow) {
  XMLTableLocator locator;
  decode(locator, TO_PRICES, 3, COLUMNS);
  HTMLTable table(&locator);
  table.fillFrom(m_page.get());
  ASSERT_EQ(table.numRows(), 1u);
  EXPECT_EQ(table.cellValue(0, 0), u"1-Mar-06");
}

TEST_F(HTMLTableTest, SaysWhichWalkFailed) {
  XMLTableLocator noTable;
  decode(noTable, in("nothing"), 0, COLUMNS);
  EXPECT_EQ(failureOf<HTMLException>([&] { HTMLTable(&noTable).fillFrom(m_page.get()); }),
            u"HTMLTable::fillFrom - Failed to find root tag: \n"
            u"HTMLTagLocator::operator() - FindIndexedSubTag failed for nothing from html");
  XMLTableLocator noRow;
  decode(noRow, TO_PRICES, 9, COLUMNS);
  EXPECT_EQ(failureOf<HTMLException>([&] { HTMLTable(&noRow).fillFrom(m_page.get()); }),
            u"HTMLTable::fillFrom - Failed to find first row tag: \n"
            u"HTMLTagLocator::operator() - FindIndexedSubTag failed for tr from table");
  EXPECT_EQ(failureOf<HTMLException>([&] { HTMLTable(&m_locator).fillFrom(nullptr); }),
            u"HTMLTable::fillFrom - bad param");
}

// --- Headings

const std::string HEADED =
    column("type=\"Date\" heading=\"Date\"", 0) + column("type=\"Close\" heading=\"Close\"", 1);

/// The error message for a table with this first row and these rows, or "no failure".
String headedFailure(const std::string& table, const std::string& columns = HEADED, int firstRow = 1) {
  XMLTableLocator locator;
  decode(locator, in("table"), firstRow, columns);
  const HTMLPage page = HTMLParser::Parse(String(("<html><table>" + table + "</table></html>").c_str()));
  return failureOf<HTMLException>([&] { HTMLTable(&locator).fillFrom(page.get()); });
}

const std::string ROW = "<tr><td>3-Mar-06</td><td>1.5</td></tr>";

TEST_F(HTMLTableTest, CellsMatchTheirHeadings) {
  EXPECT_EQ(headedFailure("<tr><th>Date</th><th>Close</th></tr>" + ROW + ROW), u"no failure");
  EXPECT_EQ(headedFailure("<tr><td>Date</td><th><a href=x>&nbsp;Close </a></th></tr>" + ROW), u"no failure");
  EXPECT_EQ(headedFailure("<tr><th>Title</th></tr><tr><th>Date</th><th>Close</th></tr>" + ROW, HEADED, 2),
            u"no failure")
      << "the row right before the first one";
}

TEST_F(HTMLTableTest, MovedColumnsFail) {
  EXPECT_EQ(headedFailure("<tr><th>Close</th><th>Date</th></tr><tr><td>1.5</td><td>3-Mar-06</td></tr>"),
            u"HTMLTable::fillFrom - not under its heading: Date");
  EXPECT_EQ(headedFailure(
                "<tr><th>Date</th><th>Open</th><th>Close</th></tr><tr><td>a</td><td>1</td><td>2</td></tr>"),
            u"HTMLTable::fillFrom - not under its heading: Close");
  EXPECT_EQ(headedFailure("<tr><th>Date</th></tr>" + ROW),
            u"HTMLTable::fillFrom - not under its heading: Close");
}

TEST_F(HTMLTableTest, RowsHaveAsManyCellsAsHeadings) {
  const String failure = u"HTMLTable::fillFrom - a row has not as many cells as headings";
  const std::string headings = "<tr><th>Date</th><th>Close</th></tr>";
  EXPECT_EQ(headedFailure(headings + ROW + "<tr><td>2-Mar-06</td><td>2-Mar-06</td><td>1.4</td></tr>"),
            failure);
  EXPECT_EQ(headedFailure(headings + ROW + "<tr><td>2-Mar-06</td><td>1.4</td><th>x</th></tr>"), failure);
}

TEST_F(HTMLTableTest, HeadingsMayBeInTheTableHead) {
  const std::string columns = HEADED;
  XMLTableLocator locator;
  decode(locator, in("table") + in("tbody"), 0, columns);
  const auto failure = [&](const std::string& headings) {
    const HTMLPage page = HTMLParser::Parse(
        String(("<html><table>" + headings + "<tbody>" + ROW + "</tbody></table></html>").c_str()));
    return failureOf<HTMLException>([&] { HTMLTable(&locator).fillFrom(page.get()); });
  };
  EXPECT_EQ(failure("<thead><tr><th>Date</th><th>Close</th></tr></thead>"), u"no failure");
  EXPECT_EQ(failure("<thead><tr><th>Date</th><th>Open</th></tr></thead>"),
            u"HTMLTable::fillFrom - not under its heading: Close");
  EXPECT_EQ(failure(""), u"HTMLTable::fillFrom - no row of headings");
}

TEST_F(HTMLTableTest, AHeadingNeedsAWalkThatBeginsWithAMoveIntoTheRow) {
  const std::string search =
      "<TagLocator type=\"Close\" heading=\"Close\"><TagFind><TagSearch tagname=\"td\" "
      "val=\"1.5\"/></TagFind></TagLocator>";
  EXPECT_EQ(headedFailure("<tr><th>Date</th><th>Close</th></tr>" + ROW, search),
            u"HTMLTable::fillFrom - not under its heading: Close");
}

TEST_F(HTMLTableTest, OneShortRowFailsTheWholeTable) {
  const HTMLPage page =
      HTMLParser::Parse(u"<html><table><tr><td>1</td><td>2</td></tr><tr><td>3</td></tr></table></html>");
  XMLTableLocator locator;
  decode(locator, in("table"), 0, column("", 0) + column("", 1));
  HTMLTable table(&locator);
  EXPECT_EQ(failureOf<HTMLException>([&] { table.fillFrom(page.get()); }),
            u"HTMLTagLocator::operator() - FindIndexedSubTag failed for td from tr");
  EXPECT_EQ(table.numRows(), 0u);
  EXPECT_EQ(failureOf<HTMLException>([&] { table.cellValue(0, 0); }),
            u"HTMLTable::cellValue - no such row index0");
}

String repeated(const String& piece, std::size_t count) {
  String text;
  for (std::size_t i = 0; i < count; ++i)
    text += piece;
  return text;
}

String fillFailure(const String& html, const std::string& columns) {
  const HTMLPage page = HTMLParser::Parse(html);
  XMLTableLocator locator;
  decode(locator, in("table"), 0, columns);
  HTMLTable table(&locator);
  return failureOf<HTMLException>([&] { table.fillFrom(page.get()); });
}

/// Every row contains all following rows, so a walk to its cells passes all of them.
TEST_F(HTMLTableTest, NestedRowsAreReadInReasonableTime) {
  const auto page = [](std::size_t rows) {
    return u"<html><table>" + repeated(u"<tr>", rows) + repeated(u"<td a=\"\"/></tr>", rows) +
           u"</table></html>";
  };
  const String tooMany = u"HTMLTable::fillFrom - too many tags to walk over";
  EXPECT_EQ(fillFailure(page(1000), column("", 0)), u"no failure");
  EXPECT_EQ(fillFailure(page(20000), column("", 0)), tooMany);
  EXPECT_EQ(fillFailure(page(20000),
                        "<TagLocator><TagFind><TagSearch tagname=\"td\" attr=\"a\"/></TagFind></TagLocator>"),
            tooMany);
}

/// A cell shared by all rows is copied for each row.
TEST_F(HTMLTableTest, NestedRowsAreReadInReasonableMemory) {
  const String html = u"<html><table>" + repeated(u"<tr>", 1000) + u"<td>" + repeated(u"x", 10000) +
                      u"</td><tr><td/></tr>" + repeated(u"</tr>", 1000) + u"</table></html>";
  EXPECT_EQ(fillFailure(html, column("", 0)), u"HTMLTable::fillFrom - too many tags to walk over");
}

/// A tag with long attributes that the walks of all rows pass.
TEST_F(HTMLTableTest, NestedRowsReadLongAttributesInReasonableTime) {
  const String html = u"<html><table>" + repeated(u"<tr>", 1000) + u"<td b=\"" + repeated(u"x", 100000) +
                      u"\"/><td a=\"\"/>" + repeated(u"</tr>", 1000) + u"</table></html>";
  EXPECT_EQ(
      fillFailure(html, "<TagLocator><TagFind><TagSearch tagname=\"td\" attr=\"a\"/></TagFind></TagLocator>"),
      u"HTMLTable::fillFrom - too many tags to walk over");
}

} // namespace
} // namespace Tallymoor
