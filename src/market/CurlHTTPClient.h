#pragma once
#include "foundation/Mutex.h"
#include "foundation/String.h"
#include "market/HTTPClient.h"
#include <atomic>

namespace Tallymoor {

class CurlTransfer;
class URL;

/// The HTTP client on libcurl: GET over HTTP/1.1, http and https only, redirects followed within these two.
///
/// Connections are kept alive and used again. A finished transfer goes back to a pool with its connections,
/// so that fetches one after the other use a single connection per host and port; fetches at the same time
/// have one each. A single connection cache for all of them (CURL_LOCK_DATA_CONNECT of the library's shares)
/// would be no safe replacement: the library says itself that connections must not be shared between threads.
///
/// The texts of failures name the operations of another platform's library; users and support know them, so
/// they stay. The number behind them is libcurl's code.
class CurlHTTPClient : public HTTPClient {
public:
  /// Milliseconds: to connect, to wait for the next byte (in whole seconds), and for a whole page. The last
  /// is there because some fetches are waited for under the big mutex: a server that sends a byte now and
  /// then would otherwise keep the windows waiting for days. A larger body limit gets more in proportion.
  explicit CurlHTTPClient(long connectTimeout = 10000, long receiveTimeout = 10000, long pageTimeout = 60000);
  ~CurlHTTPClient() override;
  CurlHTTPClient(const CurlHTTPClient&) = delete;
  CurlHTTPClient& operator=(const CurlHTTPClient&) = delete;

  void goOnline() override;
  HTTPAnswer get(const URL& url, const HTTPHeaders& headers, const std::stop_token& stop = {}) override;
  void setBodyLimit(std::size_t bytes) override;

  /// Posts a body in pieces of at most 1024 bytes and returns the status of the answer, whose own body is
  /// dropped.
  unsigned sendHTTPRequest2(const URL& url, const std::vector<std::uint8_t>& body);

protected:
  // What the system or the library can refuse; virtual so that a test can have it refuse.

  /// 0 when any network interface is up, else the system's number of the reason.
  virtual int attemptConnect() const;
  /// 0 when the library is ready, else its code.
  virtual int openSession() const;
  virtual int setConnectTimeout(CurlTransfer& transfer, long milliseconds) const;
  virtual int setReceiveTimeout(CurlTransfer& transfer, long milliseconds) const;
  virtual int setWholeTimeout(CurlTransfer& transfer, long milliseconds) const;
  /// Waits until the transfer may go on; 0, or the library's code.
  virtual int waitForNetwork(CurlTransfer& transfer, int milliseconds) const;
  /// Called for each piece of a posted body as it goes out.
  virtual void bodyPieceWritten(std::size_t) {}

private:
  class Lease;

  void connect(CurlTransfer& transfer, const URL& url) const;
  void openRequest(CurlTransfer& transfer, const URL& url, const HTTPHeaders& headers) const;
  void setTimeouts(CurlTransfer& transfer) const;
  long wholeTimeout() const;
  /// Runs the transfer and returns the library's code.
  int run(CurlTransfer& transfer, const std::stop_token& stop = {}) const;
  /// Throws when there is no answer; otherwise returns the code of a failure that came later, or 0.
  int sendHTTPRequest(CurlTransfer& transfer, const std::stop_token& stop) const;
  void checkPost(const CurlTransfer& transfer, int failure, std::size_t bodySize) const;

  const long m_connectTimeout;
  const long m_receiveTimeout;
  const long m_pageTimeout;
  std::atomic<std::size_t> m_bodyLimit{PAGE_BODY_LIMIT};
  std::atomic<bool> m_online{false};

  Mutex m_mutex;
  std::vector<std::unique_ptr<CurlTransfer>> m_idle GUARDED_BY(m_mutex); ///< with their connections
};

} // namespace Tallymoor
