#pragma once
#include "foundation/Exception.h"
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace Tallymoor {

/// What a column of a source's answer holds.
enum class AnswerColumn : std::uint8_t {
  Date,
  Open,
  High,
  Low,
  Close,
  AdjustedClose,
  Volume,
  Currency,
  Code,
  Name,
  Market,
  Dividend,
  Split
};
inline constexpr std::size_t NUM_ANSWER_COLUMNS = static_cast<std::size_t>(AnswerColumn::Split) + 1;

/// A row of raw texts, as they stood in the answer.
struct AnswerRow {
  std::array<std::optional<String>, NUM_ANSWER_COLUMNS> texts; ///< empty where the answer has no value
  std::size_t place = 0;                                       ///< line or entry, from 1, for messages

  const std::optional<String>& operator[](AnswerColumn column) const {
    return texts[static_cast<std::size_t>(column)];
  }
  std::optional<String>& operator[](AnswerColumn column) { return texts[static_cast<std::size_t>(column)]; }
};

/// What every reader makes of an answer, whatever its form.
struct AnswerTable {
  std::vector<AnswerRow> rows;
  std::size_t passedOver = 0; ///< rows that lack what every row must have, such as the lines of a dividend
};

struct AnswerFormat;

/// Adds a row of a text or page to the table, or counts it as passed over: one without a digit in its day
/// where the format has a column of days, or without any text.
void takeRow(AnswerTable& table, AnswerRow row, const AnswerFormat& format);

/// A text of an answer for a message: in quotation marks, on one line, cut behind 100 characters.
String inMessage(const String& text);

/// An answer that its reader cannot use. The message names the place and the cause.
class AnswerException : public Exception {
public:
  enum class Fault : std::uint8_t {
    Unreadable,  ///< not of the form that is expected, or damaged
    SourceError, ///< an error that the source tells; the message holds the source's words
  };
  AnswerException(Fault fault, const String& message) : Exception(message), m_fault(fault) {}
  void typeName(String& text) const override;
  Fault fault() const { return m_fault; }

private:
  Fault m_fault;
};

} // namespace Tallymoor
