#pragma once
#include "xml/SelfCheckedElement.h"

namespace Tallymoor {

// Documents that the maker's services deliver. The program reads them and never writes them, so they check
// themselves while they are read: a missing attribute is refused.

/// Root of "CountryConfig.xml": attribute "version", any number of "CountryOptions".
class XMLCountryOptions : public XMLSelfCheckedElement {
public:
  XMLCountryOptions();
};

/// Attributes "Name" and "FinYearStart", a day whose day and month count.
class XMLCountryOption : public XMLSelfCheckedElement {
public:
  XMLCountryOption();
};

/// Root of the update service's replies: any number of "Components".
class XMLVersionsAvailable : public XMLSelfCheckedElement {
public:
  XMLVersionsAvailable();
};

/// Attributes "FileName", "Major", "Minor", "Patch".
class XMLComponent : public XMLSelfCheckedElement {
public:
  XMLComponent();
};

/// The advert service's reply: attributes "url" and "image".
class XMLAdvertisement : public XMLSelfCheckedElement {
public:
  XMLAdvertisement();
};

/// The report stylesheet, of which only the root's attribute "version" is read: the root is "stylesheet" with
/// any prefix, and everything else in the document is passed over.
class XMLXslStylesheet : public XMLElement {
public:
  XMLXslStylesheet();
  void startDocument() override;
  void startElement(const char16_t* uri, const char16_t* localName, const char16_t* qualifiedName,
                    const xercesc::Attributes& attributes) override;
  void characters(const char16_t*, XMLSize_t) override {}
  void endElement(const char16_t*, const char16_t*, const char16_t*) override {}
  /// Refuses a document whose root has no version.
  void endDocument() override;

private:
  bool m_rootMet = false;
};

} // namespace Tallymoor
