#include "market/CurlHTTPClient.h"
#include "market/CurlTransfer.h"
#include "market/URL.h"
#include "support/LoopbackPeer.h"
#include "support/StringPrinting.h"
#include "support/TestHttpServer.h"
#include <arpa/inet.h>
#include <atomic>
#include <functional>
#include <future>
#include <gtest/gtest.h>
#include <set>
#include <sys/socket.h>
#include <unistd.h>

namespace Tallymoor {
namespace {

using Response = TestHttpServer::Response;
using Bytes = std::vector<std::uint8_t>;

HTTPException failureOf(const std::function<void()>& work) {
  try {
    work();
  } catch (const HTTPException& exception) {
    return exception;
  }
  return HTTPException(u"no failure");
}

/// A failure text followed by the library's error code.
String words(const char16_t* text, int code) {
  return String(u"Win32HTTPClient::") + text + String::fromLong(code);
}

constexpr const char16_t* SEND = u"sendHTTPRequest - HttpSendRequestEx ";
constexpr const char16_t* READ = u"getResponse - InternetReadFile failed ";

class CurlHTTPClientTest : public ::testing::Test {
protected:
  CurlHTTPClientTest() { m_client.goOnline(); }

  URL url(const std::string& path) const { return URL(String(m_server.url(path).c_str())); }

