#include "foundation/Exception.h"
#include "support/StringPrinting.h"
#include <gtest/gtest.h>

namespace Tallymoor {
namespace {

TEST(ExceptionTest, DescriptionIsTypeAndMessageForEveryClass) {
  EXPECT_EQ(Exception(u"a - b").description(), u"Exception : a - b");
  EXPECT_EQ(C_Exception(u"a - b").description(), u"C Exception : a - b");
  EXPECT_EQ(XMLException(u"a - b").description(), u"XMLException : a - b");
  EXPECT_EQ(HTTPException(u"a - b").description(), u"HTTPException : a - b");
  EXPECT_EQ(HTMLException(u"a - b").description(), u"HTMLException : a - b");
}

TEST(ExceptionTest, AnEmptyMessageEndsAfterTheColon) {
  EXPECT_EQ(Exception(u"").description(), u"Exception : ");
}

TEST(ExceptionTest, DescriptionReplacesWhatTheTextHeld) {
  String text = u"old";
  Exception(u"new").description(text);
  EXPECT_EQ(text, u"Exception : new");
}

TEST(ExceptionTest, IsMadeFromAnotherOnesMessage) {
  const Exception source(u"why");
  EXPECT_EQ(C_Exception(source).description(), u"C Exception : why");
  EXPECT_EQ(XMLException(source).description(), u"XMLException : why");
  EXPECT_EQ(HTMLException(source).description(), u"HTMLException : why");
  EXPECT_EQ(HTTPException(source, 404).description(), u"HTTPException : why");
}

TEST(ExceptionTest, HttpKeepsItsCode) {
  EXPECT_EQ(HTTPException(u"refused", 503).code(), 503u);
  EXPECT_EQ(HTTPException(u"no network").code(), 0u);
}

TEST(ExceptionTest, IsCaughtAsItsBaseAndKeepsItsType) {
  try {
    throw HTMLException(u"page");
  } catch (const Exception& e) {
    EXPECT_EQ(e.description(), u"HTMLException : page");
  }
}

} // namespace
} // namespace Tallymoor
