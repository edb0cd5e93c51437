#pragma once
#include "views/SharesHeldTable.h"

namespace Tallymoor {

/// The purchases of one share that are held, a row each by the date of purchase.
class ShareHeldTable : public SharesHeldTable {
  FXDECLARE_ABSTRACT(ShareHeldTable)
public:
  enum { ID_EDIT = SharesHeldTable::ID_LAST + 1, ID_DELETE_PURCHASE, ID_LAST };

  /// As SharesHeldTable.
  ShareHeldTable(SharePortfolioUser& portfolio, const String& code, PortfolioCommands& commands,
                 FXComposite* parent, Watcher* watcher);

  long onEdit(FXObject*, FXSelector, void*);
  long onDeletePurchase(FXObject*, FXSelector, void*);

protected:
  void fillTable() override;
  void rowPopup(const TableClick& click) override;
  void editRow(Row& row) override;
  /// Every row shows the one share.
  void markPrice(const String& code) override;

private:
  void editPurchase(XMLBuyEvent& purchase);
  void deletePurchase(const XMLBuyEvent& purchase);

  String m_code;
};

} // namespace Tallymoor
