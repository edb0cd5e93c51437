#pragma once
#include "foundation/String.h"
#include "widgets/GuiWakeUp.h"
#include <deque>
#include <fx.h>
#include <vector>

namespace Tallymoor {

/// Warnings that may come at any moment, below the window's contents: nothing has to be answered, and each
/// stays until the user closes it. A few are shown at a time; the next takes the place of a closed one. No
/// height while there is none.
class WarningStrip : public FXVerticalFrame {
  FXDECLARE(WarningStrip)
public:
  enum { ID_CLOSE_WARNING = FXVerticalFrame::ID_LAST, ID_LAST };
  static constexpr std::size_t SHOWN_AT_ONCE = 4;

  explicit WarningStrip(FXComposite* parent);

  /// Level 0 is information, 1 warning, 2 error. Under the big mutex, on any thread and in the middle of
  /// anything: the widgets come when the toolkit's loop is reached.
  void add(const String& caption, const String& text, int level);

  /// What is shown, oldest first.
  std::vector<String> shownTexts() const;
  std::size_t waiting() const { return m_waiting.size(); }

  long onCloseWarning(FXObject* sender, FXSelector, void*);

protected:
  WarningStrip();

private:
  struct Warning {
    String caption;
    String text;
    int level;
  };
  struct ShownWarning {
    FXHorizontalFrame* row;
    FXButton* close;
    String text;
    bool closed = false;
  };

  void catchUp();
  void show(const Warning& warning);

  std::deque<Warning> m_waiting; ///< guarded by the big mutex
  std::vector<ShownWarning> m_shown;
  GuiWakeUp m_wakeUp;
};

} // namespace Tallymoor
