#pragma once
#include "widgets/GuiWakeUp.h"
#include <functional>
#include <fx.h>
#include <memory>

namespace Tallymoor {

/// A GuiWakeUp for redrawing after prices, of which hundreds may come within seconds: the
/// handler runs at the first call of wake, and then not again before a rest is over, however many calls come
/// meanwhile. So the window answers in between. The last call is always followed by a run of the handler.
class PacedWakeUp : public FXObject {
  FXDECLARE_ABSTRACT(PacedWakeUp)
public:
  enum { ID_RESTED = 1 };

  /// As GuiWakeUp.
  PacedWakeUp(FXApp* app, std::function<void()> onWake);
  ~PacedWakeUp() override;
  PacedWakeUp(const PacedWakeUp&) = delete;
  PacedWakeUp& operator=(const PacedWakeUp&) = delete;

  /// From any thread.
  void wake() { m_wakeUp.wake(); }

  /// How long all of them rest from now on, in milliseconds. 0 for none, as in tests that look at once.
  static void setRest(FXuint milliseconds);

  long onRested(FXObject*, FXSelector, void*);

private:
  void run();

  FXApp* m_app;
  std::function<void()> m_onWake;
  bool m_resting = false;
  bool m_wokenMeanwhile = false;
  std::shared_ptr<bool> m_alive = std::make_shared<bool>(true); ///< the handler may delete this object
  GuiWakeUp m_wakeUp;
};

} // namespace Tallymoor
