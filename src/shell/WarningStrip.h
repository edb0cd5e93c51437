#pragma once
#include "foundation/String.h"
#include "widgets/GuiWakeUp.h"
#include <deque>
#include <fx.h>
#include <set>
#include <vector>

namespace Tallymoor {

/// Warnings that may come at any moment, below the window's contents: nothing has to be answered, and each
/// stays until the user closes it or its cause has gone. A few are shown at a time; the next takes the place
/// of one that went. No height while there is none.
///
/// A warning may have a key, by which it follows its cause.
class WarningStrip : public FXVerticalFrame {
  FXDECLARE(WarningStrip)
public:
  enum { ID_CLOSE_WARNING = FXVerticalFrame::ID_LAST, ID_LAST };
  static constexpr std::size_t SHOWN_AT_ONCE = 4;

  explicit WarningStrip(FXComposite* parent);

  // Under the big mutex, on any thread and in the middle of anything: the widgets follow when the toolkit's
  // loop is reached.

  /// Level 0 is information, 1 warning, 2 error.
  void add(const String& caption, const String& text, int level, const String& key = String());
  /// The warning with this key still holds: its text becomes this one where it shows or waits, and it comes
  /// back if it was withdrawn. What the user has closed stays closed.
  void follow(const String& caption, const String& text, const String& key, int level);
  /// The cause of the warning with this key has gone.
  void withdraw(const String& key);

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
    String key;
  };
  struct ShownWarning {
    FXHorizontalFrame* row;
    FXLabel* label;
    FXButton* close;
    Warning warning;
    bool over = false; ///< goes with the next wake-up
  };

  void catchUp();
  void show(const Warning& warning);
  void bringUpToDate(ShownWarning& shown) const;

  // Guarded by the big mutex.
  std::deque<Warning> m_waiting;
  std::vector<ShownWarning> m_shown;
  std::set<String> m_withdrawn; ///< keys of warnings whose cause went while they were open
  GuiWakeUp m_wakeUp;
};

} // namespace Tallymoor
