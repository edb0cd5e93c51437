#include "pages/JsonPath.h"
#include "pages/AnswerTable.h"
#include <algorithm>
#include <charconv>
#include <string_view>

namespace Tallymoor {

namespace {

using Step = JsonPath::Step;

/// Reads the text of a path, step by step.
class PathReader {
public:
  explicit PathReader(const String& text) : m_source(text), m_text(text.toUTF8()), m_rest(m_text) {}

  std::vector<Step> steps() {
    if (!take("$"))
      fail(u"does not begin with \"$\"");
    std::vector<Step> steps;
    while (!m_rest.empty() && m_rest != "~")
      steps.push_back(step());
    const auto isEach = [](const Step& step) { return step.kind == Step::Kind::Each; };
    if (std::count_if(steps.begin(), steps.end(), isEach) > 1)
      fail(u"has more than one \"[*]\"");
    return steps;
  }
  bool endsWithKeys() const { return m_rest == "~"; }
  [[noreturn]] void fail(const char16_t* cause) const {
    throw AnswerException(AnswerException::Fault::Unreadable, u"JSON path " + m_source + u" " + cause);
  }

private:
  bool take(std::string_view head) {
    if (!m_rest.starts_with(head))
      return false;
    m_rest.remove_prefix(head.size());
    return true;
  }

  Step step() {
    if (take("[*]") || take(".*"))
      return {Step::Kind::Each, {}};
    if (take("['"))
      return quotedName("']");
    if (take("[\""))
      return quotedName("\"]");
    if (take("["))
      return index();
    if (take("."))
      return plainName();
    fail(u"has neither \".\" nor \"[\" where a step begins");
  }

  Step quotedName(std::string_view end) {
    const std::size_t length = m_rest.find(end);
    if (length == std::string_view::npos)
      fail(u"has a quoted name without an end");
    Step step{Step::Kind::Member, std::string(m_rest.substr(0, length))};
    m_rest.remove_prefix(length + end.size());
    return step;
  }

  Step index() {
    Step step{Step::Kind::Element, {}};
    const char* const end = m_rest.data() + m_rest.size();
    const auto [rest, error] = std::from_chars(m_rest.data(), end, step.index);
    if (error != std::errc() || rest == end || *rest != ']')
      fail(u"has no number between \"[\" and \"]\"");
    m_rest.remove_prefix(static_cast<std::size_t>(rest - m_rest.data()) + 1);
    return step;
  }

  Step plainName() {
    const std::size_t length = std::min(m_rest.find_first_of(".[~"), m_rest.size());
    if (length == 0)
      fail(u"has no name behind a \".\"");
    Step step{Step::Kind::Member, std::string(m_rest.substr(0, length))};
    m_rest.remove_prefix(length);
    return step;
  }

  const String& m_source;
  const std::string m_text;
  std::string_view m_rest;
};

} // namespace

JsonPath::JsonPath(const String& text) : m_text(text.trimmed()) {
  PathReader reader(m_text);
  m_steps = reader.steps();
  m_namesKeys = reader.endsWithKeys();
  if (m_namesKeys && hasEach())
    reader.fail(u"has both \"[*]\" and \"~\"");
}

bool JsonPath::hasEach() const {
  return std::any_of(m_steps.begin(), m_steps.end(),
                     [](const Step& step) { return step.kind == Step::Kind::Each; });
}

} // namespace Tallymoor
