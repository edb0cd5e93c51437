#pragma once
#include "foundation/Exception.h"
#include "foundation/String.h"
#include "updates/UpdateSettings.h"
#include "xml/SmallDocuments.h"
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <stop_token>
#include <vector>

namespace Tallymoor {

class HTTPClient;

/// Asks the update service, over https or on this machine. A reply is bounded in size. Used by one thread.
class UpdateService {
public:
  // The largest replies that are taken, in bytes.
  static constexpr std::size_t LIST_LIMIT = 1024 * 1024;
  static constexpr std::size_t SIGNATURE_LIMIT = 4096;

  /// Every fetch ends with a failure when the token's stop is requested. The settings outlive it.
  UpdateService(const UpdateSettings& settings, std::stop_token stop);
  ~UpdateService();
  UpdateService(const UpdateService&) = delete;
  UpdateService& operator=(const UpdateService&) = delete;

  /// Throws HTTPException, or Exception for an address that is not safe.
  std::vector<std::uint8_t> fetch(const String& fileName, std::size_t limit);
  /// The reply to BINARY_UPDATES_FILE or CONFIG_UPDATES_FILE. Throws Exception
  /// "Updates::getBinaryUpdates ...", with the same words for both.
  std::unique_ptr<XMLVersionsAvailable> fetchOffered(const String& listName);
  std::vector<std::uint8_t> fetchSignature(const String& fileName);

private:
  const UpdateSettings& m_settings;
  const std::stop_token m_stop;
  const std::unique_ptr<HTTPClient> m_client;
  std::optional<HTTPException> m_connectFailure; ///< of the client; every fetch throws it
};

} // namespace Tallymoor
