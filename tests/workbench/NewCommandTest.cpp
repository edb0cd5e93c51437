#include "WorkbenchTest.h"
#include "market/PriceSource.h"
#include "market/SourceAnswer.h"
#include "support/StringPrinting.h"
#include "support/TestHttpServer.h"
#include <filesystem>

// Each document that the command proposes is read as the program reads it, and used on the same answer.

namespace Tallymoor {
namespace {

class NewCommandTest : public WorkbenchTest {
protected:
  /// What the proposed document reads from the file: "day=close,high,low,volume ...; N passed over".
  std::string readBack(const std::string& file, std::vector<std::string> options = {}) const {
    const std::string document = m_profile.folder() + "/" + std::to_string(++m_number) + ".xml";
    options.insert(options.begin(), {"new", file, "--to", document});
    const Result result = run(options);
    EXPECT_EQ(result.status, 0) << result.out << result.errors;
    if (result.status != 0)
      return {};
    const PriceSource source = PriceSource::fromFile(String(document.c_str()));
    const AnsweredHistory history = readHistory(readTestFile(file), source.history()->format);
    String text;
    for (const auto& [day, value] : history.prices)
      text += day.toString(DATE_DISPLAY_DMY) + u"=" + String::fromDouble(value.close, 2) + u"," +
              String::fromDouble(value.high, 2) + u"," + String::fromDouble(value.low, 2) + u"," +
              String::fromLong(value.volume) + u" ";
    return (text + String::fromLong(static_cast<std::int64_t>(history.passedOver)) + u" passed over")
        .toUTF8();
  }

  Result runWith(const std::string& input, const std::vector<std::string>& arguments, bool isTerminal) const {
    std::ostringstream out;
    std::ostringstream errors;
    std::istringstream in(input);
    const int status = Workbench(out, errors, m_makeClient, &in, isTerminal).run(arguments);
    return {status, out.str(), errors.str()};
  }

