#pragma once
#include "workbench/AnswerShow.h"
#include "workbench/CheckCommand.h"

namespace Tallymoor {

class SavedAnswer;
struct AddressValues;

/// Tries a document of a price source on an answer and shows what the program would read.
class SourceCheck {
public:
  /// The options must outlive this object.
  SourceCheck(PlainOutput& out, const CheckCommand::Options& options, CheckCommand::ClientFactory makeClient)
      : m_out(out), m_options(options), m_makeClient(std::move(makeClient)) {}

  /// True if the program could read what it needs from the answer, or, without one, if the document is valid.
  /// Throws WorkbenchFailure.
  bool run() const;

private:
  PriceSource document() const;
  SourcePart partOf(const PriceSource& source) const;
  AddressValues addressValues() const;
  SavedAnswer fetched(const SourceRequest& request) const;

  PlainOutput& m_out;
  const CheckCommand::Options& m_options;
  const CheckCommand::ClientFactory m_makeClient;
};

} // namespace Tallymoor
