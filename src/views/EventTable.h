#pragma once
#include "views/PortfolioTable.h"
#include "xml/PortfolioRecords.h"
#include <cstdint>
#include <unordered_map>
#include <vector>

namespace Tallymoor {

/// What a row of recorded events is computed from. The event belongs to the records; a table that reads it is
/// told before it changes.
struct EventRow {
  XMLEvent* event = nullptr;
  const SharePortfolioUser* portfolio = nullptr;
  Date day; ///< of the event

  /// The event as the class that the table's events are of.
  template <class Event>
  Event& as() const {
    return elementAs<Event>(*event);
  }
};

/// A table with a row for each recorded event of one kind, by the event's day, the oldest first. Events that
/// Table::dateShown leaves out have none.
class EventTable : public PortfolioTable {
  FXDECLARE_ABSTRACT(EventTable)
public:
  /// As PortfolioTable. The subclass's constructor ends with updateTable.
  EventTable(const String& name, SharePortfolioUser& portfolio, PortfolioCommands& commands,
             FXComposite* parent, Watcher* watcher);

protected:
  /// What a column is computed from: its event alone (Column::followPayloadAlone), or also names, prices and
  /// so on.
  enum Follows { EVENT_AND_MORE, EVENT_ALONE };
  struct ColumnOf {
    const char16_t* title;
    Column::Function function;
    CompareType compareType = COMPARE_TEXT;
    FXuint justify = FXTableItem::RIGHT;
    bool defaultVisible = true;
    Follows follows = EVENT_AND_MORE;
  };
  struct Entry {
    String text;
    FXSelector command;
  };

  void fillTable() override;
  /// The columns in their order.
  virtual std::vector<ColumnOf> columnsOfEvents() const = 0;
  /// Finds the events and calls addEvents.
  virtual void addAllEvents() = 0;
  /// A row for each.
  template <class Event>
  void addEvents(const ElementList<Event>& events) {
    for (Event& event : events)
      addEvent(event);
  }

  /// The row's popup: a way to edit its event, and below it one to delete it.
  void eventPopup(const TableClick& click, const Entry& edit, const Entry& remove);
  /// The command that edits the event of the input row.
  virtual FXSelector editCommand() const = 0;
  void editRow(Row& row) override;
  /// What stands there while no event of the kind is recorded: how one is.
  virtual String noEventsText() const = 0;
  /// The event behind the row whose popup was opened; null when there is none.
  template <class Event>
  Event* inputEvent() const {
    return inputRow() ? &inputRow()->template payload<EventRow>().template as<Event>() : nullptr;
  }

private:
  struct Shown {
    EventRow data;
    Row* row;
    std::uint64_t stamp; ///< of the event, when its cells were computed
  };
  using ShownEvents = std::unordered_map<const XMLEvent*, Shown>;

  void declareColumns();
  void addEvent(XMLEvent& event);
  void addRowOf(XMLEvent& event, const Date& day, bool counts);
  void forgetAll();

  ShownEvents m_shown;
  ShownEvents m_shownBefore; ///< while the table is filled: those that have not been met again
  bool m_leftSomeOut = false;
};

} // namespace Tallymoor
