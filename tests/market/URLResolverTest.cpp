#include "market/URLResolver.h"
#include "foundation/Exception.h"
#include "market/URLVariables.h"
#include "support/StringPrinting.h"
#include <cstdio>
#include <gtest/gtest.h>

namespace Tallymoor {
namespace {

const URLVariables VARIABLES(u"A&B", true, false, u"3", u"2", u"2006", u"31", u"11", u"2007");

String resolved(const char* parts, const URLVariablesProvider& variables = VARIABLES) {
  XMLURLLocator locator;
  locator.decode(("<URLLocator>" + std::string(parts) + "</URLLocator>").c_str());
  return URLResolver(&locator)(variables).whole();
}

TEST(URLResolver, JoinsLiteralPartsAndVariables) {
  EXPECT_EQ(resolved("<URLPart>http://h/q?x=1&amp;s=</URLPart><URLPart type=\"Code\">ignored</URLPart>"
                     "<URLPart type=\"NoSuch\">&amp;e=</URLPart>"),
            u"http://h/q?x=1&s=A%26B&e=");
}

TEST(URLResolver, FillsInEveryVariable) {
  EXPECT_EQ(resolved("<URLPart>h</URLPart><URLPart type=\"StartDay\"/><URLPart>.</URLPart>"
                     "<URLPart type=\"StartMonth\"/><URLPart>.</URLPart><URLPart type=\"StartYear\"/>"
                     "<URLPart>.</URLPart><URLPart type=\"EndDay\"/><URLPart>.</URLPart>"
                     "<URLPart type=\"EndMonth\"/><URLPart>.</URLPart><URLPart type=\"EndYear\"/>"
                     "<URLPart>.</URLPart><URLPart type=\"Country\"/><URLPart type=\"IndexOrShare\"/>"),
            u"h3.2.2006.31.11.2007.ALLS");
  EXPECT_EQ(resolved("<URLPart type=\"Country\"/><URLPart type=\"IndexOrShare\"/><URLPart type=\"EndYear\"/>",
                     URLVariables(u"x", false, true)),
            u"USI");
}

TEST(URLResolver, KeepsTextBeyondAscii) {
  EXPECT_EQ(resolved("<URLPart type=\"Code\"/>", URLVariables(u"M\u00FCller \u20AC", true, true)),
            u"M\u00FCller%20\u20AC");
}

TEST(URLResolver, FailsWithoutLocatorOrHost) {
  try {
    URLResolver(nullptr)(VARIABLES);
    ADD_FAILURE();
  } catch (const HTMLException& exception) {
    EXPECT_EQ(exception.message(), u"URLResolver::operator() - no locator");
  }
  EXPECT_THROW(resolved("<URLPart>http://</URLPart>"), HTTPException);
}

TEST(URLResolver, FailsForVariablesThatNoRequestHas) {
  const std::pair<const char*, String> cases[] = {
      {"<URLPart type=\"MarketCode\"/>", u"URLVariables::urlVariable - bad variable: 2"},
      {"<URLPart type=\"DMY\"/>", u"URLVariables::urlVariable - bad variable: 9"}};
  for (const auto& [part, message] : cases)
    try {
      resolved(part);
      ADD_FAILURE() << part;
    } catch (const HTMLException& exception) {
      EXPECT_EQ(exception.message(), message);
    }
}

TEST(URLResolver, EncodesExactlyTheBytesThatHaveAMeaning) {
  const std::string encoded = " \"#$%&+,/:;<=>?@";
  for (int byte = 0; byte < 256; ++byte) {
    const std::string text(1, static_cast<char>(byte));
    char expected[8];
    std::snprintf(expected, sizeof expected, "%%%X", static_cast<unsigned>(byte));
    EXPECT_EQ(URLResolver::percentEncode(text), encoded.find(text) == std::string::npos ? text : expected)
        << byte;
  }
  EXPECT_EQ(URLResolver::percentEncode("a b%41."), "a%20b%2541.");
}

} // namespace
} // namespace Tallymoor
