#pragma once
#include "views/EventTable.h"

namespace Tallymoor {

/// The cash events of a portfolio in the order of their days, with the balance after each day. The order is
/// what gives the balances their meaning, so the rows can't be sorted.
class CashReserveTable : public EventTable {
public:
  /// As PortfolioTable.
  CashReserveTable(SharePortfolioUser& portfolio, PortfolioCommands& commands, FXComposite* parent,
                   Watcher* watcher);

protected:
  std::vector<ColumnOf> columnsOfEvents() const override;
  void addAllEvents() override;
  PopupLabels popupLabels(const EventRow& row) const override;
  void editEvent(const EventRow& row) override;
  void deleteEvent(const EventRow& row) override;
  void clickColumn(const TableClick&) override {}
  void clickCorner() override {}
};

} // namespace Tallymoor
