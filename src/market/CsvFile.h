#pragma once
#include "market/SourceAnswer.h"
#include "pages/AnswerTable.h"
#include "pages/FormatProposal.h"
#include <map>
#include <string>
#include <vector>

namespace Tallymoor {

/// The user's answers to what the texts of a CSV file leave open.
using CsvAnswers = std::map<FormatDoubt::About, String>;

/// A file's format by its texts and these answers. The doubts that are left are those without an answer that
/// is one of their choices.
FormatProposal csvFormat(std::string_view bytes, const CsvAnswers& answers);

/// A CSV text leaves something open. The message is the first question.
class OpenFormatException : public AnswerException {
public:
  explicit OpenFormatException(std::vector<FormatDoubt> doubts);
  const std::vector<FormatDoubt>& doubts() const { return m_doubts; }

private:
  std::vector<FormatDoubt> m_doubts;
};

/// The prices of a CSV text in UTF-8. Throws AnswerException, for doubts that are left OpenFormatException.
AnsweredHistory readCsv(std::string_view bytes, const CsvAnswers& answers);

/// The question that a doubt puts, as "Is 03/04/2026 in the order dd/MM/yyyy or MM/dd/yyyy?"
String questionOf(const FormatDoubt& doubt);

/// The bytes of a file as UTF-8. Throws Exception, also for more than 10 MB.
std::string csvBytes(const std::string& path);

} // namespace Tallymoor
