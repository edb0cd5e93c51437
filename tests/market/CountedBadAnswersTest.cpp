// Whatever comes back in place of prices: each answer by each reader, with the class of the failure and its
// words. Nothing is taken of any of them.
#include "TestPaths.h"
#include "foundation/Exception.h"
#include "market/DataSource.h"
#include "market/HTTPClient.h"
#include "market/LocatorSet.h"
#include "market/SourceAnswer.h"
#include "support/StringPrinting.h"
#include "support/TestProfile.h"
#include <cstdio>
#include <gtest/gtest.h>

namespace Tallymoor {
namespace {

using namespace std::string_literals;

constexpr std::size_t TEN_MB = 10 * 1024 * 1024;

std::string millionKeys() {
  constexpr int MANY = 1'000'000;
  std::string object = "{";
  for (int i = 0; i < MANY; ++i)
    object += "\"" + std::to_string(i) + "\":0,";
  return object + "\"values\":[]}";
}

/// An answer and the beginning of what each reader says. "source: " stands before the source's own words.
struct BadAnswer {
  const char* name;
  std::string bytes;
  String json;
  String csv;
  String table;
};

const std::vector<BadAnswer>& badAnswers() {
  static const std::vector<BadAnswer> answers{
      {"nothing", "", u"the answer is empty", u"the answer is empty", u"the answer is empty"},
      {"blanks", " \r\n\t", u"the answer is empty", u"the answer is empty", u"the answer is empty"},
      {"a byte order mark alone", "\xEF\xBB\xBF", u"the answer is empty", u"the answer is empty",
       u"the answer is empty"},
      {"a consent page",
       "<!DOCTYPE html><html><head><title>Before you continue</title></head><body><form><button>I "
       "agree</button></form></body></html>",
       u"the answer is a web page, \"Before you continue\", where JSON is expected",
       u"the answer is a web page, \"Before you continue\", where CSV is expected",
       u"the answer is a web page, \"Before you continue\", without a table"},
      {"a robot check",
       "<html><head><title>Just a "
       "moment...</title></head><body><script>challenge(1234.5)</script></body></html>",
       u"the answer is a web page, \"Just a moment...\", where JSON is expected",
       u"the answer is a web page, \"Just a moment...\", where CSV is expected",
       u"the answer is a web page, \"Just a moment...\", without a table"},
      {"a page without a title", "<html><body><p>2026-02-26 10.50</p></body></html>",
       u"the answer is a web page where JSON is expected", u"the answer is a web page where CSV is expected",
       u"the answer is a web page without a table"},
      {"a page that only sends on", "<meta http-equiv=\"refresh\" content=\"0;url=https://login.example\">",
       u"the answer is a web page where JSON is expected", u"the answer is a web page where CSV is expected",
       u"the answer is a web page without a table"},
      {"a frame set", "<html><frameset><frame src=\"a.html\"></frameset></html>",
       u"the answer is a web page where JSON is expected", u"the answer is a web page where CSV is expected",
       u"the answer is a web page without a table"},
      {"a page in another layout",
       "<html><title>Quotes</title><table><tr><th>Day</th><th>Settle</th></tr><tr><td>2026-02-26</"
       "td><td>10.5</td></tr></table></html>",
       u"the answer is a web page, \"Quotes\", where JSON is expected",
       u"the answer is a web page, \"Quotes\", where CSV is expected",
       u"no table has the headings Date, Close; the first row of the first table is \"Day, Settle\""},
      {"a page of a broken server", "<html><title>503 Service Unavailable</title><h1>503</h1></html>",
       u"the answer is a web page, \"503 Service Unavailable\", where JSON is expected",
       u"the answer is a web page, \"503 Service Unavailable\", where CSV is expected",
       u"the answer is a web page, \"503 Service Unavailable\", without a table"},
      {"a table with two columns for the close",
       "<table><tr><th>Date<th>Close<th>Close<tr><td>2026-02-26<td>10.5<td>5.25</table>",
       u"the answer is a web page where JSON is expected", u"the answer is a web page where CSV is expected",
       u"two columns have the heading Close"},
      {"a table of notes",
       "<table><tr><th>Date<th>Close<tr><td colspan=2>2026-02-26: trading halted at 10.5</table>",
       u"the answer is a web page where JSON is expected", u"the answer is a web page where CSV is expected",
       u"none of the rows has a day and a price"},
      {"a table whose numbers have footnotes",
       "<table><tr><th>Date<th>Close<tr><td>2026-02-26<td>10.5<sup>1</sup></table>",
       u"the answer is a web page where JSON is expected", u"the answer is a web page where CSV is expected",
       u"row 2: no number: \"10.5 1\""},
      {"a table with days of another order", "<table><tr><th>Date<th>Close<tr><td>26/02/2026<td>10.5</table>",
       u"the answer is a web page where JSON is expected", u"the answer is a web page where CSV is expected",
       u"row 2: no day: \"26/02/2026\""},
      {"an error about a limit", "{\"Information\":\"25 requests per day\"}", u"source: 25 requests per day",
       u"source: 25 requests per day", u"source: 25 requests per day"},
      {"an error behind a byte order mark", "\xEF\xBB\xBF{\"Information\":\"25 requests per day\"}",
       u"source: 25 requests per day", u"source: 25 requests per day", u"source: 25 requests per day"},
      {"an error in an object",
       "{\"error\":{\"code\":404,\"message\":\"No data found, symbol may be delisted\"}}",
       u"source: No data found, symbol may be delisted", u"source: No data found, symbol may be delisted",
       u"source: No data found, symbol may be delisted"},
      {"an error and prices",
       "{\"error\":{\"message\":\"stale\"},\"values\":[{\"date\":\"2026-02-26\",\"close\":10.5}]}",
       u"source: stale", u"source: stale", u"source: stale"},
      {"an error that nobody named", "{\"status\":\"denied\",\"code\":401}",
       u"the answer has nothing at $.values[*].date: \"{\"status\":\"denied\",\"code\":401}\"",
       u"the answer is JSON where CSV is expected", u"the answer is JSON where a web page is expected"},
      {"an empty object", "{}", u"the answer has nothing at $.values[*].date: \"{}\"",
       u"the answer is JSON where CSV is expected", u"the answer is JSON where a web page is expected"},
      {"an object without its list", "{\"values\":null}",
       u"the answer has nothing at $.values[*].date: \"{\"values\":null}\"",
       u"the answer is JSON where CSV is expected", u"the answer is JSON where a web page is expected"},
      {"a list of nothing", "{\"values\":[null,null]}", u"none of the rows has a day and a price",
       u"the answer is JSON where CSV is expected", u"the answer is JSON where a web page is expected"},
      {"an object instead of a list", "{\"values\":{\"date\":\"2026-02-26\",\"close\":10.5}}",
       u"none of the rows has a day and a price", u"the answer is JSON where CSV is expected",
       u"the answer is JSON where a web page is expected"},
      {"objects instead of values", "{\"values\":[{\"date\":{\"day\":26},\"close\":{\"raw\":10.5}}]}",
       u"the answer holds an object where a value is expected: $.values[*].date",
       u"the answer is JSON where CSV is expected", u"the answer is JSON where a web page is expected"},
      {"lists instead of values", "{\"values\":[{\"date\":[\"2026-02-26\"],\"close\":[10.5]}]}",
       u"the answer holds a list where a value is expected: $.values[*].date",
       u"the answer is JSON where CSV is expected", u"the answer is JSON where a web page is expected"},
      {"other names", "{\"values\":[{\"date\":\"2026-02-26\",\"last\":10.5}]}",
       u"none of the rows has a day and a price", u"the answer is JSON where CSV is expected",
       u"the answer is JSON where a web page is expected"},
      {"JSON cut in a number", "{\"values\":[{\"date\":\"2026-02-26\",\"close\":10.",
       u"the answer is not JSON: Miss fraction part in number. (line 1, column 44)",
       u"the answer is JSON where CSV is expected", u"the answer is JSON where a web page is expected"},
      {"JSON cut between rows", "{\"values\":[{\"date\":\"2026-02-26\",\"close\":10.5},",
       u"the answer is not JSON: Invalid value. (line 1, column 47)",
       u"the answer is JSON where CSV is expected", u"the answer is JSON where a web page is expected"},
      {"JSON with text behind it", "{\"values\":[]}<!-- served in 12 ms -->",
       u"the answer is not JSON: The document root must not be followed by other values. (line 1, column 14)",
       u"the answer is JSON where CSV is expected", u"the answer is JSON where a web page is expected"},
      {"JSON with NaN", "{\"values\":[{\"date\":\"2026-02-26\",\"close\":NaN}]}",
       u"the answer is not JSON: Invalid value. (line 1, column 41)",
       u"the answer is JSON where CSV is expected", u"the answer is JSON where a web page is expected"},
      {"JSON with single quotes", "{'values':[{'date':'2026-02-26','close':10.5}]}",
       u"the answer is not JSON: Missing a name for object member. (line 1, column 2)",
       u"the answer is JSON where CSV is expected", u"the answer is JSON where a web page is expected"},
      {"JSON in Latin-1", "{\"values\":[{\"date\":\"2026-02-26\",\"close\":\"10.5 \xA3\"}]}",
       u"the answer is not JSON: Invalid encoding in string. (line 1, column 47)",
       u"the answer is JSON where CSV is expected", u"the answer is JSON where a web page is expected"},
      {"JSON in a call", "callback({\"values\":[{\"date\":\"2026-02-26\",\"close\":10.5}]});",
       u"the answer is plain text where JSON is expected: "
       u"\"callback({\"values\":[{\"date\":\"2026-02-26\",\"close\":1",
       u"the last quoted field has no end",
       u"the answer is plain text where a web page is expected: "
       u"\"callback({\"values\":[{\"date\":\"2026-02-26\",\"cl"},
      {"the word null", "null", u"the answer is plain text where JSON is expected: \"null\"",
       u"no row has the headings Date, Close; the first row is \"null\"",
       u"the answer is plain text where a web page is expected: \"null\""},
      {"a number", "10.5", u"the answer is plain text where JSON is expected: \"10.5\"",
       u"no row has the headings Date, Close; the first row is \"10.5\"",
       u"the answer is plain text where a web page is expected: \"10.5\""},
      {"a quoted text", "\"Forbidden\"", u"the answer has nothing at $.values[*].date: \"\"Forbidden\"\"",
       u"no row has the headings Date, Close; the first row is \"Forbidden\"",
       u"the answer is plain text where a web page is expected: \"\"Forbidden\"\""},
      {"a plain refusal", "Too many requests. Try again in 60 seconds.",
       u"the answer is plain text where JSON is expected: \"Too many requests. Try again in 60 seconds.\"",
       u"no row has the headings Date, Close; the first row is \"Too many requests. Try again in 60 "
       u"seconds.\"",
       u"the answer is plain text where a web page is expected: \"Too many requests. Try again in 60 "
       u"seconds.\""},
      {"a plain denial", "403 Forbidden\n",
       u"the answer is plain text where JSON is expected: \"403 Forbidden\"",
       u"no row has the headings Date, Close; the first row is \"403 Forbidden\"",
       u"the answer is plain text where a web page is expected: \"403 Forbidden\""},
      {"an XML error", "<?xml version=\"1.0\"?><Error><Code>AccessDenied</Code></Error>",
       u"the answer is an XML document where JSON is expected",
       u"the answer is an XML document where CSV is expected",
       u"the answer is an XML document without a table"},
      {"a compressed answer", "\x1F\x8B\x08\x00\x00\x00"s, u"the answer is compressed (gzip)",
       u"the answer is compressed (gzip)", u"the answer is compressed (gzip)"},
      {"a ZIP archive", "PK\x03\x04prices.csv", u"the answer is a ZIP archive or an office document",
       u"the answer is a ZIP archive or an office document",
       u"the answer is a ZIP archive or an office document"},
      {"a PDF document", "%PDF-1.7 ...", u"the answer is a PDF document", u"the answer is a PDF document",
       u"the answer is a PDF document"},
      {"a picture", "\x89PNG\r\n\x1A\n\x00\x00\x00\rIHDR"s, u"the answer holds bytes that are no text",
       u"the answer holds bytes that are no text", u"the answer holds bytes that are no text"},
      {"a text in UTF-16",
       "\xFF\xFE"
       "D\x00"
       "a\x00"s,
       u"the answer is a text in UTF-16, not in UTF-8", u"the answer is a text in UTF-16, not in UTF-8",
       u"the answer is a text in UTF-16, not in UTF-8"},
      {"CSV with other headings", "Day,Settle\n2026-02-26,10.5\n",
       u"the answer is plain text where JSON is expected: \"Day,Settle 2026-02-26,10.5\"",
       u"no row has the headings Date, Close; the first row is \"Day, Settle\"",
       u"the answer is plain text where a web page is expected: \"Day,Settle 2026-02-26,10.5\""},
      {"CSV with another separator", "Date;Close\n2026-02-26;10,5\n",
       u"the answer is plain text where JSON is expected: \"Date;Close 2026-02-26;10,5\"",
       u"no row has the headings Date, Close; the first row is \"Date;Close\"",
       u"the answer is plain text where a web page is expected: \"Date;Close 2026-02-26;10,5\""},
      {"CSV with two columns for the close", "Date,Close,Close\n2026-02-26,10.5,5.25\n",
       u"the answer is plain text where JSON is expected: \"Date,Close,Close 2026-02-26,10.5,5.25\"",
       u"two columns have the heading Close",
       u"the answer is plain text where a web page is expected: \"Date,Close,Close 2026-02-26,10.5,5.25\""},
      {"CSV with an open quote", "Date,Close\n2026-02-26,\"10.5\n2026-02-27,10.6\n",
       u"the answer is plain text where JSON is expected: \"Date,Close 2026-02-26,\"10.5 2026-02-27,10.6\"",
       u"the last quoted field has no end",
       u"the answer is plain text where a web page is expected: \"Date,Close 2026-02-26,\"10.5 "
       u"2026-02-27,10.6\""},
      {"CSV whose commas split its numbers", "Date,Close\n2026-02-26,1,234.50\n",
       u"the answer is plain text where JSON is expected: \"Date,Close 2026-02-26,1,234.50\"",
       u"none of the rows has a day and a price",
       u"the answer is plain text where a web page is expected: \"Date,Close 2026-02-26,1,234.50\""},
      {"CSV with days of another order", "Date,Close\n26/02/2026,10.5\n",
       u"the answer is plain text where JSON is expected: \"Date,Close 26/02/2026,10.5\"",
       u"row 2: no day: \"26/02/2026\"",
       u"the answer is plain text where a web page is expected: \"Date,Close 26/02/2026,10.5\""},
      {"CSV with words for prices", "Date,Close\n2026-02-26,N/A\n2026-02-27,-\n",
       u"the answer is plain text where JSON is expected: \"Date,Close 2026-02-26,N/A 2026-02-27,-\"",
       u"none of the rows has a day and a price",
       u"the answer is plain text where a web page is expected: \"Date,Close 2026-02-26,N/A 2026-02-27,-\""},
      {"CSV with prices of 0", "Date,Close\n2026-02-26,0.00\n",
       u"the answer is plain text where JSON is expected: \"Date,Close 2026-02-26,0.00\"",
       u"none of the rows has a day and a price",
       u"the answer is plain text where a web page is expected: \"Date,Close 2026-02-26,0.00\""},
      {"CSV with a price below 0", "Date,Close\n2026-02-26,-10.5\n",
       u"the answer is plain text where JSON is expected: \"Date,Close 2026-02-26,-10.5\"",
       u"row 2: a price below zero: \"-10.5\"",
       u"the answer is plain text where a web page is expected: \"Date,Close 2026-02-26,-10.5\""},
      {"CSV with two points in a number", "Date,Close\n2026-02-26,1.234.50\n",
       u"the answer is plain text where JSON is expected: \"Date,Close 2026-02-26,1.234.50\"",
       u"row 2: no number: \"1.234.50\"",
       u"the answer is plain text where a web page is expected: \"Date,Close 2026-02-26,1.234.50\""},
      {"CSV with an endless number", "Date,Close\n2026-02-26,1e999\n",
       u"the answer is plain text where JSON is expected: \"Date,Close 2026-02-26,1e999\"",
       u"row 2: no number: \"1e999\"",
       u"the answer is plain text where a web page is expected: \"Date,Close 2026-02-26,1e999\""},
      {"CSV of the year 2962", "Date,Close\n2962-02-26,10.5\n",
       u"the answer is plain text where JSON is expected: \"Date,Close 2962-02-26,10.5\"",
       u"none of the rows has a day and a price",
       u"the answer is plain text where a web page is expected: \"Date,Close 2962-02-26,10.5\""},
      {"CSV of the 30th of February", "Date,Close\n2026-02-30,10.5\n",
       u"the answer is plain text where JSON is expected: \"Date,Close 2026-02-30,10.5\"",
       u"row 2: no day: \"2026-02-30\"",
       u"the answer is plain text where a web page is expected: \"Date,Close 2026-02-30,10.5\""},
      {"a log", "2026-02-26 10:31:07 ERROR upstream timed out\n2026-02-26 10:31:08 ERROR again\n",
       u"the answer is plain text where JSON is expected: \"2026-02-26 10:31:07 ERROR upstream timed out "
       u"2026-",
       u"no row has the headings Date, Close; the first row is \"2026-02-26 10:31:07 ERROR upstream timed "
       u"out\"",
       u"the answer is plain text where a web page is expected: \"2026-02-26 10:31:07 ERROR upstream timed "
       u"out"},
      {"a depth bomb", std::string(1'000'000, '['),
       u"the answer is not JSON: Invalid value. (line 1, column 1000001)",
       u"the answer is JSON where CSV is expected", u"the answer is JSON where a web page is expected"},
      {"a million keys", millionKeys(), u"empty", u"the answer is JSON where CSV is expected",
       u"the answer is JSON where a web page is expected"},
      {"a text of 10 MB", "{\"values\":[{\"date\":\"" + std::string(TEN_MB, '9') + "\",\"close\":1}]}",
       u"row 1: no day: "
       u"\"999999999999999999999999999999999999999999999999999999999999999999999999999999999999",
       u"the answer is JSON where CSV is expected", u"the answer is JSON where a web page is expected"},
      {"a line of 10 MB", "Date,Close\n2026-02-26,\"" + std::string(TEN_MB, '9') + "x\"\n",
       u"the answer is plain text where JSON is expected: \"Date,Close "
       u"2026-02-26,\"999999999999999999999999999",
       u"row 2: no number: "
       u"\"999999999999999999999999999999999999999999999999999999999999999999999999999999999",
       u"the answer is plain text where a web page is expected: \"Date,Close "
       u"2026-02-26,\"999999999999999999999"},
  };
  return answers;
}

/// Returns the same page for every request.
class OneAnswerClient : public HTTPClient {
public:
  void goOnline() override {}
  HTTPAnswer get(const URL&, const HTTPHeaders&, const std::stop_token&) override {
    HTTPAnswer answer;
    answer.status = 200;
    answer.body.assign(bytes.begin(), bytes.end());
    return answer;
  }
  void setBodyLimit(std::size_t) override {}

