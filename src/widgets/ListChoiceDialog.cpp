#include "widgets/ListChoiceDialog.h"
#include "foundation/Exception.h"
#include "widgets/HandlerScope.h"
#include "widgets/MainWindow.h"
#include "widgets/TabWalk.h"
#include "widgets/ToolkitText.h"
#include <algorithm>
#include <fxkeys.h>

namespace Tallymoor {

FXDEFMAP(ListChoiceDialog)
ListChoiceDialogMap[] = {
    FXMAPFUNCS(SEL_COMMAND, ListChoiceDialog::ID_ENTRY, ListChoiceDialog::ID_LAST_ENTRY,
               ListChoiceDialog::onCheck),
    FXMAPFUNC(SEL_KEYPRESS, 0, ListChoiceDialog::onKeyPress),
    FXMAPFUNCS(SEL_FOCUSIN, ListChoiceDialog::ID_ENTRY, ListChoiceDialog::ID_LAST_ENTRY,
               ListChoiceDialog::onFocusEntry),
};

FXIMPLEMENT(ListChoiceDialog, Dialog, ListChoiceDialogMap, ARRAYNUMBER(ListChoiceDialogMap))

namespace {

constexpr std::size_t ROWS_IN_VIEW = 10;
/// Room for the scroll bar beside the widest row.
constexpr FXint WIDTH_BESIDE_ROWS = 15;

} // namespace

ListChoiceDialog::ListChoiceDialog(FXWindow* owner, const String& title, const String& heading, bool multiple)
    : Dialog(owner, title, heading), m_multiple(multiple) {
  m_scroller = new FXScrollWindow(contents(), LAYOUT_FIX_WIDTH | LAYOUT_FIX_HEIGHT);
  m_list = new FXVerticalFrame(m_scroller, LAYOUT_FILL_X, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0);
}

void ListChoiceDialog::addListEntry(const String& text, void* data, bool checked) {
  if (m_buttons.size() >= MOST_ENTRIES)
    throw Exception(u"ListChoiceDialog::addListEntry - more than 100 choices!");
  auto* row = new FXHorizontalFrame(m_list, LAYOUT_FILL_X, 0, 0, 0, 0, 0, 0, 0, 0);
  const auto selector = static_cast<FXSelector>(ID_ENTRY + m_buttons.size());
  auto* button = new FXCheckButton(row, labelText(text), this, selector, CHECKBUTTON_NORMAL | JUSTIFY_LEFT);
  m_buttons.push_back(button);
  m_texts.push_back(text);
  m_data.push_back(data);
  if (checked) {
    if (!m_multiple && m_someChecked)
      uncheckAllBut(button);
    button->setCheck(TRUE);
    m_someChecked = true;
  }
  sizeList();
}

void ListChoiceDialog::choose(FXCheckButton* chosen) {
  chosen->setCheck(TRUE);
  uncheckAllBut(chosen);
}

void ListChoiceDialog::uncheckAllBut(const FXCheckButton* kept) {
  for (FXCheckButton* button : m_buttons)
    if (button != kept)
      button->setCheck(FALSE);
}

void ListChoiceDialog::sizeList() {
  FXint widest = 0;
  for (FXWindow* row = m_list->getFirst(); row; row = row->getNext())
    widest = std::max(widest, row->getDefaultWidth());
  const FXint rowHeight = m_list->getFirst()->getDefaultHeight();
  m_scroller->setWidth(widest + WIDTH_BESIDE_ROWS);
  m_scroller->setHeight(rowHeight * static_cast<FXint>(std::min(m_buttons.size(), ROWS_IN_VIEW)));
}

void ListChoiceDialog::scrollTo(const FXWindow& row) {
  const FXint top = -m_scroller->getYPosition();
  const FXint bottom = top + m_scroller->getViewportHeight();
  if (row.getY() < top)
    m_scroller->setPosition(m_scroller->getXPosition(), -row.getY());
  else if (row.getY() + row.getHeight() > bottom)
    m_scroller->setPosition(m_scroller->getXPosition(),
                            m_scroller->getViewportHeight() - row.getY() - row.getHeight());
}

long ListChoiceDialog::onFocusEntry(FXObject*, FXSelector selector, void*) {
  return guardedHandler(u"ListChoiceDialog::onFocusEntry failed.", [&] {
    const std::size_t index = FXSELID(selector) - ID_ENTRY;
    if (index < m_buttons.size())
      scrollTo(*m_buttons[index]->getParent());
  });
}

long ListChoiceDialog::onCheck(FXObject*, FXSelector selector, void*) {
  return guardedHandler(u"ListChoiceDialog::onCheck failed.", [&] {
    const std::size_t index = FXSELID(selector) - ID_ENTRY;
    if (index >= m_buttons.size())
      throw Exception(u"no such entry");
    if (!m_multiple)
      choose(m_buttons[index]);
  });
}

long ListChoiceDialog::onKeyPress(FXObject* sender, FXSelector selector, void* data) {
  const FXuint code = static_cast<FXEvent*>(data)->code;
  const auto entry = std::find(m_buttons.begin(), m_buttons.end(), widgetWithKeyboard(*this));
  const bool enter = code == KEY_Return || code == KEY_KP_Enter;
  if (m_multiple || !enter || entry == m_buttons.end() || (*entry)->getCheck())
    return Dialog::onKeyPress(sender, selector, data);
  choose(*entry);
  return 1;
}

bool ListChoiceDialog::validate() {
  m_chosenData.clear();
  m_chosenTexts.clear();
  m_chosenIndexes.clear();
  for (std::size_t i = 0; i < m_buttons.size(); ++i) {
    if (!m_buttons[i]->getCheck())
      continue;
    m_chosenData.push_back(m_data[i]);
    m_chosenTexts.push_back(m_texts[i]);
    m_chosenIndexes.push_back(i);
  }
  if (!m_chosenIndexes.empty())
    return true;
  MainWindow::error(m_multiple ? u"You must select at least one entry!" : u"You must select an entry!");
  return false;
}

} // namespace Tallymoor
