#include "widgets/Dialog.h"
#include "foundation/RunTimeSettings.h"
#include "support/windows/WindowTest.h"
#include "widgets/FormRows.h"
#include "widgets/FormTextField.h"
#include "widgets/GUIPanel.h"
#include <fxkeys.h>

namespace Tallymoor {
namespace {

class FormPanel : public GUIPanel {
public:
  explicit FormPanel(FXComposite* parent) : GUIPanel(parent, u"Form", u"Fill it in.") {
    FormRows rows(this);
    first = rows.addText(u"First");
    fixed = rows.addReadOnly(u"A much longer label");
    second = rows.addText(u"Second");
    rows.align();
  }
  bool validate() override {
    return runChecks([this] {
      ++checks;
      if (throwing)
        throw Exception(u"inside");
      return valid;
    });
  }
  FormTextField* first;
  FormTextField* fixed;
  FormTextField* second;
  bool valid = true;
  bool throwing = false;
  int checks = 0;
};

class FormDialog : public Dialog {
public:
  explicit FormDialog(FXWindow* owner)
      : Dialog(owner, u"Form", u"Fill it in."), panel(new FormPanel(contents())) {}
  bool validate() override {
    if (throwing)
      throw Exception(u"outside");
    return panel->validate();
  }
  FormPanel* panel;
  bool throwing = false;
};

using DialogTest = WindowTest;

TEST_F(DialogTest, OkReturnsOneAndCancelZero) {
  FormDialog dialog(&mainWindow());
  whenModal("Form", [&](FXWindow& form) { press(form, "OK"); });
  EXPECT_EQ(1u, dialog.execute());
  whenModal("Form", [&](FXWindow& form) { press(form, "Cancel"); });
  EXPECT_EQ(0u, dialog.execute());
  EXPECT_EQ(1, dialog.panel->checks);
}

TEST_F(DialogTest, EscapeCancelsWithoutValidating) {
  FormDialog dialog(&mainWindow());
  dialog.panel->valid = false;
  whenModal("Form", [&](FXWindow& form) { key(form, KEY_Escape); });
  EXPECT_EQ(0u, dialog.execute());
  EXPECT_EQ(0, dialog.panel->checks);
}

TEST_F(DialogTest, EscapeInAFieldCancelsToo) {
  FormDialog dialog(&mainWindow());
  whenModal("Form", [&](FXWindow& form) {
    type(*dialog.panel->first, "x");
    key(form, KEY_Escape);
  });
  EXPECT_EQ(0u, dialog.execute());
}

TEST_F(DialogTest, TheCloseBoxCancels) {
  FormDialog dialog(&mainWindow());
  whenModal("Form", [&](FXWindow& form) { form.handle(&app(), FXSEL(SEL_CLOSE, 0), nullptr); });
  EXPECT_EQ(0u, dialog.execute());
  EXPECT_EQ(0, dialog.panel->checks);
}

TEST_F(DialogTest, EnterAcceptsFromTheFieldsAndFromTheStart) {
  FormDialog dialog(&mainWindow());
  whenModal("Form", [&](FXWindow& form) { key(form, KEY_Return); });
  EXPECT_EQ(1u, dialog.execute());
  whenModal("Form", [&](FXWindow& form) {
    type(*dialog.panel->second, "typed");
    key(form, KEY_Return);
  });
  EXPECT_EQ(1u, dialog.execute());
  whenModal("Form", [&](FXWindow& form) {
    type(*dialog.panel->first, "typed");
    key(form, KEY_KP_Enter);
  });
  EXPECT_EQ(1u, dialog.execute());
  EXPECT_EQ(3, dialog.panel->checks);
}

TEST_F(DialogTest, AFailedValidationKeepsTheFieldsAsTyped) {
  FormDialog dialog(&mainWindow());
  dialog.panel->valid = false;
  whenModal("Form", [&](FXWindow& form) {
    type(*dialog.panel->first, "caf\xC3\xA9 & co");
    press(form, "OK");
    EXPECT_TRUE(form.shown());
    EXPECT_EQ(String(u"caf\u00e9 & co"), dialog.panel->first->text());
    press(form, "Cancel");
  });
  EXPECT_EQ(0u, dialog.execute());
  EXPECT_EQ(1, dialog.panel->checks);
}

TEST_F(DialogTest, AFailureOfTheDialogIsReportedAndTheDialogStays) {
  FormDialog dialog(&mainWindow());
  dialog.throwing = true;
  whenModal("Form", [&](FXWindow& form) {
    answer("Dialog::onOK failed. Exception : outside", "OK");
    press(form, "OK");
    EXPECT_TRUE(form.shown());
    press(form, "Cancel");
  });
  EXPECT_EQ(0u, dialog.execute());
}

TEST_F(DialogTest, AFailureInAPanelsChecksHasOneText) {
  FormDialog dialog(&mainWindow());
  dialog.panel->throwing = true;
  whenModal("Form", [&](FXWindow& form) {
    answer("There was a problem validating your input", "OK");
    press(form, "OK");
    EXPECT_TRUE(form.shown());
    press(form, "Cancel");
  });
  EXPECT_EQ(0u, dialog.execute());
}

TEST_F(DialogTest, TheBandShowsTheDescriptionElseTheTitle) {
  const Dialog described(&mainWindow(), u"Title", u"What & why");
  EXPECT_STREQ("Title", described.getTitle().text());
  EXPECT_EQ("What & why", labels(const_cast<Dialog&>(described)).front());
  Dialog bare(&mainWindow(), u"Title & more", String());
  EXPECT_EQ("Title & more", labels(bare).front());
}

TEST_F(DialogTest, TheBandIsWhiteWithBoldBlackTextTwoLinesHigh) {
  Dialog dialog(&mainWindow(), u"Title", u"Description");
  dialog.create();
  dialog.layout();
  auto* label = find<FXLabel>(dialog);
  ASSERT_NE(nullptr, label);
  EXPECT_EQ(FXRGB(255, 255, 255), label->getBackColor());
  EXPECT_EQ(FXRGB(0, 0, 0), label->getTextColor());
  EXPECT_EQ(mainWindow().boldFont(), label->getFont());
  EXPECT_EQ(FXRGB(255, 255, 255), label->getParent()->getBackColor());
  EXPECT_EQ(2 * mainWindow().boldFont()->getFontHeight(), label->getParent()->getHeight());
}

TEST_F(DialogTest, ADescriptionOfSeveralLinesIsNotCutOff) {
  Dialog dialog(&mainWindow(), u"Title", u"one\ntwo\nthree");
  dialog.create();
  dialog.resize(dialog.getDefaultWidth(), dialog.getDefaultHeight());
  dialog.layout();
  auto* label = find<FXLabel>(dialog);
  EXPECT_GE(label->getHeight(), label->getDefaultHeight());
}

TEST_F(DialogTest, ButtonsStandAtTheRightCancelFirst) {
  FormDialog dialog(&mainWindow());
  dialog.create();
  dialog.resize(600, 400);
  dialog.layout();
  EXPECT_EQ(dialog.okButton(), dialog.cancelButton()->getNext());
  EXPECT_LT(dialog.cancelButton()->getX(), dialog.okButton()->getX());
  for (FXButton* button : {dialog.cancelButton(), dialog.okButton()}) {
    EXPECT_EQ(95, button->getWidth());
    EXPECT_EQ(31, button->getHeight());
  }
  EXPECT_GT(dialog.buttons()->getX(), 200);
  EXPECT_TRUE(dialog.okButton()->isDefault());
}

TEST_F(DialogTest, LabelsOfAFormHaveOneWidth) {
  FormDialog dialog(&mainWindow());
  dialog.create();
  dialog.resize(dialog.getDefaultWidth(), dialog.getDefaultHeight());
  dialog.layout();
  EXPECT_EQ(dialog.panel->first->getX(), dialog.panel->second->getX());
  EXPECT_EQ(dialog.panel->first->getX(), dialog.panel->fixed->getX());
  FXWindow* longest = dialog.panel->fixed->getPrev();
  EXPECT_GE(longest->getWidth(), longest->getDefaultWidth());
}

TEST_F(DialogTest, TabGoesFromTopToBottomAndSkipsWhatCannotBeTyped) {
  FormDialog dialog(&mainWindow());
  whenModal("Form", [&](FXWindow& form) {
    dialog.panel->first->setFocus();
    key(form, KEY_Tab);
    EXPECT_TRUE(dialog.panel->second->hasFocus() ||
                dialog.panel->second->getParent()->getFocus() == dialog.panel->second);
    key(form, KEY_Tab);
    EXPECT_EQ(dialog.cancelButton(), dialog.buttons()->getFocus());
    key(form, KEY_Tab);
    EXPECT_EQ(dialog.okButton(), dialog.buttons()->getFocus());
    press(form, "Cancel");
  });
  dialog.execute();
}

TEST_F(DialogTest, ABackgroundPassOpensNoDialog) {
  const BackgroundPassScope pass;
  FormDialog dialog(&mainWindow());
  EXPECT_EQ(0u, dialog.execute());
  EXPECT_EQ(0, dialog.panel->checks);
}

TEST_F(DialogTest, HandlersHoldTheBigMutexAndGiveItBack) {
  struct Probe : Dialog {
    using Dialog::Dialog;
    bool validate() override {
      held = bigMutex().heldByThisThread();
      return true;
    }
    bool held = false;
  } dialog(&mainWindow(), u"Probe", String());
  whenModal("Probe", [&](FXWindow& form) {
    press(form, "OK");
    EXPECT_FALSE(bigMutex().heldByThisThread());
  });
  dialog.execute();
  EXPECT_TRUE(dialog.held);
}

TEST_F(DialogTest, APanelKeepsItsTextsAndIsValidByItself) {
  Dialog dialog(&mainWindow(), u"Title", String());
  GUIPanel panel(dialog.contents(), u"Panel", u"Its line");
  EXPECT_EQ(String(u"Panel"), panel.title());
  EXPECT_EQ(String(u"Its line"), panel.description());
  EXPECT_TRUE(panel.validate());
  EXPECT_TRUE(dialog.validate());
}

} // namespace
} // namespace Tallymoor
