#pragma once
#include "foundation/Date.h"
#include "pages/AnswerFormat.h"
#include <memory>
#include <optional>

namespace Tallymoor {

/// Turns the texts of an answer into days and numbers, as its format says and in no other way: a text that
/// does not fit is refused, since a wrong price does more harm than a missing one. Not to be shared between
/// threads.
class AnswerFigures {
public:
  /// Throws AnswerException for a date pattern or time zone that is unknown.
  explicit AnswerFigures(const AnswerFormat& format);
  ~AnswerFigures();

  /// The day of a text by the date pattern; with a time of day, the day on which the moment falls in the time
  /// zone. Throws AnswerException "no day: ...".
  Date day(const String& text) const;
  /// A number with the format's decimal sign; groups of three digits may stand before it, divided by the
  /// other sign, an apostrophe or a blank, and a sign of a currency may stand on either side. Nothing for a
  /// text without digits, such as "N/A". Throws AnswerException "no number: ..." for any other text, and for
  /// a sign of another currency than the format's.
  std::optional<double> number(const String& text) const;
  /// The number as a price in units of the currency: multiplied by the factor, inverted if so said. Nothing
  /// for 0, which says that there is no price. Throws as number, and for a price below 0.
  std::optional<double> price(const String& text) const;
  /// A number of shares, perhaps shortened as in "1.2M"; nothing for any other text, since it is only shown.
  std::optional<double> volume(const String& text) const;

private:
  class DayReader;

  char16_t m_decimalSign;
  String m_currency; ///< of the format
  double m_factor;
  bool m_invert;
  std::unique_ptr<DayReader> m_days;
};

} // namespace Tallymoor
