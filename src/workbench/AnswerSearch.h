#pragma once
#include "foundation/String.h"
#include <vector>

namespace Tallymoor {

class PlainOutput;
class SavedAnswer;

// The commands find and table on answers in JSON and CSV. They throw AnswerException for an answer that can't
// be read.

/// Lists where a text, which is not blank, stands in the answer, and the columns in which it lies. True if it
/// is there.
bool findInAnswer(PlainOutput& out, const SavedAnswer& answer, const String& text);

/// Writes the columns of a source document that read the row in which all texts stand; each may name its
/// column, as "Close=10.5". True if there is one. Throws WorkbenchFailure if the columns of the texts are
/// unknown.
bool tableOfAnswer(PlainOutput& out, const SavedAnswer& answer, const std::vector<String>& texts);

} // namespace Tallymoor
