#pragma once
#include "pages/AnswerFormat.h"
#include <string_view>

namespace Tallymoor {

/// The rows of a JSON answer: the columns' paths give lists that are put together by place. A path to a
/// single value gives it to all rows; when all paths do, there is one row. Rows where every list has null are
/// passed over and counted; so are rows that are arrays of another length than the first.
///
/// Throws AnswerException: with the source's own words where one of the error paths leads to a text; for an
/// answer that cannot be read; when lists differ in length, as in parallel arrays that do not belong
/// together; when no value stands at the path of the first column.
AnswerTable readJsonTable(std::string_view bytes, const AnswerFormat& format);

/// The texts at the error paths, joined by "; "; empty when there are none, or the bytes are no JSON.
String errorInJson(std::string_view bytes, const std::vector<String>& errorPaths);

} // namespace Tallymoor
