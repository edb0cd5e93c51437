#include "shell/OptionsDialog.h"
#include "ShellTest.h"
#include "books/SharePortfolioUser.h"
#include "foundation/RunTimeSettings.h"
#include "market/TallymoorInternet.h"
#include "views/SharePortfolioTreeItem.h"
#include "views/TotalCapTreeItem.h"
#include "xml/CountryOfResidence.h"

namespace Tallymoor {
namespace {

const std::string CURRENT = "Current Prices Update Period (minutes)";
const std::string HISTORICAL = "Historical Prices Update Period (hours)";
const std::string SPLIT = "Detection of Stock Splits, (day multiple)";
const std::string REVERSE = "Detection of Reverse Stock Splits, (day multiple)";
const std::string SHORTER = "Shorter Exp. Moving Average for Index Trend (days)";
const std::string LONGER = "Longer Exp. Moving Average for Index Trend (days)";

/// The options of the real window with a portfolio "Trading", which has had 100.00 in cash since 2 March.
class OptionsDialogTest : public ShellTest {
protected:
  void SetUp() override {
    TestProfile::writeFile(
        recordsPath(),
        "<Portfolios><SharePortfolio><String>Trading</String><HeldShares/><SoldShares/><Dividends/>"
        "<CashReserve><CashEvent><Date>2/3/2026</Date><Constant>100.00</Constant><Constant>4</Constant>"
        "<String>DEPOSIT </String></CashEvent></CashReserve><String/></SharePortfolio></Portfolios>");
    ShellTest::SetUp();
  }
  void TearDown() override {
    ShellTest::TearDown();
    readSettings();
  }
  /// Opens the options by the menu command and runs the step in the dialog.
  void withOptions(Step step) {
    whenModal("Tallymoor Options", std::move(step));
    command(TallymoorWindow::ID_SETTINGS);
  }
  void enter(FXWindow& dialog, const std::string& label, const std::string& text) {
    type(field(dialog, label), text);
  }
  /// Checks that the value is rejected with this message, and that the dialog stays open and stores nothing.
  void expectRefused(const std::string& label, const std::string& text, const std::string& words) {
    const OperationSettings before = operationSettings();
    whenModal("Tallymoor Options", [=, this](FXWindow& dialog) {
      enter(dialog, label, text);
      answer(words, "OK");
      whenModal("Tallymoor Options", [this](FXWindow& stillOpen) { press(stillOpen, "Cancel"); });
      press(dialog, "OK");
    });
    command(TallymoorWindow::ID_SETTINGS);
    EXPECT_EQ(before.currentPriceUpdateMins, operationSettings().currentPriceUpdateMins);
    EXPECT_EQ(before.splitRatioDetect, operationSettings().splitRatioDetect);
    EXPECT_EQ(before.indexTrendShort, operationSettings().indexTrendShort);
  }
  void accept(const std::string& label, const std::string& text) {
    withOptions([=, this](FXWindow& dialog) {
      enter(dialog, label, text);
      press(dialog, "OK");
    });
  }
  static std::uint32_t stored(const String& key) {
    return Settings::Instance().readUnsigned(u"Operation", key, 99);
  }
  static double storedReal(const String& key) { return Settings::Instance().readReal(u"Operation", key, 99); }
};

// ---- Settings ----

TEST_F(OptionsDialogTest, EverySettingIsTakenAndStored) {
  withOptions([this](FXWindow& dialog) {
    enter(dialog, CURRENT, "15");
    enter(dialog, HISTORICAL, "24");
    enter(dialog, SPLIT, "1.5");
    enter(dialog, REVERSE, "2.5");
    enter(dialog, SHORTER, "12");
    enter(dialog, LONGER, "40");
    FXListBox& tray = *find<FXListBox>(dialog);
    ASSERT_EQ(2, tray.getNumItems());
    EXPECT_STREQ("Total Capital", tray.getItemText(0).text());
    EXPECT_STREQ("Trading", tray.getItemText(1).text());
    tray.setCurrentItem(1);
    press(dialog, "Auto");
    press(dialog, "Hide");
    press(dialog, "OK");
  });
  EXPECT_EQ(15u, currentPriceUpdateMins);
  EXPECT_EQ(24u, historicalPriceUpdateHours);
  EXPECT_EQ(1.5, splitRatioDetect);
  EXPECT_EQ(2.5, reverseSplitRatioDetect);
  EXPECT_EQ(12.0, indexTrendShort);
  EXPECT_EQ(40.0, indexTrendLong);
  EXPECT_EQ(String(u"Trading"), trayFormat);
  EXPECT_TRUE(autoMinMaxPrices);
  EXPECT_TRUE(hideLastFYTransactions);
  EXPECT_EQ(15u, stored(u"CurrentPriceUpdateMins"));
  EXPECT_EQ(24u, stored(u"HistoricalPriceUpdateHours"));
  EXPECT_EQ(1.5, storedReal(u"SplitRatioDetect"));
  EXPECT_EQ(2.5, storedReal(u"ReverseSplitRatioDetect"));
  EXPECT_EQ(12.0, storedReal(u"IndexTrendShort"));
  EXPECT_EQ(40.0, storedReal(u"IndexTrendLong"));
  EXPECT_EQ(1u, stored(u"AutoMinMaxPrices"));
  EXPECT_EQ(String(u"Trading"), Settings::Instance().readString(u"Operation", u"TrayFormat"));
  EXPECT_EQ(1u, stored(u"HideLastFYTransactions"));
}

TEST_F(OptionsDialogTest, TheDialogShowsWhatHolds) {
  OperationSettings settings;
  settings.currentPriceUpdateMins = 7;
  settings.indexTrendLong = 33.5;
  settings.autoMinMaxPrices = true;
  settings.trayFormat = u"Trading";
  writeSettings(settings);
  withOptions([this](FXWindow& dialog) {
    EXPECT_STREQ("7", field(dialog, CURRENT).getText().text());
    EXPECT_STREQ("33.50", field(dialog, LONGER).getText().text());
    EXPECT_STREQ("Australia", field(dialog, "Country of Residence for Tax Purposes").getText().text());
    EXPECT_TRUE(dynamic_cast<FXRadioButton&>(button(dialog, "Auto")).getCheck());
    EXPECT_FALSE(dynamic_cast<FXRadioButton&>(button(dialog, "Manual")).getCheck());
    EXPECT_EQ(1, find<FXListBox>(dialog)->getCurrentItem());
    press(dialog, "Manual");
    EXPECT_FALSE(dynamic_cast<FXRadioButton&>(button(dialog, "Auto")).getCheck());
    press(dialog, "Cancel");
  });
  EXPECT_TRUE(autoMinMaxPrices);
}

TEST_F(OptionsDialogTest, UntouchedValueKeepsAllItsDecimals) {
  OperationSettings settings;
  settings.splitRatioDetect = 1.2345;
  writeSettings(settings);
  accept(CURRENT, "11");
  EXPECT_EQ(1.2345, splitRatioDetect);
}

TEST_F(OptionsDialogTest, TrayTextThatNamesNoPortfolioShowsTheTotal) {
  OperationSettings settings;
  settings.trayFormat = u"Gone";
  writeSettings(settings);
  withOptions([this](FXWindow& dialog) {
    EXPECT_EQ(0, find<FXListBox>(dialog)->getCurrentItem());
    press(dialog, "OK");
  });
  EXPECT_EQ(String(u"Total Capital"), trayFormat);
}

TEST_F(OptionsDialogTest, PeriodsOfNothingAreRefused) {
  const std::string current = "You cannot set the current price updater to run continuously.\n"
                              "Please select a value great than zero.";
  expectRefused(CURRENT, "0", current);
  expectRefused(CURRENT, "-5", current);
  expectRefused(CURRENT, "often", current);
  expectRefused(HISTORICAL, "0",
                "You cannot set the historical price updater to run continuously.\n"
                "Please select a value greater than zero.");
}

TEST_F(OptionsDialogTest, WhatIsRefusedIsShownWithTheKeyboardInIt) {
  withOptions([this](FXWindow& dialog) {
    FXTextField& split = field(dialog, SPLIT);
    type(split, "0.5");
    find<FXTabBook>(dialog)->setCurrent(1);
    answer("You should set a split ratio detection \nvalue greater than 1.1", "OK");
    press(dialog, "OK");
    EXPECT_EQ(0, find<FXTabBook>(dialog)->getCurrent());
    EXPECT_EQ(&split, split.getParent()->getFocus());
    press(dialog, "Cancel");
  });
}

TEST_F(OptionsDialogTest, PeriodsBeyondWhatTheClockHoldsAreCut) {
  accept(CURRENT, "71583");
  EXPECT_EQ(71582u, currentPriceUpdateMins);
  EXPECT_EQ(71582u, stored(u"CurrentPriceUpdateMins"));
  accept(HISTORICAL, "99999999999999");
  EXPECT_EQ(1193u, historicalPriceUpdateHours);
}

TEST_F(OptionsDialogTest, SplitRatiosBelowTheLeastAreRefused) {
  expectRefused(SPLIT, "1.09", "You should set a split ratio detection \nvalue greater than 1.1");
  expectRefused(REVERSE, "1.09", "You should set a reverse split ratio \ndetection value greater than 1.1");
  accept(SPLIT, "1.1");
  EXPECT_EQ(1.1, splitRatioDetect);
}

TEST_F(OptionsDialogTest, ATrendOfLessThanNoDaysIsRefused) {
  expectRefused(SHORTER, "-5", "The days of the short Index Trend Exp. MA can't be less than zero.");
}

TEST_F(OptionsDialogTest, ShortTrendMustBeShorter) {
  const std::string words = "The short Index Trend Exp. MA but be less than the long Index Trend Exp. MA.";
  expectRefused(SHORTER, "30", words);
  expectRefused(SHORTER, "31", words);
  accept(SHORTER, "29.5");
  EXPECT_EQ(29.5, indexTrendShort);
}

TEST_F(OptionsDialogTest, ResetFillsInTheDefaultsAndTakesNothingByItself) {
  OperationSettings settings;
  settings.currentPriceUpdateMins = 99;
  settings.historicalPriceUpdateHours = 99;
  settings.splitRatioDetect = settings.reverseSplitRatioDetect = 9;
  settings.indexTrendShort = 98;
  settings.indexTrendLong = 99;
  settings.hideLastFYTransactions = true;
  settings.trayFormat = u"Trading";
  writeSettings(settings);
  withOptions([this](FXWindow& dialog) {
    press(dialog, "Reset");
    EXPECT_STREQ("10", field(dialog, CURRENT).getText().text());
    EXPECT_STREQ("8", field(dialog, HISTORICAL).getText().text());
    EXPECT_STREQ("2.00", field(dialog, SPLIT).getText().text());
    EXPECT_STREQ("2.00", field(dialog, REVERSE).getText().text());
    EXPECT_STREQ("10.00", field(dialog, SHORTER).getText().text());
    EXPECT_STREQ("30.00", field(dialog, LONGER).getText().text());
    EXPECT_TRUE(dynamic_cast<FXRadioButton&>(button(dialog, "Auto")).getCheck());
    EXPECT_FALSE(dynamic_cast<FXCheckButton&>(button(dialog, "Hide")).getCheck());
    EXPECT_EQ(1, find<FXListBox>(dialog)->getCurrentItem());
    press(dialog, "Cancel");
  });
  EXPECT_EQ(99u, currentPriceUpdateMins);
}

// ---- Maintenance ----

TEST_F(OptionsDialogTest, CacheIsDroppedAfterAYesAndStaysSoAfterCancel) {
  TallymoorInternet& gateway = TallymoorInternet::Instance();
  gateway.setCachedPrice(u"ABC.AX", Date(2026, 3, 2), 5.0);
  const std::string question = "Are you sure you want to remove ALL cached prices?\n"
                               "WARNING! These could take a long time to recover.";
  withOptions([&](FXWindow& dialog) {
    answer(question, "No");
    press(dialog, "Clean ALL");
    EXPECT_TRUE(gateway.hasCachedHistory(u"ABC.AX"));
    answer(question, "Yes");
    press(dialog, "Clean ALL");
    EXPECT_FALSE(gateway.hasCachedHistory(u"ABC.AX"));
    press(dialog, "Cancel");
  });
  EXPECT_FALSE(gateway.hasCachedHistory(u"ABC.AX"));
}

TEST_F(OptionsDialogTest, CapitalIsComputedAgainFromTheRecords) {
  SharePortfolioUser& portfolio = *tallymoor().store().portfolios().at(u"Trading");
  // This day is now inconsistent with the records.
  portfolio.portfolio().cashEvents()[0].subElement(u"Value").setValue(u"250.00");
  ASSERT_EQ(100.0, portfolio.capitalRecord().capitalOn(Date(2026, 3, 2)));
  withOptions([this](FXWindow& dialog) {
    press(dialog, "Refresh");
    press(dialog, "OK");
  });
  EXPECT_EQ(250.0, portfolio.capitalRecord().capitalOn(Date(2026, 3, 2)));
  EXPECT_EQ(250.0, portfolio.capitalRecord().capitalOn(Date(2026, 3, 3)));
  EXPECT_TRUE(shows(tallymoor(), "$250.00"));
}

TEST_F(OptionsDialogTest, FailureOfThatIsToldUnderTheNameOfTheReset) {
  SharePortfolioUser& portfolio = *tallymoor().store().portfolios().at(u"Trading");
  XMLElement& day = portfolio.portfolio().cashEvents()[0].subElement(u"Date");
  const String good = day.value();
  withOptions([&](FXWindow& dialog) {
    day.setValue(u"someday");
    whenModal("OptionsDialog::onResetDefaults failed. ", [&](FXWindow& box) {
      day.setValue(good);
      press(box, "OK");
    });
    press(dialog, "Refresh");
    press(dialog, "OK");
  });
  EXPECT_EQ(100.0, portfolio.capitalRecord().capitalOn(Date(2026, 3, 3)));
}

TEST_F(OptionsDialogTest, DelistedCodesThatAreChosenAreForgotten) {
  TallymoorInternet& gateway = TallymoorInternet::Instance();
  gateway.markBadCode(u"BAD.AX");
  gateway.markBadCode(u"GONE.AX");
  withOptions([&](FXWindow& dialog) {
    whenModal("Remove delisted stock codes", [this](FXWindow& choice) {
      EXPECT_TRUE(
          shows(choice, "Choose the stock codes to uncache so \nthey are no longer marked as delisted."));
      press(choice, "BAD.AX");
      press(choice, "OK");
    });
    answer("The stock codes chosen are no \nlonger marked as delisted.", "OK");
    press(dialog, "Forget...");
    press(dialog, "Cancel");
  });
  EXPECT_EQ(std::vector<String>{u"GONE.AX"}, gateway.badCodes());
}

TEST_F(OptionsDialogTest, WithoutDelistedCodesThereIsNothingToChoose) {
  withOptions([this](FXWindow& dialog) {
    answer("No stock codes are marked as delisted.", "OK");
    press(dialog, "Forget...");
    press(dialog, "Cancel");
  });
}

TEST_F(OptionsDialogTest, CountryIsChangedAtOnceAndShown) {
  withOptions([this](FXWindow& dialog) {
    whenModal("Country of Residence", [this](FXWindow& choice) {
      press(choice, "United States");
      press(choice, "OK");
    });
    press(dialog, "change");
    EXPECT_STREQ("United States", field(dialog, "Country of Residence for Tax Purposes").getText().text());
    press(dialog, "Cancel");
  });
  EXPECT_EQ(String(u"United States"), CountryOfResidence::Instance().country());
}

/// Without a gateway there is no maintenance, but settings can be changed.
class OptionsWithoutGatewayTest : public OptionsDialogTest {
protected:
  OptionsWithoutGatewayTest() {
    TestProfile::writeFile(profile().configFolder() + u"CodeSearchLocators.xml",
                           "<CodeSearchLocators active=\"gone\" version=\"1\"/>");
    whenModal("Failure during startup.", [this](FXWindow& box) { press(box, "OK"); });
  }
};

TEST_F(OptionsWithoutGatewayTest, CommandsSayWhatIsMissing) {
  const std::string missing =
      "HTMLException : TallymoorInternet::TallymoorInternet - failed to find a code search locator";
  withOptions([&](FXWindow& dialog) {
    answer("Are you sure you want to remove ALL cached prices?\n"
           "WARNING! These could take a long time to recover.",
           "Yes");
    answer("OptionsDialog::onBlastCache failed. " + missing, "OK");
    press(dialog, "Clean ALL");
    answer("OptionsDialog::onForgetDelisted failed. " + missing, "OK");
    press(dialog, "Forget...");
    enter(dialog, CURRENT, "20");
    press(dialog, "OK");
  });
  EXPECT_EQ(20u, currentPriceUpdateMins);
}

} // namespace
} // namespace Tallymoor
