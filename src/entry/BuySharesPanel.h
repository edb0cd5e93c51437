#pragma once
#include "foundation/Date.h"
#include "widgets/GUIPanel.h"
#include <memory>

namespace Tallymoor {

class FormIcons;
class FormRows;
class FormTextField;
class NumberField;

/// The form for one purchase of shares.
class BuySharesPanel : public GUIPanel {
  FXDECLARE(BuySharesPanel)
public:
  enum { ID_CHOOSE_DATE = GUIPanel::ID_LAST, ID_SEARCH_CODE, ID_CODE, ID_LAST };

  explicit BuySharesPanel(FXComposite* parent);
  ~BuySharesPanel() override;

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
  double number() const;
  double price() const;
  double brokerage() const;
  /// Throws Exception when the text is no date of the local form.
  Date date() const;
  String comments() const;

  long onChooseDate(FXObject*, FXSelector, void*);
  long onSearchCode(FXObject*, FXSelector, void*);
  /// A code that is typed has not been searched for: the name goes.
  long onCodeTyped(FXObject*, FXSelector, void*);

protected:
  BuySharesPanel();

private:
  void buildStockRows(FormRows& rows);
  void buildPurchaseRows(FormRows& rows);
  void showFoundStock(const String& code, const String& name);
  bool checkNumbers() const;
  bool checkBrokerage() const;
  bool checkCode() const;

  std::unique_ptr<FormIcons> m_icons;
  FormTextField* m_code = nullptr;
  FormTextField* m_name = nullptr;
  NumberField* m_number = nullptr;
  NumberField* m_price = nullptr;
  NumberField* m_brokerage = nullptr;
  FormTextField* m_date = nullptr;
  FXText* m_comments = nullptr;
};

} // namespace Tallymoor
