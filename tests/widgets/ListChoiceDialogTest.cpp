#include "widgets/ListChoiceDialog.h"
#include "foundation/Exception.h"
#include "support/windows/WindowTest.h"
#include <fxkeys.h>

namespace Tallymoor {
namespace {

class ListChoiceDialogTest : public WindowTest {
protected:
  static bool isChecked(FXWindow& form, const std::string& label) {
    return dynamic_cast<FXCheckButton&>(button(form, label)).getCheck() == TRUE;
  }
  static void addNumbered(ListChoiceDialog& dialog, int count) {
    for (int i = 1; i <= count; ++i)
      dialog.addListEntry(u"entry " + String::fromLong(i), nullptr);
  }
  static FXScrollWindow& listOf(Dialog& dialog) { return *find<FXScrollWindow>(dialog); }
  int m_a = 0, m_b = 0, m_c = 0;
};

TEST_F(ListChoiceDialogTest, GivesDataAndTextsOfWhatWasChosen) {
  ListChoiceDialog dialog(&mainWindow(), u"Choose", u"Some of them", true);
  dialog.addListEntry(u"S&P 500", &m_a);
  dialog.addListEntry(u"second", &m_b, true);
  dialog.addListEntry(u"third", &m_c);
  whenModal("Choose", [&](FXWindow& form) {
    EXPECT_TRUE(shows(form, "Some of them"));
    EXPECT_TRUE(isChecked(form, "second"));
    press(form, "S&P 500");
    press(form, "OK");
  });
  EXPECT_EQ(1u, dialog.execute());
  EXPECT_EQ((std::vector<void*>{&m_a, &m_b}), dialog.chosenData());
  EXPECT_EQ((std::vector<String>{u"S&P 500", u"second"}), dialog.chosenTexts());
  EXPECT_EQ((std::vector<std::size_t>{0, 1}), dialog.chosenIndexes());
}

TEST_F(ListChoiceDialogTest, ChoosingAgainForgetsTheFirstChoice) {
  ListChoiceDialog dialog(&mainWindow(), u"Choose", String(), true);
  dialog.addListEntry(u"first", &m_a, true);
  dialog.addListEntry(u"second", &m_b);
  EXPECT_TRUE(dialog.validate());
  EXPECT_TRUE(dialog.validate());
  EXPECT_EQ(std::vector<void*>{&m_a}, dialog.chosenData());
}

TEST_F(ListChoiceDialogTest, InSingleModeASecondCheckTakesTheFirstsPlace) {
  ListChoiceDialog dialog(&mainWindow(), u"Choose", String(), false);
  dialog.addListEntry(u"first", &m_a);
  dialog.addListEntry(u"second", &m_b);
  whenModal("Choose", [&](FXWindow& form) {
    press(form, "first");
    EXPECT_TRUE(isChecked(form, "first"));
    press(form, "second");
    EXPECT_FALSE(isChecked(form, "first"));
    EXPECT_TRUE(isChecked(form, "second"));
    press(form, "OK");
  });
  EXPECT_EQ(1u, dialog.execute());
  EXPECT_EQ(std::vector<void*>{&m_b}, dialog.chosenData());
}

TEST_F(ListChoiceDialogTest, InMultipleModeChecksStandBesideEachOther) {
  ListChoiceDialog dialog(&mainWindow(), u"Choose", String(), true);
  dialog.addListEntry(u"first", &m_a, true);
  dialog.addListEntry(u"second", &m_b, true);
  whenModal("Choose", [&](FXWindow& form) {
    EXPECT_TRUE(isChecked(form, "first"));
    EXPECT_TRUE(isChecked(form, "second"));
    press(form, "OK");
  });
  dialog.execute();
  EXPECT_EQ(2u, dialog.chosenData().size());
}

TEST_F(ListChoiceDialogTest, InSingleModeTheLastOfTheCheckedEntriesStays) {
  ListChoiceDialog dialog(&mainWindow(), u"Choose", String(), false);
  dialog.addListEntry(u"first", &m_a, true);
  dialog.addListEntry(u"second", &m_b);
  dialog.addListEntry(u"third", &m_c, true);
  EXPECT_TRUE(dialog.validate());
  EXPECT_EQ(std::vector<void*>{&m_c}, dialog.chosenData());
}

TEST_F(ListChoiceDialogTest, NothingCheckedIsRefused) {
  ListChoiceDialog many(&mainWindow(), u"Choose", String(), true);
  many.addListEntry(u"first", &m_a);
  answer("You must select at least one entry!", "OK");
  EXPECT_FALSE(many.validate());
  ListChoiceDialog one(&mainWindow(), u"Choose", String(), false);
  one.addListEntry(u"first", &m_a);
  whenModal("Choose", [&](FXWindow& form) {
    answer("You must select an entry!", "OK");
    press(form, "OK");
    EXPECT_TRUE(form.shown());
    press(form, "Cancel");
  });
  EXPECT_EQ(0u, one.execute());
}

TEST_F(ListChoiceDialogTest, TheOnlyChoiceStaysCheckedWhenPressedAgain) {
  ListChoiceDialog dialog(&mainWindow(), u"Choose", String(), false);
  dialog.addListEntry(u"first", &m_a, true);
  dialog.addListEntry(u"second", &m_b);
  whenModal("Choose", [&](FXWindow& form) {
    press(form, "first");
    EXPECT_TRUE(isChecked(form, "first"));
    press(form, "OK");
  });
  EXPECT_EQ(1u, dialog.execute());
  EXPECT_EQ(std::vector<void*>{&m_a}, dialog.chosenData());
}

TEST_F(ListChoiceDialogTest, ReturnChoosesTheEntryAndGoesOnWhenPressedAgain) {
  for (const FXuint enter : {KEY_Return, KEY_KP_Enter}) {
    ListChoiceDialog dialog(&mainWindow(), u"Choose", String(), false);
    dialog.addListEntry(u"first", &m_a, true);
    dialog.addListEntry(u"second", &m_b);
    whenModal("Choose", [&](FXWindow& form) {
      button(form, "second").setFocus();
      key(form, enter);
      EXPECT_TRUE(form.shown());
      EXPECT_TRUE(isChecked(form, "second"));
      EXPECT_FALSE(isChecked(form, "first"));
      key(form, enter);
    });
    EXPECT_EQ(1u, dialog.execute());
    EXPECT_EQ(std::vector<void*>{&m_b}, dialog.chosenData());
  }
}

TEST_F(ListChoiceDialogTest, ANullPointerIsAChoice) {
  ListChoiceDialog dialog(&mainWindow(), u"Choose", String(), false);
  dialog.addListEntry(u"continue on to a search...", nullptr, true);
  EXPECT_TRUE(dialog.validate());
  EXPECT_EQ(std::vector<void*>{nullptr}, dialog.chosenData());
}

TEST_F(ListChoiceDialogTest, The101stEntryThrows) {
  ListChoiceDialog dialog(&mainWindow(), u"Choose", String(), true);
  addNumbered(dialog, 99);
  dialog.addListEntry(u"the hundredth", &m_a, true);
  try {
    dialog.addListEntry(u"one more", nullptr);
    FAIL() << "there are 100 entries";
  } catch (const Exception& exception) {
    EXPECT_EQ(String(u"ListChoiceDialog::addListEntry - more than 100 choices!"), exception.message());
  }
  EXPECT_TRUE(dialog.validate());
  EXPECT_EQ(std::vector<void*>{&m_a}, dialog.chosenData());
}

TEST_F(ListChoiceDialogTest, TheLastEntryReactsAsTheFirst) {
  ListChoiceDialog dialog(&mainWindow(), u"Choose", String(), false);
  addNumbered(dialog, 100);
  whenModal("Choose", [&](FXWindow& form) {
    press(form, "entry 1");
    press(form, "entry 100");
    EXPECT_FALSE(isChecked(form, "entry 1"));
    press(form, "OK");
  });
  EXPECT_EQ(1u, dialog.execute());
  EXPECT_EQ(std::vector<String>{u"entry 100"}, dialog.chosenTexts());
}

TEST_F(ListChoiceDialogTest, TenRowsShowAndTheEleventhScrolls) {
  ListChoiceDialog ten(&mainWindow(), u"Choose", String(), true);
  addNumbered(ten, 10);
  ten.create();
  ListChoiceDialog eleven(&mainWindow(), u"Choose", String(), true);
  addNumbered(eleven, 11);
  eleven.create();
  const FXint row = find<FXCheckButton>(ten)->getParent()->getDefaultHeight();
  EXPECT_EQ(10 * row, listOf(ten).getHeight());
  EXPECT_EQ(10 * row, listOf(eleven).getHeight());
  EXPECT_LE(listOf(ten).getContentHeight(), listOf(ten).getHeight());
  EXPECT_GT(listOf(eleven).getContentHeight(), listOf(eleven).getHeight());
}

TEST_F(ListChoiceDialogTest, TheEntryThatTakesTheKeysScrollsIntoView) {
  ListChoiceDialog dialog(&mainWindow(), u"Choose", String(), true);
  addNumbered(dialog, 25);
  whenModal("Choose", [&](FXWindow& form) {
    FXScrollWindow& list = listOf(dialog);
    const auto isInView = [&](const std::string& label) {
      const FXWindow& row = *button(form, label).getParent();
      const FXint top = row.getY() + list.getYPosition();
      return top >= 0 && top + row.getHeight() <= list.getViewportHeight();
    };
    const auto focus = [&](const std::string& label) {
      button(form, label).handle(&app(), FXSEL(SEL_FOCUSIN, 0), nullptr);
    };
    EXPECT_FALSE(isInView("entry 25"));
    focus("entry 25");
    EXPECT_TRUE(isInView("entry 25"));
    EXPECT_FALSE(isInView("entry 1"));
    focus("entry 20"); // It is visible.
    EXPECT_TRUE(isInView("entry 25"));
    focus("entry 2");
    EXPECT_TRUE(isInView("entry 2"));
    EXPECT_FALSE(isInView("entry 25"));
    press(form, "Cancel");
  });
  dialog.execute();
}

TEST_F(ListChoiceDialogTest, TheListIsAsWideAsItsWidestRowAndAScrollBar) {
  ListChoiceDialog dialog(&mainWindow(), u"Choose", String(), true);
  dialog.addListEntry(u"short", nullptr);
  dialog.addListEntry(u"a much, much longer entry than the first", nullptr);
  FXint widest = 0;
  for (FXCheckButton* check : findAll<FXCheckButton>(dialog))
    widest = std::max(widest, check->getParent()->getDefaultWidth());
  EXPECT_EQ(widest + 15, listOf(dialog).getWidth());
}

TEST_F(ListChoiceDialogTest, AnUnknownEntryIsReported) {
  ListChoiceDialog dialog(&mainWindow(), u"Choose", String(), true);
  dialog.addListEntry(u"only", nullptr);
  answer("ListChoiceDialog::onCheck failed. Exception : no such entry", "OK");
  dialog.handle(&app(), FXSEL(SEL_COMMAND, ListChoiceDialog::ID_ENTRY + 5), nullptr);
}

} // namespace
} // namespace Tallymoor
