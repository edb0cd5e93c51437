#pragma once
#include "pages/AnswerFormat.h"
#include <string_view>

namespace Tallymoor {

/// The rows of an answer by the reader that its format names. Throws AnswerException as they do.
AnswerTable readAnswerTable(std::string_view bytes, const AnswerFormat& format);

} // namespace Tallymoor
