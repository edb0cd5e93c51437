#include "pages/PageFigure.h"
#include "foundation/Exception.h"
#include "foundation/IcuText.h"
#include <algorithm>
#include <array>
#include <charconv>
#include <unicode/uchar.h>

namespace Tallymoor {

namespace {

constexpr std::size_t GROUP = 3;

bool isDigit(char16_t unit) {
  return unit >= u'0' && unit <= u'9';
}

bool isLetter(char16_t unit) {
  return (unit >= u'a' && unit <= u'z') || (unit >= u'A' && unit <= u'Z');
}

std::size_t endOfDigits(const String& text, std::size_t from) {
  while (from < text.size() && isDigit(text[from]))
    ++from;
  return from;
}

/// Where the digits before the decimal sign end, with their group signs; where they begin if there are none,
/// or not so divided.
std::size_t endOfWholePart(const String& text, std::size_t from, std::u16string_view groups) {
  std::size_t end = endOfDigits(text, from);
  if (end == text.size() || groups.find(text[end]) == std::u16string_view::npos)
    return end;
  const char16_t group = text[end];
  bool isFirstGroup = true;
  while (end < text.size() && text[end] == group) {
    const std::size_t next = endOfDigits(text, end + 1);
    // A blank, unlike the other signs, may stand behind a number too.
    if (group == u' ' && next == end + 1)
      return end;
    if (next - end - 1 != GROUP || (isFirstGroup && (end == from || end - from > GROUP)))
      return from;
    isFirstGroup = false;
    end = next;
  }
  return end;
}

/// Where the number at the head of the text ends; 0 when there is none.
std::size_t endOfNumber(const String& text, const NumberSigns& signs) {
  const std::size_t first = !text.empty() && (text[0] == u'-' || text[0] == u'+') ? 1 : 0;
  std::size_t end = endOfWholePart(text, first, signs.groups);
  if (end == first && !(end < text.size() && text[end] == signs.decimal))
    return 0;
  if (end < text.size() && text[end] == signs.decimal)
    end = endOfDigits(text, end + 1);
  return end;
}

/// The value of digits with these signs.
double valueOf(const String& number, const NumberSigns& signs) {
  String plain;
  for (const char16_t unit : number)
    if (unit == signs.decimal)
      plain += u'.';
    else if (signs.groups.find(unit) == std::u16string_view::npos)
      plain += unit;
  return plain.toDouble();
}

/// What a letter behind a number stands for; 1 for any other.
double unitOf(char16_t letter) {
  switch (letter) {
  case u'K':
  case u'k':
    return 1e3;
  case u'M':
  case u'm':
    return 1e6;
  case u'B':
  case u'b':
    return 1e9;
  default:
    return 1.0;
  }
}

/// The value of digits of base 10 or 16; nothing for other characters, and beyond what is a character.
std::optional<UChar32> codePoint(const String& digits, int base) {
  const std::string text = digits.toLatin1();
  const char* const end = text.data() + text.size();
  std::uint32_t value = 0;
  const auto [rest, error] = std::from_chars(text.data(), end, value, base);
  const bool isCharacter = error == std::errc() && rest == end && value > 0 &&
                           value <= static_cast<std::uint32_t>(UCHAR_MAX_VALUE) && !U_IS_SURROGATE(value);
  return isCharacter ? std::optional(static_cast<UChar32>(value)) : std::nullopt;
}

struct NamedCharacter {
  std::u16string_view name;
  char16_t character;
};

/// Those of markup, and of headings and names in the languages whose pages have them.
constexpr std::array NAMED_CHARACTERS{
    NamedCharacter{u"amp", u'&'},         NamedCharacter{u"lt", u'<'},
    NamedCharacter{u"gt", u'>'},          NamedCharacter{u"quot", u'"'},
    NamedCharacter{u"apos", u'\''},       NamedCharacter{u"nbsp", u' '},
    NamedCharacter{u"auml", u'\u00E4'},   NamedCharacter{u"ouml", u'\u00F6'},
    NamedCharacter{u"uuml", u'\u00FC'},   NamedCharacter{u"Auml", u'\u00C4'},
    NamedCharacter{u"Ouml", u'\u00D6'},   NamedCharacter{u"Uuml", u'\u00DC'},
    NamedCharacter{u"szlig", u'\u00DF'},  NamedCharacter{u"aacute", u'\u00E1'},
    NamedCharacter{u"eacute", u'\u00E9'}, NamedCharacter{u"iacute", u'\u00ED'},
    NamedCharacter{u"oacute", u'\u00F3'}, NamedCharacter{u"uacute", u'\u00FA'},
    NamedCharacter{u"Aacute", u'\u00C1'}, NamedCharacter{u"Eacute", u'\u00C9'},
    NamedCharacter{u"odblac", u'\u0151'}, NamedCharacter{u"udblac", u'\u0171'},
    NamedCharacter{u"agrave", u'\u00E0'}, NamedCharacter{u"egrave", u'\u00E8'},
    NamedCharacter{u"acirc", u'\u00E2'},  NamedCharacter{u"ecirc", u'\u00EA'},
    NamedCharacter{u"ocirc", u'\u00F4'},  NamedCharacter{u"ccedil", u'\u00E7'},
    NamedCharacter{u"ntilde", u'\u00F1'}, NamedCharacter{u"atilde", u'\u00E3'},
    NamedCharacter{u"euro", u'\u20AC'},   NamedCharacter{u"pound", u'\u00A3'}};

/// What a reference stands for, given without its "&" and ";".
std::optional<String> referredCharacter(const String& name) {
  for (const NamedCharacter& known : NAMED_CHARACTERS)
    if (name == known.name)
      return String(1, known.character);
  if (!name.starts_with(u'#'))
    return std::nullopt;
  const bool hexadecimal = name.size() > 1 && (name[1] | 0x20) == u'x';
  const auto value = codePoint(String(name.substr(hexadecimal ? 2 : 1)), hexadecimal ? 16 : 10);
  return value ? std::optional(fromIcu(icu::UnicodeString(*value))) : std::nullopt;
}

} // namespace

String withoutPageBlanks(const String& text) {
  static const std::array<String, 2> BLANKS{u"&nbsp;", u"&#160;"};
  String rest = text.trimmed();
  for (std::size_t before = rest.size() + 1; rest.size() < before;) {
    before = rest.size();
    for (const String& blank : BLANKS) {
      if (rest.starts_with(blank))
        rest = rest.substr(blank.size()).trimmed();
      if (rest.ends_with(blank))
        rest = rest.substr(0, rest.size() - blank.size()).trimmed();
    }
  }
  return rest;
}

String withCharacters(const String& text) {
  String plain;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = text[at] == u'&' ? text.find(u';', at) : String::npos;
    const auto character =
        end == String::npos ? std::nullopt : referredCharacter(String(text.substr(at + 1, end - at - 1)));
    plain += character ? *character : String(text.substr(at, 1));
    at = character ? end + 1 : at + 1;
  }
  return plain;
}

