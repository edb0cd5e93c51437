#pragma once
#include "foundation/BigMutex.h"
#include "foundation/Exception.h"
#include "foundation/String.h"
#include <fx.h>
#include <memory>

namespace Tallymoor {

class StatusTexts;
class UserInteraction;

/// The general layer of the program's one window: fonts, frames, status bar, message boxes, and the way out.
/// It knows nothing of shares; the application's window derives from it. There is one at a time, reached by
/// Instance().
///
/// Everything here is for the GUI thread, except where an operation says otherwise. The message operations
/// open no box while a background pass holds the big mutex, nor on another thread: the text then goes to the
/// status line, and a question counts as answered with No.
class MainWindow : public FXMainWindow {
  FXDECLARE_ABSTRACT(MainWindow)
public:
  enum { ID_SHUTDOWN = FXMainWindow::ID_LAST, ID_MAINWINDOW, ID_LAST };

  /// The window becomes Instance() and what the lower folders talk to (UserInteraction::Instance). The icons
  /// are the caller's; null is allowed.
  MainWindow(FXApp* app, FXIcon* icon, FXIcon* miniIcon);
  ~MainWindow() override;

  /// The one window, from any thread. Throws Exception "MainWindow::Instance - no MainWindow yet!".
  static MainWindow& Instance();
  static bool exists();
  /// The big mutex. Throws as Instance.
  static BigMutex& mutex();

  static void information(const String& text);
  /// True when the answer is Yes; closing the box or Escape is No.
  static bool question(const String& text);
  static void warning(const String& text);
  static void error(const String& text);
  /// One error box: the context, a blank, the exception's description.
  static void reportException(const String& context, const Exception& exception);

  /// The passing text of the status line, and the text that it goes back to. From any thread; the later call
  /// wins.
  static void setStatusText(const String& text);
  static void setNormalStatusText(const String& text);
  static void beginWait();
  static void endWait();

  /// False on any thread but the GUI's, and while a background pass runs: then nothing may open a dialog.
  bool mayOpenDialog() const;

  // What the application's window supplies.
  /// Fills the caption of every message box.
  virtual void applicationTitle(String& title) const;
  /// Saves all data.
  virtual void saveAll();
  /// Ends the program: saves, stops the threads, quits the toolkit's loop. Called once, by onShutdown, with
  /// the big mutex held and no dialog open.
  virtual void shutdown() = 0;
  /// The window was minimised, or dragged off the screen: hide it where a tray can take it.
  virtual void minimiseToTray() = 0;
  /// Called often, when the toolkit updates the window's widgets.
  virtual void updateStatus() = 0;
  /// Tells something once a run for its key (always, for an empty key). Level 0 is information, 1 warning, 2
  /// error.
  virtual void warnOnce(const String& text, const String& caption, const String& key, int level);
  /// What was warned of with that key is over.
  virtual void warningOver(const String& key);

  /// True from the moment at which the shut-down begins.
  bool isShuttingDown() const { return m_shuttingDown; }

  FXFont* normalFont() const { return m_normalFont.get(); }
  FXFont* boldFont() const { return m_boldFont.get(); }     ///< headings, tab labels
  FXFont* largeFont() const { return m_largeFont.get(); }   ///< dialog banners
  FXFont* largerFont() const { return m_largerFont.get(); } ///< dialog titles

  // From top to bottom.
  FXMenuBar* menuBar() const { return m_menuBar; }
  FXVerticalFrame* contentFrame() const { return m_contentFrame; } ///< fills the window
  FXVerticalFrame* panelFrame() const {
    return m_panelFrame;
  } ///< a strip below the contents, as high as its widgets
  FXHorizontalFrame* statusFrame() const { return m_statusFrame; } ///< holds the status bar
  FXStatusBar* statusBar() const { return m_statusBar; }

  /// Makes fonts and widgets on the display, then shows the window.
  void create() override;

  /// Exit, "Alt+F4", the close box and the signals that end a process all come here. Runs shutdown() once.
  /// While a dialog, popup or handler is still under way, dialogs are cancelled and the shut-down waits until
  /// all have returned.
  long onShutdown(FXObject*, FXSelector, void*);
  /// A window whose x and y are both negative counts as minimised.
  long onConfigure(FXObject*, FXSelector, void*);
  long onUpdate(FXObject*, FXSelector, void*);
  long onMinimise(FXObject*, FXSelector, void*);
  long onUnmap(FXObject*, FXSelector, void*);
  long onMap(FXObject*, FXSelector, void*);

protected:
  MainWindow();

  /// Where the window's inside now stands on the screen.
  FXPoint placeOnScreen() const;

private:
  void buildFonts();
  void buildFrames();
  void watchSignals();
  void ignoreSignals();
  void runShutdown();
  void cancelModalWindow();

  std::unique_ptr<FXFont> m_normalFont;
  std::unique_ptr<FXFont> m_boldFont;
  std::unique_ptr<FXFont> m_largeFont;
  std::unique_ptr<FXFont> m_largerFont;
  FXFont* m_previousNormalFont = nullptr;
  FXMenuBar* m_menuBar = nullptr;
  FXVerticalFrame* m_contentFrame = nullptr;
  FXVerticalFrame* m_panelFrame = nullptr;
  FXHorizontalFrame* m_statusFrame = nullptr;
  FXStatusBar* m_statusBar = nullptr;
  std::unique_ptr<StatusTexts> m_statusTexts;
  std::unique_ptr<UserInteraction> m_interaction;
  bool m_shuttingDown = false;
  bool m_shutdownWaits = false;
  bool m_minimiseTold = false;
};

} // namespace Tallymoor
