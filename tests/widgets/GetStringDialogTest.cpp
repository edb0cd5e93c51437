#include "widgets/GetStringDialog.h"
#include "foundation/Exception.h"
#include "support/windows/WindowTest.h"
#include "widgets/FormTextField.h"
#include "xml/CleanName.h"
#include <fxkeys.h>

namespace Tallymoor {
namespace {

using GetStringDialogTest = WindowTest;

TEST_F(GetStringDialogTest, GivesTheTypedText) {
  GetStringDialog dialog(&mainWindow(), u"New name", u"What shall it be called?", u"old & tried");
  whenModal("New name", [&](FXWindow& form) {
    EXPECT_TRUE(shows(form, "What shall it be called?"));
    auto* field = find<FXTextField>(form);
    EXPECT_STREQ("old & tried", field->getText().text());
    type(*field, "M\xC3\xBCnchen");
    press(form, "OK");
  });
  EXPECT_EQ(1u, dialog.execute());
  EXPECT_EQ(String(u"M\u00fcnchen"), dialog.text());
}

TEST_F(GetStringDialogTest, TheFieldIsReadyForTypingAndEnterAccepts) {
  GetStringDialog dialog(&mainWindow(), u"New name", u"Name", u"old");
  whenModal("New name", [&](FXWindow& form) {
    auto* field = find<FXTextField>(form);
    EXPECT_EQ(field, field->getParent()->getFocus());
    EXPECT_TRUE(field->isPosSelected(0) && field->isPosSelected(2));
    key(form, KEY_Return);
  });
  EXPECT_EQ(1u, dialog.execute());
  EXPECT_EQ(String(u"old"), dialog.text());
}

TEST_F(GetStringDialogTest, CancelKeepsTheInitialText) {
  GetStringDialog dialog(&mainWindow(), u"New name", u"Name", u"old");
  whenModal("New name", [&](FXWindow& form) {
    type(*find<FXTextField>(form), "other");
    key(form, KEY_Escape);
  });
  EXPECT_EQ(0u, dialog.execute());
  EXPECT_EQ(String(u"old"), dialog.text());
}

TEST_F(GetStringDialogTest, TheFilterReplacesTheFieldsText) {
  GetStringDialog dialog(&mainWindow(), u"Name", u"Name", String(),
                         [](const String& text) { return text.toUpper(); });
  whenModal("Name", [&](FXWindow& form) {
    auto* field = find<FXTextField>(form);
    type(*field, "abc");
    press(form, "OK");
    EXPECT_STREQ("ABC", field->getText().text());
  });
  EXPECT_EQ(1u, dialog.execute());
  EXPECT_EQ(String(u"ABC"), dialog.text());
}

TEST_F(GetStringDialogTest, ATextEmptiedByTheFilterIsRefused) {
  GetStringDialog dialog(&mainWindow(), u"Name", u"Name", u"old", cleanName);
  whenModal("Name", [&](FXWindow& form) {
    auto* field = find<FXTextField>(form);
    type(*field, " <&> ");
    answer("You must enter a value.", "OK");
    press(form, "OK");
    EXPECT_TRUE(form.shown());
    type(*field, "S&P <500>");
    press(form, "OK");
  });
  EXPECT_EQ(1u, dialog.execute());
  EXPECT_EQ(String(u"SP 500"), dialog.text());
}

TEST_F(GetStringDialogTest, WithoutAFilterAnEmptyTextIsAnAnswer) {
  GetStringDialog dialog(&mainWindow(), u"Name", u"Name", u"old");
  whenModal("Name", [&](FXWindow& form) {
    type(*find<FXTextField>(form), "");
    press(form, "OK");
  });
  EXPECT_EQ(1u, dialog.execute());
  EXPECT_EQ(String(), dialog.text());
}

TEST_F(GetStringDialogTest, AFailingFilterIsReported) {
  GetStringDialog dialog(&mainWindow(), u"Name", u"Name", u"old",
                         [](const String&) -> String { throw Exception(u"no such name"); });
  whenModal("Name", [&](FXWindow& form) {
    answer("GetStringDialog::onOK failed. Exception : no such name", "OK");
    press(form, "OK");
    EXPECT_TRUE(form.shown());
    press(form, "Cancel");
  });
  EXPECT_EQ(0u, dialog.execute());
  EXPECT_EQ(String(u"old"), dialog.text());
}

} // namespace
} // namespace Tallymoor
