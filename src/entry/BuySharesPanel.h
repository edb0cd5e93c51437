#pragma once
#include "entry/TradePanel.h"

namespace Tallymoor {

/// The form for one purchase of shares.
class BuySharesPanel : public TradePanel {
  FXDECLARE(BuySharesPanel)
public:
  enum { ID_SEARCH_CODE = TradePanel::ID_LAST, ID_CODE, ID_LAST };

  explicit BuySharesPanel(FXComposite* parent);

  /// Every field to its initial value: today, the default brokerage, and for a code the price that is known
  /// of it.
  void reset(const String& initialCode = String());
  /// The fields of a recorded purchase; its code can't be changed.
  void showPurchase(const String& code, const Date& date, double number, double price, double brokerage,
                    const String& comments);

  bool validate() override;
  /// The first field that takes typing, which has the focus when the form opens.
  FXWindow* firstField() const;

  /// Without blanks around it.
  String code() const;
  String name() const;

  long onSearchCode(FXObject*, FXSelector, void*);
  /// A code that is typed has not been searched for: the name goes.
  long onCodeTyped(FXObject*, FXSelector, void*);

protected:
  BuySharesPanel() {}

private:
  void buildStockRows(FormRows& rows);
  void showFoundStock(const String& code, const String& name);
  bool checkNumbers() const;
  bool checkCode() const;

  FormTextField* m_code = nullptr;
  FormTextField* m_name = nullptr;
};

} // namespace Tallymoor
