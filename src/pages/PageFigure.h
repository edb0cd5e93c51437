#pragma once
#include "foundation/String.h"
#include <optional>
#include <string_view>

namespace Tallymoor {

// How the text of a cell or of a price is read. Pages change, and a price that is wrong by a factor does more
// harm than one that is missing: so a text is read only when it is a number from its first to its last digit.

/// Without white space at both ends, "&nbsp;" and "&#160;" included.
String withoutPageBlanks(const String& text);

/// A name as the reader of a page sees it: "&amp;", "&lt;", "&gt;", "&quot;", "&apos;", "&nbsp;" and numbers,
/// names of letters such as "&ouml;", "&euro;" and "&pound;", and numbers, as in "&#38;" and "&#x26;", are
/// the characters that they stand for. Others stay as they are.
String withCharacters(const String& text);

/// True when there is any digit in it, but for those of blanks at its ends: what is without is no number, as
/// "N/A" or "-".
bool holdsDigits(const String& text);

/// A number as pages write it: perhaps a sign, digits with commas before groups of three, perhaps a point and
/// decimals. Behind it may stand what holds no digits and is no letter right at the number, as in "12.34 AUD"
/// and "5.1%". Nothing for any other text: "12,34", "1.234,50", "1&nbsp;234", "$12.34", "1.2M".
std::optional<double> readFigure(const String& text);

/// How the numbers of an answer are written.
struct NumberSigns {
  char16_t decimal = u'.';
  /// Each may stand before groups of three digits, though not two of them in one number.
  std::u16string_view groups = u",";
};
/// As readFigure above, for numbers of other countries: "1.234,50" with a comma as the decimal sign and a
/// point before groups.
std::optional<double> readFigure(const String& text, const NumberSigns& signs);

/// A number of shares, which pages shorten to thousands, millions or billions: "850", "12.5K", "1.2M", "3b".
std::optional<double> readVolume(const String& text, const NumberSigns& signs = {});

/// As readFigure, but throws HTMLException "TallymoorInternet - no number: " and the text.
double requireFigure(const String& text);

} // namespace Tallymoor
