#include "workbench/PageText.h"
#include "pages/HTMLTag.h"
#include <algorithm>
#include <array>
#include <optional>
#include <unicode/utf16.h>
#include <utility>
#include <vector>

namespace Tallymoor {

namespace {

constexpr char16_t NO_BREAK_SPACE = 0xA0;
constexpr std::size_t LONGEST_REFERENCE = 8;

bool isBlank(char16_t unit) {
  return unit == u' ' || unit == NO_BREAK_SPACE || (unit >= 9 && unit <= 13);
}

std::optional<char16_t> characterNumbered(const String& digits, int base) {
  unsigned value = 0;
  if (digits.empty() || digits.size() > 5)
    return std::nullopt;
  for (const char16_t unit : digits.toLower()) {
    const bool decimal = unit >= u'0' && unit <= u'9';
    if (!decimal && !(base == 16 && unit >= u'a' && unit <= u'f'))
      return std::nullopt;
    value =
        value * static_cast<unsigned>(base) + static_cast<unsigned>(decimal ? unit - u'0' : unit - u'a' + 10);
  }
  const auto unit = static_cast<char16_t>(value);
  return value == 0 || value > 0xFFFF || U_IS_SURROGATE(unit) ? std::nullopt : std::optional(unit);
}

/// The character of a reference; name is the part between "&" and ";".
std::optional<char16_t> referenced(const String& name) {
  static constexpr std::array<std::pair<std::u16string_view, char16_t>, 9> NAMES{{{u"nbsp", NO_BREAK_SPACE},
                                                                                  {u"amp", u'&'},
                                                                                  {u"lt", u'<'},
                                                                                  {u"gt", u'>'},
                                                                                  {u"quot", u'"'},
                                                                                  {u"apos", u'\''},
                                                                                  {u"pound", 0xA3},
                                                                                  {u"yen", 0xA5},
                                                                                  {u"euro", 0x20AC}}};
  for (const auto& [known, unit] : NAMES)
    if (name == String(known))
      return unit;
  if (!name.startsWith(u"#"))
    return std::nullopt;
  const bool hexadecimal = name.startsWith(u"#x") || name.startsWith(u"#X");
  return characterNumbered(name.substr(hexadecimal ? 2 : 1), hexadecimal ? 16 : 10);
}

String withoutReferences(std::u16string_view text) {
  String result;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const std::size_t end = text[i] == u'&' ? text.find(u';', i) : std::u16string_view::npos;
    if (end != std::u16string_view::npos && end - i <= LONGEST_REFERENCE) {
      if (const auto unit = referenced(String(text.substr(i + 1, end - i - 1)))) {
        result += *unit;
        i = end;
        continue;
      }
    }
    result += text[i];
  }
  return result;
}

String onOneLine(std::u16string_view text) {
  String result;
  for (const char16_t unit : text) {
    const bool blank = isBlank(unit);
    if (!blank)
      result += unit;
    else if (!result.empty() && result.back() != u' ')
      result += u' ';
  }
  if (!result.empty() && result.back() == u' ')
    result.pop_back();
  return result;
}

/// A tag's attributes, the most useful ones for a locator first.
std::vector<std::pair<String, String>> inOrderOfUse(const HTMLTag& tag) {
  const std::map<String, String> values = tag.attributes();
  std::vector<std::pair<String, String>> order(values.begin(), values.end());
  std::stable_sort(order.begin(), order.end(), [](const auto& left, const auto& right) {
    const auto rank = [](const String& name) { return name == u"id" ? 0 : name == u"class" ? 1 : 2; };
    return rank(left.first) < rank(right.first);
  });
  return order;
}

String nameAndAttributes(const HTMLTag& tag, std::size_t mostAttributes) {
  String title = shortened(tag.nameView(), 20);
  std::vector<std::pair<String, String>> order = inOrderOfUse(tag);
  order.resize(std::min(order.size(), mostAttributes));
  for (const auto& [name, value] : order) {
    title += u" " + shortened(name, 20);
    if (!value.empty())
      title += u"=\"" + shortened(value, 30) + u"\"";
  }
  return title;
}

} // namespace

String asShown(std::u16string_view text) {
  return onOneLine(withoutReferences(text));
}

String shortened(std::u16string_view text, std::size_t most) {
  // Cut first, because the text may contain megabytes of blanks.
  const String line = onOneLine(text.substr(0, 8 * most));
  const bool whole = line.size() <= most && text.size() <= 8 * most;
  return whole ? line : line.substr(0, most) + u"...";
}

String inQuotes(std::u16string_view text) {
  return u"\"" + shortened(text) + u"\"";
}

String numberText(std::size_t number) {
  return String::fromLong(static_cast<std::int64_t>(number));
}

String counted(std::size_t number, const char16_t* one, const char16_t* many) {
  return numberText(number) + u" " + String(number == 1 ? one : many);
}

String padded(const String& text, std::size_t width) {
  return text.size() >= width ? text : text + String(String::Base(width - text.size(), u' '));
}

String tagTitle(const HTMLTag& tag) {
  return u"<" + nameAndAttributes(tag, 3) + u">";
}

String tagSummary(const HTMLTag& tag) {
  if (!tag.textView().empty())
    return tagTitle(tag) + u" " + inQuotes(tag.textView());
  const std::size_t inside = tag.numSubTags();
  return tagTitle(tag) +
         (inside == 0 ? String(u", empty") : u", " + counted(inside, u"tag", u"tags") + u" in it");
}

String placeOf(const HTMLTag& tag) {
  constexpr std::size_t MOST = 12;
  std::vector<const HTMLTag*> way;
  const HTMLTag* at = &tag;
  for (; at != nullptr && way.size() < MOST; at = at->parent())
    way.push_back(at);
  String place = at == nullptr ? u"" : u"... > ";
  for (auto step = way.rbegin(); step != way.rend(); ++step)
    place += (step == way.rbegin() ? u"" : u" > ") + nameAndAttributes(**step, 1);
  return place;
}

bool isWritableInXml(std::u16string_view text) {
  for (std::size_t i = 0; i < text.size();) {
    UChar32 character = 0;
    U16_NEXT(text.data(), i, text.size(), character);
    const bool isControl = character < 0x20 && character != 9 && character != 10 && character != 13;
    if (isControl || U_IS_SURROGATE(character) || character == 0xFFFE || character == 0xFFFF)
      return false;
  }
  return true;
}

} // namespace Tallymoor
