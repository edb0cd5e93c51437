#pragma once
#include "views/EventTable.h"

namespace Tallymoor {

/// The sales of a portfolio, a row each by the day of sale: what was paid, what came in and what it made.
class SharesSoldTable : public EventTable {
public:
  /// As PortfolioTable.
  SharesSoldTable(SharePortfolioUser& portfolio, PortfolioCommands& commands, FXComposite* parent,
                  Watcher* watcher);

protected:
  std::vector<ColumnOf> columnsOfEvents() const override;
  void addAllEvents() override;
  PopupLabels popupLabels(const EventRow& row) const override;
  void editEvent(const EventRow& row) override;
  void deleteEvent(const EventRow& row) override;
};

} // namespace Tallymoor
