#include "ShellTest.h"
#include "foundation/FileReplacement.h"
#include "session/ProfileFolders.h"
#include "support/ImportFiles.h"
#include "views/SharePortfolioTreeItem.h"
#include "views/TotalCapTreeItem.h"
#include "widgets/InvestmentTree.h"
#include "xml/Leaves.h"
#include <filesystem>
#include <functional>
#include <utility>

namespace Tallymoor {
namespace {

/// Import and export in the real window with a portfolio "Trading", which has 100.00 in cash.
class PortfolioTransferTest : public ShellTest {
protected:
  void SetUp() override {
    writeRecords();
    ShellTest::SetUp();
  }
  virtual void writeRecords() {
    TestProfile::writeFile(recordsPath(), document(portfolio("Trading", "100.00")));
  }
  /// Queues an expectation for a box after the file dialog.
  void then(std::function<void()> expectation) { m_afterwards.push_back(std::move(expectation)); }
  void thenAnswer(const std::string& text, const std::string& button) {
    then([=, this] { answer(text, button); });
  }
  /// Runs the command and answers the file dialog with this title.
  void run(FXuint id, const std::string& title, const String& path) {
    whenModal(title, [this, path](FXWindow& dialog) {
      type(*find<FXTextField>(dialog), path.toUTF8());
      press(dialog, "OK");
    });
    for (const auto& expectation : std::exchange(m_afterwards, {}))
      expectation();
    command(id);
  }
  void import(const std::string& content) {
    const String path = profile().path("import.xml");
    TestProfile::writeFile(path, content);
    import(path);
  }
  void import(const String& path) { run(TallymoorWindow::ID_IMPORT, "Import portfolios from:", path); }
  void exportTo(const String& path) { run(TallymoorWindow::ID_EXPORT, "Export portfolios to:", path); }
  void answerReplacement(const std::string& name, const std::string& button) {
    thenAnswer("You already have a portfolio called \"" + name +
                   "\"\nin your Total Capital. Do you want to replace it with\nan imported portfolio?",
               button);
  }
  void expectSummary(const std::string& names) {
    thenAnswer("The following share portfolios were imported:\n" + names, "OK");
  }
  double cashOf(const String& name) { return tallymoor().store().portfolios().at(name)->cashReserveToday(); }
  std::vector<String> recordNames() {
    std::vector<String> names;
    XMLElement& records = tallymoor().store().records();
    for (std::size_t i = 0; i < records.numSubElements(u"SharePortfolios"); ++i)
      names.push_back(textValue(records.subElement(u"SharePortfolios", i), u"Name"));
    return names;
  }
  std::vector<String> nodeNames() {
    std::vector<String> names;
    for (SharePortfolioTreeItem* node : tallymoor().totalCapital()->portfolioNodes())
      names.push_back(node->portfolio().name());
    return names;
  }
  /// Checks that a rejected import changed nothing.
  void expectNothingChanged() {
    EXPECT_EQ(std::vector<String>{u"Trading"}, recordNames());
    EXPECT_EQ(std::vector<String>{u"Trading"}, nodeNames());
    EXPECT_DOUBLE_EQ(100.0, cashOf(u"Trading"));
  }
  void expectRefused(const std::string& content, const std::string& why) {
    then([this, why] {
      whenModal("Failed to decode the imported portfolios: ", [this, why](FXWindow& box) {
        EXPECT_TRUE(shows(box, why)) << why << " in " << labels(box).at(0);
        press(box, "OK");
      });
    });
    import(content);
    expectNothingChanged();
  }
  static bool shows(FXWindow& box, const std::string& part) {
    for (const std::string& label : labels(box))
      if (label.find(part) != std::string::npos)
        return true;
    return false;
  }
  void expectExported(const String& path) {
    thenAnswer("Your portfolios have been exported to\n" + path.toUTF8() +
                   "\nThis can be used as a backup, or imported for a different user or computer.",
               "OK");
  }

private:
  std::vector<std::function<void()>> m_afterwards;
};

// ---- Export ----

TEST_F(PortfolioTransferTest, ExportWritesWhatTheNextSaveWouldWrite) {
  const String path = profile().path("backup.xml");
  expectExported(path);
  exportTo(path);
  EXPECT_EQ(document(portfolio("Trading", "100.00")), TestProfile::readFile(path));
}

TEST_F(PortfolioTransferTest, WhatAnInterruptedExportLeftGoesWithTheNextStart) {
  const String path = profile().path("stick/backup.xml");
  std::filesystem::create_directory(profile().path("stick").toUTF8());
  expectExported(path);
  exportTo(path);
  TestProfile::writeFile(profile().path("stick/.tallymoor-abc.tmp"), "half");
  tidyProfileFolders();
  EXPECT_FALSE(TestProfile::fileExists(profile().path("stick/.tallymoor-abc.tmp")));
  EXPECT_TRUE(TestProfile::fileExists(path));
}

TEST_F(PortfolioTransferTest, NameWithoutExtensionGetsOne) {
  const String path = profile().path("backup.xml");
  expectExported(path);
  exportTo(profile().path("backup"));
  EXPECT_TRUE(TestProfile::fileExists(path));
  EXPECT_FALSE(TestProfile::fileExists(profile().path("backup")));
}

TEST_F(PortfolioTransferTest, AnyOtherExtensionStays) {
  const String path = profile().path("backup.txt");
  expectExported(path);
  exportTo(path);
  EXPECT_TRUE(TestProfile::fileExists(path));
}

TEST_F(PortfolioTransferTest, OlderFileIsOverwrittenOnlyAfterAYes) {
  const String path = profile().path("backup.xml");
  TestProfile::writeFile(path, "old");
  const std::string question =
      "Do you want to overwrite the file\n" + path.toUTF8() + "\nwith your exported portfolios?";
  thenAnswer(question, "No");
  exportTo(path);
  EXPECT_EQ("old", TestProfile::readFile(path));

  thenAnswer(question, "Yes");
  expectExported(path);
  exportTo(path);
  EXPECT_EQ(document(portfolio("Trading", "100.00")), TestProfile::readFile(path));
}

TEST_F(PortfolioTransferTest, ExportThatCannotBeWrittenSaysSo) {
  const String path = u"/proc/backup.xml"; // No file can be created there.
  then([this] {
    whenModal("TallymoorWindow::onExport failed. ", [this](FXWindow& box) { press(box, "OK"); });
  });
  exportTo(path);
  EXPECT_FALSE(TestProfile::fileExists(path));
}

TEST_F(PortfolioTransferTest, DialogsBeginInTheNameOfTheFile) {
  for (const auto& [id, title] : {std::pair(TallymoorWindow::ID_IMPORT, "Import portfolios from:"),
                                  std::pair(TallymoorWindow::ID_EXPORT, "Export portfolios to:")}) {
    whenModal(title, [this](FXWindow& dialog) {
      FXWindow* focused = &dialog;
      while (focused->getFocus())
        focused = focused->getFocus();
      EXPECT_EQ(find<FXTextField>(dialog), focused);
      press(dialog, "Cancel");
    });
    command(id);
  }
}

TEST_F(PortfolioTransferTest, CancelledDialogsDoNothing) {
  whenModal("Export portfolios to:", [this](FXWindow& dialog) { press(dialog, "Cancel"); });
  command(TallymoorWindow::ID_EXPORT);
  whenModal("Import portfolios from:", [this](FXWindow& dialog) { press(dialog, "Cancel"); });
  command(TallymoorWindow::ID_IMPORT);
  expectNothingChanged();
}

// ---- Import ----

TEST_F(PortfolioTransferTest, ImportedPortfolioIsShownWithItsHistoryAndNotSaved) {
  const std::string saved = TestProfile::readFile(recordsPath());
  expectSummary("Savings");
  import(document(portfolio("Savings", "50.00", "2/3/2026")));
  EXPECT_EQ((std::vector<String>{u"Trading", u"Savings"}), recordNames());
  EXPECT_EQ((std::vector<String>{u"Savings", u"Trading"}), nodeNames());
  EXPECT_DOUBLE_EQ(50.0, cashOf(u"Savings"));
  EXPECT_EQ(Date(2026, 3, 2),
            tallymoor().store().portfolios().at(u"Savings")->capitalRecord().firstRecordDate());
  EXPECT_EQ(saved, TestProfile::readFile(recordsPath()));
  command(TallymoorWindow::ID_SAVE);
  EXPECT_EQ(document(portfolio("Trading", "100.00") + portfolio("Savings", "50.00", "2/3/2026")),
            TestProfile::readFile(recordsPath()));
}

TEST_F(PortfolioTransferTest, OwnRecordsAskOncePerPortfolioAndNoLeavesAll) {
  answerReplacement("Trading", "No");
  thenAnswer("No portfolios were imported.", "OK");
  import(recordsPath());
  expectNothingChanged();
}

TEST_F(PortfolioTransferTest, ReplacementTakesThePlaceOfTheOldRecordsAndDays) {
  ASSERT_TRUE(tallymoor().store().portfolios().at(u"Trading")->capitalRecord().hasDayCap(Date(2026, 3, 3)));
  command(TallymoorWindow::ID_SAVE); // Its days are on disk now.
  answerReplacement("Trading", "Yes");
  expectSummary("Trading");
  import(document(portfolio("Trading", "777.00", "2/3/2026")));
  EXPECT_EQ(std::vector<String>{u"Trading"}, recordNames());
  EXPECT_EQ(std::vector<String>{u"Trading"}, nodeNames());
  EXPECT_DOUBLE_EQ(777.0, cashOf(u"Trading"));
  EXPECT_DOUBLE_EQ(
      777.0, tallymoor().store().portfolios().at(u"Trading")->capitalRecord().capitalOn(Date(2026, 3, 2)));
}

TEST_F(PortfolioTransferTest, SecondOfOneNameInTheFileIsAskedFor) {
  answerReplacement("Savings", "Yes");
  expectSummary("Savings, Savings");
  import(document(portfolio("Savings", "1.00") + portfolio("Savings", "2.00")));
  EXPECT_EQ((std::vector<String>{u"Trading", u"Savings"}), recordNames());
  EXPECT_DOUBLE_EQ(2.0, cashOf(u"Savings"));
}

TEST_F(PortfolioTransferTest, AllQuestionsComeBeforeAnythingChanges) {
  then([this] {
    whenModal("You already have a portfolio called \"Trading\"", [this](FXWindow& box) {
      EXPECT_EQ(std::vector<String>{u"Trading"}, recordNames());
      EXPECT_EQ(std::vector<String>{u"Trading"}, nodeNames());
      press(box, "No");
    });
  });
  expectSummary("Savings, More");
  import(document(portfolio("Savings", "1.00") + portfolio("Trading", "5.00") + portfolio("More", "2.00")));
  EXPECT_DOUBLE_EQ(100.0, cashOf(u"Trading"));
}

TEST_F(PortfolioTransferTest, NamesAreCleanedAsThePromptCleansThem) {
  expectSummary("....etcpasswd");
  import(document(portfolio("../../etc/passwd", "1.00")));
  EXPECT_EQ((std::vector<String>{u"Trading", u"....etcpasswd"}), recordNames());
}

TEST_F(PortfolioTransferTest, FilesThatAreNoRecordsLeaveEverythingAsItWas) {
  expectRefused("", "");
  expectRefused("not XML", "");
  expectRefused("<Other/>", "");
  expectRefused(document(portfolio("Savings", "1.00")).substr(0, 200), "");
  expectRefused(document(portfolio(" / ", "1.00")), "A portfolio in the file has no usable name.");
  expectRefused(document(portfolio("Good", "1.00") + portfolio("Savings", "1.00", "someday")), "");
  expectRefused(
      "<!DOCTYPE Portfolios [<!ENTITY a \"aaaa\"><!ENTITY b \"&a;&a;\">]><Portfolios>&b;</Portfolios>", "");
  expectRefused("<!DOCTYPE Portfolios [<!ELEMENT a (b|c)>]><Portfolios/>",
                "declarations in the document are not");
  std::string nested;
  for (int i = 0; i < 1'000'000; ++i)
    nested += "<Portfolios>";
  expectRefused(nested, "");
}

TEST_F(PortfolioTransferTest, ASaleBelowZeroLeavesEverythingAsItWas) {
  std::string spoilt = withTrades();
  spoilt.replace(spoilt.find("#proceeds"), 9, "-5.0000");
  expectRefused(document(written(spoilt)), "the sell price of the sale of XYZ.AX on 03/02/2026 is -5.0000.");
}

TEST_F(PortfolioTransferTest, RefusalNamesTheFileAndSaysThatNothingChanged) {
  expectRefused("<Portfolios><SharePortfolio>", "XMLElement::decode, parse fatal error in Portfolios : ");
  expectRefused("<Portfolios><SharePortfolio>", "\nNothing was imported from " +
                                                    profile().path("import.xml").toUTF8() +
                                                    ", and your portfolios are as they were.");
}

/// If the records can't be read, an import can recover.
class PortfolioRecoveryTest : public PortfolioTransferTest {
protected:
  void writeRecords() override {
    TestProfile::writeFile(recordsPath(), "<Portfolios><broken");
    whenModal("BEFORE EXITING, please backup \"Portfolios.xml\"\n",
              [this](FXWindow& box) { press(box, "OK"); });
  }
};

TEST_F(PortfolioRecoveryTest, BackupCanBeImportedAfterAFailedLoad) {
  ASSERT_TRUE(tallymoor().store().loadFailed());
  expectSummary("Trading");
  import(document(portfolio("Trading", "100.00")));
  expectNothingChanged();
}

} // namespace
} // namespace Tallymoor
