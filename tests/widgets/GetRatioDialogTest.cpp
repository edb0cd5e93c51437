#include "widgets/GetRatioDialog.h"
#include "support/windows/WindowTest.h"
#include <fxkeys.h>

namespace Tallymoor {
namespace {

class GetRatioDialogTest : public WindowTest {
protected:
  GetRatioDialog& dialog() {
    if (!m_dialog)
      m_dialog = std::make_unique<GetRatioDialog>(&mainWindow(), u"Ratio", u"How many?", u"  (new : old)",
                                                  100, WholeRatio{5, 2});
    return *m_dialog;
  }
  void TearDown() override {
    m_dialog.reset();
    WindowTest::TearDown();
  }
  FXTextField& number(FXWindow& form, std::size_t place) { return *findAll<FXTextField>(form).at(place); }

private:
  std::unique_ptr<GetRatioDialog> m_dialog;
};

TEST_F(GetRatioDialogTest, BeginsWithTheInitialRatioAndSaysWhatTheNumbersAre) {
  whenModal("Ratio", [&](FXWindow& form) {
    EXPECT_TRUE(shows(form, "How many?"));
    EXPECT_TRUE(shows(form, "  (new : old)"));
    EXPECT_STREQ("5", number(form, 0).getText().text());
    EXPECT_STREQ("2", number(form, 1).getText().text());
    press(form, "OK");
  });
  EXPECT_EQ(1u, dialog().execute());
  EXPECT_EQ((WholeRatio{5, 2}), dialog().ratio());
}

TEST_F(GetRatioDialogTest, GivesTheTypedNumbersWithinTheLimits) {
  whenModal("Ratio", [&](FXWindow& form) {
    type(number(form, 0), "1000");
    type(number(form, 1), "0");
    press(form, "OK");
  });
  EXPECT_EQ(1u, dialog().execute());
  EXPECT_EQ((WholeRatio{100, 1}), dialog().ratio());
}

TEST_F(GetRatioDialogTest, NeitherNumberMayBeEmpty) {
  for (const std::size_t place : {0, 1}) {
    whenModal("Ratio", [this, place](FXWindow& form) {
      type(number(form, place), "");
      answer(" You must enter a value.", "OK");
      press(form, "OK");
      type(number(form, place), "3");
      press(form, "OK");
    });
    EXPECT_EQ(1u, dialog().execute());
    EXPECT_EQ(place == 0 ? (WholeRatio{3, 2}) : (WholeRatio{3, 3}), dialog().ratio());
  }
  EXPECT_EQ(2u, boxes().size());
}

TEST_F(GetRatioDialogTest, EscapeCancels) {
  whenModal("Ratio", [&](FXWindow& form) { key(form, KEY_Escape); });
  EXPECT_EQ(0u, dialog().execute());
}

} // namespace
} // namespace Tallymoor