  std::string m_epochs = R"json({"t":[1641942000,1642028400],"c":[10.5,10.6]})json";

private:
  mutable int m_number = 0;
};

TEST_F(NewCommandTest, ReadsAGermanPageWithHeadingsInPlainCells) {
  EXPECT_EQ(readBack(testData("prices/german.html")),
            "1/12/2020=1659.25,1661.00,1639.50,1004500 2/12/2020=1665.89,1670.00,1655.05,845 "
            "3/12/2020=665.89,670.00,655.05,12345 1 passed over");
}

TEST_F(NewCommandTest, ReadsAnAmericanPageWithASplitAcrossAndAFoot) {
  EXPECT_EQ(readBack(testData("prices/american.html")),
            "5/8/2022=1007.75,1011.00,1000.25,8700 23/8/2022=1012.25,1020.00,999.50,9001 "
            "24/8/2022=12.50,12.75,12.05,1234500 2 passed over");
}

TEST_F(NewCommandTest, ReadsAHungarianPageWithoutClosingTags) {
  EXPECT_EQ(readBack(testData("prices/hungarian.html")),
            "2/12/2020=671.75,680.00,670.25,845 3/12/2020=10671.75,10700.50,10580.25,12345 1 passed over");
}

TEST_F(NewCommandTest, ReadsCsvAndJsonOfManyShapes) {
  EXPECT_EQ(readBack(write("a.csv", "\xEF\xBB\xBF"
                                    "Datum;Schluss\r\n03.12.2020;1.665,89\r\n")),
            "3/12/2020=1665.89,0.00,0.00,0 0 passed over");
  EXPECT_EQ(readBack(write("b.csv", "20201203\t9.9\t10.2\t9.8\t10.1\t900\n"), {"--close", "5"}),
            "3/12/2020=10.10,10.20,9.80,900 0 passed over");
  EXPECT_EQ(
      readBack(write(
          "c.json", R"json({"Time Series (Daily)":{"2026-02-26":{"1. open":"9.9","4. close":"10.1"}}})json")),
      "26/2/2026=10.10,0.00,0.00,0 0 passed over");
  EXPECT_EQ(readBack(write("d.json", R"json([[1641942000000,10.5],[1642028400000,null]])json"),
                     {"--time-zone", "Australia/Sydney"}),
            "12/1/2022=10.50,0.00,0.00,0 1 passed over");
}

TEST_F(NewCommandTest, WritesNothingWhileAQuestionIsOpen) {
  const Result result = run({"new", testData("prices/open-questions.html")});
  EXPECT_EQ(result.status, 1);
  EXPECT_TRUE(result.says(
      "Question: Which day is \"08/09/2022\"?\n  1. dd/MM/yyyy: 2022-09-08\n  2. MM/dd/yyyy: 2022-08-09\n"
      "  Answer it with --dates \"dd/MM/yyyy\" or another choice, or with --ask.\n"))
      << result.out;
  EXPECT_TRUE(
      result.says("Question: Does \"12,345\" have a decimal point or a decimal comma?\n  1. .: 12345.0000\n  "
                  "2. ,: 12.3450\n"));
  EXPECT_TRUE(result.says("No document is written before these questions are answered"));
  EXPECT_FALSE(result.says("<PriceSource"));
  EXPECT_EQ(readBack(testData("prices/open-questions.html"), {"--dates", "MM/dd/yyyy", "--decimal", ","}),
            "9/7/2022=12.40,0.00,0.00,0 9/8/2022=12.35,0.00,0.00,0 0 passed over")
      << "12.345 rounded";
}

TEST_F(NewCommandTest, AsksInWhichTimeZoneAMomentBecomesADay) {
  const std::string file = write("p.json", m_epochs);
  const Result result = run({"new", file});
  EXPECT_EQ(result.status, 1);
  EXPECT_TRUE(result.says("  1. UTC: 2022-01-11\n")) << result.out;
  EXPECT_TRUE(result.says("  9. Australia/Sydney: 2022-01-12\n"));
  EXPECT_EQ(readBack(file, {"--time-zone", "Australia/Sydney"}),
            "12/1/2022=10.50,0.00,0.00,0 13/1/2022=10.60,0.00,0.00,0 0 passed over");
  EXPECT_EQ(readBack(file, {"--time-zone", "UTC"}),
            "11/1/2022=10.50,0.00,0.00,0 12/1/2022=10.60,0.00,0.00,0 0 passed over");
}

TEST_F(NewCommandTest, AsksOnATerminalOrWhenTold) {
  const std::string file = write("p.json", m_epochs);
  const Result terminal = runWith("11\nNowhere\n9\n", {"new", file}, true);
  EXPECT_EQ(terminal.status, 0) << terminal.out << terminal.errors;
  EXPECT_TRUE(terminal.says("unknown time zone: \"Nowhere\""));
  EXPECT_TRUE(terminal.says("timeZone=\"Australia/Sydney\""));
  EXPECT_TRUE(runWith("Europe/Vienna\n", {"new", file, "--ask"}, false).says("timeZone=\"Europe/Vienna\""));
  EXPECT_EQ(runWith("9\n", {"new", file}, false).status, 1) << "nobody may wait for an answer";
  EXPECT_EQ(runWith("", {"new", file}, true).status, 1) << "the input ended";
}

TEST_F(NewCommandTest, PutsVariablesIntoTheAddressAndHidesTheKey) {
  TestHttpServer server;
  const std::string target = "/eod/QXZ.AX?from=2026-01-05&to=2026-02-28&token=S3cret";
  server.route(target, {.body = "Date,Close\n2026-02-26,10.5\n"});
  const Result result =
      run({"new", server.url(target), "--code", "QXZ.AX", "--key", "S3cret", "--currency", "AUD", "--name",
           "A & B", "--codes", "*.AX", "--save", m_profile.folder() + "/answer.csv"});
  EXPECT_EQ(result.status, 0) << result.out << result.errors;
  EXPECT_TRUE(
      result.says("/eod/{CODE}?from={FROM:yyyy-MM-dd}&#x26;to={TO:yyyy-MM-dd}&#x26;token={KEY}</Address>"))
      << result.out;
  EXPECT_TRUE(result.says("<PriceSource name=\"A &#x26; B\">\n  <Serves codes=\"*.AX\" currency=\"AUD\"/>\n  "
                          "<TryCode>QXZ.AX</TryCode>\n"));
  EXPECT_TRUE(result.says("Read: 1 day, in AUD; 0 rows passed over"));
  EXPECT_FALSE(result.says("S3cret"));
  EXPECT_EQ(readTestFile(m_profile.folder() + "/answer.csv"), "Date,Close\n2026-02-26,10.5\n");
  server.route(target, {.status = 403, .body = "no"});
  const Result refused = run({"new", server.url(target), "--key", "S3cret"});
  EXPECT_EQ(refused.status, 1);
  EXPECT_TRUE(refused.complains("token=(key) can't be fetched: the server answered with status 403: no"))
      << refused.errors;
  EXPECT_FALSE(refused.complains("S3cret"));
}

TEST_F(NewCommandTest, FindsTheCodeWithoutItsMarketAndNotInsideWords) {
  const std::string file = write("a.csv", "Date,Close\n2026-02-26,10.5\n");
  EXPECT_TRUE(
      run({"new", file, "--code", "T.AX", "--address", "https://t.example/Type/T?TO=20260105&x=1641942000"})
          .says("<Address>https://t.example/Type/{CODE:stem}?TO={FROM:yyyyMMdd}&#x26;x={TO:unixtime}</"
                "Address>"));
  EXPECT_TRUE(run({"new", file, "--code", "^AXJO", "--address", "https://t.example/%5EAXJO"})
                  .says("<Address>https://t.example/{CODE}</Address>"));
}

TEST_F(NewCommandTest, ProposesACurrentPrice) {
  const Result result =
      run({"new", write("q.json", R"json({"data":{"priceLast":41.51,"currency":"AUD"}})json")});
  EXPECT_EQ(result.status, 0) << result.errors;
  EXPECT_TRUE(result.says("Read: the price 41.5100, in AUD\n")) << result.out;
  EXPECT_TRUE(result.says("  <Current reader=\"json\">\n"));
}

TEST_F(NewCommandTest, SaysWhyNothingCanBeProposed) {
  const Result page = run({"new", write("x.html", "<html><title>Are you a robot?</title><p>x</p></html>")});
  EXPECT_EQ(page.status, 1);
  EXPECT_TRUE(page.says("No source document can be proposed: the page has no table.\n")) << page.out;
  EXPECT_TRUE(page.says("see tallymoor-locator find"));
  EXPECT_TRUE(run({"new", write("y.txt", "Too many requests")})
                  .says("No source document can be proposed: no row of headings has one for the day.\n"));
  EXPECT_TRUE(run({"new"}).complains("new needs an address or a file"));
  EXPECT_TRUE(run({"new", "a", "b"}).complains("new needs exactly one address or file"));
  EXPECT_TRUE(run({"new", "a", "--bad"}).complains("new has no option --bad"));
  EXPECT_EQ(run({"new", m_profile.folder() + "/none"}).status, 2);
  const Result zone = run({"new", write("p.json", m_epochs), "--time-zone", "Nowhere"});
  EXPECT_EQ(zone.status, 2);
  EXPECT_TRUE(zone.complains("--time-zone: unknown time zone: \"Nowhere\""));
}

} // namespace
} // namespace Tallymoor
