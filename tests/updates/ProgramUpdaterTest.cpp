#include "updates/ProgramUpdater.h"
#include "TestPaths.h"
#include "foundation/BigMutex.h"
#include "foundation/Platform.h"
#include "foundation/Settings.h"
#include "support/updates/UpdatesTest.h"
#include "updates/UpdateCheck.h"
#include "updates/UpdateHandover.h"
#include "xml/CountryOfResidence.h"
#include <cstdlib>
#include <gmock/gmock.h>
#include <thread>

namespace Tallymoor {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Kind = FakeUserInteraction::Kind;

const String AVAILABLE = u"Updates are available. Please use the 'Tools/Check For Updates' menu to download.";
const String INSTALLED = u"Updates were installed.\nYou should restart as soon as possible.";
const String DOWNLOADING = u"Updates are downloading, you will be notified when they are ready.";
const String NONE = u"There are currently no updates available.";
const String QUESTION = u"Updates are available. Download now in the background?";

/// Passes run on the test's own thread unless a test starts the updater's thread.
class ProgramUpdaterTest : public UpdatesTest {
protected:
  ProgramUpdaterTest() {
    CountryOfResidence::destroyInstance();
    Settings::Instance().writeString(u"Config", u"Country", u"Australia");
    CountryOfResidence::Instance();
    UpdateSettings::setCurrent(idle());
  }
  ~ProgramUpdaterTest() override {
    UpdateSettings::setCurrent(UpdateSettings::ofThisBuild());
    CountryOfResidence::destroyInstance();
  }

