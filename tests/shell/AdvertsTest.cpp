#include "RecordingPlatform.h"
#include "ShellTest.h"
#include "TestPaths.h"
#include "market/TallymoorInternet.h"
#include "shell/AdvertPicture.h"
#include "shell/AdvertStrip.h"
#include "support/MessageOf.h"
#include "support/TestHttpServer.h"
#include "support/windows/RealKeys.h"
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>

namespace Tallymoor {
namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes sampleGif(const std::string& name) {
  std::ifstream file(std::filesystem::path(TALLYMOOR_SAMPLES) / "adverts" / name, std::ios::binary);
  return Bytes(std::istreambuf_iterator<char>(file), {});
}

// ---- Pictures ----

TEST(AdvertPictureTest, ACompleteGifIsValid) {
  EXPECT_TRUE(isSoundGif(sampleGif("brokers.gif")));
  EXPECT_TRUE(isSoundGif(sampleGif("deposits.gif")));
}

TEST(AdvertPictureTest, ATruncatedGifIsInvalid) {
  const Bytes whole = sampleGif("brokers.gif");
  ASSERT_GT(whole.size(), 1000u);
  for (std::size_t length = 0; length < whole.size(); ++length)
    EXPECT_FALSE(isSoundGif(Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length))))
        << length;
}

TEST(AdvertPictureTest, WrongSizesAreInvalid) {
  for (const std::size_t sizeAt : {6u, 8u}) {
    Bytes huge = sampleGif("brokers.gif");
    huge[sizeAt] = huge[sizeAt + 1] = 0x7F;
    EXPECT_FALSE(isSoundGif(huge));
    Bytes none = sampleGif("brokers.gif");
    none[sizeAt] = none[sizeAt + 1] = 0;
    EXPECT_FALSE(isSoundGif(none));
  }
}

TEST(AdvertPictureTest, OtherFilesAreInvalid) {
  EXPECT_FALSE(isSoundGif({}));
  const std::string page = "<html><body>GIF89a</body></html>";
  EXPECT_FALSE(isSoundGif(Bytes(page.begin(), page.end())));
}

// ---- The strip in the window ----

/// The real window with an advert service on the loopback interface. The test makes the fetch passes itself.
class AdvertsTest : public ShellTest {
protected:
  AdvertsTest() : m_platform(RecordingPlatform::install(profile(), {})) {}

  void SetUp() override {
    ShellTest::SetUp();
    m_server.setFallback([this](const TestHttpServer::Request& request) {
      return request.target.find("image=") == std::string::npos ? document() : picture();
    });
    m_adverts.base = String(m_server.url("/ads").c_str());
    m_thread = std::make_unique<AdvertThread>(m_adverts, strip().pending());
  }
  void TearDown() override {
    m_thread.reset();
    ShellTest::TearDown();
  }

  TestHttpServer::Response document() const {
    return {200, "<Advertisement url=\"" + m_url + "\" image=\"" + m_name + "\"/>"};
  }
  TestHttpServer::Response picture() const { return {200, std::string(m_picture.begin(), m_picture.end())}; }
  AdvertStrip& strip() { return *tallymoor().adverts(); }
  void pass() {
    const BigMutexRelease release;
    m_thread->runPass();
  }
  String failureOfPass() {
    return messageOf([this] { pass(); });
  }
  /// Makes a pass and handles the resulting update message.
  void fetchAndShow(const std::string& url) {
    m_url = url;
    pass();
    tallymoor().updateStatus();
  }
  void click(FXuint place) {
    FXEvent event{};
    tallymoor().handle(&app(), FXSEL(SEL_LEFTBUTTONPRESS, place), &event);
  }
  std::size_t numRequests() const { return m_server.requests().size(); }

  RecordingPlatform& m_platform;
  TestHttpServer m_server;
  std::unique_ptr<AdvertThread> m_thread;
  std::string m_url = "http://one.example/";
  std::string m_name = "brokers.gif";
  Bytes m_picture = sampleGif("brokers.gif");
};

