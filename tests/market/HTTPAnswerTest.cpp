#include "market/HTTPAnswer.h"
#include "market/CurlHTTPClient.h"
#include "market/TransferFailure.h"
#include "market/URL.h"
#include "support/FailureOf.h"
#include "support/LoopbackPeer.h"
#include "support/StringPrinting.h"
#include "support/TestHttpServer.h"
#include <curl/curl.h>
#include <gtest/gtest.h>
#include <zlib.h>

namespace Tallymoor {
namespace {

using Request = TestHttpServer::Request;
using Response = TestHttpServer::Response;

// What get gives beyond a page: status, headers and compression.

std::string compressed(const std::string& text) {
  z_stream stream{};
  EXPECT_EQ(deflateInit2(&stream, Z_BEST_COMPRESSION, Z_DEFLATED, 15 + 16, 9, Z_DEFAULT_STRATEGY), Z_OK);
  std::string result(deflateBound(&stream, text.size()), '\0');
  stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(text.data()));
  stream.avail_in = static_cast<uInt>(text.size());
  stream.next_out = reinterpret_cast<Bytef*>(result.data());
  stream.avail_out = static_cast<uInt>(result.size());
  EXPECT_EQ(deflate(&stream, Z_FINISH), Z_STREAM_END);
  result.resize(stream.total_out);
  deflateEnd(&stream);
  return result;
}

/// Of a type that the server does not compress by itself.
Response compressedResponse(const std::string& bytes) {
  Response response{200, bytes, "application/octet-stream"};
  response.headers = {{"Content-Encoding", "gzip"}};
  return response;
}

class HTTPAnswerTest : public ::testing::Test {
protected:
  HTTPAnswerTest() {
    m_client.goOnline();
    m_server.route("/", {200, "x"});
  }

  URL url(const std::string& path) const { return URL(String(m_server.url(path).c_str())); }
  HTTPAnswer get(const std::string& path, const HTTPHeaders& headers = {}) {
    return m_client.get(url(path), headers);
  }
  std::string textOf(const std::string& path) {
    const HTTPAnswer answer = get(path);
    return {answer.body.begin(), answer.body.end()};
  }
  String failureAt(const std::string& path, const HTTPHeaders& headers = {}) {
    return failureOf<TransferFailure>([&] { get(path, headers); });
  }
  static String readFailure(int code) {
    return u"Win32HTTPClient::getResponse - InternetReadFile failed " + String::fromLong(code);
  }
  std::map<std::string, std::string> sent() const { return m_server.requests().back().headers; }

