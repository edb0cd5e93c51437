#include "xml/SmallDocuments.h"
#include "foundation/KeptTexts.h"
#include <string_view>
#include <xercesc/sax2/Attributes.hpp>

namespace Tallymoor {

namespace {

std::u16string_view withoutPrefix(std::u16string_view qualifiedName) {
  const std::size_t colon = qualifiedName.find(u':');
  return colon == std::u16string_view::npos ? qualifiedName : qualifiedName.substr(colon + 1);
}

} // namespace

XMLCountryOptions::XMLCountryOptions() : XMLSelfCheckedElement(u"CountryOptions") {
  registerAttribute(u"version");
  registerSubElements(u"CountryOption", u"CountryOptions", newElement<XMLCountryOption>, false);
}

XMLCountryOption::XMLCountryOption() : XMLSelfCheckedElement(u"CountryOption") {
  registerAttribute(u"Name");
  registerAttribute(u"FinYearStart");
}

XMLVersionsAvailable::XMLVersionsAvailable() : XMLSelfCheckedElement(u"VersionsAvailable") {
  registerSubElements(u"Component", u"Components", newElement<XMLComponent>, false);
}

XMLComponent::XMLComponent() : XMLSelfCheckedElement(u"Component") {
  registerAttribute(u"FileName");
  registerAttribute(u"Major");
  registerAttribute(u"Minor");
  registerAttribute(u"Patch");
}

XMLAdvertisement::XMLAdvertisement() : XMLSelfCheckedElement(u"Advertisement") {
  registerAttribute(u"url");
  registerAttribute(u"image");
}

XMLXslStylesheet::XMLXslStylesheet() : XMLElement(u"stylesheet") {
  registerAttribute(u"version");
}

void XMLXslStylesheet::startDocument() {
  m_rootMet = false;
  removeAttribute(u"version"); // of a document that was read before
}

void XMLXslStylesheet::startElement(const char16_t*, const char16_t*, const char16_t* qualifiedName,
                                    const xercesc::Attributes& attributes) {
  if (m_rootMet)
    return;
  m_rootMet = true;
  if (withoutPrefix(qualifiedName) != name())
    throw XMLException(kept::UNKNOWN_ELEMENT + name());
  for (XMLSize_t i = 0; i < attributes.getLength(); ++i)
    if (String(attributes.getQName(i)) == String(u"version"))
      setAttribute(u"version", attributes.getValue(i));
}

void XMLXslStylesheet::endDocument() {
  checkAttributes();
}

} // namespace Tallymoor
