#include "pages/AnswerPlaces.h"
#include "pages/AnswerForm.h"
#include "pages/CsvTable.h"
#include "pages/JsonValues.h"
#include "pages/KnownHeadings.h"
#include <algorithm>
#include <array>
#include <cstddef>
#include <rapidjson/document.h>

namespace Tallymoor {

namespace {

using Places = std::vector<AnswerPlace>;
using Value = rapidjson::Value;

constexpr unsigned MAX_DEPTH = 100;
constexpr std::size_t HEADING_ROWS = 50;

String number(std::size_t value) {
  return String::fromLong(static_cast<std::int64_t>(value));
}

String textOf(const Value& value) {
  if (value.IsBool())
    return value.GetBool() ? u"true" : u"false";
  return value.IsString() ? String::fromUTF8({value.GetString(), value.GetStringLength()}) : String();
}

/// Walks through a document with the steps to the present value.
class JsonWalk {
public:
  explicit JsonWalk(const Value& root) { visit(root); }
  Places places;

private:
  struct Step {
    String exact;
    std::size_t index; ///< in its array or object
    bool isElement;
    bool isKey; ///< of an object, with which other rows may differ
  };

  void visit(const Value& value) {
    if (m_steps.size() > MAX_DEPTH)
      return;
    std::size_t index = 0;
    if (value.IsArray())
      for (const Value& element : value.GetArray()) {
        m_steps.push_back({u"[" + number(index) + u"]", index, true, false});
        visit(element);
        m_steps.pop_back();
        ++index;
      }
    else if (value.IsObject())
      for (const auto& member : value.GetObject()) {
        const String name = textOf(member.name);
        noteKey(name, index);
        m_steps.push_back({stepTo(name), index, false, hasManyDigits(name)});
        visit(member.value);
        m_steps.pop_back();
        ++index;
      }
    else if (!value.IsNull())
      note(textOf(value));
  }

  static bool hasManyDigits(const String& name) {
    constexpr std::ptrdiff_t OF_A_DAY = 6;
    return std::count_if(name.begin(), name.end(),
                         [](char16_t unit) { return unit >= u'0' && unit <= u'9'; }) >= OF_A_DAY;
  }

  static String stepTo(const String& name) {
    const bool isPlain = !name.empty() && name.find_first_of(u".[]~'\" *") == String::npos;
    return isPlain ? u"." + name : u"['" + name + u"']";
  }

  /// The path with one step for all rows.
  String path(std::size_t general) const {
    String text = u"$";
    for (std::size_t i = 0; i < m_steps.size(); ++i)
      text += i != general ? m_steps[i].exact : m_steps[i].isElement ? String(u"[*]") : String(u".*");
    return text;
  }

  void note(const String& text) {
    const std::size_t before = places.size();
    const String where = path(m_steps.size());
    for (std::size_t i = m_steps.size(); i-- > 0;)
      if (m_steps[i].isElement || m_steps[i].isKey)
        places.push_back({text, where, path(i), m_steps[i].index});
    if (places.size() == before)
      places.push_back({text, where, where, 0});
  }

  void noteKey(const String& name, std::size_t index) {
    if (hasManyDigits(name))
      places.push_back({name, path(m_steps.size()) + stepTo(name), path(m_steps.size()) + u"~", index});
  }

  std::vector<Step> m_steps;
};

Places placesInJson(std::string_view bytes) {
  readJsonValues(bytes, {}); // throws unless it is JSON
  const std::string_view text = withoutByteOrderMark(bytes);
  rapidjson::Document document;
  constexpr unsigned FLAGS = rapidjson::kParseIterativeFlag | rapidjson::kParseNumbersAsStringsFlag;
  document.Parse<FLAGS>(text.data(), text.size());
  return JsonWalk(document).places;
}

/// The row of headings: the first that names a day; the number of rows without one.
std::size_t headingRow(const std::vector<std::vector<String>>& rows) {
  for (std::size_t i = 0; i < std::min(rows.size(), HEADING_ROWS); ++i)
    if (holds(knownColumns(rows[i]), AnswerColumn::Date))
      return i;
  return rows.size();
}

/// The one that divides the answer into most fields.
char separatorOf(std::string_view bytes) {
  constexpr std::array SEPARATORS{',', ';', '\t', '|'};
  char best = ',';
  std::size_t most = 0;
  for (const char separator : SEPARATORS) {
    std::size_t fields = 0;
    for (const auto& row : readCsvRows(bytes, separator))
      fields += row.size();
    if (fields > most) {
      most = fields;
      best = separator;
    }
  }
  return best;
}

Places placesInCsv(std::string_view bytes) {
  const AnswerFormat format = formatForPlaces(bytes);
  const auto rows = readCsvRows(withoutByteOrderMark(bytes), format.separator);
  const std::size_t heading = headingRow(rows);
  Places places;
  for (std::size_t row = 0; row < rows.size(); ++row)
    for (std::size_t i = 0; i < rows[row].size(); ++i) {
      const bool isHeaded = format.hasHeading && row > heading && i < rows[heading].size();
      places.push_back({rows[row][i], u"row " + number(row + 1) + u", field " + number(i + 1),
                        isHeaded ? rows[heading][i] : number(i + 1), row});
    }
  return places;
}

} // namespace

AnswerFormat formatForPlaces(std::string_view bytes) {
  AnswerFormat format;
  format.reader = seemingForm(bytes);
  requireForm(bytes, format);
  if (format.reader != AnswerReader::Csv)
    return format;
  const std::string_view text = withoutByteOrderMark(bytes);
  format.separator = separatorOf(text);
  const auto rows = readCsvRows(text, format.separator);
  format.hasHeading = headingRow(rows) < rows.size();
  return format;
}

std::vector<AnswerPlace> placesInAnswer(std::string_view bytes) {
  return seemingForm(bytes) == AnswerReader::Json ? placesInJson(bytes) : placesInCsv(bytes);
}

} // namespace Tallymoor
