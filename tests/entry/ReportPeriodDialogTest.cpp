#include "entry/ReportPeriodDialog.h"
#include "BrokenPlatform.h"
#include "FocusedWidget.h"
#include "foundation/Exception.h"
#include "support/windows/WindowTest.h"
#include "widgets/CalendarDialog.h"
#include "widgets/FXCalendar.h"
#include <fxkeys.h>

namespace Tallymoor {
namespace {

class ReportPeriodDialogTest : public WindowTest {
protected:
  static std::string text(FXWindow& form, const std::string& label) {
    return field(form, label).getText().text();
  }

  const ReportPeriod m_initial{Date(2025, 7, 1), Date(2026, 3, 3)};
};

TEST_F(ReportPeriodDialogTest, TakesTheDaysFromTheKeyboardAlone) {
  ReportPeriodDialog dialog(&mainWindow(), m_initial);
  EXPECT_TRUE(shows(dialog, "Choose the first and the last day of the report."));
  whenModal("Custom Report", [&](FXWindow& form) {
    EXPECT_EQ(&field(form, "From"), focused(form));
    EXPECT_EQ("01/07/2025", text(form, "From"));
    EXPECT_EQ("03/03/2026", text(form, "To"));
    type(field(form, "From"), " 02/03/2026 ");
    type(field(form, "To"), "02/03/2026");
    key(form, KEY_Return);
  });
  EXPECT_EQ(1u, dialog.execute());
  EXPECT_EQ(Date(2026, 3, 2), dialog.period().first);
  EXPECT_EQ(Date(2026, 3, 2), dialog.period().last);
}

TEST_F(ReportPeriodDialogTest, RefusesAnEndBeforeTheBeginning) {
  ReportPeriodDialog dialog(&mainWindow(), m_initial);
  whenModal("Custom Report", [&](FXWindow& form) {
    type(field(form, "To"), "30/06/2025");
    answer("The report can't end before it begins.", "OK");
    press(form, "OK");
    EXPECT_TRUE(form.shown());
    EXPECT_EQ(&field(form, "To"), focused(form));
    EXPECT_EQ("30/06/2025", text(form, "To"));
    key(form, KEY_Escape);
  });
  EXPECT_EQ(0u, dialog.execute());
}

TEST_F(ReportPeriodDialogTest, RefusesFutureDays) {
  ReportPeriodDialog dialog(&mainWindow(), m_initial);
  whenModal("Custom Report", [&](FXWindow& form) {
    type(field(form, "To"), "04/03/2026");
    answer("You can't specify a date in the future.", "OK");
    press(form, "OK");
    type(field(form, "From"), "04/03/2026");
    answer("You can't specify a date in the future.", "OK");
    press(form, "OK");
    EXPECT_TRUE(form.shown());
    key(form, KEY_Escape);
  });
  EXPECT_EQ(0u, dialog.execute());
}

TEST_F(ReportPeriodDialogTest, ReportsAnInvalidDate) {
  ReportPeriodDialog dialog(&mainWindow(), m_initial);
  whenModal("Custom Report", [&](FXWindow& form) {
    type(field(form, "From"), "soon");
    answer("From: \"soon\" is no date.\nA date is written like 31/12/2026 or 31 Dec 2026.", "OK");
    press(form, "OK");
    EXPECT_EQ(&field(form, "From"), focused(form));
    key(form, KEY_Escape);
  });
  EXPECT_EQ(0u, dialog.execute());
}

TEST_F(ReportPeriodDialogTest, TheButtonsOpenTheCalendar) {
  ReportPeriodDialog dialog(&mainWindow(), m_initial);
  const auto pick = [this](FXWindow& form, FXuint id, const Date& day) {
    whenModal("Choose the date", [this, day](FXWindow& calendar) {
      dynamic_cast<CalendarDialog&>(calendar).calendar()->setDate(day);
      press(calendar, "OK");
    });
    form.handle(&app(), FXSEL(SEL_COMMAND, id), nullptr);
  };
  whenModal("Custom Report", [&](FXWindow& form) {
    pick(form, ReportPeriodDialog::ID_CHOOSE_FIRST, Date(2025, 1, 1));
    pick(form, ReportPeriodDialog::ID_CHOOSE_LAST, Date(2025, 12, 31));
    press(form, "OK");
  });
  EXPECT_EQ(1u, dialog.execute());
  EXPECT_EQ(Date(2025, 1, 1), dialog.period().first);
  EXPECT_EQ(Date(2025, 12, 31), dialog.period().last);
}

TEST_F(ReportPeriodDialogTest, FailuresOfTheCalendarButtonsAreReported) {
  ReportPeriodDialog dialog(&mainWindow(), m_initial);
  Platform::setInstance(std::make_unique<BrokenPlatform>());
  const auto expectFailure = [this](FXWindow& form, FXuint id, const std::string& handler) {
    answer("ReportPeriodDialog::" + handler + " failed. Exception : no form for dates", "OK");
    form.handle(&app(), FXSEL(SEL_COMMAND, id), nullptr);
  };
  whenModal("Custom Report", [&](FXWindow& form) {
    expectFailure(form, ReportPeriodDialog::ID_CHOOSE_FIRST, "onChooseFirst");
    expectFailure(form, ReportPeriodDialog::ID_CHOOSE_LAST, "onChooseLast");
    key(form, KEY_Escape);
  });
  EXPECT_EQ(0u, dialog.execute());
}

/// A dialog whose checks throw.
class BrokenDialog : public ReportPeriodDialog {
public:
  using ReportPeriodDialog::ReportPeriodDialog;
  bool validate() override { throw Exception(u"broken checks"); }
};

TEST_F(ReportPeriodDialogTest, AFailureOfOkIsReportedAndTheFormStays) {
  BrokenDialog dialog(&mainWindow(), m_initial);
  whenModal("Custom Report", [&](FXWindow& form) {
    answer("ReportPeriodDialog::onOK failed. Exception : broken checks", "OK");
    press(form, "OK");
    EXPECT_TRUE(form.shown());
    key(form, KEY_Escape);
  });
  EXPECT_EQ(0u, dialog.execute());
}

} // namespace
} // namespace Tallymoor
