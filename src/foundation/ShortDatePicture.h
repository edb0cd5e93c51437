#pragma once
#include "foundation/Date.h"
#include "foundation/String.h"

namespace Tallymoor {

/// The user's short date form, as a picture in the letters d, dd, M, MM, yy and yyyy; any other character is
/// a separator. The same picture writes and reads, in the proleptic Gregorian calendar and with Latin digits
/// whatever the locale's own habits. A value that never changes: safe on any thread.
class ShortDatePicture {
public:
  explicit ShortDatePicture(const String& picture) : m_picture(picture) {}
  /// The numeric form of a locale such as "en_AU", by ICU, with a four-digit year.
  static ShortDatePicture ofLocale(const std::string& locale);

  const String& text() const { return m_picture; }
  String format(const Date& date) const;
  /// True when the text is a date in exactly this form, leading zeros included; the date is filled then only.
  bool parse(const String& text, Date& date) const;

private:
  String m_picture;
};

} // namespace Tallymoor
