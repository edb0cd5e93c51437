#include "WindowTour.h"
#include "views/CashReserveTable.h"
#include "views/SharePortfolioTreeItem.h"
#include "views/TotalCapTreeItem.h"
#include "widgets/ChartView.h"
#include "widgets/HandlerScope.h"
#include "xml/PortfolioRecords.h"
#include <algorithm>
#include <iostream>
#include <map>
#include <set>

namespace Tallymoor {
namespace {

/// Replaces a command's target, so that commands can be triggered without being executed.
class Reached : public FXObject {
public:
  long handle(FXObject*, FXSelector selector, void*) override {
    if (FXSELTYPE(selector) != SEL_COMMAND)
      return 0;
    ++times;
    return 1;
  }
  int times = 0;
};

/// The widget's mnemonic; 0 if it has none.
struct LabelKey : FXLabel {
  static FXHotKey of(const FXLabel& label) { return label.*(&LabelKey::hotkey); }
};
struct CaptionKey : FXMenuCaption {
  static FXHotKey of(const FXMenuCaption& caption) { return caption.*(&CaptionKey::hotkey); }
};
FXHotKey keyOf(FXWindow& widget) {
  if (auto* label = dynamic_cast<FXLabel*>(&widget))
    return LabelKey::of(*label);
  if (auto* caption = dynamic_cast<FXMenuCaption*>(&widget))
    return CaptionKey::of(*caption);
  return 0;
}
/// The key to press in an open menu.
FXuint letterOf(FXHotKey key) {
  return key & 0xffff;
}

/// Every command in the program's menus, bars, pages and popups, used by keyboard only.
class CountedCommandsTest : public WindowTour {
protected:
  CountedCommandsTest() : m_keys(app()) {}

  RealKeys& keys() { return m_keys; }
  void press(FXuint code, FXuint state = 0, int times = 1) { m_keys.press(tallymoor(), code, state, times); }
  using WindowTour::press;

  /// Counts a command and whether its keys triggered it. A repeated command is counted once.
  void count(const std::string& what, bool reached) {
    m_counted.insert(what);
    if (reached)
      return;
    m_unreached.insert(what);
    ADD_FAILURE() << "no key leads to " << what;
  }
  void report() const {
    std::cout << "COUNT: commands: " << m_counted.size() - m_unreached.size() << " reached by keyboard, "
              << m_unreached.size() << " unreached\n";
    EXPECT_GT(m_counted.size(), 800u);
  }

  // ---- Menus ----

  /// An entry that is greyed can't be reached.
  void makeUndoAndRedoUsable() {
    for (const double amount : {1.0, 2.0})
      guardedHandler(u"test", [&] {
        SharePortfolioTreeItem& trading = *tallymoor().totalCapital()->portfolioNode(u"Trading");
        trading.change(u"Deposit", [&] {
          trading.portfolio().creditCash(Date(2026, 2, 2), amount, CASH_EVENT_DEPOSIT, u"DEPOSIT ");
        });
      });
    command(TallymoorWindow::ID_UNDO);
    letEventsPass();
  }
  void useMenus() {
    makeUndoAndRedoUsable();
    for (FXMenuTitle* title : findAll<FXMenuTitle>(tallymoor())) {
      auto& pane = dynamic_cast<FXMenuPane&>(*title->getMenu());
      int place = 0;
      for (FXMenuCommand* entry : findAll<FXMenuCommand>(pane))
        useMenuEntry(*title, pane, *entry, place++);
    }
  }
  void openMenu(FXMenuTitle& title) { press(letterOf(keyOf(title)), ALTMASK); }
  void useMenuEntry(FXMenuTitle& title, FXMenuPane& pane, FXMenuCommand& entry, int place) {
    const std::string name = std::string(title.getText().text()) + " > " + entry.getText().text();
    Reached reached;
    FXObject* const target = entry.getTarget();
    entry.setTarget(&reached);
    openMenu(title);
    EXPECT_TRUE(pane.shown()) << name;
    press(KEY_Down, 0, place + 1);
    press(KEY_Return);
    count(name, reached.times == 1 && !pane.shown());
    if (keyOf(entry) != 0)
      useLetter(title, pane, entry, name, reached);
    entry.setTarget(target);
  }
  /// If two entries of a menu have the same letter, it triggers the later one; the arrow keys reach both.
  void useLetter(FXMenuTitle& title, FXMenuPane& pane, FXMenuCommand& entry, const std::string& name,
                 Reached& reached) {
    if (entriesWith(pane, keyOf(entry)).back() != &entry)
      return;
    reached.times = 0;
    openMenu(title);
    press(letterOf(keyOf(entry)), ALTMASK);
    EXPECT_EQ(1, reached.times) << "by its letter: " << name;
    EXPECT_FALSE(pane.shown()) << name;
  }
  static std::vector<FXMenuCommand*> entriesWith(FXMenuPane& pane, FXHotKey key) {
    std::vector<FXMenuCommand*> found;
    for (FXMenuCommand* entry : findAll<FXMenuCommand>(pane))
      if (keyOf(*entry) == key)
        found.push_back(entry);
    return found;
  }