  TestHttpServer m_server;
  CurlHTTPClient m_client{10000, 10000};
};

TEST_F(CurlHTTPClientTest, FetchesAPageAsText) {
  m_server.route("/a/b?c=d", {200, "<html>\xC3\xA9</html>"});
  EXPECT_EQ(m_client.getPage(url("/a/b?c=d")), u"<html>\u00E9</html>");
  m_server.route("/latin", {200, "caf\xE9"});
  EXPECT_EQ(m_client.getPage(url("/latin")), u"caf\u00E9");
  m_server.route("/zero", {200, std::string("a\0b", 3)});
  EXPECT_EQ(m_client.getPage(url("/zero")), u"a") << "text ends at a zero byte";
}

TEST_F(CurlHTTPClientTest, SendsWhatServersExpect) {
  m_server.route("/", {200, "x"});
  m_client.getPage(url("/"));
  Bytes bytes;
  m_client.getPage(url("/"), bytes);
  const auto requests = m_server.requests();
  ASSERT_EQ(requests.size(), 2u);
  EXPECT_EQ(requests[0].method, "GET");
  EXPECT_EQ(requests[0].headers.at("user-agent"), "Tallymoor/1.3.1");
  EXPECT_EQ(requests[0].headers.at("accept"), "text/html");
  EXPECT_EQ(requests[0].headers.at("host"), "127.0.0.1:" + std::to_string(m_server.port()));
  EXPECT_EQ(requests[1].headers.at("accept"), "*/*");
}

TEST_F(CurlHTTPClientTest, FetchesBytesAsTheyAre) {
  const std::string body("\x00\xFF\r\n\x80", 5);
  m_server.route("/b", {200, body, "application/octet-stream"});
  Bytes bytes{1, 2, 3};
  m_client.getPage(url("/b"), bytes);
  EXPECT_EQ(std::string(bytes.begin(), bytes.end()), body);
}

TEST_F(CurlHTTPClientTest, AnEmptyBodyIsAnEmptyText) {
  m_server.route("/empty", {200, ""});
  EXPECT_EQ(m_client.getPage(url("/empty")), u"");
  Bytes bytes{1};
  m_client.getPage(url("/empty"), bytes);
  EXPECT_TRUE(bytes.empty());
}

TEST_F(CurlHTTPClientTest, RefusalsHaveTheStatusAsCodeAndInTheText) {
  const HTTPException missing = failureOf([&] { m_client.getPage(url("/missing")); });
  EXPECT_EQ(missing.code(), 404u);
  EXPECT_EQ(missing.message(),
            u"Win32HTTPClient::getResponse - HTTP GET failed \nwith code: 404 and status: Not Found");
  m_server.route("/broken", {500, "x"});
  EXPECT_EQ(failureOf([&] { m_client.getPage(url("/broken")); }).code(), 500u);
  m_server.route("/made", {201, "x"});
  EXPECT_EQ(failureOf([&] { m_client.getPage(url("/made")); }).code(), 201u) << "only 200 will do";
}

TEST_F(CurlHTTPClientTest, AStatusWithoutWordsIsShownAlone) {
  LoopbackPeer peer([](LoopbackPeer::Connection& connection) {
    connection.readHead();
    connection.write("HTTP/1.1 503\r\nContent-Length: 0\r\n\r\n");
  });
  const HTTPException failure = failureOf([&] { m_client.getPage(URL(peer.address())); });
  EXPECT_EQ(failure.message(), u"Win32HTTPClient::getResponse - HTTP GET failed \nwith code: 503");
  EXPECT_EQ(failure.code(), 503u);
}

TEST_F(CurlHTTPClientTest, KeepsOneConnectionPerHostAndPort) {
  m_server.route("/", {200, "x"});
  for (int i = 0; i < 5; ++i)
    m_client.getPage(url("/"));
  failureOf([&] { m_client.getPage(url("/missing")); });
  Bytes bytes;
  m_client.getPage(url("/"), bytes);
  std::set<int> connections;
  for (const TestHttpServer::Request& request : m_server.requests())
    connections.insert(request.clientPort);
  EXPECT_EQ(m_server.requests().size(), 7u);
  EXPECT_EQ(connections.size(), 1u);
}

/// Runs the work on several threads and passes each its number.
std::vector<std::future<String>> onThreads(int count, const std::function<String(int)>& work) {
  std::vector<std::future<String>> results;
  for (int i = 0; i < count; ++i)
    results.push_back(std::async(std::launch::async, work, i));
  return results;
}

TEST_F(CurlHTTPClientTest, FetchesOnSeveralThreadsAtOnce) {
  constexpr int THREADS = 5;
  m_server.setFallback([](const TestHttpServer::Request& request) { return Response{200, request.target}; });
  m_server.stall();
  auto pages = onThreads(THREADS, [this](int i) { return m_client.getPage(url("/" + std::to_string(i))); });
  EXPECT_TRUE(m_server.waitForRequests(THREADS)) << "none waits for another";
  m_server.release();
  for (int i = 0; i < THREADS; ++i)
    EXPECT_EQ(pages[static_cast<std::size_t>(i)].get(), u"/" + String::fromLong(i));
  std::set<int> connections;
  for (const TestHttpServer::Request& request : m_server.requests())
    connections.insert(request.clientPort);
  EXPECT_EQ(connections.size(), THREADS) << "one each";
  m_client.getPage(url("/again"));
  EXPECT_TRUE(connections.contains(m_server.requests().back().clientPort)) << "and they are used again";
}

TEST_F(CurlHTTPClientTest, MayBeStoppedAndGoOnlineWhileOthersFetch) {
  constexpr int THREADS = 4;
  constexpr std::size_t TURNS = 20;
  m_server.route("/", {200, "x"});
  std::vector<std::stop_source> stops(TURNS + 1);
  std::atomic<std::size_t> turn = 1;
  std::atomic<bool> enough = false;
  auto others = onThreads(THREADS, [&](int) {
    String unexpected;
    while (!enough) {
      const HTTPException failure =
          failureOf([&] { m_client.getPage(url("/"), stops[turn - 1].get_token()); });
      if (failure.message() != u"no failure" && failure.message() != words(SEND, CURLE_ABORTED_BY_CALLBACK))
        unexpected = failure.message();
    }
    return unexpected;
  });
  for (; turn <= TURNS; ++turn) {
    EXPECT_TRUE(m_server.waitForRequests(turn * THREADS));
    stops[turn - 1].request_stop();
    m_client.goOnline();
  }
  enough = true;
  for (auto& other : others)
    EXPECT_EQ(other.get(), u"");
  EXPECT_EQ(m_client.getPage(url("/")), u"x");
}

TEST_F(CurlHTTPClientTest, FollowsRedirectsWithinTheWeb) {
  m_server.redirect("/old", m_server.url("/new?a=b"));
  m_server.route("/new?a=b", {200, "moved here"});
  EXPECT_EQ(m_client.getPage(url("/old")), u"moved here");
  m_server.redirect("/file", "file:///etc/passwd");
  EXPECT_EQ(failureOf([&] { m_client.getPage(url("/file")); }).message(),
            words(SEND, CURLE_UNSUPPORTED_PROTOCOL));
  m_server.redirect("/circle", "/circle");
  EXPECT_EQ(failureOf([&] { m_client.getPage(url("/circle")); }).message(),
            words(SEND, CURLE_TOO_MANY_REDIRECTS));
  m_server.redirect("/gone", m_server.url("/missing"));
  EXPECT_EQ(failureOf([&] { m_client.getPage(url("/gone")); }).code(), 404u);
}

TEST_F(CurlHTTPClientTest, BuildsTheRequestFromThePath) {
  m_server.setFallback([](const TestHttpServer::Request& request) { return Response{200, request.target}; });
  EXPECT_EQ(m_client.getPage(url("/a/../b/./c%2Fd")), u"/a/../b/./c%2Fd");
  EXPECT_EQ(m_client.getPage(url("/a b?c=\"d\"")), u"/a%20b?c=%22d%22");
  EXPECT_EQ(m_client.getPage(url("/caf\xC3\xA9#part")), u"/caf%C3%A9");
  EXPECT_EQ(m_client.getPage(URL(u"127.0.0.1:" + String::fromLong(m_server.port()))), u"/")
      << "http without a scheme";
  EXPECT_EQ(m_client.getPage(URL(u"127.0.0.1:" + String::fromLong(m_server.port()) + u"\\x")), u"/x");
}

TEST_F(CurlHTTPClientTest, RefusesControlBytesBeforeAnythingIsSent) {
  for (const char16_t* const path : {u"/a\r\nX: y", u"/a\tb", u"/a\u007F", u"/\u0001"})
    EXPECT_EQ(failureOf([&] { m_client.getPage(URL(String(m_server.url("").c_str()) + path)); }).message(),
              words(u"getPage - HttpOpenRequest failed ", CURLE_URL_MALFORMAT));
  for (const char16_t* const host :
       {u"http://a\nb/", u"http://user@127.0.0.1/", u"http://a b/", u"http://h:99999/"})
    EXPECT_EQ(failureOf([&] { m_client.getPage(URL(String(host))); }).message(),
              words(u"connect - InternetConnect failed : ", CURLE_URL_MALFORMAT));
  EXPECT_TRUE(m_server.requests().empty());
}

TEST_F(CurlHTTPClientTest, SpeaksHttpAndHttpsOnly) {
  for (const char16_t* const address : {u"ftp://127.0.0.1/", u"file://127.0.0.1/etc/passwd"})
    EXPECT_EQ(failureOf([&] { m_client.getPage(URL(String(address))); }).message(),
              words(u"connect - InternetConnect failed : ", CURLE_UNSUPPORTED_PROTOCOL));
}

TEST_F(CurlHTTPClientTest, UsesTlsForHttpsAndOnlyHttp11) {
  std::string greeting;
  LoopbackPeer peer([&greeting](LoopbackPeer::Connection& connection) {
    greeting = connection.read(5);
    const auto byte = [&greeting](std::size_t i) { return static_cast<unsigned char>(greeting.at(i)); };
    greeting += connection.read(byte(3) * 256u + byte(4));
  });
  const String address = u"https" + peer.address().substr(4);
  EXPECT_EQ(failureOf([&] { m_client.getPage(URL(address)); }).message(),
            words(SEND, CURLE_SSL_CONNECT_ERROR));
  peer.join();
  EXPECT_EQ(greeting.substr(0, 2), "\x16\x03") << "a TLS handshake";
  EXPECT_NE(greeting.find("\x08http/1.1"), std::string::npos);
  EXPECT_EQ(greeting.find("\x02h2"), std::string::npos);
}

TEST_F(CurlHTTPClientTest, HttpsWithoutAPortGoesToPort443) {
  CurlTransfer transfer;
  const std::pair<const char16_t*, const char*> cases[] = {{u"https://h/", "443"},
                                                           {u"https://h:80/", "80"},
                                                           {u"HTTPS://h:8443/", "8443"},
                                                           {u"http://h/", "80"},
                                                           {u"h", "80"}};
  for (const auto& [address, port] : cases) {
    ASSERT_EQ(transfer.begin(1000), CURLE_OK);
    ASSERT_EQ(transfer.setServer(URL(String(address))), CURLE_OK);
    EXPECT_EQ(transfer.port(), port) << String(address).toUTF8();
  }
}

TEST_F(CurlHTTPClientTest, ARefusedConnectionAndAnUnknownHostGiveTheSendError) {
  m_server.stop();
  const HTTPException refused = failureOf([&] { m_client.getPage(url("/")); });
  EXPECT_EQ(refused.message(), words(SEND, CURLE_COULDNT_CONNECT));
  EXPECT_EQ(refused.code(), 0u);
}

TEST_F(CurlHTTPClientTest, AServerThatHangsUpGivesTheSendError) {
  LoopbackPeer peer([](LoopbackPeer::Connection& connection) { connection.readHead(); });
  EXPECT_EQ(failureOf([&] { m_client.getPage(URL(peer.address())); }).message(),
            words(SEND, CURLE_GOT_NOTHING));
}

TEST_F(CurlHTTPClientTest, ABrokenBodyGivesTheReadError) {
  Response half{200, "0123456789"};
  half.closeAfter = 4;
  m_server.route("/half", half);
  const HTTPException failure = failureOf([&] { m_client.getPage(url("/half")); });
  EXPECT_EQ(failure.message(), words(READ, CURLE_PARTIAL_FILE));
  EXPECT_EQ(failure.code(), 0u);
}

TEST_F(CurlHTTPClientTest, BoundsTheBody) {
  m_client.setBodyLimit(1000);
  m_server.route("/fits", {200, std::string(1000, 'x')});
  EXPECT_EQ(m_client.getPage(url("/fits")).size(), 1000u);
  m_server.route("/large", {200, std::string(1001, 'x')});
  EXPECT_EQ(failureOf([&] { m_client.getPage(url("/large")); }).message(),
            words(READ, CURLE_FILESIZE_EXCEEDED));
  LoopbackPeer peer([](LoopbackPeer::Connection& connection) {
    connection.readHead();
    connection.write("HTTP/1.1 200 OK\r\nConnection: close\r\n\r\n" + std::string(5000, 'x'));
  });
  EXPECT_EQ(failureOf([&] { m_client.getPage(URL(peer.address())); }).message(),
            words(READ, CURLE_FILESIZE_EXCEEDED))
      << "also when the server doesn't say how much comes";
  EXPECT_EQ(HTTPClient::PAGE_BODY_LIMIT, 10485760u);
  EXPECT_EQ(HTTPClient::UPDATE_BODY_LIMIT, 209715200u);
}

/// The failure text of a fetch that should time out. A stop ends it after a minute.
String failureByTimeOut(CurlHTTPClient& client, const URL& url) {
  std::stop_source stop;
  std::future<String> failure = std::async(std::launch::async, [&] {
    return failureOf([&] { client.getPage(url, stop.get_token()); }).message();
  });
  if (failure.wait_for(std::chrono::minutes(1)) != std::future_status::ready)
    stop.request_stop();
  return failure.get();
}

TEST_F(CurlHTTPClientTest, TimesOutOnASilentServer) {
  CurlHTTPClient client(60000, 1000, 60000);
  client.goOnline();
  m_server.route("/", {200, "x"});
  m_server.stall();
  EXPECT_EQ(failureByTimeOut(client, url("/")), words(SEND, CURLE_OPERATION_TIMEDOUT));
  m_server.release();
}

/// A port with a full connection queue, so that the next connection hangs.
class FullPort {
public:
  FullPort() {
    const int listener = add();
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    auto* generic = reinterpret_cast<sockaddr*>(&address);
    EXPECT_EQ(bind(listener, generic, length), 0);
    EXPECT_EQ(listen(listener, 0), 0);
    EXPECT_EQ(getsockname(listener, generic, &length), 0);
    m_port = ntohs(address.sin_port);
    for (int i = 0; i < 8; ++i)
      connect(add(), generic, length); // Does not block.
  }
  ~FullPort() {
    for (const int socket : m_sockets)
      close(socket);
  }
  String address() const { return u"http://127.0.0.1:" + String::fromLong(m_port) + u"/"; }

private:
  int add() { return m_sockets.emplace_back(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0)); }

