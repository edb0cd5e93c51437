#include "pages/JsonValues.h"
#include "pages/AnswerForm.h"
#include <algorithm>
#include <cstdint>
#include <rapidjson/error/en.h>
#include <rapidjson/memorystream.h>
#include <rapidjson/reader.h>

namespace Tallymoor {

namespace {

using Fault = AnswerException::Fault;
using Mask = std::uint64_t; ///< a bit for each path

constexpr std::size_t MAX_PATHS = 64;

/// Follows all paths at once while the parser walks through the document.
class PathFollower : public rapidjson::BaseReaderHandler<rapidjson::UTF8<>, PathFollower> {
public:
  PathFollower(const std::vector<JsonPath>& paths, std::vector<JsonValues>& results, char decimalSign)
      : m_paths(paths), m_results(results), m_decimalSign(decimalSign), m_places(paths.size()) {
    m_root = paths.size() == MAX_PATHS ? ~Mask(0) : (Mask(1) << paths.size()) - 1;
    for (std::size_t i = 0; i < paths.size(); ++i)
      results[i].isList = paths[i].hasEach() || paths[i].namesKeys();
  }

  // The parser's events. A failure of a path is thrown through it.

  bool StartObject() { return open(false); }
  bool StartArray() { return open(true); }
  bool EndObject(rapidjson::SizeType) { return close(); }
  bool EndArray(rapidjson::SizeType) { return close(); }

  bool Key(const char* text, rapidjson::SizeType length, bool) {
    Container& object = m_containers.back();
    m_key.assign(text, length);
    if (object.complete != 0)
      forEachPath(object.complete, [&](std::size_t path) { keep(path, object.count, m_key); });
    return true;
  }
  bool String(const char* text, rapidjson::SizeType length, bool) { return value({text, length}); }
  bool RawNumber(const char* text, rapidjson::SizeType length, bool) {
    if (m_decimalSign == '.')
      return value({text, length});
    std::string number(text, length);
    std::replace(number.begin(), number.end(), '.', m_decimalSign);
    return value(number);
  }
  bool Bool(bool value) { return this->value(value ? "true" : "false"); }
  bool Null() {
    (void)enter();
    return true;
  }

private:
  /// An array or object whose end has not come yet.
  struct Container {
    bool isArray;
    Mask under;            ///< paths that lead to it or into it
    Mask complete;         ///< paths that end at it and list its elements or keys
    Mask taken = 0;        ///< paths whose name was found among its members
    std::size_t count = 0; ///< elements or members so far
  };

  template <typename Action>
  void forEachPath(Mask mask, Action action) const {
    for (std::size_t path = 0; path < m_paths.size(); ++path)
      if ((mask >> path & 1) != 0)
        action(path);
  }

  /// The paths that lead to the value that begins now. Counts it in its container.
  Mask enter() {
    if (m_containers.empty())
      return m_root;
    Container& container = m_containers.back();
    const std::size_t place = container.count++;
    if (container.under == 0)
      return 0;
    Mask mask = 0;
    const std::size_t depth = m_containers.size() - 1;
    forEachPath(container.under & ~container.complete, [&](std::size_t path) {
      const JsonPath::Step& step = m_paths[path].steps()[depth];
      if (step.kind == JsonPath::Step::Kind::Each)
        m_places[path] = place;
      if (leadsTo(step, container, place))
        mask |= Mask(1) << path;
      if (step.kind == JsonPath::Step::Kind::Member && ((mask & container.taken) >> path & 1) != 0)
        failForTwice(m_paths[path]);
    });
    container.taken |= mask;
    if (container.isArray) {
      forEachPath(container.complete, [&](std::size_t path) { m_places[path] = place; });
      mask |= container.complete;
    }
    return mask;
  }

  [[noreturn]] static void failForTwice(const JsonPath& path) {
    throw AnswerException(Fault::Unreadable, u"the answer holds two values of one name: " + path.text());
  }

  bool leadsTo(const JsonPath::Step& step, const Container& container, std::size_t place) const {
    switch (step.kind) {
    case JsonPath::Step::Kind::Each:
      return true;
    case JsonPath::Step::Kind::Element:
      return container.isArray && step.index == place;
    default:
      return !container.isArray && step.name == m_key;
    }
  }

  bool isAtEnd(std::size_t path, std::size_t depth) const { return m_paths[path].steps().size() <= depth; }

