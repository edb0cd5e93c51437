#include "views/BackupsDialog.h"
#include "ShellTest.h"
#include "books/SharePortfolioUser.h"
#include "session/Backups.h"
#include "support/windows/RealKeys.h"
#include "views/BackupsTable.h"
#include "views/SharePortfolioTreeItem.h"
#include "views/TotalCapTreeItem.h"
#include <gmock/gmock.h>

namespace Tallymoor {
namespace {

using testing::ElementsAre;

std::string document(const std::string& name, const std::string& amount) {
  return "<Portfolios><SharePortfolio><String>" + name +
         "</String><HeldShares/><SoldShares/><Dividends/><CashReserve><CashEvent><Date>2/3/2026</Date>"
         "<Constant>" +
         amount +
         "</Constant><Constant>4</Constant><String>DEPOSIT "
         "</String></CashEvent></CashReserve><String/></SharePortfolio></Portfolios>";
}

/// Copies of three days: one of another portfolio, a damaged one, and one of "Trading" with other cash.
class BackupsDialogTest : public ShellTest {
protected:
  BackupsDialogTest() {
    copyOf(Date(2026, 2, 26), document("Mining", "700.00"));
    copyOf(Date(2026, 2, 27), "<Portfolios><Sha");
    copyOf(Date(2026, 3, 2), document("Trading", "500.00"));
    TestProfile::writeFile(recordsPath(), document("Trading", "1000.00"));
  }
  void copyOf(const Date& day, const std::string& content) {
    TestProfile::writeFile(recordsPath(), content);
    keepBackupOfDay(recordsPath(), day);
  }

  static BackupsTable& tableOf(FXWindow& dialog) { return *find<BackupsTable>(dialog); }
  void show(const std::function<void(FXWindow& dialog)>& steps) {
    whenModal("Backups", [this, steps](FXWindow& dialog) {
      letEventsPass();
      steps(dialog);
    });
    command(TallymoorWindow::ID_BACKUPS);
  }
  double cashOf(const String& name) {
    return tallymoor().totalCapital()->portfolioNode(name)->portfolio().cashReserveToday();
  }
};

TEST_F(BackupsDialogTest, ListsTheNewestFirstWithWhatIsInThem) {
  std::vector<std::string> texts;
  show([&](FXWindow& dialog) {
    for (FXint row = 0; Row* known = tableOf(dialog).rowAt(row); ++row) {
      std::string text;
      for (const auto& column : tableOf(dialog).columns())
        text += "|" + (*column)(*known).toUTF8();
      texts.push_back(text);
    }
    press(dialog, "Close");
  });
  EXPECT_THAT(texts, ElementsAre("|02/03/2026|1: Trading|1|1", "|27/02/2026|can't be read||1",
                                 "|26/02/2026|1: Mining|1|1"));
}

TEST_F(BackupsDialogTest, OneIsPutBackAndUndone) {
  show([this](FXWindow& dialog) {
    answer("Do you want to put back your records of 02/03/2026?\n"
           "All portfolios become as they were then. Edit, Undo takes it back.",
           "Yes");
    press(dialog, "Put back...");
  });
  letEventsPass();
  EXPECT_EQ(500.0, cashOf(u"Trading"));
  command(TallymoorWindow::ID_UNDO);
  EXPECT_EQ(1000.0, cashOf(u"Trading"));
}

TEST_F(BackupsDialogTest, PortfoliosComeAndGoWithTheirNodes) {
  show([this](FXWindow& dialog) {
    tableOf(dialog).choose(u"3");
    answer("Do you want to put back your records of 26/02/2026?\n"
           "All portfolios become as they were then. Edit, Undo takes it back.",
           "Yes");
    press(dialog, "Put back...");
  });
  letEventsPass();
  EXPECT_EQ(nullptr, tallymoor().totalCapital()->portfolioNode(u"Trading"));
  EXPECT_EQ(700.0, cashOf(u"Mining"));
  command(TallymoorWindow::ID_UNDO);
  EXPECT_EQ(nullptr, tallymoor().totalCapital()->portfolioNode(u"Mining"));
  EXPECT_EQ(1000.0, cashOf(u"Trading"));
}

TEST_F(BackupsDialogTest, ADamagedOneIsNotPutBack) {
  show([](FXWindow& dialog) {
    tableOf(dialog).choose(u"2");
    EXPECT_FALSE(button(dialog, "Put back...").isEnabled());
    EXPECT_FALSE(dynamic_cast<BackupsDialog&>(dialog).validate());
    tableOf(dialog).choose(u"1");
    EXPECT_TRUE(button(dialog, "Put back...").isEnabled());
    dialog.handle(&dialog, FXSEL(SEL_COMMAND, FXDialogBox::ID_CANCEL), nullptr);
  });
}

TEST_F(BackupsDialogTest, NoLeavesTheDialogOpenAndEscapeClosesIt) {
  show([this](FXWindow& dialog) {
    answer("Do you want to put back your records of 02/03/2026?\n"
           "All portfolios become as they were then. Edit, Undo takes it back.",
           "No");
    press(dialog, "Put back...");
    EXPECT_TRUE(dialog.shown());
    key(dialog, KEY_Escape);
  });
  EXPECT_EQ(1000.0, cashOf(u"Trading"));
}

} // namespace
} // namespace Tallymoor
