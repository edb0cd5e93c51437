#pragma once
#include "foundation/Date.h"
#include "foundation/String.h"

namespace Tallymoor {

/// The user's short date form, as a picture of the letters d, dd, M, MM, yy and yyyy with separators between
/// them. Formats and parses dates in the proleptic Gregorian calendar with Latin digits in every locale.
/// Immutable and thread-safe.
class ShortDatePicture {
public:
  explicit ShortDatePicture(const String& picture) : m_picture(picture) {}
  /// The numeric form of a locale ("en_AU"), from ICU, with a four-digit year.
  static ShortDatePicture ofLocale(const std::string& locale);

  const String& text() const { return m_picture; }
  String format(const Date& date) const;
  /// Reads a text in exactly this form, leading zeros included. Sets the date only on success.
  bool parse(const String& text, Date& date) const;

private:
  String m_picture;
};

} // namespace Tallymoor
