#include "views/HistoryDialog.h"
#include "ViewsTest.h"
#include "foundation/FileOperations.h"
#include "support/windows/RealKeys.h"
#include "views/ChangeTable.h"
#include "views/HistoryTable.h"
#include "widgets/FormTextField.h"
#include <fxkeys.h>

namespace Tallymoor {
namespace {

using testing::ElementsAre;

constexpr std::int64_t NOON = 1772452800; ///< of 2 March 2026, UTC
constexpr std::int64_t A_DAY = 24 * 60 * 60;

const std::string FIRST = "<SharePortfolio><String>Trading</String><HeldShares/><SoldShares/><Dividends/>"
                          "<CashReserve/><String/></SharePortfolio>";
const std::string SECOND =
    "<SharePortfolio><String>Trading</String><HeldShares/><SoldShares/><Dividends/>"
    "<CashReserve><CashEvent><Date>2/3/2026</Date><Constant>10.00</Constant><Constant>4</Constant>"
    "<String>DEPOSIT </String></CashEvent></CashReserve><String/></SharePortfolio>";

/// A journal of four changes: "Trading" is made, gets a deposit, which is undone, and "Saving" is made.
class HistoryDialogTest : public ViewsTest {
protected:
  ~HistoryDialogTest() override { FileOperations::current() = FileOperations::system(); }

  void SetUp() override {
    ViewsTest::SetUp();
    m_journal.emplace(profile().dataFolder() + u"Journal");
  }
  void fillJournal() {
    const auto nothing = PortfolioText::of(String(), 0, {});
    const auto first = PortfolioText::of(u"Trading", 0, FIRST);
    const auto second = PortfolioText::of(u"Trading", 0, SECOND);
    append(Change::Kind::Made, NOON, u"New portfolio Trading", nothing, first);
    append(Change::Kind::Made, NOON, u"Deposit of 10", first, second);
    append(Change::Kind::Undone, NOON + A_DAY, u"Deposit of 10", second, first);
    Change save;
    save.kind = Change::Kind::Saved;
    m_journal->append(save);
    append(Change::Kind::Made, NOON + A_DAY, u"New portfolio Saving", nothing,
           PortfolioText::of(u"Saving", 1, SAVING));
  }
  void append(Change::Kind kind, std::int64_t moment, const String& sentence, const PortfolioText& before,
              const PortfolioText& after) {
    Change change;
    change.kind = kind;
    change.moment = moment;
    change.sentence = sentence;
    change.portfolios = {ChangedPortfolio::between(before, after)};
    m_journal->append(change);
  }
  /// Opens the dialog, and gives what the user wants back.
  std::optional<std::uint64_t> show(const std::function<void(HistoryDialog& dialog)>& steps) {
    std::vector<Replay::Portfolio> now;
    if (!m_journal->entries().empty())
      now = {{u"Trading", FIRST}, {u"Saving", SAVING}};
    HistoryDialog dialog(&mainWindow(), {&*m_journal, now});
    whenModal("History", [&](FXWindow&) {
      letEventsPass();
      steps(dialog);
    });
    dialog.execute();
    return dialog.wantedBack();
  }
  static std::vector<std::string> texts(const Table& table) {
    std::vector<std::string> rows;
    for (FXint row = 0; row < table.getNumRows(); ++row) {
      rows.push_back(table.getRowText(row).text());
      for (const std::string& text : rowTexts(table, row))
        rows.back() += "|" + text;
    }
    return rows;
  }
  /// The sentences that are listed.
  static std::vector<std::string> sentences(const Table& table) {
    std::vector<std::string> rows;
    for (FXint row = 0; row < table.getNumRows(); ++row)
      rows.push_back(cellText(table, row, "Change"));
    return rows;
  }
  void choose(HistoryDialog& dialog, FXint row) {
    dialog.table()->setCurrentItem(row, 0, TRUE);
    letEventsPass();
  }

