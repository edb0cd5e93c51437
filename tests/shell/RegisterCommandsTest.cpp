#include "ShellTest.h"
#include "views/CashReserveTreeItem.h"
#include "views/PortfolioTable.h"
#include "views/SharePortfolioTreeItem.h"
#include "views/TotalCapTreeItem.h"
#include "widgets/GuiWakeUp.h"
#include "widgets/InvestmentTree.h"
#include <fxkeys.h>
#include <gmock/gmock.h>

namespace Tallymoor {
namespace {

using testing::ElementsAre;

struct Register {
  FXuint command;
  std::string button; ///< Tip of its tool bar button.
  std::string entry;  ///< Menu entry.
  std::string prompt;
  std::string form;    ///< Title of the window that it opens.
  std::string handler; ///< Name in failure messages.
};

const Register REGISTERS[] = {
    {TallymoorWindow::ID_BUY, "Buy Shares", "&Buy Shares...",
     "Select the portfolio to register a share purchase for.", "Buy Shares", "onBuy"},
    {TallymoorWindow::ID_SELL, "Sell Shares", "&Sell Shares...",
     "Select the portfolio to register a share sale from.", "Sell Shares", "onSell"},
    {TallymoorWindow::ID_DIVIDENDS, "Receive a Dividend", "Receive a &Dividend...",
     "Select the portfolio to receive a dividend from.", "Receive a dividend", "onDividends"},
    {TallymoorWindow::ID_INTEREST, "Receive Interest", "Receive &Interest...",
     "Select the portfolio to receive interest for.", "Receive interest", "onInterest"},
    {TallymoorWindow::ID_DEPOSIT_CASH, "Deposit Cash", "Deposit &Cash...",
     "Select the portfolio to deposit cash into.", "Deposit cash", "onDepositCash"},
    {TallymoorWindow::ID_WITHDRAW_CASH, "Withdraw Cash", "&Withdraw Cash...",
     "Select the portfolio to withdraw cash from.", "Withdraw cash", "onWithdrawCash"}};

/// The commands that ask for a portfolio first. The portfolio "Trading" has 500.00 in cash.
class RegisterCommandsTest : public ShellTest {
protected:
  void SetUp() override {
    ShellTest::SetUp();
    m_failure = std::make_unique<GuiWakeUp>(&app(), [] { throw Exception(u"test"); });
    makePortfolio("Trading");
    tallymoor().store().portfolios().at(u"Trading")->creditCash(Date(2026, 3, 2), 500.0, 4, u"DEPOSIT start");
    tallymoor().refreshViews(true);
  }
  void TearDown() override {
    m_failure.reset();
    ShellTest::TearDown();
  }
  void makePortfolio(const std::string& name) {
    whenModal("New Portfolio", [this, name](FXWindow& dialog) {
      type(*find<FXTextField>(dialog), name);
      press(dialog, "OK");
    });
    command(TallymoorWindow::ID_NEW_PORTFOLIO);
  }
  static std::vector<std::string> chosen(FXWindow& dialog) {
    std::vector<std::string> names;
    for (const FXCheckButton* entry : findAll<FXCheckButton>(dialog))
      if (entry->getCheck())
        names.emplace_back(entry->getText().text());
    return names;
  }
  void choosePortfolio(const std::string& prompt) {
    whenModal("Choose Portfolio", [this, prompt](FXWindow& dialog) {
      EXPECT_TRUE(shows(dialog, prompt));
      press(dialog, "Trading");
      press(dialog, "OK");
    });
  }
  SharePortfolioTreeItem& trading() { return *tallymoor().totalCapital()->portfolioNode(u"Trading"); }

