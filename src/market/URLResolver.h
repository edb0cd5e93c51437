#pragma once
#include "market/URL.h"
#include <string>

namespace Tallymoor {

class URLVariablesProvider;
class XMLURLLocator;

/// Joins the parts of an address locator into one URL. Literal parts go in as they stand, values of variables
/// are percent-encoded.
class URLResolver {
public:
  /// The locator is not owned and must outlive the resolver.
  explicit URLResolver(const XMLURLLocator* locator);

  /// Throws HTMLException "URLResolver::operator() - no locator" when there is none, whatever the provider
  /// throws, and HTTPException when the result names no host.
  URL operator()(const URLVariablesProvider& variables) const;

  /// Replaces the bytes that have a meaning in an address by "%" and two upper-case hexadecimal digits. Bytes
  /// from 0x80 up, and the marks that addresses tolerate, stay.
  static std::string percentEncode(const std::string& bytes);

private:
  const XMLURLLocator* m_locator;
};

} // namespace Tallymoor
