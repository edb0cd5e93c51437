#include "answers/AnswerChecks.h"
#include "market/SourceAnswer.h"
#include "pages/AnswerReading.h"
#include "pages/FormatProposal.h"
#include "support/Input.h"
#include "support/Require.h"
#include <cmath>
#include <optional>
#include <string>

namespace Tallymoor::Fuzz {

AnswerInput::AnswerInput(const std::uint8_t* data, std::size_t size) {
  Input input(data, size);
  choice = input.byte();
  bytes = input.rest();
}

namespace {

constexpr std::size_t LONGEST_MESSAGE = 1000;
constexpr std::size_t LONGEST_PROPOSED = 4096; // a proposal tries many ways of reading

/// False for an answer that is refused.
template <class Work>
bool isDone(const Work& work) {
  try {
    work();
    return true;
  } catch (const AnswerException& failure) {
    require(!failure.message().empty() && failure.message().size() < LONGEST_MESSAGE,
            "a failure is told in a message that can be read");
    return false;
  }
}

bool isPrice(double value) {
  return std::isfinite(value) && value > 0.0;
}

bool isPriceOrUnknown(double value) {
  return value == 0.0 || isPrice(value);
}

void checkHistory(const AnsweredHistory& history) {
  for (const auto& [day, value] : history.prices) {
    require(isPrice(value.close) && isPriceOrUnknown(value.high) && isPriceOrUnknown(value.low) &&
                value.volume >= 0,
            "prices are numbers above 0");
    require(day.year() >= 1900 && day <= Date::realToday().plusDays(1), "a price has a believable day");
  }
  for (const auto& [day, dividend] : history.dividends)
    require(isPrice(dividend), "a dividend is a number above 0");
  for (const auto& [day, split] : history.splits)
    require(isPrice(split) && split != 1.0, "a split changes the number of shares");
}

/// Texts may have lost white space at their ends, and runs of it inside.
void checkTexts(const AnswerTable& table, std::string_view bytes) {
  const String answer = String::fromUTF8(bytes);
  if (answer.toUTF8() != bytes) // read as Latin-1 as a whole, but perhaps not each text of it
    return;
  for (const AnswerRow& row : table.rows)
    for (const std::optional<String>& text : row.texts)
      if (text && text->find_first_of(u" \n\u00A0") == String::npos)
        require(answer.contains(*text), "a text of a row stands in the answer");
}

} // namespace

void checkAnswer(std::string_view bytes, const AnswerFormat& format, std::string_view signsOfOtherTexts) {
  std::optional<AnswerTable> table;
  const bool isRead = isDone([&] { table = readAnswerTable(bytes, format); });
  // Numbers of JSON get the decimal sign of the format.
  const bool isVerbatim = format.reader != AnswerReader::Json || format.decimalSign == u'.';
  if (table && isVerbatim && bytes.find_first_of(signsOfOtherTexts) == std::string_view::npos)
    checkTexts(*table, bytes);
  std::optional<AnsweredHistory> history;
  isDone([&] { history = readHistory(bytes, format); });
  require(isRead || !history, "nothing is taken of an answer that can't be read");
  if (history)
    checkHistory(*history);
  isDone([&] {
    const std::optional<AnsweredPrice> price = readPrice(bytes, format);
    require(!price || isPrice(price->price), "a price is a number above 0");
  });
  isDone([&] {
    for (const CodeSearchResult& result : readSearch(bytes, format))
      require(!result.code.empty(), "what a search found has a code");
  });
}

void checkProposal(std::string_view bytes) {
  FormatProposal proposal;
  if (bytes.size() > LONGEST_PROPOSED || !isDone([&] { proposal = proposeFormat(bytes); }))
    return;
  for (const FormatDoubt& doubt : proposal.doubts) {
    require(doubt.choices.size() > 1, "a doubt has several choices");
    for (const String& choice : doubt.choices) {
      AnswerFormat format = proposal.format;
      require(isDone([&] { settle(format, doubt.about, choice); }), "each choice of a doubt can be taken");
      isDone([&] { checkHistory(readHistory(bytes, format)); });
    }
  }
  require(isDone([&] { readAnswerTable(bytes, proposal.format); }), "a proposed format reads its answer");
}

std::vector<AnswerFormat> formatsOf(AnswerReader reader, const std::vector<ColumnPlace>& columns) {
  AnswerFormat plain;
  plain.reader = reader;
  plain.columns = columns;
  plain.errorPaths = {u"$.message", u"$.error.message"};
  AnswerFormat european = plain;
  european.datePattern = u"dd.MM.yyyy";
  european.decimalSign = u',';
  european.separator = ';';
  european.factor = 0.01;
  AnswerFormat moments = plain;
  moments.datePattern = String::Base(EPOCH_SECONDS);
  moments.timeZone = u"Australia/Sydney";
  AnswerFormat rates = plain;
  rates.datePattern = u"yyyy-MM-dd'T'HH:mm:ssXXX";
  rates.timeZone = u"America/New_York";
  rates.invert = true;
  return {plain, european, moments, rates};
}

} // namespace Tallymoor::Fuzz
