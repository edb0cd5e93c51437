#pragma once
#include "foundation/String.h"
#include <memory>
#include <string>

namespace Tallymoor {

/// Formats money in a locale's currency form, by ICU, with Latin digits. Expensive to construct, immutable
/// and thread-safe.
class MoneyFormat {
public:
  /// A locale that nobody has chosen has a form all the same, but no currency of the user's.
  explicit MoneyFormat(const std::string& locale, bool isChosen = true);
  ~MoneyFormat();

  /// Omits the sign of an amount that rounds to zero. Empty if ICU has no form for the locale.
  String format(double amount) const;

  /// Reads the output of format() and typed amounts. A point is the decimal sign. If the locale's decimal
  /// sign is a comma, a single comma with no point after it is decimal too, and points before it group:
  /// "1.234,50" must not become 1.2345. Ignores everything else except digits and signs. Returns 0 for two
  /// decimal points.
  double read(const String& text) const;

  /// The ISO 4217 code of the currency of a chosen locale; empty if it has none.
  String currencyCode() const;

private:
  struct Parts;
  double readAsWritten(const String& text) const;

  std::unique_ptr<const Parts> m_parts;
};

} // namespace Tallymoor
