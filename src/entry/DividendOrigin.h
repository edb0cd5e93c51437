#pragma once
#include "foundation/String.h"
#include <fx.h>

namespace Tallymoor {

class FormComboBox;
class FormRows;
class NumberField;
class SharePortfolioUser;
class XMLDividendEvent;

/// The rows of a dividend's form that say where it comes from: the check for a foreign one, its country, and
/// the tax that was withheld there.
class DividendOrigin {
public:
  /// Adds the rows; once. The check sends its command to the target.
  void addTo(FormRows& rows, FXObject* target, FXSelector selector);

  /// To a domestic dividend, with the countries that are likely for the portfolio, which may be null.
  void reset(const SharePortfolioUser* portfolio);
  void show(const XMLDividendEvent& dividendEvent);
  /// After the check has changed: a domestic dividend has no country.
  void followCheck();
  bool isCheck(const FXObject* widget) const { return widget == m_foreign; }
  void focusCountry();

  bool isForeign() const;
  /// Empty for a domestic dividend, and while none is entered.
  String country() const;
  double withholdingTax() const;
  /// A step of the form's validate().
  bool check() const;

private:
  FXCheckButton* m_foreign = nullptr;
  FormComboBox* m_country = nullptr;
  NumberField* m_withholdingTax = nullptr;
};

} // namespace Tallymoor
