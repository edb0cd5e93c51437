#include "WindowTour.h"
#include "views/TotalsBar.h"
#include <iostream>
#include <set>

namespace Tallymoor {
namespace {

constexpr FXuint PERCENT = 200;

/// Every window of the program with texts at 200 % on a screen of 1280 x 1024.
class CountedLargeTextTest : public WindowTour {
protected:
  CountedLargeTextTest() { Settings::Instance().writeUnsigned(u"Gui Settings", u"TextSize", PERCENT); }

  void look(const std::string& name, FXWindow& shell) {
    m_windows.insert(name);
    m_name = name;
    const FXWindow& screen = *shell.getRoot();
    if (shell.getX() < 0 || shell.getY() < 0 || shell.getX() + shell.getWidth() > screen.getWidth() ||
        shell.getY() + shell.getHeight() > screen.getHeight())
      tell(shell, "reaches beyond the screen");
    lookInside(shell);
  }

  std::size_t windows() const { return m_windows.size(); }
  std::size_t widgets() const { return m_widgets; }
  std::size_t cutOff() const { return m_cutOff; }

private:
  static bool showsText(FXWindow& widget) {
    return dynamic_cast<FXLabel*>(&widget) || dynamic_cast<FXTextField*>(&widget) ||
           dynamic_cast<FXComboBox*>(&widget) || dynamic_cast<FXListBox*>(&widget) ||
           dynamic_cast<FXSpinner*>(&widget) || dynamic_cast<FXGroupBox*>(&widget) ||
           dynamic_cast<FXStatusBar*>(&widget) || dynamic_cast<FXProgressBar*>(&widget) ||
           dynamic_cast<FXMenuCaption*>(&widget) || dynamic_cast<FXHeader*>(&widget);
  }
  static std::string textOf(FXWindow& widget) {
    if (auto* label = dynamic_cast<FXLabel*>(&widget))
      return label->getText().text();
    if (auto* field = dynamic_cast<FXTextField*>(&widget))
      return field->getText().text();
    if (auto* entry = dynamic_cast<FXMenuCaption*>(&widget))
      return entry->getText().text();
    return widget.getClassName();
  }
  void tell(FXWindow& widget, const std::string& fault) {
    ++m_cutOff;
    ADD_FAILURE() << m_name << ": " << widget.getClassName() << " \"" << textOf(widget) << "\" " << fault
                  << ": " << widget.getX() << "," << widget.getY() << " " << widget.getWidth() << "x"
                  << widget.getHeight() << " in " << widget.getParent()->getWidth() << "x"
                  << widget.getParent()->getHeight() << ", wants " << widget.getDefaultWidth() << "x"
                  << widget.getDefaultHeight();
  }
  void lookInside(FXWindow& window) {
    for (FXWindow* child = window.getFirst(); child; child = child->getNext())
      if (child->shown())
        lookAt(*child);
  }
  void lookAt(FXWindow& widget) {
    if (dynamic_cast<FXShell*>(&widget) || dynamic_cast<FXScrollBar*>(&widget) ||
        dynamic_cast<FXScrollCorner*>(&widget) || dynamic_cast<FXToolTip*>(&widget))
      return;
    if (!mayScrollAway(widget))
      lookAtPlace(widget);
    if (auto* table = dynamic_cast<Table*>(&widget))
      return lookAtTable(*table);
    if (auto* tree = dynamic_cast<FXTreeList*>(&widget))
      return lookAtTree(*tree);
    if (showsText(widget))
      lookAtSize(widget);
    lookInside(widget);
  }
  /// Only the content of a scroll area may exceed its parent.
  static bool mayScrollAway(FXWindow& widget) {
    FXWindow* const parent = widget.getParent();
    return dynamic_cast<FXScrollArea*>(parent) || dynamic_cast<TotalsBar*>(parent->getParent());
  }
  void lookAtPlace(FXWindow& widget) {
    const FXWindow& parent = *widget.getParent();
    if (widget.getX() < 0 || widget.getY() < 0 || widget.getX() + widget.getWidth() > parent.getWidth() ||
        widget.getY() + widget.getHeight() > parent.getHeight())
      tell(widget, "reaches beyond what holds it");
  }
  void lookAtSize(FXWindow& widget) {
    ++m_widgets;
    auto* field = dynamic_cast<FXTextField*>(&widget);
    const bool ownWidth = !field || !dynamic_cast<FXComboBox*>(widget.getParent());
    if ((ownWidth && widget.getWidth() < widget.getDefaultWidth()) ||
        widget.getHeight() < widget.getDefaultHeight())
      tell(widget, "has no room for its text");
    if (field && !field->isEditable() && !field->getText().empty() && !scrollsItsText(*field) &&
        field->getFont()->getTextWidth(field->getText()) + field->getPadLeft() + field->getPadRight() +
                2 * field->getBorderWidth() >
            field->getWidth())
      tell(widget, "is narrower than its text");
  }
  /// A long name in a read-only field can be scrolled with the arrow keys.
  static bool scrollsItsText(FXTextField& field) { return field.canFocus() == FALSE; }
  void lookAtTable(Table& table) {
    ++m_widgets;
    const FXint line = table.getFont()->getFontHeight();
    const FXint margins = table.getMarginLeft() + table.getMarginRight();
    if (table.getColumnHeaderHeight() < table.getColumnHeader()->getDefaultHeight() ||
        table.getColumnHeaderHeight() < line)
      tell(*table.getColumnHeader(), "has no room for its titles");
    for (FXint column = 0; column < table.getNumColumns(); ++column) {
      ++m_widgets;
      FXint widest = table.getColumnHeader()->getItem(column)->getWidth(table.getColumnHeader());
      for (FXint row = 0; row < table.getNumRows(); ++row)
        widest = std::max(widest, table.getFont()->getTextWidth(table.getItemText(row, column)) + margins);
      if (table.getColumnWidth(column) < widest)
        tell(table, std::string("cuts off column ") + table.getColumnText(column).text());
    }
    for (FXint row = 0; row < table.getNumRows(); ++row) {
      ++m_widgets;
      if (table.getRowHeight(row) < line ||
          table.getRowHeaderWidth() < table.getRowHeaderFont()->getTextWidth(table.getRowText(row)))
        tell(table, std::string("cuts off row ") + table.getRowText(row).text());
    }
  }
  void lookAtTree(FXTreeList& tree) {
    for (FXTreeItem* item = tree.getFirstItem(); item; item = item->getBelow()) {
      ++m_widgets;
      if (tree.getItemHeight(item) < tree.getFont()->getFontHeight())
        tell(tree, std::string("cuts off ") + item->getText().text());
    }
  }

  std::string m_name;
  std::set<std::string> m_windows;
  std::size_t m_widgets = 0;
  std::size_t m_cutOff = 0;
};

TEST_F(CountedLargeTextTest, NothingIsCutOffAtTwiceTheUsualSize) {
  EXPECT_GE(mainWindow().normalFont()->getFontHeight(), 28);
  tour([this](const std::string& name, FXWindow& shell) { look(name, shell); });
  std::cout << "COUNT: widgets at " << PERCENT << "%: " << widgets() << " looked at in " << windows()
            << " windows, " << cutOff() << " cut off\n";
  EXPECT_GT(windows(), 40u);
  EXPECT_EQ(0u, cutOff());
}

} // namespace
} // namespace Tallymoor
