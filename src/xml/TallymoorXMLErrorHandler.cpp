#include "xml/TallymoorXMLErrorHandler.h"
#include <utility>
#include <xercesc/sax/SAXParseException.hpp>

namespace Tallymoor {

namespace {

String placeOf(const xercesc::SAXParseException& problem) {
  return String(u"Parse problem at line ") +
         String::fromLong(static_cast<std::int64_t>(problem.getLineNumber())) + u" column " +
         String::fromLong(static_cast<std::int64_t>(problem.getColumnNumber()));
}

} // namespace

void TallymoorXMLErrorHandler::warning(const xercesc::SAXParseException& problem) {
  m_warning = placeOf(problem);
}

void TallymoorXMLErrorHandler::error(const xercesc::SAXParseException& problem) {
  m_error = placeOf(problem);
}

void TallymoorXMLErrorHandler::fatalError(const xercesc::SAXParseException& problem) {
  m_fatalError = placeOf(problem);
}

void TallymoorXMLErrorHandler::resetErrors() {
  m_warning.clear();
  m_error.clear();
  m_fatalError.clear();
}

void TallymoorXMLErrorHandler::throwIfAny(const String& root) const {
  const std::pair<const char16_t*, const String&> kinds[] = {
      {u"error", m_error}, {u"fatal error", m_fatalError}, {u"warning", m_warning}};
  for (const auto& [kind, place] : kinds)
    if (!place.empty())
      throw failure(kind, root, place);
}

XMLException TallymoorXMLErrorHandler::failure(const char16_t* kind, const String& root, const String& text) {
  return XMLException(u"XMLElement::decode, parse " + String(kind) + u" in " + root + u" : " + text);
}

} // namespace Tallymoor
