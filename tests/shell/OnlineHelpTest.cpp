#include "shell/OnlineHelp.h"
#include "RecordingPlatform.h"
#include "ShellTest.h"
#include "TestPaths.h"
#include <cstdlib>
#include <filesystem>
#include <gmock/gmock.h>

namespace Tallymoor {
namespace {

using testing::ElementsAre;

class OnlineHelpTest : public ShellTest {
protected:
  RecordingPlatform& platform(bool opens, bool throwsOnOpening = false) {
    RecordingPlatform::Behaviour behaviour;
    behaviour.opens = opens;
    behaviour.throwsOnOpening = throwsOnOpening;
    return RecordingPlatform::install(profile(), behaviour);
  }
  std::string statusText() { return tallymoor().statusBar()->getStatusLine()->getText().text(); }
};

TEST_F(OnlineHelpTest, OpensThePublishedPageWhereNoGuideIsInstalled) {
  const RecordingPlatform& opener = platform(true);
  command(TallymoorWindow::ID_FAQ);
  EXPECT_EQ("launching web browser...", statusText());
  EXPECT_THAT(opener.opened(), ElementsAre(HELP_ADDRESS));
}

TEST_F(OnlineHelpTest, OpensTheInstalledGuide) {
  const RecordingPlatform& opener = platform(true);
  const String guide = profile().path("program/guide/guide.html");
  TestProfile::writeFile(guide, "<html/>");
  command(TallymoorWindow::ID_FAQ);
  EXPECT_THAT(opener.opened(), ElementsAre(guide));
}

/// A script that replaces xdg-open in PATH and records its arguments.
class OpenerInPath {
public:
  explicit OpenerInPath(const TestProfile& profile)
      : m_pathBefore(std::getenv("PATH")), m_noted(profile.path("opened")) {
    const String opener = profile.path("bin/xdg-open");
    TestProfile::writeFile(opener, "#!/bin/sh\nprintf %s \"$1\" >'" + m_noted.toUTF8() + ".new'\nmv '" +
                                       m_noted.toUTF8() + ".new' '" + m_noted.toUTF8() + "'\n");
    std::filesystem::permissions(opener.toUTF8(), std::filesystem::perms::owner_all);
    ::setenv("PATH", (profile.folder() + "/bin:" + m_pathBefore).c_str(), 1);
  }
  ~OpenerInPath() { ::setenv("PATH", m_pathBefore.c_str(), 1); }
  bool hasOpened() const { return TestProfile::fileExists(m_noted); }
  std::string opened() const { return TestProfile::readFile(m_noted); }

private:
  const std::string m_pathBefore;
  const String m_noted;
};

TEST_F(OnlineHelpTest, HandsTheGuideOfTheBuiltProgramToTheSystem) {
  LinuxPlatformOptions options;
  options.dataHome = profile().folder() + "/share";
  options.programFolder = TALLYMOOR_BUILT_PROGRAM;
  Platform::setInstance(std::make_unique<LinuxPlatform>(options));
  const OpenerInPath opener(profile());
  command(TallymoorWindow::ID_FAQ);
  ASSERT_TRUE(runUntil([&] { return opener.hasOpened(); }));
  EXPECT_EQ(TALLYMOOR_BUILT_PROGRAM "/guide/guide.html", opener.opened());
}

TEST_F(OnlineHelpTest, TellsTheAddressWhenNoBrowserOpens) {
  platform(false);
  answerKind(BoxKind::Information,
             "Failed to open the browser for you.\nOnline help is at\n" + HELP_ADDRESS.toUTF8(), "OK");
  command(TallymoorWindow::ID_FAQ);
}

TEST_F(OnlineHelpTest, FeedbackIsALinkWithSubjectAndBody) {
  const RecordingPlatform& opener = platform(true);
  command(TallymoorWindow::ID_FEEDBACK);
  EXPECT_EQ("launching email...", statusText());
  EXPECT_THAT(opener.opened(),
              ElementsAre(String("mailto:feedback@brindlecove.example?subject=Feedback%20on%20Tallymoor&body="
                                 "To%20the%20Brindlecove,%0D%0A%3Ctell%20us%20what%20you%20think%20of%20"
                                 "Tallymoor%20here%3E%0D%0A")));
}

TEST_F(OnlineHelpTest, TellsTheMailboxWhenNoEmailStarts) {
  platform(false);
  answerKind(BoxKind::Information,
             "Failed to start an email for you.\nEmail your feedback to feedback@brindlecove.example", "OK");
  command(TallymoorWindow::ID_FEEDBACK);
}

TEST_F(OnlineHelpTest, FailuresNameTheCommand) {
  platform(false, true);
  answerKind(BoxKind::Error, "TallymoorWindow::onFAQ failed. Exception : nothing can be opened", "OK");
  command(TallymoorWindow::ID_FAQ);
  answerKind(BoxKind::Error, "TallymoorWindow::onFeedback failed. Exception : nothing can be opened", "OK");
  command(TallymoorWindow::ID_FEEDBACK);
}

} // namespace
} // namespace Tallymoor
