#pragma once
#include <functional>
#include <memory>

namespace FX {
class FXApp;
}

namespace Tallymoor {

/// Wakes the GUI thread from any thread: wake() never blocks, and calls coalesce, so the handler takes all
/// that is waiting at once. The handler runs on the GUI thread, in modal loops too. Must die before the
/// application does; a wake-up on its way to a dead one is dropped.
class GuiWakeUp {
public:
  GuiWakeUp(FX::FXApp* app, std::function<void()> onWake);
  ~GuiWakeUp();
  GuiWakeUp(const GuiWakeUp&) = delete;
  GuiWakeUp& operator=(const GuiWakeUp&) = delete;
  void wake();

private:
  class Receiver;
  std::unique_ptr<Receiver> m_receiver;
};

} // namespace Tallymoor
