#pragma once
#include "pages/AnswerFormat.h"
#include <string_view>

namespace Tallymoor {

// What came back may be anything: a consent page, a robot check, a plain sentence, half of a file. These say
// so before a reader looks for columns.

/// The bytes without a byte order mark.
std::string_view withoutByteOrderMark(std::string_view bytes);

/// Throws AnswerException when the bytes are plainly of another form than the reader expects, with what came
/// instead: the title of a web page, the first words of a text. An error object in JSON is told in the
/// source's words where the format names its path, whatever the reader.
void requireForm(std::string_view bytes, const AnswerFormat& format);

/// What a web page or XML document is and calls itself, for messages: "a web page, "Before you continue",".
String describedPage(std::string_view bytes);

/// The form in which the bytes seem to be written; the form of CSV is any text that is neither a page nor
/// JSON.
AnswerReader seemingForm(std::string_view bytes);

} // namespace Tallymoor
