#include "entry/GetFloatPanel.h"
#include "BrokenPlatform.h"
#include "FocusedWidget.h"
#include "foundation/Exception.h"
#include "foundation/LinuxPlatform.h"
#include "support/windows/WindowTest.h"
#include "widgets/FXCalendar.h"

namespace Tallymoor {
namespace {

class GetFloatPanelTest : public WindowTest {
protected:
  void SetUp() override {
    WindowTest::SetUp();
    m_panel = new GetFloatPanel(mainWindow().contentFrame(), u"Starting Cash", u"Please enter the value.",
                                12.5, Date(2026, 2, 1));
    m_panel->create();
    letEventsPass();
  }
  void set(const std::string& label, const std::string& text) { type(field(*m_panel, label), text); }
  std::string shown(const std::string& label) { return field(*m_panel, label).getText().text(); }

  GetFloatPanel* m_panel = nullptr;
};

TEST_F(GetFloatPanelTest, BeginsWithTheGivenValues) {
  EXPECT_EQ(String(u"Starting Cash"), m_panel->title());
  EXPECT_EQ(String(u"Please enter the value."), m_panel->description());
  EXPECT_EQ("12.50", shown("Amount"));
  EXPECT_EQ("01/02/2026", shown("Date"));
  EXPECT_EQ("", shown("Description (optional)"));
}

TEST_F(GetFloatPanelTest, TheTipOfTheDateShowsItsFormat) {
  EXPECT_STREQ("A date is written like 31/12/2026", field(*m_panel, "Date").getTipText().text());
}

TEST_F(GetFloatPanelTest, ReturnsTheTypedValues) {
  set("Amount", "1,234.50");
  set("Date", "28/02/2026");
  set("Description (optional)", "gift & more");
  EXPECT_EQ(1234.5, m_panel->value());
  EXPECT_EQ(Date(2026, 2, 28), m_panel->date());
  EXPECT_EQ(String(u"gift & more"), m_panel->text());
  EXPECT_TRUE(m_panel->validate());
}

TEST_F(GetFloatPanelTest, ResetClearsTheTypedValues) {
  set("Description (optional)", "gift");
  m_panel->reset();
  EXPECT_EQ("0.00", shown("Amount"));
  EXPECT_EQ("03/03/2026", shown("Date"));
  EXPECT_EQ(String(), m_panel->text());
}

TEST_F(GetFloatPanelTest, TheChecksComeInTheirOrder) {
  set("Amount", "0");
  set("Date", "04/03/2026");
  answer("You can't specify a date in the future.", "OK");
  EXPECT_FALSE(m_panel->validate());
  EXPECT_EQ(&field(*m_panel, "Date"), focused(*m_panel));
  set("Date", "03/03/2026");
  answer("You must enter the value.", "OK");
  EXPECT_FALSE(m_panel->validate());
  EXPECT_EQ(&field(*m_panel, "Amount"), focused(*m_panel));
}

TEST_F(GetFloatPanelTest, AnyPositiveAmountIsAccepted) {
  set("Amount", "0.00001"); // Only an exact zero counts.
  EXPECT_TRUE(m_panel->validate());
  set("Amount", "-5");
  answer("The amount can't be less than zero.", "OK");
  EXPECT_FALSE(m_panel->validate());
  EXPECT_EQ("-5", shown("Amount"));
  EXPECT_EQ(&field(*m_panel, "Amount"), focused(*m_panel));
  set("Amount", "nothing");
  answer("You must enter the value.", "OK");
  EXPECT_FALSE(m_panel->validate());
  EXPECT_EQ("nothing", shown("Amount"));
}

TEST_F(GetFloatPanelTest, AnUnreadableDateIsAProblem) {
  set("Date", "yesterday");
  answer("Date: \"yesterday\" is no date.\nA date is written like 31/12/2026 or 31 Dec 2026.", "OK");
  EXPECT_FALSE(m_panel->validate());
  EXPECT_EQ(&field(*m_panel, "Date"), focused(*m_panel));
}

TEST_F(GetFloatPanelTest, AnAmountOfZeroIsAcceptedWhereAllowed) {
  m_panel->allowZero(true);
  set("Amount", "0.00");
  EXPECT_TRUE(m_panel->validate());
  set("Amount", "-5");
  answer("The amount can't be less than zero.", "OK");
  EXPECT_FALSE(m_panel->validate());
  set("Amount", "0.00");
  m_panel->allowZero(false);
  answer("You must enter the value.", "OK");
  EXPECT_FALSE(m_panel->validate());
}

TEST_F(GetFloatPanelTest, ANegativeAmountMayStayNegative) {
  m_panel->reset(-25.0, Date(2026, 2, 1));
  EXPECT_TRUE(m_panel->validate());
  set("Amount", "-20");
  EXPECT_TRUE(m_panel->validate());
  EXPECT_EQ(-20.0, m_panel->value());
  m_panel->reset(25.0, Date(2026, 2, 1));
  set("Amount", "-20");
  answer("The amount can't be less than zero.", "OK");
  EXPECT_FALSE(m_panel->validate());
}

TEST_F(GetFloatPanelTest, TheCashAfterwardsFollowsTheAmount) {
  EXPECT_FALSE(field(*m_panel, "Cash afterwards").getParent()->shown()) << "nothing is known of the cash";
  m_panel->setCashBefore(1000.0, true);
  EXPECT_TRUE(field(*m_panel, "Cash afterwards").getParent()->shown());
  EXPECT_FALSE(field(*m_panel, "Cash afterwards").isEditable());
  EXPECT_EQ("1012.50", shown("Cash afterwards"));
  set("Amount", "1,234.5");
  EXPECT_EQ("2234.50", shown("Cash afterwards"));
  m_panel->setCashBefore(1000.0, false);
  EXPECT_EQ("-234.50", shown("Cash afterwards"));
  m_panel->reset();
  EXPECT_EQ("1000.00", shown("Cash afterwards"));
}

TEST_F(GetFloatPanelTest, TheDateButtonFillsTheField) {
  whenModal("Choose the date", [&](FXWindow& form) {
    EXPECT_EQ(Date(2026, 2, 1), find<FXCalendar>(form)->date());
    press(form, "18");
    press(form, "OK");
  });
  press(*m_panel, "Choose a date");
  EXPECT_EQ(Date(2026, 2, 18), m_panel->date());
}

TEST_F(GetFloatPanelTest, AFailureOfTheDateButtonIsReported) {
  Platform::setInstance(std::make_unique<BrokenPlatform>());
  answer("GetFloatPanel::onChooseDate failed. Exception : no form for dates", "OK");
  press(*m_panel, "Choose a date");
}

} // namespace
} // namespace Tallymoor