  // ---- Popups ----

  /// Uses all entries of a popup. `open` opens it once for each.
  void usePopup(const std::string& name, const std::function<void()>& open) {
    for (std::size_t place = 0, entries = 1; place < entries; ++place) {
      entries = 0;
      whenModal("", [this, name, place, &entries](FXWindow& popup) {
        const auto all = findAll<FXMenuCommand>(popup);
        entries = all.size();
        if (place < entries)
          usePopupEntry(name, popup, *all[place], static_cast<int>(place));
        else
          press(KEY_Escape);
      });
      open();
      EXPECT_GT(entries, 0u) << name;
    }
  }
  void usePopupEntry(const std::string& name, FXWindow& popup, FXMenuCommand& entry, int place) {
    Reached reached;
    const std::string text = entry.getText().text();
    entry.setTarget(&reached);
    press(KEY_Down, 0, place + 1);
    press(KEY_Return);
    count(name + " > " + text, reached.times == 1 && !popup.shown());
    entry.setTarget(nullptr); // the popup is still there
  }
  void openPopup() { press(KEY_F10, SHIFTMASK); }

  // ---- Trees and tables ----

  /// Walks to the node from the top of its tree with the arrow keys.
  bool walkTo(FXint tab, InvestmentTreeItem& wanted) {
    tree(tab).setFocus();
    press(KEY_Home);
    for (FXTreeItem* item = tree(tab).getFirstItem(); item && item != &wanted; item = item->getBelow()) {
      if (!item->isExpanded() && item->getFirst())
        press(KEY_Right);
      press(KEY_Down);
    }
    return tree(tab).getCurrentItem() == &wanted && tree(tab).shownItem() == &wanted;
  }
  void useNode(FXint tab, InvestmentTreeItem& item) {
    const std::string name = item.label().toUTF8();
    count("the page of " + name, walkTo(tab, item));
    if (hasPopup(item))
      usePopup("node " + name, [this] { openPopup(); });
    for (Table* table : findAll<Table>(*item.page()))
      useTable("table of " + name, *table);
  }
  /// Completely sold shares and the watchlist of a portfolio have no popup.
  static bool hasPopup(InvestmentTreeItem& item) {
    const std::string name = item.label().toUTF8();
    return name != "Shares Sold" && name != "for Trading";
  }
  void useTable(const std::string& name, Table& table) {
    count(name, reachByTab(table));
    useRowPopup(name, table);
    useHeader(name, table);
    useEditableCells(name, table);
  }
  bool reachByTab(FXWindow& widget) {
    tree(tallymoor().tabBook()->getCurrent()).setFocus();
    for (int i = 0; i < 60; ++i) {
      press(KEY_Tab);
      if (widget.hasFocus())
        return true;
    }
    return false;
  }
  void toFirstCell(Table& table) {
    table.setFocus();
    press(KEY_Escape);
    press(KEY_Home, CONTROLMASK);
    press(KEY_Home);
    press(KEY_Up, 0, std::max(0, table.getCurrentRow()));
  }
  void useRowPopup(const std::string& name, Table& table) {
    const bool withPopup = !name.ends_with("Total Investment Capital") && !name.ends_with("Trading");
    if (!withPopup || table.getNumRows() == 0)
      return;
    usePopup("row in " + name, [this, &table] {
      toFirstCell(table);
      openPopup();
    });
  }
  void useHeader(const std::string& name, Table& table) {
    for (FXint column = 0; column < table.getNumColumns(); ++column) {
      const std::string title = table.columnAt(column)->title().toUTF8();
      toFirstCell(table);
      press(KEY_Up);
      press(KEY_Home);
      press(KEY_Right, 0, column);
      press(KEY_space);
      if (sortable(table))
        count("sort " + name + " by " + title, table.sortColumn() == column);
      usePopup("title " + title + " of " + name, [this] { openPopup(); });
    }
    if (sortable(table))
      useCorner(name, table);
  }
  void useCorner(const std::string& name, Table& table) {
    toFirstCell(table);
    press(KEY_Up);
    press(KEY_Home);
    press(KEY_space);
    const bool sorted = table.sortColumn() == 0;
    press(KEY_Left);
    press(KEY_Return);
    count("usual order of " + name, sorted && table.sortColumn() == -1);
    press(KEY_Down);
  }
  /// Cash rows keep their order, because each balance follows from the previous one.
  static bool sortable(const Table& table) { return !dynamic_cast<const CashReserveTable*>(&table); }
  void useEditableCells(const std::string& name, Table& table) {
    for (FXint column = 0; table.getNumRows() > 0 && column < table.getNumColumns(); ++column) {
      if (!table.columnAt(column)->editable())
        continue;
      toFirstCell(table);
      press(KEY_Right, 0, column);
      press(KEY_F2);
      const bool opened = find<FXTextField>(table) && table.getCurrentColumn() == column;
      count("edit " + table.columnAt(column)->title().toUTF8() + " in " + name, opened);
      press(KEY_Escape);
      EXPECT_FALSE(find<FXTextField>(table)) << name;
    }
  }

