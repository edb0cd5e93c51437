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

/// Two whole numbers as of a share split: 5:2 for five shares that two became.
struct WholeRatio {
  std::int32_t first = 1;
  std::int32_t second = 1;
  bool operator==(const WholeRatio&) const = default;
};

/// What the folders below the windows may ask of the user and tell him. The main window implements it.
/// Questions and messages are for the GUI thread; the status texts may be set from any thread.
class UserInteraction {
public:
  virtual ~UserInteraction();

  // Message boxes. They come back when the user has closed them.
  virtual void information(const String& text) = 0;
  /// True when the answer is Yes.
  virtual bool question(const String& text) = 0;
  virtual void warning(const String& text) = 0;
  virtual void error(const String& text) = 0;
  /// One error box: the context, a blank, the exception's description.
  virtual void reportException(const String& context, const Exception& exception) = 0;

  /// The passing text of the status line, and the text that it goes back to. Any thread.
  virtual void setStatusText(const String& text) = 0;
  virtual void setNormalStatusText(const String& text) = 0;
  /// Show and end the wait cursor; they nest. WaitCursor calls them in pairs.
  virtual void beginWait() = 0;
  virtual void endWait() = 0;

  /// A warning that is shown once a run for its key. Level 0 is information, 1 warning, 2 error.
  virtual void warnOnce(const String& text, const String& caption, const String& key, int level) = 0;

  /// The cause of the warning with this key has gone: what still shows of it goes, too.
  virtual void warningOver(const String& key) = 0;

  /// Index of the chosen entry; nothing when the user cancelled.
  virtual std::optional<std::size_t> chooseFromList(const String& title, const String& heading,
                                                    const std::vector<String>& entries) = 0;
  /// Nothing when the user cancelled.
  virtual std::optional<Date> askDate(const String& title, const String& heading, const Date& initial) = 0;
  /// Nothing when the user cancelled; otherwise two numbers from 1 to the maximum. The remark says what they
  /// stand for.
  virtual std::optional<WholeRatio> askRatio(const String& title, const String& heading, const String& remark,
                                             std::int32_t maximum, const WholeRatio& initial) = 0;

  /// Runs the work under a modal progress dialog; false when the user cancelled it.
  virtual bool runLengthy(const String& caption, const String& heading, unsigned steps,
                          HasLengthyFunctions& work, int argument) = 0;

  /// True from when the user (Escape, or Cancel of the progress dialog) or the system (a signal that ends the
  /// program) wants the work under way to end, until its handler has returned. Looks without running any
  /// handler, so that a fetch may ask this in its midst. GUI thread.
  virtual bool isStopWanted();

  /// The windows' side. Throws Exception "MainWindow::Instance - no MainWindow yet!" when there is none.
  static UserInteraction& Instance();
  static bool exists();
  /// Not owned; null takes it away.
  static void setInstance(UserInteraction* interaction);
};

/// The wait cursor for a scope. It ends before any question; end() may be called early, once.
class WaitCursor {
public:
  /// Does nothing while a background pass runs or when there is no window.
  explicit WaitCursor(bool wanted = true);
  ~WaitCursor();
  void end();
  WaitCursor(const WaitCursor&) = delete;
  WaitCursor& operator=(const WaitCursor&) = delete;

private:
  bool m_shown;
};

} // namespace Tallymoor
