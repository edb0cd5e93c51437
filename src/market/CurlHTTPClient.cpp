#include "market/CurlHTTPClient.h"
#include "foundation/KeptTexts.h"
#include "market/CurlTransfer.h"
#include "market/TransferFailure.h"
#include "market/URL.h"
#include <algorithm>
#include <cerrno>
#include <ifaddrs.h>
#include <net/if.h>

namespace Tallymoor {

namespace {

constexpr std::size_t POST_PIECE = 1024;
constexpr int LONGEST_WAIT = 1000;

/// The code is libcurl's.
[[noreturn]] void fail(const char16_t* what, int code) {
  throw TransferFailure(String(u"Win32HTTPClient::") + what + String::fromLong(code),
                        String(curl_easy_strerror(static_cast<CURLcode>(code))));
}

/// True for what ends a transfer on the way to the server or by the clock, whatever of the answer was there
/// by then.
bool isSendFailure(int code) {
  switch (code) {
  case CURLE_UNSUPPORTED_PROTOCOL:
  case CURLE_COULDNT_RESOLVE_PROXY:
  case CURLE_COULDNT_RESOLVE_HOST:
  case CURLE_COULDNT_CONNECT:
  case CURLE_SSL_CONNECT_ERROR:
  case CURLE_OPERATION_TIMEDOUT:
  case CURLE_ABORTED_BY_CALLBACK:
  case CURLE_TOO_MANY_REDIRECTS:
  case CURLE_SEND_ERROR:
    return true;
  default:
    return false;
  }
}

} // namespace

/// A transfer for the time of one fetch, from the pool if one is idle.
class CurlHTTPClient::Lease {
public:
  explicit Lease(CurlHTTPClient& client) : m_client(client) {
    const MutexLock lock(client.m_mutex);
    if (client.m_idle.empty()) {
      m_transfer = std::make_unique<CurlTransfer>();
    } else {
      m_transfer = std::move(client.m_idle.back());
      client.m_idle.pop_back();
    }
  }

  ~Lease() {
    const MutexLock lock(m_client.m_mutex);
    m_client.m_idle.push_back(std::move(m_transfer));
  }

