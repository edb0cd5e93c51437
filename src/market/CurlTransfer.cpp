#include "market/CurlTransfer.h"
#include "market/PercentEncoding.h"
#include "market/URL.h"
#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <strings.h>

namespace Tallymoor {

namespace {

constexpr const char* AGENT = "Tallymoor/" TALLYMOOR_VERSION;
constexpr const char* ACCEPT_GZIP = "Accept-Encoding: gzip";
constexpr std::size_t MOST_HEADERS = 100;
constexpr std::size_t GZIP_OVERHEAD =
    64; ///< and one in a thousand: that much more may be sent than comes out
constexpr const char* PROTOCOLS = "http,https";
constexpr long MAX_REDIRECTS = 10;
constexpr std::uint32_t HTTPS_PORT = 443;
constexpr std::size_t FIRST_BODY_RESERVE = 5120;

bool isControl(unsigned char byte) {
  return byte < 0x20 || byte == 0x7F;
}

bool hasControl(const std::string& text) {
  return std::any_of(text.begin(), text.end(),
                     [](char c) { return isControl(static_cast<unsigned char>(c)); });
}

/// What a request line can't hold, percent-encoded. A fragment is the reader's business and is not sent.
std::string requestTarget(const std::string& path) {
  return percentEncoded(path.substr(0, path.find('#')), [](unsigned char byte) {
    return byte >= 0x80 || std::strchr(" \"<>", byte) != nullptr;
  });
}

using Header = HTTPHeaders::value_type;

bool isNamed(const Header& header, const char* name) {
  return strcasecmp(header.first.c_str(), name) == 0;
}

bool saysWhatIsAccepted(const Header& header) {
  return strncasecmp(header.first.c_str(), "Accept", std::strlen("Accept")) == 0;
}

bool isMalformed(const Header& header) {
  return header.first.empty() || header.second.empty() ||
         header.first.find_first_of(": ;") != std::string::npos || hasControl(header.first) ||
         hasControl(header.second);
}

template <class Wanted>
curl_slist* headerList(const HTTPHeaders& headers, const char* encoding, Wanted isWanted) {
  curl_slist* list = curl_slist_append(nullptr, "Expect:");
  if (encoding)
    list = curl_slist_append(list, encoding);
  for (const Header& header : headers)
    if (isWanted(header))
      list = curl_slist_append(list, (header.first + ": " + header.second).c_str());
  return list;
}

/// The proxy that the environment names is used, but never for this machine itself.
std::string hostsWithoutProxy() {
  std::string hosts = "localhost,127.0.0.1,::1";
  for (const char* const variable : {"no_proxy", "NO_PROXY"})
    if (const char* const value = std::getenv(variable)) {
      hosts += ',';
      hosts += value;
    }
  return hosts;
}

} // namespace

CurlTransfer::CurlTransfer() : m_multi(curl_multi_init()), m_easy(curl_easy_init()) {}

template <class Value>
void CurlTransfer::set(CURLoption option, Value value) {
  const CURLcode result = curl_easy_setopt(m_easy.get(), option, value);
  if (m_optionResult == CURLE_OK)
    m_optionResult = result;
}

CURLcode CurlTransfer::begin(std::size_t bodyLimit) {
  curl_easy_reset(m_easy.get());
  m_optionResult = CURLE_OK;
  m_bodyLimit = bodyLimit;
  m_answer = HTTPAnswer();
  m_answer.body.reserve(FIRST_BODY_RESERVE);
  m_headComplete = m_redirects = m_takesGzip = m_waitFailed = m_bodyStarted = false;
  m_gzip.reset();
  m_bodyFailure = CURLE_OK;
  m_post = nullptr;
  m_postOffset = 0;
  m_pieceWritten = {};

  set(CURLOPT_NOSIGNAL, 1L);
  set(CURLOPT_QUICK_EXIT, 1L); // an abort doesn't wait for a name server
  set(CURLOPT_USERAGENT, AGENT);
  set(CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_1_1));
  set(CURLOPT_PROTOCOLS_STR, PROTOCOLS);
  set(CURLOPT_REDIR_PROTOCOLS_STR, PROTOCOLS);
  set(CURLOPT_FOLLOWLOCATION, 1L);
  set(CURLOPT_MAXREDIRS, MAX_REDIRECTS);
  set(CURLOPT_PATH_AS_IS, 1L);
  set(CURLOPT_NOPROXY, hostsWithoutProxy().c_str());
  set(CURLOPT_MAXFILESIZE_LARGE, static_cast<curl_off_t>(bodyLimit + bodyLimit / 1000 + GZIP_OVERHEAD));
  set(CURLOPT_HEADERFUNCTION, &CurlTransfer::takeHeader);
  set(CURLOPT_HEADERDATA, this);
  set(CURLOPT_WRITEFUNCTION, &CurlTransfer::takeBody);
  set(CURLOPT_WRITEDATA, this);
  return m_optionResult;
}

