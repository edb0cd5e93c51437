#include "XmlTestTools.h"
#include "support/TestProfile.h"
#include "xml/XMLElement.h"
#include <xercesc/internal/EndOfEntityException.hpp>
#include <xercesc/sax/SAXException.hpp>
#include <xercesc/util/OutOfMemoryException.hpp>

namespace Tallymoor {
namespace {

const String NOT_FOUND_IN_SAMPLE = u"XMLElement::startElement - pFoundSubElementRego == NULL in Sample";

class XMLElementReadingTest : public ::testing::Test {
protected:
  String failureOfReading(const std::string& text) {
    return failureOf([&] { m_sample.decode(text.c_str()); });
  }
  XMLSample m_sample;
};

TEST_F(XMLElementReadingTest, PositionDistinguishesElementsOfOneName) {
  m_sample.decode(
      "<Sample><Constant>1</Constant><Constant>2</Constant><Date>3/3/2006</Date><Item>a</Item><Item>b"
      "</Item><String>text</String><String>last</String></Sample>");
  EXPECT_EQ(textValue(m_sample, u"First"), String(u"1"));
  EXPECT_EQ(textValue(m_sample, u"Second"), String(u"2"));
  EXPECT_EQ(textValue(m_sample, u"Optional"), String(u"3/3/2006"));
  EXPECT_EQ(m_sample.numSubElements(u"Items"), 2u);
  EXPECT_EQ(m_sample.subElement(u"Items", 1).value(), String(u"b"));
  EXPECT_EQ(textValue(m_sample, u"Text"), String(u"text"));
  EXPECT_EQ(textValue(m_sample, u"Last"), String(u"last"));
  EXPECT_EQ(m_sample.subElement(u"Items").parent(), &m_sample);
}

TEST_F(XMLElementReadingTest, KnownElementsOutOfOrderAreRefused) {
  EXPECT_EQ(failureOfReading("<Sample><Date>3/3/2006</Date><Constant>1</Constant></Sample>"),
            NOT_FOUND_IN_SAMPLE);
}

TEST_F(XMLElementReadingTest, AnUnknownElementIsRefused) {
  EXPECT_EQ(failureOfReading("<Sample><Unknown/></Sample>"), NOT_FOUND_IN_SAMPLE);
  XMLSample other;
  EXPECT_EQ(failureOf([&] { other.decode("<Sample><Constant><Deeper/></Constant></Sample>"); }),
            String(u"XMLElement::startElement - pFoundSubElementRego == NULL in Constant"));
}

TEST_F(XMLElementReadingTest, ARepeatedSingleFillsASuccessorOfTheSameName) {
  m_sample.decode("<Sample><Constant>1</Constant><Constant>2</Constant></Sample>");
  EXPECT_EQ(textValue(m_sample, u"First"), String(u"1"));
  EXPECT_EQ(textValue(m_sample, u"Second"), String(u"2"));
  XMLSample other;
  EXPECT_EQ(failureOf([&] { other.decode("<Sample><Constant/><Constant/><Constant/></Sample>"); }),
            NOT_FOUND_IN_SAMPLE);
  XMLSample third;
  EXPECT_EQ(failureOf([&] { third.decode("<Sample><Date/><Date/></Sample>"); }), NOT_FOUND_IN_SAMPLE);
}

TEST_F(XMLElementReadingTest, MissingSinglesAreWalkedOver) {
  m_sample.decode("<Sample><Item>a</Item><String>text</String></Sample>");
  EXPECT_EQ(m_sample.numSubElements(u"Optional"), 0u);
  EXPECT_EQ(m_sample.numSubElements(u"Items"), 1u);
  EXPECT_EQ(textValue(m_sample, u"First"), String());
  EXPECT_EQ(textValue(m_sample, u"Text"), String(u"text"));
  EXPECT_EQ(m_sample.numSubElements(u"Last"), 0u);
}

TEST_F(XMLElementReadingTest, ARequiredSingleIsFilledInPlaceAndAnOptionalOneReplaced) {
  XMLElement* first = &m_sample.subElement(u"First");
  m_sample.addSubElement(new XMLDate, u"Optional").setValue(u"old");
  m_sample.decode("<Sample><Constant>1</Constant><Date>new</Date></Sample>");
  EXPECT_EQ(&m_sample.subElement(u"First"), first);
  EXPECT_EQ(m_sample.numSubElements(u"Optional"), 1u);
  EXPECT_EQ(textValue(m_sample, u"Optional"), String(u"new"));
}

TEST_F(XMLElementReadingTest, ARequiredSingleThatHoldsNoneIsMade) {
  m_sample.removeSubElements(u"First");
  m_sample.decode("<Sample><Constant>1</Constant></Sample>");
  EXPECT_EQ(textValue(m_sample, u"First"), String(u"1"));
}

TEST_F(XMLElementReadingTest, AChildWithItsParentsNameIsReadAsTheParentsStartTag) {
  m_sample.decode("<Sample><Constant>1</Constant><Sample late='yes'><Date>3/3/2006</Date></Sample></Sample>");
  EXPECT_EQ(m_sample.attribute(u"late"), String(u"yes"));
  EXPECT_EQ(textValue(m_sample, u"First"), String(u"1"));
  EXPECT_EQ(textValue(m_sample, u"Optional"), String(u"3/3/2006"));
  // The order restarts at the start tag, but filled sub-elements are not filled again.
  XMLSample other;
  other.decode("<Sample><Constant>1</Constant><Sample><Constant>2</Constant></Sample></Sample>");
  EXPECT_EQ(textValue(other, u"First"), String(u"1"));
  EXPECT_EQ(textValue(other, u"Second"), String(u"2"));
}

TEST_F(XMLElementReadingTest, AnotherRootIsRefusedByTheWalkAndNotByTheParser) {
  EXPECT_EQ(failureOfReading("<Other/>"), NOT_FOUND_IN_SAMPLE);
}

TEST_F(XMLElementReadingTest, AttributesAreTakenByName) {
  m_sample.decode("<Sample b='2' a='1&amp;' x:c='3' empty=''><Constant q='z'/></Sample>");
  EXPECT_EQ(m_sample.attribute(u"a"), String(u"1&"));
  EXPECT_EQ(m_sample.attribute(u"b"), String(u"2"));
  EXPECT_EQ(m_sample.attribute(u"x:c"), String(u"3"));
  EXPECT_EQ(m_sample.attribute(u"empty"), String());
  EXPECT_EQ(m_sample.subElement(u"First").attribute(u"q"), String(u"z"));
}

TEST_F(XMLElementReadingTest, AnAttributeThatIsThereAlreadyStays) {
  m_sample.setAttribute(u"a", u"before");
  m_sample.decode("<Sample a='read'/>");
  EXPECT_EQ(m_sample.attribute(u"a"), String(u"before"));
}

TEST_F(XMLElementReadingTest, TextInPiecesIsJoined) {
  m_sample.decode("<Sample><String>a&amp;b<![CDATA[<c>]]><!-- no --><?no no?>&#233;\r\nd</String></Sample>");
  EXPECT_EQ(textValue(m_sample, u"Text"), String(u"a&b<c>\u00E9\nd"));
}

TEST_F(XMLElementReadingTest, AVeryLongTextArrivesWhole) {
  const std::string text(300000, 'x');
  m_sample.decode(("<Sample><String>" + text + "</String></Sample>").c_str());
  EXPECT_EQ(textValue(m_sample, u"Text").size(), text.size());
}

TEST_F(XMLElementReadingTest, WhiteSpaceBetweenElementsDoesNoHarm) {
  m_sample.decode("<?xml version='1.0'?>\n<Sample>\n  <Constant>1</Constant>\n\n  <String/>\n</Sample>\n");
  EXPECT_EQ(textValue(m_sample, u"First"), String(u"1"));
  EXPECT_EQ(encoded(m_sample), "<Sample><Constant>1</Constant><Constant/><String/></Sample>");
}

TEST_F(XMLElementReadingTest, ASecondDecodeWithoutResetIsRefusedAtTheFirstRepeatedSingle) {
  m_sample.decode("<Sample><Constant>1</Constant><Constant>2</Constant><Item>a</Item></Sample>");
  m_sample.decode("<Sample><Item>b</Item><Item>c</Item></Sample>");
  EXPECT_EQ(m_sample.numSubElements(u"Items"), 3u);
  EXPECT_EQ(m_sample.subElement(u"Items", 2).value(), String(u"c"));
  EXPECT_EQ(failureOfReading("<Sample><Constant>1</Constant><Constant>2</Constant></Sample>"),
            NOT_FOUND_IN_SAMPLE);
}

TEST_F(XMLElementReadingTest, ACopyKnowsWhatItsSourceHasMet) {
  m_sample.decode("<Sample><Constant>1</Constant></Sample>");
  XMLSample copy(m_sample);
  EXPECT_EQ(failureOf([&] { copy.decode("<Sample><Constant/><Constant/></Sample>"); }), NOT_FOUND_IN_SAMPLE);
}

TEST_F(XMLElementReadingTest, ARootNamedAsASubElementIsTakenForItAfterAResetToo) {
  m_sample.decode("<Constant>1</Constant>");
  EXPECT_EQ(textValue(m_sample, u"First"), String(u"1"));
  m_sample.reset();
  m_sample.decode("<Sample><String>text</String></Sample>");
  m_sample.reset();
  m_sample.decode("<Constant>2</Constant>");
  EXPECT_EQ(textValue(m_sample, u"First"), String(u"2"));
}

TEST_F(XMLElementReadingTest, AfterAResetASecondDocumentIsRead) {
  const char* text = "<Sample a='1'><Constant>1</Constant><Constant>2</Constant><Item>a</Item></Sample>";
  m_sample.decode(text);
  const std::string once = encoded(m_sample);
  m_sample.reset();
  m_sample.decode(text);
  EXPECT_EQ(encoded(m_sample), once);
}

TEST_F(XMLElementReadingTest, AFatalErrorTellsItsPlaceAndTheRoot) {
  EXPECT_EQ(failureOfReading("<Sample>\n<Constant>1</Constant"),
            String(u"XMLElement::decode, parse fatal error in Sample : Parse problem at line 2 column 22"));
  // Elements read before the error remain.
  EXPECT_EQ(textValue(m_sample, u"First"), String(u"1"));
}

TEST_F(XMLElementReadingTest, AnExceptionOfTheParseTellsItsText) {
  EXPECT_EQ(
      failureOfReading("<!DOCTYPE Sample [<!ENTITY e 'x'>]><Sample/>"),
      String(
          u"XMLElement::decode, parse exception in Sample : declarations in the document are not accepted"));
}

/// Throws an exception of the library during the parse.
template <class Failure>
class XMLFailing : public XMLElement {
public:
  explicit XMLFailing(const Failure& failure) : XMLElement(u"Failing"), m_failure(failure) {}
  void startDocument() override { throw m_failure; }

private:
  Failure m_failure;
};

template <class Failure>
String failureOfReadingWith(const Failure& failure) {
  XMLFailing<Failure> element(failure);
  return failureOf([&] { element.decode("<Failing/>"); });
}

TEST_F(XMLElementReadingTest, EveryExceptionOfTheLibraryIsAFailureWithOrWithoutAText) {
  const String head = u"XMLElement::decode, parse exception in Failing : ";
  EXPECT_EQ(failureOfReadingWith(xercesc::SAXException(u"why")), head + u"why");
  EXPECT_EQ(failureOfReadingWith(xercesc::SAXException()), head);
  EXPECT_EQ(failureOfReadingWith(xercesc::EndOfEntityException(nullptr, 0)), head + u"EndOfEntityException ");
  const xercesc::OutOfMemoryException noMemory;
  EXPECT_EQ(failureOfReadingWith(noMemory), head + noMemory.getMessage());
}

TEST_F(XMLElementReadingTest, EmptyTextsAreRefused) {
  EXPECT_TRUE(failureOfReading("").startsWith(u"XMLElement::decode, parse fatal error in Sample : "));
  EXPECT_TRUE(failureOf([&] {
                m_sample.decode(static_cast<const char*>(nullptr));
              }).startsWith(u"XMLElement::decode, parse fatal error in Sample : "));
}

TEST_F(XMLElementReadingTest, TheReaderServesAgainAfterAFailure) {
  failureOfReading("<Sample><Unknown/></Sample>");
  failureOfReading("<Sample><Item><Unknown/></Item></Sample>");
  failureOfReading("<Sample><Item>");
  failureOfReading("<!DOCTYPE Sample [<!ENTITY e 'x'>]><Sample/>");
  m_sample.reset();
  m_sample.decode("<Sample><Item>a</Item></Sample>");
  EXPECT_EQ(encoded(m_sample), "<Sample><Constant/><Constant/><Item>a</Item><String/></Sample>");
}

TEST_F(XMLElementReadingTest, AFailureInAChildLeavesNothingAfterItsDestruction) {
  failureOfReading("<Sample><Item><Unknown/></Item></Sample>");
  EXPECT_EQ(m_sample.removeSubElements(u"Items"), 1u);
  m_sample.reset();
  m_sample.decode("<Sample/>");
  EXPECT_EQ(m_sample.numSubElements(u"Items"), 0u);
}

TEST_F(XMLElementReadingTest, AChildCanReadADocumentOfItsOwn) {
  XMLElement& child = m_sample.addSubElement(XMLSample::item(), u"Items");
  child.decode("<Item>alone</Item>");
  EXPECT_EQ(child.value(), String(u"alone"));
  EXPECT_EQ(child.parent(), &m_sample);
  m_sample.reset();
  m_sample.decode("<Sample><Item>a</Item></Sample>");
  EXPECT_EQ(m_sample.subElement(u"Items").value(), String(u"a"));
}

TEST_F(XMLElementReadingTest, FilesAreReadByTheirUtf8Path) {
  TestProfile profile;
  const String path = profile.path("caf\xC3\xA9 \xE2\x82\xAC.xml");
  TestProfile::writeFile(path, "<Sample><Constant>1</Constant></Sample>");
  m_sample.decode(path);
  EXPECT_EQ(textValue(m_sample, u"First"), String(u"1"));
}

TEST_F(XMLElementReadingTest, AMissingFileOrAFolderIsAFailure) {
  TestProfile profile;
  for (const char* name : {"none.xml", ""})
    EXPECT_EQ(failureOf([&] { m_sample.decode(profile.path(name)); }),
              u"XMLElement::decode, parse fatal error in Sample : Parse problem at line 0 column 0")
        << name;
}

TEST_F(XMLElementReadingTest, OtherEncodingsAreReadByTheirDeclaration) {
  m_sample.decode("<?xml version='1.0' encoding='ISO-8859-1'?><Sample><String>caf\xE9</String></Sample>");
  EXPECT_EQ(textValue(m_sample, u"Text"), String(u"caf\u00E9"));
}

} // namespace
} // namespace Tallymoor