  bool open(bool isArray) {
    const Mask under = enter();
    const std::size_t depth = m_containers.size();
    Mask complete = 0;
    forEachPath(under, [&](std::size_t path) {
      if (!isAtEnd(path, depth))
        return;
      requireList(path, isArray);
      complete |= Mask(1) << path;
    });
    m_containers.push_back({isArray, under, complete});
    return true;
  }

  /// A path ends at an array or an object, which only some paths may.
  void requireList(std::size_t path, bool isArray) {
    const JsonPath& at = m_paths[path];
    JsonValues& result = m_results[path];
    if (at.namesKeys() && !isArray)
      return;
    if (isArray && !result.isList) {
      result.isList = true;
      return;
    }
    throw AnswerException(Fault::Unreadable, u"the answer holds " +
                                                 Tallymoor::String(isArray ? u"a list" : u"an object") +
                                                 u" where a value is expected: " + at.text());
  }

  bool close() {
    const Container container = m_containers.back();
    m_containers.pop_back();
    const std::size_t depth = m_containers.size();
    forEachPath(container.under, [&](std::size_t path) {
      noteInnerLength(path, depth, container);
      const bool lists = (container.complete >> path & 1) != 0 ||
                         m_paths[path].steps()[depth].kind == JsonPath::Step::Kind::Each;
      if (!lists)
        return;
      m_results[path].isThere = true;
      m_results[path].length = container.count;
    });
    return true;
  }

  void noteInnerLength(std::size_t path, std::size_t depth, const Container& container) {
    const std::vector<JsonPath::Step>& steps = m_paths[path].steps();
    if (container.isArray && depth > 0 && depth < steps.size() &&
        steps[depth].kind == JsonPath::Step::Kind::Element &&
        steps[depth - 1].kind == JsonPath::Step::Kind::Each)
      m_results[path].innerLengths[m_places[path]] = container.count;
  }

  bool value(std::string_view text) {
    const Mask mask = enter();
    if (mask == 0)
      return true;
    const std::size_t depth = m_containers.size();
    forEachPath(mask, [&](std::size_t path) {
      if (isAtEnd(path, depth) && !m_paths[path].namesKeys())
        keep(path, m_places[path], text);
    });
    return true;
  }

  void keep(std::size_t path, std::size_t place, std::string_view text) {
    m_results[path].isThere = true;
    m_results[path].values.insert_or_assign(place, Tallymoor::String::fromUTF8(text));
  }

  const std::vector<JsonPath>& m_paths;
  std::vector<JsonValues>& m_results;
  char m_decimalSign;
  Mask m_root;
  std::vector<std::size_t> m_places; ///< of each path, in its list
  std::vector<Container> m_containers;
  std::string m_key;
};

/// "line 3, column 14", for a place of the text.
String placeOf(std::string_view text, std::size_t offset) {
  const std::string_view before = text.substr(0, offset);
  const auto line = std::count(before.begin(), before.end(), '\n') + 1;
  const std::size_t lineStart = before.rfind('\n');
  const std::size_t column = lineStart == std::string_view::npos ? offset + 1 : offset - lineStart;
  return u"line " + String::fromLong(line) + u", column " +
         String::fromLong(static_cast<std::int64_t>(column));
}

} // namespace

std::optional<String> JsonValues::at(std::size_t place) const {
  const auto found = values.find(isList ? place : 0);
  return found == values.end() ? std::nullopt : std::optional(found->second);
}

std::vector<JsonValues> readJsonValues(std::string_view bytes, const std::vector<JsonPath>& paths,
                                       char decimalSign) {
  if (paths.size() > MAX_PATHS)
    throw AnswerException(Fault::Unreadable, u"more than 64 JSON paths");
  bytes = withoutByteOrderMark(bytes);
  std::vector<JsonValues> results(paths.size());
  PathFollower follower(paths, results, decimalSign);
  rapidjson::MemoryStream memory(bytes.data(), bytes.size());
  rapidjson::EncodedInputStream<rapidjson::UTF8<>, rapidjson::MemoryStream> stream(memory);
  rapidjson::Reader reader;
  constexpr unsigned FLAGS = rapidjson::kParseIterativeFlag | rapidjson::kParseNumbersAsStringsFlag |
                             rapidjson::kParseValidateEncodingFlag;
  const rapidjson::ParseResult result = reader.Parse<FLAGS>(stream, follower);
  if (result.IsError())
    throw AnswerException(Fault::Unreadable, u"the answer is not JSON: " +
                                                 String(rapidjson::GetParseError_En(result.Code())) + u" (" +
                                                 placeOf(bytes, result.Offset()) + u")");
  return results;
}

} // namespace Tallymoor
