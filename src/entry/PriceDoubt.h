#pragma once
#include "foundation/Date.h"
#include "foundation/String.h"

namespace Tallymoor {

class NumberField;

/// A form's doubt about a price that is far from that of its day, and so may be a slip: more than a quarter
/// above it, or a fifth below. The user is asked and may record it all the same. A price that was recorded
/// before is not doubted until he changes it or its day.
class PriceDoubt {
public:
  /// The field shows a recorded price, which is of this day.
  void beginWith(const NumberField& price, const Date& day);
  /// The form shows nothing recorded; this is how it begins.
  void forget() { m_recorded = String(); }
  /// A step of a form's validate(). Where no price of the day is known, there is nothing to compare with.
  bool check(NumberField& price, const String& code, const Date& day) const;

private:
  String m_recorded; ///< the field's text
  Date m_day;
};

} // namespace Tallymoor
