#pragma once
#include "foundation/String.h"
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace Tallymoor {

/// Names values of a JSON document: "$.chart.result[0].timestamp", "$.values[*].close", "$[*][4]",
/// "$['Time Series (Daily)']". "[*]" and ".*" stand for each element of an array or each member of an object,
/// at most once in a path. "~" at the end names the keys of an object instead of its values.
class JsonPath {
public:
  struct Step {
    enum class Kind : std::uint8_t { Member, Element, Each };
    Kind kind;
    std::string name;      ///< of a member, in UTF-8
    std::size_t index = 0; ///< of an element
  };

  /// Throws AnswerException, with the path and what is wrong with it.
  explicit JsonPath(const String& text);

  const String& text() const { return m_text; }
  const std::vector<Step>& steps() const { return m_steps; }
  bool namesKeys() const { return m_namesKeys; }
  /// True with a "[*]" or "~", or for a path to an array: it gives a list.
  bool hasEach() const;

private:
  String m_text;
  std::vector<Step> m_steps;
  bool m_namesKeys = false;
};

} // namespace Tallymoor
