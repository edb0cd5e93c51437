#include "market/CommandPrices.h"
#include "foundation/CommandOutput.h"
#include "foundation/Exception.h"
#include "market/AddressTemplate.h"
#include "market/AnswerText.h"
#include "market/HTTPClient.h"
#include "market/LastPrice.h"
#include "market/SourceFailure.h"

namespace Tallymoor {

namespace {

constexpr std::size_t MOST_OUTPUT = HTTPClient::PAGE_BODY_LIMIT;

String causeOf(const CommandOutput& output) {
  switch (output.end) {
  case CommandOutput::End::NotStarted:
    return u"the command could not be started: " + String(output.errors.c_str());
  case CommandOutput::End::OutOfTime:
    return u"the command did not end within its time";
  case CommandOutput::End::TooMuch:
    return u"the command wrote more than 10 MB";
  case CommandOutput::End::Stopped:
    return u"stopped";
  default:
    return u"the command failed with status " + String::fromLong(output.status) +
           (output.errors.empty() ? String() : u": " + String(output.errors.c_str()).trimmed());
  }
}

} // namespace

CommandPrices::CommandPrices(const String& name, const std::vector<String>& words, const CsvAnswers& answers,
                             std::chrono::milliseconds time)
    : m_name(name), m_words(words), m_answers(answers), m_time(time) {
  if (words.empty() || words.front().empty())
    throw Exception(u"The command of the source " + name + u" names no program");
  for (std::size_t i = 1; i < words.size(); ++i)
    const AddressTemplate checked(words[i]);
}

AnsweredHistory CommandPrices::history(const String& code, const HistoryRange& range,
                                       const std::stop_token& stop) const {
  AddressValues values;
  values.code = code;
  values.first = range.start;
  values.last = range.end;
  std::vector<std::string> words{m_words.front().toUTF8()};
  for (std::size_t i = 1; i < m_words.size(); ++i)
    words.push_back(AddressTemplate(m_words[i]).fillPlainly(values).toUTF8());
  const CommandOutput output = outputOfCommand(words, m_time, MOST_OUTPUT, stop);
  if (output.end != CommandOutput::End::Ended || output.status != 0)
    throw SourceException(SourceFault::Refused, causeOf(output));
  AnsweredHistory history = readCsv(utf8Of(output.text), m_answers);
  dropAfter(history, range.end);
  return history;
}

std::optional<AnsweredPrice> CommandPrices::currentPrice(const String& code,
                                                         const std::stop_token& stop) const {
  return lastPrice(history(code, recentDays(), stop));
}

void CommandPrices::search(const String&, bool, bool, std::vector<CodeSearchResult>&,
                           const std::stop_token&) const {
  throw SourceException(SourceFault::Refused, u"a command does not search");
}

} // namespace Tallymoor
