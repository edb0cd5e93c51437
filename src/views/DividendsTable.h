#pragma once
#include "views/EventTable.h"

namespace Tallymoor {

/// The dividends of a portfolio, a row each by the day of receipt.
class DividendsTable : public EventTable {
  FXDECLARE_ABSTRACT(DividendsTable)
public:
  enum { ID_DELETE = Table::ID_LAST, ID_EDIT, ID_LAST };

  /// As PortfolioTable.
  DividendsTable(SharePortfolioUser& portfolio, PortfolioCommands& commands, FXComposite* parent,
                 Watcher* watcher);

  long onDelete(FXObject*, FXSelector, void*);
  long onEdit(FXObject*, FXSelector, void*);

protected:
  std::vector<ColumnOf> columnsOfEvents() const override;
  void addAllEvents() override;
  void rowPopup(const TableClick& click) override;
  FXSelector editCommand() const override { return ID_EDIT; }
  String noEventsText() const override;

private:
  void deleteDividend(const XMLDividendEvent& dividend);
  void editDividend(XMLDividendEvent& dividend);
};

} // namespace Tallymoor
