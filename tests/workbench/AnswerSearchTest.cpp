#include "WorkbenchTest.h"

namespace Tallymoor {
namespace {

class AnswerSearchTest : public WorkbenchTest {
protected:
  std::string json() const {
    return write("a.json", R"json({"meta":{"x":10.5},"values":[{"d":"2026-02-26","FX":{"v":"10.5"}},
                                   {"d":"2026-02-27","FX":{"v":"10.6"}}]})json");
  }
  std::string csv() const {
    return write("a.csv", "Prices\nDate;Open;Close\n2026-02-26;10.4;10.5\n2026-02-27;10.5;10.6\n");
  }
};

TEST_F(AnswerSearchTest, FindsATextOfJson) {
  const Result result = run({"find", json(), "10.5"});
  EXPECT_EQ(result.status, 0) << result.errors;
  EXPECT_TRUE(result.says("1. $.meta.x: \"10.5\"\n    column of all rows: at=\"$.meta.x\"\n"
                          "2. $.values[0].FX.v: \"10.5\"\n    column of all rows: at=\"$.values[*].FX.v\"\n"))
      << result.out;
  const Result keyed = run({"find", write("k.json", R"json({"t":{"2026-02-26":{"c":1.25}}})json"), "1.25"});
  EXPECT_TRUE(keyed.says("1. $.t.2026-02-26.c: \"1.25\"\n    column of all rows: at=\"$.t.*.c\"\n"))
      << keyed.out;
}

TEST_F(AnswerSearchTest, FindsATextOfCsv) {
  const Result result = run({"find", csv(), "10.5"});
  EXPECT_TRUE(result.says("1. row 3, field 3: \"10.5\"\n    column of all rows: at=\"Close\"\n"
                          "2. row 4, field 2: \"10.5\"\n    column of all rows: at=\"Open\"\n"))
      << result.out;
}

TEST_F(AnswerSearchTest, SaysWhatIsMissing) {
  const Result missing = run({"find", json(), "11"});
  EXPECT_EQ(missing.status, 1);
  EXPECT_TRUE(missing.says("The answer does not contain the text \"11\".\n"));
  EXPECT_EQ(run({"find", json(), " "}).status, 2);
  const Result table = run({"table", json(), "2026-02-26", "10.6"});
  EXPECT_EQ(table.status, 1);
  EXPECT_TRUE(table.says("No row of the answer has all these texts.\n")) << table.out;
  EXPECT_TRUE(run({"table", json(), "1", "2", "3", "4"}).complains("the columns of the texts are unknown"));
  EXPECT_TRUE(run({"find", write("b.json", "{broken"), "x"}).complains("the answer is not JSON"));
}

TEST_F(AnswerSearchTest, WritesTheColumnsOfARow) {
  const Result fromJson = run({"table", json(), "2026-02-26", "10.5"});
  EXPECT_EQ(fromJson.status, 0) << fromJson.errors;
  EXPECT_TRUE(fromJson.says("This reads 2 rows; the example is row 1.\n\n"
                            "    <Column type=\"Date\" at=\"$.values[*].d\"/>\n"
                            "    <Column type=\"Close\" at=\"$.values[*].FX.v\"/>\n"))
      << fromJson.out;
  const Result parallel =
      run({"table", write("p.json", R"json({"t":[1641942000,1642028400],"q":[{"c":[1.5,2.5]}]})json"),
           "Close=2.5", "Date=1642028400"});
  EXPECT_TRUE(parallel.says(
      "    <Column type=\"Close\" at=\"$.q[0].c[*]\"/>\n    <Column type=\"Date\" at=\"$.t[*]\"/>\n"))
      << parallel.out;
  const Result keyed =
      run({"table", write("k.json", R"json({"t":{"2026-02-26":{"c":"1.25"}}})json"), "2026-02-26", "1.25"});
  EXPECT_TRUE(keyed.says("at=\"$.t~\"/>\n    <Column type=\"Close\" at=\"$.t.*.c\"/>\n")) << keyed.out;
  const Result fromCsv = run({"table", csv(), "Date=2026-02-27", "Close=10.6"});
  EXPECT_TRUE(fromCsv.says("    <Column type=\"Close\" at=\"Close\"/>\n")) << fromCsv.out;
  EXPECT_TRUE(fromCsv.says("The request needs separator=\";\".\n"));
  const Result headless =
      run({"table", write("h.csv", "20260226,QXZ,10.5\n20260227,QXZ,10.6\n"), "20260227", "10.6"});
  EXPECT_TRUE(headless.says("    <Column type=\"Close\" at=\"3\"/>\n")) << headless.out;
  EXPECT_TRUE(headless.says("The request needs headings=\"no\""));
}

} // namespace
} // namespace Tallymoor
