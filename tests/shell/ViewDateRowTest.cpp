#include "RecordingPlatform.h"
#include "ShellTest.h"
#include "views/SharePortfolioTreeItem.h"
#include "views/TotalCapTreeItem.h"
#include <fxkeys.h>

namespace Tallymoor {
namespace {

/// The view date row on Tuesday, 3 March 2026, with a portfolio that got 500.00 on 1 February and 250.00 on
/// 25 February.
class ViewDateRowTest : public ShellTest {
protected:
  void SetUp() override {
    ShellTest::SetUp();
    whenModal("New Portfolio", [this](FXWindow& dialog) {
      type(*find<FXTextField>(dialog), "Trading");
      press(dialog, "OK");
    });
    command(TallymoorWindow::ID_NEW_PORTFOLIO);
    SharePortfolioUser& trading = *tallymoor().store().portfolios().at(u"Trading");
    trading.creditCash(Date(2026, 2, 1), 500.0, 4, u"DEPOSIT start");
    trading.creditCash(Date(2026, 2, 25), 250.0, 4, u"DEPOSIT more");
    tallymoor().refreshViews(true);
  }

  ViewDateRow& row() { return *tallymoor().viewDateRow(); }
  std::string fieldText() { return row().field()->getText().text(); }
  std::string totalCapital() {
    for (FXLabel* label : findAll<FXLabel>(*tallymoor().totalCapital()->page()))
      if (label->getText() == "Total Capital")
        return dynamic_cast<FXLabel&>(*label->getNext()).getText().text();
    throw std::runtime_error("no total");
  }
  void expectToday() {
    EXPECT_FALSE(TallymoorWindow::viewDateMoved());
    EXPECT_EQ(Date(2026, 3, 3), TallymoorWindow::viewDate());
    EXPECT_EQ("View Date: today", fieldText());
    EXPECT_EQ("$750.00", totalCapital());
    for (FXButton* button : {row().forwardWeek(), row().forwardDay()}) {
      EXPECT_EQ(nullptr, button->getIcon());
      EXPECT_EQ("", std::string(button->getTipText().text()));
      EXPECT_EQ("", std::string(button->getHelpText().text()));
      EXPECT_EQ(FXSelector(TallymoorWindow::ID_NO_COMMAND), button->getSelector());
    }
  }
  void expectPast(const Date& date, const std::string& capital) {
    EXPECT_TRUE(TallymoorWindow::viewDateMoved());
    EXPECT_EQ(date, TallymoorWindow::viewDate());
    EXPECT_EQ(date.toString(DATE_DISPLAY_LOCAL).toUTF8(), fieldText());
    EXPECT_EQ(capital, totalCapital());
    EXPECT_NE(nullptr, row().forwardWeek()->getIcon());
    EXPECT_NE(nullptr, row().forwardDay()->getIcon());
    EXPECT_EQ(FXSelector(TallymoorWindow::ID_FFORWARD), row().forwardWeek()->getSelector());
    EXPECT_EQ(FXSelector(TallymoorWindow::ID_FORWARD), row().forwardDay()->getSelector());
  }
  void whenCalendar(const Step& step) {
    whenModal("Choose the date", [step](FXWindow& dialog) { step(dialog); });
  }
};

TEST_F(ViewDateRowTest, StandsFromForwardAWeekToBackAWeekAndShowsToday) {
  std::vector<FXWindow*> widgets;
  for (FXWindow* child = row().getFirst(); child; child = child->getNext())
    widgets.push_back(child);
  ASSERT_EQ(5u, widgets.size());
  EXPECT_EQ(row().forwardWeek(), widgets[0]);
  EXPECT_EQ(row().forwardDay(), widgets[1]);
  EXPECT_EQ(row().field(), widgets[2]);
  EXPECT_EQ(&button(row(), "Back a day"), widgets[3]);
  EXPECT_EQ(&button(row(), "Back a week"), widgets[4]);
  EXPECT_EQ("Move the view date for your capital back a day",
            std::string(dynamic_cast<FXButton*>(widgets[3])->getHelpText().text()));
  EXPECT_EQ("Move the view date for your capital back a week",
            std::string(dynamic_cast<FXButton*>(widgets[4])->getHelpText().text()));
  const DateTextField& field = *row().field();
  EXPECT_EQ(20, field.getNumColumns());
  EXPECT_FALSE(field.isEditable());
  EXPECT_EQ("Click this control to set a date in the past for viewing your capital",
            std::string(field.getTipText().text()));
  EXPECT_EQ("Viewing Capital at this date", std::string(field.getHelpText().text()));
  expectToday();
}

TEST_F(ViewDateRowTest, IsNotCutOffInTheSmallestWindow) {
  tallymoor().resize(50, 50);
  letEventsPass();
  EXPECT_LE(row().getX() + row().getWidth(), tallymoor().onlineButton()->getParent()->getX());
  EXPECT_LE(tallymoor().getWidth(), 800);
}

TEST_F(ViewDateRowTest, MovesByADayAndAWeek) {
  press(row(), "Back a day");
  expectPast(Date(2026, 3, 2), "$750.00");
  press(row(), "Back a week");
  expectPast(Date(2026, 2, 23), "$500.00");
  press(row(), "Forward a day");
  expectPast(Date(2026, 2, 24), "$500.00");
  press(row(), "Forward a day");
  expectPast(Date(2026, 2, 25), "$750.00");
  press(row(), "Back a week");
  expectPast(Date(2026, 2, 18), "$500.00");
  press(row(), "Forward a week");
  expectPast(Date(2026, 2, 25), "$750.00");
}

TEST_F(ViewDateRowTest, FrontOfTheTipsSaysWhatTheForwardButtonsDo) {
  press(row(), "Back a week");
  EXPECT_EQ("Move the view date for your capital forward a week",
            std::string(row().forwardWeek()->getHelpText().text()));
  EXPECT_EQ("Move the view date for your capital forward a day",
            std::string(row().forwardDay()->getHelpText().text()));
}

TEST_F(ViewDateRowTest, ReachingTodayForwardEndsTheView) {
  press(row(), "Back a day");
  press(row(), "Forward a day");
  expectToday();
}

TEST_F(ViewDateRowTest, PassingTodayForwardEndsTheView) {
  press(row(), "Back a day");
  press(row(), "Forward a week");
  expectToday();
}

TEST_F(ViewDateRowTest, ForwardDoesNothingAtToday) {
  press(*row().forwardDay());
  press(*row().forwardWeek());
  expectToday();
  // Not even if the commands are sent directly.
  tallymoor().store().portfolios().at(u"Trading")->creditCash(Date(2026, 3, 1), 1.0, 4, u"DEPOSIT unseen");
  command(TallymoorWindow::ID_FORWARD);
  command(TallymoorWindow::ID_FFORWARD);
  expectToday();
}

TEST_F(ViewDateRowTest, TodayIsTheRealDayOnceMidnightHasPassed) {
  profile().setToday(Date(2026, 3, 4));
  EXPECT_EQ(Date(2026, 3, 4), TallymoorWindow::viewDate());
  press(row(), "Back a day");
  expectPast(Date(2026, 3, 3), "$750.00");
}

TEST_F(ViewDateRowTest, FieldIsTintedAndTheStatusLineTellsOfADayInThePast) {
  const FXColor today = row().field()->getBackColor();
  press(row(), "Back a week");
  EXPECT_NE(today, row().field()->getBackColor());
  EXPECT_EQ("You are looking at 24/02/2026, not at today.",
            std::string(tallymoor().statusBar()->getStatusLine()->getNormalText().text()));
  press(row(), "Forward a week");
  EXPECT_EQ(today, row().field()->getBackColor());
  EXPECT_EQ("Ready.", std::string(tallymoor().statusBar()->getStatusLine()->getNormalText().text()));
}

TEST_F(ViewDateRowTest, AClickOpensTheCalendarAtTheDateShown) {
  whenCalendar([this](FXWindow& dialog) {
    EXPECT_EQ(Date(2026, 3, 3), dynamic_cast<CalendarDialog&>(dialog).calendar()->date());
    press(dialog, "Cancel");
  });
  click(*row().field());
  expectToday();
  pickViewDate(Date(2026, 2, 10));
  expectPast(Date(2026, 2, 10), "$500.00");
  whenCalendar([this](FXWindow& dialog) {
    EXPECT_EQ(Date(2026, 2, 10), dynamic_cast<CalendarDialog&>(dialog).calendar()->date());
    press(dialog, "Cancel");
  });
  click(*row().field());
  expectPast(Date(2026, 2, 10), "$500.00");
}

TEST_F(ViewDateRowTest, EnterAndTheSpaceBarOpenTheCalendarToo) {
  for (const FXuint code : {KEY_Return, KEY_KP_Enter, KEY_space}) {
    whenCalendar([this](FXWindow& dialog) { press(dialog, "Cancel"); });
    FXEvent event{};
    event.type = SEL_KEYPRESS;
    event.code = static_cast<FXint>(code);
    row().field()->handle(&app(), FXSEL(SEL_KEYPRESS, 0), &event);
  }
  expectToday();
}

TEST_F(ViewDateRowTest, PickingTodayEndsTheView) {
  pickViewDate(Date(2026, 2, 10));
  pickViewDate(Date(2026, 3, 3));
  expectToday();
}

TEST_F(ViewDateRowTest, PickingTheFutureEndsTheView) {
  pickViewDate(Date(2026, 2, 10));
  pickViewDate(Date(2026, 4, 1));
  expectToday();
  pickViewDate(Date(2026, 4, 1));
  expectToday();
}

TEST_F(ViewDateRowTest, UpdaterIsPausedWhileThePastIsShown) {
  PriceUpdater& updater = TallymoorInternet::Instance().priceUpdater();
  updater.start();
  press(row(), "Back a day");
  EXPECT_FALSE(updater.isRunning());
  command(TallymoorWindow::ID_REFRESH_PRICES);
  press(row(), "Back a day");
  EXPECT_FALSE(updater.isRunning());
  press(row(), "Forward a week");
  EXPECT_TRUE(updater.isRunning());
}

TEST_F(ViewDateRowTest, UpdaterStaysPausedWhenTodayIsShownAgainOffline) {
  PriceUpdater& updater = TallymoorInternet::Instance().priceUpdater();
  updater.start();
  press(row(), "Back a day");
  TallymoorInternet::Instance().goOffline();
  press(row(), "Forward a day");
  EXPECT_FALSE(updater.isRunning());
}

/// Each failing command names itself and the date problem.
TEST_F(ViewDateRowTest, FailuresNameTheCommand) {
  press(row(), "Back a week");
  const auto expectFailure = [this](const std::string& handler, FXuint id) {
    answerKind(BoxKind::Error, "TallymoorWindow::" + handler + " failed. Exception : no form for dates",
               "OK");
    command(id);
  };
  RecordingPlatform::Behaviour behaviour;
  behaviour.writesDates = false;
  RecordingPlatform::install(profile(), behaviour);
  expectFailure("onBackViewDate", TallymoorWindow::ID_BACK);
  expectFailure("onBBackViewDate", TallymoorWindow::ID_BBACK);
  expectFailure("onForwardViewDate", TallymoorWindow::ID_FORWARD);
  Date::setFixedDate(Date(2026, 2, 10));
  expectFailure("onFForwardViewDate", TallymoorWindow::ID_FFORWARD);
  answerKind(BoxKind::Error, "DateTextField::onChangeCurrentDate failed. Exception : no form for dates",
             "OK");
  click(*row().field());
}

class ViewDateAfterAFailedStartTest : public ShellTest {
protected:
  ViewDateAfterAFailedStartTest() {
    TestProfile::writeFile(profile().configFolder() + u"CodeSearchLocators.xml",
                           "<CodeSearchLocators active=\"gone\" version=\"1\"/>");
    whenModal("TallymoorInternet::TallymoorInternet - failed to find a code search locator",
              [this](FXWindow& box) { press(box, "OK"); });
  }
  bool opensWizard() override { return false; }
};

TEST_F(ViewDateAfterAFailedStartTest, StaysAtToday) {
  answerKind(BoxKind::Error,
             "TallymoorWindow::onBackViewDate failed. Exception : There was a failure during startup. Please "
             "restart Tallymoor",
             "OK");
  command(TallymoorWindow::ID_BACK);
  EXPECT_FALSE(TallymoorWindow::viewDateMoved());
}

} // namespace
} // namespace Tallymoor
