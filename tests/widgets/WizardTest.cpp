#include "widgets/Wizard.h"
#include "foundation/RunTimeSettings.h"
#include "support/windows/WindowTest.h"
#include "widgets/FormRows.h"
#include "widgets/FormTextField.h"
#include "widgets/GUIPanel.h"
#include <fxkeys.h>

namespace Tallymoor {
namespace {

class Page : public GUIPanel {
public:
  Page(FXComposite* parent, const String& title, const String& description = String())
      : GUIPanel(parent, title, description) {
    FormRows rows(this);
    field = rows.addText(u"Field");
  }
  bool validate() override {
    ++checks;
    if (throwing)
      throw Exception(u"inside");
    return valid;
  }
  FormTextField* field = nullptr;
  bool valid = true;
  bool throwing = false;
  int checks = 0;
};

/// Pages 0, 1 and 2 of a route, and an unregistered page.
class ThreePages : public Wizard {
public:
  explicit ThreePages(FXWindow* owner) : Wizard(owner, u"Three pages") {
    // Registered in a different order than the route.
    third = new Page(pages(), u"The third", u"Of three.");
    first = new Page(pages(), u"The first", u"Begins.\nIn two lines & more.");
    second = new Page(pages(), u"The second");
    stranger = new Page(pages(), u"A stranger");
    registerPage(third, 2);
    registerPage(first, 0);
    registerPage(second, 1);
    setToPage(first);
  }
  Page* first;
  Page* second;
  Page* third;
  Page* stranger;
};

class WizardTest : public WindowTest {
protected:
  void SetUp() override {
    WindowTest::SetUp();
    m_wizard = std::make_unique<ThreePages>(&mainWindow());
    m_wizard->create();
    m_wizard->show(PLACEMENT_SCREEN);
    letEventsPass();
  }
  void TearDown() override {
    m_wizard.reset();
    WindowTest::TearDown();
  }
  ThreePages& wizard() { return *m_wizard; }
  void next() {
    press(*wizard().nextButton());
    letEventsPass();
  }
  void back() {
    press(*wizard().backButton());
    letEventsPass();
  }
  /// Checks the visible page by the banner and by the switcher.
  void expectPage(Page* page, const std::string& title) {
    EXPECT_EQ(page, wizard().currentPage());
    EXPECT_TRUE(page->shown());
    EXPECT_EQ(1, int(wizard().first->shown()) + int(wizard().second->shown()) + int(wizard().third->shown()));
    EXPECT_TRUE(shows(wizard(), title));
  }
  std::string nextText() { return wizard().nextButton()->getText().text(); }

private:
  std::unique_ptr<ThreePages> m_wizard;
};

TEST_F(WizardTest, BackIsDisabledOnTheFirstPage) {
  EXPECT_FALSE(wizard().backButton()->isEnabled());
  next();
  EXPECT_TRUE(wizard().backButton()->isEnabled());
  back();
  expectPage(wizard().first, "The first");
  EXPECT_FALSE(wizard().backButton()->isEnabled());
}

TEST_F(WizardTest, TheRouteGoesByTheNumbersAndTheBannerFollows) {
  expectPage(wizard().first, "The first");
  EXPECT_TRUE(shows(wizard(), "Begins.\nIn two lines & more."));
  next();
  expectPage(wizard().second, "The second");
  next();
  expectPage(wizard().third, "The third");
  EXPECT_TRUE(shows(wizard(), "Of three."));
  back();
  back();
  expectPage(wizard().first, "The first");
}

TEST_F(WizardTest, NextAfterTheLastPageBecomesFinishAndBackRestoresIt) {
  next();
  next();
  EXPECT_EQ("Next >", nextText());
  next();
  expectPage(wizard().third, "The third");
  EXPECT_EQ("Finish", nextText());
  back();
  expectPage(wizard().second, "The second");
  EXPECT_EQ("Next >", nextText());
  next();
  expectPage(wizard().third, "The third");
}

TEST_F(WizardTest, StaysOnAPageWithErrors) {
  wizard().first->valid = false;
  next();
  expectPage(wizard().first, "The first");
  EXPECT_EQ(1, wizard().first->checks);
  EXPECT_FALSE(wizard().backButton()->isEnabled());
}

TEST_F(WizardTest, AFailureIsReportedAndThePageStays) {
  wizard().first->throwing = true;
  answer("Wizard::onNext failed. Exception : inside", "OK");
  next();
  expectPage(wizard().first, "The first");
}

TEST_F(WizardTest, APageThatIsNotRegisteredIsRefused) {
  try {
    wizard().setToPage(wizard().stranger);
    ADD_FAILURE() << "an unknown page was shown";
  } catch (const Exception& failure) {
    EXPECT_EQ(String(u"Exception : Wizard::setToPage - page not registered: A stranger"),
              failure.description());
  }
  expectPage(wizard().first, "The first");
}

TEST_F(WizardTest, EachPageBeginsInItsFirstField) {
  const auto hasFocus = [](FXWindow* field) {
    return field->hasFocus() || field->getParent()->getFocus() == field;
  };
  EXPECT_TRUE(hasFocus(wizard().first->field));
  next();
  EXPECT_TRUE(hasFocus(wizard().second->field));
  EXPECT_EQ(wizard().second, wizard().pages()->getFocus());
  back();
  EXPECT_EQ(wizard().first, wizard().pages()->getFocus());
}

TEST_F(WizardTest, EnterInAFieldGoesOn) {
  type(*wizard().first->field, "x");
  key(wizard(), KEY_Return);
  letEventsPass();
  expectPage(wizard().second, "The second");
}

TEST_F(WizardTest, NothingIsCutOff) {
  letEventsPass();
  for (FXLabel* label : findAll<FXLabel>(wizard()))
    if (label->shown() && label->getParent()->shown() && !label->getText().empty() &&
        !dynamic_cast<FXButton*>(label)) {
      EXPECT_GE(label->getWidth(), label->getDefaultWidth()) << label->getText().text();
      EXPECT_GE(label->getHeight(), label->getDefaultHeight()) << label->getText().text();
    }
}

class RunningWizardTest : public WindowTest {
protected:
  FXuint run(Step step) {
    ThreePages wizard(&mainWindow());
    whenModal("Three pages", std::move(step));
    return wizard.execute();
  }
};

TEST_F(RunningWizardTest, FinishGivesOne) {
  EXPECT_EQ(1u, run([this](FXWindow& wizard) {
              press(wizard, "Next >");
              press(wizard, "Next >");
              press(wizard, "Next >");
              press(wizard, "Finish");
            }));
}

TEST_F(RunningWizardTest, CancelEscapeAndTheCloseBoxGiveNothing) {
  EXPECT_EQ(0u, run([this](FXWindow& wizard) { press(wizard, "Cancel"); }));
  EXPECT_EQ(0u, run([this](FXWindow& wizard) { key(wizard, KEY_Escape); }));
  EXPECT_EQ(0u, run([this](FXWindow& wizard) { wizard.handle(&app(), FXSEL(SEL_CLOSE, 0), nullptr); }));
}

TEST_F(RunningWizardTest, OpensNothingInABackgroundPass) {
  ThreePages wizard(&mainWindow());
  BigMutexLock lock;
  inBackgroundPass = true;
  EXPECT_EQ(0u, wizard.execute());
  inBackgroundPass = false;
}

} // namespace
} // namespace Tallymoor
