#include "TestTlsServer.h"
#include "market/CurlTransfer.h"
#include "market/URL.h"
#include "support/TestHttpServer.h"
#include "support/TestProfile.h"
#include <csignal>
#include <gtest/gtest.h>

namespace Tallymoor {
namespace {

constexpr std::size_t LIMIT = 10000;

/// Redirections between an http and an https server.
class HttpsTest : public testing::Test {
protected:
  HttpsTest() {
    m_plain.route("/page", {200, "plain", "text/html", {}, -1});
    m_plain.redirect("/to-https", m_tls.url("/page"));
    m_plain.redirect("/to-https-and-back", m_tls.url("/to-http"));
  }
  /// Fetches the address into m_body and returns the result code.
  CURLcode fetch(const std::string& address, bool trusting = true) {
    CurlTransfer transfer;
    const URL url{String(address.c_str())};
    EXPECT_EQ(transfer.begin(LIMIT), CURLE_OK);
    EXPECT_EQ(transfer.setServer(url), CURLE_OK);
    EXPECT_EQ(transfer.setRequest(url, {{"Accept", "text/html"}}), CURLE_OK);
    EXPECT_EQ(trusting ? transfer.setTrustedCertificates(m_certificate) : CURLE_OK, CURLE_OK);
    const CURLcode result = transfer.run([&transfer] {
      transfer.waitForNetwork(1000);
      return 0;
    });
    m_body.assign(transfer.answer().body.begin(), transfer.answer().body.end());
    return result;
  }
  std::string secure(const std::string& path) const { return m_tls.url(path); }
  std::string plain(const std::string& path) const { return m_plain.url(path); }
  std::size_t plainRequests() const { return m_plain.requests().size(); }

  std::string m_body;

private:
  /// Ignores SIGPIPE, which a disconnecting client causes.
  struct NoBrokenPipe {
    NoBrokenPipe() { std::signal(SIGPIPE, SIG_IGN); }
  } m_noBrokenPipe;
  TestProfile m_profile;
  const std::string m_certificate = m_profile.folder() + "/certificate.pem";
  TestHttpServer m_plain;
  TestTlsServer m_tls{m_certificate, [this](const std::string& path) {
                        if (path == "/to-http")
                          return TestTlsServer::redirection(m_plain.url("/page"));
                        if (path == "/to-https")
                          return TestTlsServer::redirection(m_tls.url("/page"));
                        return TestTlsServer::page("secure");
                      }};
};

TEST_F(HttpsTest, ACertificateThatNobodyTrustsIsRefused) {
  EXPECT_EQ(fetch(secure("/page"), false), CURLE_PEER_FAILED_VERIFICATION);
  EXPECT_EQ(m_body, "");
  EXPECT_EQ(fetch(secure("/page")), CURLE_OK);
  EXPECT_EQ(m_body, "secure");
}

TEST_F(HttpsTest, RedirectionsLeadToHttpsAndStayThere) {
  EXPECT_EQ(fetch(secure("/to-https")), CURLE_OK);
  EXPECT_EQ(m_body, "secure");
  EXPECT_EQ(fetch(plain("/to-https")), CURLE_OK);
  EXPECT_EQ(m_body, "secure");
}

TEST_F(HttpsTest, NoRedirectionLeadsFromHttpsToHttp) {
  EXPECT_EQ(fetch(secure("/to-http")), CURLE_UNSUPPORTED_PROTOCOL);
  EXPECT_EQ(m_body, "");
  EXPECT_EQ(plainRequests(), 0u);
}

TEST_F(HttpsTest, NoRedirectionLeadsBackToHttpAfterHttps) {
  EXPECT_EQ(fetch(plain("/to-https-and-back")), CURLE_UNSUPPORTED_PROTOCOL);
  EXPECT_EQ(m_body, "");
  EXPECT_EQ(plainRequests(), 1u) << "the first, and not the page";
}

} // namespace
} // namespace Tallymoor
