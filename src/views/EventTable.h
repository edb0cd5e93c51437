#pragma once
#include "views/PortfolioTable.h"
#include <string_view>
#include <unordered_map>
#include <vector>

namespace Tallymoor {

class XMLElement;

/// What a row of recorded events is computed from. The event belongs to the records; a table that reads it is
/// told before it changes.
struct EventRow {
  XMLElement* event = nullptr;
  const SharePortfolioUser* portfolio = nullptr;
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
  struct ColumnOf {
    const char16_t* title;
    Column::Function function;
    CompareType compareType = COMPARE_TEXT;
    FXuint justify = FXTableItem::RIGHT;
    bool defaultVisible = true;
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
  /// A row for each instance of that name; the date's name is that of the leaf with the day of the event.
  void addEvents(XMLElement& parent, std::u16string_view events, std::u16string_view date);

  /// The row's popup: a way to edit its event, and below it one to delete it.
  void eventPopup(const TableClick& click, const Entry& edit, const Entry& remove);
  /// The command that edits the event of the input row.
  virtual FXSelector editCommand() const = 0;
  void editRow(Row& row) override;
  /// What stands there while no event of the kind is recorded: how one is.
  virtual String noEventsText() const = 0;
  /// The event behind the row whose popup was opened; null when there is none.
  XMLElement* inputEvent() const;

private:
  struct Shown {
    EventRow data;
    Date day;
    Row* row;
  };
  using ShownEvents = std::unordered_map<const XMLElement*, Shown>;

  void declareColumns();
  void addEvent(XMLElement& event, const Date& day, bool counts);
  void forgetAll();

  ShownEvents m_shown;
  ShownEvents m_shownBefore; ///< while the table is filled: those that have not been met again
  bool m_leftSomeOut = false;
};

} // namespace Tallymoor
