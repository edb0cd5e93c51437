#include "pages/AnswerForm.h"
#include "pages/FormatProposal.h"
#include "pages/JsonPath.h"
#include "pages/JsonValues.h"
#include "pages/KnownHeadings.h"
#include "pages/TextReadings.h"
#include <algorithm>
#include <map>
#include <memory>
#include <rapidjson/document.h>
#include <unicode/timezone.h>
#include <utility>

namespace Tallymoor {

namespace {

using Column = AnswerColumn;
using Fault = AnswerException::Fault;
using Value = rapidjson::Value;

constexpr unsigned MAX_DEPTH = 10;
constexpr std::size_t LOOKED_AT = 50;   ///< elements of an array, members of an object
constexpr std::size_t MAX_COLUMNS = 60; ///< of one candidate

/// A value, or a list of them, that a path leads to.
struct Leaf {
  String path;
  String name; ///< of the member; empty in arrays of arrays
  String text; ///< of the first value
};

/// Values that belong together: the columns of one table, or the members of one object.
struct Candidate {
  std::vector<Leaf> leaves;
  bool isList = true;
};

bool isScalar(const Value& value) {
  return !value.IsObject() && !value.IsArray();
}

String textOf(const Value& value) {
  return value.IsString() ? String::fromUTF8({value.GetString(), value.GetStringLength()}) : String();
}

/// ".name", or "['a name']" for one that is not plain.
String stepTo(const String& name) {
  const bool isPlain = !name.empty() && name.find_first_of(u".[]~'\" *") == String::npos;
  return isPlain ? u"." + name : u"['" + name + u"']";
}

bool seemsDay(const String& text) {
  FormatProposal tried;
  return settleDays({text}, tried);
}

/// Collects what may be a table or a price in a document.
class Search {
public:
  explicit Search(const Value& root) {
    visit(root, u"$", 0);
    joinParallelArrays();
  }

  std::vector<Candidate> candidates;
  String timeZone; ///< the one IANA name among the texts

private:
  struct ScalarArray {
    Leaf leaf;
    std::size_t length;
  };

  void visit(const Value& value, const String& path, unsigned depth) {
    if (depth > MAX_DEPTH)
      return;
    if (value.IsArray())
      visitArray(value, path, depth);
    else if (value.IsObject())
      visitObject(value, path, depth);
    else
      noteTimeZone(textOf(value));
  }

  void visitObject(const Value& object, const String& path, unsigned depth) {
    if (isKeyedByDay(object))
      return addKeyed(object, path);
    if (!m_isInRow) {
      Candidate single;
      single.isList = false;
      addMembers(object, path, single.leaves, 1);
      candidates.push_back(std::move(single));
    }
    std::size_t count = 0;
    for (const auto& member : object.GetObject())
      if (count++ < LOOKED_AT)
        visit(member.value, path + stepTo(textOf(member.name)), depth + 1);
  }

  void visitArray(const Value& array, const String& path, unsigned depth) {
    if (array.Empty())
      return;
    const Value& first = array[0];
    if (isScalar(first)) {
      const std::size_t dot = path.rfind(u'.');
      const Value* const text = firstText(array);
      m_arrays.push_back({{path, dot == String::npos ? String() : path.substr(dot + 1),
                           text == nullptr ? String() : textOf(*text)},
                          array.Size()});
      return;
    }
    Candidate table;
    if (first.IsObject())
      for (rapidjson::SizeType i = 0; i < std::min<std::size_t>(array.Size(), LOOKED_AT); ++i)
        addMembers(array[i], path + u"[*]", table.leaves, 3);
    else
      for (rapidjson::SizeType i = 0; i < first.Size(); ++i)
        add(table.leaves, {path + u"[*][" + String::fromLong(i) + u"]", {}, textOf(first[i])});
    candidates.push_back(std::move(table));
    const bool wasInRow = std::exchange(m_isInRow, m_isInRow || array.Size() > 1);
    visit(first, path + u"[0]", depth + 1);
    m_isInRow = wasInRow;
  }

