#include "WorkbenchTest.h"
#include "support/TestHttpServer.h"

namespace Tallymoor {
namespace {

class SourceCheckTest : public WorkbenchTest {
protected:
  std::string document(const std::string& server = "https://prices.example") const {
    return write(
        "Source.xml",
        "<PriceSource name=\"Quartz\"><Serves codes=\"*\" currency=\"AUD\"/>"
        "<Current reader=\"json\" currency=\"AUD\"><Address>" +
            server +
            "/now/{CODE}</Address>"
            "<Column type=\"Close\" at=\"$.price\"/><Error at=\"$.message\"/></Current>"
            "<History reader=\"csv\" currency=\"AUD\"><Address>" +
            server +
            "/eod/{CODE}?from={FROM:yyyy-MM-dd}&amp;to={TO:yyyy-MM-dd}&amp;key={KEY}</Address>"
            "<Header name=\"X-Token\">{KEY}</Header>"
            "<Column type=\"Date\" at=\"Date\"/><Column type=\"Close\" at=\"Close\"/>"
            "<Column type=\"Dividend\" at=\"Div\"/></History>"
            "<Search reader=\"json\"><Address>" +
            server +
            "/find?q={TEXT}</Address>"
            "<Column type=\"Code\" at=\"$[*].code\"/><Column type=\"Name\" at=\"$[*].name\"/></Search>"
            "</PriceSource>");
  }
};

TEST_F(SourceCheckTest, ShowsWhatTheProgramReads) {
  const Result history =
      run({"check", document(), "--page",
           write("a.csv", "Date,Close,Div\n2026-02-26,10.5,0\n2026-02-27,10.6,0.25\nsum,21,\n")});
  EXPECT_EQ(history.status, 0) << history.errors;
  EXPECT_TRUE(history.says(", the price source \"Quartz\"\nChecked: its part \"history\"\n")) << history.out;
  EXPECT_TRUE(history.says("&to=2026-03-03&key=(key)\n")) << history.out;
  EXPECT_TRUE(history.says("Read: 2 days, in AUD; 1 row passed over\n"));
  EXPECT_TRUE(history.says("  2026-02-27  10.6000"));
  EXPECT_TRUE(history.says("  dividend on 2026-02-27: 0.2500\n"));
  EXPECT_TRUE(run({"check", document(), "--part", "current", "--page", write("q.json", "{\"price\":41.51}")})
                  .says("Read: the price 41.5100, in AUD\n"));
  EXPECT_TRUE(run({"check", document(), "--part", "search", "--page",
                   write("s.json", R"json([{"code":"QXZ","name":"Quartz"}])json")})
                  .says("Read: 1 match\n  \"QXZ\", \"Quartz\", \"\"\n"));
}

TEST_F(SourceCheckTest, ShowsTheEndsOfALongTableUnlessAllIsWanted) {
  std::string csv = "Date,Close,Div\n";
  for (int day = 10; day < 20; ++day)
    csv += "2026-01-" + std::to_string(day) + ",1.5,\n";
  const std::string file = write("a.csv", csv);
  const Result ends = run({"check", document(), "--page", file});
  EXPECT_TRUE(ends.says("2026-01-12") && ends.says("  ...\n") && ends.says("2026-01-17"));
  EXPECT_FALSE(ends.says("2026-01-13"));
  EXPECT_TRUE(run({"check", document(), "--page", file, "--all"}).says("2026-01-13"));
}

TEST_F(SourceCheckTest, SaysWhyNothingIsRead) {
  const auto outcome = [&](const char* part, const std::string& answer) {
    const Result result = run({"check", document(), "--part", part, "--page", write("answer", answer)});
    EXPECT_EQ(result.status, 1);
    return result.out.substr(result.out.find("\n\n") + 2);
  };
  EXPECT_EQ(outcome("current", "{\"message\":\"25 requests per day\"}"),
            "REFUSED by the source: 25 requests per day\n");
  EXPECT_EQ(outcome("current", "<html><title>Consent</title></html>"),
            "STOPPED: the answer is a web page, \"Consent\", where JSON is expected\n");
  EXPECT_EQ(outcome("current", "{\"price\":null}"),
            "STOPPED: the answer has nothing at $.price: \"{\"price\":null}\"\n");
  EXPECT_EQ(outcome("history", "Date,Close,Div\n2026-02-26,1.2.3,\n"),
            "STOPPED: row 2: no number: \"1.2.3\"\n");
  EXPECT_EQ(outcome("history", "Date,Close,Div\n").substr(0, 12), "Read: 0 days");
  EXPECT_EQ(outcome("search", "[]"), "Read: 0 matches\n");
}

TEST_F(SourceCheckTest, FetchesWithKeyAndHeaders) {
  TestHttpServer server;
  server.setFallback([](const TestHttpServer::Request& request) {
    const bool isRight = request.target.find("/eod/QXZ?from=2026-02-01&to=2026-03-03&key=K1") == 0 &&
                         request.headers.at("x-token") == "K1";
    return TestHttpServer::Response{.body = isRight ? "Date,Close,Div\n2026-02-26,10.5,\n" : request.target};
  });
  const Result result = run({"check", document(server.url("")), "--code", "QXZ", "--key", "K1", "--save",
                             m_profile.folder() + "/kept"});
  EXPECT_EQ(result.status, 0) << result.out << result.errors;
  EXPECT_EQ(readTestFile(m_profile.folder() + "/kept"), "Date,Close,Div\n2026-02-26,10.5,\n");
  EXPECT_FALSE(result.says("K1"));
  const Result keyless = run({"check", document(server.url("")), "--code", "QXZ"});
  EXPECT_EQ(keyless.status, 2);
  EXPECT_TRUE(keyless.complains("the source needs a key: give yours with --key"));
}

TEST_F(SourceCheckTest, HidesAKeyThatTheAnswerRepeats) {
  bool isRefused = false;
  TestHttpServer server;
  server.setFallback([&isRefused](const TestHttpServer::Request&) {
    return TestHttpServer::Response{.status = isRefused ? 403 : 200,
                                    .body = "the key S3/cret (S3%2Fcret) is not known\n"};
  });
  for (const bool refused : {false, true}) {
    isRefused = refused;
    const Result result = run({"check", document(server.url("")), "--code", "QXZ", "--key", "S3/cret"});
    EXPECT_NE(result.status, 0);
    const std::string shown = result.out + result.errors;
    EXPECT_NE(shown.find("the key (key) ((key)) is not known"), std::string::npos) << shown;
    EXPECT_EQ(shown.find("cret"), std::string::npos) << shown;
  }
}

TEST_F(SourceCheckTest, RefusesWhatIsNoDocumentOfASource) {
  EXPECT_TRUE(run({"check", document()}).says("No answer to test"));
  EXPECT_TRUE(
      run({"check", document(), "--part", "all"}).complains("--part is none of history, current and search"));
  const Result bad =
      run({"check", write("Bad.xml", "<PriceSource name=\"x\"><Serves codes=\"*\"/></PriceSource>")});
  EXPECT_EQ(bad.status, 1);
  EXPECT_TRUE(bad.complains("this document of a price source is invalid.")) << bad.errors;
  EXPECT_TRUE(bad.complains("neither Current nor History"));
}

} // namespace
} // namespace Tallymoor