  /// The service's settings with a thread that makes no pass by itself.
  UpdateSettings idle() {
    UpdateSettings settings = service().settings();
    settings.startDelay = settings.period;
    return settings;
  }
  void offerCountries() {
    service().offerDocuments({{"CountryConfig.xml", "6.0.0"}});
    service().serveSigned("CountryConfig.xml", countries(6));
  }
  /// Waits until this number of balloons has been shown.
  void awaitBalloons(std::size_t count) {
    for (int i = 0; i < 3000 && user().calls(Kind::WarnOnce).size() < count; ++i)
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    EXPECT_LE(count, user().calls(Kind::WarnOnce).size());
  }
  /// Waits for the end of the thread's downloading pass, which is shown in the status line.
  void awaitDownload(ProgramUpdater& updater) {
    for (int i = 0; i < 3000 && user().texts(Kind::NormalStatus).size() < 2; ++i)
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    updater.stopAndJoin();
  }
  /// Lets the thread's pass download, then wait for the next one.
  void download(ProgramUpdater& updater) {
    const std::size_t before = user().texts(Kind::NormalStatus).size();
    updater.requestDownload();
    for (int i = 0; i < 3000 && user().texts(Kind::NormalStatus).size() < before + 2; ++i)
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    EXPECT_EQ(before + 2, user().texts(Kind::NormalStatus).size());
  }
  /// A download whose document has a wrong signature.
  void failToDownload(ProgramUpdater& updater) {
    offerCountries();
    service().serve("CountryConfig.xml.sig", std::string(64, 's'));
    download(updater);
    ASSERT_TRUE(balloons().back().text.startsWith(u"Failed to download updates: "));
  }
  /// Keys of the ended warnings, in order.
  std::vector<String> takenBack() {
    std::vector<String> keys;
    for (const auto& call : user().calls(Kind::WarningOver))
      keys.push_back(call.key);
    return keys;
  }
  std::vector<FakeUserInteraction::Call> balloons() { return user().calls(Kind::WarnOnce); }
};

// --- Warnings that end with their cause

TEST_F(ProgramUpdaterTest, AFailuresWarningEndsWhenTheNextDownloadBegins) {
  ProgramUpdater updater(idle());
  failToDownload(updater);
  EXPECT_THAT(takenBack(), IsEmpty());
  failToDownload(updater);
  ASSERT_EQ(2u, balloons().size());
  EXPECT_THAT(takenBack(), ElementsAre(balloons()[0].key)) << "the second one is still shown";
}

TEST_F(ProgramUpdaterTest, AFailuresWarningEndsWhenThereIsNothingToDownload) {
  ProgramUpdater updater(idle());
  failToDownload(updater);
  updater.runPass();
  EXPECT_EQ(AVAILABLE, balloons().back().text);
  EXPECT_THAT(takenBack(), IsEmpty()) << "it can fail again";
  service().offerDocuments({});
  updater.runPass();
  EXPECT_THAT(takenBack(), ElementsAre(balloons()[1].key, balloons()[0].key));
}

TEST_F(ProgramUpdaterTest, AFailedCheckEndsNoWarning) {
  ProgramUpdater updater(idle());
  failToDownload(updater);
  service().server().stop();
  updater.runPass();
  EXPECT_THAT(takenBack(), IsEmpty());
}

TEST_F(ProgramUpdaterTest, TheWarningOfAvailableUpdatesEndsWithTheNextCheckAndTheDownload) {
  offerCountries();
  ProgramUpdater updater(idle());
  updater.runPass();
  ASSERT_EQ(AVAILABLE, balloons().at(0).text);
  EXPECT_THAT(takenBack(), IsEmpty());
  updater.runPass();
  EXPECT_THAT(takenBack(), ElementsAre(balloons().at(0).key)) << "the second check shows it again";
  download(updater);
  ASSERT_EQ(INSTALLED, balloons().at(2).text);
  EXPECT_THAT(takenBack(), ElementsAre(balloons()[0].key, balloons()[1].key));
  service().offerDocuments({{"CountryConfig.xml", "7.0.0"}});
  service().serveSigned("CountryConfig.xml", countries(7));
  download(updater);
  ASSERT_EQ(4u, balloons().size());
  EXPECT_EQ(INSTALLED, balloons()[3].text);
  EXPECT_EQ(balloons()[2].key, takenBack().back()) << "one of them is enough";
}

// --- The pass that only checks

TEST_F(ProgramUpdaterTest, EveryPassThatFindsUpdatesShowsItsBalloonAgain) {
  service().offerProgramFiles({{"Tallymoor.exe", "2.0.0"}});
  ProgramUpdater updater(idle());
  updater.runPass();
  updater.runPass();
  ASSERT_EQ(2u, balloons().size());
  for (const auto& balloon : balloons()) {
    EXPECT_EQ(AVAILABLE, balloon.text);
    EXPECT_EQ(String(u"Tallymoor Updates"), balloon.title);
    EXPECT_EQ(0, balloon.level);
    EXPECT_TRUE(balloon.key.startsWith(u"updates"));
  }
  EXPECT_EQ(balloons()[0].key.substr(7).toLong() + 1, balloons()[1].key.substr(7).toLong());
  EXPECT_THAT(folder().waiting(), IsEmpty()) << "it only asks";
}

TEST_F(ProgramUpdaterTest, PassWithoutUpdatesSaysNothing) {
  ProgramUpdater updater(idle());
  updater.runPass();
  EXPECT_TRUE(user().calls().empty());
}

TEST_F(ProgramUpdaterTest, MissingNetworkShowsInTheStatusLineOnly) {
  service().server().stop();
  ProgramUpdater updater(idle());
  updater.runPass();
  ASSERT_EQ(1u, user().calls().size());
  EXPECT_TRUE(user().texts(Kind::Status)[0].startsWith(
      u"ProgramUpdater::threadFunction failed: Exception : Updates::getBinaryUpdates - Problem getting "
      u"updates: "));
}

TEST_F(ProgramUpdaterTest, APassDoesNotReportOmittedProgramFiles) {
  std::filesystem::remove("FxEx-1.0.0.dll");
  offerCountries();
  ProgramUpdater updater(idle());
  updater.runPass();
  ASSERT_EQ(1u, user().calls().size());
  EXPECT_EQ(AVAILABLE, balloons()[0].text);
}

TEST_F(ProgramUpdaterTest, OfflineNothingIsAskedAndADownloadWaitsForTheConnection) {
  offerCountries();
  TallymoorInternet::Instance().goOffline();
  UpdateSettings settings = service().settings();
  settings.startDelay = settings.period;
  ProgramUpdater updater(settings);
  updater.runPass();
  EXPECT_TRUE(user().calls().empty());
  checkForUpdates(updater);
  ASSERT_EQ(1u, user().calls().size());
  EXPECT_TRUE(user().texts(Kind::Information)[0].startsWith(u"You are working offline."));

  updater.requestDownload();
  updater.stopAndJoin(); // Its pass has not downloaded anything.
  EXPECT_TRUE(balloons().empty());
  market().addListing(u"TEST.AX", u"test", u"Australia");
  ASSERT_TRUE(TallymoorInternet::Instance().reconnect());
  updater.start();
  updater.connectionIsBack();
  awaitBalloons(1);
  updater.stopAndJoin();
  EXPECT_EQ(INSTALLED, balloons()[0].text);
}

TEST_F(ProgramUpdaterTest, ADownloadDoesNotWaitForTheFirstPass) {
  offerCountries();
  ProgramUpdater updater(idle());
  updater.requestDownload();
  awaitBalloons(1);
  updater.stopAndJoin();
  EXPECT_EQ(INSTALLED, balloons()[0].text);
}

TEST_F(ProgramUpdaterTest, TheThreadMakesItsFirstPassByItself) {
  service().offerProgramFiles({{"Tallymoor.exe", "2.0.0"}});
  const ProgramUpdater updater(service().settings());
  awaitBalloons(1);
}

// --- The pass that downloads

TEST_F(ProgramUpdaterTest, DownloadPutsDocumentsInPlaceAndReloads) {
  TallymoorInternet& gateway = TallymoorInternet::Instance();
  market().setCurrentPrice(u"ABC", 12.5);
  EXPECT_EQ(12.5, gateway.currentPrice(u"ABC", false, true));
  TestHttpServer elsewhere;
  std::string moved = locators("CurrentPriceLocators.xml", 6);
  const std::string before = ":" + std::to_string(market().server().port());
  for (std::size_t at = moved.find(before); at != std::string::npos; at = moved.find(before, at + 1))
    moved.replace(at, before.size(), ":" + std::to_string(elsewhere.port()));
  service().offerDocuments({{"CurrentPriceLocators.xml", "6.0.0"}, {"CountryConfig.xml", "6.0.0"}});
  service().serveSigned("CurrentPriceLocators.xml", moved);
  service().serveSigned("CountryConfig.xml", countries(6));
  EXPECT_EQ(5, CountryOfResidence::Instance().financialYearStart().month());

  ProgramUpdater updater(service().settings());
  awaitBalloons(1);
  user().clearCalls();
  updater.requestDownload();
  awaitBalloons(1);
  updater.stopAndJoin();

  EXPECT_EQ(INSTALLED, balloons()[0].text);
  EXPECT_EQ(String(u"Tallymoor Updates"), balloons()[0].title);
  EXPECT_TRUE(balloons()[0].key.startsWith(u"updates"));
  EXPECT_EQ(0, balloons()[0].level);
  EXPECT_EQ(countries(6), document("CountryConfig.xml"));
  EXPECT_EQ(6, CountryOfResidence::Instance().financialYearStart().month())
      << "the country options are reloaded";
  EXPECT_EQ(&gateway, &TallymoorInternet::Instance()) << "the gateway lives on";
  EXPECT_THROW(gateway.currentPrice(u"ABC", false, true), HTTPException);
  EXPECT_EQ(1u, elsewhere.requests().size()) << "it asks where the new document leads";
}

TEST_F(ProgramUpdaterTest, DownloadTellsInTheStatusLineWhatItDoes) {
  offerCountries();
  ProgramUpdater updater(service().settings());
  awaitBalloons(1);
  updater.requestDownload();
  awaitBalloons(2);
  updater.stopAndJoin();
  EXPECT_EQ(DOWNLOADING, user().texts(Kind::NormalStatus)[0]);
}

TEST_F(ProgramUpdaterTest, StatusLineIsReadyAfterwardsOrSaysWhichDayIsShown) {
  for (const bool past : {false, true}) {
    if (past)
      Date::setFixedDate(Date(2026, 3, 1));
    user().clearCalls();
    ProgramUpdater updater(idle());
    updater.requestDownload();
    awaitDownload(updater);
    EXPECT_THAT(user().texts(Kind::NormalStatus),
                ElementsAre(DOWNLOADING, past ? String(u"You are looking at 01/03/2026, not at today.")
                                              : String(u"Ready.")));
  }
  Date::clearFixedDate();
}

TEST_F(ProgramUpdaterTest, ProgramFilesWaitForTheNextStart) {
  offerProgramFile("Tallymoor.exe", "2.0.0", InstalledFolder::image("2.0.0"));
  ProgramUpdater updater(idle());
  updater.requestDownload();
  awaitDownload(updater);
  ASSERT_EQ(1u, balloons().size());
  EXPECT_EQ(INSTALLED, balloons()[0].text);
  EXPECT_TRUE(updatesPending());
}

TEST_F(ProgramUpdaterTest, FileThatFailsIsToldInTheFailureBalloonAndDocumentsComeAllTheSame) {
  offerCountries();
  service().offerProgramFiles({{"Tallymoor.exe", "2.0.0"}});
  service().serve("Tallymoor.exe", InstalledFolder::image("2.0.0"));
  service().serve("Tallymoor.exe.sig", std::string(64, 's'));
  ProgramUpdater updater(idle());
  updater.requestDownload();
  awaitDownload(updater);
  ASSERT_EQ(2u, balloons().size());
  EXPECT_EQ(INSTALLED, balloons()[0].text);
  EXPECT_EQ(String(u"Failed to download updates: Exception : Updates::downloadFile - the signature of "
                   u"Tallymoor.exe is wrong"),
            balloons()[1].text);
  EXPECT_EQ(String(u"Tallymoor Updates"), balloons()[1].title);
  EXPECT_EQ(2, balloons()[1].level);
  EXPECT_EQ(countries(6), document("CountryConfig.xml"));
  EXPECT_FALSE(updatesPending());
}

TEST_F(ProgramUpdaterTest, DownloadWithoutTheServiceIsToldInTheFailureBalloon) {
  service().server().stop();
  ProgramUpdater updater(idle());
  updater.requestDownload();
  awaitDownload(updater);
  ASSERT_EQ(2u, balloons().size()) << "of each track";
  for (const auto& balloon : balloons())
    EXPECT_TRUE(
        balloon.text.startsWith(u"Failed to download updates: Exception : Updates::getBinaryUpdates - "
                                u"Problem getting updates: "));
}

TEST_F(ProgramUpdaterTest, TheEndAbortsAFetchSilently) {
  service().server().stall();
  ProgramUpdater updater(service().settings());
  ASSERT_TRUE(service().server().waitForRequests(1));
  const BigMutexLock lock; // Held like by the window.
  updater.stopAndJoin();
  EXPECT_FALSE(updater.isRunning());
  EXPECT_TRUE(user().calls().empty());
  service().server().release();
}

TEST_F(ProgramUpdaterTest, GoingOfflineAbortsACheckSilently) {
  service().server().stall();
  ProgramUpdater updater(service().settings());
  ASSERT_TRUE(service().server().waitForRequests(1));
  TallymoorInternet::Instance().goOffline();
  updater.connectionIsGone();
  updater.stop();
  updater.join(); // Ends only after the check.
  EXPECT_TRUE(user().calls().empty());
  service().server().release();
}

TEST_F(ProgramUpdaterTest, GoingOfflineAbortsADownloadWhichGoesOnOnline) {
  offerCountries();
  service().server().stall();
  ProgramUpdater updater(idle());
  updater.requestDownload();
  ASSERT_TRUE(service().server().waitForRequests(1));
  TallymoorInternet::Instance().goOffline();
  updater.connectionIsGone();
  for (int i = 0; i < 3000 && user().texts(Kind::NormalStatus).size() < 2; ++i)
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  EXPECT_EQ(u"Ready.", user().texts(Kind::NormalStatus).back());
  EXPECT_TRUE(balloons().empty());

  service().server().stall([](const TestHttpServer::Request&) { return false; });
  market().addListing(u"TEST.AX", u"test", u"Australia");
  ASSERT_TRUE(TallymoorInternet::Instance().reconnect());
  updater.connectionIsBack();
  awaitBalloons(1);
  updater.stopAndJoin();
  EXPECT_EQ(INSTALLED, balloons()[0].text);
  service().server().release();
}

// --- The check by the user

TEST_F(ProgramUpdaterTest, CheckWithoutUpdatesSaysSo) {
  ProgramUpdater updater(idle());
  checkForUpdates(updater);
  EXPECT_THAT(user().texts(Kind::Information), ElementsAre(NONE));
  EXPECT_EQ(0, user().openWaits());
}

TEST_F(ProgramUpdaterTest, CheckRunsUnderAProgressThatCancelsIt) {
  offerCountries();
  service().server().stall();
  user().cancelLengthyAfter(0);
  ProgramUpdater updater(idle());
  checkForUpdates(updater);
  ASSERT_EQ(1u, user().calls().size()) << "nothing is shown or asked afterwards";
  EXPECT_EQ(Kind::Lengthy, user().calls()[0].kind);
  EXPECT_EQ(u"Looking for updates", user().calls()[0].text);
  service().server().release();
}

TEST_F(ProgramUpdaterTest, CheckWithNoAsAnswerDownloadsNothing) {
  offerCountries();
  user().answerQuestion(false);
  ProgramUpdater updater(idle());
  checkForUpdates(updater);
  EXPECT_THAT(user().texts(Kind::Question), ElementsAre(QUESTION));
  user().clearCalls();
  updater.runPass();
  EXPECT_EQ(AVAILABLE, balloons()[0].text) << "the next pass only asks";
}

TEST_F(ProgramUpdaterTest, CheckWithYesDownloadsInTheNextPass) {
  offerCountries();
  user().answerQuestion(true);
  ProgramUpdater updater(idle());
  checkForUpdates(updater);
  awaitDownload(updater);
  EXPECT_EQ(INSTALLED, balloons()[0].text);
}

/// The text of a check in a copy without a key.
const String NO_KEY = u"This copy was built without the key by which updates are recognised as genuine.";
const String ONLY_DOCUMENTS = u"\n\nTallymoor can't update its own program files, only its documents.\n";

TEST_F(ProgramUpdaterTest, CheckSaysInItsResultWhyProgramFilesAreLeftOut) {
  UpdateSettings noKey = idle();
  noKey.publicKey.clear();
  UpdateSettings::setCurrent(noKey);
  ProgramUpdater updater;
  checkForUpdates(updater);
  EXPECT_THAT(user().texts(Kind::Information), ElementsAre(NONE + ONLY_DOCUMENTS + NO_KEY));
  offerCountries();
  user().clearCalls();
  user().answerQuestion(false);
  checkForUpdates(updater);
  EXPECT_THAT(user().texts(Kind::Question), ElementsAre(QUESTION + ONLY_DOCUMENTS + NO_KEY));
  EXPECT_THAT(user().texts(Kind::Information), IsEmpty()) << "all is in the question";
}

TEST_F(ProgramUpdaterTest, CheckSaysOnceThatNothingCanBeUpdatedWithoutAKey) {
  UpdateSettings noKey = idle();
  noKey.publicKey.clear();
  noKey.queryBase = u"https://updates.example.invalid/update.php?";
  UpdateSettings::setCurrent(noKey);
  ProgramUpdater updater;
  checkForUpdates(updater);
  EXPECT_THAT(user().texts(Kind::Information), ElementsAre(u"Tallymoor can't update itself.\n" + NO_KEY));
}

TEST_F(ProgramUpdaterTest, CheckWithoutTheServiceFails) {
  service().server().stop();
  ProgramUpdater updater(idle());
  EXPECT_TRUE(messageOf([&] {
                checkForUpdates(updater);
              }).startsWith(u"Updates::getBinaryUpdates - Problem getting updates: "));
  EXPECT_TRUE(user().texts(Kind::Information).empty());
}

TEST_F(ProgramUpdaterTest, FailureOfTheInstallerIsToldOnce) {
  folder().write(INSTALLER_FAILURE, "FxEx.dll: No space left on device\n");
  tellInstallerFailure();
  tellInstallerFailure();
  ASSERT_EQ(1u, balloons().size());
  EXPECT_EQ(String(u"Downloaded updates could not be installed: FxEx.dll: No space left on device\n"
                   u"The next start tries again."),
            balloons()[0].text);
  EXPECT_EQ(2, balloons()[0].level);
}

// --- The complete update

/// A stand-in for the program that records its version and ends.
std::string program(const std::string& version) {
  return "#!/bin/sh\n# " + InstalledFolder::image(version) + "echo " + version + " > started.new\n" +
         "mv started.new started\n";
}

/// From the check to the start of the new version, with the real installer.
TEST_F(ProgramUpdaterTest, UpdatesEndToEnd) {
  folder().write("Tallymoor.exe", program("1.3.1"), 0755);
  std::filesystem::copy_file(TALLYMOOR_UPDATE_INSTALLER, "UpdateInstaller.exe",
                             std::filesystem::copy_options::overwrite_existing);
  offerCountries();
  service().offerProgramFiles({{"Tallymoor.exe", "2.0.0"}, {"FOXDLL-1.6.58.dll", "1.6.58"}});
  service().serveSigned("Tallymoor.exe", program("2.0.0"));
  service().serveSigned("FOXDLL-1.6.58.dll", "new library");
  EXPECT_EQ(UpdateHandover::StartProgram, handOverToUpdateInstaller(Platform::Instance()))
      << "nothing waits yet";

  user().answerQuestion(true);
  {
    ProgramUpdater updater(service().settings());
    awaitBalloons(1); // Of its own first pass.
    checkForUpdates(updater);
    awaitBalloons(2);
  }
  EXPECT_EQ(INSTALLED, balloons()[1].text);
  EXPECT_EQ(countries(6), document("CountryConfig.xml"));
  EXPECT_EQ(program("1.3.1"), folder().read("Tallymoor.exe")) << "the program runs, as far as it knows";

  EXPECT_EQ(UpdateHandover::InstallerRuns, handOverToUpdateInstaller(Platform::Instance()));
  for (int i = 0; i < 3000 && !folder().exists("started"); ++i)
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  ASSERT_TRUE(folder().exists("started"));
  EXPECT_EQ("2.0.0\n", folder().read("started"));
  EXPECT_EQ("new library", folder().read("lib/libFOX-1.6.so.0"));
  EXPECT_FALSE(updatesPending());
  EXPECT_EQ(UpdateHandover::StartProgram, handOverToUpdateInstaller(Platform::Instance()));
  EXPECT_FALSE(Updates(service().settings()).getBinaryUpdates(true)) << "what was installed is up to date";
  EXPECT_FALSE(Updates(service().settings()).getConfigUpdates(true));
}

} // namespace
} // namespace Tallymoor
