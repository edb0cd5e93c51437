#include "desktop/SessionClient.h"
#include "ShellTest.h"
#include "TestSessionManager.h"
#include "shell/WarningStrip.h"
#include "views/TotalCapTreeItem.h"
#include "xml/CountryOfResidence.h"
#include <cstdlib>
#include <gmock/gmock.h>

namespace Tallymoor {
namespace {

using testing::Contains;
using testing::HasSubstr;

std::string recordsOf(const std::string& portfolio) {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!DOCTYPE Portfolios SYSTEM \"Tallymoor "
         "Records.dtd\">\n"
         "<Portfolios><SharePortfolio><String>" +
         portfolio +
         "</String><HeldShares/><SoldShares/><Dividends/><CashReserve/><String/></SharePortfolio></"
         "Portfolios>";
}

/// The window in a session. A test chooses the session manager before SetUp.
class SessionTest : public ShellTest {
protected:
  void makePortfolio(const std::string& name) {
    whenModal("New Portfolio", [this, name](FXWindow& dialog) {
      type(*find<FXTextField>(dialog), name);
      press(dialog, "OK");
    });
    command(TallymoorWindow::ID_NEW_PORTFOLIO);
  }
  void rename(const String& name) {
    tallymoor().store().records().subElement(u"SharePortfolios").subElement(u"Name").setValue(name);
  }
  std::string records() { return TestProfile::readFile(recordsPath()); }
  std::string copyOfRecords() { return TestProfile::readFile(recordsPath() + u".bak"); }
  /// The only warning in the strip.
  String warning() {
    runUntil([this] { return tallymoor().warnings()->shownTexts().size() == 1; });
    return tallymoor().warnings()->shownTexts().at(0);
  }
  SessionClient& session() { return tallymoor().sessionClient(); }
  bool findsNoManager() {
    return runUntil([this] { return !session().connecting(); }) && !session().connected();
  }
  void expectToWorkAlone() {
    makePortfolio("Trading");
    command(TallymoorWindow::ID_SAVE);
    EXPECT_EQ(recordsOf("Trading"), records());
  }
};

TEST_F(SessionTest, WithoutAManagerNothingIsTried) {
  ::unsetenv("SESSION_MANAGER");
  session().connect();
  EXPECT_FALSE(session().connecting());
  EXPECT_FALSE(session().connected());
  expectToWorkAlone();
}

/// The environment names a session manager that does not run.
class DeadAddressTest : public SessionTest {
protected:
  DeadAddressTest() { m_manager.kill(); }
  TestSessionManager m_manager;
};

TEST_F(DeadAddressTest, TheProgramGoesOnAlone) {
  EXPECT_TRUE(findsNoManager());
  expectToWorkAlone();
}

class WrongAddressTest : public SessionTest {
protected:
  WrongAddressTest() { ::setenv("SESSION_MANAGER", "nonsense", 1); }
};

TEST_F(WrongAddressTest, TheProgramGoesOnAlone) {
  EXPECT_TRUE(findsNoManager());
  expectToWorkAlone();
}

class RefusingManagerTest : public SessionTest {
protected:
  RefusingManagerTest() : m_manager(true) {}
  TestSessionManager m_manager;
};

TEST_F(RefusingManagerTest, TheProgramGoesOnAlone) {
  EXPECT_TRUE(findsNoManager());
  EXPECT_EQ(1, m_manager.heard("refused"));
  expectToWorkAlone();
}

class ManagedTest : public SessionTest {
protected:
  TestSessionManager& manager() { return m_manager; }
  bool hears(const std::string& line, int times) {
    return runUntil([&] { return manager().heard(line) >= times; });
  }
  /// The manager received the answer to the initial save request.
  bool joins() { return hears("saved", 1); }
  void SetUp() override {
    SessionTest::SetUp();
    if (joinsInSetUp())
      joins();
  }
  virtual bool joinsInSetUp() const { return true; }

private:
  TestSessionManager m_manager;
};

class HangingManagerTest : public ManagedTest {
protected:
  HangingManagerTest() { manager().hang(); }
  bool joinsInSetUp() const override { return false; }
};

TEST_F(HangingManagerTest, TheWindowComesUpAndGoes) {
  EXPECT_TRUE(tallymoor().shown());
  EXPECT_TRUE(session().connecting());
  expectToWorkAlone();
  leave();
  deleteWindow();
}

TEST_F(ManagedTest, TheManagerLearnsWhoItIsAndNotToStartItAgain) {
  EXPECT_TRUE(session().connected());
  for (const std::string& property :
       {std::string("Program=Tallymoor.exe"), "ProcessID=" + std::to_string(::getpid()),
        std::string("RestartStyleHint=3")}) // Never.
    EXPECT_EQ(1, manager().heard("property " + property)) << property;
  EXPECT_THAT(manager().heard(), Contains(HasSubstr("property UserID=")));
  EXPECT_THAT(manager().heard(), Contains(HasSubstr("property RestartCommand=/")));
  EXPECT_THAT(manager().heard(), Contains(HasSubstr("property CloneCommand=/")));
}

class SecondStartInSessionTest : public ManagedTest {
protected:
  SecondStartInSessionTest() { TestProfile::writeFile(recordsPath(), recordsOf("Trading")); }
};

TEST_F(SecondStartInSessionTest, JoiningTheSessionSavesNothing) {
  EXPECT_TRUE(session().connected());
  EXPECT_FALSE(TestProfile::fileExists(recordsPath() + u".bak"));
}

TEST_F(ManagedTest, ALogoutSavesWhatWasEntered) {
  makePortfolio("Trading");
  manager().askToSaveForLogout();
  ASSERT_TRUE(hears("saved", 2));
  EXPECT_EQ(recordsOf("Trading"), records());
}

TEST_F(ManagedTest, ACheckpointSavesWhatWasEntered) {
  makePortfolio("Trading");
  manager().askToSaveCheckpoint();
  ASSERT_TRUE(hears("saved", 2));
  EXPECT_EQ(recordsOf("Trading"), records());
}

TEST_F(ManagedTest, ToldToDieTheProgramSavesAndLeaves) {
  makePortfolio("Trading");
  manager().askToDie();
  EXPECT_EQ(0, app().run());
  EXPECT_TRUE(tallymoor().isShuttingDown());
  EXPECT_EQ(recordsOf("Trading"), records());
  deleteWindow();
  EXPECT_TRUE(runUntil([this] { return manager().heard("left") == 1; }));
}

TEST_F(ManagedTest, TheCopyHoldsWhatWasThereBeforeTheLogout) {
  makePortfolio("Trading");
  command(TallymoorWindow::ID_SAVE);
  rename(u"Renamed");
  manager().askToSaveForLogout();
  ASSERT_TRUE(hears("saved", 2));
  EXPECT_EQ(recordsOf("Trading"), copyOfRecords());
  manager().askToDie();
  app().run();
  EXPECT_EQ(recordsOf("Renamed"), records());
  EXPECT_EQ(recordsOf("Trading"), copyOfRecords());
}

TEST_F(ManagedTest, AfterALogoutThatWasCalledOffTheNextSaveMakesItsOwnCopy) {
  makePortfolio("Trading");
  manager().askToSaveForLogout();
  manager().callLogoutOff();
  ASSERT_TRUE(hears("saved", 2));
  manager().askToSaveForLogout(); // The answer follows everything sent before.
  ASSERT_TRUE(hears("saved", 3));
  manager().callLogoutOff();
  rename(u"Renamed");
  manager().askToSaveForLogout();
  ASSERT_TRUE(hears("saved", 4));
  EXPECT_EQ(recordsOf("Renamed"), records());
  EXPECT_EQ(recordsOf("Trading"), copyOfRecords());
  EXPECT_FALSE(tallymoor().isShuttingDown());
}

TEST_F(ManagedTest, ALogoutWithAnOpenFormSavesTheRecordsAndLeavesTheFormOpen) {
  makePortfolio("Trading");
  whenModal("New Portfolio", [this](FXWindow& dialog) {
    manager().askToSaveForLogout();
    ASSERT_TRUE(hears("saved", 2));
    EXPECT_TRUE(dialog.shown());
    EXPECT_EQ(recordsOf("Trading"), records());
    press(dialog, "Cancel");
  });
  command(TallymoorWindow::ID_NEW_PORTFOLIO);
}

TEST_F(ManagedTest, ToldToDieWithAnOpenFormTheProgramCancelsItAndLeaves) {
  makePortfolio("Trading");
  whenModal("New Portfolio", [this](FXWindow&) { manager().askToDie(); });
  command(TallymoorWindow::ID_NEW_PORTFOLIO);
  app().run();
  EXPECT_TRUE(tallymoor().isShuttingDown());
  EXPECT_EQ(recordsOf("Trading"), records());
}

TEST_F(ManagedTest, ASaveThatFailsIsAnsweredWithoutABox) {
  makePortfolio("Trading");
  const std::string before = records();
  rename(u"A&B");
  manager().askToSaveForLogout();
  ASSERT_TRUE(hears("failed to save", 1));
  EXPECT_EQ(before, records());
  EXPECT_EQ(String("Your records could not be saved."), warning());
  rename(u"Trading");
  manager().askToSaveForLogout();
  ASSERT_TRUE(hears("saved", 2));
  EXPECT_EQ(recordsOf("Trading"), records());
  EXPECT_TRUE(boxes().empty());
}

TEST_F(ManagedTest, AShutdownThatRunsIsAnsweredByItsEnd) {
  makePortfolio("Trading");
  rename(u"A&B");
  whenModal("XMLException occurred while saving your data.", [this](FXWindow& box) {
    manager().askToSaveForLogout();
    manager().askToDie();
    press(box, "OK");
  });
  whenModal("Your records could not be saved, and leaving now loses", [this](FXWindow& box) {
    letEventsPass();
    rename(u"Trading");
    press(box, "Yes");
  });
  leave();
  deleteWindow();
  EXPECT_TRUE(runUntil([this] { return manager().heard("left") == 1; }));
  EXPECT_EQ(1, manager().heard("saved"));
  EXPECT_EQ(0, manager().heard("failed to save"));
  EXPECT_EQ(recordsOf("Trading"), records());
}

TEST_F(ManagedTest, TheProgramSurvivesTheManagersDeath) {
  manager().kill();
  EXPECT_TRUE(runUntil([this] { return !session().connected(); }));
  expectToWorkAlone();
}

TEST_F(ManagedTest, AManagerThatDoesNotWaitForTheAnswerDoesNotEndTheProgram) {
  makePortfolio("Trading");
  manager().askToSaveAndQuit();
  EXPECT_TRUE(runUntil([this] { return !session().connected(); }));
  EXPECT_EQ(recordsOf("Trading"), records());
  EXPECT_TRUE(tallymoor().shown());
}

/// The load waits at its first question.
class LogoutDuringLoadTest : public ManagedTest {
protected:
  LogoutDuringLoadTest() {
    TestProfile::writeFile(recordsPath(), recordsOf("Trading"));
    Settings::Instance().deleteEntry(u"Config", u"Country");
    CountryOfResidence::destroyInstance();
  }
  ~LogoutDuringLoadTest() override { CountryOfResidence::destroyInstance(); }
};

class SaveDuringLoadTest : public LogoutDuringLoadTest {
protected:
  SaveDuringLoadTest() {
    whenModal("Country of Residence", [this](FXWindow& dialog) {
      joins();
      manager().askToSaveForLogout();
      EXPECT_TRUE(hears("saved", 2));
      EXPECT_EQ(recordsOf("Trading"), records());
      press(dialog, "United States");
      press(dialog, "OK");
    });
  }
};

TEST_F(SaveDuringLoadTest, RecordsThatAreNotReadYetAreNotOverwritten) {
  EXPECT_EQ(recordsOf("Trading"), records());
  EXPECT_FALSE(TestProfile::fileExists(recordsPath() + u".bak"));
  EXPECT_NE(nullptr, tallymoor().totalCapital()->portfolioNode(u"Trading"));
}

class DeathDuringLoadTest : public LogoutDuringLoadTest {
protected:
  DeathDuringLoadTest() {
    whenModal("Country of Residence", [this](FXWindow&) {
      joins();
      manager().askToDie();
    });
  }
};

TEST_F(DeathDuringLoadTest, TheLoadComesToItsEndAndTheRecordsAreKept) {
  if (!tallymoor().isShuttingDown())
    app().run();
  EXPECT_TRUE(tallymoor().isShuttingDown());
  EXPECT_EQ(recordsOf("Trading"), records());
}

class UnreadableRecordsTest : public ManagedTest {
protected:
  UnreadableRecordsTest() {
    TestProfile::writeFile(recordsPath(), "<Portfolios><SharePort");
    whenModal("BEFORE EXITING, please backup \"Portfolios.xml\"\n",
              [this](FXWindow& box) { press(box, "OK"); });
  }
};

TEST_F(UnreadableRecordsTest, AreNotOverwrittenByALogout) {
  manager().askToSaveForLogout();
  ASSERT_TRUE(hears("saved", 2)) << "there is nothing to save";
  makePortfolio("Trading");
  manager().askToSaveForLogout();
  ASSERT_TRUE(hears("failed to save", 1));
  EXPECT_EQ("<Portfolios><SharePort", records());
  EXPECT_EQ(String("Your portfolios were not saved, since the ones on disk could not be "
                   "loaded and are not overwritten unasked. Use File, Save."),
            warning());
}

} // namespace
} // namespace Tallymoor
