#pragma once
#include "support/TestProfile.h"
#include "support/windows/TestWindow.h"
#include <deque>
#include <functional>
#include <fx.h>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

namespace Tallymoor {

/// Fixture of all tests with real windows: a toolkit application on the display of Xvfb and a minimal main
/// window, created for each test. Modal windows are answered by steps, which are queued before they open:
///
///     whenModal("Buy Shares", [&](FXWindow& dialog) {
///       type(field(dialog, "Stock code"), "ABC.AX");
///       press(dialog, "OK");
///     });
///     answer("You must select the number of shares purchased.", "OK");
///     whenModal("Buy Shares", [&](FXWindow& dialog) { press(dialog, "Cancel"); });
///     EXPECT_EQ(0u, dialog.execute());
///
/// Each step waits until the topmost modal window is the one it names. A modal window without a step fails
/// the test and is cancelled, so that nothing hangs. Steps that were not reached fail the test at its end. An
/// event loop that does not end aborts the program.
class WindowTest : public ::testing::Test {
public:
  using Step = std::function<void(FXWindow& window)>;

protected:
  WindowTest();
  ~WindowTest() override;
  void SetUp() override;
  void TearDown() override;
  /// Override to use another main window. SetUp creates and shows it.
  virtual std::unique_ptr<MainWindow> makeWindow(FXApp* app);

  TestProfile& profile() { return m_profile; }
  FXApp& app() { return *m_app; }
  MainWindow& mainWindow() { return *m_window; }
  /// The fixture's own main window.
  TestWindow& window() { return dynamic_cast<TestWindow&>(*m_window); }
  /// Deletes the main window before the end of the test.
  void deleteWindow() { m_window.reset(); }

  /// Queues a step for the modal window with this title or this text, or with a label that contains the text.
  void whenModal(const std::string& titleOrText, Step step);
  /// Queues an answer to the message box with exactly this text: presses the button ("OK", "Yes", "No").
  void answer(const std::string& text, const std::string& button);
  /// Runs the event loop until the condition holds. Fails after the watchdog's time.
  bool runUntil(const std::function<bool()>& condition);
  /// Handles all pending events, wake-ups and paints, also those of background work that has begun.
  void letEventsPass();
  /// Waits for background work whose outcome the windows show. False if none was begun since the last call.
  virtual bool awaitBackgroundWork() { return false; }
  /// Texts of the answered message boxes, in order.
  const std::vector<std::string>& boxes() const { return m_boxes; }

  // Finding widgets. A required widget that is missing throws std::runtime_error, which fails the test.
  /// A button, check button, radio button or menu command by its text (without "&") or its tip.
  static FXWindow* findButton(FXWindow& in, const std::string& label);
  static FXWindow& button(FXWindow& in, const std::string& label);
  /// The text field in the row of the label.
  static FXTextField& field(FXWindow& in, const std::string& label);
  /// The first widget of a class in tab order; null if there is none.
  template <typename Widget>
  static Widget* find(FXWindow& in) {
    if (auto* found = dynamic_cast<Widget*>(&in))
      return found;
    for (FXWindow* child = in.getFirst(); child; child = child->getNext())
      if (auto* found = find<Widget>(*child))
        return found;
    return nullptr;
  }
  template <typename Widget>
  static std::vector<Widget*> findAll(FXWindow& in) {
    std::vector<Widget*> all;
    if (auto* found = dynamic_cast<Widget*>(&in))
      all.push_back(found);
    for (FXWindow* child = in.getFirst(); child; child = child->getNext())
      for (Widget* found : findAll<Widget>(*child))
        all.push_back(found);
    return all;
  }
  /// Texts of a window's labels, including buttons, in tab order.
  static std::vector<std::string> labels(FXWindow& in);
  static bool shows(FXWindow& in, const std::string& text);
  static std::string title(FXWindow& window);

  // Simulating the user.
  /// Presses a button through its keyboard handling. A disabled button fails the test.
  void press(FXWindow& in, const std::string& label);
  void press(FXWindow& button);
  /// Replaces a field's text by typing.
  void type(FXTextField& field, const std::string& text);
  /// Sends a key to the focused window, as the window manager would. The code is one of the toolkit's KEY_
  /// codes.
  void key(FXWindow& shell, FXuint code, FXuint state = 0);

private:
  class Driver;
  struct Awaited {
    std::string text;
    bool isBox;
    Step step;
  };
  void startTicking();
  void tick();
  void meet(FXWindow& modal);
  void takeStep(FXWindow& modal);
  static bool matches(FXWindow& window, const Awaited& awaited);
  static void refuse(FXWindow& window);

  TestProfile m_profile;
  std::unique_ptr<FXApp> m_app;
  std::unique_ptr<Driver> m_driver;
  std::unique_ptr<MainWindow> m_window;
  std::deque<Awaited> m_awaited;
  std::vector<std::string> m_boxes;
  std::vector<FXWindow*> m_inStep; ///< Modal windows whose step is running.
  FXWindow* m_strange = nullptr;   ///< The modal window without a step, and how long it has been open.
  unsigned m_strangeTicks = 0;
};

} // namespace Tallymoor
