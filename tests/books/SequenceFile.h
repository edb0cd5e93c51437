#pragma once
#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

namespace Tallymoor {

/// A line of a sequence: an operation or a query with its expected result.
struct SequenceStep {
  int line = 0;
  std::string text;
  std::vector<std::string> words;      ///< The operation and its arguments, without quotation marks.
  std::optional<std::string> expected; ///< The text after "->".
  std::string document;                ///< The lines below "document".
};

/// A case of data/sequences: operations on an empty portfolio on 3 March 2026.
struct Sequence {
  std::string name; ///< File and title in one word, for the test's name.
  std::string title;
  std::vector<SequenceStep> steps;
};

void PrintTo(const Sequence& sequence, std::ostream* out);

/// All cases of all files, in order of file name. Throws std::runtime_error for an unreadable file or a line
/// outside of a case.
std::vector<Sequence> readSequences(const std::string& folder);

} // namespace Tallymoor