  std::string bytes;
};

class CountedBadAnswers : public testing::Test {
protected:
  static AnswerFormat formatOf(AnswerReader reader, const char16_t* date, const char16_t* close) {
    AnswerFormat format;
    format.reader = reader;
    format.columns = {{AnswerColumn::Date, date}, {AnswerColumn::Close, close}};
    format.errorPaths = {u"$.Information", u"$.error.message"};
    return format;
  }

  /// What the reader says; "taken" if it takes a price, "empty" if it says nothing.
  static String outcome(const std::string& bytes, const AnswerFormat& format) {
    try {
      return readHistory(bytes, format).prices.empty() ? u"empty" : u"taken";
    } catch (const AnswerException& failure) {
      return (failure.fault() == AnswerException::Fault::SourceError ? u"source: " : u"") + failure.message();
    }
  }

  static bool isSaid(const String& outcome, const String& expected) {
    constexpr std::size_t LONGEST = 1000;
    return !expected.empty() && outcome.startsWith(expected) && outcome.size() < LONGEST;
  }

  TestProfile m_profile;
};

TEST_F(CountedBadAnswers, EachReaderNamesTheCauseAndTakesNothing) {
  const AnswerFormat json = formatOf(AnswerReader::Json, u"$.values[*].date", u"$.values[*].close");
  const AnswerFormat csv = formatOf(AnswerReader::Csv, u"Date", u"Close");
  const AnswerFormat table = formatOf(AnswerReader::Headings, u"Date", u"Close");
  unsigned wrong = 0;
  const auto check = [&wrong](const BadAnswer& answer, const AnswerFormat& format, const String& expected) {
    const String said = outcome(answer.bytes, format);
    wrong += isSaid(said, expected) ? 0 : 1;
    EXPECT_TRUE(isSaid(said, expected))
        << answer.name << ": " << said.toUTF8() << "\n  instead of " << expected.toUTF8();
  };
  for (const BadAnswer& answer : badAnswers()) {
    check(answer, json, answer.json);
    check(answer, csv, answer.csv);
    check(answer, table, answer.table);
  }
  EXPECT_GE(badAnswers().size(), 40u);
  std::printf("COUNT: answers that are no prices: %zu, each by the readers of JSON, CSV and tables, %u not "
              "refused as expected\n",
              badAnswers().size(), wrong);
}

TEST_F(CountedBadAnswers, NoWalkFindsAPriceInThem) {
  const auto client = std::make_shared<OneAnswerClient>();
  const LocatorSet locators(String::fromUTF8(TALLYMOOR_SAMPLES "/../assets/defaults/Config/"));
  const DataSource source(client, locators);
  unsigned taken = 0;
  for (const BadAnswer& answer : badAnswers()) {
    client->bytes = answer.bytes;
    bool isTaken = true;
    try {
      source.history(u"ABC", {Date(2024, 1, 1), Date(2026, 1, 1)});
    } catch (const Exception& failure) {
      isTaken = false;
      EXPECT_FALSE(failure.message().empty());
    }
    taken += isTaken ? 1 : 0;
    EXPECT_FALSE(isTaken) << answer.name;
  }
  std::printf("COUNT: answers that are no prices: %zu by the walk of the locator documents, %u taken\n",
              badAnswers().size(), taken);
}

} // namespace
} // namespace Tallymoor
