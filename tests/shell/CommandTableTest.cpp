#include "shell/CommandTable.h"
#include "ShellTest.h"
#include "support/MessageOf.h"
#include "support/windows/RealKeys.h"
#include "views/TotalCapTreeItem.h"
#include <algorithm>

namespace Tallymoor {
namespace {

/// The commands of the real window, which starts without portfolios.
class CommandTableTest : public ShellTest {
protected:
  /// The buttons and menu entries of a command.
  std::vector<FXWindow*> widgetsOf(FXuint id) {
    std::vector<FXWindow*> found;
    for (FXMenuTitle* title : findAll<FXMenuTitle>(tallymoor()))
      for (FXMenuCommand* entry : findAll<FXMenuCommand>(*title->getMenu()))
        if (entry->getSelector() == id)
          found.push_back(entry);
    for (FXButton* button : findAll<FXButton>(tallymoor()))
      if (button->getTarget() == &tallymoor() && button->getSelector() == id)
        found.push_back(button);
    return found;
  }
  /// The toolkit does this after every event.
  void update() {
    for (FXWindow* widget : everything())
      widget->handle(&app(), FXSEL(SEL_UPDATE, 0), nullptr);
  }
  void expectUsable(const std::vector<FXuint>& commands, bool usable) {
    update();
    for (const FXuint id : commands) {
      const auto widgets = widgetsOf(id);
      EXPECT_FALSE(widgets.empty()) << id;
      for (FXWindow* widget : widgets)
        EXPECT_EQ(usable, bool(widget->isEnabled())) << id;
    }
  }
  /// Number of pixels on the display that differ from the background.
  FXint paintedPixels(FXButton& button) {
    button.update();
    app().repaint();
    const FXint width = button.getWidth(), height = button.getHeight();
    FXImage picture(&app(), nullptr, IMAGE_KEEP | IMAGE_OWNED, width, height);
    picture.create();
    FXDCWindow(&picture).drawArea(&button, 0, 0, width, height, 0, 0);
    picture.restore();
    return static_cast<FXint>(
        std::count_if(picture.getData(), picture.getData() + width * height, [&](FXColor pixel) {
          return (pixel & 0xffffff) != (button.getBackColor() & 0xffffff);
        }));
  }
  void makePortfolio() {
    whenModal("New Portfolio", [this](FXWindow& dialog) {
      type(*find<FXTextField>(dialog), "Trading");
      press(dialog, "OK");
    });
    command(TallymoorWindow::ID_NEW_PORTFOLIO);
  }