  static const Value* firstText(const Value& array) {
    for (const Value& value : array.GetArray())
      if (value.IsString())
        return &value;
    return nullptr;
  }

  static bool isKeyedByDay(const Value& object) {
    std::size_t count = 0;
    for (const auto& member : object.GetObject())
      if (count++ < LOOKED_AT && !seemsDay(textOf(member.name)))
        return false;
    return count > 0;
  }

  void addKeyed(const Value& object, const String& path) {
    Candidate table;
    const auto first = object.MemberBegin();
    table.leaves.push_back({path + u"~", u"date", textOf(first->name)});
    if (isScalar(first->value))
      table.leaves.push_back({path + u".*", u"close", textOf(first->value)});
    else if (first->value.IsObject())
      addMembers(first->value, path + u".*", table.leaves, 3);
    else
      for (rapidjson::SizeType i = 0; i < first->value.Size(); ++i)
        add(table.leaves, {path + u".*[" + String::fromLong(i) + u"]", {}, textOf(first->value[i])});
    candidates.push_back(std::move(table));
  }

  /// The scalar members of an object and, down to so many levels, of those in it.
  static void addMembers(const Value& object, const String& path, std::vector<Leaf>& leaves,
                         unsigned levels) {
    if (!object.IsObject())
      return;
    std::size_t count = 0;
    for (const auto& member : object.GetObject()) {
      if (count++ >= LOOKED_AT)
        return;
      const String name = textOf(member.name);
      if (isScalar(member.value))
        add(leaves, {path + stepTo(name), name, textOf(member.value)});
      else if (levels > 1)
        addMembers(member.value, path + stepTo(name), leaves, levels - 1);
    }
  }

  static void add(std::vector<Leaf>& leaves, Leaf leaf) {
    const bool isKnown = std::any_of(leaves.begin(), leaves.end(),
                                     [&leaf](const Leaf& other) { return other.path == leaf.path; });
    if (!isKnown && leaves.size() < MAX_COLUMNS)
      leaves.push_back(std::move(leaf));
  }

  /// Arrays of the same length as one of days.
  void joinParallelArrays() {
    for (const ScalarArray& days : m_arrays) {
      if (!seemsDay(days.leaf.text))
        continue;
      Candidate table;
      for (const ScalarArray& array : m_arrays)
        if (array.length == days.length && table.leaves.size() < MAX_COLUMNS)
          table.leaves.push_back(array.leaf);
      candidates.push_back(std::move(table));
    }
  }

  void noteTimeZone(const String& text) {
    if (!text.contains(u"/") || text.size() > 40)
      return;
    const std::unique_ptr<icu::TimeZone> zone(
        icu::TimeZone::createTimeZone(icu::UnicodeString(text.data(), static_cast<int32_t>(text.size()))));
    if (*zone != icu::TimeZone::getUnknown())
      timeZone = text;
  }

