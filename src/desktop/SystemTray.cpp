#include "desktop/SystemTray.h"

namespace Tallymoor {

SystemTray::Watcher::~Watcher() = default;

SystemTray::~SystemTray() = default;

} // namespace Tallymoor
