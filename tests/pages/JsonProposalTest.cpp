#include "pages/FormatProposal.h"
#include "support/MessageOf.h"
#include "support/StringPrinting.h"
#include <gtest/gtest.h>

namespace Tallymoor {
namespace {

String summaryOf(const FormatProposal& proposal) {
  String text = proposal.isHistory ? u"history" : u"price";
  text += u" " + proposal.format.datePattern + u" " + String(1, proposal.format.decimalSign) + u" " +
          proposal.format.timeZone;
  for (const ColumnPlace& column : proposal.format.columns)
    text += u" " + String::fromLong(static_cast<std::int64_t>(column.column)) + u"=" + column.place;
  for (const FormatDoubt& doubt : proposal.doubts)
    text += u"; doubt " + doubt.example + u": " + doubt.choices[0] + u" or " + doubt.choices[1];
  return text;
}

String proposed(const char* json) {
  return summaryOf(proposeFormat(json));
}

// The numbers of the columns: 0 date, 1 open, 2 high, 3 low, 4 close, 5 adjusted close, 6 volume, 7 currency.

TEST(JsonProposal, FindsObjectsInAnArray) {
  EXPECT_EQ(
      proposed(R"json([{"date":"2026-02-26","open":9.9,"high":10.2,"low":9.8,"close":10.1,
                             "adjusted_close":5.05,"volume":900}])json"),
      u"history yyyy-MM-dd .  0=$[*].date 4=$[*].close 1=$[*].open 2=$[*].high 3=$[*].low 6=$[*].volume "
      u"5=$[*].adjusted_close");
  EXPECT_EQ(proposed(R"json({"meta":{"x":"y"},"values":[{"datetime":"2026-02-26","close":"10.1200"},
                             {"datetime":"2026-02-25","close":"10,100"}]})json"),
            u"history yyyy-MM-dd .  0=$.values[*].datetime 4=$.values[*].close");
}

TEST(JsonProposal, FindsANumberInANestedObject) {
  EXPECT_EQ(
      proposed(
          R"json({"terms":{"url":"x"},"observations":[{"d":"2026-02-26","FXUSDCAD":{"v":"1.37"}}]})json"),
      u"history yyyy-MM-dd .  0=$.observations[*].d 4=$.observations[*].FXUSDCAD.v");
}

TEST(JsonProposal, FindsParallelArraysAndTheTimeZoneAmongTheTexts) {
  EXPECT_EQ(
      proposed(
          R"json({"chart":{"result":[{"meta":{"currency":"AUD","exchangeTimezoneName":"Australia/Sydney"},
                             "timestamp":[1641942000,1642028400],"indicators":{"quote":[{"close":[10.5,null],
                             "high":[11,null]}]}}]}})json"),
      u"history epoch-seconds . Australia/Sydney 0=$.chart.result[0].timestamp "
      u"4=$.chart.result[0].indicators.quote[0].close 2=$.chart.result[0].indicators.quote[0].high");
}

TEST(JsonProposal, AsksInWhichTimeZoneAMomentBecomesADay) {
  const FormatProposal proposal = proposeFormat(R"json({"t":[1641942000,1642028400],"c":[10.5,10.6]})json");
  EXPECT_EQ(summaryOf(proposal),
            u"history epoch-seconds . UTC 0=$.t 4=$.c; doubt 1641942000: UTC or America/New_York");
  EXPECT_NE(
      std::find(proposal.doubts[0].choices.begin(), proposal.doubts[0].choices.end(), u"Australia/Sydney"),
      proposal.doubts[0].choices.end());
  // Midnight in Greenwich names a day of Greenwich.
  EXPECT_EQ(proposed(R"json({"t":[1641945600,1642032000],"c":[10.5,10.6]})json"),
            u"history epoch-seconds .  0=$.t 4=$.c");
  EXPECT_EQ(proposed(R"json([{"date":"2026-02-26T00:00:00.000Z","close":1.5}])json"),
            u"history yyyy-MM-dd'T'HH:mm:ss.SSSXXX .  0=$[*].date 4=$[*].close");
  EXPECT_EQ(proposed(R"json([{"date":"2026-02-26T23:00:00+00:00","close":1.5}])json"),
            u"history yyyy-MM-dd'T'HH:mm:ssXXX . UTC 0=$[*].date 4=$[*].close; doubt "
            u"2026-02-26T23:00:00+00:00: UTC "
            u"or America/New_York");
}

