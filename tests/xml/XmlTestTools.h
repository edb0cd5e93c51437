#pragma once
#include "foundation/Exception.h"
#include "support/StringPrinting.h"
#include "xml/Leaves.h"
#include <gtest/gtest.h>
#include <sstream>
#include <string>

namespace Tallymoor {

/// The message of the XMLException thrown by the work. No exception or another one fails the test.
template <class Work>
String failureOf(const Work& work) {
  try {
    work();
  } catch (const XMLException& failure) {
    return failure.message();
  } catch (const Exception& failure) {
    ADD_FAILURE() << "not an XMLException: " << failure.description().toUTF8();
    return String();
  }
  ADD_FAILURE() << "nothing was thrown";
  return String();
}

inline std::string encoded(XMLElement& element) {
  std::ostringstream stream;
  element.encode(stream);
  return stream.str();
}

/// Leaf elements around a list: "First" and "Second" share a tag, "Optional" may be missing, "Items" may
/// occur any number of times.
class XMLSample : public XMLElement {
public:
  XMLSample() : XMLElement(u"Sample") {
    registerAndCreate(u"Constant", u"First", newElement<XMLConstant>);
    registerAndCreate(u"Constant", u"Second", newElement<XMLConstant>);
    registerSubElement(u"Date", u"Optional", newElement<XMLDate>, true);
    registerSubElements(u"Item", u"Items", XMLSample::item, false);
    registerAndCreate(u"String", u"Text", newElement<XMLString>);
    registerSubElement(u"String", u"Last", newElement<XMLString>, true);
  }
  static XMLElement* item() { return new XMLElement(u"Item"); }

  using XMLElement::markAttributeUnsafe;
  using XMLElement::markContentUnsafe;
  using XMLElement::registerAndCreate;
  using XMLElement::registerAttribute;
  using XMLElement::registerSubElement;
  using XMLElement::registerSubElements;
};

} // namespace Tallymoor
