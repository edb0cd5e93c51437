#include "market/CsvFile.h"
#include "foundation/Exception.h"
#include "market/AnswerText.h"
#include "market/HTTPClient.h"
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <utility>

namespace Tallymoor {

namespace {

/// Takes the user's answer into the format. True if there is one for this doubt.
bool isAnswered(const FormatDoubt& doubt, const CsvAnswers& answers, AnswerFormat& format) {
  const auto answer = answers.find(doubt.about);
  if (answer == answers.end())
    return false;
  const bool isChoice =
      std::find(doubt.choices.begin(), doubt.choices.end(), answer->second) != doubt.choices.end();
  if (!isChoice && doubt.about != FormatDoubt::About::TimeZone)
    return false;
  settle(format, doubt.about, answer->second);
  return true;
}

} // namespace

FormatProposal csvFormat(std::string_view bytes, const CsvAnswers& answers) {
  FormatProposal proposal = proposeCsvFormat(bytes);
  std::erase_if(proposal.doubts,
                [&](const FormatDoubt& doubt) { return isAnswered(doubt, answers, proposal.format); });
  return proposal;
}

String questionOf(const FormatDoubt& doubt) {
  String choices;
  for (const String& choice : doubt.choices)
    choices += (choices.empty() ? String() : String(u" or ")) + u"\"" + choice + u"\"";
  switch (doubt.about) {
  case FormatDoubt::About::DateOrder:
    return u"Is the day " + doubt.example + u" written as " + choices + u"?";
  case FormatDoubt::About::DecimalSign:
    return u"Is the decimal sign of " + doubt.example + u" " + choices + u"?";
  case FormatDoubt::About::TimeZone:
    return u"In which time zone is " + doubt.example + u" a day, " + choices + u" or another?";
  default:
    return u"Which column holds the close, " + choices + u", as in " + doubt.example + u"?";
  }
}

OpenFormatException::OpenFormatException(std::vector<FormatDoubt> doubts)
    : AnswerException(Fault::Unreadable, questionOf(doubts.front())), m_doubts(std::move(doubts)) {}

AnsweredHistory readCsv(std::string_view bytes, const CsvAnswers& answers) {
  const FormatProposal proposal = csvFormat(bytes, answers);
  if (!proposal.doubts.empty())
    throw OpenFormatException(proposal.doubts);
  if (!proposal.isHistory)
    throw AnswerException(AnswerException::Fault::Unreadable, u"it has no days");
  return readHistory(bytes, proposal.format);
}

std::string csvBytes(const std::string& path) {
  std::error_code failure;
  const std::uintmax_t size = std::filesystem::file_size(path, failure);
  if (failure)
    throw Exception(String(path.c_str()) + u": " + String(failure.message().c_str()));
  if (size > HTTPClient::PAGE_BODY_LIMIT)
    throw Exception(String(path.c_str()) + u": it has more than 10 MB");
  std::ifstream file(path, std::ios::binary);
  const std::string bytes{std::istreambuf_iterator<char>(file), {}};
  if (!file)
    throw Exception(String(path.c_str()) + u": it can't be read");
  return utf8Of(bytes);
}

} // namespace Tallymoor
