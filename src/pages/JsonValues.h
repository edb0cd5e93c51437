#pragma once
#include "foundation/String.h"
#include "pages/JsonPath.h"
#include <cstddef>
#include <map>
#include <optional>
#include <string_view>
#include <vector>

namespace Tallymoor {

/// What one path found in a JSON document.
struct JsonValues {
  bool isList = false;    ///< the path has a "[*]" or "~", or leads to an array
  bool isThere = false;   ///< the value, or the list, stands in the document
  std::size_t length = 0; ///< of the list
  std::map<std::size_t, String>
      values; ///< by place in the list, from 0; null and missing values are left out
  /// For a path to an element of the arrays in a list, as "$[*][4]": the lengths of these arrays by place.
  std::map<std::size_t, std::size_t> innerLengths;

  /// The value at a place of the list; that of a path to a single value is the same at all places.
  std::optional<String> at(std::size_t place) const;
};

/// The values at the paths, in their order. Numbers are the text as it stands in the document, so "12.3400"
/// keeps its zeros; with another decimal sign than the point, numbers of the document (but not its strings)
/// get that sign. A byte order mark is passed over. Reads in one pass with no recursion, so nesting and size
/// cost memory in proportion only.
///
/// Throws AnswerException for bytes that are no JSON document in UTF-8, with the line and column, and where a
/// path leads to an object, to a list inside a list, or to two members of one name. No more than 64 paths.
std::vector<JsonValues> readJsonValues(std::string_view bytes, const std::vector<JsonPath>& paths,
                                       char decimalSign = '.');

} // namespace Tallymoor
