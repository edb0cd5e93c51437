#include "xml/PriceSourceSettings.h"

namespace Tallymoor {

namespace {

constexpr bool ANY_NUMBER = false;

} // namespace

XMLPriceSources::XMLPriceSources() : XMLElement(u"PriceSources") {
  registerSubElements(u"Source", u"Sources", newElement<XMLListedSource>, ANY_NUMBER);
  registerSubElements(u"Pin", u"Pins", newElement<XMLSourcePin>, ANY_NUMBER);
}

XMLListedSource::XMLListedSource() : XMLElement(u"Source") {
  registerAttribute(u"kind");
  markAttributeUnsafe(u"name");
  registerAttribute(u"on");
  registerAttribute(u"tried");
  markAttributeUnsafe(u"folder");
  registerSubElements(u"Word", u"Words", newElement<XMLCommandWord>, ANY_NUMBER);
  registerSubElements(u"Answer", u"Answers", newElement<XMLCsvAnswer>, ANY_NUMBER);
  markContentUnsafe(u"Words");
}

XMLCommandWord::XMLCommandWord() : XMLElement(u"Word") {}

XMLCsvAnswer::XMLCsvAnswer() : XMLElement(u"Answer") {
  markAttributeUnsafe(u"file");
  registerAttribute(u"about");
  markAttributeUnsafe(u"choice");
}

XMLSourcePin::XMLSourcePin() : XMLElement(u"Pin") {
  markAttributeUnsafe(u"code");
  markAttributeUnsafe(u"source");
  markAttributeUnsafe(u"there");
}

XMLSourceKeys::XMLSourceKeys() : XMLElement(u"SourceKeys") {
  registerSubElements(u"Key", u"Keys", newElement<XMLKeptKey>, ANY_NUMBER);
  markContentUnsafe(u"Keys");
}

XMLKeptKey::XMLKeptKey() : XMLElement(u"Key") {
  markAttributeUnsafe(u"source");
  markAttributeUnsafe(u"hosts");
}

} // namespace Tallymoor
