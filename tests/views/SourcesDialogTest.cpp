#include "views/SourcesDialog.h"
#include "ViewsTest.h"
#include "support/TestPriceService.h"
#include "views/SourceActions.h"
#include "views/SourcesTable.h"

namespace Tallymoor {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

/// The sources of a profile with a service that was not tried. No pass of the updater runs.
class SourcesDialogTest : public ViewsTest {
protected:
  static PriceStatus& status() { return TallymoorInternet::Instance().priceStatus(); }
  static SourceList& sources() { return status().sources(); }
  /// The cells of each row.
  static std::vector<std::string> rows(SourcesTable& table) {
    std::vector<std::string> texts;
    for (FXint row = 0; Row* known = table.rowAt(row); ++row) {
      std::string text;
      for (const auto& column : table.columns())
        text += (text.empty() ? "" : "|") + (*column)(*known).toUTF8();
      texts.push_back(text);
    }
    return texts;
  }
  /// Shows the dialog for the steps, with a source chosen.
  void show(const String& chosen, const std::function<void(FXWindow& dialog, SourcesTable& table)>& steps) {
    TallymoorInternet::Instance().pauseUpdates();
    SourcesDialog dialog(&mainWindow());
    whenModal("Sources of prices", [&](FXWindow& window) {
      dialog.table()->chooseSource(chosen);
      letEventsPass();
      steps(window, *dialog.table());
      press(window, "Close");
    });
    EXPECT_EQ(1u, dialog.execute());
  }
  void makeSample() {
    pretendSampleMarket(profile());
    TallymoorInternet::reset();
  }
  static std::string textIn(FXWindow& dialog) { return find<FXText>(dialog)->getText().text(); }
  /// In the dialog of a trial, once it has ended.
  void whenTried(const std::function<void(FXWindow& dialog, const std::string& text)>& look) {
    whenModal("Try a source", [this, look](FXWindow& dialog) {
      runUntil([&] { return !textIn(dialog).starts_with("Asking"); });
      look(dialog, textIn(dialog));
      press(dialog, "Close");
    });
  }
  String makeFolder(const std::string& name) {
    const String folder = profile().path(name);
    std::filesystem::create_directory(folder.toUTF8());
    return folder;
  }
  void addFolder() {
    sources().addFolder(u"My files", makeFolder("prices"));
    status().setOn(u"My files", true);
  }
  void typeFolder(const String& folder) {
    whenModal("Folder of CSV files", [this, folder](FXWindow& dialog) {
      type(*find<FXTextField>(dialog), folder.toUTF8());
      press(dialog, "OK");
    });
  }

