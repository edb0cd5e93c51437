#include "ShellTest.h"
#include "foundation/Constants.h"
#include "market/LocatorSet.h"
#include "support/LoopbackPeer.h"
#include "support/TestHttpServer.h"
#include "views/SharePortfolioTreeItem.h"
#include "views/TotalCapTreeItem.h"
#include <X11/Xlib.h>
#include <X11/keysym.h>
#include <atomic>
#include <csignal>
#include <thread>

namespace Tallymoor {
namespace {

const String CODE = u"ABC.AX";
const char* const PROGRESS = "Updating daily capital records for Trading";

/// Sends keys over a separate connection to the display.
class OtherClient {
public:
  OtherClient() : m_display(XOpenDisplay(nullptr)) {}
  ~OtherClient() { XCloseDisplay(m_display); }
  OtherClient(const OtherClient&) = delete;
  OtherClient& operator=(const OtherClient&) = delete;

  /// Sends Escape to the window with this title as soon as it exists.
  void pressEscape(const std::string& title) {
    Window window = None;
    while ((window = find(title)) == None)
      std::this_thread::yield();
    XEvent event{};
    event.xkey.type = KeyPress;
    event.xkey.display = m_display;
    event.xkey.window = window;
    event.xkey.root = DefaultRootWindow(m_display);
    event.xkey.keycode = XKeysymToKeycode(m_display, XK_Escape);
    event.xkey.same_screen = True;
    XSendEvent(m_display, window, False, NoEventMask, &event);
    XSync(m_display, False);
  }

private:
  Window find(const std::string& title) {
    Window root = None, parent = None, found = None;
    Window* children = nullptr;
    unsigned count = 0;
    XQueryTree(m_display, DefaultRootWindow(m_display), &root, &parent, &children, &count);
    for (unsigned i = 0; i < count && found == None; ++i) {
      char* name = nullptr;
      XWindowAttributes attributes{};
      if (XFetchName(m_display, children[i], &name) && name == title &&
          XGetWindowAttributes(m_display, children[i], &attributes) && attributes.map_state == IsViewable)
        found = children[i];
      XFree(name);
    }
    XFree(children);
    return found;
  }

  Display* m_display;
};

/// The main window with a source whose history pages arrive byte by byte and never end.
class SlowHistoryTest : public ShellTest {
protected:
  static constexpr int WHOLE_PAGE = 1000000;

  SlowHistoryTest()
      : m_peer([this](LoopbackPeer::Connection& connection) {
          connection.readHead();
          connection.write("HTTP/1.1 200 OK\r\nContent-Type: text/html\r\nContent-Length: " +
                           std::to_string(WHOLE_PAGE) + "\r\n\r\n");
          for (; m_written < WHOLE_PAGE && connection.write(" "); ++m_written) {
            if (m_written == 5)
              m_meanwhile();
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
          }
        }) {
    const String locators = profile().configFolder() + HISTORICAL_PRICE_LOCATORS_FILE;
    std::string text = TestProfile::readFile(locators);
    const std::string ofMarket = ":" + std::to_string(market().server().port());
    const std::string address = m_peer.address().toUTF8(); // "http://127.0.0.1:PORT/"
    const std::string ofPeer = address.substr(address.rfind(':'), address.size() - 1 - address.rfind(':'));
    for (std::size_t at = text.find(ofMarket); at != std::string::npos; at = text.find(ofMarket))
      text.replace(at, ofMarket.size(), ofPeer);
    TestProfile::writeFile(locators, text);
    TestProfile::writeFile(
        recordsPath(),
        "<Portfolios><SharePortfolio><String>Trading</String><HeldShares/><SoldShares/><Dividends/>"
        "<CashReserve><CashEvent><Date>2/1/2025</Date><Constant>5000.00</Constant><Constant>4</Constant>"
        "<String>DEPOSIT </String></CashEvent></CashReserve><String/></SharePortfolio></Portfolios>");
  }

  SharePortfolioUser& portfolio() {
    return tallymoor().totalCapital()->portfolioNode(u"Trading")->portfolio();
  }
  /// More than a year, so that a progress dialog opens.
  void computeTheRecord() {
    {
      BigMutexLock lock;
      portfolio().buyShares(CODE, {Date(2025, 1, 2), 100, 10, 0, String()});
    }
    command(TallymoorWindow::ID_REFRESH_PRICES);
  }

  std::function<void()> m_meanwhile;
  std::atomic<int> m_written = 0;
  LoopbackPeer m_peer;
};

TEST_F(SlowHistoryTest, EscapeInTheProgressDialogEndsTheFetchAndTheWalk) {
  OtherClient keyboard;
  m_meanwhile = [&] { keyboard.pressEscape(PROGRESS); };
  computeTheRecord();
  m_peer.join();
  EXPECT_GT(m_written, 5);
  EXPECT_LT(m_written, WHOLE_PAGE);
  EXPECT_TRUE(boxes().empty()) << boxes().front();
  BigMutexLock lock;
  EXPECT_FALSE(portfolio().capitalRecord().hasDayCap(Date())) << "no day is computed with a substitute";
  EXPECT_TRUE(tallymoor().shown());
}

TEST_F(SlowHistoryTest, ASignalToEndIsObeyedAndAllIsSaved) {
  m_meanwhile = [] { kill(getpid(), SIGTERM); };
  computeTheRecord();
  EXPECT_TRUE(runUntil([] { return !TallymoorInternet::exists(); }))
      << "the end has begun and has been reached";
  m_peer.join();
  EXPECT_LT(m_written, WHOLE_PAGE);
  EXPECT_TRUE(boxes().empty()) << boxes().front();
  EXPECT_NE(TestProfile::readFile(recordsPath()).find("BUY 100.00 of ABC.AX @ 10.0000"), std::string::npos);
}

} // namespace
} // namespace Tallymoor