CURLcode CurlTransfer::setServer(const URL& url) {
  const std::string scheme = url.scheme().empty() ? "http" : url.scheme().toUTF8();
  if (scheme != "http" && scheme != "https")
    return CURLE_UNSUPPORTED_PROTOCOL;
  const std::uint32_t port = scheme == "https" && !url.hasPort() ? HTTPS_PORT : url.port();
  const std::string host = url.host().toUTF8();
  m_address.reset(curl_url());
  if (!m_address)
    return CURLE_OUT_OF_MEMORY;
  const bool accepted =
      !hasControl(host) && curl_url_set(m_address.get(), CURLUPART_SCHEME, scheme.c_str(), 0) == CURLUE_OK &&
      curl_url_set(m_address.get(), CURLUPART_HOST, host.c_str(), 0) == CURLUE_OK &&
      curl_url_set(m_address.get(), CURLUPART_PORT, std::to_string(port).c_str(), 0) == CURLUE_OK;
  m_server = scheme + "://" + host + ":" + std::to_string(port);
  return accepted ? CURLE_OK : CURLE_URL_MALFORMAT;
}

std::string CurlTransfer::port() const {
  char* text = nullptr;
  if (curl_url_get(m_address.get(), CURLUPART_PORT, &text, 0) != CURLUE_OK)
    return {};
  std::string port = text;
  curl_free(text);
  return port;
}

CURLcode CurlTransfer::setRequest(const URL& url, const HTTPHeaders& headers) {
  const std::string whole = url.path().toUTF8();
  if (hasControl(whole))
    return CURLE_URL_MALFORMAT;
  if (std::any_of(headers.begin(), headers.end(), isMalformed))
    return CURLE_BAD_FUNCTION_ARGUMENT;
  // As one text: set by its parts, the library would rewrite what is percent-encoded in them.
  set(CURLOPT_URL, (m_server + requestTarget(whole)).c_str());
  m_takesGzip = std::none_of(headers.begin(), headers.end(),
                             [](const Header& header) { return isNamed(header, "Accept-Encoding"); });
  const char* const encoding = m_takesGzip ? ACCEPT_GZIP : nullptr;
  m_headers.reset(headerList(headers, encoding, [](const Header&) { return true; }));
  m_headersForOthers.reset(headerList(headers, encoding, saysWhatIsAccepted));
  set(CURLOPT_HTTPHEADER, m_headers.get());
  return m_optionResult;
}

CURLcode CurlTransfer::setTrustedCertificates(const std::string& file) {
  set(CURLOPT_CAPATH, nullptr);
  set(CURLOPT_CAINFO, file.c_str());
  return m_optionResult;
}

CURLcode CurlTransfer::setPost(const std::vector<std::uint8_t>& body, std::size_t pieceSize,
                               std::function<void(std::size_t)> pieceWritten) {
  m_post = &body;
  m_pieceSize = pieceSize;
  m_pieceWritten = std::move(pieceWritten);
  set(CURLOPT_POST, 1L);
  set(CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(body.size()));
  set(CURLOPT_READFUNCTION, &CurlTransfer::giveBody);
  set(CURLOPT_READDATA, this);
  return m_optionResult;
}

