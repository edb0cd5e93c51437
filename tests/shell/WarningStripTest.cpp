#include "shell/WarningStrip.h"
#include "ShellTest.h"
#include "books/SharePortfolioUser.h"
#include "session/BookQuestions.h"
#include "views/SharePortfolioTreeItem.h"
#include "views/TotalCapTreeItem.h"
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
  void over(const String& key) {
    BigMutexLock lock;
    tallymoor().warningOver(key);
  }
  SharePortfolioUser& makeTrading() {
    whenModal("New Portfolio", [this](FXWindow& dialog) {
      type(*find<FXTextField>(dialog), "Trading");
      press(dialog, "OK");
    });
    command(TallymoorWindow::ID_NEW_PORTFOLIO);
    return *tallymoor().store().portfolios().at(u"Trading");
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
  EXPECT_THAT(strip().shownTexts(), ElementsAre(String(u"second"))) << "once, with what is so now";
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

TEST_F(WarningStripTest, WarningsWithoutSpaceWait) {
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
  SharePortfolioUser& trading = makeTrading();
  {
    BigMutexLock lock;
    trading.debitCash(Date(), 10.0, CASH_EVENT_WITHDRAWAL, u"WITHDRAWAL ");
    checkCashReserve(trading);
    checkCashReserve(trading);
  }
  letEventsPass();
  EXPECT_THAT(strip().shownTexts(),
              ElementsAre(String(
                  u"Warning: The cash reserve for Trading is currently negative. You need to reconcile "
                  u"the cash reserve with the actual trading account.")));
}

TEST_F(WarningStripTest, AWarningDisappearsAndReturnsWithItsCause) {
  warn(u"first", u"a");
  warn(u"second", u"b");
  letEventsPass();
  over(u"a");
  letEventsPass();
  EXPECT_THAT(strip().shownTexts(), ElementsAre(String(u"second")));
  EXPECT_FALSE(shows(strip(), "first"));
  warn(u"first again", u"a");
  letEventsPass();
  EXPECT_THAT(strip().shownTexts(), ElementsAre(String(u"second"), String(u"first again")));
}

TEST_F(WarningStripTest, AContinuingWarningShowsItsCurrentText) {
  warn(u"AAA.AX is now at $4.00", u"a");
  letEventsPass();
  warn(u"AAA.AX is now at $3.50", u"a");
  letEventsPass();
  EXPECT_THAT(strip().shownTexts(), ElementsAre(String(u"AAA.AX is now at $3.50")));
  EXPECT_TRUE(shows(strip(), "AAA.AX is now at $3.50"));
}

TEST_F(WarningStripTest, AWaitingWarningIsRemovedWithItsCause) {
  for (const char16_t* text : {u"1", u"2", u"3", u"4", u"5", u"6"})
    warn(text, text);
  letEventsPass();
  over(u"5");
  over(u"1");
  letEventsPass();
  EXPECT_THAT(strip().shownTexts(), ElementsAre(String(u"2"), String(u"3"), String(u"4"), String(u"6")));
}

TEST_F(WarningStripTest, AClosedWarningStaysClosed) {
  warn(u"first", u"a");
  letEventsPass();
  press(strip(), "Close");
  over(u"a");
  warn(u"second", u"a");
  letEventsPass();
  EXPECT_THAT(strip().shownTexts(), IsEmpty());
}

TEST_F(WarningStripTest, ACorrectedCashReserveRemovesItsWarning) {
  SharePortfolioUser& trading = makeTrading();
  const auto book = [&](bool credit) {
    BigMutexLock lock;
    if (credit)
      trading.creditCash(Date(), 20.0, CASH_EVENT_DEPOSIT, u"DEPOSIT ");
    else
      trading.debitCash(Date(), 10.0, CASH_EVENT_WITHDRAWAL, u"WITHDRAWAL ");
    checkCashReserve(trading);
  };
  book(false);
  letEventsPass();
  EXPECT_EQ(1u, strip().shownTexts().size());
  book(true);
  letEventsPass();
  EXPECT_THAT(strip().shownTexts(), IsEmpty());
}

TEST_F(WarningStripTest, TheWarningOfAPortfolioEndsWhenItIsRenamedOrDeleted) {
  for (const bool renamed : {true, false}) {
    SharePortfolioUser& trading = makeTrading();
    {
      BigMutexLock lock;
      trading.debitCash(Date(), 10.0, CASH_EVENT_WITHDRAWAL, u"WITHDRAWAL ");
      checkCashReserve(trading);
    }
    letEventsPass();
    ASSERT_EQ(1u, strip().shownTexts().size());
    TotalCapTreeItem& root = *tallymoor().totalCapital();
    if (renamed) {
      BigMutexLock lock;
      root.renamePortfolio(u"Trading", u"Growth");
    }
    letEventsPass();
    for (const String& text : strip().shownTexts())
      EXPECT_EQ(!renamed, text.contains(u"Trading"));
    {
      BigMutexLock lock;
      root.removeChild(root.portfolioNode(renamed ? u"Growth" : u"Trading"));
    }
    letEventsPass();
    EXPECT_THAT(strip().shownTexts(), IsEmpty());
  }
}

TEST_F(WarningStripTest, ASuccessfulSaveRemovesTheWarning) {
  {
    BigMutexLock lock;
    tallymoor().warn(u"Your records could not be saved.", u"End of the Session",
                     PortfolioSession::UNSAVED_RECORDS, 2);
  }
  letEventsPass();
  EXPECT_EQ(1u, strip().shownTexts().size());
  command(TallymoorWindow::ID_SAVE);
  letEventsPass();
  EXPECT_THAT(strip().shownTexts(), IsEmpty());
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