TEST(JsonProposal, FindsObjectsKeyedByTheirDay) {
  EXPECT_EQ(proposed(R"json({"Meta Data":{"1. Information":"Daily"},"Time Series (Daily)":{
                             "2026-02-26":{"1. open":"9.9","4. close":"10.1"}}})json"),
            u"history yyyy-MM-dd .  0=$['Time Series (Daily)']~ 4=$['Time Series (Daily)'].*['4. close'] "
            u"1=$['Time Series (Daily)'].*['1. open']");
  EXPECT_EQ(proposed(R"json({"rates":{"2026-02-25":1.37,"2026-02-26":1.38}})json"),
            u"history yyyy-MM-dd .  0=$.rates~ 4=$.rates.*");
}

TEST(JsonProposal, AsksWhichColumnOfNamelessArraysIsTheClose) {
  EXPECT_EQ(proposed(R"json([[20260412,9.9,10.2,9.8,10.1,900],[20260411,9.8,10.3,9.7,10.0,800]])json"),
            u"history yyyyMMdd .  0=$[*][0] 1=$[*][1] 2=$[*][2] 3=$[*][3] 4=$[*][4] 6=$[*][5]; doubt 9.9, "
            u"10.2, 9.8, "
            u"10.1, 900: $[*][4] or $[*][1]");
  EXPECT_EQ(proposed(R"json({"data":[["2026-02-26",10.1]]})json"),
            u"history yyyy-MM-dd .  0=$.data[*][0] 4=$.data[*][1]");
}

TEST(JsonProposal, FindsASinglePrice) {
  EXPECT_EQ(
      proposed(R"json({"Global Quote":{"01. symbol":"QXZ","05. price":"10.50","07. latest trading day":
                             "2026-02-27"}})json"),
      u"price yyyy-MM-dd .  0=$['Global Quote']['07. latest trading day'] 4=$['Global Quote']['05. price']");
  EXPECT_EQ(proposed(R"json({"data":{"symbol":"QXZ","priceLast":41.51}})json"),
            u"price yyyy-MM-dd .  4=$.data.priceLast");
}

TEST(JsonProposal, ANumberOfTheDocumentHasAPointAndATextMayNot) {
  EXPECT_EQ(proposed(R"json([{"date":"2026-02-26","close":10.500}])json"),
            u"history yyyy-MM-dd .  0=$[*].date 4=$[*].close");
  EXPECT_EQ(proposed(R"json([{"date":"2026-02-26","close":"10,500"}])json"),
            u"history yyyy-MM-dd .  0=$[*].date 4=$[*].close; doubt 10,500: . or ,");
  EXPECT_EQ(proposed(R"json([{"date":"2026-02-26","close":"10,5"}])json"),
            u"history yyyy-MM-dd ,  0=$[*].date 4=$[*].close");
}

TEST(JsonProposal, TakesPenceForHundredths) {
  const FormatProposal proposal =
      proposeFormat(R"json([{"date":"2026-02-26","close":1050,"currency":"GBX"}])json");
  EXPECT_EQ(proposal.format.factor, 0.01);
  EXPECT_EQ(proposal.format.currency, u"GBP");
  EXPECT_EQ(summaryOf(proposal), u"history yyyy-MM-dd .  0=$[*].date 4=$[*].close");
}

TEST(JsonProposal, SaysWhatIsMissing) {
  const auto failureOf = [](const char* json) { return messageOf([&] { proposeJsonFormat(json); }); };
  EXPECT_EQ(failureOf("{\"code\":401}"), u"nothing in the answer looks like prices: \"{\"code\":401}\"");
  EXPECT_EQ(failureOf("[{\"date\":\"soon\",\"close\":1},{}]"),
            u"nothing in the answer looks like prices: \"[{\"date\":\"soon\",\"close\":1},{}]\"");
  EXPECT_EQ(failureOf("[1,"), u"the answer is not JSON: Invalid value. (line 1, column 4)");
}

TEST(JsonProposal, SettlesTheAnswerToADoubt) {
  FormatProposal proposal = proposeFormat(R"json([[20260412,9.9,10.2,9.8,10.1]])json");
  settle(proposal.format, FormatDoubt::About::CloseColumn, u"$[*][1]");
  EXPECT_EQ(proposal.format.columns[4].place, u"$[*][1]");
  EXPECT_EQ(proposal.format.columns[1].place, u"$[*][4]");
  settle(proposal.format, FormatDoubt::About::TimeZone, u"Australia/Sydney");
  EXPECT_EQ(messageOf([&] { settle(proposal.format, FormatDoubt::About::TimeZone, u"Nowhere"); }),
            u"unknown time zone: \"Nowhere\"");
  EXPECT_EQ(messageOf([&] { settle(proposal.format, FormatDoubt::About::DecimalSign, u"x"); }),
            u"the decimal sign is neither \".\" nor \",\"");
}

} // namespace
} // namespace Tallymoor
