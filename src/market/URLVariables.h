#pragma once
#include "foundation/String.h"
#include "xml/LocatorDocuments.h"

namespace Tallymoor {

/// Supplies the values of the variable parts of a locator's address.
class URLVariablesProvider {
public:
  virtual ~URLVariablesProvider();
  /// The plain text of a variable; the resolver does the percent-encoding. Never called with
  /// URL_VARIABLE_NONE.
  virtual String urlVariable(URLVariableType type) const = 0;
};

/// The variables of one request: a code (or the text of a search), what is searched, and a range of days in
/// text form. Months count from zero: January is "0". A request for a current price leaves the six texts
/// empty.
class URLVariables : public URLVariablesProvider {
public:
  URLVariables(const String& code, bool isShare, bool usOnly, const String& startDay = String(),
               const String& startMonth = String(), const String& startYear = String(),
               const String& endDay = String(), const String& endMonth = String(),
               const String& endYear = String());

  /// Throws HTMLException "URLVariables::urlVariable - bad variable: " and the number, for the types that
  /// documents may name but that no request has.
  String urlVariable(URLVariableType type) const override;

private:
  String m_code;
  bool m_isShare;
  bool m_usOnly;
  String m_startDay;
  String m_startMonth;
  String m_startYear;
  String m_endDay;
  String m_endMonth;
  String m_endYear;
};

} // namespace Tallymoor
