#include "WindowTour.h"
#include "widgets/DateField.h"
#include "widgets/FormNotes.h"
#include "widgets/NumberField.h"
#include "widgets/NumberSpinner.h"
#include <algorithm>
#include <iostream>
#include <set>

namespace Tallymoor {
namespace {

/// Conversions of printf: one that writes through a pointer, one that reads through one, and one that prints
/// ten million blanks.
const std::string FORMATS = "%n%s%x%1$*9999999d";

/// The same for an amount field, which reads only the digits.
const std::string NO_AMOUNT = "%n%s%x%*d";

/// Fields that reject non-numbers, with the start of the message.
const std::pair<const char*, const char*> REFUSED_NUMBERS[] = {
    {"Amount", "You must enter the value."},
    {"Number sold", "You must select the number of shares sold"},
    {"Buy price", "You must enter the price you bought the shares"},
    {"Sell price", "Do you really want to record a sell price of $0.00?"},
    {"On Shares Held", "You must select the number of shares the dividend was given for"},
    {"Dividend Rate", "You must record the dividend rate"}};

/// Types conversions into every field of every window. Fields for dates and numbers must reject them.
class CountedFormatTextsInFields : public WindowTour {
protected:
  void typeIntoFields(const std::string& name, FXWindow& shell) {
    m_name = name;
    for (FXTextField* field : shownFields(shell))
      typeInto(*field);
    for (FormNotes* notes : findAll<FormNotes>(shell))
      if (inSight(*notes) && notes->isEditable())
        typeInto(*notes);
  }
  /// Checks each field of a window that OK would close: it shows an error instead. Restores each field.
  void haveRefused(const std::string& name, FXWindow& shell) {
    m_name = name;
    chooseStock(shell);
    fillZeros(shell);
    for (FXTextField* field : shownFields(shell)) {
      if (dynamic_cast<DateField*>(field))
        haveRefused(*field, FORMATS, " is no date.\nA date is written like ", shell);
    }
    for (const auto& [label, message] : REFUSED_NUMBERS)
      if (shows(shell, label) && dynamic_cast<NumberField*>(&field(shell, label)) &&
          inSight(field(shell, label)))
        haveRefused(field(shell, label), NO_AMOUNT, message, shell);
  }

  static bool inSight(FXWindow& widget) {
    for (FXWindow* window = &widget; !dynamic_cast<FXShell*>(window); window = window->getParent())
      if (!window->shown())
        return false;
    return true;
  }
  static std::vector<FXTextField*> shownFields(FXWindow& shell) {
    std::vector<FXTextField*> fields = findAll<FXTextField>(shell);
    std::erase_if(fields, [](FXTextField* field) {
      return !field->isEditable() || !field->isEnabled() || !inSight(*field);
    });
    return fields;
  }
  void expectShown(const std::string& place, const std::string& text, const std::string& shown) {
    text == shown ? ++m_shown : ++m_changed;
    EXPECT_EQ(text, shown) << place;
  }

  int shown() const { return m_shown; }
  int changed() const { return m_changed; }
  int spinners() const { return m_spinners; }
  int refused() const { return m_refused; }
  std::size_t windows() const { return m_windows.size(); }

private:
  void typeInto(FXTextField& field) {
    m_windows.insert(m_name);
    type(field, FORMATS);
    if (!dynamic_cast<NumberSpinner*>(field.getParent()))
      return expectShown(m_name, FORMATS, field.getText().text());
    ++m_spinners;
    EXPECT_STREQ("19999999", field.getText().text()) << m_name << ": takes digits alone";
  }
  void typeInto(FormNotes& notes) {
    m_windows.insert(m_name);
    notes.setText("");
    for (const char c : FORMATS) {
      FXEvent event{};
      event.type = SEL_KEYPRESS;
      event.code = static_cast<FXint>(c);
      event.text = FXString(&c, 1);
      notes.handle(&app(), FXSEL(SEL_KEYPRESS, 0), &event);
    }
    expectShown("the notes of " + m_name, FORMATS, notes.getText().text());
  }
  static void chooseStock(FXWindow& shell) {
    auto* box = find<FXComboBox>(shell);
    if (box && box->getText().left(7) == "<select")
      box->setCurrentItem(box->findItem("AAA.AX"), TRUE);
  }
  void haveRefused(FXTextField& field, const std::string& text, const std::string& message, FXWindow& shell) {
    const std::string before = field.getText().text();
    type(field, text);
    bool told = false;
    whenModal("", [this, &told, &message](FXWindow& box) {
      told = shows(box, message);
      EXPECT_TRUE(told) << m_name << " says " << testing::PrintToString(labels(box));
      press(box, findButton(box, "No") ? "No" : "OK");
    });
    press(shell, "OK");
    EXPECT_TRUE(told) << m_name;
    EXPECT_TRUE(shell.shown()) << m_name;
    expectShown("refused in " + m_name, text, field.getText().text());
    m_refused += told;
    type(field, before);
  }
  /// Fills the other number fields, so that only the text is rejected.
  void fillZeros(FXWindow& shell) {
    for (FXTextField* each : shownFields(shell))
      if (auto* number = dynamic_cast<NumberField*>(each); number && number->value() == 0.0)
        type(*number, "1");
  }