  CurlTransfer& operator*() const { return *m_transfer; }

private:
  CurlHTTPClient& m_client;
  std::unique_ptr<CurlTransfer> m_transfer;
};

CurlHTTPClient::CurlHTTPClient(long connectTimeout, long receiveTimeout, long pageTimeout)
    : m_connectTimeout(connectTimeout), m_receiveTimeout(receiveTimeout), m_pageTimeout(pageTimeout) {}

CurlHTTPClient::~CurlHTTPClient() = default;

void CurlHTTPClient::goOnline() {
  const int reason = attemptConnect();
  if (reason != 0)
    throw HTTPException(kept::NOT_ONLINE + String::fromLong(reason));
  {
    const MutexLock lock(m_mutex);
    m_idle.clear();
  }
  const int failure = openSession();
  if (failure != 0)
    fail(u"goOnline - InternetOpen failed ", failure);
  m_online = true;
}

int CurlHTTPClient::attemptConnect() const {
  ifaddrs* interfaces = nullptr;
  if (getifaddrs(&interfaces) != 0)
    return errno;
  bool up = false;
  for (const ifaddrs* i = interfaces; i != nullptr; i = i->ifa_next)
    up = up || (i->ifa_flags & IFF_UP) != 0;
  freeifaddrs(interfaces);
  return up ? 0 : ENETDOWN;
}

int CurlHTTPClient::openSession() const {
  // Once a process, on whichever thread is first.
  static const CURLcode ready = curl_global_init(CURL_GLOBAL_DEFAULT);
  return ready != CURLE_OK || CurlTransfer().isReady() ? ready : CURLE_OUT_OF_MEMORY;
}

void CurlHTTPClient::setBodyLimit(std::size_t bytes) {
  m_bodyLimit = bytes;
}

HTTPAnswer CurlHTTPClient::get(const URL& url, const HTTPHeaders& headers, const std::stop_token& stop) {
  const Lease lease(*this);
  CurlTransfer& transfer = *lease;
  connect(transfer, url);
  openRequest(transfer, url, headers);
  setTimeouts(transfer);
  const std::stop_callback wake(stop, [&transfer] { transfer.wake(); });
  const int failure = sendHTTPRequest(transfer, stop);
  if (failure != 0 && transfer.answer().isSuccess())
    fail(transfer.waitFailed() ? u"getResponse - InternetQueryDataAvailable failed "
                               : u"getResponse - InternetReadFile failed ",
         failure);
  return std::move(transfer.answer());
}

void CurlHTTPClient::connect(CurlTransfer& transfer, const URL& url) const {
  if (!m_online || !transfer.isReady())
    fail(u"connect - InternetConnect failed : ", CURLE_FAILED_INIT);
  int failure = transfer.begin(m_bodyLimit);
  if (failure == 0)
    failure = transfer.setServer(url);
  if (failure != 0)
    fail(u"connect - InternetConnect failed : ", failure);
}

void CurlHTTPClient::openRequest(CurlTransfer& transfer, const URL& url, const HTTPHeaders& headers) const {
  const int failure = transfer.setRequest(url, headers);
  if (failure != 0)
    fail(u"getPage - HttpOpenRequest failed ", failure);
}

void CurlHTTPClient::setTimeouts(CurlTransfer& transfer) const {
  int failure = setConnectTimeout(transfer, m_connectTimeout);
  if (failure != 0)
    fail(u"setTimeouts - InternetSetOption conn timeout ", failure);
  failure = setReceiveTimeout(transfer, m_receiveTimeout);
  if (failure == 0)
    failure = setWholeTimeout(transfer, wholeTimeout());
  if (failure != 0)
    fail(u"setTimeouts - InternetSetOption recv timeout ", failure);
}

long CurlHTTPClient::wholeTimeout() const {
  const std::size_t pages = std::max<std::size_t>(m_bodyLimit / PAGE_BODY_LIMIT, 1);
  return m_pageTimeout * static_cast<long>(pages);
}

int CurlHTTPClient::setConnectTimeout(CurlTransfer& transfer, long milliseconds) const {
  return transfer.setConnectTimeout(milliseconds);
}

int CurlHTTPClient::setReceiveTimeout(CurlTransfer& transfer, long milliseconds) const {
  return transfer.setReceiveTimeout(milliseconds);
}

int CurlHTTPClient::setWholeTimeout(CurlTransfer& transfer, long milliseconds) const {
  return transfer.setWholeTimeout(milliseconds);
}

int CurlHTTPClient::waitForNetwork(CurlTransfer& transfer, int milliseconds) const {
  return transfer.waitForNetwork(milliseconds);
}

int CurlHTTPClient::run(CurlTransfer& transfer, const std::stop_token& stop) const {
  return transfer.run([&]() -> int {
    return stop.stop_requested() ? static_cast<int>(CURLE_ABORTED_BY_CALLBACK)
                                 : waitForNetwork(transfer, LONGEST_WAIT);
  });
}

int CurlHTTPClient::sendHTTPRequest(CurlTransfer& transfer, const std::stop_token& stop) const {
  const int failure = run(transfer, stop);
  const bool onTheWay = transfer.waitFailed() ? !transfer.hasAnswer() : isSendFailure(failure);
  const bool noAnswer = !transfer.hasAnswer() && failure != CURLE_FILESIZE_EXCEEDED;
  if (failure != 0 && (onTheWay || noAnswer))
    fail(u"sendHTTPRequest - HttpSendRequestEx ", failure);
  return failure;
}

unsigned CurlHTTPClient::sendHTTPRequest2(const URL& url, const std::vector<std::uint8_t>& body) {
  const Lease lease(*this);
  CurlTransfer& transfer = *lease;
  connect(transfer, url);
  openRequest(transfer, url, {{"Accept", "text/html"}, {"Accept-Encoding", "identity"}});
  setTimeouts(transfer);
  int failure = transfer.setPost(body, POST_PIECE, [this](std::size_t size) { bodyPieceWritten(size); });
  if (failure == 0)
    failure = run(transfer);
  checkPost(transfer, failure, body.size());
  return transfer.answer().status;
}

void CurlHTTPClient::checkPost(const CurlTransfer& transfer, int failure, std::size_t bodySize) const {
  const bool whole = transfer.bodyBytesSent() >= bodySize;
  if (failure != 0 && !transfer.bodyStarted())
    fail(u"sendHTTPRequest2 - HttpSendRequestEx ", failure);
  if (failure != 0 && !whole)
    fail(u"sendHTTPRequest2 - InternetWriteFile ", failure);
  if (failure != 0)
    fail(u"sendHTTPRequest2 - HttpEndRequest failed ", failure);
  if (!whole) // the server answered before it had taken everything
    fail(u"sendHTTPRequest2 - written != toWrite ", failure);
}

std::unique_ptr<HTTPClient> createHTTPClient() {
  return std::make_unique<CurlHTTPClient>();
}

} // namespace Tallymoor