  void usePages(FXint tab) {
    showTab(tab);
    for (const String& label : labelsOf(tab)) {
      useNode(tab, node(tab, label.toUTF8()));
      useStops(tab, label.toUTF8());
    }
  }

  // ---- The rest of the main window ----

  static bool isCommand(FXWindow& widget) {
    auto* button = dynamic_cast<FXButton*>(&widget);
    return button && button->isEnabled() && button->getSelector() != TallymoorWindow::ID_NO_COMMAND &&
           !dynamic_cast<Table*>(widget.getParent());
  }
  static bool inSight(FXWindow& widget) {
    for (FXWindow* window = &widget; window && !window->isShell(); window = window->getParent())
      if (!window->shown())
        return false;
    return true;
  }
  static std::string nameOf(FXWindow& widget) {
    auto* label = dynamic_cast<FXLabel*>(&widget);
    if (!label)
      return widget.getClassName();
    return std::string(label->getText().text()) + " " + label->getTipText().text();
  }
  /// Checks all visible buttons, fields, tabs and charts: Tab reaches each, and the space bar presses it.
  void useStops(FXint tab, const std::string& page) {
    std::vector<FXWindow*> wanted{tallymoor().viewDateRow()->field()};
    for (FXWindow* widget : findAll<FXWindow>(tallymoor()))
      if (inSight(*widget) && (isCommand(*widget) || dynamic_cast<ChartView*>(widget)))
        wanted.push_back(widget);
    tree(tab).setFocus();
    const std::vector<FXWindow*> stops = tabStops(keys(), tallymoor(), tallymoor());
    showTab(tab); // The walk has reached the other tab, which opened.
    for (FXWindow* widget : wanted) {
      const bool reached = std::find(stops.begin(), stops.end(), widget) != stops.end();
      auto* button = dynamic_cast<FXButton*>(widget);
      count(placeOf(page, *widget), reached && (!button || spacePresses(*button)));
    }
  }
  /// Widgets around the pages are counted once.
  std::string placeOf(const std::string& page, FXWindow& widget) {
    const bool onPage = tallymoor().tabBook()->containsChild(&widget);
    return (onPage ? page : "the main window") + ": " + nameOf(widget);
  }
  bool spacePresses(FXButton& button) {
    Reached reached;
    const FXuint state = button.getState();
    button.setState(STATE_UP); // A selected button does nothing.
    FXObject* const target = button.getTarget();
    button.setTarget(&reached);
    button.setFocus();
    press(KEY_space);
    button.setTarget(target);
    button.setState(state);
    return reached.times == 1;
  }
  void useTabs() {
    const auto tabs = findAll<FXTabItem>(*tallymoor().tabBook());
    showTab(PORTFOLIOS);
    const bool reached = reachByTab(*tabs[WATCHLISTS]);
    count(nameOf(*tabs[WATCHLISTS]), reached && tallymoor().tabBook()->getCurrent() == WATCHLISTS);
    press(KEY_Left);
    count(nameOf(*tabs[PORTFOLIOS]), reached && tallymoor().tabBook()->getCurrent() == PORTFOLIOS);
  }

