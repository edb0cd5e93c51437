#include "xml/TallymoorXMLErrorHandler.h"
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

} // namespace Tallymoor
