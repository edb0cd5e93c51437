#include "shell/WarningStrip.h"
#include "ShellTest.h"
#include "engine/SharePortfolioUser.h"
#include "xml/PortfolioRecords.h"
#include <gmock/gmock.h>

namespace Tallymoor {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class WarningStripTest : public ShellTest {
protected:
  WarningStrip& strip() { return *tallymoor().warnings(); }
  void warn(const String& text, const String& key) {
    BigMutexLock lock;
    tallymoor().warnOnce(text, u"Warning from Tallymoor!", key, 1);
  }
};

TEST_F(WarningStripTest, TakesNoRoomWithoutAWarning) {
  EXPECT_EQ(0, strip().getDefaultHeight());
  EXPECT_THAT(strip().shownTexts(), IsEmpty());
}

TEST_F(WarningStripTest, ShowsCaptionAndTextAsTheyStand) {
  warn(u"A & B has dropped below 5% \"%n%s\"", u"a");
  letEventsPass();
  EXPECT_TRUE(shows(strip(), "Warning from Tallymoor!"));
  EXPECT_TRUE(shows(strip(), "A & B has dropped below 5% \"%n%s\""));
  EXPECT_TRUE(runUntil([this] { return strip().getHeight() > 10; })) << "room is made for it";
}

TEST_F(WarningStripTest, OneKeyIsShownOnceARun) {
  warn(u"first", u"ABC.AXmin warning");
  warn(u"second", u"ABC.AXmin warning");
  letEventsPass();
  EXPECT_THAT(strip().shownTexts(), ElementsAre(String(u"first")));
  press(strip(), "Close");
  warn(u"third", u"ABC.AXmin warning");
  letEventsPass();
  EXPECT_THAT(strip().shownTexts(), IsEmpty());
}

TEST_F(WarningStripTest, AnEmptyKeyIsShownEveryTime) {
  warn(u"first", String());
  warn(u"second", String());
  letEventsPass();
  EXPECT_THAT(strip().shownTexts(), ElementsAre(String(u"first"), String(u"second")));
}

TEST_F(WarningStripTest, WhatDoesNotFitWaitsForAPlace) {
  for (const char16_t* text : {u"1", u"2", u"3", u"4", u"5"})
    warn(text, text);
  letEventsPass();
  EXPECT_EQ(WarningStrip::SHOWN_AT_ONCE, strip().shownTexts().size());
  EXPECT_EQ(1u, strip().waiting());
  press(strip(), "Close");
  letEventsPass();
  EXPECT_THAT(strip().shownTexts(), ElementsAre(String(u"2"), String(u"3"), String(u"4"), String(u"5")));
}

TEST_F(WarningStripTest, ALongTextFitsTheFirstWindow) {
  const FXint shortWidth = strip().getDefaultWidth();
  warn(u"Warning: The cash reserve for a portfolio with a long name is currently negative. You need to "
       u"reconcile the "
       u"cash reserve with the actual trading account.",
       u"long");
  letEventsPass();
  EXPECT_LE(strip().getDefaultWidth(), 800);
  EXPECT_GT(strip().getDefaultWidth(), shortWidth);
}

TEST_F(WarningStripTest, ANegativeCashReserveIsToldOnceARun) {
  whenModal("New Portfolio", [this](FXWindow& dialog) {
    type(*find<FXTextField>(dialog), "Trading");
    press(dialog, "OK");
  });
  command(TallymoorWindow::ID_NEW_PORTFOLIO);
  SharePortfolioUser& trading = *tallymoor().store().portfolios().at(u"Trading");
  {
    BigMutexLock lock;
    trading.debitCash(Date(), 10.0, CASH_EVENT_WITHDRAWAL, u"WITHDRAWAL ");
    trading.checkCashReserve();
    trading.checkCashReserve();
  }
  letEventsPass();
  EXPECT_THAT(strip().shownTexts(),
              ElementsAre(String(
                  u"Warning: The cash reserve for Trading is currently negative. You need to reconcile "
                  u"the cash reserve with the actual trading account.")));
}

class WarningsOfACrashedRunTest : public WarningStripTest {
protected:
  WarningsOfACrashedRunTest() { Settings::Instance().writeInt(u"Warnings", u"a", 1); }
};

TEST_F(WarningsOfACrashedRunTest, AreShownAgain) {
  warn(u"again", u"a");
  letEventsPass();
  EXPECT_THAT(strip().shownTexts(), ElementsAre(String(u"again")));
}

} // namespace
} // namespace Tallymoor
