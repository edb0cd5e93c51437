#include "updates/UpdateSettings.h"
#include "foundation/Exception.h"
#include "market/URL.h"
#include <arpa/inet.h>
#include <optional>

namespace Tallymoor {

namespace {

UpdateSettings& settingsInForce() {
  static UpdateSettings settings = UpdateSettings::ofThisBuild();
  return settings;
}

/// Nothing where the text is no address.
std::optional<URL> addressOf(const String& text) {
  try {
    return URL(text);
  } catch (const Exception&) {
    return std::nullopt;
  }
}

bool isLoopback(const String& host) {
  in_addr address{};
  return host == String(u"localhost") || (::inet_pton(AF_INET, host.toUTF8().c_str(), &address) == 1 &&
                                          ntohl(address.s_addr) >> 24 == IN_LOOPBACKNET);
}

} // namespace

bool UpdateSettings::isServiceLocal() const {
  const std::optional<URL> address = addressOf(queryBase);
  return address && isLoopback(address->host());
}

bool UpdateSettings::isServiceSafe() const {
  const std::optional<URL> address = addressOf(queryBase);
  return address && (address->scheme() == String(u"https") || isServiceLocal());
}

UpdateSettings UpdateSettings::ofThisBuild() {
  UpdateSettings settings;
  settings.queryBase = TALLYMOOR_UPDATE_SERVICE;
  settings.publicKey = TALLYMOOR_UPDATE_KEY;
  return settings;
}

UpdateSettings UpdateSettings::current() {
  return settingsInForce();
}

void UpdateSettings::setCurrent(const UpdateSettings& settings) {
  settingsInForce() = settings;
}

} // namespace Tallymoor
