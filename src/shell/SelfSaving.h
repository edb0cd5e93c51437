#pragma once
#include "foundation/String.h"
#include "widgets/GuiWakeUp.h"
#include <fx.h>
#include <optional>

namespace Tallymoor {

class TallymoorWindow;

/// In milliseconds.
struct SavingDelays {
  FXuint afterChange = 5'000;
  FXuint whileBusy = 500;
  FXuint afterFailure = 60'000;
};

/// Saves the records some seconds after the last change. The window is held only while copies are made; a
/// thread of its own writes them. While a dialog or popup is open, and while the portfolios are loaded, it
/// waits. A failure is shown as a warning that stays, and is tried again; the journal has all changes
/// meanwhile.
///
/// GUI thread.
class SelfSaving : public FXObject {
  FXDECLARE_ABSTRACT(SelfSaving)
public:
  enum { ID_SAVE = 1 };

  /// For windows made from now on; nothing for those that never save by themselves.
  static void setDelays(const std::optional<SavingDelays>& delays) { s_delays = delays; }

  explicit SelfSaving(TallymoorWindow& window);
  ~SelfSaving() override;
  SelfSaving(const SelfSaving&) = delete;
  SelfSaving& operator=(const SelfSaving&) = delete;

  /// For good, before the portfolios go. What is under way comes to its end.
  void stop();

  long onSave(FXObject*, FXSelector, void*);

private:
  void saveIn(FXuint milliseconds);
  void begin();
  void written();
  void tellFailure(const String& reason);

  inline static std::optional<SavingDelays> s_delays = SavingDelays();

  TallymoorWindow& m_window;
  FXApp* m_app;
  std::optional<SavingDelays> m_delays;
  GuiWakeUp m_written;
};

} // namespace Tallymoor
