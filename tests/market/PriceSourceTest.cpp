#include "market/PriceSource.h"
#include "support/MessageOf.h"
#include "support/StringPrinting.h"
#include "support/TestProfile.h"
#include <gtest/gtest.h>

namespace Tallymoor {
namespace {

/// A source document whose single request is the given text.
std::string documentWith(const std::string& request) {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<PriceSource name=\"Test\"><Serves codes=\"*.AX\" "
         "currency=\"AUD\"/><Serves codes=\"^*\"/>" +
         request + "</PriceSource>\n";
}

const std::string HISTORY =
    R"(<History reader="csv" separator=";" skipLines="2" headings="no" dates="dd.MM.yyyy"
 timeZone="Europe/Berlin" decimal="," factor="0.01" currency="GBP" daysAPage="250"><Address> https://host/{CODE}?k={KEY}
 </Address><Header name="Accept">text/csv</Header><Column type="Date" at="1"/><Column type="Close" at="2"/>
 <Error at="$.error"/></History>)";

class PriceSourceDocument : public testing::Test {
protected:
  PriceSource read(const std::string& text) {
    TestProfile::writeFile(m_profile.path("Source.xml"), text);
    return PriceSource::fromFile(m_profile.path("Source.xml"));
  }
  /// Without the name of the file.
  String failureOf(const std::string& text) {
    const String head = m_profile.path("Source.xml") + u": ";
    const String message = messageOf([&] { read(text); });
    return message.startsWith(head) ? message.substr(head.size()) : message;
  }

private:
  TestProfile m_profile;
};

/// The text with the first occurrence of a part replaced.
std::string changed(std::string text, const std::string& part, const std::string& by) {
  const std::size_t at = text.find(part);
  EXPECT_NE(at, std::string::npos) << part;
  return at == std::string::npos ? text : text.replace(at, part.size(), by);
}

TEST_F(PriceSourceDocument, SaysAllThatTheDocumentHolds) {
  const PriceSource source = read(
      changed(changed(documentWith(HISTORY), "<History",
                      "<Terms link=\"https://host/terms\"> For private use. </Terms><Limits atOnce=\"3\" "
                      "perMinute=\"5\" perDay=\"25\"/><Key link=\"https://host/key\">By e-mail.</Key>"
                      "<TryCode>BHP.AX</TryCode><History"),
              "name=\"Test\"", "name=\"Test\" notTried=\"2026-11-22\""));
  EXPECT_EQ(source.name(), u"Test");
  EXPECT_EQ(source.notTried(), u"2026-11-22");
  EXPECT_EQ(source.terms(), u"For private use.");
  EXPECT_EQ(source.termsLink(), u"https://host/terms");
  EXPECT_EQ(source.limits().atOnce, 3u);
  EXPECT_EQ(source.limits().perMinute, 5u);
  EXPECT_EQ(source.limits().perDay, 25u);
  EXPECT_EQ(source.keyHint(), u"By e-mail.");
  EXPECT_EQ(source.keyLink(), u"https://host/key");
  EXPECT_EQ(source.tryCode(), u"BHP.AX");
  EXPECT_EQ(source.currentPrice(), nullptr);
  EXPECT_EQ(source.search(), nullptr);
  ASSERT_NE(source.history(), nullptr);
  EXPECT_EQ(source.history()->daysAPage, 250u);
  EXPECT_TRUE(source.needsKey());
  ASSERT_EQ(source.history()->headers.size(), 1u);
  EXPECT_EQ(source.history()->headers[0].first, u"Accept");
  EXPECT_EQ(source.history()->headers[0].second.fillPlainly({}), u"text/csv");
}

TEST_F(PriceSourceDocument, SaysHowAnswersAreRead) {
  const AnswerFormat format = read(documentWith(HISTORY)).history()->format;
  EXPECT_EQ(format.reader, AnswerReader::Csv);
  EXPECT_EQ(format.separator, ';');
  EXPECT_EQ(format.skipLines, 2u);
  EXPECT_FALSE(format.hasHeading);
  EXPECT_EQ(format.datePattern, u"dd.MM.yyyy");
  EXPECT_EQ(format.timeZone, u"Europe/Berlin");
  EXPECT_EQ(format.decimalSign, u',');
  EXPECT_EQ(format.factor, 0.01);
  EXPECT_FALSE(format.invert);
  EXPECT_EQ(format.currency, u"GBP");
  ASSERT_EQ(format.columns.size(), 2u);
  EXPECT_EQ(format.columns[1].column, AnswerColumn::Close);
  EXPECT_EQ(format.columns[1].place, u"2");
  EXPECT_EQ(format.errorPaths, std::vector<String>{u"$.error"});
}

TEST_F(PriceSourceDocument, ServesTheCodesOfItsPatterns) {
  const PriceSource source = read(documentWith(HISTORY));
  EXPECT_TRUE(source.serves(u"BHP.AX") && source.serves(u"bhp.ax") && source.serves(u"^AORD"));
  EXPECT_FALSE(source.serves(u"BHP.AXX") || source.serves(u"BHP"));
  EXPECT_EQ(source.currencyOf(u"BHP.AX"), u"AUD");
  EXPECT_EQ(source.currencyOf(u"^AORD"), u"");
}

TEST_F(PriceSourceDocument, RefusesValuesThatMeanNothing) {
  const std::string good = documentWith(HISTORY);
  struct Case {
    const char* part;
    const char* by;
    const char16_t* cause;
  };
  for (const Case& each : {Case{"\"csv\"", "\"xls\"", u"unknown reader: xls"},
                           Case{"\"Close\"", "\"Price\"", u"unknown column: Price"},
                           Case{"type=\"Date\"", "type=\"Open\"", u"History has no column Date"},
                           Case{"\";\"", "\";;\"", u"no separator of fields: ;;"},
                           Case{"\"2\" h", "\"-2\" h", u"no whole number: -2"},
                           Case{"\"no\"", "\"none\"", u"neither yes nor no: none"},
                           Case{"\"Europe/Berlin\"", "\"Berlin\"", u"unknown time zone: \"Berlin\""},
                           Case{"\",\"", "\"!\"", u"the decimal sign is neither \".\" nor \",\": !"},
                           Case{"\"0.01\"", "\"-1\"", u"a factor that is no number above 0: -1"},
                           Case{"{CODE}", "{CODES}",
                                u"The address https://host/{CODES}?k={KEY} has an unknown variable: {CODES}"},
                           Case{"$.error", "error", u"JSON path error does not begin with \"$\""}})
    EXPECT_EQ(failureOf(changed(good, each.part, each.by)), each.cause) << each.by;
  EXPECT_EQ(failureOf(documentWith("")), u"neither Current nor History");
}

TEST_F(PriceSourceDocument, RefusesADocumentWithoutItsParts) {
  EXPECT_TRUE(messageOf([&] { read("<PriceSource name=\"x\"/>"); }) != u"(nothing thrown)");
  EXPECT_TRUE(messageOf([&] { read("<Other/>"); }) != u"(nothing thrown)");
  EXPECT_TRUE(messageOf([&] { read(changed(documentWith(HISTORY), " at=\"2\"", "")); }) !=
              u"(nothing thrown)");
}

TEST_F(PriceSourceDocument, ANameIsNeededAndLongValuesAreCutInMessages) {
  for (const std::string& name : {std::string(), std::string("  "), std::string(101, 'n')})
    EXPECT_EQ(failureOf(changed(documentWith(HISTORY), "name=\"Test\"", "name=\"" + name + "\"")),
              u"a name of 1 to 100 characters is needed");
  const String message = failureOf(
      changed(documentWith(HISTORY), "reader=\"csv\"", "reader=\"" + std::string(5000, 'r') + "\""));
  EXPECT_TRUE(message.startsWith(u"unknown reader: rrr"));
  EXPECT_EQ(message.size(), 303u);
}

} // namespace
} // namespace Tallymoor