  std::string m_name;
  std::set<std::string> m_windows;
  int m_shown = 0;
  int m_changed = 0;
  int m_spinners = 0;
  int m_refused = 0;
};

TEST_F(CountedFormatTextsInFields, EveryFieldOfEveryWindow) {
  tour([this](const std::string& name, FXWindow& shell) { typeIntoFields(name, shell); });
  std::cout << "COUNT: format texts in fields: " << shown() << " fields of " << windows()
            << " windows shown as typed, " << changed() << " changed; " << spinners()
            << " spinners took the digits alone" << std::endl;
  EXPECT_GT(shown(), 60);
  EXPECT_GT(windows(), 15u);
}

TEST_F(CountedFormatTextsInFields, RefusedDatesAndNumbers) {
  tour([this](const std::string& name, FXWindow& shell) {
    if (dynamic_cast<FXDialogBox*>(&shell) && findButton(shell, "OK"))
      haveRefused(name, shell);
  });
  std::cout << "COUNT: format texts in fields refused: " << refused()
            << " dates and numbers still shown as typed, " << changed() << " changed" << std::endl;
  EXPECT_GT(refused(), 20);
}

// ---- Names ----

/// A name as typed, and as stored.
struct TypedName {
  std::string typed;
  std::string kept;
};

TypedName nameOf(const std::string& beginning) {
  return {beginning + FORMATS + " & <_s> \"5%\" of 'a/b\\", beginning + FORMATS + " _s 5% of ab"};
}

class CountedFormatTextsAsNames : public CountedFormatTextsInFields {
protected:
  void TearDown() override {
    std::cout << "COUNT: format texts as names: " << shown() << " places shown as typed, " << changed()
              << " changed" << std::endl;
    CountedFormatTextsInFields::TearDown();
  }
  void typeName(FXTextField& field, const TypedName& name) {
    type(field, name.typed);
    expectShown("the field", name.typed, field.getText().text());
  }
  /// Checks the tree, the page and the records, and that no other portfolio has such a name.
  void expectPortfolio(const std::string& name) {
    InvestmentTreeItem& found = node(PORTFOLIOS, name);
    expectShown("the tree", name, found.getText().text());
    showNode(PORTFOLIOS, found);
    const std::vector<std::string> all = labels(*found.page());
    expectShown("the heading", "1", std::to_string(std::count(all.begin(), all.end(), name)));
    command(TallymoorWindow::ID_SAVE);
    expectShown("the records", "1", std::to_string(timesIn(TestProfile::readFile(recordsPath()), name)));
    showTab(WATCHLISTS);
    expectShown("the watchlists", "for " + name, node(WATCHLISTS, "for " + name).getText().text());
    showTab(PORTFOLIOS);
  }
  static int timesIn(const std::string& records, const std::string& name) {
    const std::string element = "<String>" + name + "</String>";
    int times = 0;
    for (std::size_t at = records.find(element); at != std::string::npos; at = records.find(element, at + 1))
      ++times;
    return times;
  }
  /// Chooses an entry of the portfolio's popup and handles the window it opens.
  void fromPopup(const std::string& portfolio, const std::string& entry, const std::string& opened,
                 const Step& fill) {
    InvestmentTreeItem& found = node(PORTFOLIOS, portfolio);
    showNode(PORTFOLIOS, found);
    whenModal(entry, [this, entry](FXWindow& popup) { press(popup, entry); });
    whenModal(opened, fill);
    found.onRightClick(100, 100);
    letEventsPass();
  }
};

TEST_F(CountedFormatTextsAsNames, OfTheWizard) {
  const TypedName name = nameOf("w ");
  whenModal("Tallymoor - Getting Started", [this, &name](FXWindow& window) {
    auto& wizard = dynamic_cast<Wizard&>(window);
    const auto next = [&] {
      press(*wizard.nextButton());
      letEventsPass();
    };
    next();
    typeName(field(*wizard.currentPage(), "Portfolio name"), name);
    next();
    type(field(*wizard.currentPage(), "Amount"), "1000");
    next();
    for (int stage = 0; stage < 6; ++stage) { // There is nothing to sell.
      press(*find<FXCheckButton>(*wizard.currentPage()));
      next();
    }
    press(wizard, "Finish");
  });
  command(TallymoorWindow::ID_WIZARD);
  letEventsPass();
  expectPortfolio(name.kept);
}

TEST_F(CountedFormatTextsAsNames, OfRenamingAndOfTheProperties) {
  const TypedName renamed = nameOf("r ");
  fromPopup("Trading", "Rename share portfolio Trading...", "Rename portfolio", [&](FXWindow& prompt) {
    typeName(*find<FXTextField>(prompt), renamed);
    press(prompt, "OK");
  });
  expectPortfolio(renamed.kept);
  const TypedName changed = nameOf("p ");
  fromPopup(renamed.kept, "Set portfolio comparison index...", "Portfolio Properties", [&](FXWindow& form) {
    typeName(field(form, "Name"), changed);
    press(form, "OK");
  });
  expectPortfolio(changed.kept);
  expectShown("the old name", "0",
              std::to_string(timesIn(TestProfile::readFile(recordsPath()), renamed.kept)));
}

} // namespace
} // namespace Tallymoor