TEST_F(AdvertsTest, StripTakesNoRoomUntilThereIsAnAdvert) {
  EXPECT_FALSE(strip().shown());
  fetchAndShow("http://one.example/");
  letEventsPass();
  EXPECT_TRUE(strip().shown());
  EXPECT_EQ(60, strip().getHeight());
}

TEST_F(AdvertsTest, SecondAdvertMovesToTheFirstPlace) {
  fetchAndShow("http://one.example/");
  EXPECT_EQ(String(), strip().advertUrl1());
  EXPECT_EQ(String(u"http://one.example/"), strip().advertUrl2());
  fetchAndShow("http://two.example/");
  EXPECT_EQ(String(u"http://one.example/"), strip().advertUrl1());
  EXPECT_EQ(String(u"http://two.example/"), strip().advertUrl2());
}

TEST_F(AdvertsTest, LineStandsOnlyBetweenTwoAdverts) {
  const std::vector<FXVerticalSeparator*> lines = findAll<FXVerticalSeparator>(strip());
  ASSERT_EQ(1u, lines.size());
  fetchAndShow("http://one.example/");
  EXPECT_FALSE(lines[0]->shown());
  fetchAndShow("http://two.example/");
  EXPECT_TRUE(lines[0]->shown());
}

TEST_F(AdvertsTest, NothingIsFetchedWhileOneWaits) {
  pass();
  const std::size_t requests = numRequests();
  EXPECT_EQ(2u, requests);
  pass();
  EXPECT_EQ(requests, numRequests());
  tallymoor().updateStatus();
  pass();
  EXPECT_EQ(requests + 2, numRequests());
}

TEST_F(AdvertsTest, NothingIsFetchedOffline) {
  TallymoorInternet::Instance().goOffline();
  pass();
  EXPECT_EQ(0u, numRequests());
}

TEST_F(AdvertsTest, GoingOfflineAbortsAFetch) {
  m_server.stall();
  AdvertThread& thread = *m_thread;
  thread.start();
  ASSERT_TRUE(m_server.waitForRequests(1));
  TallymoorInternet::Instance().goOffline();
  thread.connectionIsGone();
  thread.stop();
  {
    const BigMutexRelease release;
    thread.join(); // Only after the fetch has ended.
  }
  EXPECT_TRUE(strip().pending().image.empty());
  m_server.release();
}

TEST_F(AdvertsTest, ClickOpensTheLinkOfItsPlace) {
  fetchAndShow("http://one.example/");
  fetchAndShow("https://two.example/");
  click(TallymoorWindow::ID_AD1);
  click(TallymoorWindow::ID_AD2);
  EXPECT_EQ((std::vector<String>{u"http://one.example/", u"https://two.example/"}), m_platform.opened());
}

TEST_F(AdvertsTest, TheTabKeyComesToBothLinksAndReturnOrSpaceOpensThem) {
  fetchAndShow("http://one.example/");
  fetchAndShow("https://two.example/");
  letEventsPass();
  tallymoor().setFocus();
  runUntil([this] { return tallymoor().hasFocus(); });
  RealKeys keys(app());
  const std::vector<FXWindow*> stops = tabStops(keys, tallymoor(), tallymoor());
  for (FXImageFrame* link : findAll<FXImageFrame>(strip())) {
    EXPECT_NE(stops.end(), std::find(stops.begin(), stops.end(), link));
    for (const FXuint code : {KEY_Return, KEY_space, KEY_KP_Enter, KEY_a}) {
      link->setFocus();
      keys.press(tallymoor(), code);
    }
  }
  const String one = u"http://one.example/", two = u"https://two.example/";
  EXPECT_EQ((std::vector<String>{one, one, one, two, two, two}), m_platform.opened());
}

