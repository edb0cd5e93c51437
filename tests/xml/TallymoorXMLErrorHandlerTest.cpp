#include "xml/TallymoorXMLErrorHandler.h"
#include "XmlTestTools.h"
#include <xercesc/sax/SAXParseException.hpp>

namespace Tallymoor {
namespace {

xercesc::SAXParseException problemAt(XMLFileLoc line, XMLFileLoc column) {
  XMLString(); // Initialises the library.
  return xercesc::SAXParseException(u"the parser's own words", u"", u"", line, column);
}

TEST(TallymoorXMLErrorHandlerTest, TheLastProblemOfAKindIsThrown) {
  TallymoorXMLErrorHandler handler;
  handler.warning(problemAt(1, 2));
  handler.warning(problemAt(70, 80));
  EXPECT_EQ(failureOf([&] { handler.throwIfAny(u"Root"); }),
            u"XMLElement::decode, parse warning in Root : Parse problem at line 70 column 80");
}

TEST(TallymoorXMLErrorHandlerTest, NothingIsThrownAfterAReset) {
  TallymoorXMLErrorHandler handler;
  handler.warning(problemAt(1, 2));
  handler.error(problemAt(3, 4));
  handler.fatalError(problemAt(5, 6));
  handler.resetErrors();
  EXPECT_NO_THROW(handler.throwIfAny(u"Root"));
}

TEST(TallymoorXMLErrorHandlerTest, AnErrorIsThrownBeforeAFatalOneAndBothBeforeAWarning) {
  TallymoorXMLErrorHandler handler;
  handler.throwIfAny(u"Root");
  handler.warning(problemAt(1, 2));
  EXPECT_EQ(failureOf([&] { handler.throwIfAny(u"Root"); }),
            u"XMLElement::decode, parse warning in Root : Parse problem at line 1 column 2");
  handler.fatalError(problemAt(5, 6));
  EXPECT_EQ(failureOf([&] { handler.throwIfAny(u"Root"); }),
            u"XMLElement::decode, parse fatal error in Root : Parse problem at line 5 column 6");
  handler.error(problemAt(3, 4));
  EXPECT_EQ(failureOf([&] { handler.throwIfAny(u"Root"); }),
            u"XMLElement::decode, parse error in Root : Parse problem at line 3 column 4");
}

} // namespace
} // namespace Tallymoor
