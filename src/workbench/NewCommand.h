#pragma once
#include "workbench/CheckCommand.h"
#include "workbench/DoubtQuestions.h"
#include "workbench/SourceXml.h"

namespace Tallymoor {

class SavedAnswer;

/// Looks at an answer and proposes a whole source document for it.
class NewCommand {
public:
  struct Options {
    std::string from; ///< an address or a file
    NewSource source; ///< of its address the one of a file's answer, if that is known
    String key;       ///< the user's, which stands in the address
    DoubtQuestions::Answers answers;
    std::string saveTo;     ///< file for the fetched answer; empty to keep none
    std::string documentTo; ///< file for the document; empty to show it
    bool ask = false;
  };

  /// The input is not owned; it is read only when the user is asked.
  NewCommand(PlainOutput& out, Options options, CheckCommand::ClientFactory makeClient, std::istream* input);

  /// True if a document was proposed and reads the answer. Throws WorkbenchFailure.
  bool run();

private:
  SavedAnswer answer() const;
  bool propose(const SavedAnswer& answer);
  void complete(const FormatProposal& proposal);
  void showHelpForPage() const;
  void showNotes(const FormatProposal& proposal) const;

  PlainOutput& m_out;
  Options m_options;
  const CheckCommand::ClientFactory m_makeClient;
  std::istream* m_input;
};

} // namespace Tallymoor