CURLcode CurlTransfer::setConnectTimeout(long milliseconds) {
  return curl_easy_setopt(m_easy.get(), CURLOPT_CONNECTTIMEOUT_MS, milliseconds);
}

CURLcode CurlTransfer::setReceiveTimeout(long milliseconds) {
  set(CURLOPT_LOW_SPEED_LIMIT, 1L);
  set(CURLOPT_LOW_SPEED_TIME, (milliseconds + 999) / 1000);
  return m_optionResult;
}

CURLcode CurlTransfer::setWholeTimeout(long milliseconds) {
  set(CURLOPT_TIMEOUT_MS, milliseconds);
  return m_optionResult;
}

CURLcode CurlTransfer::run(const std::function<int()>& wait) {
  CURLcode result = CURLE_FAILED_INIT;
  if (curl_multi_add_handle(m_multi.get(), m_easy.get()) != CURLM_OK)
    return result;
  int running = 0;
  while (curl_multi_perform(m_multi.get(), &running) == CURLM_OK && !finished(result)) {
    const int failure = wait();
    if (failure != 0) {
      result = static_cast<CURLcode>(failure);
      m_waitFailed = failure != CURLE_ABORTED_BY_CALLBACK;
      break;
    }
  }
  curl_multi_remove_handle(m_multi.get(), m_easy.get());
  return withBody(result);
}

/// What is wrong with the body says more than that the library was told to end.
CURLcode CurlTransfer::withBody(CURLcode result) const {
  if (m_bodyFailure != CURLE_OK)
    return m_bodyFailure;
  return result == CURLE_OK && m_gzip && !m_gzip->isWhole() ? CURLE_BAD_CONTENT_ENCODING : result;
}

bool CurlTransfer::finished(CURLcode& result) {
  int left = 0;
  const CURLMsg* const message = curl_multi_info_read(m_multi.get(), &left);
  if (message == nullptr || message->msg != CURLMSG_DONE)
    return false;
  result = message->data.result;
  return true;
}

CURLMcode CurlTransfer::waitForNetwork(int milliseconds) {
  return curl_multi_poll(m_multi.get(), nullptr, 0, milliseconds, nullptr);
}

void CurlTransfer::wake() {
  curl_multi_wakeup(m_multi.get());
}

std::size_t CurlTransfer::bodyBytesSent() const {
  curl_off_t sent = 0;
  curl_easy_getinfo(m_easy.get(), CURLINFO_SIZE_UPLOAD_T, &sent);
  return static_cast<std::size_t>(sent);
}

std::size_t CurlTransfer::takeHeader(char* data, std::size_t size, std::size_t count, void* self) {
  auto& transfer = *static_cast<CurlTransfer*>(self);
  std::string line(data, size * count);
  while (!line.empty() && (line.back() == '\n' || line.back() == '\r'))
    line.pop_back();
  if (line.compare(0, 5, "HTTP/") == 0)
    transfer.readStatusLine(line);
  else if (line.empty())
    transfer.beginBody();
  else
    transfer.readHeader(line);
  return size * count;
}

void CurlTransfer::beginBody() {
  m_headComplete = m_answer.status >= 200;
  const std::string_view encoding = m_answer.header("Content-Encoding");
  if (!m_takesGzip || encoding.empty() || strcasecmp(encoding.data(), "identity") == 0)
    return;
  const auto encodings =
      std::count_if(m_answer.headers.begin(), m_answer.headers.end(),
                    [](const Header& header) { return isNamed(header, "Content-Encoding"); });
  if (encodings == 1 &&
      (strcasecmp(encoding.data(), "gzip") == 0 || strcasecmp(encoding.data(), "x-gzip") == 0))
    m_gzip.emplace();
  else
    m_bodyFailure = CURLE_BAD_CONTENT_ENCODING;
}

void CurlTransfer::readHeader(const std::string& line) {
  const std::size_t colon = line.find(':');
  if (colon == std::string::npos)
    return;
  const std::size_t value = line.find_first_not_of(" \t", colon + 1);
  Header header(line.substr(0, colon), value == std::string::npos ? std::string() : line.substr(value));
  if (isNamed(header, "Location"))
    meetRedirection(header.second);
  if (m_answer.headers.size() < MOST_HEADERS)
    m_answer.headers.push_back(std::move(header));
}

