#pragma once
#include "pages/AnswerFormat.h"
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace Tallymoor::Fuzz {

/// An input of the targets: its first byte chooses a format, the rest is an answer.
struct AnswerInput {
  AnswerInput(const std::uint8_t* data, std::size_t size);

  std::uint8_t choice;
  std::string_view bytes;
};

/// The readers' whole promise on an answer: it is read or refused by an AnswerException, all prices are
/// numbers above 0 on believable days, messages are short, and each text stands in the answer. The last is
/// checked unless the answer has signs by which a text may differ from the bytes.
void checkAnswer(std::string_view bytes, const AnswerFormat& format, std::string_view signsOfOtherTexts);

/// A proposal without doubts reads the answer that it was made from; answers to its doubts never fail.
void checkProposal(std::string_view bytes);

/// Formats with these columns in several ways of writing days and numbers.
std::vector<AnswerFormat> formatsOf(AnswerReader reader, const std::vector<ColumnPlace>& columns);

} // namespace Tallymoor::Fuzz
