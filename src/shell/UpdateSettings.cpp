#include "shell/UpdateSettings.h"

namespace Tallymoor {

namespace {

UpdateSettings& settingsInForce() {
  static UpdateSettings settings = UpdateSettings::ofThisBuild();
  return settings;
}

} // namespace

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
