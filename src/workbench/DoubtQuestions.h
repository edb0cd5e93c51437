#pragma once
#include "pages/FormatProposal.h"
#include <iosfwd>
#include <map>

namespace Tallymoor {

class PlainOutput;

/// Puts what an answer leaves open to the user. What no option answers is asked on a terminal, and otherwise
/// printed with the options that would answer it.
class DoubtQuestions {
public:
  /// Answers of the command line.
  using Answers = std::map<FormatDoubt::About, String>;

  /// The stream is not owned; null to ask nothing.
  DoubtQuestions(PlainOutput& out, const Answers& answers, std::istream* input)
      : m_out(out), m_answers(answers), m_input(input) {}

  /// Puts all answers into the format. False when a doubt has none. Throws WorkbenchFailure for an answer
  /// that means nothing.
  bool settleAll(FormatProposal& proposal) const;

  /// The option that answers a doubt: "--dates".
  static const char* optionOf(FormatDoubt::About about);

private:
  void showQuestion(const FormatProposal& proposal, const FormatDoubt& doubt) const;
  bool ask(FormatProposal& proposal, const FormatDoubt& doubt) const;
  void showOptions(const FormatDoubt& doubt) const;

  PlainOutput& m_out;
  const Answers& m_answers;
  std::istream* m_input;
};

} // namespace Tallymoor
