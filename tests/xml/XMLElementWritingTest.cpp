#include "XmlTestTools.h"
#include "xml/XMLElement.h"
#include <algorithm>

namespace Tallymoor {
namespace {

class XMLElementWritingTest : public ::testing::Test {
protected:
  XMLSample m_sample;
};

TEST_F(XMLElementWritingTest, EverythingStandsOnOneLineInTheOrderOfRegistration) {
  m_sample.addSubElement(new XMLString, u"Last").setValue(u"z");
  m_sample.addSubElement(XMLSample::item(), u"Items").setValue(u"a");
  m_sample.addSubElement(XMLSample::item(), u"Items");
  m_sample.subElement(u"First").setValue(u"1");
  EXPECT_EQ(encoded(m_sample), "<Sample><Constant>1</Constant><Constant/><Item>a</Item><Item/><String/>"
                               "<String>z</String></Sample>");
}

TEST_F(XMLElementWritingTest, AnElementWithoutInstancesIsClosedAtOnce) {
  class XMLList : public XMLElement {
  public:
    XMLList() : XMLElement(u"List") { registerSubElements(u"Item", u"Items", XMLSample::item, false); }
  };
  XMLList list;
  EXPECT_EQ(encoded(list), "<List/>");
  list.decode("<List>\n</List>");
  EXPECT_EQ(encoded(list), "<List/>");
  list.addSubElement(XMLSample::item(), u"Items");
  EXPECT_EQ(encoded(list), "<List><Item/></List>");
}

TEST_F(XMLElementWritingTest, AttributesAreSortedByName) {
  XMLElement element(u"Item");
  element.setAttribute(u"b", u"2");
  element.setAttribute(u"B", u"1");
  element.setAttribute(u"a", u"3");
  EXPECT_EQ(encoded(element), "<Item B=\"1\" a=\"3\" b=\"2\"/>");
}

TEST_F(XMLElementWritingTest, OnlyRegisteredSafeAttributesAreWrittenRaw) {
  m_sample.registerAttribute(u"raw");
  m_sample.registerAttribute(u"marked");
  m_sample.markAttributeUnsafe(u"marked");
  m_sample.markAttributeUnsafe(u"new");
  for (const char16_t* name : {u"raw", u"marked", u"new", u"unregistered"})
    m_sample.setAttribute(name, u"a&b");
  EXPECT_TRUE(encoded(m_sample).starts_with(
      "<Sample marked=\"a&amp;b\" new=\"a&amp;b\" raw=\"a&b\" unregistered=\"a&amp;b\">"));
}

TEST_F(XMLElementWritingTest, TheFiveCharactersAreEscapedAndNoOthers) {
  XMLString leaf;
  leaf.markContentUnsafe();
  leaf.setValue(u"&\"'<>&amp;\u00E9\u20AC\t%");
  EXPECT_EQ(encoded(leaf), "<String>&amp;&quot;&apos;&lt;&gt;&amp;amp;\xC3\xA9\xE2\x82\xAC\t%</String>");
}

TEST_F(XMLElementWritingTest, EscapedTextsComeBackIntact) {
  m_sample.markContentUnsafe(u"Text");
  const String text = u"<a href=\"x\">'&amp;'</a> ]]> \u00E9 \u20AC \U0001F600 \t\n";
  m_sample.subElement(u"Text").setValue(text);
  m_sample.setAttribute(u"free", u"\"'<>&");
  XMLSample copy;
  copy.decode(encoded(m_sample).c_str());
  EXPECT_EQ(textValue(copy, u"Text"), text);
  EXPECT_EQ(copy.attribute(u"free"), String(u"\"'<>&"));
}

TEST_F(XMLElementWritingTest, AnUnmarkedTextIsWrittenRawAndThenRefused) {
  m_sample.subElement(u"Text").setValue(u"a&b");
  const std::string text = encoded(m_sample);
  EXPECT_NE(text.find("<String>a&b</String>"), std::string::npos);
  XMLSample copy;
  EXPECT_TRUE(
      failureOf([&] {
        copy.decode(text.c_str());
      }).startsWith(u"XMLElement::decode, parse fatal error in Sample : Parse problem at line 1 column "));
}

TEST_F(XMLElementWritingTest, UnsafeIsInheritedAndKeptByTheInstance) {
  m_sample.subElement(u"Text").setValue(u"a&b");
  m_sample.markContentUnsafe();
  EXPECT_TRUE(m_sample.subElement(u"Text").isContentSafe());
  EXPECT_NE(encoded(m_sample).find("a&amp;b"), std::string::npos);
  EXPECT_FALSE(m_sample.subElement(u"Text").isContentSafe());
  EXPECT_EQ(encoded(m_sample.subElement(u"Text")), "<String>a&amp;b</String>");
}

TEST_F(XMLElementWritingTest, AMissingAttributeFailsAfterTheTagsName) {
  m_sample.registerAttribute(u"version");
  std::ostringstream stream;
  EXPECT_EQ(failureOf([&] { m_sample.encode(stream); }),
            String(u"XMLElement::checkAttributes, missing attribute version in Sample"));
  EXPECT_EQ(stream.str(), "<Sample");
  m_sample.setAttribute(u"version", u"1");
  m_sample.markAttributeUnsafe(u"note"); // This registers the attribute, so it is required.
  EXPECT_EQ(failureOf([&] { m_sample.checkAttributes(); }),
            String(u"XMLElement::checkAttributes, missing attribute note in Sample"));
}

TEST_F(XMLElementWritingTest, AMissingSubElementFailsWhereItIsMissing) {
  m_sample.addSubElement(XMLSample::item(), u"Items");
  XMLSample* inner = new XMLSample;
  inner->registerSubElements(u"Item", u"Needed", XMLSample::item, true);
  m_sample.registerSubElement(u"Sample", u"Inner", newElement<XMLSample>, true);
  m_sample.addSubElement(inner, u"Inner");
  std::ostringstream stream;
  EXPECT_EQ(failureOf([&] { m_sample.encode(stream); }),
            String(u"XMLElement::checkSubElements - required at least one Needed in Sample"));
  EXPECT_EQ(stream.str(), "<Sample><Constant/><Constant/><Item/><String/><Sample");
  inner->addSubElement(XMLSample::item(), u"Needed");
  EXPECT_TRUE(encoded(m_sample).ends_with("<String/><Item/></Sample></Sample>"));
}

TEST_F(XMLElementWritingTest, ARemovedRequiredSingleIsMissedOnWriting) {
  m_sample.removeSubElement(u"Second", 0);
  EXPECT_EQ(failureOf([&] { encoded(m_sample); }),
            String(u"XMLElement::checkSubElements - required at least one Second in Sample"));
}

TEST_F(XMLElementWritingTest, ADocumentHasADoctypeLine) {
  std::ostringstream stream;
  XMLElement(u"R\u00E9").encodeWithDoctype(stream, u"Some \u20AC.dtd");
  EXPECT_EQ(stream.str(), "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!DOCTYPE R\xC3\xA9 SYSTEM \"Some "
                          "\xE2\x82\xAC.dtd\">\n<R\xC3\xA9/>");
}

TEST_F(XMLElementWritingTest, ADocumentHasAStylesheetLine) {
  std::ostringstream stream;
  XMLElement(u"Report").encodeWithStylesheet(stream, u"/home/caf\u00E9/Report.xsl");
  EXPECT_EQ(stream.str(), "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<?xml-stylesheet type='text/xsl' "
                          "href='file:\\\\/home/caf\xC3\xA9/Report.xsl'?>\n<Report/>");
}

TEST_F(XMLElementWritingTest, TheDocumentTypeStandsBelowTheStylesheet) {
  std::ostringstream stream;
  XMLElement(u"Report").encodeWithStylesheet(stream, u"/home/Report.xsl", u"Report.dtd");
  EXPECT_EQ(stream.str(), "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<?xml-stylesheet type='text/xsl' "
                          "href='file:\\\\/home/Report.xsl'?>\n<!DOCTYPE Report SYSTEM "
                          "\"Report.dtd\">\n<Report/>");
}

TEST_F(XMLElementWritingTest, CharactersNotAllowedInXmlAreDropped) {
  XMLString leaf;
  String text = u"a\u0001b\u001Fc";
  text += char16_t(0);
  text += char16_t(0xD800);
  text += u"d";
  text += char16_t(0xDC00);
  text += char16_t(0xFFFE);
  text += char16_t(0xFFFF);
  text += u"e\uFFFD\U0010FFFF";
  text += char16_t(0xDBFF);
  leaf.setValue(text);
  EXPECT_EQ(encoded(leaf), "<String>abcde\xEF\xBF\xBD\xF4\x8F\xBF\xBF</String>");
  leaf.markContentUnsafe();
  EXPECT_EQ(encoded(leaf), "<String>abcde\xEF\xBF\xBD\xF4\x8F\xBF\xBF</String>");
  XMLString copy;
  copy.decode(encoded(leaf).c_str());
  EXPECT_EQ(copy.value(), String(u"abcde\uFFFD\U0010FFFF"));
}

TEST_F(XMLElementWritingTest, LongTextsCrossTheBuffersEndWhole) {
  for (const std::size_t length : {4095u, 4096u, 4097u, 10921u, 65535u, 65536u, 200001u}) {
    String text = u"x";
    std::string expected = "x";
    while (text.size() < length) {
      text += u"\U0001F600&";
      expected += "\xF0\x9F\x98\x80&quot;";
    }
    std::replace(text.begin(), text.end(), u'&', u'"');
    XMLString leaf;
    leaf.markContentUnsafe();
    leaf.setValue(text);
    EXPECT_EQ(encoded(leaf), "<String>" + expected + "</String>") << length;
  }
}

TEST_F(XMLElementWritingTest, AFailedStreamIsIgnored) {
  std::ostringstream stream;
  stream.setstate(std::ios::failbit);
  m_sample.encodeWithDoctype(stream, u"x.dtd");
  EXPECT_EQ(stream.str(), "");
}

} // namespace
} // namespace Tallymoor
