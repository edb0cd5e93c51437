#include "market/HistoryTable.h"
#include "foundation/Exception.h"
#include "pages/HTMLParser.h"
#include "pages/HTMLTable.h"
#include "support/MessageOf.h"
#include "support/TestProfile.h"
#include <gtest/gtest.h>

namespace Tallymoor {
namespace {

/// A page with one row of date, close, high, low and volume, as the program reads it.
class HistoryTableTest : public ::testing::Test {
protected:
  HistoryTableTest() {
    std::string columns;
    const char* const types[] = {"Date", "Close", "High", "Low", "Volume"};
    for (std::size_t i = 0; i < std::size(types); ++i)
      columns += std::string("<TagLocator type=\"") + types[i] + "\">" + move("td", i) + "</TagLocator>";
    m_locator.decode(("<TableLocator><TagLocator>" + move("table", 0) + "</TagLocator><TagLocator>" +
                      move("tr", 0) + "</TagLocator>" + columns + "</TableLocator>")
                         .c_str());
  }

  HistoryTable::Row read(const std::vector<std::string>& cells) {
    std::string page = "<html><table><tr>";
    for (const std::string& cell : cells)
      page += "<td>" + cell + "</td>";
    const HTMLPage parsed = HTMLParser::Parse(String((page + "</tr></table></html>").c_str()));
    HTMLTable table(&m_locator);
    table.fillFrom(parsed.get());
    return HistoryTable(table).row(0);
  }
  HistoryTable::Row readDate(const char* date) { return read({date, "1.5", "1.6", "1.4", "1,000"}); }
  HistoryTable::Row readClose(const char* close) { return read({"3-Mar-06", close, "1.6", "1.4", "1,000"}); }

private:
  static std::string move(const char* name, std::size_t index) {
    return std::string("<TagFind><TagMove move=\"In\" name=\"") + name + "\" index=\"" +
           std::to_string(index) + "\"/></TagFind>";
  }

  const TestProfile m_profile;
  XMLTableLocator m_locator;
};

TEST_F(HistoryTableTest, ReadsARow) {
  const HistoryTable::Row row = read({"3-Mar-06", "1,234.5", "1,300.00", "&nbsp;1,200 ", "1,004,500"});
  EXPECT_EQ(row.reading, HistoryTable::Reading::Read);
  EXPECT_EQ(row.day, Date(2006, 3, 3));
  EXPECT_EQ(row.value.close, 1234.5);
  EXPECT_EQ(row.value.high, 1300.0);
  EXPECT_EQ(row.value.low, 1200.0);
  EXPECT_EQ(row.value.volume, 1004500);
}

TEST_F(HistoryTableTest, ReadsDaysAsPagesWriteThem) {
  for (const char* const text : {"3-Mar-06", "03-Mar-06", "3-MAR-2006", " 3-mar-06&nbsp;"})
    EXPECT_EQ(readDate(text).day, Date(2006, 3, 3)) << text;
}

TEST_F(HistoryTableTest, RefusesInvalidDays) {
  for (const char* const text :
       {"31-Feb-06", "0-Mar-06", "33-Mar-06", "3-Mar-6", "3-Mar-0", "3-Mar-", "3-Mar-06x", "x3-Mar-06"})
    EXPECT_EQ(messageOf([&] { readDate(text); }), u"TallymoorInternet - no day: " + String(text));
}

TEST_F(HistoryTableTest, ACloseWithoutDigitsIsMissing) {
  for (const char* const text : {"", "&nbsp;", "&#160;", "-", "N/A"})
    EXPECT_EQ(readClose(text).reading, HistoryTable::Reading::NoClose) << text;
}

TEST_F(HistoryTableTest, APriceInDoubtIsRefused) {
  for (const char* const text : {"1.234,50", "12,30", "1 234.50", "12&#46;30", "$12.30", "1.2x3"}) {
    EXPECT_EQ(messageOf([&] { readClose(text); }), u"TallymoorInternet - no number: " + String(text));
    EXPECT_EQ(messageOf([&] {
                read({"3-Mar-06", "1.5", text, "1", "1"});
              }),
              u"TallymoorInternet - no number: " + String(text));
    EXPECT_EQ(messageOf([&] {
                read({"3-Mar-06", "1.5", "2", text, "1"});
              }),
              u"TallymoorInternet - no number: " + String(text));
  }
}

TEST_F(HistoryTableTest, OtherFiguresMayBeMissing) {
  const HistoryTable::Row row = read({"3-Mar-06", "1.5", "N/A", "", "1.2x"});
  EXPECT_EQ(row.reading, HistoryTable::Reading::Read);
  EXPECT_EQ(row.value.high, 0.0);
  EXPECT_EQ(row.value.low, 0.0);
  EXPECT_EQ(row.value.volume, 0);
}

} // namespace
} // namespace Tallymoor
