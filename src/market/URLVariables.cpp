#include "market/URLVariables.h"
#include "foundation/Exception.h"

namespace Tallymoor {

URLVariablesProvider::~URLVariablesProvider() = default;

URLVariables::URLVariables(const String& code, bool isShare, bool usOnly, const String& startDay,
                           const String& startMonth, const String& startYear, const String& endDay,
                           const String& endMonth, const String& endYear)
    : m_code(code), m_isShare(isShare), m_usOnly(usOnly), m_startDay(startDay), m_startMonth(startMonth),
      m_startYear(startYear), m_endDay(endDay), m_endMonth(endMonth), m_endYear(endYear) {}

String URLVariables::urlVariable(URLVariableType type) const {
  switch (type) {
  case URL_VARIABLE_CODE:
    return m_code;
  case URL_VARIABLE_START_DAY:
    return m_startDay;
  case URL_VARIABLE_START_MONTH:
    return m_startMonth;
  case URL_VARIABLE_START_YEAR:
    return m_startYear;
  case URL_VARIABLE_END_DAY:
    return m_endDay;
  case URL_VARIABLE_END_MONTH:
    return m_endMonth;
  case URL_VARIABLE_END_YEAR:
    return m_endYear;
  case URL_VARIABLE_COUNTRY:
    return m_usOnly ? u"US" : u"ALL";
  case URL_VARIABLE_INDEX_OR_SHARE:
    return m_isShare ? u"S" : u"I";
  case URL_VARIABLE_NONE:
  case URL_VARIABLE_MARKET_CODE:
  case URL_VARIABLE_DMY:
    break;
  }
  throw HTMLException(u"URLVariables::urlVariable - bad variable: " + String::fromLong(type));
}

} // namespace Tallymoor
