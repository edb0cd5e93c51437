#include "pages/JsonTable.h"
#include "pages/JsonPath.h"
#include "pages/JsonValues.h"
#include "support/MessageOf.h"
#include "support/StringPrinting.h"
#include <gtest/gtest.h>

namespace Tallymoor {
namespace {

using Column = AnswerColumn;

AnswerFormat formatOf(std::vector<ColumnPlace> columns, std::vector<String> errorPaths = {}) {
  AnswerFormat format;
  format.reader = AnswerReader::Json;
  format.columns = std::move(columns);
  format.errorPaths = std::move(errorPaths);
  return format;
}

String textsOf(const AnswerTable& table, Column column) {
  String texts;
  for (const AnswerRow& row : table.rows)
    texts += (texts.empty() ? String() : String(u" ")) + row[column].value_or(u"-");
  return texts;
}

String messageOfReading(std::string_view bytes, const AnswerFormat& format) {
  return messageOf([&] { readJsonTable(bytes, format); });
}

TEST(JsonPath, RefusesWhatIsNoPath) {
  struct Case {
    const char16_t* path;
    const char16_t* cause;
  };
  for (const Case& each :
       {Case{u"chart.result", u"does not begin with \"$\""},
        Case{u"$chart", u"has neither \".\" nor \"[\" where a step begins"},
        Case{u"$.a[x]", u"has no number between \"[\" and \"]\""},
        Case{u"$.a[1", u"has no number between \"[\" and \"]\""},
        Case{u"$['a", u"has a quoted name without an end"}, Case{u"$.a..b", u"has no name behind a \".\""},
        Case{u"$.a[*].b[*]", u"has more than one \"[*]\""}, Case{u"$.a[*]~", u"has both \"[*]\" and \"~\""}})
    EXPECT_EQ(messageOf([&] { JsonPath path(each.path); }),
              String(u"JSON path ") + each.path + u" " + each.cause);
}

TEST(JsonTable, ReadsParallelArraysAndPassesOverNullRows) {
  const AnswerTable table = readJsonTable(
      R"json({"chart":{"result":[{"timestamp":[10,20,30],"quote":{"close":[1.50,null,2],"high":[null,null,3]}}]}})json",
      formatOf({{Column::Close, u"$.chart.result[0].quote.close"},
                {Column::High, u"$.chart.result[0].quote.high"}}));
  EXPECT_EQ(textsOf(table, Column::Close), u"1.50 2");
  EXPECT_EQ(textsOf(table, Column::High), u"- 3");
  EXPECT_EQ(table.passedOver, 1u);
  EXPECT_EQ(table.rows[1].place, 3u);
}

TEST(JsonTable, ReadsObjectsWithMissingMembers) {
  const AnswerTable table = readJsonTable(
      R"json({"values":[{"date":"2024-01-02","close":"12.3400"},{"date":"2024-01-03"},{"close":7}]})json",
      formatOf({{Column::Date, u"$.values[*].date"}, {Column::Close, u"$.values[*].close"}}));
  EXPECT_EQ(textsOf(table, Column::Date), u"2024-01-02 2024-01-03 -");
  EXPECT_EQ(textsOf(table, Column::Close), u"12.3400 - 7");
}

TEST(JsonTable, ReadsAnObjectByItsKeys) {
  const AnswerTable table = readJsonTable(
      R"json({"Meta":{"x":{"y":[1]}},"Time Series (Daily)":{"2024-01-03":{"4. close":"5.1"},"2024-01-02":{"4. close":"5.0"}}})json",
      formatOf({{Column::Date, u"$['Time Series (Daily)']~"},
                {Column::Close, u"$['Time Series (Daily)'][*]['4. close']"}}));
  EXPECT_EQ(textsOf(table, Column::Date), u"2024-01-03 2024-01-02");
  EXPECT_EQ(textsOf(table, Column::Close), u"5.1 5.0");
}

TEST(JsonTable, ReadsArraysOfArrays) {
  const AnswerTable table =
      readJsonTable(R"json([[20260412,1,2],[20260411,3,4]])json",
                    formatOf({{Column::Date, u"$[*][0]"}, {Column::Close, u"$[*][2]"}}));
  EXPECT_EQ(textsOf(table, Column::Date), u"20260412 20260411");
  EXPECT_EQ(textsOf(table, Column::Close), u"2 4");
}

TEST(JsonTable, GivesASingleValueToAllRows) {
  const AnswerTable table =
      readJsonTable(R"json({"meta":{"currency":"AUD"},"c":[1,2]})json",
                    formatOf({{Column::Close, u"$.c"}, {Column::Currency, u"$.meta.currency"}}));
  EXPECT_EQ(textsOf(table, Column::Currency), u"AUD AUD");
  const AnswerTable one = readJsonTable(R"json({"data":{"priceLast":41.5}})json",
                                        formatOf({{Column::Close, u"$.data.priceLast"}}));
  EXPECT_EQ(textsOf(one, Column::Close), u"41.5");
}

TEST(JsonTable, TellsTheSourcesOwnError) {
  const AnswerFormat format =
      formatOf({{Column::Close, u"$.values[*].close"}}, {u"$.Information", u"$.Note"});
  try {
    readJsonTable(R"json({"Information":" 25 requests per day "})json", format);
    FAIL();
  } catch (const AnswerException& failure) {
    EXPECT_EQ(failure.fault(), AnswerException::Fault::SourceError);
    EXPECT_EQ(failure.message(), u"25 requests per day");
  }
}

TEST(JsonTable, NamesTheCauseOfEachFailure) {
  const AnswerFormat format =
      formatOf({{Column::Date, u"$.values[*].date"}, {Column::Close, u"$.values[*].close"}});
  struct Case {
    const char* answer;
    const char16_t* message;
  };
  for (const Case& each :
       {Case{"", u"the answer is empty"}, Case{"<html>", u"the answer is a web page where JSON is expected"},
        Case{"{\"values\":[\n{\"date\":\"2024",
             u"the answer is not JSON: Missing a closing quotation mark in string. (line 2, column 14)"},
        Case{"{} x", u"the answer is not JSON: The document root must not be followed by other values. (line "
                     u"1, column 4)"},
        Case{"{\"values\":NaN}", u"the answer is not JSON: Invalid value. (line 1, column 11)"},
        Case{"[\"\xC3\x28\"]", u"the answer is not JSON: Invalid encoding in string. (line 1, column 3)"},
        Case{"{\"x\":\n1}", u"the answer has nothing at $.values[*].date: \"{\"x\": 1}\""},
        Case{"Too many requests", u"the answer is plain text where JSON is expected: \"Too many requests\""},
        Case{"{\"values\":[{\"date\":{}}]}",
             u"the answer holds an object where a value is expected: $.values[*].date"},
        Case{"{\"values\":[{\"date\":1,\"date\":2}]}",
             u"the answer holds two values of one name: $.values[*].date"},
        Case{"{\"values\":[{\"date\":[1]}]}",
             u"the answer holds a list where a value is expected: $.values[*].date"}})
    EXPECT_EQ(messageOfReading(each.answer, format), each.message) << each.answer;
}

TEST(JsonTable, RefusesListsOfDifferentLengths) {
  EXPECT_EQ(messageOfReading(R"json({"t":[1,2,3],"c":[1,2]})json",
                             formatOf({{Column::Date, u"$.t"}, {Column::Close, u"$.c"}})),
            u"lists of different lengths: 3 at $.t, 2 at $.c");
}

TEST(JsonTable, NumbersOfTheDocumentGetTheDecimalSignOfItsTexts) {
  AnswerFormat format = formatOf({{Column::Close, u"$[*]"}});
  format.decimalSign = u',';
  EXPECT_EQ(textsOf(readJsonTable(R"json(["10.500", 10.500, 1.5e3])json", format), Column::Close),
            u"10.500 10,500 1,5e3");
}

TEST(JsonTable, PassesOverArraysOfAnotherLength) {
  const AnswerTable table =
      readJsonTable(R"json([["a",1,2],["b",3],["c",4,5,6],["d",7,null]])json",
                    formatOf({{Column::Code, u"$[*][0]"}, {Column::Close, u"$[*][1]"}}));
  EXPECT_EQ(textsOf(table, Column::Close), u"1 7");
  EXPECT_EQ(table.passedOver, 2u);
}

TEST(JsonTable, CutsWhatTheSourceTells) {
  EXPECT_EQ(messageOfReading("{\"Note\":\"" + std::string(10 * 1024 * 1024, 'x') + "\"}",
                             formatOf({{Column::Close, u"$.c"}}, {u"$.Note"}))
                .size(),
            400u);
}

TEST(JsonTable, PassesOverAByteOrderMark) {
  EXPECT_EQ(textsOf(readJsonTable("\xEF\xBB\xBF[1]", formatOf({{Column::Close, u"$"}})), Column::Close),
            u"1");
}

TEST(JsonTable, StandsUpToDepthAndWidth) {
  constexpr std::size_t MANY = 1'000'000;
  const std::string deep = std::string(MANY, '[') + std::string(MANY, ']');
  EXPECT_EQ(messageOfReading(deep, formatOf({{Column::Close, u"$.c"}})).substr(0, 33),
            u"the answer has nothing at $.c: \"[");
  std::string wide = "{\"c\":[1]";
  for (std::size_t i = 0; i < MANY; ++i)
    wide += ",\"k\":0";
  EXPECT_EQ(textsOf(readJsonTable(wide + "}", formatOf({{Column::Close, u"$.c"}})), Column::Close), u"1");
}

} // namespace
} // namespace Tallymoor