  static inline const std::vector<FXuint> OF_PORTFOLIOS = {TallymoorWindow::ID_BUY,
                                                           TallymoorWindow::ID_SELL,
                                                           TallymoorWindow::ID_DIVIDENDS,
                                                           TallymoorWindow::ID_INTEREST,
                                                           TallymoorWindow::ID_DEPOSIT_CASH,
                                                           TallymoorWindow::ID_WITHDRAW_CASH,
                                                           TallymoorWindow::ID_REPORT_CUSTOM,
                                                           TallymoorWindow::ID_REPORT_LAST_MONTH,
                                                           TallymoorWindow::ID_REPORT_LAST_FQ,
                                                           TallymoorWindow::ID_REPORT_LAST_CQ,
                                                           TallymoorWindow::ID_REPORT_LAST_FY,
                                                           TallymoorWindow::ID_REPORT_LAST_CY};
  static inline const std::vector<FXuint> OF_A_SOUND_START = {
      TallymoorWindow::ID_NEW_PORTFOLIO, TallymoorWindow::ID_NEW_WATCHLIST,  TallymoorWindow::ID_WIZARD,
      TallymoorWindow::ID_IMPORT,        TallymoorWindow::ID_REFRESH_PRICES, TallymoorWindow::ID_BACK,
      TallymoorWindow::ID_BBACK};
  static inline const std::vector<FXuint> EVER = {
      TallymoorWindow::ID_SAVE,     TallymoorWindow::ID_EXPORT, TallymoorWindow::ID_CHECK_UPDATES,
      TallymoorWindow::ID_SETTINGS, TallymoorWindow::ID_FAQ,    TallymoorWindow::ID_FEEDBACK,
      TallymoorWindow::ID_ABOUT,    FXTopWindow::ID_MINIMIZE,   MainWindow::ID_SHUTDOWN};

private:
  std::vector<FXWindow*> everything() {
    std::vector<FXWindow*> all = findAll<FXWindow>(tallymoor());
    for (FXMenuTitle* title : findAll<FXMenuTitle>(tallymoor()))
      for (FXMenuCommand* entry : findAll<FXMenuCommand>(*title->getMenu()))
        all.push_back(entry);
    return all;
  }
};

TEST_F(CommandTableTest, WithoutAPortfolioItsCommandsAreGreyed) {
  expectUsable(OF_PORTFOLIOS, false);
  expectUsable(OF_A_SOUND_START, true);
  expectUsable(EVER, true);
  makePortfolio();
  expectUsable(OF_PORTFOLIOS, true);
}

TEST_F(CommandTableTest, AGreyedButtonShowsItsWholePicture) {
  auto* button = dynamic_cast<FXButton*>(widgetsOf(TallymoorWindow::ID_DEPOSIT_CASH).back());
  ASSERT_TRUE(button);
  FXIcon* const icon = button->getIcon();
  button->enable();
  const FXint whole = paintedPixels(*button);
  button->disable();
  EXPECT_GT(whole, 50);
  EXPECT_NEAR(whole, paintedPixels(*button), whole / 10);
  EXPECT_EQ(icon, button->getIcon());
  EXPECT_FALSE(button->isEnabled());
}

// The toolkit updates commands after every event, including entries of closed menus.
TEST_F(CommandTableTest, AKeyWorksAsSoonAsItsCommandCanBeUsed) {
  RealKeys keys(app());
  tallymoor().setFocus();
  runUntil([this] { return tallymoor().hasFocus(); });
  runUntil([this] { return !menuEntry("Buy Shares...")->isEnabled(); });
  keys.press(tallymoor(), KEY_b, CONTROLMASK); // Would open a dialog that nobody answers.
  makePortfolio();
  runUntil([this] { return bool(menuEntry("Buy Shares...")->isEnabled()); });
  bool opened = false;
  whenModal("Choose Portfolio", [&](FXWindow& dialog) {
    opened = true;
    press(dialog, "Cancel");
  });
  keys.press(tallymoor(), KEY_b, CONTROLMASK);
  EXPECT_TRUE(opened);
}

TEST_F(CommandTableTest, ForwardIsUsableFromAPastDayOnly) {
  tallymoor().setViewDate(Date(2026, 2, 20));
  const std::vector<FXuint> forward = {TallymoorWindow::ID_FORWARD, TallymoorWindow::ID_FFORWARD};
  expectUsable(forward, true);
  Date::clearFixedDate(); // As far as the buttons know.
  expectUsable(forward, false);
  tallymoor().resetViewDate();
}

TEST_F(CommandTableTest, AnUnknownCommandIsRefused) {
  const CommandTable table(tallymoor(), {{7, "Seven"}});
  EXPECT_STREQ("Seven", table.at(7).label);
  EXPECT_EQ(0, table.run(7)); // nothing to do for it here
  EXPECT_EQ(u"CommandTable::at - no command has the number 8", messageOf([&] { table.at(8); }));
}

/// The start found no valid locator document, so there is no tree.
class CommandsAfterAFailedStartTest : public CommandTableTest {
protected:
  CommandsAfterAFailedStartTest() {
    TestProfile::writeFile(profile().configFolder() + u"CodeSearchLocators.xml",
                           "<CodeSearchLocators active=\"gone\" version=\"1\"/>");
    whenModal("TallymoorInternet::TallymoorInternet - failed to find a code search locator",
              [this](FXWindow& box) { press(box, "OK"); });
  }
  bool opensWizard() override { return false; }
};

TEST_F(CommandsAfterAFailedStartTest, WhatNeedsTheTreeIsGreyed) {
  expectUsable(OF_PORTFOLIOS, false);
  expectUsable(OF_A_SOUND_START, false);
  expectUsable(EVER, true);
}

} // namespace
} // namespace Tallymoor