  TestPriceService m_service{profile()};
  const std::string m_answer =
      R"({"days":[{"date":"2026-02-27","close":5.25},{"date":"2026-03-02","close":5.5}]})";
};

TEST_F(SourcesDialogTest, ShowsTheSourcesInTheirOrder) {
  addFolder();
  sources().move(u"My files", 0);
  show(u"My files", [this](FXWindow& dialog, SourcesTable& table) {
    EXPECT_THAT(rows(table), ElementsAre("My files|on|folder|||", "Locator documents|on|web pages|||",
                                         "Service|off|service|not tried here, needs a key||"));
    EXPECT_TRUE(shows(dialog, "Prices come from: My files, then Locator documents."));
    EXPECT_TRUE(shows(dialog, profile().path("prices").toUTF8() + "\n\n\n"));
    table.chooseSource(u"Service");
    letEventsPass();
    EXPECT_TRUE(shows(dialog, "For private use.\n\n\n"));
    for (const char* label : {"Switch off", "Move down", "Remove...", "Files...", "Complaints..."})
      EXPECT_FALSE(button(dialog, label).isEnabled()) << label;
    for (const char* label : {"Switch on", "Move up", "Try it...", "Key..."})
      EXPECT_TRUE(button(dialog, label).isEnabled()) << label;
  });
}

TEST_F(SourcesDialogTest, AServiceIsGivenItsKeyTriedAndUsed) {
  makeSample();
  m_service.answer.body = m_answer;
  show(u"Service", [this](FXWindow& dialog, SourcesTable& table) {
    EXPECT_EQ(rows(table)[0], "Sample market|on|web pages|its prices are made up||");
    whenModal("Key", [this](FXWindow& form) {
      EXPECT_TRUE(find<FXTextField>(form)->getTextStyle() & TEXTFIELD_PASSWD);
      type(*find<FXTextField>(form), "s3cret");
      press(form, "OK");
    });
    whenTried([](FXWindow&, const std::string& text) {
      EXPECT_EQ(text, "It answered for KNOWN.AX. Compare the figures with those that you know.\n\n"
                      "Current price: 5.50 of 02/03/2026\n"
                      "The currency is AUD.\n\n"
                      "Past days: 2. The last ones:\n"
                      "27/02/2026    5.25\n"
                      "02/03/2026    5.50\n");
    });
    answer("Are the figures right, and is Service to be used from now on?", "Yes");
    whenModal("Prices come from the sample market now", [this](FXWindow& box) { press(box, "Yes"); });
    press(dialog, "Switch on");
    letEventsPass();
    EXPECT_EQ(rows(table)[0], "Sample market|off|web pages|its prices are made up||");
    EXPECT_THAT(rows(table)[1], testing::StartsWith("Service|on|service|has a key|"));
    EXPECT_TRUE(shows(dialog, "Prices come from: Service."));
  });
  EXPECT_NE(m_service.server().requests().front().target.find("key=s3cret"), std::string::npos);
  EXPECT_FALSE(status().isSampleMarket());
}

TEST_F(SourcesDialogTest, AFailedTrialNamesItsCauseAndUsesNothing) {
  m_service.answer.body = R"({"error":"no such key: s3cret"})";
  sources().setKey(u"Service", u"s3cret");
  show(u"Service", [this](FXWindow& dialog, SourcesTable& table) {
    whenTried([](FXWindow&, const std::string& text) {
      EXPECT_EQ(text, "It gave no price of KNOWN.AX (refused).\nno such key: (key)\n");
    });
    press(dialog, "Switch on");
    letEventsPass();
    EXPECT_EQ(rows(table)[1], "Service|off|service|not tried here, has a key|1|");
  });
}

TEST_F(SourcesDialogTest, TheWindowAnswersWhileASourceIsTried) {
  sources().setKey(u"Service", u"s3cret");
  m_service.server().stall();
  show(u"Service", [this](FXWindow& dialog, SourcesTable&) {
    whenModal("Try a source", [this](FXWindow& trial) {
      EXPECT_TRUE(m_service.server().waitForRequests(1));
      letEventsPass();
      EXPECT_EQ(textIn(trial), "Asking for KNOWN.AX...");
      EXPECT_FALSE(button(trial, "Try").isEnabled());
      press(trial, "Close"); // which ends the request
    });
    press(dialog, "Try it...");
  });
  EXPECT_FALSE(sources().source(u"Service").isTried);
}

TEST_F(SourcesDialogTest, OfflineATrialSaysSo) {
  sources().setKey(u"Service", u"s3cret");
  TallymoorInternet::Instance().goOffline();
  show(u"Service", [this](FXWindow& dialog, SourcesTable&) {
    whenTried(
        [](FXWindow&, const std::string& text) { EXPECT_THAT(text, HasSubstr("The program is offline.")); });
    press(dialog, "Try it...");
  });
  EXPECT_TRUE(m_service.server().requests().empty());
}

TEST_F(SourcesDialogTest, AnEmptyKeyRemovesTheOneThatIsThere) {
  sources().setKey(u"Service", u"s3cret");
  show(u"Service", [this](FXWindow& dialog, SourcesTable& table) {
    EXPECT_THAT(rows(table)[1], HasSubstr("has a key"));
    whenModal("Key", [this](FXWindow& form) {
      EXPECT_FALSE(shows(form, "s3cret"));
      EXPECT_EQ("", std::string(find<FXTextField>(form)->getText().text()));
      press(form, "OK");
    });
    press(dialog, "Key...");
    letEventsPass();
    EXPECT_THAT(rows(table)[1], HasSubstr("needs a key"));
  });
}

TEST_F(SourcesDialogTest, AFolderIsAddedAndItsQuestionsAreAsked) {
  const String folder = makeFolder("exports");
  TestProfile::writeFile(folder + u"/A.csv", "Date,Close\n2026-02-27,4.5\n");
  for (const char16_t* file : {u"/B.csv", u"/C.csv"})
    TestProfile::writeFile(folder + file, "Date;Close\n02/03/2026;10.25\n03/03/2026;10.50\n");
  show(u"locators", [&](FXWindow& dialog, SourcesTable& table) {
    typeFolder(folder);
    whenModal("Is the day 02/03/2026 written as", [this](FXWindow& question) {
      press(question, "dd/MM/yyyy");
      press(question, "OK");
    });
    answer("1 other file leaves the same open. Does your answer hold there too?", "Yes");
    answer("3 of 3 files can be read.", "OK");
    press(dialog, "Add a folder...");
    letEventsPass();
    EXPECT_EQ(rows(table)[2], "Folder exports|on|folder|||");
    EXPECT_TRUE(button(dialog, "Files...").isEnabled()) << "the new source is the chosen one";
  });
  const auto answers = sources().source(u"Folder exports").answers;
  EXPECT_EQ(answers.at(u"B.csv").at(FormatDoubt::About::DateOrder), u"dd/MM/yyyy");
  EXPECT_EQ(answers.at(u"C.csv").at(FormatDoubt::About::DateOrder), u"dd/MM/yyyy");
}

TEST_F(SourcesDialogTest, TellsOfFilesThatGiveNoPrices) {
  addFolder();
  TestProfile::writeFile(profile().path("prices/A.csv"), "nonsense");
  TestProfile::writeFile(profile().path("prices/B.csv"), "Date;Close\n02/03/2026;10.25\n03/03/2026;10.50\n");
  show(u"My files", [this](FXWindow& dialog, SourcesTable&) {
    whenModal("Is the day 02/03/2026 written as", [this](FXWindow& question) { press(question, "Cancel"); });
    whenModal("0 of 2 files can be read.", [this](FXWindow& box) {
      EXPECT_TRUE(shows(box, "B.csv: Is the day 02/03/2026 written as"));
      press(box, "OK");
    });
    press(dialog, "Files...");
  });
  EXPECT_TRUE(sources().source(u"My files").answers.empty());
}

TEST_F(SourcesDialogTest, AWrongFolderAddsNothing) {
  show(u"locators", [this](FXWindow& dialog, SourcesTable& table) {
    whenModal("Folder of CSV files", [this](FXWindow& folders) {
      type(*find<FXTextField>(folders), profile().path("missing").toUTF8());
      press(folders, "OK");
      EXPECT_TRUE(folders.shown());
      press(folders, "Cancel");
    });
    press(dialog, "Add a folder...");
    letEventsPass();
    EXPECT_EQ(rows(table).size(), 2u);
  });
}

TEST_F(SourcesDialogTest, ACommandIsAddedAndTried) {
  show(u"locators", [this](FXWindow& dialog, SourcesTable& table) {
    whenModal("Command", [this](FXWindow& form) {
      type(*find<FXTextField>(form), "/bin/echo -e \"Date,Close\\n2026-03-02,4.5\"");
      press(form, "OK");
    });
    whenModal("Try a source", [this](FXWindow& trial) {
      EXPECT_EQ(textIn(trial), "Type the code of a stock and press Try.");
      type(*find<FXTextField>(trial), "ABC");
      press(trial, "Try");
      runUntil([&] { return textIn(trial).starts_with("It "); });
      EXPECT_THAT(textIn(trial), HasSubstr("02/03/2026    4.50"));
      press(trial, "Close");
    });
    answer("Are the figures right, and is Command echo to be used from now on?", "No");
    press(dialog, "Add a command...");
    letEventsPass();
    EXPECT_EQ(rows(table)[2], "Command echo|off|command||2|");
  });
  EXPECT_EQ(sources().source(u"Command echo").command,
            (std::vector<String>{u"/bin/echo", u"-e", u"Date,Close\\n2026-03-02,4.5"}));
}

TEST_F(SourcesDialogTest, WhatTheOutputOfACommandLeavesOpenIsAskedDuringATrial) {
  sources().addCommand(u"Mine", {u"/bin/echo", u"-e", u"Date,Close\\n02/03/2026,4.5"});
  show(u"Mine", [this](FXWindow& dialog, SourcesTable&) {
    whenModal("Try a source", [this](FXWindow& trial) {
      type(*find<FXTextField>(trial), "ABC");
      whenModal("Mine", [this](FXWindow& question) {
        press(question, "dd/MM/yyyy");
        press(question, "OK");
      });
      press(trial, "Try");
      runUntil([&] { return textIn(trial).starts_with("It answered"); });
      EXPECT_THAT(textIn(trial), HasSubstr("02/03/2026    4.50"));
      answer("Are the figures right, and is Mine to be used from now on?", "No");
      press(trial, "Close");
    });
    press(dialog, "Try it...");
  });
  EXPECT_EQ(sources().source(u"Mine").answers.at(String()).at(FormatDoubt::About::DateOrder), u"dd/MM/yyyy");
}

TEST_F(SourcesDialogTest, TheOrderIsChanged) {
  addFolder();
  show(u"My files", [this](FXWindow& dialog, SourcesTable& table) {
    EXPECT_EQ(rows(table)[2], "My files|on|folder|||");
    EXPECT_FALSE(button(dialog, "Move down").isEnabled());
    for (int times = 0; times < 2; ++times) {
      press(dialog, "Move up");
      letEventsPass();
    }
    EXPECT_EQ(rows(table)[0], "My files|on|folder|||");
    EXPECT_FALSE(button(dialog, "Move up").isEnabled());
    press(dialog, "Move down");
    letEventsPass();
    EXPECT_EQ(rows(table)[1], "My files|on|folder|||");
  });
  EXPECT_EQ(sources().sources()[1].name, u"My files");
}

TEST_F(SourcesDialogTest, AFolderIsTakenOutOfTheList) {
  addFolder();
  sources().pin(u"ABC.AX", {u"My files", u"ABC"});
  show(u"My files", [this](FXWindow& dialog, SourcesTable& table) {
    for (const char* button : {"No", "Yes"}) {
      EXPECT_EQ(rows(table).size(), 3u);
      answer("Do you want to take My files out of the list?\nIts files stay as they are.", button);
      press(dialog, "Remove...");
      letEventsPass();
    }
    EXPECT_EQ(rows(table).size(), 2u);
  });
  EXPECT_TRUE(sources().pins().empty()) << "no code waits for a source that is gone";
}

TEST_F(SourcesDialogTest, DocumentsThatCannotBeReadAreToldAndReadAgainOnceMended) {
  const String path = profile().configFolder() + u"Sources/Bad.xml";
  TestProfile::writeFile(path, "<PriceSource");
  show(u"locators", [&](FXWindow& dialog, SourcesTable&) {
    whenModal(path.toUTF8(), [this](FXWindow& box) { press(box, "OK"); });
    press(dialog, "Complaints...");
    std::filesystem::remove(path.toUTF8());
    press(dialog, "Read again");
    letEventsPass();
    EXPECT_FALSE(button(dialog, "Complaints...").isEnabled());
  });
}

TEST_F(SourcesDialogTest, AChangeThatCannotBeWrittenIsToldAndNotMade) {
  addFolder();
  const String file = profile().configFolder() + u"PriceSources.xml";
  std::filesystem::remove(file.toUTF8());
  std::filesystem::create_directories((file + u"/in the way").toUTF8());
  show(u"My files", [this](FXWindow& dialog, SourcesTable& table) {
    whenModal("SourcesDialog::onAction failed.", [this](FXWindow& box) { press(box, "OK"); });
    press(dialog, "Switch off");
    letEventsPass();
    EXPECT_EQ(rows(table)[2], "My files|on|folder|||");
  });
}

TEST_F(SourcesDialogTest, WithoutASourceItSaysThatNoPricesAreFetched) {
  show(u"locators", [this](FXWindow& dialog, SourcesTable&) {
    press(dialog, "Switch off");
    letEventsPass();
    EXPECT_TRUE(shows(dialog, "No source is on: no prices are fetched."));
  });
}

TEST_F(SourcesDialogTest, WordsOfACommandMayHoldBlanksInQuotationMarks) {
  EXPECT_EQ(commandWords(u"  /bin/a  --code={CODE} \"b c\"d \"\" "),
            (std::vector<String>{u"/bin/a", u"--code={CODE}", u"b cd", u""}));
  EXPECT_TRUE(commandWords(u" ").empty());
  EXPECT_THROW(commandWords(u"/bin/a \"b"), Exception);
}

} // namespace
} // namespace Tallymoor
