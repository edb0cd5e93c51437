#include "ShellTest.h"
#include "foundation/ProgramFiles.h"
#include "market/TallymoorInternet.h"
#include "shell/WarningStrip.h"
#include "support/InstalledFolder.h"
#include "support/updates/TestUpdateService.h"
#include "updates/UpdateCheck.h"
#include <functional>
#include <gmock/gmock.h>
#include <unistd.h>

namespace Tallymoor {
namespace {

using ::testing::AnyOf;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

/// The command in the real window of an installed copy.
class CheckUpdatesTest : public ShellTest {
protected:
  CheckUpdatesTest() {
    UpdateSettings settings = m_service.settings();
    settings.startDelay = settings.period;
    UpdateSettings::setCurrent(settings);
  }
  TestUpdateService& service() { return m_service; }
  InstalledFolder& folder() { return m_folder; }
  void offerCountries() {
    m_service.offerDocuments({{"CountryConfig.xml", "2.0.0"}});
    m_service.serveSigned(
        "CountryConfig.xml",
        "<CountryOptions version=\"2\"><CountryOption Name=\"Australia\" FinYearStart=\"1/7/2000\"/>"
        "</CountryOptions>");
  }
  /// True if the window shows this warning.
  std::function<bool()> shown(const std::string& text) {
    return [this, text] {
      for (const String& warning : tallymoor().warnings()->shownTexts())
        if (warning.toUTF8() == text)
          return true;
      return false;
    };
  }

private:
  TestUpdateService m_service;
  InstalledFolder m_folder{profile()};
};

TEST_F(CheckUpdatesTest, StandsInTheToolsMenuAboveThePrices) {
  std::vector<std::string> entries;
  for (FXMenuPane* menu : findAll<FXMenuPane>(*app().getRootWindow()))
    if (findButton(*menu, "Refresh Prices"))
      for (FXMenuCommand* entry : findAll<FXMenuCommand>(*menu))
        entries.push_back((entry->getText() + "\t" + entry->getAccelText()).text());
  ASSERT_LE(2u, entries.size());
  EXPECT_EQ("Check For Updates...\tCtrl+U", entries[0]);
}

TEST_F(CheckUpdatesTest, SaysThatThereAreNoUpdates) {
  answer("There are currently no updates available.", "OK");
  command(TallymoorWindow::ID_CHECK_UPDATES);
  EXPECT_EQ(1u, boxes().size());
}

TEST_F(CheckUpdatesTest, AsksWhetherToDownload) {
  offerCountries();
  answer("Updates are available. Download now in the background?", "No");
  command(TallymoorWindow::ID_CHECK_UPDATES);
  EXPECT_EQ(1u, boxes().size());
}

/// Appended to the result if the check can't update the program files.
const std::string ONLY_DOCUMENTS = "\n\nTallymoor can't update its own program files, only its documents.\n";
const std::string QUESTION = "Updates are available. Download now in the background?";

TEST_F(CheckUpdatesTest, SaysWhyTheProgramFilesAreLeftOut) {
  std::filesystem::remove("FOXDLL-1.6.57.dll");
  answer("There are currently no updates available." + ONLY_DOCUMENTS +
             "Updates::getUpdateForBinFile - failed to find local file for update: FOXDLL",
         "OK");
  command(TallymoorWindow::ID_CHECK_UPDATES);
  EXPECT_EQ(1u, boxes().size());
}

TEST_F(CheckUpdatesTest, SaysThatAPackageKeepsItsFilesAndOffersDocuments) {
  folder().write(PACKAGE_MARKER, "");
  offerCountries();
  answer(QUESTION + ONLY_DOCUMENTS +
             "They were installed as a package, and the system's package manager keeps them.\n"
             "A newer version comes as a newer package.",
         "No");
  command(TallymoorWindow::ID_CHECK_UPDATES);
  EXPECT_EQ(1u, boxes().size());
  EXPECT_THAT(service().asked(), ElementsAre("configupdates.xml")) << "no program file is asked about";
}

TEST_F(CheckUpdatesTest, AHangingCheckCanBeCancelled) {
  service().server().stall();
  whenModal("Check For Updates", [this](FXWindow& progress) {
    EXPECT_TRUE(shows(progress, "Looking for updates"));
    press(progress, "Cancel");
  });
  command(TallymoorWindow::ID_CHECK_UPDATES);
  EXPECT_TRUE(boxes().empty());
  service().server().release();
}

TEST_F(CheckUpdatesTest, FailureIsReported) {
  service().serve("configupdates.xml", "rubbish");
  whenModal("Tallymoor", [this](FXWindow& box) {
    EXPECT_THAT(labels(box),
                ::testing::Contains(HasSubstr("TallymoorWindow::onCheckUpdates failed. Exception : "
                                              "Updates::getBinaryUpdates failed: ")));
    press(box, "OK");
  });
  command(TallymoorWindow::ID_CHECK_UPDATES);
}

/// A copy whose update thread makes its passes at once.
class UpdatesInTheWindowTest : public CheckUpdatesTest {
protected:
  UpdatesInTheWindowTest() {
    UpdateSettings::setCurrent(service().settings());
    offerCountries();
  }
};

TEST_F(UpdatesInTheWindowTest, AreToldOfAndDownloadedInTheBackground) {
  EXPECT_TRUE(
      runUntil(shown("Updates are available. Please use the 'Tools/Check For Updates' menu to download.")));
  answer("Updates are available. Download now in the background?", "Yes");
  command(TallymoorWindow::ID_CHECK_UPDATES);
  EXPECT_TRUE(runUntil(shown("Updates were installed.\nYou should restart as soon as possible.")));
  EXPECT_THAT(TestProfile::readFile(profile().configFolder() + u"CountryConfig.xml"),
              HasSubstr("version=\"2\""));
}

TEST_F(UpdatesInTheWindowTest, GoingOfflineAbortsTheDownloadAndGoingOnlineTakesItUp) {
  EXPECT_TRUE(
      runUntil(shown("Updates are available. Please use the 'Tools/Check For Updates' menu to download.")));
  answer("Updates are available. Download now in the background?", "Yes");
  const auto askedFor = [this](const char* name) {
    return [this, name] { return ::testing::Value(service().asked(), ::testing::Contains(name)); };
  };
  service().server().stall(
      [](const TestHttpServer::Request& request) { return request.target.ends_with("CountryConfig.xml"); });
  command(TallymoorWindow::ID_CHECK_UPDATES);
  EXPECT_TRUE(runUntil(askedFor("CountryConfig.xml")));
  command(TallymoorWindow::ID_STATUS);
  ASSERT_FALSE(TallymoorInternet::Instance().isOnline());
  service().server().stall([](const TestHttpServer::Request&) { return false; });
  market().addListing(u"TEST", u"test", u"Australia");
  command(TallymoorWindow::ID_STATUS);
  EXPECT_TRUE(runUntil(shown("Updates were installed.\nYou should restart as soon as possible.")));
  service().server().release();
}

/// A copy installed by root or another user.
class UpdatesOfAForeignFolderTest : public UpdatesInTheWindowTest {
protected:
  UpdatesOfAForeignFolderTest() {
    if (::geteuid() == 0)
      EXPECT_EQ(0, ::chown(".", 65534, 65534));
    else
      std::filesystem::permissions(".", std::filesystem::perms(0555));
    service().offerProgramFiles({{"Tallymoor.exe", "9.0.0"}});
  }
  ~UpdatesOfAForeignFolderTest() override {
    std::filesystem::permissions(".", std::filesystem::perms(0755)); // So that it can be removed.
  }
};

TEST_F(UpdatesOfAForeignFolderTest, BringDocumentsAloneAndTheCheckSaysSo) {
  answer(QUESTION + ONLY_DOCUMENTS +
             "The folder that the program was started in is not yours, or others can write to it.\n"
             "Whoever installed the program there can update it.",
         "Yes");
  command(TallymoorWindow::ID_CHECK_UPDATES);
  EXPECT_EQ(1u, boxes().size());
  EXPECT_TRUE(runUntil(shown("Updates were installed.\nYou should restart as soon as possible.")));
  EXPECT_THAT(TestProfile::readFile(profile().configFolder() + u"CountryConfig.xml"),
              HasSubstr("version=\"2\""));
  EXPECT_THAT(service().asked(),
              Each(AnyOf("configupdates.xml", "CountryConfig.xml", "CountryConfig.xml.sig")));
  EXPECT_FALSE(folder().exists("updates"));
}

TEST_F(UpdatesInTheWindowTest, LeavingEndsADownloadUnderWay) {
  service().server().stall(
      [](const TestHttpServer::Request& request) { return request.target.ends_with("CountryConfig.xml"); });
  answer("Updates are available. Download now in the background?", "Yes");
  command(TallymoorWindow::ID_CHECK_UPDATES);
  EXPECT_TRUE(runUntil([this] {
    const std::vector<std::string> asked = service().asked();
    return std::find(asked.begin(), asked.end(), "CountryConfig.xml") != asked.end();
  }));
  leave();
  EXPECT_TRUE(folder().waiting().empty()) << "what was not complete is gone";
  service().server().release();
}

TEST_F(CheckUpdatesTest, FailureOfTheInstallerBeforeThisStartIsTold) {
  folder().write(INSTALLER_FAILURE, "FxEx.dll: No space left on device\n");
  tellInstallerFailure();
  EXPECT_TRUE(runUntil([this] { return !tallymoor().warnings()->shownTexts().empty(); }));
  EXPECT_THAT(tallymoor().warnings()->shownTexts()[0].toUTF8(), HasSubstr("No space left on device"));
}

} // namespace
} // namespace Tallymoor