  std::vector<int> m_sockets;
  int m_port = 0;
};

TEST_F(CurlHTTPClientTest, TimesOutWithoutAConnection) {
  const FullPort port;
  CurlHTTPClient client(200, 60000, 60000);
  client.goOnline();
  EXPECT_EQ(failureByTimeOut(client, URL(port.address())), words(SEND, CURLE_OPERATION_TIMEDOUT));
}

TEST_F(CurlHTTPClientTest, AnEndlessPageCanBeStopped) {
  std::stop_source stop;
  LoopbackPeer peer([&stop](LoopbackPeer::Connection& connection) {
    connection.readHead();
    connection.write("HTTP/1.1 200 OK\r\nConnection: close\r\n\r\n");
    for (int bytes = 0; connection.write("x"); ++bytes)
      if (bytes == 3)
        stop.request_stop();
  });
  EXPECT_EQ(failureOf([&] { m_client.getPage(URL(peer.address()), stop.get_token()); }).message(),
            words(SEND, CURLE_ABORTED_BY_CALLBACK));
}

TEST_F(CurlHTTPClientTest, TimesOutOnAnEndlessResponse) {
  LoopbackPeer peer([](LoopbackPeer::Connection& connection) {
    connection.readHead();
    connection.write("HTTP/1.1 200 OK\r\nConnection: close\r\n\r\n");
    while (connection.write("x")) {
    }
  });
  CurlHTTPClient client(60000, 60000, 100);
  client.goOnline();
  EXPECT_EQ(failureOf([&] { client.getPage(URL(peer.address())); }).message(),
            words(SEND, CURLE_OPERATION_TIMEDOUT));
}

TEST_F(CurlHTTPClientTest, AStopEndsAStalledFetchAndAllLaterOnesOfItsToken) {
  m_server.route("/", {200, "x"});
  m_server.stall();
  std::stop_source stop;
  const auto fetch = [&] { return failureOf([&] { m_client.getPage(url("/"), stop.get_token()); }); };
  std::future<HTTPException> failure = std::async(std::launch::async, fetch);
  ASSERT_TRUE(m_server.waitForRequests(1));
  stop.request_stop();
  EXPECT_EQ(failure.get().message(), words(SEND, CURLE_ABORTED_BY_CALLBACK));
  m_server.release();
  EXPECT_EQ(fetch().message(), words(SEND, CURLE_ABORTED_BY_CALLBACK));
  EXPECT_EQ(m_client.getPage(url("/")), u"x");
}

TEST(CurlHTTPClient, FetchesNothingBeforeItIsOnline) {
  const std::unique_ptr<HTTPClient> client = createHTTPClient();
  EXPECT_NE(dynamic_cast<CurlHTTPClient*>(client.get()), nullptr);
  EXPECT_EQ(failureOf([&] { client->getPage(URL(u"http://127.0.0.1:1/")); }).message(),
            words(u"connect - InternetConnect failed : ", CURLE_FAILED_INIT));
}

// --- Errors of the system or the library

class RefusingClient : public CurlHTTPClient {
public:
  int interfaces = 0;
  int session = 0;
  int connectTimeout = 0;
  int receiveTimeout = 0;
  int wholeTimeout = 0;
  std::function<int(CurlTransfer&)> waiting;
  std::vector<std::size_t> pieces;
  mutable std::vector<long> timeouts; ///< In the order in which they were set.

protected:
  int attemptConnect() const override { return interfaces; }
  int openSession() const override { return session; }
  int setConnectTimeout(CurlTransfer& transfer, long milliseconds) const override {
    timeouts.push_back(milliseconds);
    return connectTimeout != 0 ? connectTimeout : CurlHTTPClient::setConnectTimeout(transfer, milliseconds);
  }
  int setReceiveTimeout(CurlTransfer& transfer, long milliseconds) const override {
    timeouts.push_back(milliseconds);
    return receiveTimeout != 0 ? receiveTimeout : CurlHTTPClient::setReceiveTimeout(transfer, milliseconds);
  }
  int setWholeTimeout(CurlTransfer& transfer, long milliseconds) const override {
    timeouts.push_back(milliseconds);
    return wholeTimeout != 0 ? wholeTimeout : CurlHTTPClient::setWholeTimeout(transfer, milliseconds);
  }
  int waitForNetwork(CurlTransfer& transfer, int milliseconds) const override {
    const int refusal = waiting ? waiting(transfer) : 0;
    return refusal != 0 ? refusal : CurlHTTPClient::waitForNetwork(transfer, milliseconds);
  }
  void bodyPieceWritten(std::size_t size) override { pieces.push_back(size); }
};

TEST(CurlHTTPClientRefused, GoingOnline) {
  RefusingClient client;
  client.interfaces = 100;
  EXPECT_EQ(failureOf([&] { client.goOnline(); }).message(),
            words(u"goOnline - InternetAttemptConnect failed ", 100));
  client.interfaces = 0;
  client.session = 27;
  EXPECT_EQ(failureOf([&] { client.goOnline(); }).message(), words(u"goOnline - InternetOpen failed ", 27));
}

TEST(CurlHTTPClientRefused, TimeOuts) {
  TestHttpServer server;
  server.route("/", {200, "x"});
  RefusingClient client;
  client.goOnline();
  const URL url(String(server.url("/").c_str()));
  EXPECT_EQ(client.getPage(url), u"x");
  EXPECT_EQ(client.timeouts, (std::vector<long>{10000, 10000, 60000}));
  client.setBodyLimit(HTTPClient::UPDATE_BODY_LIMIT);
  EXPECT_EQ(client.getPage(url), u"x");
  EXPECT_EQ(client.timeouts.back(), 20 * 60000) << "a larger body may take longer";
  client.setBodyLimit(1);
  EXPECT_EQ(client.getPage(url), u"x");
  EXPECT_EQ(client.timeouts.back(), 60000);
  const auto failure = [&] { return failureOf([&] { client.getPage(url); }).message(); };
  client.wholeTimeout = 47;
  EXPECT_EQ(failure(), words(u"setTimeouts - InternetSetOption recv timeout ", 47));
  client.receiveTimeout = 48;
  EXPECT_EQ(failure(), words(u"setTimeouts - InternetSetOption recv timeout ", 48));
  client.connectTimeout = 43;
  EXPECT_EQ(failure(), words(u"setTimeouts - InternetSetOption conn timeout ", 43));
}

TEST(CurlHTTPClientRefused, Waiting) {
  LoopbackPeer peer([](LoopbackPeer::Connection& connection) {
    connection.readHead();
    connection.write("HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\nhalf");
    connection.waitForClose();
  });
  RefusingClient client;
  client.goOnline();
  client.waiting = [](CurlTransfer& transfer) { return transfer.hasAnswer() ? 4 : 0; };
  EXPECT_EQ(failureOf([&] { client.getPage(URL(peer.address())); }).message(),
            words(u"getResponse - InternetQueryDataAvailable failed ", 4));
  client.waiting = [](CurlTransfer&) { return 4; };
  EXPECT_EQ(failureOf([&] { client.getPage(URL(peer.address())); }).message(), words(SEND, 4));
}

// --- Requests with a body

TEST(CurlHTTPClientPost, GoesOutInPiecesOfAtMost1024Bytes) {
  TestHttpServer server;
  server.route("/post", {200, "thanks"});
  RefusingClient client;
  client.goOnline();
  Bytes body(1025);
  for (std::size_t i = 0; i < body.size(); ++i)
    body[i] = static_cast<std::uint8_t>(i * 7);
  EXPECT_EQ(client.sendHTTPRequest2(URL(String(server.url("/post").c_str())), body), 200u);
  EXPECT_EQ(client.pieces, (std::vector<std::size_t>{1024, 1}));
  const auto requests = server.requests();
  ASSERT_EQ(requests.size(), 1u);
  EXPECT_EQ(requests[0].method, "POST");
  EXPECT_EQ(requests[0].headers.at("content-length"), "1025");
  EXPECT_EQ(requests[0].body, std::string(body.begin(), body.end()));
  EXPECT_EQ(client.sendHTTPRequest2(URL(String(server.url("/nowhere").c_str())), {}), 404u);
}

const Bytes LARGE_BODY(64u * 1024 * 1024, 'x'); ///< More than the system buffers between two sockets.

TEST(CurlHTTPClientPost, FailsWithoutAServer) {
  CurlHTTPClient client;
  client.goOnline();
  TestHttpServer server;
  const URL url(String(server.url("/").c_str()));
  server.stop();
  EXPECT_EQ(failureOf([&] { client.sendHTTPRequest2(url, Bytes(10)); }).message(),
            words(u"sendHTTPRequest2 - HttpSendRequestEx ", CURLE_COULDNT_CONNECT));
}

TEST(CurlHTTPClientPost, FailsWhenTheConnectionBreaksWhileTheBodyIsWritten) {
  LoopbackPeer peer([](LoopbackPeer::Connection& connection) {
    connection.readHead();
    connection.read(1); // Waits for the start of the body.
    connection.reset();
  });
  CurlHTTPClient client;
  client.goOnline();
  const String message =
      failureOf([&] { client.sendHTTPRequest2(URL(peer.address()), LARGE_BODY); }).message();
  EXPECT_TRUE(message.startsWith(u"Win32HTTPClient::sendHTTPRequest2 - InternetWriteFile "))
      << message.toUTF8();
}

TEST(CurlHTTPClientPost, FailsWhenTheServerAnswersBeforeItHasTakenTheBody) {
  std::promise<void> given;
  LoopbackPeer peer([&given](LoopbackPeer::Connection& connection) {
    connection.readHead();
    connection.write("HTTP/1.1 413 Too Large\r\nContent-Length: 0\r\n\r\n");
    given.get_future().wait(); // Reads nothing of the body until the client has given up.
  });
  CurlHTTPClient client;
  client.goOnline();
  EXPECT_EQ(failureOf([&] { client.sendHTTPRequest2(URL(peer.address()), LARGE_BODY); }).message(),
            words(u"sendHTTPRequest2 - written != toWrite ", 0));
  given.set_value();
}

TEST(CurlHTTPClientPost, FailsWhenNoAnswerComesToAWholeBody) {
  LoopbackPeer peer([](LoopbackPeer::Connection& connection) {
    connection.readHead();
    connection.read(10);
  });
  CurlHTTPClient client;
  client.goOnline();
  EXPECT_EQ(failureOf([&] { client.sendHTTPRequest2(URL(peer.address()), Bytes(10, 'x')); }).message(),
            words(u"sendHTTPRequest2 - HttpEndRequest failed ", CURLE_GOT_NOTHING));
}

} // namespace
} // namespace Tallymoor
