#pragma once
#include "foundation/String.h"
#include "widgets/GuiWakeUp.h"
#include <set>

namespace FX {
class FXApp;
}

namespace Tallymoor {

/// Warns of stocks whose prices are doubtful, and withdraws each warning once the user has decided or the
/// source has corrected the price. GUI thread; needs the main window.
class DoubtWarnings {
public:
  explicit DoubtWarnings(FX::FXApp* app);
  ~DoubtWarnings();
  DoubtWarnings(const DoubtWarnings&) = delete;
  DoubtWarnings& operator=(const DoubtWarnings&) = delete;

private:
  void tell();

  std::set<String> m_told; ///< codes
  GuiWakeUp m_wakeUp;
};

} // namespace Tallymoor
