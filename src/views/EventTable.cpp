#include "views/EventTable.h"
#include "engine/UnreadableDates.h"
#include "widgets/ContextMenu.h"
#include "xml/Leaves.h"

namespace Tallymoor {

FXIMPLEMENT_ABSTRACT(EventTable, PortfolioTable, nullptr, 0)

namespace {

const String EVENTS_LEFT_OUT =
    u"Nothing is recorded in the days shown.\nA later view date shows more, and so do "
    u"earlier financial years (Tools, Options).";

} // namespace

EventTable::EventTable(const String& name, SharePortfolioUser& portfolio, PortfolioCommands& commands,
                       FXComposite* parent, Watcher* watcher)
    : PortfolioTable(name, portfolio, commands, parent, watcher, COMPARE_OLDEST_FIRST) {}

void EventTable::fillTable() {
  clear();
  m_rowData.clear();
  for (const ColumnOf& column : columnsOfEvents())
    addColumn(std::make_unique<Column>(column.title, column.function, column.compareType,
                                       column.defaultVisible, column.justify));
  m_leftSomeOut = false;
  addAllEvents();
  setEmptyText(m_leftSomeOut ? EVENTS_LEFT_OUT : noEventsText());
  rebuild();
}

void EventTable::addEvents(XMLElement& parent, std::u16string_view events, std::u16string_view date) {
  for (std::size_t i = 0; i < parent.numSubElements(events); ++i) {
    XMLElement& event = parent.subElement(events, i);
    const Date day = dateValue(event, date);
    if (!dateShown(day)) {
      m_leftSomeOut = true;
      continue;
    }
    m_rowData.push_back({&event, &portfolio()});
    auto row = std::make_unique<Row>(day.toString(DATE_DISPLAY_LOCAL), &m_rowData.back());
    if (isSetAside(event, date))
      row->leaveOutOfTotals();
    addRow(std::move(row));
  }
}

void EventTable::eventPopup(const TableClick& click, const Entry& edit, const Entry& remove) {
  ContextMenu menu(this, this);
  menu.addCommand(edit.text, edit.command);
  menu.addSeparator();
  menu.addCommand(remove.text, remove.command);
  menu.run(click.screenX, click.screenY);
}

void EventTable::editRow(Row& row) {
  setInputRow(&row);
  handle(this, FXSEL(SEL_COMMAND, editCommand()), nullptr);
}

XMLElement* EventTable::inputEvent() const {
  return inputRow() ? inputRow()->payload<EventRow>().event : nullptr;
}

} // namespace Tallymoor
