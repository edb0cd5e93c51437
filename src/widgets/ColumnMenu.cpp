#include "widgets/ColumnMenu.h"
#include "foundation/UserInteraction.h"
#include "widgets/ContextMenu.h"
#include "widgets/ListChoiceDialog.h"
#include "widgets/Table.h"
#include "widgets/TableContents.h"
#include <algorithm>

namespace Tallymoor {

void ColumnMenu::open(const TableClick& click) {
  ContextMenu menu(&m_table, &m_table);
  if (click.column && m_contents.visibleColumns().size() > 1)
    menu.addCommand(u"Remove column \"" + click.column->title() + u"\"", Table::ID_REMOVE_COLUMN);
  menu.addCommand(u"Select columns...", Table::ID_SELECT_COLUMNS);
  menu.addCommand(u"Reset columns to defaults", Table::ID_RESET_COLUMNS);
  menu.run(click.screenX, click.screenY);
}

bool ColumnMenu::hide(const Column& column) {
  if (m_contents.visibleColumns().size() <= 1 ||
      !UserInteraction::Instance().question(u"Do you want to hide column \"" + column.title() + u"\"?"))
    return false;
  m_contents.setVisible(column, false);
  return true;
}

bool ColumnMenu::choose() {
  ListChoiceDialog dialog(&m_table, u"Choose Columns", u"Select the columns you wish to view on this table.",
                          true);
  for (const std::unique_ptr<Column>& column : m_contents.columns())
    dialog.addListEntry(column->title(), column.get(), column->index() >= 0);
  if (!dialog.execute())
    return false;
  const std::vector<void*>& chosen = dialog.chosenData();
  for (const std::unique_ptr<Column>& column : m_contents.columns())
    m_contents.setVisible(*column, std::find(chosen.begin(), chosen.end(), column.get()) != chosen.end());
  return true;
}

bool ColumnMenu::reset() {
  if (!UserInteraction::Instance().question(u"Do you want to reset columns to default?"))
    return false;
  for (const std::unique_ptr<Column>& column : m_contents.columns())
    m_contents.setVisible(*column, column->defaultVisible());
  return true;
}

} // namespace Tallymoor
