#include "WorkbenchTest.h"
#include "market/CurlHTTPClient.h"
#include "support/TestHttpServer.h"
#include <filesystem>

namespace Tallymoor {
namespace {

const char* const PAGE = "<html><body><b>3.42</b></body></html>";

class FetchTest : public WorkbenchTest {
protected:
  Result check(std::vector<std::string> more = {}) const {
    std::vector<std::string> arguments{
        "check", quoteDocument(in("body") + in("b"), " format=\"Float\"", m_server.url("/quote?s=")),
        "--code", "A&B.AX"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return run(arguments);
  }
  const std::string m_target = "/quote?s=A%26B.AX";
  TestHttpServer m_server;
};

TEST_F(FetchTest, FetchesThePageOfACode) {
  m_server.route(m_target, {.body = PAGE});
  const Result result = check();
  EXPECT_EQ(result.status, 0) << result.out << result.errors;
  EXPECT_TRUE(
      result.says("Address: " + m_server.url(m_target) + "\nPage: the page, 37 characters, 3 tags\n"));
  EXPECT_TRUE(result.says("The price: \"3.42\" reads as 3.4200\n"));
}

TEST_F(FetchTest, KeepsThePageInANewFile) {
  m_server.route(m_target, {.body = "<html><body><b>3.42</b>caf\xE9</body></html>"});
  const std::string file = m_profile.folder() + "/kept.html";
  const Result result = check({"--save", file});
  EXPECT_EQ(result.status, 0);
  EXPECT_TRUE(result.says("Saved: " + file + "\n"));
  EXPECT_EQ(readTestFile(file), "<html><body><b>3.42</b>caf\xC3\xA9</body></html>") << "as UTF-8";
  const Result again = check({"--save", file});
  EXPECT_EQ(again.status, 2) << "what is there is not written over";
  EXPECT_TRUE(again.complains("can't save to " + file + ": File exists"));
}

TEST_F(FetchTest, AFailingWalkLeadsOnToTheSavedPage) {
  m_server.route(m_target, {.body = "<html><body><i>3.42</i></body></html>"});
  const Result unsaved = check();
  EXPECT_EQ(unsaved.status, 1);
  EXPECT_TRUE(unsaved.says("run this again with --save FILE.\n")) << unsaved.out;
  const std::string file = m_profile.folder() + "/kept.html";
  EXPECT_TRUE(check({"--save", file}).says("tallymoor-locator find " + file + " VALUE"));
}

TEST_F(FetchTest, ASearchThatFindsNothingMayHaveNothingToFind) {
  m_server.setFallback([](const TestHttpServer::Request&) {
    return TestHttpServer::Response{.body = "<html><p>Nothing matches</p></html>"};
  });
  std::string document = readTestFile(testData("search-table.xml"));
  const std::string address = "http://prices.karrabin.example";
  document.replace(document.find(address), address.size(), m_server.url(""));
  const Result result = run({"check", write("s.xml", document), "--code", "zzz"});
  EXPECT_EQ(result.status, 1);
  EXPECT_TRUE(result.says("If the source says that nothing matches, try another text first.")) << result.out;
}

TEST_F(FetchTest, ARefusalIsTold) {
  const Result result = check();
  EXPECT_EQ(result.status, 1);
  EXPECT_TRUE(result.complains("The page can't be fetched: the server refused with status 404."))
      << result.errors;
}

TEST_F(FetchTest, AnAnswerOverTenMegabytesIsRefused) {
  m_server.route(m_target, {.body = std::string(10 * 1024 * 1024 + 1, ' ')});
  const Result result = check({"--save", m_profile.folder() + "/kept.html"});
  EXPECT_EQ(result.status, 1);
  EXPECT_TRUE(result.complains("the answer is larger than 10 MB, the program's limit")) << result.errors;
  EXPECT_FALSE(std::filesystem::exists(m_profile.folder() + "/kept.html"));
}

TEST_F(FetchTest, ARedirectionToAnotherProtocolIsRefused) {
  const std::string secret = write("secret.html", PAGE);
  for (const std::string& location : {std::string("ftp://127.0.0.1/x"), "file://" + secret}) {
    m_server.redirect(m_target, location);
    const Result result = check();
    EXPECT_EQ(result.status, 1);
    EXPECT_TRUE(result.complains("only http and https are supported, also after a redirection"))
        << result.errors;
    EXPECT_FALSE(result.says("3.42"));
  }
}

TEST_F(FetchTest, AnAddressOfAnotherProtocolIsRefused) {
  const auto fetch = [this](const std::string& address) {
    return run({"check", quoteDocument(in("body") + in("b"), " format=\"Float\"", address), "--code", "X"});
  };
  const std::string secret = write("secret.html", PAGE);
  for (const std::string& address : {"file://localhost" + secret, std::string("ftp://127.0.0.1/")}) {
    const Result result = fetch(address);
    EXPECT_EQ(result.status, 1);
    EXPECT_TRUE(result.complains("but only http and https are supported")) << result.errors;
    EXPECT_FALSE(result.says("3.42"));
  }
  EXPECT_TRUE(fetch("file://" + secret).complains("The parts of the address name no host"));
}

TEST_F(FetchTest, ASilentServerIsGivenUp) {
  m_makeClient = [] { return std::make_unique<CurlHTTPClient>(1000, 1000, 1000); };
  m_server.route(m_target, {.body = PAGE});
  m_server.stall();
  const Result result = check();
  EXPECT_EQ(result.status, 1);
  EXPECT_TRUE(result.complains("The page can't be fetched: Timeout was reached.")) << result.errors;
}

TEST_F(FetchTest, AServerThatIsNotThereIsTold) {
  m_server.stop();
  const Result result = check();
  EXPECT_EQ(result.status, 1);
  EXPECT_TRUE(result.complains("The page can't be fetched: Couldn't connect to server.")) << result.errors;
  EXPECT_TRUE(result.complains("(Win32HTTPClient::sendHTTPRequest - HttpSendRequestEx 7)"));
}

/// A machine without a network.
class NoNetwork : public CurlHTTPClient {
  int attemptConnect() const override { return 100; }
};

TEST_F(FetchTest, NoNetworkIsTold) {
  m_makeClient = [] { return std::make_unique<NoNetwork>(); };
  const Result result = check();
  EXPECT_EQ(result.status, 1);
  EXPECT_TRUE(result.complains("The page can't be fetched: there is no network.")) << result.errors;
}

} // namespace
} // namespace Tallymoor
