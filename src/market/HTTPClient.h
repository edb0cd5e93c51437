#pragma once
#include "foundation/Exception.h"
#include "market/HTTPAnswer.h"
#include <cstddef>
#include <cstdint>
#include <memory>
#include <stop_token>
#include <vector>

namespace Tallymoor {

class URL;

/// Fetches pages and files. Having no client object is what "offline" means.
///
/// The fetches may be called on any thread, several at once; hold the client by shared_ptr for the time of a
/// fetch that runs outside the big mutex. Every failure is an HTTPException, whose code is the HTTP status
/// when getPage met a status other than 200, and 0 otherwise. A stop that is requested ends a fetch under way
/// at once, with a failure.
class HTTPClient {
public:
  /// The largest body taken, in bytes: of a page or picture, and of a program update.
  static constexpr std::size_t PAGE_BODY_LIMIT = 10u * 1024 * 1024;
  static constexpr std::size_t UPDATE_BODY_LIMIT = 200u * 1024 * 1024;

  virtual ~HTTPClient();

  /// To be called once before the first fetch. Succeeds when any network interface is up.
  virtual void goOnline() = 0;
  /// The answer of the server, whatever its status. These headers are sent beside the client's own and
  /// replace those of the same name; they are not sent on to another server by a redirection. Answers may
  /// come compressed by gzip, unless the headers name another Accept-Encoding.
  virtual HTTPAnswer get(const URL& url, const HTTPHeaders& headers, const std::stop_token& stop = {}) = 0;
  /// The page as text: bytes that are no valid UTF-8 are read as Latin-1; the text ends at a zero byte.
  String getPage(const URL& url, const std::stop_token& stop = {});
  /// Replaces body by the bytes that the server sent, as they are.
  void getPage(const URL& url, std::vector<std::uint8_t>& body, const std::stop_token& stop = {});

  /// Bodies larger than this fail, of all fetches that begin from now on. PAGE_BODY_LIMIT until set.
  virtual void setBodyLimit(std::size_t bytes) = 0;
};

/// A new client of this platform, not yet online.
std::unique_ptr<HTTPClient> createHTTPClient();

} // namespace Tallymoor
