#include "market/URLResolver.h"
#include "foundation/Exception.h"
#include "market/PercentEncoding.h"
#include "market/URLVariables.h"

namespace Tallymoor {

namespace {

bool mustBeEncoded(unsigned char byte) {
  return byte == ' ' || (byte >= 0x22 && byte <= 0x26) || byte == '+' || byte == ',' || byte == '/' ||
         (byte >= 0x3A && byte <= 0x40);
}

} // namespace

URLResolver::URLResolver(const XMLURLLocator* locator) : m_locator(locator) {}

URL URLResolver::operator()(const URLVariablesProvider& variables) const {
  if (m_locator == nullptr)
    throw HTMLException(u"URLResolver::operator() - no locator");
  String address;
  const std::size_t count = m_locator->numSubElements(u"URLParts");
  for (std::size_t i = 0; i < count; ++i) {
    const auto& part = static_cast<const XMLURLPart&>(m_locator->subElement(u"URLParts", i));
    const URLVariableType type = part.type();
    if (type == URL_VARIABLE_NONE)
      address += part.value();
    else
      address += String::fromUTF8(percentEncode(variables.urlVariable(type).toUTF8()));
  }
  return URL(address);
}

std::string URLResolver::percentEncode(const std::string& bytes) {
  return percentEncoded(bytes, mustBeEncoded);
}

} // namespace Tallymoor
