#include "pages/HeadingsTable.h"
#include "support/MessageOf.h"
#include "support/StringPrinting.h"
#include <gtest/gtest.h>

namespace Tallymoor {
namespace {

using Column = AnswerColumn;

AnswerFormat formatOf(std::vector<ColumnPlace> columns) {
  AnswerFormat format;
  format.reader = AnswerReader::Headings;
  format.columns = std::move(columns);
  return format;
}

AnswerFormat dateAndClose() {
  return formatOf({{Column::Date, u"Date"}, {Column::Close, u"Close*"}});
}

String rowsOf(const AnswerTable& table) {
  String text;
  for (const AnswerRow& row : table.rows)
    text += String::fromLong(static_cast<std::int64_t>(row.place)) + u":" + row[Column::Date].value_or(u"-") +
            u"=" + row[Column::Close].value_or(u"-") + u";";
  return text + String::fromLong(static_cast<std::int64_t>(table.passedOver)) + u" passed over";
}

String read(const std::string& page, const AnswerFormat& format = dateAndClose()) {
  return rowsOf(readHeadingsTable("<html><body>" + page + "</body></html>", format));
}

/// A table with the usual headings.
std::string table(const std::string& rows) {
  return "<table><tr><th>Date</th><th>Close</th></tr>" + rows + "</table>";
}

TEST(HeadingsTable, FindsTheFirstTableWithAllHeadings) {
  EXPECT_EQ(read("<table><tr><td>Date</td><td>Name</td></tr><tr><td>1</td><td>x</td></tr></table>"
                 "<table><thead><tr><th> date </th><th>Open</th><th>CLOSE (AUD)</th></tr></thead>"
                 "<tbody><tr><td>2026-02-26</td><td>9</td><td>10.5</td></tr></tbody></table>" +
                 table("<tr><td>2026-02-27</td><td>77</td></tr>")),
            u"2:2026-02-26=10.5;0 passed over");
}

TEST(HeadingsTable, ReadsHeadingsInPlainCellsAndRowsThatAreNotClosed) {
  EXPECT_EQ(
      read("<TABLE border=0><TR><TD><b>Date</b><TD>Close<TR><TD>2026-02-26<TD>10.5<TR><TD>2026-02-27<TD>10.6"
           "</TABLE>"),
      u"2:2026-02-26=10.5;3:2026-02-27=10.6;0 passed over");
}

TEST(HeadingsTable, ReadsTheTextOfALink) {
  EXPECT_EQ(
      read(table(
          "<tr><td><a href='/d?x=1>2'>26&nbsp;Feb  2026</a></td><td><span>10.5</span>&nbsp;</td></tr>")),
      u"2:26 Feb 2026=10.5;0 passed over");
}

TEST(HeadingsTable, PassesOverWhatStandsUnderOtherHeadings) {
  EXPECT_EQ(
      read(table("<tr><td>2026-02-26</td><td>10.5</td></tr>"
                 "<tr><td>2026-02-25</td><td colspan=2>0.24 dividend</td></tr>"
                 "<tr><td colspan='2'>2:1 split on 2026-02-25</td></tr>"
                 "<tr><td>2026-02-24</td></tr>"
                 "<tr><td>2026-02-23</td><td>10.1</td><td>9</td></tr>"
                 "<tr><td rowspan=2>2026-02-20</td><td>10.2</td></tr><tr><td>10.3</td><td>10.4</td></tr>"
                 "<tr><th>Date</th><th>Close</th></tr>"
                 "<tr><td>2026-02-19</td><td>10.7</td></tr>"
                 "<tfoot><tr><td>2026-02-19</td><td>10.45</td></tr></tfoot>")),
      u"2:2026-02-26=10.5;10:2026-02-19=10.7;8 passed over");
}

TEST(HeadingsTable, CountsHeadingsOverSeveralColumns) {
  EXPECT_EQ(read("<table><tr><th>Date<th colspan=2>Change<th>Close<tr><td>2026-02-26<td>1<td>2%<td>10.5"
                 "<tr><td>2026-02-27<td>1<td>10.5</table>"),
            u"2:2026-02-26=10.5;1 passed over");
  EXPECT_EQ(
      messageOf([] { read("<table><tr><th>Date<th colspan=2>Close<tr><td>2026-02-26<td>1<td>2</table>"); }),
      u"several columns have the heading Close*");
}

TEST(HeadingsTable, ATagInsideANumberIsNoPartOfIt) {
  EXPECT_EQ(read(table("<tr><td>2026-02-26</td><td>10.5<sup>1</sup></td></tr>"
                       "<tr><td>2026-02-27</td><td>1<!-- x -->0.6</td></tr>"
                       "<tr><td>2026-02-28</td><td>7<br>8</td></tr>")),
            u"2:2026-02-26=10.5\n1;3:2026-02-27=10.6;4:2026-02-28=7\n8;0 passed over");
}

TEST(HeadingsTable, ANumberWithSomethingHiddenInItIsRefused) {
  EXPECT_EQ(read(table("<tr><td>2026-02-26</td><td>1<span hidden>.</span>05</td></tr>"
                       "<tr><td>2026-02-27</td><td>1<script>.</script>06</td></tr>")),
            u"2:2026-02-26=1\n05;3:2026-02-27=1\n06;0 passed over");
}

TEST(HeadingsTable, LeavesOutWhatIsHidden) {
  EXPECT_EQ(
      read(table("<tr><td><span style='display: none'>20260226</span>2026-02-26</td>"
                 "<td><i hidden>1<i>2</i></i>10.5<input value='<9>'><script>'</td>7'</script></td></tr>")),
      u"2:2026-02-26=10.5;0 passed over");
}

TEST(HeadingsTable, ATableInACellStandsByItself) {
  EXPECT_EQ(read("<table><tr><td>menu</td><td>" + table("<tr><td>2026-02-26</td><td>10.5</td></tr>") +
                 "</td></tr></table>"),
            u"2:2026-02-26=10.5;0 passed over");
  EXPECT_EQ(read(table("<tr><td>2026-02-26</td><td>10.5<table><tr><td>99</td></tr></table></td></tr>")),
            u"2:2026-02-26=10.5;0 passed over");
}

TEST(HeadingsTable, MatchesPatterns) {
  EXPECT_TRUE(fitsHeading(u" Close\n(AUD) ", u"close*"));
  EXPECT_TRUE(fitsHeading(u"Adj. Close", u"*close"));
  EXPECT_TRUE(fitsHeading(u"aXbXXc", u"a*b*c"));
  EXPECT_TRUE(fitsHeading(u"Z\u00C1R\u00D3\u00C1R", u"z\u00E1r\u00F3\u00E1r"));
  EXPECT_FALSE(fitsHeading(u"Close", u"Clos"));
  EXPECT_FALSE(fitsHeading(u"Clos", u"Close"));
  EXPECT_FALSE(fitsHeading(u"abXX", u"a*b*c"));
}

TEST(HeadingsTable, NamesTheCauseOfEachFailure) {
  struct Case {
    const char* answer;
    const char16_t* message;
  };
  AnswerFormat format = dateAndClose();
  format.errorPaths = {u"$.message"};
  for (const Case& each :
       {Case{"", u"the answer is empty"}, Case{"{\"message\":\"quota reached\"}", u"quota reached"},
        Case{"[{\"date\":\"2026-02-26\"}]", u"the answer is JSON where a web page is expected"},
        Case{"Date,Close\n2026-02-26,1\n",
             u"the answer is plain text where a web page is expected: \"Date,Close 2026-02-26,1\""},
        Case{"<html><title>Before you continue</title><form></form></html>",
             u"the answer is a web page, \"Before you continue\", without a table"},
        Case{"<html><table><tr><td>Datum</td><td>Schluss</td></tr></table></html>",
             u"no table has the headings Date, Close*; the first row of the first table is \"Datum, "
             u"Schluss\""},
        Case{"<html><table><tr><td>Date<td>Close<td>Close adj.</table>",
             u"two columns have the heading Close*"}})
    EXPECT_EQ(messageOf([&] { readHeadingsTable(each.answer, format); }), each.message) << each.answer;
}

TEST(HeadingsTable, StandsUpToDepthAndWidth) {
  std::string nested;
  for (int i = 0; i < 200'000; ++i)
    nested += "<table><tr><td>";
  EXPECT_EQ(read(nested + table("<tr><td>2026-02-26</td><td>10.5</td></tr>")),
            u"2:2026-02-26=10.5;0 passed over");
  std::string wide = "<table><tr>";
  for (int i = 0; i < 500'000; ++i)
    wide += "<td colspan=1000>";
  EXPECT_EQ(read(wide + "</table>" + table("<tr><td>2026-02-26</td><td>10.5</td></tr>")),
            u"2:2026-02-26=10.5;0 passed over");
}

} // namespace
} // namespace Tallymoor
