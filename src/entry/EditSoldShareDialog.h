#pragma once
#include "books/Trade.h"
#include "entry/CashRow.h"
#include "entry/PriceDoubt.h"
#include "foundation/Date.h"
#include "widgets/Dialog.h"
#include <memory>

namespace Tallymoor {

class DateField;
class FormIcons;
class FormRows;
class FormTextField;
class NumberField;
class XMLSellEvent;

/// Changes a recorded sale, both the side of the purchase and that of the sale, in shares of the day of sale;
/// the caller edits the record when execute() gives 1.
class EditSoldShareDialog : public Dialog {
  FXDECLARE(EditSoldShareDialog)
public:
  enum { ID_CHOOSE_BUY_DATE = Dialog::ID_LAST, ID_CHOOSE_SELL_DATE, ID_AMOUNT, ID_LAST };

  /// The sale is only read, and only here.
  EditSoldShareDialog(FXWindow* owner, const XMLSellEvent& sellEvent);
  ~EditSoldShareDialog() override;

  bool validate() override;

  String code() const;
  double number() const;
  double buyPrice() const;
  double sellPrice() const;
  double buyBrokerage() const;
  double sellBrokerage() const;
  /// These two throw Exception when the text is no date.
  Date buyDate() const;
  Date sellDate() const;
  String comments() const;
  /// All of it; throws as the dates.
  SaleEntry entry() const;

  long onChooseBuyDate(FXObject*, FXSelector, void*);
  long onChooseSellDate(FXObject*, FXSelector, void*);
  /// A number was typed: the totals follow.
  long onAmount(FXObject*, FXSelector, void*);

protected:
  EditSoldShareDialog();

private:
  void buildAmountRows(FormRows& rows);
  void buildBrokerageRows(FormRows& rows);
  void buildDateRows(FormRows& rows);
  void buildTotalRows(FormRows& rows);
  void show(const XMLSellEvent& sellEvent);
  void showTotals();
  bool checkNumbers() const;
  bool checkBrokerages() const;
  bool checkDates() const;
  bool checkPricesOfDays() const;

  std::unique_ptr<FormIcons> m_icons;
  FormTextField* m_code = nullptr;
  FormTextField* m_name = nullptr;
  NumberField* m_number = nullptr;
  NumberField* m_buyPrice = nullptr;
  NumberField* m_sellPrice = nullptr;
  NumberField* m_buyBrokerage = nullptr;
  NumberField* m_sellBrokerage = nullptr;
  NumberField* m_totalBrokerage = nullptr;
  DateField* m_buyDate = nullptr;
  DateField* m_sellDate = nullptr;
  NumberField* m_received = nullptr;
  CashRow m_cash;
  bool m_changesCost = false;        ///< the purchase has a cash entry of its own, which follows
  bool m_buyPriceIsOfItsDay = false; ///< and not in shares of the day of sale, which a split made others
  PriceDoubt m_buyPriceDoubt;
  PriceDoubt m_sellPriceDoubt;
  FXText* m_comments = nullptr;
};

} // namespace Tallymoor
