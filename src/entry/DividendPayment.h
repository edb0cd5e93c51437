#pragma once
#include "entry/PriceDoubt.h"
#include <fx.h>

namespace Tallymoor {

class FormRows;
class XMLDividendEvent;

/// The rows of a dividend's form that say how it was paid: in cash, or reinvested in new shares.
class DividendPayment {
public:
  /// Adds the rows; once. The two buttons send their commands to the target.
  void addTo(FormRows& rows, FXObject* target, FXSelector cash, FXSelector reinvested);

  /// To a payment in cash.
  void reset();
  void show(const XMLDividendEvent& dividendEvent);
  void payInCash();
  void reinvest();
  /// Enables the fields of the new shares, with their labels, or disables them.
  void enableShares(bool enabled);

  bool isReinvested() const;
  /// These two are 0 for a payment in cash.
  double shares() const;
  double sharePrice() const;
  /// A step of the form's validate(), with the stock and the day of the dividend.
  bool check(const String& code, const Date& day) const;

private:
  FXRadioButton* m_cash = nullptr;
  FXRadioButton* m_reinvested = nullptr;
  FXLabel* m_sharesLabel = nullptr;
  NumberField* m_shares = nullptr;
  FXLabel* m_sharePriceLabel = nullptr;
  NumberField* m_sharePrice = nullptr;
  PriceDoubt m_sharePriceDoubt;
};

} // namespace Tallymoor
