#pragma once
#include "views/EventTable.h"

namespace Tallymoor {

/// The cash events of a portfolio in the order of their days, with the balance after each day. The order is
/// what gives the balances their meaning, so the rows can't be sorted.
class CashReserveTable : public EventTable {
  FXDECLARE_ABSTRACT(CashReserveTable)
public:
  enum { ID_DELETE = Table::ID_LAST, ID_EDIT, ID_LAST };

  /// As PortfolioTable.
  CashReserveTable(SharePortfolioUser& portfolio, PortfolioCommands& commands, FXComposite* parent,
                   Watcher* watcher);

  long onDelete(FXObject*, FXSelector, void*);
  long onEdit(FXObject*, FXSelector, void*);

protected:
  std::vector<ColumnOf> columnsOfEvents() const override;
  void addAllEvents() override;
  void rowPopup(const TableClick& click) override;
  FXSelector editCommand() const override { return ID_EDIT; }
  String noEventsText() const override;
  void clickColumn(const TableClick&) override {}
  void clickCorner() override {}

private:
  void deleteEvent(const XMLCashEvent& event);
  void editEvent(XMLCashEvent& event);
};

} // namespace Tallymoor
