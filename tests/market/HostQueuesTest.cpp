#include "market/HostQueues.h"
#include "market/CurlHTTPClient.h"
#include "market/PoliteHTTPClient.h"
#include "market/RetryAfter.h"
#include "market/URL.h"
#include "support/StringPrinting.h"
#include "support/TestHttpServer.h"
#include <atomic>
#include <future>
#include <gtest/gtest.h>
#include <set>

namespace Tallymoor {
namespace {

using Response = TestHttpServer::Response;
using std::chrono::seconds;

HTTPAnswer answerWith(unsigned status, const HTTPHeaders& headers = {}) {
  return {status, "", headers, {}};
}

/// Real servers, and a clock that only the test moves.
class HostQueuesTest : public ::testing::Test {
protected:
  HostQueuesTest() {
    m_client.goOnline();
    m_server.route("/", {200, "x"});
    m_other.route("/", {200, "y"});
  }

  static URL url(const TestHttpServer& server, const std::string& path = "/") {
    return URL(String(server.url(path).c_str()));
  }
  static String hostOf(const TestHttpServer& server) {
    return u"127.0.0.1:" + String::fromLong(server.port());
  }
  unsigned get(const TestHttpServer& server, const std::string& path = "/") {
    return m_client.get(url(server, path), {}).status;
  }
  /// Empty if the server was asked.
  String restOf(const TestHttpServer& server) {
    try {
      get(server);
    } catch (const HostResting& resting) {
      m_code = resting.code();
      return resting.reason();
    }
    return {};
  }
  void pass(seconds time) {
    m_now = m_now.load() + time;
    m_queues->timeChanged();
  }
  /// Fetches on as many threads.
  std::vector<std::future<unsigned>> getAtOnce(int count, const std::stop_token& stop = {}) {
    std::vector<std::future<unsigned>> answers;
    for (int i = 0; i < count; ++i)
      answers.push_back(std::async(std::launch::async, [this, i, stop] {
        try {
          return m_client.get(url(m_server, "/" + std::to_string(i)), {}, stop).status;
        } catch (const HTTPException&) {
          return 0u;
        }
      }));
    return answers;
  }

