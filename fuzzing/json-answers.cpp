// Answers in JSON. The first byte selects the paths and the way of writing days and numbers; the rest is the
// answer. The values that the paths find must be those that a plain walk over the whole document finds.
#include "answers/AnswerChecks.h"
#include "pages/JsonPath.h"
#include "pages/JsonValues.h"
#include "support/Require.h"
#include <map>
#include <optional>
#include <rapidjson/document.h>
#include <string>
#include <vector>

namespace Tallymoor::Fuzz {
namespace {

/// The plain walk recurses to the depth of a path alone, but reading the document keeps all of it.
constexpr std::size_t LONGEST_COMPARED = 65536;

using Columns = std::vector<ColumnPlace>;
using Kind = JsonPath::Step::Kind;
using Value = rapidjson::Value;

const std::vector<Columns>& columns() {
  using Column = AnswerColumn;
  static const std::vector<Columns> all{
      {{Column::Date, u"$[*].date"},
       {Column::Close, u"$[*].close"},
       {Column::High, u"$[*].high"},
       {Column::Volume, u"$[*].volume"},
       {Column::Dividend, u"$[*].dividend"},
       {Column::Split, u"$[*].split"}},
      {{Column::Date, u"$.chart.result[0].timestamp"},
       {Column::Close, u"$.chart.result[0].indicators.quote[0].close"},
       {Column::Currency, u"$.chart.result[0].meta.currency"}},
      {{Column::Date, u"$['Time Series (Daily)']~"},
       {Column::Close, u"$['Time Series (Daily)'].*['4. close']"},
       {Column::Open, u"$['Time Series (Daily)'].*['1. open']"}},
      {{Column::Date, u"$[*][0]"}, {Column::Close, u"$[*][4]"}, {Column::Low, u"$[*][3]"}},
      {{Column::Date, u"$.values[*].d"}, {Column::Close, u"$.values[*].FX.v"}},
      {{Column::Close, u"$.price"}, {Column::Date, u"$.day"}, {Column::Currency, u"$.currency"}},
      {{Column::Code, u"$.data[*].symbol"},
       {Column::Name, u"$.data[*].name"},
       {Column::Market, u"$.data[*].exchange"}}};
  return all;
}

/// What a path finds, by place in its list.
using Found = std::map<std::size_t, std::string>;

std::string textOf(const Value& value) {
  return value.IsString() ? std::string(value.GetString(), value.GetStringLength())
         : value.IsTrue() ? "true"
                          : "false";
}

void keep(const Value& value, std::size_t place, Found& found) {
  if (!value.IsObject() && !value.IsArray() && !value.IsNull())
    found.insert_or_assign(place, textOf(value));
}

/// The end of a path: a value, the elements of a list, or the keys of an object.
void finish(const JsonPath& path, const Value& value, std::size_t place, Found& found) {
  std::size_t count = 0;
  if (path.namesKeys() && value.IsObject())
    for (const auto& member : value.GetObject())
      found.insert_or_assign(count++, textOf(member.name));
  else if (!path.namesKeys() && value.IsArray())
    for (const Value& element : value.GetArray())
      keep(element, count++, found);
  else if (!path.namesKeys())
    keep(value, place, found);
}

void walk(const JsonPath& path, std::size_t step, const Value& value, std::size_t place, Found& found) {
  if (step == path.steps().size())
    return finish(path, value, place, found);
  const JsonPath::Step& next = path.steps()[step];
  std::size_t count = 0;
  if (value.IsArray())
    for (const Value& element : value.GetArray()) {
      if (next.kind == Kind::Each || (next.kind == Kind::Element && next.index == count))
        walk(path, step + 1, element, next.kind == Kind::Each ? count : place, found);
      ++count;
    }
  if (value.IsObject())
    for (const auto& member : value.GetObject()) {
      if (next.kind == Kind::Each || (next.kind == Kind::Member && next.name == textOf(member.name)))
        walk(path, step + 1, member.value, next.kind == Kind::Each ? count : place, found);
      ++count;
    }
}

/// Objects with the same key twice are left out: they have no meaning that all readers share.
bool hasKeyTwice(const Value& value, std::size_t depth) {
  constexpr std::size_t DEEPEST = 100;
  if (depth > DEEPEST)
    return true;
  if (value.IsArray())
    for (const Value& element : value.GetArray())
      if (hasKeyTwice(element, depth + 1))
        return true;
  std::map<std::string, int> counts;
  if (value.IsObject())
    for (const auto& member : value.GetObject())
      if (++counts[textOf(member.name)] > 1 || hasKeyTwice(member.value, depth + 1))
        return true;
  return false;
}

void compareWithPlainWalk(std::string_view bytes, const Columns& columns) {
  constexpr std::string_view BYTE_ORDER_MARK = "\xEF\xBB\xBF";
  if (bytes.starts_with(BYTE_ORDER_MARK))
    bytes.remove_prefix(BYTE_ORDER_MARK.size());
  std::vector<JsonPath> paths;
  for (const ColumnPlace& column : columns)
    paths.emplace_back(column.place);
  std::vector<JsonValues> values;
  try {
    values = readJsonValues(bytes, paths);
  } catch (const AnswerException&) {
    return;
  }
  rapidjson::Document document;
  constexpr unsigned FLAGS = rapidjson::kParseIterativeFlag | rapidjson::kParseNumbersAsStringsFlag |
                             rapidjson::kParseValidateEncodingFlag;
  document.Parse<FLAGS>(bytes.data(), bytes.size());
  require(!document.HasParseError(), "what is read is JSON");
  if (hasKeyTwice(document, 0))
    return;
  for (std::size_t i = 0; i < paths.size(); ++i) {
    Found plain;
    walk(paths[i], 0, document, 0, plain);
    Found read;
    for (const auto& [place, text] : values[i].values)
      read.emplace(place, text.toUTF8());
    require(read == plain, "a path finds what a plain walk finds");
  }
}

void check(std::size_t choice, std::string_view bytes) {
  const Columns& chosen = columns()[choice % columns().size()];
  const std::vector<AnswerFormat> formats = formatsOf(AnswerReader::Json, chosen);
  checkAnswer(bytes, formats[choice / columns().size() % formats.size()], "\\");
  if (bytes.size() <= LONGEST_COMPARED)
    compareWithPlainWalk(bytes, chosen);
  checkProposal(bytes);
}

} // namespace
} // namespace Tallymoor::Fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace Tallymoor::Fuzz;
  const auto [choice, bytes] = AnswerInput(data, size);
  check(choice, bytes);
  return 0;
}
