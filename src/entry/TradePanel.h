#pragma once
#include "entry/DatedPanel.h"

namespace Tallymoor {

class NumberField;

/// What the forms for a purchase and for a sale have in common: the number of shares, their price, the
/// brokerage, the day and the user's comments.
class TradePanel : public DatedPanel {
  FXDECLARE(TradePanel)
public:
  enum { ID_LAST = DatedPanel::ID_LAST };

  TradePanel(FXComposite* parent, const String& title, const String& description);

  double number() const;
  double price() const;
  double brokerage() const;
  String comments() const;

protected:
  TradePanel() {}
  void addTrade(FormRows& rows, const String& numberLabel, const String& dateLabel);
  void addComments(FormRows& rows, const String& title);
  /// Nothing bought or sold yet, the default brokerage, today, no comments.
  void resetTrade();
  void showTrade(const Date& date, double number, double price, double brokerage, const String& comments);
  /// Asks whether there really was no brokerage, and whether another one than the default is the new default.
  bool checkBrokerage(const String& noneQuestion, const String& defaultQuestion) const;

  NumberField* numberField() const { return m_number; }
  NumberField* priceField() const { return m_price; }

private:
  NumberField* m_number = nullptr;
  NumberField* m_price = nullptr;
  NumberField* m_brokerage = nullptr;
  FXText* m_comments = nullptr;
};

} // namespace Tallymoor
