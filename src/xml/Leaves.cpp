#include "xml/Leaves.h"
#include "xml/ElementLayout.h"

namespace Tallymoor {

XMLString::XMLString() : XMLElement(layoutOf<XMLString>(u"String")) {}

XMLDate::XMLDate() : XMLElement(layoutOf<XMLDate>(u"Date")) {}

Date XMLDate::date() const {
  return Date(value(), DATE_DISPLAY_DMY);
}

XMLConstant::XMLConstant() : XMLElement(layoutOf<XMLConstant>(u"Constant")) {}

double XMLConstant::toDouble() const {
  return value().toDouble();
}

std::int32_t XMLConstant::toLong() const {
  return value().toLong();
}

Date dateValue(const XMLElement& parent, std::u16string_view referenceName) {
  return Date(textValue(parent, referenceName), DATE_DISPLAY_DMY);
}

double doubleValue(const XMLElement& parent, std::u16string_view referenceName) {
  return textValue(parent, referenceName).toDouble();
}

std::int32_t longValue(const XMLElement& parent, std::u16string_view referenceName) {
  return textValue(parent, referenceName).toLong();
}

const String& textValue(const XMLElement& parent, std::u16string_view referenceName) {
  return parent.subElement(referenceName).value();
}

} // namespace Tallymoor
