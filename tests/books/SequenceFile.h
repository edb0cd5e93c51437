#pragma once
#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

namespace Tallymoor {

/// One line of a sequence: an operation or a question, and what it must give.
struct SequenceStep {
  int line = 0;
  std::string text;
  std::vector<std::string> words;      ///< the operation and its arguments, without quotation marks
  std::optional<std::string> expected; ///< what stands behind "->"
  std::string document;                ///< the lines below "document", each on a line of its own
};

/// A case of data/sequences: what is done to an empty portfolio on 3 March 2026, line by line.
struct Sequence {
  std::string name; ///< the file and the title in one word, for the name of the test
  std::string title;
  std::vector<SequenceStep> steps;
};

void PrintTo(const Sequence& sequence, std::ostream* out);

/// All cases of all files, files in the order of their names. Throws std::runtime_error for a file that can't
/// be read or a line outside any case.
std::vector<Sequence> readSequences(const std::string& folder);

} // namespace Tallymoor
