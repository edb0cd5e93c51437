#include "xml/PriceSourceDocument.h"

namespace Tallymoor {

namespace {

constexpr bool ONE = false;
constexpr bool OPTIONAL = true;
constexpr bool ONE_OR_MORE = true;
constexpr bool ANY_NUMBER = false;

} // namespace

XMLPriceSource::XMLPriceSource() : XMLSelfCheckedElement(u"PriceSource") {
  registerAttribute(u"name");
  registerSubElements(u"Serves", u"Serves", newElement<XMLServedCodes>, ONE_OR_MORE);
  registerSubElement(u"Terms", u"Terms", newElement<XMLSourceTerms>, OPTIONAL);
  registerSubElement(u"Limits", u"Limits", newElement<XMLSourceLimits>, OPTIONAL);
  registerSubElement(u"Key", u"Key", newElement<XMLSourceKey>, OPTIONAL);
  registerSubElement(u"TryCode", u"TryCode", newElement<XMLTryCode>, OPTIONAL);
  registerSubElement(u"Current", u"Current", newElement<XMLCurrentRequest>, OPTIONAL);
  registerSubElement(u"History", u"History", newElement<XMLHistoryRequest>, OPTIONAL);
  registerSubElement(u"Search", u"Search", newElement<XMLSearchRequest>, OPTIONAL);
}

XMLServedCodes::XMLServedCodes() : XMLSelfCheckedElement(u"Serves") {
  registerAttribute(u"codes");
}

XMLSourceTerms::XMLSourceTerms() : XMLElement(u"Terms") {}

XMLSourceLimits::XMLSourceLimits() : XMLElement(u"Limits") {}

XMLSourceKey::XMLSourceKey() : XMLElement(u"Key") {}

XMLTryCode::XMLTryCode() : XMLElement(u"TryCode") {}

XMLSourceRequest::XMLSourceRequest(const String& name) : XMLSelfCheckedElement(name) {
  registerAttribute(u"reader");
  registerSubElement(u"Address", u"Address", newElement<XMLSourceAddress>, ONE);
  registerSubElements(u"Header", u"Headers", newElement<XMLRequestHeader>, ANY_NUMBER);
  registerSubElements(u"Column", u"Columns", newElement<XMLAnswerColumn>, ONE_OR_MORE);
  registerSubElements(u"Error", u"Errors", newElement<XMLAnswerError>, ANY_NUMBER);
}

XMLCurrentRequest::XMLCurrentRequest() : XMLSourceRequest(u"Current") {}

XMLHistoryRequest::XMLHistoryRequest() : XMLSourceRequest(u"History") {}

XMLSearchRequest::XMLSearchRequest() : XMLSourceRequest(u"Search") {}

XMLSourceAddress::XMLSourceAddress() : XMLElement(u"Address") {}

XMLRequestHeader::XMLRequestHeader() : XMLSelfCheckedElement(u"Header") {
  registerAttribute(u"name");
}

XMLAnswerColumn::XMLAnswerColumn() : XMLSelfCheckedElement(u"Column") {
  registerAttribute(u"type");
  registerAttribute(u"at");
}

XMLAnswerError::XMLAnswerError() : XMLSelfCheckedElement(u"Error") {
  registerAttribute(u"at");
}

} // namespace Tallymoor
