#include "xml/StylesheetTransform.h"
#include "foundation/Exception.h"
#include "support/MessageOf.h"
#include "support/TestHttpServer.h"
#include "support/TestProfile.h"
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Tallymoor {
namespace {

using testing::HasSubstr;
using testing::Not;

/// A stylesheet with this version, content and further attributes.
std::string stylesheet(const std::string& inside, const std::string& attributes = "",
                       const std::string& version = "1") {
  return "<?xml version='1.0' encoding='UTF-8'?><xsl:stylesheet version='" + version + "' " + attributes +
         " xmlns:xsl='http://www.w3.org/1999/XSL/Transform'><xsl:output method='xml' encoding='UTF-8' "
         "omit-xml-declaration='yes'/>" +
         inside + "</xsl:stylesheet>";
}

std::string atRoot(const std::string& inside, const std::string& attributes = "") {
  return stylesheet("<xsl:template match='/'>" + inside + "</xsl:template>", attributes);
}

std::string failure(const std::string& stylesheetText, const std::string& document = "<Report/>") {
  return messageOf([&] { transformByStylesheet(stylesheetText, document); }).toUTF8();
}

TEST(StylesheetTransformTest, TheStylesheetTransformsTheDocument) {
  EXPECT_EQ(transformByStylesheet(atRoot("<p class='{Report/@kind}'><xsl:value-of select='Report/A'/></p>"),
                                  "<Report kind='&lt;x&gt;'><A>a &amp; \xC3\xA9</A></Report>"),
            "<p class=\"&lt;x&gt;\">a &amp; \xC3\xA9</p>\n");
}

TEST(StylesheetTransformTest, TheVersionCountsReleasesAndDoesNotChangeTheLanguage) {
  const std::string unknown = "<xsl:no-such-thing/><xsl:template match='/'><p/></xsl:template>";
  for (const char* version : {"1", "2", "37"})
    EXPECT_THAT(failure(stylesheet(unknown, "", version)), HasSubstr("no-such-thing")) << version;
  EXPECT_EQ(
      transformByStylesheet(stylesheet("<xsl:template match='/'><p/></xsl:template>", "", "12"), "<R/>"),
      "<p/>\n");
}

TEST(StylesheetTransformTest, AStylesheetThatIsNoXmlIsRefusedWithItsPlace) {
  const std::string message = failure("<xsl:stylesheet\n version='1'");
  EXPECT_THAT(message, HasSubstr("The stylesheet of the report can't be read:\n"));
  EXPECT_THAT(message, HasSubstr("line 2"));
  EXPECT_THAT(failure(""), HasSubstr("The stylesheet of the report can't be read"));
}

TEST(StylesheetTransformTest, AStylesheetWithAFaultIsRefusedInTheLibrarysWords) {
  const std::string message = failure(atRoot("<xsl:value-of select='(('/>"));
  EXPECT_THAT(message, HasSubstr("The stylesheet of the report can't be used:\n"));
  EXPECT_THAT(message, HasSubstr("(("));
}

TEST(StylesheetTransformTest, ADocumentThatIsNoXmlIsRefused) {
  EXPECT_THAT(failure(atRoot("<p/>"), "<Report>"), HasSubstr("The report can't be read:\n"));
}

TEST(StylesheetTransformTest, ARuntimeErrorIsAFailureWithTheStylesheetsMessage) {
  const std::string message = failure(atRoot("<p/><xsl:message terminate='yes'>no such luck</xsl:message>"));
  EXPECT_THAT(message, HasSubstr("The stylesheet of the report failed:\n"));
  EXPECT_THAT(message, HasSubstr("no such luck"));
}

TEST(StylesheetTransformTest, AnEmptyPageIsAFailure) {
  EXPECT_EQ(failure(atRoot("")), "The stylesheet of the report makes an empty page.");
}

TEST(StylesheetTransformTest, AMessageOfOneFailureIsNotRepeatedInTheNext) {
  failure(atRoot("<p/><xsl:message terminate='yes'>first</xsl:message>"));
  EXPECT_THAT(failure(atRoot("<p/><xsl:message terminate='yes'>second</xsl:message>")),
              Not(HasSubstr("first")));
}

TEST(StylesheetTransformTest, AnEndlessTransformationIsAFailure) {
  EXPECT_THAT(
      failure(stylesheet("<xsl:template match='/' name='a'><xsl:call-template name='a'/></xsl:template>")),
      HasSubstr("The stylesheet of the report failed"));
  // Exponential instead of deep: each level calls the next one twice.
  EXPECT_THAT(
      failure(stylesheet("<xsl:template match='/'><p/><xsl:call-template name='a'/></xsl:template>"
                         "<xsl:template name='a'><xsl:param name='n' select='0'/><xsl:if test='$n &lt; 200'>"
                         "<xsl:call-template name='a'><xsl:with-param name='n' select='$n + 1'/>"
                         "</xsl:call-template>"
                         "<xsl:call-template name='a'><xsl:with-param name='n' select='$n + 1'/>"
                         "</xsl:call-template></xsl:if></xsl:template>")),
      HasSubstr("The stylesheet of the report failed"));
}

/// Files and a server that a stylesheet must not access.
class StylesheetSecurityTest : public testing::Test {
protected:
  StylesheetSecurityTest() {
    TestProfile::writeFile(m_secret, "<secret>the password</secret>");
    TestProfile::writeFile(m_included, stylesheet("<xsl:template match='Report'>included</xsl:template>"));
    m_server.route("/x.xml", {200, "<secret>the password</secret>", "text/xml"});
  }

  void expectRefused(const std::string& text) {
    std::string result;
    const std::string message =
        messageOf([&] { result = transformByStylesheet(text, "<Report/>"); }).toUTF8();
    EXPECT_THAT(message, HasSubstr("The stylesheet of the report"));
    EXPECT_THAT(result, Not(HasSubstr("password")));
    EXPECT_TRUE(m_server.requests().empty());
  }

  TestProfile m_profile;
  TestHttpServer m_server;
  const String m_secret = m_profile.path("secret.xml");
  const String m_included = m_profile.path("included.xsl");
};

TEST_F(StylesheetSecurityTest, NoFileCanBeRead) {
  expectRefused(atRoot("<p><xsl:copy-of select=\"document('file:///etc/passwd')\"/></p>"));
  expectRefused(atRoot("<p><xsl:copy-of select=\"document('" + m_secret.toUTF8() + "')\"/></p>"));
  expectRefused(atRoot("<p><xsl:copy-of select=\"document('file://" + m_secret.toUTF8() + "')\"/></p>"));
}

TEST_F(StylesheetSecurityTest, NothingIsFetched) {
  expectRefused(atRoot("<p><xsl:copy-of select=\"document('" + m_server.url("/x.xml") + "')\"/></p>"));
}

TEST_F(StylesheetSecurityTest, NoOtherStylesheetIsTakenIn) {
  for (const char* how : {"include", "import"}) {
    const std::string start = std::string("<xsl:") + how + " href='";
    const std::string rest = "'/><xsl:template match='/'><p><xsl:apply-templates/></p></xsl:template>";
    for (const std::string& place :
         {m_included.toUTF8(), "file://" + m_included.toUTF8(), m_server.url("/x.xml")}) {
      const std::string text =
          "<xsl:stylesheet version='1' xmlns:xsl='http://www.w3.org/1999/XSL/Transform'>" + start + place +
          rest + "</xsl:stylesheet>";
      expectRefused(text);
    }
  }
}

TEST_F(StylesheetSecurityTest, NoFileOrFolderCanBeWritten) {
  const String target = m_profile.path("folder/out.xml");
  const std::string where = "'" + target.toUTF8() + "'";
  expectRefused(atRoot("<p><exsl:document href=" + where + "><q/></exsl:document></p>",
                       "xmlns:exsl='http://exslt.org/common' extension-element-prefixes='exsl'"));
  expectRefused(atRoot("<p><xsl:document href=" + where + "><q/></xsl:document></p>"));
  expectRefused(atRoot("<p><saxon:output file=" + where + "><q/></saxon:output></p>",
                       "xmlns:saxon='http://icl.com/saxon' extension-element-prefixes='saxon'"));
  EXPECT_FALSE(TestProfile::fileExists(target));
}

TEST_F(StylesheetSecurityTest, EntitiesAreNotLoaded) {
  const std::string type = "<!DOCTYPE Report [<!ENTITY e SYSTEM '" + m_secret.toUTF8() + "'>]>";
  EXPECT_THAT(
      transformByStylesheet(atRoot("<p><xsl:value-of select='Report'/></p>"), type + "<Report>&e;</Report>"),
      Not(HasSubstr("password")));
  EXPECT_EQ(transformByStylesheet(atRoot("<p/>"),
                                  "<!DOCTYPE Report SYSTEM '" + m_server.url("/x.xml") + "'><Report/>"),
            "<p/>\n");
  EXPECT_TRUE(m_server.requests().empty());
}

} // namespace
} // namespace Tallymoor
