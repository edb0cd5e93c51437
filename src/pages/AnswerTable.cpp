#include "pages/AnswerTable.h"
#include "pages/AnswerFormat.h"
#include "pages/PageFigure.h"
#include <algorithm>

namespace Tallymoor {

void AnswerException::typeName(String& text) const {
  text = u"AnswerException";
}

String inMessage(const String& text) {
  constexpr std::size_t MOST_UNITS = 100;
  constexpr char16_t FIRST_VISIBLE = u' ';
  String shown = text.substr(0, MOST_UNITS).trimmed();
  std::replace_if(
      shown.begin(), shown.end(), [](char16_t unit) { return unit < FIRST_VISIBLE; }, u' ');
  return u"\"" + shown + (text.size() > MOST_UNITS ? u"...\"" : u"\"");
}

void takeRow(AnswerTable& table, AnswerRow row, const AnswerFormat& format) {
  const auto isDate = [](const ColumnPlace& column) { return column.column == AnswerColumn::Date; };
  const bool needsDay = std::any_of(format.columns.begin(), format.columns.end(), isDate);
  const std::optional<String>& day = row[AnswerColumn::Date];
  const auto isThere = [](const std::optional<String>& text) { return text.has_value(); };
  if (needsDay ? day && holdsDigits(*day) : std::any_of(row.texts.begin(), row.texts.end(), isThere))
    table.rows.push_back(std::move(row));
  else
    ++table.passedOver;
}

} // namespace Tallymoor
