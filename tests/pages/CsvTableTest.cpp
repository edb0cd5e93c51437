#include "pages/CsvTable.h"
#include "support/MessageOf.h"
#include "support/StringPrinting.h"
#include <gtest/gtest.h>

namespace Tallymoor {
namespace {

using Column = AnswerColumn;

AnswerFormat formatOf(std::vector<ColumnPlace> columns) {
  AnswerFormat format;
  format.columns = std::move(columns);
  return format;
}

AnswerFormat dateAndClose() {
  return formatOf({{Column::Date, u"Date"}, {Column::Close, u"Close"}});
}

String rowsOf(const AnswerTable& table) {
  String text;
  for (const AnswerRow& row : table.rows)
    text += row[Column::Date].value_or(u"-") + u"=" + row[Column::Close].value_or(u"-") + u";";
  return text;
}

TEST(CsvTable, ReadsColumnsByTheirHeadings) {
  const AnswerTable table =
      readCsvTable("Symbol, CLOSE ,date\r\nX,1.50,2024-01-02\r\nX,,2024-01-03\r\n", dateAndClose());
  EXPECT_EQ(rowsOf(table), u"2024-01-02=1.50;2024-01-03=-;");
  EXPECT_EQ(table.passedOver, 0u);
  EXPECT_EQ(table.rows[1].place, 3u);
}

TEST(CsvTable, ReadsQuotedFieldsSemicolonsAndAByteOrderMark) {
  AnswerFormat format = dateAndClose();
  format.separator = ';';
  const AnswerTable table = readCsvTable(
      "\xEF\xBB\xBF\"Date\";\"A \"\"name\"\";\nin two lines\";Close\n31.01.2024;\"x;y\nz\";\"1.234,50\"\n",
      format);
  EXPECT_EQ(rowsOf(table), u"31.01.2024=1.234,50;");
}

TEST(CsvTable, FindsTheHeadingsBehindADescriptionAndPassesOverOtherRows) {
  const AnswerTable table = readCsvTable("Rates of exchange\n\"Series\",\"Label\"\nDate,Close\n2024-01-02,1\n"
                                         "Second half\n,2\nTotal,3\n2024-07-01,4\n",
                                         dateAndClose());
  EXPECT_EQ(rowsOf(table), u"2024-01-02=1;2024-07-01=4;");
  EXPECT_EQ(table.passedOver, 3u);
}

TEST(CsvTable, ReadsColumnsByNumberBehindSkippedLines) {
  AnswerFormat format = formatOf({{Column::Date, u"2"}, {Column::Close, u"1"}});
  format.hasHeading = false;
  format.skipLines = 1;
  EXPECT_EQ(rowsOf(readCsvTable("9,9999-01-01\n5,2024-01-02\n6,2024-01-03", format)),
            u"2024-01-02=5;2024-01-03=6;");
  format.columns[0].place = u"Date";
  EXPECT_EQ(messageOf([&] { readCsvTable("1,2\n", format); }), u"a CSV column is no number from 1: Date");
}

TEST(CsvTable, NamesTheCauseOfEachFailure) {
  struct Case {
    std::string answer;
    const char16_t* message;
  };
  AnswerFormat format = dateAndClose();
  format.errorPaths = {u"$.Note"};
  for (const Case& each :
       {Case{"", u"the answer is empty"}, Case{" \r\n", u"the answer is empty"},
        Case{"<!DOCTYPE html>", u"the answer is a web page where CSV is expected"},
        Case{"{\"Note\":\"25 requests per day\"}", u"25 requests per day"},
        Case{"{\"x\":1}", u"the answer is JSON where CSV is expected"},
        Case{"{broken", u"the answer is JSON where CSV is expected"},
        Case{"Too many requests\n",
             u"no row has the headings Date, Close; the first row is \"Too many requests\""},
        Case{"Date," + std::string(110, 'x') + "\n",
             u"no row has the headings Date, Close; the first row is \"Date, "
             u"xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx"
             u"xxxxxxxxxxxxxxxxxxxxxxxxxx...\""},
        Case{"<title>Are&nbsp;you a robot?</title>",
             u"the answer is a web page, \"Are you a robot?\", where CSV is expected"},
        Case{"<?xml version=\"1.0\"?><error/>", u"the answer is an XML document where CSV is expected"},
        Case{"\x1F\x8B\x08", u"the answer is compressed (gzip)"},
        Case{"\xFF\xFE"
             "D",
             u"the answer is a text in UTF-16, not in UTF-8"},
        Case{"Date,Close\n2024-01-02,\"1\n2024-01-03,2\n", u"the last quoted field has no end"},
        Case{"Date,Close,Close\n2024-01-02,1,2\n", u"two columns have the heading Close"},
        Case{std::string(2000, ','), u"a row has more than 1000 fields"}})
    EXPECT_EQ(messageOf([&] { readCsvTable(each.answer, format); }), each.message) << each.answer;
}

TEST(CsvTable, PassesOverRowsWhoseFieldsMayStandUnderOtherHeadings) {
  const AnswerTable table = readCsvTable(
      "Date,Close,Volume\n2024-01-02,1,234.50,7\n2024-01-03,2\n2024-01-04,3,9,\n", dateAndClose());
  EXPECT_EQ(rowsOf(table), u"2024-01-04=3;");
  EXPECT_EQ(table.passedOver, 2u);
}

TEST(CsvTable, RefusesATextWithoutAnyRow) {
  AnswerFormat format = dateAndClose();
  format.columns[0].place = u"1";
  format.columns[1].place = u"2";
  format.hasHeading = false;
  EXPECT_EQ(messageOf([&] { readCsvTable("Too many requests\n", format); }),
            u"no row has the columns of the format; the first row is \"Too many requests\"");
}

TEST(CsvTable, ReadsAVeryLongLine) {
  const std::string line(10 * 1024 * 1024, 'x');
  EXPECT_EQ(rowsOf(readCsvTable("Date,Close,Note\n2024-01-02,1," + line + "\n", dateAndClose())),
            u"2024-01-02=1;");
}

} // namespace
} // namespace Tallymoor
