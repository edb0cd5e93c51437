#pragma once
#include "views/PortfolioTable.h"
#include "views/ShownEvents.h"
#include "xml/PortfolioRecords.h"
#include <vector>

namespace Tallymoor {

/// A table with a row for each recorded event of one kind, by the event's day, the oldest first. Events that
/// Table::dateShown leaves out have none.
class EventTable : public PortfolioTable {
  FXDECLARE_ABSTRACT(EventTable)
public:
  enum { ID_DELETE = Table::ID_LAST, ID_EDIT, ID_LAST };

  struct Texts {
    const char16_t* tableName;
    const char16_t* noEvents; ///< shown while no event of the kind is recorded: how one is
    const char16_t* editFailed;
    const char16_t* deleteFailed;
  };

  /// As PortfolioTable. The subclass's constructor ends with updateTable.
  EventTable(const Texts& texts, SharePortfolioUser& portfolio, PortfolioCommands& commands,
             FXComposite* parent, Watcher* watcher);

  // For the event of the input row.
  long onDelete(FXObject*, FXSelector, void*);
  long onEdit(FXObject*, FXSelector, void*);

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
  struct PopupLabels {
    String edit;
    String remove;
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

  /// What a row's popup calls its two commands.
  virtual PopupLabels popupLabels(const EventRow& row) const = 0;
  virtual void editEvent(const EventRow& row) = 0;
  virtual void deleteEvent(const EventRow& row) = 0;
  void rowPopup(const TableClick& click) override;
  void editRow(Row& row) override;

private:
  void declareColumns();
  void addEvent(XMLEvent& event);
  void addRowOf(XMLEvent& event, const Date& day, bool counts);
  void forgetAll();

  Texts m_texts;
  ShownEvents m_shown;
  ShownEvents m_shownBefore; ///< while the table is filled: those that have not been met again
  bool m_leftSomeOut = false;
};

} // namespace Tallymoor
