#include "pages/FormatProposal.h"
#include "pages/AnswerFigures.h"
#include "pages/AnswerForm.h"
#include <algorithm>

namespace Tallymoor {

namespace {

/// The column that stood at the new place of the close gets the old one: open and close change places.
void moveClose(AnswerFormat& format, const String& place) {
  const auto close =
      std::find_if(format.columns.begin(), format.columns.end(),
                   [](const ColumnPlace& column) { return column.column == AnswerColumn::Close; });
  if (close == format.columns.end())
    return;
  for (ColumnPlace& column : format.columns)
    if (column.place == place)
      column.place = close->place;
  close->place = place;
}

} // namespace

FormatProposal proposeFormat(std::string_view bytes) {
  switch (seemingForm(bytes)) {
  case AnswerReader::Json:
    return proposeJsonFormat(bytes);
  case AnswerReader::Headings:
    return proposePageFormat(bytes);
  default:
    return proposeCsvFormat(bytes);
  }
}

void settle(AnswerFormat& format, FormatDoubt::About about, const String& choice) {
  using About = FormatDoubt::About;
  if (about == About::DateOrder)
    format.datePattern = choice;
  else if (about == About::TimeZone)
    format.timeZone = choice;
  else if (about == About::CloseColumn)
    moveClose(format, choice);
  else if (choice == u"." || choice == u",")
    format.decimalSign = choice[0];
  else
    throw AnswerException(AnswerException::Fault::Unreadable, u"the decimal sign is neither \".\" nor \",\"");
  const AnswerFigures checked(format);
}

} // namespace Tallymoor
