#pragma once
#include "foundation/String.h"
#include <memory>
#include <string>

namespace Tallymoor {

/// Money in the currency form of a locale, by ICU, with Latin digits. The formatter is costly to make and
/// never changes afterwards: made once, safe on any thread.
class MoneyFormat {
public:
  explicit MoneyFormat(const std::string& locale);
  ~MoneyFormat();

  /// Of an amount that shows as zero the sign is left out. Empty when the locale's form is unavailable.
  String format(double amount) const;

  /// Reads what format writes, and what a person types: a point is decimal. Where the locale's decimal sign
  /// is a comma, so is a single comma with no point behind it, and points before it only group: "1.234,50"
  /// there must not become 1.2345. All else but digits and signs is ignored. With two decimal points it is no
  /// amount: 0.
  double read(const String& text) const;

private:
  struct Parts;
  double readAsWritten(const String& text) const;

  std::unique_ptr<const Parts> m_parts;
};

} // namespace Tallymoor
