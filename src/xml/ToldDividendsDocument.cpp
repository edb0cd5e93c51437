#include "xml/ToldDividendsDocument.h"

namespace Tallymoor {

XMLToldDividends::XMLToldDividends() : XMLElement(u"ToldDividends") {
  registerSubElements(u"Told", u"Told", newElement<XMLToldDividend>, false);
}

XMLToldDividend::XMLToldDividend() : XMLSelfCheckedElement(u"Told") {
  registerAttribute(u"code");
  registerAttribute(u"day");
  registerAttribute(u"rate");
  registerAttribute(u"state");
}

} // namespace Tallymoor
