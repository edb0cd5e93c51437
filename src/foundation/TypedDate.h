#pragma once
#include "foundation/Date.h"
#include "foundation/String.h"
#include <memory>
#include <string>

namespace Tallymoor {

class ShortDatePicture;

/// Reads dates as people type them: "1/11/2023", "01/11/23", "2023-11-01", "1 Nov 2023", "1.11.2023", and
/// what the locale itself writes, such as "1 de noviembre de 2023". Day and month stand in the order of the
/// locale. A month may be written in the locale's language or in English, whole or shortened to what can be
/// no other month. A year has two digits or four; with four it may come first, and then month and day follow.
/// Blanks around any part are ignored, and digits of other scripts count as digits.
///
/// What could be two different days in one locale, or is no day at all, as 29 February of most years, is not
/// read. Records and pages have forms of their own; this is for forms alone. Never changes: safe on any
/// thread.
class TypedDate {
public:
  /// The picture is the user's short form, which says the order; the locale such as "en_AU".
  TypedDate(const ShortDatePicture& picture, const std::string& locale);
  ~TypedDate();

  /// True when the text is a date; it is filled then only.
  bool read(const String& text, Date& date) const;

private:
  class MonthNames;
  struct Order;

  std::unique_ptr<const Order> m_order;
  std::unique_ptr<const MonthNames> m_months;
  const std::string m_locale;
};

} // namespace Tallymoor