  TestHttpServer m_server;
  TestHttpServer m_other;
  std::atomic<HostQueues::Time::duration> m_now{std::chrono::hours(1000)};
  std::shared_ptr<HostQueues> m_queues =
      std::make_shared<HostQueues>([this] { return HostQueues::Time(m_now); });
  PoliteHTTPClient m_client{std::make_unique<CurlHTTPClient>(), m_queues};
  unsigned m_code = 0;
};

TEST_F(HostQueuesTest, AHostGetsItsNumberOfRequestsAtOnceAndOthersGoOn) {
  m_queues->setLimits(hostOf(m_server), {3, 0});
  std::atomic<int> atOnce = 0;
  std::atomic<int> most = 0;
  m_server.setFallback([&](const TestHttpServer::Request&) {
    most = std::max<int>(most, ++atOnce);
    --atOnce;
    return Response{200, "x"};
  });
  m_server.stall();
  auto answers = getAtOnce(8);
  ASSERT_TRUE(m_server.waitForRequests(3));
  EXPECT_EQ(get(m_other), 200u) << "while those wait";
  EXPECT_EQ(m_server.requests().size(), 3u);
  m_server.release();
  for (auto& answer : answers)
    EXPECT_EQ(answer.get(), 200u);
  EXPECT_LE(most, 3);
}

TEST_F(HostQueuesTest, ConnectionsAreUsedAgain) {
  m_queues->setLimits(hostOf(m_server), {3, 0});
  m_server.setFallback([](const TestHttpServer::Request&) { return Response{200, "x"}; });
  for (auto& answer : getAtOnce(30))
    EXPECT_EQ(answer.get(), 200u);
  std::set<int> connections;
  for (const auto& request : m_server.requests())
    connections.insert(request.clientPort);
  EXPECT_LE(connections.size(), 3u);
}

TEST_F(HostQueuesTest, AStopEndsTheWaitAndCountsForNothing) {
  m_queues->setLimits(hostOf(m_server), {1, 0});
  m_server.stall();
  std::stop_source stop;
  auto answers = getAtOnce(7, stop.get_token());
  ASSERT_TRUE(m_server.waitForRequests(1));
  stop.request_stop();
  for (auto& answer : answers)
    EXPECT_EQ(answer.get(), 0u);
  m_server.release();
  EXPECT_EQ(m_server.requests().size(), 1u);
  EXPECT_EQ(restOf(m_server), String());
}

TEST_F(HostQueuesTest, AHostGetsItsNumberOfRequestsAMinute) {
  m_queues->setLimits(hostOf(m_server), {5, 2});
  m_server.setFallback([](const TestHttpServer::Request&) { return Response{200, "x"}; });
  auto answers = getAtOnce(5);
  for (const std::size_t sent : {2u, 4u}) {
    ASSERT_TRUE(m_server.waitForRequests(sent));
    pass(seconds(59));
    EXPECT_EQ(get(m_other), 200u);
    EXPECT_EQ(m_server.requests().size(), sent);
    pass(seconds(1));
  }
  for (auto& answer : answers)
    EXPECT_EQ(answer.get(), 200u);
}

TEST_F(HostQueuesTest, AHostThatAsksForARestGetsIt) {
  Response busy{429, "slow down"};
  busy.headers = {{"Retry-After", "120"}};
  m_server.route("/busy", busy);
  EXPECT_EQ(get(m_server, "/busy"), 429u);
  EXPECT_EQ(restOf(m_server),
            hostOf(m_server) + u" is not asked for 120 s, since it answered with status 429");
  EXPECT_EQ(m_code, 429u);
  EXPECT_EQ(get(m_other), 200u);
  m_queues->forgetFailures();
  pass(seconds(119));
  EXPECT_EQ(restOf(m_server), hostOf(m_server) + u" is not asked for 1 s, since it answered with status 429")
      << "also when the user wants another try";
  EXPECT_EQ(m_server.requests().size(), 1u);
  pass(seconds(1));
  EXPECT_EQ(restOf(m_server), String());
}

TEST_F(HostQueuesTest, ARestIsAMinuteUnlessTheHostSaysOtherwiseAndADayAtMost) {
  for (const auto& [retryAfter, rest] :
       {std::pair("", "60"), std::pair("soon", "60"), std::pair("0", ""), std::pair("100000", "86400")}) {
    Response busy{429, "slow down"};
    if (*retryAfter)
      busy.headers = {{"Retry-After", retryAfter}};
    m_server.route("/busy", busy);
    EXPECT_EQ(get(m_server, "/busy"), 429u);
    if (*rest)
      EXPECT_TRUE(restOf(m_server).contains(String(u"for ") + String(rest) + u" s,")) << retryAfter;
    else
      EXPECT_EQ(restOf(m_server), String());
    pass(std::chrono::hours(24));
  }
  Response closed{503, ""};
  closed.headers = {{"Retry-After", "30"}};
  m_server.route("/closed", closed);
  EXPECT_EQ(get(m_server, "/closed"), 503u);
  EXPECT_TRUE(restOf(m_server).contains(u"for 30 s, since it answered with status 503"));
}

TEST_F(HostQueuesTest, AfterFiveFailuresInARowAHostRestsForAMinute) {
  m_server.route("/broken", {500, "x"});
  const auto fail = [this](int times) {
    for (int i = 0; i < times; ++i)
      EXPECT_EQ(get(m_server, "/broken"), 500u);
  };
  fail(4);
  EXPECT_EQ(get(m_server), 200u) << "an answer in between";
  fail(4);
  EXPECT_EQ(get(m_server, "/missing"), 404u) << "is an answer";
  fail(5);
  EXPECT_EQ(restOf(m_server),
            hostOf(m_server) + u" is not asked for 60 s, since it answered with status 500");
  EXPECT_EQ(m_code, 0u);
  EXPECT_EQ(get(m_other), 200u);
  pass(seconds(60));
  fail(1);
  EXPECT_NE(restOf(m_server), String()) << "one more is enough";
  m_queues->forgetFailures();
  EXPECT_EQ(restOf(m_server), String()) << "the user wants another try";
}

TEST_F(HostQueuesTest, AHostThatCannotBeReachedRestsWithTheReason) {
  m_server.stop();
  for (int i = 0; i < 5; ++i)
    EXPECT_THROW(get(m_server), TransferFailure);
  const String reason = restOf(m_server);
  EXPECT_TRUE(reason.contains(u"is not asked for 60 s, since ")) << reason.toUTF8();
  EXPECT_FALSE(reason.contains(u"Win32HTTPClient")) << reason.toUTF8();
}

TEST_F(HostQueuesTest, AfterARestASingleRequestTriesTheHost) {
  m_server.route("/broken", {500, "x"});
  for (int i = 0; i < 5; ++i)
    get(m_server, "/broken");
  pass(seconds(60));
  m_server.setFallback([](const TestHttpServer::Request&) { return Response{200, "x"}; });
  m_server.forgetRequests();
  m_server.stall();
  auto answers = getAtOnce(4);
  ASSERT_TRUE(m_server.waitForRequests(1));
  EXPECT_EQ(get(m_other), 200u);
  EXPECT_EQ(m_server.requests().size(), 1u);
  m_server.release();
  for (auto& answer : answers)
    EXPECT_EQ(answer.get(), 200u);
}

TEST(HostQueues, AServiceOnThisMachineMayBeAskedMoreOftenThanOthers) {
  HostQueues queues;
  const auto beginsAtOnce = [&queues](const String& host) {
    std::stop_source stop;
    stop.request_stop();
    std::size_t begun = 0;
    std::deque<std::unique_ptr<HostQueues::Turn>> turns;
    // One that would have to wait is refused at once by the stop.
    const auto begin = [&] {
      turns.push_back(std::unique_ptr<HostQueues::Turn>(
          new HostQueues::Turn(queues.waitForTurn(host, stop.get_token()))));
    };
    try {
      for (; begun < 100; ++begun)
        begin();
    } catch (const HTTPException&) {
    }
    return begun;
  };
  EXPECT_EQ(beginsAtOnce(u"127.0.0.1:8317"), HostQueues::AT_ONCE_HERE);
  EXPECT_EQ(beginsAtOnce(u"localhost:80"), HostQueues::AT_ONCE_HERE);
  EXPECT_EQ(beginsAtOnce(u"prices.example:80"), HostQueues::AT_ONCE_ELSEWHERE);
}

TEST(RetryAfter, IsReadAsSecondsOrAsAMoment) {
  EXPECT_EQ(retryAfter(answerWith(429)), std::nullopt);
  for (const char* const text : {"", "soon", "-5", "1.5", "12 s", "99999999999999999999"})
    EXPECT_EQ(retryAfter(answerWith(429, {{"Retry-After", text}})), std::nullopt) << text;
  EXPECT_EQ(retryAfter(answerWith(429, {{"Retry-After", "0"}})), seconds(0));
  EXPECT_EQ(retryAfter(answerWith(429, {{"retry-after", "3600"}})), seconds(3600));
  const std::pair<std::string, std::string> date("Date", "Sun, 22 Nov 2026 10:00:00 GMT");
  EXPECT_EQ(retryAfter(answerWith(503, {date, {"Retry-After", "Sun, 22 Nov 2026 10:02:05 GMT"}})),
            seconds(125));
  EXPECT_EQ(retryAfter(answerWith(503, {date, {"Retry-After", "Sun, 22 Nov 2026 09:00:00 GMT"}})),
            seconds(0));
}

} // namespace
} // namespace Tallymoor