  std::vector<ScalarArray> m_arrays;
  bool m_isInRow = false; ///< inside an array of several: a price there is that of a row
};

/// One letter, as some services name their columns.
void addLetters(const std::vector<Leaf>& leaves, std::vector<ColumnPlace>& columns) {
  struct Letter {
    Column column;
    std::u16string_view name;
  };
  // "v" is the volume beside a close, and otherwise a value.
  for (const Letter& letter :
       {Letter{Column::Date, u"t"}, Letter{Column::Date, u"d"}, Letter{Column::Close, u"c"},
        Letter{Column::Close, u"v"}, Letter{Column::Open, u"o"}, Letter{Column::High, u"h"},
        Letter{Column::Low, u"l"}, Letter{Column::Volume, u"v"}})
    for (const Leaf& leaf : leaves) {
      const bool isTaken = std::any_of(columns.begin(), columns.end(), [&leaf](const ColumnPlace& column) {
        return column.place == leaf.path;
      });
      if (std::u16string_view(leaf.name) == letter.name && !isTaken && !holds(columns, letter.column))
        columns.push_back({letter.column, leaf.path});
    }
}

/// The leaves that are columns by their names.
std::vector<ColumnPlace> namedColumns(const std::vector<Leaf>& leaves) {
  std::vector<String> names;
  std::transform(leaves.begin(), leaves.end(), std::back_inserter(names),
                 [](const Leaf& leaf) { return leaf.name; });
  std::vector<ColumnPlace> columns = knownColumns(names);
  for (ColumnPlace& column : columns)
    column.place = std::find_if(leaves.begin(), leaves.end(), [&column](const Leaf& leaf) {
                     return leaf.name == column.place;
                   })->path;
  addLetters(leaves, columns);
  // What is named as a day need not be one: the time of day, a count of trades.
  std::erase_if(columns, [&leaves](const ColumnPlace& column) {
    const auto leaf = std::find_if(leaves.begin(), leaves.end(),
                                   [&column](const Leaf& each) { return each.path == column.place; });
    return column.column == Column::Date && !seemsDay(leaf->text);
  });
  return columns;
}

/// By what the columns hold, for arrays without names.
bool settleByContent(std::string_view bytes, const Candidate& candidate, FormatProposal& proposal) {
  std::vector<JsonPath> paths;
  for (const Leaf& leaf : candidate.leaves)
    paths.emplace_back(leaf.path);
  std::vector<NamelessColumn> columns;
  const std::vector<JsonValues> found = readJsonValues(bytes, paths);
  for (std::size_t i = 0; i < found.size(); ++i) {
    columns.push_back({candidate.leaves[i].path, {}});
    for (const auto& [place, text] : found[i].values)
      columns.back().texts.push_back(text);
  }
  return settleColumns(columns, proposal);
}

/// Reads the whole table; false where that fails.
bool settlesTexts(std::string_view bytes, FormatProposal& proposal) {
  try {
    settleTexts(bytes, proposal);
    return true;
  } catch (const AnswerException&) {
    return false;
  }
}

/// A proposal for the columns by their names, or by what they hold; false without days and prices.
bool settleCandidate(std::string_view bytes, const Candidate& candidate, FormatProposal& proposal) {
  proposal.isHistory = candidate.isList;
  proposal.format.columns = namedColumns(candidate.leaves);
  const bool hasClose = holds(proposal.format.columns, Column::Close);
  if (hasClose && (!candidate.isList || holds(proposal.format.columns, Column::Date)))
    return settlesTexts(bytes, proposal);
  if (!candidate.isList)
    return false;
  proposal.format.columns.clear();
  try {
    return settleByContent(bytes, candidate, proposal) && settlesTexts(bytes, proposal);
  } catch (const AnswerException&) {
    return false; // values of other kinds at the same place
  }
}

bool isBetter(const FormatProposal& some, const FormatProposal& other) {
  if (some.isHistory != other.isHistory)
    return some.isHistory;
  return some.format.columns.size() > other.format.columns.size();
}

} // namespace

FormatProposal proposeJsonFormat(std::string_view bytes) {
  FormatProposal blank;
  blank.format.reader = AnswerReader::Json;
  requireForm(bytes, blank.format);
  rapidjson::Document document;
  const std::string_view text = withoutByteOrderMark(bytes);
  constexpr unsigned FLAGS = rapidjson::kParseIterativeFlag | rapidjson::kParseNumbersAsStringsFlag;
  document.Parse<FLAGS>(text.data(), text.size());
  if (document.HasParseError())
    readJsonValues(bytes, {}); // throws, with the place
  const Search search(document);
  blank.format.timeZone = search.timeZone;
  std::optional<FormatProposal> best;
  for (const Candidate& candidate : search.candidates)
    if (FormatProposal tried = blank;
        settleCandidate(bytes, candidate, tried) && (!best || isBetter(tried, *best)))
      best = std::move(tried);
  if (!best)
    throw AnswerException(Fault::Unreadable,
                          u"nothing in the answer looks like prices: " + inMessage(String::fromUTF8(text)));
  return *best;
}

} // namespace Tallymoor
