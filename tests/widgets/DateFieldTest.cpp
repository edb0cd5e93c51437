#include "widgets/DateField.h"
#include "support/windows/WindowTest.h"
#include <fxkeys.h>

namespace Tallymoor {
namespace {

/// Counts the field's messages.
class Listener : public FXObject {
public:
  long handle(FXObject*, FXSelector selector, void*) override {
    if (FXSELTYPE(selector) != SEL_COMMAND)
      return 0;
    ++told;
    return 1;
  }
  int told = 0;
};

class DateFieldTest : public WindowTest {
protected:
  void SetUp() override {
    WindowTest::SetUp();
    auto* form = new FXVerticalFrame(mainWindow().contentFrame());
    m_field = new DateField(new FXHorizontalFrame(form), u"Date sold", 20, &m_listener, 1);
    m_other = new FXTextField(new FXHorizontalFrame(form), 20);
    m_cancel = new FXButton(mainWindow().contentFrame(), "Cancel");
    form->create();
    m_cancel->create();
    m_field->setFocus();
  }
  /// Moves the focus there and handles the resulting events.
  void goTo(FXWindow& widget) {
    widget.setFocus();
    letEventsPass();
  }
  Listener m_listener;
  DateField* m_field = nullptr;
  FXTextField* m_other = nullptr;
  FXButton* m_cancel = nullptr; ///< Not part of a form.
};

TEST_F(DateFieldTest, ReadsWhatIsTyped) {
  for (const char* text :
       {"1/11/2023", "01/11/23", "2023-11-01", "1 Nov 2023", "1.11.2023", " 01/11/2023 "}) {
    type(*m_field, text);
    EXPECT_EQ(Date(2023, 11, 1), m_field->date()) << text;
  }
  type(*m_field, "31/11/2023");
  EXPECT_EQ(std::nullopt, m_field->date());
}

TEST_F(DateFieldTest, ShowsTheParsedDateWhenTheFocusLeaves) {
  type(*m_field, "1 nov 23");
  EXPECT_EQ(String(u"1 nov 23"), m_field->text());
  m_other->setFocus();
  EXPECT_EQ(String(u"01/11/2023"), m_field->text());
  letEventsPass();
  EXPECT_EQ(1, m_listener.told);
}

TEST_F(DateFieldTest, TheTargetIsNotifiedOncePerText) {
  m_field->setDate(Date(2026, 1, 2));
  goTo(*m_other);
  EXPECT_EQ(0, m_listener.told) << "the form itself shows it";
  goTo(*m_field);
  type(*m_field, "3/1/26");
  goTo(*m_other);
  goTo(*m_field);
  goTo(*m_other);
  EXPECT_EQ(1, m_listener.told);
  goTo(*m_field);
  type(*m_field, "yesterday");
  goTo(*m_other);
  EXPECT_EQ(2, m_listener.told) << "whoever listens looks whether it is a date";
}

TEST_F(DateFieldTest, CancellingTheFormNotifiesNobody) {
  type(*m_field, "3/1/26");
  goTo(*m_cancel);
  EXPECT_EQ(String(u"03/01/2026"), m_field->text());
  EXPECT_EQ(0, m_listener.told);
  goTo(*m_field);
  mainWindow().hide();
  letEventsPass();
  EXPECT_EQ(0, m_listener.told);
  mainWindow().show();
  goTo(*m_field);
  goTo(*m_other);
  EXPECT_EQ(1, m_listener.told) << "the notification is still pending";
}

TEST_F(DateFieldTest, ADestroyedFieldNotifiesNobody) {
  type(*m_field, "3/1/26");
  m_other->setFocus();
  delete m_field;
  letEventsPass();
  EXPECT_EQ(0, m_listener.told);
}

TEST_F(DateFieldTest, AnInvalidDateStaysAsTyped) {
  type(*m_field, "31/11/23");
  m_other->setFocus();
  EXPECT_EQ(String(u"31/11/23"), m_field->text());
}

TEST_F(DateFieldTest, TheTargetIsNotifiedOfAUsersChoiceOnly) {
  m_field->setDate(Date(2026, 1, 2));
  EXPECT_EQ(0, m_listener.told);
  m_field->choose(Date(2026, 1, 3));
  EXPECT_EQ(1, m_listener.told);
  EXPECT_EQ(Date(2026, 1, 3), m_field->date());
}

TEST_F(DateFieldTest, TheComplaintNamesTheFieldAndShowsAnExampleOfTheLocale) {
  type(*m_field, " 1/13/2023 ");
  EXPECT_EQ(
      String(u"Date sold: \"1/13/2023\" is no date.\nA date is written like 31/12/2026 or 31 Dec 2026."),
      m_field->complaint());
  profile().setLocale("en_US");
  EXPECT_EQ(
      String(u"Date sold: \"1/13/2023\" is no date.\nA date is written like 12/31/2026 or 31 Dec 2026."),
      m_field->complaint());
  profile().setLocale("de_DE");
  type(*m_field, "");
  EXPECT_EQ(String(u"Date sold: there is no date.\nA date is written like 31.12.2026 or 31 Dec 2026."),
            m_field->complaint());
  type(*m_field, std::string(100, 'x'));
  EXPECT_LT(m_field->complaint().size(), 150u);
}

} // namespace
} // namespace Tallymoor