/// What was asked for over https is not taken from anywhere else, whatever the way there was. Nobody but the
/// server that was meant gets the caller's headers, which may hold a key.
void CurlTransfer::meetRedirection(const std::string& target) {
  m_redirects = true;
  const char* from = nullptr;
  if (curl_easy_getinfo(m_easy.get(), CURLINFO_EFFECTIVE_URL, &from) != CURLE_OK || !from)
    return;
  if (strncasecmp(from, "https:", 6) == 0)
    set(CURLOPT_REDIR_PROTOCOLS_STR, "https");
  if (leadsToAnotherServer(from, target))
    set(CURLOPT_HTTPHEADER, m_headersForOthers.get());
}

/// True also for an address that the library refuses.
bool CurlTransfer::leadsToAnotherServer(const char* from, const std::string& target) const {
  const std::unique_ptr<CURLU, AddressCleanup> address(curl_url());
  if (curl_url_set(address.get(), CURLUPART_URL, from, 0) != CURLUE_OK ||
      curl_url_set(address.get(), CURLUPART_URL, target.c_str(), 0) != CURLUE_OK)
    return true;
  const auto isSame = [&](CURLUPart part) {
    char* here = nullptr;
    char* there = nullptr;
    curl_url_get(m_address.get(), part, &here, CURLU_DEFAULT_PORT);
    curl_url_get(address.get(), part, &there, CURLU_DEFAULT_PORT);
    const bool same = here && there && strcasecmp(here, there) == 0;
    curl_free(here);
    curl_free(there);
    return same;
  };
  return !isSame(CURLUPART_SCHEME) || !isSame(CURLUPART_HOST) || !isSame(CURLUPART_PORT);
}

/// As in "HTTP/1.1 404 Not Found". One of these comes with every answer on the way.
void CurlTransfer::readStatusLine(const std::string& line) {
  m_headComplete = m_redirects = false;
  m_answer.statusText.clear();
  m_answer.headers.clear();
  m_gzip.reset();
  m_bodyFailure = CURLE_OK;
  const std::size_t code = line.find(' ');
  m_answer.status =
      code == std::string::npos ? 0 : static_cast<unsigned>(std::strtoul(line.c_str() + code, nullptr, 10));
  const std::size_t text = code == std::string::npos ? code : line.find(' ', code + 1);
  if (text != std::string::npos)
    m_answer.statusText = line.substr(text + 1);
}

std::size_t CurlTransfer::takeBody(char* data, std::size_t size, std::size_t count, void* self) {
  const std::size_t length = size * count;
  return static_cast<CurlTransfer*>(self)->appendToBody(data, length) ? length : 0;
}

bool CurlTransfer::appendToBody(const char* data, std::size_t length) {
  std::vector<std::uint8_t>& body = m_answer.body;
  if (m_gzip) {
    const GzipReader::Result result = m_gzip->take(data, length, body, m_bodyLimit);
    if (result == GzipReader::Result::TooLarge)
      m_bodyFailure = CURLE_FILESIZE_EXCEEDED;
    else if (result == GzipReader::Result::Broken)
      m_bodyFailure = CURLE_BAD_CONTENT_ENCODING;
  } else if (length > m_bodyLimit - body.size()) {
    m_bodyFailure = CURLE_FILESIZE_EXCEEDED;
  } else {
    body.insert(body.end(), data, data + length);
  }
  return m_bodyFailure == CURLE_OK;
}

std::size_t CurlTransfer::giveBody(char* buffer, std::size_t size, std::size_t count, void* self) {
  auto& transfer = *static_cast<CurlTransfer*>(self);
  transfer.m_bodyStarted = true;
  const std::size_t length =
      std::min({size * count, transfer.m_pieceSize, transfer.m_post->size() - transfer.m_postOffset});
  std::memcpy(buffer, transfer.m_post->data() + transfer.m_postOffset, length);
  transfer.m_postOffset += length;
  if (length != 0)
    transfer.m_pieceWritten(length);
  return length;
}

} // namespace Tallymoor
