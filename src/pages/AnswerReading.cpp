#include "pages/AnswerReading.h"
#include "pages/CsvTable.h"
#include "pages/HeadingsTable.h"
#include "pages/JsonTable.h"

namespace Tallymoor {

AnswerTable readAnswerTable(std::string_view bytes, const AnswerFormat& format) {
  switch (format.reader) {
  case AnswerReader::Json:
    return readJsonTable(bytes, format);
  case AnswerReader::Csv:
    return readCsvTable(bytes, format);
  case AnswerReader::Headings:
    return readHeadingsTable(bytes, format);
  default:
    throw AnswerException(AnswerException::Fault::Unreadable, u"no reader for this answer");
  }
}

} // namespace Tallymoor