  TestHttpServer m_server;
  CurlHTTPClient m_client;
};

TEST_F(HTTPAnswerTest, HasStatusHeadersAndBodyWhateverTheStatus) {
  Response busy{429, "slow down", "text/plain"};
  busy.headers = {{"Retry-After", "120"}, {"X-Empty", ""}};
  m_server.route("/busy", busy);
  const HTTPAnswer answer = get("/busy");
  EXPECT_EQ(answer.status, 429u);
  EXPECT_FALSE(answer.isSuccess());
  EXPECT_EQ(answer.statusText, "Too Many Requests");
  EXPECT_EQ(answer.header("retry-after"), "120");
  EXPECT_EQ(answer.header("CONTENT-TYPE"), "text/plain");
  EXPECT_EQ(answer.header("X-Empty"), "");
  EXPECT_EQ(answer.header("Retry"), "");
  EXPECT_EQ(std::string(answer.body.begin(), answer.body.end()), "slow down");
  EXPECT_TRUE(get("/").isSuccess());
  EXPECT_EQ(get("/").header("Retry-After"), "") << "nothing is left of the last answer";
}

TEST_F(HTTPAnswerTest, TheHeadersAreThoseOfTheLastAnswer) {
  m_server.setFallback([](const Request&) {
    Response response{302, ""};
    response.headers = {{"Location", "/"}, {"Retry-After", "7"}};
    return response;
  });
  const HTTPAnswer answer = get("/moved");
  EXPECT_EQ(answer.status, 200u);
  EXPECT_EQ(answer.header("Retry-After"), "");
  EXPECT_EQ(answer.header("Location"), "");
}

TEST_F(HTTPAnswerTest, OfAnEndlessHeadTheFirstHundredHeadersAreKept) {
  LoopbackPeer peer([](LoopbackPeer::Connection& connection) {
    connection.readHead();
    std::string head = "HTTP/1.1 200 OK\r\nContent-Length: 1\r\n";
    for (int i = 0; i < 1000; ++i)
      head += "X-" + std::to_string(i) + ": y\r\n";
    connection.write(head + "\r\nz");
  });
  const HTTPAnswer answer = m_client.get(URL(peer.address()), {});
  EXPECT_EQ(answer.headers.size(), 100u);
  EXPECT_EQ(answer.body.size(), 1u);
}

TEST_F(HTTPAnswerTest, TheCallersHeadersAreSent) {
  get("/", {{"Accept", "application/json"}, {"X-Key", "secret"}});
  EXPECT_EQ(sent().at("accept"), "application/json");
  EXPECT_EQ(sent().at("x-key"), "secret");
  EXPECT_EQ(sent().at("user-agent"), "Tallymoor/1.3.1");
  EXPECT_EQ(sent().at("accept-encoding"), "gzip");
  get("/");
  EXPECT_EQ(sent().at("accept"), "*/*");
  EXPECT_FALSE(sent().contains("x-key")) << "nothing is left of the last request";
}

TEST_F(HTTPAnswerTest, HeadersThatWouldBreakTheRequestAreRefused) {
  for (const auto& [name, value] :
       HTTPHeaders{{"X", "a\r\nY: b"}, {"X\nY", "b"}, {"", "b"}, {"X:", "b"}, {"X Y", "b"}, {"X", ""}})
    EXPECT_EQ(failureAt("/", {{name, value}}), u"Win32HTTPClient::getPage - HttpOpenRequest failed " +
                                                   String::fromLong(CURLE_BAD_FUNCTION_ARGUMENT));
  EXPECT_TRUE(m_server.requests().empty());
}

TEST_F(HTTPAnswerTest, AnotherServerDoesNotGetTheCallersHeaders) {
  TestHttpServer other;
  other.route("/page", {200, "x"});
  m_server.redirect("/here", m_server.url("/"));
  m_server.redirect("/path", "/");
  m_server.redirect("/away", other.url("/page"));
  const HTTPHeaders headers = {{"Accept", "application/json"}, {"X-Key", "secret"}};
  for (const char* const path : {"/here", "/path"}) {
    get(path, headers);
    EXPECT_EQ(sent().at("x-key"), "secret") << path;
  }
  EXPECT_TRUE(get("/away", headers).isSuccess());
  ASSERT_EQ(other.requests().size(), 1u);
  EXPECT_FALSE(other.requests().back().headers.contains("x-key"));
  EXPECT_EQ(other.requests().back().headers.at("accept"), "application/json");
}

// --- Compression

TEST_F(HTTPAnswerTest, IsDecompressed) {
  m_server.route("/gzip", compressedResponse(compressed("<html>12.34</html>")));
  EXPECT_EQ(textOf("/gzip"), "<html>12.34</html>");
  EXPECT_EQ(m_client.getPage(url("/gzip")), u"<html>12.34</html>");
}

TEST_F(HTTPAnswerTest, IsTakenAsItIsWhereTheCallerWantsThat) {
  const std::string bytes = compressed("program");
  m_server.route("/gzip", compressedResponse(bytes));
  std::vector<std::uint8_t> body;
  m_client.getPage(url("/gzip"), body);
  EXPECT_EQ(sent().at("accept-encoding"), "identity");
  EXPECT_EQ(std::string(body.begin(), body.end()), bytes);
}

TEST_F(HTTPAnswerTest, TheLimitHoldsForWhatComesOut) {
  const std::string bomb = compressed(std::string(HTTPClient::PAGE_BODY_LIMIT + 1, '0'));
  ASSERT_LT(bomb.size(), 20000u);
  m_server.route("/bomb", compressedResponse(bomb));
  EXPECT_EQ(failureAt("/bomb"), readFailure(CURLE_FILESIZE_EXCEEDED));
  m_server.route("/fits", compressedResponse(compressed(std::string(HTTPClient::PAGE_BODY_LIMIT, '0'))));
  EXPECT_EQ(get("/fits").body.size(), HTTPClient::PAGE_BODY_LIMIT);
}

TEST_F(HTTPAnswerTest, CompressedBytesThatAreBrokenOrCutFail) {
  const std::string text = "<html>a page of some length, 12.34</html>";
  const std::string whole = compressed(text);
  const String broken = readFailure(CURLE_BAD_CONTENT_ENCODING);
  m_server.route("/more", compressedResponse(whole + whole));
  EXPECT_EQ(failureAt("/more"), broken);
  Response unknown{200, text, "application/octet-stream"};
  unknown.headers = {{"Content-Encoding", "br"}};
  m_server.route("/unknown", unknown);
  EXPECT_EQ(failureAt("/unknown"), broken);
  Response twice = compressedResponse(compressed(whole));
  twice.headers.emplace_back("Content-Encoding", "gzip");
  m_server.route("/twice", twice);
  EXPECT_EQ(failureAt("/twice"), broken);
  unknown.status = 404;
  m_server.route("/error", unknown);
  EXPECT_EQ(get("/error").status, 404u) << "what an error says is not needed";
  for (std::size_t length = 1; length < whole.size(); ++length) {
    m_server.route("/cut", compressedResponse(whole.substr(0, length)));
    EXPECT_EQ(failureAt("/cut"), broken) << length << " of " << whole.size();
  }
  for (std::size_t place = 10; place < whole.size(); ++place) {
    std::string changed = whole;
    changed[place] = static_cast<char>(changed[place] ^ 0x55);
    m_server.route("/broken", compressedResponse(changed));
    EXPECT_EQ(failureAt("/broken"), broken) << place;
  }
}

} // namespace
} // namespace Tallymoor
