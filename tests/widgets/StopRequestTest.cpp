#include "widgets/StopRequest.h"
#include "foundation/Exception.h"
#include "foundation/UserInteraction.h"
#include "support/windows/WindowTest.h"
#include "widgets/HandlerScope.h"
#include "widgets/ProgressDialog.h"
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/keysym.h>
#include <csignal>
#include <thread>

namespace Tallymoor {
namespace {

/// Work that blocks the toolkit's event loop and polls whether it should stop.
class StopRequestTest : public WindowTest, public HasLengthyFunctions {
protected:
  static bool isWanted() { return UserInteraction::Instance().isStopWanted(); }

  /// Leaves an unhandled key in the toolkit's queue.
  void sendKey(FXWindow& to, KeySym key) {
    XEvent event{};
    event.xkey.type = KeyPress;
    event.xkey.window = static_cast<Window>(to.id());
    event.xkey.root = DefaultRootWindow(display());
    event.xkey.keycode = XKeysymToKeycode(display(), key);
    event.xkey.same_screen = True;
    send(to, event);
  }
  /// Sends a window manager protocol message.
  void sendProtocol(FXWindow& to, const char* name) {
    XEvent event{};
    event.xclient.type = ClientMessage;
    event.xclient.window = static_cast<Window>(to.id());
    event.xclient.message_type = XInternAtom(display(), "WM_PROTOCOLS", False);
    event.xclient.format = 32;
    event.xclient.data.l[0] = static_cast<long>(XInternAtom(display(), name, False));
    send(to, event);
  }
  void send(FXWindow& to, XEvent& event) {
    event.xany.display = display();
    XSendEvent(display(), static_cast<Window>(to.id()), False, NoEventMask, &event);
    XSync(display(), False);
  }
  Display* display() { return static_cast<Display*>(app().getDisplay()); }

  void runLengthyFunction(Progress& progress, int) override { m_work(progress); }
  std::function<void(Progress&)> m_work;
};

TEST_F(StopRequestTest, WithoutAnEventTheWorkContinues) {
  EXPECT_FALSE(isWanted());
}

TEST_F(StopRequestTest, EscapeIsConsumedAndKeptUntilTheEventLoopRuns) {
  sendKey(mainWindow(), XK_Escape);
  EXPECT_TRUE(isWanted());
  EXPECT_TRUE(isWanted());
  letEventsPass();
  EXPECT_FALSE(isWanted()) << "the key is gone, and so is the request";
}

TEST_F(StopRequestTest, OtherThreadsAreNotConcerned) {
  sendKey(mainWindow(), XK_Escape);
  std::thread([] { EXPECT_FALSE(isWanted()); }).join();
  EXPECT_TRUE(isWanted());
}

TEST_F(StopRequestTest, OtherKeysStayForTheLoop) {
  sendKey(mainWindow(), XK_Return);
  EXPECT_FALSE(isWanted());
  EXPECT_GT(XEventsQueued(display(), QueuedAlready), 0);
}

TEST_F(StopRequestTest, EscapeDoesNotCloseTheFormWhoseWorkItEnds) {
  FXDialogBox form(&mainWindow(), "Form");
  bool wanted = false;
  whenModal("Form", [&](FXWindow& dialog) {
    sendKey(dialog, XK_Escape);
    wanted = isWanted();
    letEventsPass();
    EXPECT_TRUE(dialog.shown());
    dialog.handle(&dialog, FXSEL(SEL_COMMAND, FXDialogBox::ID_CANCEL), nullptr);
  });
  form.execute();
  EXPECT_TRUE(wanted);
}

TEST_F(StopRequestTest, TheKeysOfAProgressDialogEndTheWork) {
  for (const KeySym key : {XK_Escape, XK_Return, XK_space}) {
    bool wanted = false;
    m_work = [&](Progress& progress) {
      auto& dialog = dynamic_cast<ProgressDialog&>(progress);
      sendKey(dialog, key);
      wanted = isWanted();
    };
    UserInteraction::Instance().runLengthy(u"Caption", u"Heading", 5, *this, 0);
    EXPECT_TRUE(wanted) << key;
    letEventsPass();
  }
}

TEST_F(StopRequestTest, TheCancelButtonOfAProgressDialogEndsTheWork) {
  m_work = [this](Progress& progress) {
    auto& dialog = dynamic_cast<ProgressDialog&>(progress);
    FXWindow& cancel = button(dialog, "Cancel");
    for (const int type : {ButtonPress, ButtonRelease}) {
      XEvent event{};
      event.xbutton.type = type;
      event.xbutton.window = static_cast<Window>(cancel.id());
      event.xbutton.root = DefaultRootWindow(display());
      event.xbutton.button = Button1;
      event.xbutton.x = event.xbutton.y = 5;
      event.xbutton.same_screen = True;
      event.xbutton.state = type == ButtonRelease ? Button1Mask : 0;
      send(cancel, event);
    }
    EXPECT_TRUE(isWanted());
  };
  UserInteraction::Instance().runLengthy(u"Caption", u"Heading", 5, *this, 0);
}

TEST_F(StopRequestTest, OnlyTheCloseButtonOfAWindowManagerEndsTheWork) {
  m_work = [this](Progress& progress) {
    auto& dialog = dynamic_cast<ProgressDialog&>(progress);
    sendProtocol(dialog, "WM_TAKE_FOCUS");
    sendProtocol(dialog, "_NET_WM_PING");
    EXPECT_FALSE(isWanted());
    std::this_thread::sleep_for(std::chrono::milliseconds(60)); // The poll looks a few times per second.
    sendProtocol(dialog, "WM_DELETE_WINDOW");
    EXPECT_TRUE(isWanted());
  };
  UserInteraction::Instance().runLengthy(u"Caption", u"Heading", 5, *this, 0);
}

TEST_F(StopRequestTest, ATerminationSignalIsSeenAtOnceAndStillExits) {
  window().onShutdownRuns = [] { throw Exception(u"not yet"); };
  int shutdowns = 0;
  for (const int number : {SIGTERM, SIGINT, SIGHUP}) {
    guardedHandler(u"busy", [&] {
      EXPECT_FALSE(isWanted());
      raise(number);
      EXPECT_TRUE(isWanted());
    });
    answer("MainWindow::onShutdown failed. Exception : not yet", "OK");
    ++shutdowns;
    EXPECT_TRUE(runUntil([&] { return window().shutdowns == shutdowns && !mainWindow().isShuttingDown(); }));
    EXPECT_FALSE(isWanted()) << "the end has begun";
  }
}

} // namespace
} // namespace Tallymoor
