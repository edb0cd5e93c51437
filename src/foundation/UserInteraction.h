#pragma once
#include "foundation/Date.h"
#include "foundation/Exception.h"
#include "foundation/LengthyFunctions.h"
#include "foundation/String.h"
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace Tallymoor {

/// A ratio of two integers. For a share split, 5:2 turns two shares into five.
struct WholeRatio {
  std::int32_t first = 1;
  std::int32_t second = 1;
  bool operator==(const WholeRatio&) const = default;
};

/// User interaction for the layers below the windows; the main window implements it. Questions and messages:
/// GUI thread only. Status texts: any thread.
class UserInteraction {
public:
  virtual ~UserInteraction();

  // Message boxes. Each returns after the user has closed it.
  virtual void information(const String& text) = 0;
  /// True if the answer is Yes.
  virtual bool question(const String& text) = 0;
  virtual void warning(const String& text) = 0;
  virtual void error(const String& text) = 0;
  /// Shows an error box: the context, a blank, the exception's description.
  virtual void reportException(const String& context, const Exception& exception) = 0;

  /// Set the status line's temporary text and its default text. Any thread.
  virtual void setStatusText(const String& text) = 0;
  virtual void setNormalStatusText(const String& text) = 0;
  /// Show and hide the wait cursor. Calls nest; WaitCursor pairs them.
  virtual void beginWait() = 0;
  virtual void endWait() = 0;

  /// Shows a warning once per run and key. Level: 0 information, 1 warning, 2 error.
  virtual void warnOnce(const String& text, const String& caption, const String& key, int level) = 0;

  /// The cause of this warning has ended. Removes it from the display.
  virtual void warningOver(const String& key) = 0;

  /// Returns the index of the chosen entry. Empty if the user cancelled.
  virtual std::optional<std::size_t> chooseFromList(const String& title, const String& heading,
                                                    const std::vector<String>& entries) = 0;
  /// Empty if the user cancelled.
  virtual std::optional<Date> askDate(const String& title, const String& heading, const Date& initial) = 0;
  /// Asks for two numbers from 1 to the maximum. The remark explains them. Empty if the user cancelled.
  virtual std::optional<WholeRatio> askRatio(const String& title, const String& heading, const String& remark,
                                             std::int32_t maximum, const WholeRatio& initial) = 0;

  /// Runs the work under a modal progress dialog. Returns false if the user cancelled.
  virtual bool runLengthy(const String& caption, const String& heading, unsigned steps,
                          HasLengthyFunctions& work, int argument) = 0;

  /// True if the user (Escape, or Cancel in the progress dialog) or a termination signal asked to stop the
  /// current work. Reset when the work's handler returns. Runs no event handlers, so a fetch may poll it. GUI
  /// thread.
  virtual bool isStopWanted();

  /// The main window. Throws Exception "MainWindow::Instance - no MainWindow yet!" if there is none.
  static UserInteraction& Instance();
  static bool exists();
  /// Not owned. Null removes it.
  static void setInstance(UserInteraction* interaction);
};

/// Shows the wait cursor for a scope. Call end() to hide it earlier, before a question for example.
class WaitCursor {
public:
  /// Does nothing during a background pass or without a main window.
  explicit WaitCursor(bool wanted = true);
  ~WaitCursor();
  void end();
  WaitCursor(const WaitCursor&) = delete;
  WaitCursor& operator=(const WaitCursor&) = delete;

private:
  bool m_shown;
};

} // namespace Tallymoor
