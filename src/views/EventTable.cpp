#include "views/EventTable.h"
#include "widgets/ContextMenu.h"
#include "widgets/HandlerScope.h"
#include <utility>

namespace Tallymoor {

FXDEFMAP(EventTable)
EventTableMap[] = {
    FXMAPFUNC(SEL_COMMAND, EventTable::ID_DELETE, EventTable::onDelete),
    FXMAPFUNC(SEL_COMMAND, EventTable::ID_EDIT, EventTable::onEdit),
};

FXIMPLEMENT_ABSTRACT(EventTable, PortfolioTable, EventTableMap, ARRAYNUMBER(EventTableMap))

namespace {

const String EVENTS_LEFT_OUT =
    u"Nothing is recorded in the days shown.\nA later view date shows more, and so do "
    u"earlier financial years (Tools, Options).";

} // namespace

EventTable::EventTable(const Texts& texts, SharePortfolioUser& portfolio, PortfolioCommands& commands,
                       FXComposite* parent, Watcher* watcher)
    : PortfolioTable(texts.tableName, portfolio, commands, parent, watcher, COMPARE_OLDEST_FIRST),
      m_texts(texts) {}

void EventTable::fillTable() {
  if (columns().empty())
    declareColumns();
  try {
    releaseRows();
    m_shownBefore = std::exchange(m_shown, {});
    m_leftSomeOut = false;
    addAllEvents();
    setEmptyText(m_leftSomeOut ? EVENTS_LEFT_OUT : String(m_texts.noEvents));
    rebuild();
    m_shownBefore = {};
  } catch (...) {
    forgetAll();
    throw;
  }
}

/// No row may refer to an event that has gone.
void EventTable::forgetAll() {
  clear();
  m_shown = {};
  m_shownBefore = {};
}

void EventTable::declareColumns() {
  for (const ColumnOf& column : columnsOfEvents()) {
    Column& added = addColumn(std::make_unique<Column>(column.title, column.function, column.compareType,
                                                       column.defaultVisible, column.justify));
    if (column.follows == EVENT_ALONE)
      added.followPayloadAlone();
  }
}

/// An event of the same day keeps its row. It may be another one in the place of one that has gone, which its
/// stamp tells: records are long, so that of an unchanged event nothing is read again.
void EventTable::addEvent(XMLEvent& event) {
  const ShownEvents::Shown* before = m_shownBefore.find(event);
  const bool isUnchanged = before && before->stamp == event.changeStamp();
  const Date day = isUnchanged ? before->data.day : event.day();
  if (!dateShown(day)) {
    m_leftSomeOut = true;
    return;
  }
  const bool counts = isUnchanged ? before->row->countsInTotals() : !event.isSetAside();
  if (!before || before->data.day != day || before->row->countsInTotals() != counts) {
    addRowOf(event, day, counts);
    return;
  }
  keepRow(*before->row, !isUnchanged);
  m_shown.add(m_shownBefore.takeFound()).stamp = event.changeStamp();
}

void EventTable::addRowOf(XMLEvent& event, const Date& day, bool counts) {
  ShownEvents::Shown& shown = m_shown.add(std::make_unique<ShownEvents::Shown>(
      ShownEvents::Shown{{&event, &portfolio(), day}, nullptr, event.changeStamp()}));
  auto row = std::make_unique<Row>(day.toString(DATE_DISPLAY_LOCAL), &shown.data);
  if (!counts)
    row->leaveOutOfTotals();
  shown.row = &addRow(std::move(row));
}

void EventTable::rowPopup(const TableClick& click) {
  if (!click.row)
    return;
  setInputRow(click.row);
  const PopupLabels labels = popupLabels(click.row->payload<EventRow>());
  ContextMenu menu(this, this);
  menu.addCommand(labels.edit, ID_EDIT);
  menu.addSeparator();
  menu.addCommand(labels.remove, ID_DELETE);
  menu.run(click.screenX, click.screenY);
}

void EventTable::editRow(Row& row) {
  setInputRow(&row);
  onEdit(this, 0, nullptr);
}

long EventTable::onDelete(FXObject*, FXSelector, void*) {
  return guardedHandler(m_texts.deleteFailed, [this] {
    if (inputRow())
      deleteEvent(inputRow()->payload<EventRow>());
  });
}

long EventTable::onEdit(FXObject*, FXSelector, void*) {
  return guardedHandler(m_texts.editFailed, [this] {
    if (inputRow())
      editEvent(inputRow()->payload<EventRow>());
  });
}

} // namespace Tallymoor
