#pragma once
#include "foundation/Date.h"
#include "foundation/String.h"
#include <string_view>

namespace Tallymoor {

class PlainOutput;
class PriceSource;
struct SourceRequest;

// What the program reads from an answer, line by line.

/// A part of a source document that tells how one kind of answer is read.
enum class SourcePart { Current, History, Search };

/// Null if the source has no such part.
const SourceRequest* requestOf(const PriceSource& source, SourcePart part);

/// Shows what the program reads from the answer, or why it reads nothing. True if there is a price, or a
/// match of a search. Of a long table the first and last rows, unless all are wanted.
bool showAnswer(PlainOutput& out, std::string_view bytes, const SourceRequest& request, SourcePart part,
                bool allRows);

/// "2026-02-27".
String isoDay(const Date& day);

} // namespace Tallymoor
