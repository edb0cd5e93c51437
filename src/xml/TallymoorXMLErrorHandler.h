#pragma once
#include "foundation/Exception.h"
#include "foundation/String.h"
#include <xercesc/sax/ErrorHandler.hpp>

namespace Tallymoor {

/// Remembers where the last problem of each kind was met in a document. The parser's own words are dropped.
class TallymoorXMLErrorHandler : public xercesc::ErrorHandler {
public:
  ~TallymoorXMLErrorHandler() override = default;
  void warning(const xercesc::SAXParseException& problem) override;
  void error(const xercesc::SAXParseException& problem) override;
  void fatalError(const xercesc::SAXParseException& problem) override;
  void resetErrors() override;

  /// Throws for the problems that were met in a document with this root: for an error before a fatal error,
  /// and for either before a warning, which is as bad.
  void throwIfAny(const String& root) const;
  /// What reading a document fails with; the kind is "error", for instance.
  static XMLException failure(const char16_t* kind, const String& root, const String& text);

private:
  String m_warning;
  String m_error;
  String m_fatalError;
};

} // namespace Tallymoor