  // ---- Dialogs ----

  static bool takesInput(FXWindow& widget) {
    if (!widget.isEnabled() || !inSight(widget))
      return false;
    if (auto* field = dynamic_cast<FXTextField*>(&widget))
      return field->isEditable() && !dynamic_cast<FXComboBox*>(field->getParent());
    return dynamic_cast<FXButton*>(&widget) || dynamic_cast<FXCheckButton*>(&widget) ||
           dynamic_cast<FXRadioButton*>(&widget) || dynamic_cast<FXListBox*>(&widget) ||
           dynamic_cast<FXComboBox*>(&widget) || dynamic_cast<FXText*>(&widget) ||
           dynamic_cast<FXTable*>(&widget) || dynamic_cast<FXTabItem*>(&widget) ||
           dynamic_cast<FXList*>(&widget) || dynamic_cast<FXCalendar*>(&widget);
  }
  /// A calendar handles keys for its days and headings. A table's corner and the parts of a combo box belong
  /// to their parents.
  static bool isPartOfOther(FXWindow& widget) {
    for (FXWindow* outer = widget.getParent(); outer; outer = outer->getParent())
      if (dynamic_cast<FXCalendar*>(outer) || dynamic_cast<FXTable*>(outer) ||
          dynamic_cast<FXListBox*>(outer) || dynamic_cast<FXComboBox*>(outer) ||
          dynamic_cast<FXPopup*>(outer))
        return true;
    return false;
  }
  static bool holdsStop(FXWindow& widget, const std::vector<FXWindow*>& stops) {
    return std::any_of(stops.begin(), stops.end(), [&widget](FXWindow* stop) {
      for (FXWindow* window = stop; window; window = window->getParent())
        if (window == &widget)
          return true;
      return false;
    });
  }
  void useDialog(const std::string& name, FXWindow& dialog) {
    expectOwnLetters(name, dialog);
    if (!dynamic_cast<FXDialogBox*>(&dialog) || app().getModalWindow() != &dialog)
      return;
    dialog.setFocus();
    letEventsPass();
    std::vector<FXWindow*> wanted; // Collected now, because the walk opens other pages of the dialog.
    for (FXWindow* widget : findAll<FXWindow>(dialog))
      if (widget != &dialog && takesInput(*widget) && !isPartOfOther(*widget))
        wanted.push_back(widget);
    const std::vector<FXWindow*> stops = tabStops(keys(), tallymoor(), dialog);
    std::map<std::string, int> same;
    for (FXWindow* widget : wanted) {
      const std::string what = name + ": " + nameOf(*widget);
      count(what + " " + std::to_string(same[what]++), holdsStop(*widget, stops));
    }
    ++m_dialogs;
  }
  std::size_t dialogs() const { return m_dialogs; }

  /// Checks that no letter has two meanings in a window.
  static void expectOwnLetters(const std::string& name, FXWindow& shell) {
    std::map<FXHotKey, std::string> taken;
    for (FXWindow* widget : findAll<FXWindow>(shell)) {
      const FXHotKey key = keyOf(*widget);
      if (key == 0 || !inSight(*widget) || sharesItsLetter(*widget))
        continue;
      const auto [place, first] = taken.emplace(key, nameOf(*widget));
      EXPECT_TRUE(first) << name << ": " << place->second << " and " << nameOf(*widget);
    }
  }
  /// The labels of the File menu are prescribed, and two of them share a letter, which triggers the wizard.
  static bool sharesItsLetter(FXWindow& widget) {
    auto* caption = dynamic_cast<FXMenuCaption*>(&widget);
    return caption && std::string(caption->getText().text()) == "New Portfolio Wizard...";
  }

private:
  RealKeys m_keys;
  std::set<std::string> m_counted;
  std::set<std::string> m_unreached;
  std::size_t m_dialogs = 0;
};

TEST_F(CountedCommandsTest, EveryCommandIsReachedWithKeysAlone) {
  useMenus();
  useTabs();
  for (const FXint tab : {PORTFOLIOS, WATCHLISTS})
    usePages(tab);
  tour([this](const std::string& name, FXWindow& shell) { useDialog(name, shell); });
  EXPECT_GT(dialogs(), 20u);
  report();
}

} // namespace
} // namespace Tallymoor
