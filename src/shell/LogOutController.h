#pragma once
#include "desktop/SessionClient.h"
#include <optional>

namespace Tallymoor {

class TallymoorWindow;

/// What is saved when the user logs out of the desktop. GUI thread.
class LogOutController {
public:
  explicit LogOutController(TallymoorWindow& window);

  SessionClient& client() { return m_client; }

private:
  std::optional<bool> save();
  bool nothingToLose();
  bool saveUnasked(bool recordsOnly);

  TallymoorWindow& m_window;
  SessionClient m_client;
};

} // namespace Tallymoor
