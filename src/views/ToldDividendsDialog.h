#pragma once
#include "widgets/Dialog.h"

namespace Tallymoor {

class ToldDividendsTable;
class TotalCapTreeItem;

/// The dividends that sources tell and that are not recorded. Each is recorded by the form of a dividend, or
/// refused, and is not offered again then.
class ToldDividendsDialog : public Dialog {
  FXDECLARE(ToldDividendsDialog)
public:
  enum { ID_RECORD = Dialog::ID_LAST, ID_REFUSE, ID_LAST };

  /// The tree's root must outlive the dialog.
  ToldDividendsDialog(FXWindow* owner, TotalCapTreeItem& root);

  ToldDividendsTable* table() const { return m_table; }

  long onRecord(FXObject*, FXSelector, void*);
  long onRefuse(FXObject*, FXSelector, void*);

protected:
  ToldDividendsDialog() {}

private:
  void showChoice();

  TotalCapTreeItem* m_root = nullptr;
  ToldDividendsTable* m_table = nullptr;
  FXButton* m_record = nullptr;
  FXButton* m_refuse = nullptr;
};

} // namespace Tallymoor