bool holdsDigits(const String& text) {
  const String rest = withoutPageBlanks(text);
  return std::any_of(rest.begin(), rest.end(), isDigit);
}

std::optional<double> readFigure(const String& text) {
  return readFigure(text, NumberSigns());
}

std::optional<double> readFigure(const String& text, const NumberSigns& signs) {
  const String number = withoutPageBlanks(text);
  const std::size_t end = endOfNumber(number, signs);
  if (std::none_of(number.begin(), number.begin() + static_cast<std::ptrdiff_t>(end), isDigit))
    return std::nullopt;
  const String behind = number.substr(end);
  const bool goesOn = !behind.empty() && (isLetter(behind[0]) || behind[0] == u'.' || behind[0] == u',');
  if (goesOn || std::any_of(behind.begin(), behind.end(), isDigit))
    return std::nullopt;
  return valueOf(number.substr(0, end), signs);
}

std::optional<double> readVolume(const String& text, const NumberSigns& signs) {
  const String number = withoutPageBlanks(text);
  const double unit = number.empty() ? 1.0 : unitOf(number.back());
  const std::optional<double> figure =
      readFigure(unit > 1.0 ? number.substr(0, number.size() - 1) : number, signs);
  return figure ? std::optional(*figure * unit) : std::nullopt;
}

double requireFigure(const String& text) {
  if (const std::optional<double> figure = readFigure(text))
    return *figure;
  throw HTMLException(u"TallymoorInternet - no number: " + text);
}

} // namespace Tallymoor