  std::unique_ptr<GuiWakeUp> m_failure; ///< Throws in the innermost running event loop.
};

TEST_F(RegisterCommandsTest, EachAsksForThePortfolioInItsWordsAndOpensItsForm) {
  for (const Register& each : REGISTERS) {
    choosePortfolio(each.prompt);
    whenModal(each.form, [&](FXWindow& dialog) {
      EXPECT_EQ(each.form, title(dialog));
      press(dialog, "Cancel");
    });
    press(tallymoor(), each.button);
  }
}

TEST_F(RegisterCommandsTest, TheOnlyPortfolioIsChosenAndReturnGoesOn) {
  whenModal("Choose Portfolio", [this](FXWindow& dialog) {
    EXPECT_THAT(chosen(dialog), ElementsAre("Trading"));
    key(dialog, KEY_Return);
  });
  whenModal("Buy Shares", [this](FXWindow& dialog) { press(dialog, "Cancel"); });
  command(TallymoorWindow::ID_BUY);
}

TEST_F(RegisterCommandsTest, OfSeveralThatOfTheSelectedNodeIsChosen) {
  makePortfolio("Growth");
  const auto expectChosen = [this](const std::vector<std::string>& names) {
    whenModal("Choose Portfolio", [this, names](FXWindow& dialog) {
      EXPECT_EQ(names, chosen(dialog));
      press(dialog, "Cancel");
    });
    command(TallymoorWindow::ID_BUY);
  };
  InvestmentTree& tree = *tallymoor().portfolioTree();
  tree.showPageOf(tallymoor().totalCapital());
  expectChosen({});
  tree.showPageOf(&trading());
  expectChosen({"Trading"});
  tree.showPageOf(tallymoor().totalCapital()->portfolioNode(u"Growth")->cashReserveItem());
  expectChosen({"Growth"});
  tallymoor().tabBook()->setCurrent(1, TRUE);
  expectChosen({});
}

TEST_F(RegisterCommandsTest, CancellingTheChoiceOpensNoForm) {
  for (const Register& each : REGISTERS) {
    whenModal("Choose Portfolio", [this](FXWindow& dialog) { press(dialog, "Cancel"); });
    command(each.command);
  }
  EXPECT_EQ(1, trading().cashReserveItem()->table()->getNumRows());
}

TEST_F(RegisterCommandsTest, EachStandsInTheMenuWithItsKey) {
  const std::map<FXuint, std::string> keys = {
      {TallymoorWindow::ID_BUY, "Ctrl+B"},       {TallymoorWindow::ID_SELL, "Ctrl+L"},
      {TallymoorWindow::ID_DIVIDENDS, "Ctrl+D"}, {TallymoorWindow::ID_INTEREST, "Ctrl+I"},
      {TallymoorWindow::ID_DEPOSIT_CASH, ""},    {TallymoorWindow::ID_WITHDRAW_CASH, ""}};
  for (const Register& each : REGISTERS) {
    std::string shown = each.entry;
    shown.erase(shown.find('&'), 1);
    FXMenuCommand* entry = menuEntry(shown);
    ASSERT_TRUE(entry) << shown;
    EXPECT_EQ(each.command, entry->getSelector());
    EXPECT_EQ(keys.at(each.command), std::string(entry->getAccelText().text()));
  }
}

TEST_F(RegisterCommandsTest, CashIsBookedInThePortfolioThatWasChosen) {
  const std::vector<std::string> bookings[] = {{"Receive Interest", "Receive interest", "5"},
                                               {"Deposit Cash", "Deposit cash", "100"},
                                               {"Withdraw Cash", "Withdraw cash", "20"}};
  for (const auto& booking : bookings) {
    choosePortfolio("Select the portfolio to ");
    whenModal(booking[1], [&](FXWindow& dialog) {
      type(field(dialog, "Amount"), booking[2]);
      press(dialog, "OK");
    });
    press(tallymoor(), booking[0]);
  }
  EXPECT_EQ(585.0, trading().portfolio().cashReserveToday());
  EXPECT_EQ(4, trading().cashReserveItem()->table()->getNumRows());
}

TEST_F(RegisterCommandsTest, FailuresAreReported) {
  for (const Register& each : REGISTERS) {
    whenModal("Choose Portfolio", [this](FXWindow&) { m_failure->wake(); });
    answer("TallymoorWindow::" + each.handler + " failed. Exception : test", "OK");
    command(each.command);
  }
}

} // namespace
} // namespace Tallymoor
