#include "xml/SmallDocuments.h"
#include "XmlTestTools.h"

namespace Tallymoor {
namespace {

template <class Root>
String failureOfReading(const std::string& text) {
  Root root;
  return failureOf([&] { root.decode(text.c_str()); });
}

String missing(const char16_t* attribute, const char16_t* element) {
  return u"XMLElement::checkAttributes, missing attribute " + String(attribute) + u" in " + String(element);
}

TEST(SmallDocumentsTest, CountryOptionsAreRead) {
  XMLCountryOptions options;
  options.decode(
      "<CountryOptions version='3'><CountryOption Name='Australia' FinYearStart='1/7/2000'/>"
      "<CountryOption Name='New Zealand' FinYearStart='1/4/2000'></CountryOption></CountryOptions>");
  EXPECT_EQ(options.attribute(u"version").toLong(), 3);
  ASSERT_EQ(options.numSubElements(u"CountryOptions"), 2u);
  EXPECT_EQ(options.subElement(u"CountryOptions", 1).attribute(u"Name"), String(u"New Zealand"));
}

TEST(SmallDocumentsTest, CountryOptionsMayBeNone) {
  XMLCountryOptions options;
  options.decode("<CountryOptions version='3'/>");
  EXPECT_EQ(options.numSubElements(u"CountryOptions"), 0u);
}

TEST(SmallDocumentsTest, MissingAttributesOfCountriesAreRefused) {
  EXPECT_EQ(failureOfReading<XMLCountryOptions>("<CountryOptions/>"), missing(u"version", u"CountryOptions"));
  EXPECT_EQ(failureOfReading<XMLCountryOptions>("<CountryOptions version='1'><CountryOption Name='A'/>"
                                                "</CountryOptions>"),
            missing(u"FinYearStart", u"CountryOption"));
  EXPECT_EQ(
      failureOfReading<XMLCountryOptions>("<CountryOptions version='1'><CountryOption FinYearStart='A'/>"
                                          "</CountryOptions>"),
      missing(u"Name", u"CountryOption"));
}

TEST(SmallDocumentsTest, VersionsAreReadAsTheIntegersTheyBeginWith) {
  XMLVersionsAvailable versions;
  versions.decode(
      "<VersionsAvailable><Component FileName='CountryConfig.xml' Major='12a' Minor='x' Patch='-3'/>"
      "</VersionsAvailable>");
  const XMLElement& component = versions.subElement(u"Components");
  EXPECT_EQ(component.attribute(u"FileName"), String(u"CountryConfig.xml"));
  EXPECT_EQ(component.attribute(u"Major").toLong(), 12);
  EXPECT_EQ(component.attribute(u"Minor").toLong(), 0);
  EXPECT_EQ(component.attribute(u"Patch").toLong(), -3);
}

TEST(SmallDocumentsTest, NoVersionsAreValid) {
  XMLVersionsAvailable versions;
  versions.decode("<VersionsAvailable/>");
  EXPECT_EQ(versions.numSubElements(u"Components"), 0u);
}

TEST(SmallDocumentsTest, AnIncompleteComponentInvalidatesTheList) {
  for (const char16_t* lacking : {u"FileName", u"Major", u"Minor", u"Patch"}) {
    std::string text = "<VersionsAvailable><Component FileName='a' Major='1' Minor='2' Patch='3'/><Component";
    for (const char16_t* name : {u"FileName", u"Major", u"Minor", u"Patch"})
      if (String(name) != String(lacking))
        text += " " + String(name).toUTF8() + "='1'";
    EXPECT_EQ(failureOfReading<XMLVersionsAvailable>(text + "/></VersionsAvailable>"),
              missing(lacking, u"Component"));
  }
}

TEST(SmallDocumentsTest, AnAdvertHasAnAddressAndAnImage) {
  XMLAdvertisement advert;
  advert.decode("<?xml version='1.0'?><Advertisement url='http://a/?b=1&amp;c=2' image='x.gif'/>");
  EXPECT_EQ(advert.attribute(u"url"), String(u"http://a/?b=1&c=2"));
  EXPECT_EQ(advert.attribute(u"image"), String(u"x.gif"));
  EXPECT_EQ(failureOfReading<XMLAdvertisement>("<Advertisement url='a'/>"),
            missing(u"image", u"Advertisement"));
  EXPECT_EQ(failureOfReading<XMLAdvertisement>("<Advertisement image='a'/>"),
            missing(u"url", u"Advertisement"));
}

TEST(SmallDocumentsTest, AReplyThatIsAWebPageIsRefused) {
  EXPECT_EQ(failureOfReading<XMLAdvertisement>("<html><body/></html>"),
            String(u"XMLElement::startElement - pFoundSubElementRego == NULL in Advertisement"));
}

TEST(SmallDocumentsTest, OnlyTheStylesheetsVersionIsRead) {
  const char* text =
      "<?xml version='1.0'?><xsl:stylesheet version='12' xmlns:xsl='http://www.w3.org/1999/XSL/Transform' "
      "other='x'><xsl:template match='/'><stylesheet version='99'/>text<br/></xsl:template>"
      "</xsl:stylesheet>";
  XMLXslStylesheet stylesheet;
  stylesheet.decode(text);
  EXPECT_EQ(stylesheet.attribute(u"version"), String(u"12"));
  EXPECT_FALSE(stylesheet.hasAttribute(u"other"));
  EXPECT_EQ(stylesheet.value(), String());
  stylesheet.decode("<stylesheet version='13'/>");
  EXPECT_EQ(stylesheet.attribute(u"version"), String(u"13"));
  EXPECT_EQ(failureOf([&] { stylesheet.decode("<stylesheet/>"); }), missing(u"version", u"stylesheet"));
}

TEST(SmallDocumentsTest, AStylesheetWithoutAVersionOrWithAnotherRootIsRefused) {
  EXPECT_EQ(failureOfReading<XMLXslStylesheet>("<xsl:stylesheet><stylesheet version='1'/></xsl:stylesheet>"),
            missing(u"version", u"stylesheet"));
  EXPECT_EQ(failureOfReading<XMLXslStylesheet>("<xsl:transform version='1'/>"),
            String(u"XMLElement::startElement - pFoundSubElementRego == NULL in stylesheet"));
}

} // namespace
} // namespace Tallymoor
