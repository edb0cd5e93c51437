#include "analysis/ReportFiles.h"
#include "ReportTest.h"
#include "foundation/FileOperations.h"
#include "market/StockNames.h"
#include <cerrno>
#include <gmock/gmock.h>
#include <libxml/parser.h>
#include <libxml/valid.h>

namespace Tallymoor {
namespace {

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

/// Restores the system calls at the end of a scope.
struct FileOperationsScope {
  ~FileOperationsScope() { FileOperations::current() = FileOperations::system(); }
};

using XmlDocument = std::unique_ptr<xmlDoc, decltype(&xmlFreeDoc)>;

/// Null if the text is not well-formed XML.
XmlDocument parsed(const std::string& text) {
  return {xmlReadMemory(text.data(), int(text.size()), nullptr, nullptr,
                        XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING),
          &xmlFreeDoc};
}

class ReportFilesTest : public ReportTest {
protected:
  String write(XMLReport& report) { return writeReportFiles(report, u"Report test"); }
  std::string pageOf(XMLReport& report) { return TestProfile::readFile(write(report)); }
  std::string document() const { return TestProfile::readFile(folder() + u"Report test.xml"); }
  String folder() const { return m_profile.reportFolder(); }
  String stylesheet() const { return folder() + u"Tallymoor Report.xsl"; }
};

TEST_F(ReportFilesTest, TheDocumentNamesItsStylesheetAndType) {
  trade();
  write(*january());
  EXPECT_THAT(document(), StartsWith("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                                     "<?xml-stylesheet type='text/xsl' href='file:\\\\" +
                                     folder().toUTF8() + "Tallymoor%20Report.xsl'?>\n" +
                                     "<!DOCTYPE Report SYSTEM \"Tallymoor Report.dtd\">\n<Report "));
}

TEST_F(ReportFilesTest, TheDocumentIsOfItsType) {
  trade();
  XMLSharePortfolio second;
  second.subElement(u"Name").setValue(u"Second");
  SharePortfolioUser other(second, gatewayPrices());
  other.creditCash(Date(2026, 1, 20), 930, CASH_EVENT_DEPOSIT, u"DEPOSIT ");
  write(*report({&user(), &other}, {Date(2025, 12, 1), Date(2026, 2, 28)}, u"Report",
                [](const Portfolios&, const ReportPeriod&) { return String(u"<svg/>"); }));
  const XmlDocument report = parsed(document());
  ASSERT_TRUE(report);
  const String type = m_profile.path("type.dtd"); // A URL without blanks.
  TestProfile::writeFile(type, TestProfile::readFile(folder() + u"Tallymoor Report.dtd"));
  const std::unique_ptr<xmlDtd, decltype(&xmlFreeDtd)> dtd(
      xmlParseDTD(nullptr, BAD_CAST type.toUTF8().c_str()), &xmlFreeDtd);
  ASSERT_TRUE(dtd);
  const std::unique_ptr<xmlValidCtxt, decltype(&xmlFreeValidCtxt)> context(xmlNewValidCtxt(),
                                                                           &xmlFreeValidCtxt);
  EXPECT_EQ(xmlValidateDtd(context.get(), report.get(), dtd.get()), 1);
}

TEST_F(ReportFilesTest, ThePageShowsNamesAndComments) {
  trade();
  StockNames::remember(u"ABC.AX", u"Alpha & Co");
  user().buyShares(u"ABC.AX", {Date(2026, 2, 12), 10, 20, 20, u"on a <tip>"});
  const std::string page = pageOf(*report({Date(2026, 1, 1), Date(2026, 2, 28)}));
  EXPECT_TRUE(parsed(page));
  std::size_t names = 0;
  for (std::size_t at = page.find("Alpha &amp; Co"); at != std::string::npos;
       at = page.find("Alpha &amp; Co", at + 1))
    ++names;
  EXPECT_EQ(4u, names) << "held, sold, and two dividends";
  EXPECT_THAT(page, HasSubstr("on a &lt;tip&gt;"));
}

TEST_F(ReportFilesTest, ThePageIsWellFormedAndShowsTheFigures) {
  trade();
  const auto report =
      ReportTest::report({&user()}, {Date(2026, 1, 1), Date(2026, 2, 28)}, u"Report for last month");
  const std::string page = pageOf(*report);
  EXPECT_TRUE(parsed(page));
  for (const char* text :
       {"<h1>Report for last month</h1>", "01/01/2026 to 28/02/2026", "<h2>Trading</h2>",
        "Shares held on 28/02/2026", "<td>152.00</td>", "<td>$985.00</td>", "<td>197.00%</td>",
        "<td>$30.00</td>", "2.00 shares at 25.0000", "<td>$7.50</td>", "$100.00 paid out, $50.00 reinvested",
        "$500.00 deposited, $62.34 withdrawn", "Made by Tallymoor on 03/03/2026."})
    EXPECT_THAT(page, HasSubstr(text));
  EXPECT_THAT(page, HasSubstr("charset=UTF-8"));
  EXPECT_THAT(page, Not(HasSubstr("$REPORTDIR$")));
  EXPECT_THAT(page, HasSubstr(folder().toUTF8()));
}

TEST_F(ReportFilesTest, SectionsWithoutRowsSayThatThereIsNothing) {
  user().creditCash(Date(2026, 1, 10), 100, CASH_EVENT_DEPOSIT, u"DEPOSIT ");
  const std::string page = pageOf(*january());
  for (const char* text : {"No shares were held.", "No shares were sold.", "No dividends were received.",
                           "No interest was received."})
    EXPECT_THAT(page, HasSubstr(text));
}

TEST_F(ReportFilesTest, MarkupInNamesComesOutAsText) {
  trade();
  m_portfolio.subElement(u"Name").setValue(u"<i>R&D</i> \"x\" 'y'");
  user().creditCash(Date(2026, 1, 28), 1, CASH_EVENT_INTEREST, u"</td><script>alert(1)</script>");
  setPrices(u"A<B>&C", Date(2026, 1, 6), m_today, 2);
  user().addBuyEvent(u"A<B>&C", {Date(2026, 1, 6), 10, 2, 0, String()});
  const auto report = ReportTest::report({&user()}, {Date(2026, 1, 1), Date(2026, 2, 28)}, u"Report");
  const std::string page = pageOf(*report);
  EXPECT_TRUE(parsed(page));
  EXPECT_THAT(page, HasSubstr("<h2>&lt;i&gt;R&amp;D&lt;/i&gt; \"x\" 'y'</h2>"));
  EXPECT_THAT(page, HasSubstr("&lt;/td&gt;&lt;script&gt;alert(1)&lt;/script&gt;"));
  EXPECT_THAT(page, HasSubstr("A&lt;B&gt;&amp;C"));
  EXPECT_THAT(page, HasSubstr("&lt;b&gt;\"Take\" &amp; 'run'&lt;/b&gt;"));
  EXPECT_THAT(page, HasSubstr("New &lt;Zealand&gt;"));
  EXPECT_THAT(page, Not(HasSubstr("<script")));
}

TEST_F(ReportFilesTest, AChartStandsInThePageAsItWasDrawn) {
  trade();
  const String svg = u"<svg xmlns=\"http://www.w3.org/2000/svg\"><text>A &amp; B</text></svg>";
  const auto report = ReportTest::report({&user()}, m_january, u"Report",
                                         [&](const Portfolios&, const ReportPeriod&) { return svg; });
  const std::string page = pageOf(*report);
  EXPECT_TRUE(parsed(page));
  EXPECT_THAT(page, HasSubstr("<div class=\"chart\">" + svg.toUTF8() + "</div>"));
}

TEST_F(ReportFilesTest, TheSamePeriodReplacesItsFiles) {
  trade();
  write(*january());
  user().creditCash(Date(2026, 1, 28), 1, CASH_EVENT_INTEREST, u"INTEREST added");
  EXPECT_EQ(write(*january()), folder() + u"Report test.html");
  EXPECT_THAT(TestProfile::readFile(folder() + u"Report test.html"), HasSubstr("INTEREST added"));
  EXPECT_THAT(document(), HasSubstr("INTEREST added"));
}

TEST_F(ReportFilesTest, TheUsersOwnStylesheetIsUsed) {
  trade();
  TestProfile::writeFile(stylesheet(),
                         "<x:stylesheet version='7' xmlns:x='http://www.w3.org/1999/XSL/Transform'>"
                         "<x:template match='/'><mine at='$REPORTDIR$'>$REPORTDIR$</mine></x:template>"
                         "</x:stylesheet>");
  EXPECT_THAT(pageOf(*january()),
              HasSubstr("<mine at=\"" + folder().toUTF8() + "\">" + folder().toUTF8() + "</mine>"));
}

TEST_F(ReportFilesTest, ABrokenStylesheetIsReportedAndTheFiguresAreKept) {
  trade();
  TestProfile::writeFile(stylesheet(), "<xsl:stylesheet version='1'");
  const String message = messageOf([&] { write(*january()); });
  EXPECT_THAT(message.toUTF8(), StartsWith("The stylesheet of the report can't be read:\n"));
  EXPECT_THAT(message.toUTF8(),
              HasSubstr("\nThe figures of the report are in\n" + folder().toUTF8() + "Report test.xml"));
  EXPECT_TRUE(parsed(document()));
  EXPECT_FALSE(TestProfile::fileExists(folder() + u"Report test.html"));
}

TEST_F(ReportFilesTest, AFolderInPlaceOfTheStylesheetIsReported) {
  trade();
  std::filesystem::create_directories(stylesheet().toUTF8());
  EXPECT_THAT(messageOf([&] { write(*january()); }).toUTF8(),
              StartsWith("The stylesheet of the report can't be read:\n" + stylesheet().toUTF8()));
}

TEST_F(ReportFilesTest, AFullDiskLeavesTheOldFiles) {
  trade();
  write(*january());
  const std::string before = document();
  const FileOperationsScope scope;
  FileOperations::current().write = [](int, const void*, size_t) -> ssize_t {
    errno = ENOSPC;
    return -1;
  };
  user().creditCash(Date(2026, 1, 28), 1, CASH_EVENT_INTEREST, u"INTEREST added");
  EXPECT_THAT(messageOf([&] { write(*january()); }).toUTF8(), HasSubstr("Report test.xml"));
  FileOperations::current() = FileOperations::system();
  EXPECT_EQ(document(), before);
}

} // namespace
} // namespace Tallymoor
