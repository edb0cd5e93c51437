#pragma once
#include "foundation/EndingSignals.h"
#include <chrono>
#include <fx.h>
#include <thread>

namespace Tallymoor {

class ProgressDialog;

/// Whether the user or the system wants what a handler does to end, for work that keeps the toolkit's loop
/// waiting, as a fetch of prices. Looks at the events that wait, and runs no handler: Escape is taken away,
/// so that it does not close a form afterwards; while a progress dialog is open its keys, its Cancel and its
/// close button count, and stay for it. Belongs to the GUI thread; another one gets no for an answer.
class StopRequest : public FXObject {
  FXDECLARE(StopRequest)
public:
  enum { ID_LOOP = 1 };

  explicit StopRequest(FXApp* app);
  ~StopRequest() override;

  /// True from the request on until the toolkit's loop has its turn; after an ending signal until the end has
  /// begun. May be asked often: it looks at the events a few times a second.
  bool isWanted();
  /// Without another look at the events.
  bool wasWanted() const { return m_wanted || EndingSignalsNoted::hasCome(); }
  /// The user has said so in another way.
  void want();
  /// The progress dialog that is open now, not owned; null for none.
  void setProgress(const ProgressDialog* dialog) { m_progress = dialog; }

  long onLoop(FXObject*, FXSelector, void*);

protected:
  StopRequest() = default;

private:
  bool isInEvents();

  FXApp* m_app = nullptr;
  const std::thread::id m_thread = std::this_thread::get_id();
  const ProgressDialog* m_progress = nullptr;
  bool m_wanted = false;
  std::chrono::steady_clock::time_point m_nextLook;
  EndingSignalsNoted m_signals;
};

} // namespace Tallymoor
