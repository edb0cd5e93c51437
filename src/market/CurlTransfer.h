#pragma once
#include "market/GzipReader.h"
#include "market/HTTPAnswer.h"
#include <cstddef>
#include <cstdint>
#include <curl/curl.h>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace Tallymoor {

class URL;

/// One request at a time over libcurl, with the connections that it keeps for the next one. Redirections are
/// followed within http and https, and never from https to http. Used by one thread at a time, except for
/// wake.
class CurlTransfer {
public:
  CurlTransfer();
  CurlTransfer(const CurlTransfer&) = delete;
  CurlTransfer& operator=(const CurlTransfer&) = delete;

  /// False when the library could not give the handles.
  bool isReady() const { return m_easy && m_multi; }

  // --- Before the request; each gives 0 or the library's code

  /// Forgets the last request and sets what all requests have in common.
  CURLcode begin(std::size_t bodyLimit);
  /// Whom to talk to: scheme, host and port of the address.
  CURLcode setServer(const URL& url);
  /// The port that setServer chose, as text.
  std::string port() const;
  /// What to ask for. Control bytes are refused; blanks and bytes beyond ASCII are percent-encoded. The
  /// headers go to the server of the address alone, apart from those that say what is accepted.
  CURLcode setRequest(const URL& url, const HTTPHeaders& headers);
  /// For a server of a test: the certificates in this file are trusted, and no others.
  CURLcode setTrustedCertificates(const std::string& file);
  /// Posts a body, which must outlive the transfer, in pieces of at most pieceSize bytes. The observer is
  /// told of each.
  CURLcode setPost(const std::vector<std::uint8_t>& body, std::size_t pieceSize,
                   std::function<void(std::size_t)> pieceWritten);
  CURLcode setConnectTimeout(long milliseconds);
  CURLcode setReceiveTimeout(long milliseconds);
  /// From the first step to the last byte, redirections included.
  CURLcode setWholeTimeout(long milliseconds);

  // --- The request

  /// Runs until the answer is there or the transfer failed, and returns the library's code. wait is called
  /// while nothing can be done and returns 0, or a code that ends the transfer.
  CURLcode run(const std::function<int()>& wait);
  /// What run's wait does as a rule: waits for the network or for wake.
  CURLMcode waitForNetwork(int milliseconds);
  /// Ends the waiting. Any thread.
  void wake();

  // --- The answer

  /// True when the head of the answer itself arrived, not only that of a redirection to it.
  bool hasAnswer() const { return m_headComplete && !isRedirection(); }
  /// True when waiting itself failed.
  bool waitFailed() const { return m_waitFailed; }
  HTTPAnswer& answer() { return m_answer; }
  bool bodyStarted() const { return m_bodyStarted; }
  std::size_t bodyBytesSent() const;

private:
  struct EasyCleanup {
    void operator()(CURL* handle) const { curl_easy_cleanup(handle); }
  };
  struct MultiCleanup {
    void operator()(CURLM* handle) const { curl_multi_cleanup(handle); }
  };
  struct AddressCleanup {
    void operator()(CURLU* handle) const { curl_url_cleanup(handle); }
  };
  struct ListCleanup {
    void operator()(curl_slist* list) const { curl_slist_free_all(list); }
  };

  static std::size_t takeHeader(char* data, std::size_t size, std::size_t count, void* self);
  static std::size_t takeBody(char* data, std::size_t size, std::size_t count, void* self);
  static std::size_t giveBody(char* buffer, std::size_t size, std::size_t count, void* self);
  void readHeader(const std::string& line);
  void meetRedirection(const std::string& target);
  bool leadsToAnotherServer(const char* from, const std::string& target) const;
  void beginBody();
  bool appendToBody(const char* data, std::size_t length);
  void readStatusLine(const std::string& line);
  bool isRedirection() const { return m_answer.status >= 300 && m_answer.status < 400 && m_redirects; }
  template <class Value>
  void set(CURLoption option, Value value);
  bool finished(CURLcode& result);
  CURLcode withBody(CURLcode result) const;

  std::unique_ptr<CURLM, MultiCleanup> m_multi; ///< keeps the connections; outlives the other handle
  std::unique_ptr<CURL, EasyCleanup> m_easy;
  std::unique_ptr<CURLU, AddressCleanup> m_address; ///< of the server; made to check its parts
  std::string m_server;                             ///< the same as text
  std::unique_ptr<curl_slist, ListCleanup> m_headers;
  std::unique_ptr<curl_slist, ListCleanup> m_headersForOthers; ///< those without the caller's secrets
  CURLcode m_optionResult = CURLE_OK;                          ///< the first refusal of an option

  std::size_t m_bodyLimit = 0;
  HTTPAnswer m_answer;
  bool m_headComplete = false;
  bool m_redirects = false;
  bool m_takesGzip = false;
  std::optional<GzipReader> m_gzip; ///< while a compressed body comes
  CURLcode m_bodyFailure = CURLE_OK;
  bool m_waitFailed = false;

  const std::vector<std::uint8_t>* m_post = nullptr; ///< not owned
  std::size_t m_postOffset = 0;
  std::size_t m_pieceSize = 0;
  bool m_bodyStarted = false;
  std::function<void(std::size_t)> m_pieceWritten;
};

} // namespace Tallymoor
