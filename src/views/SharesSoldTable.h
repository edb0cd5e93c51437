#pragma once
#include "views/EventTable.h"

namespace Tallymoor {

/// The sales of a portfolio, a row each by the day of sale: what was paid, what came in and what it made.
class SharesSoldTable : public EventTable {
  FXDECLARE_ABSTRACT(SharesSoldTable)
public:
  enum { ID_DELETE = Table::ID_LAST + 2, ID_EDIT, ID_LAST };

  /// As PortfolioTable.
  SharesSoldTable(SharePortfolioUser& portfolio, PortfolioCommands& commands, FXComposite* parent,
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
  void deleteSale(const XMLSellEvent& sale);
  void editSale(XMLSellEvent& sale);
};

} // namespace Tallymoor
