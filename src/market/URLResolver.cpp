#include "market/URLResolver.h"
#include "foundation/Exception.h"
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
  static constexpr char DIGITS[] = "0123456789ABCDEF";
  std::string encoded;
  encoded.reserve(bytes.size());
  for (const char character : bytes) {
    const auto byte = static_cast<unsigned char>(character);
    if (mustBeEncoded(byte)) {
      encoded += '%';
      encoded += DIGITS[byte >> 4];
      encoded += DIGITS[byte & 0xF];
    } else {
      encoded += character;
    }
  }
  return encoded;
}

} // namespace Tallymoor
