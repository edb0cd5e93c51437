#include "xml/PriceCache.h"
#include "xml/ElementLayout.h"

namespace Tallymoor {

XMLShareValues::XMLShareValues() : XMLElement(layoutOf<XMLShareValues>(u"ShareValues")) {
  registerAndCreate(u"String", u"Code", newElement<XMLString>);
  markContentUnsafe(u"Code");
  registerSubElements(u"ShareValue", u"Values", XMLShareValue::create, false);
}

bool XMLShareValues::isBad() const {
  return hasAttribute(u"IsBad") && attribute(u"IsBad") == String(u"true");
}

XMLShareValue::XMLShareValue() : XMLElement(layoutOf<XMLShareValue>(u"ShareValue")) {
  registerAndCreate(u"Date", u"Date", newElement<XMLDate>);
  registerAndCreate(u"Constant", u"Close", newElement<XMLConstant>);
  registerAndCreate(u"Constant", u"High", newElement<XMLConstant>);
  registerAndCreate(u"Constant", u"Low", newElement<XMLConstant>);
  registerAndCreate(u"Constant", u"Volume", newElement<XMLConstant>);
}

ElementPool<XMLShareValue>& XMLShareValue::pool() {
  static ElementPool<XMLShareValue> pool;
  return pool;
}

XMLElement* XMLShareValue::create() {
  return pool().take();
}

void XMLShareValue::destroy() {
  pool().giveBack(*this);
}

Date XMLShareValue::date() const {
  return dateValue(*this, u"Date");
}

double XMLShareValue::close() const {
  return doubleValue(*this, u"Close");
}

double XMLShareValue::high() const {
  return doubleValue(*this, u"High");
}

double XMLShareValue::low() const {
  return doubleValue(*this, u"Low");
}

std::int32_t XMLShareValue::volume() const {
  return longValue(*this, u"Volume");
}

} // namespace Tallymoor