TEST_F(AdvertsTest, ClickBeforeAnyAdvertCameDoesNothing) {
  click(TallymoorWindow::ID_AD1);
  click(TallymoorWindow::ID_AD2);
  EXPECT_TRUE(m_platform.opened().empty());
}

TEST_F(AdvertsTest, OnlyWebAddressesAreOpened) {
  for (const char* url : {"file:///etc/passwd", "/usr/bin/true", "-h", "mailto:a@b.example", ""}) {
    fetchAndShow(url);
    click(TallymoorWindow::ID_AD2);
  }
  EXPECT_TRUE(m_platform.opened().empty());
}

TEST_F(AdvertsTest, BrokenPicturesAreNotTaken) {
  m_picture.resize(m_picture.size() / 2);
  EXPECT_EQ(String(u"AdvertThread::fetch - not a picture that can be shown: brokers.gif"), failureOfPass());
  EXPECT_TRUE(strip().pending().image.empty());
  m_picture.clear();
  EXPECT_EQ(String(u"AdvertThread::fetch - not a picture that can be shown: brokers.gif"), failureOfPass());
  tallymoor().updateStatus();
  EXPECT_FALSE(strip().shown());
}

TEST_F(AdvertsTest, NameOfAPictureMustBePlain) {
  m_name = "../../secret?x=1";
  EXPECT_EQ(String(u"AdvertThread::fetch - not the name of a picture: ../../secret?x=1"), failureOfPass());
  EXPECT_EQ(1u, numRequests());
}

// The toolkit must decode or reject every file that passes the check.
TEST_F(AdvertsTest, DamagedPicturesNeverDisturbTheWindow) {
  std::mt19937 random(20260303);
  const Bytes whole = sampleGif("deposits.gif");
  int sound = 0;
  for (int round = 0; round < 2000; ++round) {
    Bytes damaged = whole;
    for (int change = 0; change < 3; ++change)
      damaged[13 + random() % (damaged.size() - 13)] = static_cast<std::uint8_t>(random());
    if (!isSoundGif(damaged))
      continue;
    ++sound;
    strip().pending() = {damaged, u"http://one.example/"};
    strip().showPending();
    EXPECT_TRUE(strip().pending().image.empty());
  }
  EXPECT_GT(sound, 100);
  letEventsPass();
  EXPECT_LE(strip().getHeight(), 60);
}

TEST_F(AdvertsTest, LargePictureIsScaledToTheStrip) {
  // One black pixel in a picture of 1200 by 600: the toolkit fills in missing data.
  Bytes large = {'G', 'I',  'F', '8', '9', 'a', 0xB0, 0x04, 0x58, 0x02, 0x80, 0, 0, 0,    0,    0, 255, 255,
                 255, 0x2C, 0,   0,   0,   0,   0xB0, 0x04, 0x58, 0x02, 0,    2, 2, 0x44, 0x01, 0, 0x3B};
  ASSERT_TRUE(isSoundGif(large));
  strip().pending() = {large, u"http://one.example/"};
  strip().showPending();
  letEventsPass();
  EXPECT_LE(strip().getHeight(), 60);
  for (const FXImageFrame* frame : findAll<FXImageFrame>(strip()))
    if (frame->getImage()) {
      EXPECT_LE(frame->getImage()->getHeight(), 52);
      EXPECT_LE(frame->getImage()->getWidth(), 468);
    }
}

TEST_F(AdvertsTest, UserCanSwitchThemOff) {
  AdvertSettings::setForTest(nullptr);
  EXPECT_TRUE(AdvertSettings::current().wanted);
  Settings::Instance().writeUnsigned(u"Operation", u"ShowAdverts", 0);
  EXPECT_FALSE(AdvertSettings::current().wanted);
  AdvertThread off(AdvertSettings::current(), strip().pending());
  EXPECT_FALSE(off.isRunning());
}

} // namespace
} // namespace Tallymoor
