#pragma once
#include "foundation/Date.h"
#include "foundation/String.h"
#include <memory>
#include <string>

namespace Tallymoor {

class ShortDatePicture;

/// Reads typed dates: "1/11/2023", "01/11/23", "2023-11-01", "1 Nov 2023", "1.11.2023", and the locale's own
/// forms ("1 de noviembre de 2023"). Day and month are in the locale's order. A month's name can be in the
/// locale's language or in English, complete or abbreviated to an unambiguous prefix. A year has two or four
/// digits; a four-digit year may come first, followed by month and day. Blanks around the parts are ignored.
/// Digits of all scripts are accepted.
///
/// Rejects ambiguous dates and invalid days, like 29 February of most years. For input fields only: documents
/// and pages have their own formats. Immutable and thread-safe.
class TypedDate {
public:
  /// The picture is the user's short form, which determines the order. The locale is a name like "en_AU".
  TypedDate(const ShortDatePicture& picture, const std::string& locale);
  ~TypedDate();

  /// Returns true and sets the date if the text is a date. Otherwise leaves the date unchanged.
  bool read(const String& text, Date& date) const;

private:
  class MonthNames;
  struct Order;

  std::unique_ptr<const Order> m_order;
  std::unique_ptr<const MonthNames> m_months;
  const std::string m_locale;
};

} // namespace Tallymoor