  const std::string SAVING = "<SharePortfolio><String>Saving</String><HeldShares/><SoldShares/><Dividends/>"
                             "<CashReserve/><String/></SharePortfolio>";
  std::optional<Journal> m_journal;
};

TEST_F(HistoryDialogTest, ListsTheChangesNewestFirst) {
  fillJournal();
  show([this](HistoryDialog& dialog) {
    const std::string noon = timeOfMoment(NOON).toUTF8();
    EXPECT_THAT(texts(*dialog.table()), ElementsAre("03/03/2026|" + noon + "|New portfolio Saving|Saving",
                                                    "03/03/2026|" + noon + "|Undo: Deposit of 10|Trading",
                                                    "02/03/2026|" + noon + "|Deposit of 10|Trading",
                                                    "02/03/2026|" + noon + "|New portfolio Trading|Trading",
                                                    "before||The oldest state that is known|"));
    press(dialog, "Close");
  });
}

TEST_F(HistoryDialogTest, ShowsWhatTheChosenOneDid) {
  fillJournal();
  show([this](HistoryDialog& dialog) {
    EXPECT_THAT(texts(*dialog.details()), ElementsAre("Properties|Name||Saving"));
    choose(dialog, 2);
    EXPECT_THAT(texts(*dialog.details()),
                ElementsAre("Cash, 02/03/2026|Date||02/03/2026", "Cash, 02/03/2026|Amount||10.00",
                            "Cash, 02/03/2026|Kind||Deposit", "Cash, 02/03/2026|Description||DEPOSIT "));
    choose(dialog, 1);
    EXPECT_EQ(4, dialog.details()->getNumRows());
    EXPECT_EQ("10.00", cellText(*dialog.details(), 1, "Before"));
    choose(dialog, 4);
    EXPECT_EQ(0, dialog.details()->getNumRows());
    press(dialog, "Close");
  });
}

TEST_F(HistoryDialogTest, FiltersByTextAndPortfolio) {
  fillJournal();
  show([this](HistoryDialog& dialog) {
    auto& text = *find<FormTextField>(dialog);
    auto& list = *find<FXListBox>(dialog);
    type(text, "DEPOSIT");
    EXPECT_THAT(sentences(*dialog.table()), ElementsAre("Undo: Deposit of 10", "Deposit of 10"));
    EXPECT_EQ(4, dialog.details()->getNumRows()) << "of the first that is listed";
    type(text, "");
    list.setCurrentItem(1, TRUE);
    letEventsPass();
    EXPECT_EQ("Saving", std::string(list.getItemText(1).text()));
    EXPECT_THAT(sentences(*dialog.table()), ElementsAre("New portfolio Saving"));
    type(text, "deposit");
    EXPECT_EQ(u"No change is like that.", dialog.table()->shownEmptyText());
    EXPECT_EQ(0, dialog.details()->getNumRows());
    EXPECT_FALSE(button(dialog, "Go Back to Here...").isEnabled());
    press(dialog, "Close");
  });
}

TEST_F(HistoryDialogTest, WithoutChangesItSaysSo) {
  EXPECT_EQ(std::nullopt, show([this](HistoryDialog& dialog) {
              EXPECT_EQ(u"Nothing has been changed yet.", dialog.table()->shownEmptyText());
              EXPECT_FALSE(button(dialog, "Go Back to Here...").isEnabled());
              press(dialog, "Close");
            }));
}

TEST_F(HistoryDialogTest, AsksBeforeItGoesBack) {
  fillJournal();
  const std::string question =
      "Do you want to take back 2 changes of all portfolios?\nYou can undo that as one change.";
  EXPECT_EQ(std::optional<std::uint64_t>(2), show([&](HistoryDialog& dialog) {
              EXPECT_FALSE(button(dialog, "Go Back to Here...").isEnabled()) << "that is where we are";
              choose(dialog, 2);
              answer(question, "No");
              press(dialog, "Go Back to Here...");
              EXPECT_EQ(std::nullopt, dialog.wantedBack());
              answer(question, "Yes");
              press(dialog, "Go Back to Here...");
            }));
}

TEST_F(HistoryDialogTest, TheOldestStateCanBeWantedBack) {
  fillJournal();
  EXPECT_EQ(std::optional<std::uint64_t>(0), show([this](HistoryDialog& dialog) {
              choose(dialog, 4);
              answer(
                  "Do you want to take back 4 changes of all portfolios?\nYou can undo that as one change.",
                  "Yes");
              press(dialog, "Go Back to Here...");
            }));
}

TEST_F(HistoryDialogTest, AChangeThatCanNotBeReadAnyMoreSaysSo) {
  fillJournal();
  const auto place = m_journal->entries()[1].place + m_journal->entries()[1].length - 1;
  show([&](HistoryDialog& dialog) {
    std::string bytes = TestProfile::readFile(m_journal->path());
    bytes[place] = static_cast<char>(bytes[place] ^ 1);
    TestProfile::writeFile(m_journal->path(), bytes);
    choose(dialog, 2);
    ASSERT_EQ(1, dialog.details()->getNumRows());
    EXPECT_THAT(std::string(dialog.details()->getRowText(0).text()),
                testing::HasSubstr("can't be read any more"));
    press(dialog, "Close");
  });
}

TEST_F(HistoryDialogTest, TheKeysMoveFindAndClose) {
  fillJournal();
  EXPECT_EQ(std::nullopt, show([this](HistoryDialog& dialog) {
              EXPECT_EQ(dialog.table(), &focusedWidget(dialog));
              key(dialog, KEY_Down);
              key(dialog, KEY_Down);
              EXPECT_EQ(2, dialog.table()->getCurrentRow());
              EXPECT_EQ(4, dialog.details()->getNumRows());
              auto& text = *find<FormTextField>(dialog);
              text.setFocus();
              key(dialog, KEY_Return);
              EXPECT_EQ(dialog.table(), &focusedWidget(dialog)) << "of what was found";
              key(dialog, KEY_Escape);
            }));
}

TEST_F(HistoryDialogTest, TenThousandChangesAreListed) {
  const std::string texts[] = {FIRST, SECOND};
  FileOperations::current().sync = [](int) { return 0; };
  for (int i = 0; i < 10'000; ++i)
    append(Change::Kind::Made, NOON + i * 60, u"Change " + String::fromLong(i),
           PortfolioText::of(u"Trading", 0, texts[i % 2]),
           PortfolioText::of(u"Trading", 0, texts[(i + 1) % 2]));
  show([this](HistoryDialog& dialog) {
    EXPECT_EQ(10'001, dialog.table()->getNumRows());
    EXPECT_EQ("Change 9999", cellText(*dialog.table(), 0, "Change"));
    choose(dialog, 9'999);
    EXPECT_EQ(4, dialog.details()->getNumRows());
    press(dialog, "Close");
  });
}

} // namespace
} // namespace Tallymoor
