#include "widgets/CellResult.h"
#include "foundation/Amounts.h"
#include "foundation/Exception.h"
#include "foundation/Platform.h"
#include <cmath>

namespace Tallymoor {

namespace {

/// Cut, not rounded: 12.9 reads as 12%.
String wholePercentText(double value) {
  return String::appendPercent(String::fromDouble(std::trunc(value), 0));
}

bool holdsDouble(CellResultType type) {
  return type == CELL_MONEY || type == CELL_PRICE || type == CELL_PERCENT || type == CELL_WHOLE_PERCENT ||
         type == CELL_NUMBER;
}

} // namespace

CellResult::CellResult(const String& text) : m_text(text), m_type(CELL_TEXT) {}

CellResult::CellResult(double value, CellResultType type) : m_value(value), m_type(type) {
  if (!holdsDouble(type))
    throw Exception(u"CellResult(double d, CellResultType t) - bad type");
}

CellResult::CellResult(std::int32_t number) : m_number(number), m_type(CELL_WHOLE_NUMBER) {}

CellResult::CellResult(const Date& date) : m_date(date), m_type(CELL_DATE) {}

bool operator==(const CellResult& left, const CellResult& right) {
  // Nothing may be shown with a sign.
  return left.m_type == right.m_type && left.m_value == right.m_value &&
         std::signbit(left.m_value) == std::signbit(right.m_value) && left.m_number == right.m_number &&
         left.m_date == right.m_date && left.m_provisional == right.m_provisional &&
         left.m_text == right.m_text;
}

double CellResult::amount() const {
  if (m_type == CELL_WHOLE_NUMBER)
    return m_number;
  return holdsDouble(m_type) ? m_value : 0.0;
}

String CellResult::shown() const {
  return m_provisional ? plainText() + u" *" : plainText();
}

String CellResult::plainText() const {
  switch (m_type) {
  case CELL_TEXT:
    return m_text;
  case CELL_MONEY:
    return Platform::Instance().currencyFormat(m_value);
  case CELL_PRICE:
    return shortPriceText(m_value);
  case CELL_PERCENT:
    return String::toPercent(m_value);
  case CELL_WHOLE_PERCENT:
    return wholePercentText(m_value);
  case CELL_WHOLE_NUMBER:
    return String::fromLong(m_number);
  case CELL_DATE:
    return m_date.toString(DATE_DISPLAY_LOCAL);
  case CELL_NUMBER:
    return String::fromDouble(m_value, 2);
  }
  throw Exception(u"Column::operator() - bad type");
}

} // namespace Tallymoor
