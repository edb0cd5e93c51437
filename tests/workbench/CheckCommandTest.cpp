#include "TestPaths.h"
#include "WorkbenchTest.h"
#include <gmock/gmock.h>
#include <regex>

namespace Tallymoor {
namespace {

const char* const PAGE =
    "<html><body>\n<table id=q><tr><th>Last Trade: </th><td class=p>3.42</td><td>3.40</td>"
    "</tr></table><p>Delayed<ul></ul></body></html>";

class CheckCommandTest : public WorkbenchTest {
protected:
  Result check(const std::string& steps, const std::string& page = PAGE) const {
    return run({"check", quoteDocument(steps), "--page", write("page.html", page)});
  }
  Result checkHistory(const std::string& rows,
                      const std::vector<std::string>& columns = {"Date", "Close", "High", "Low", "Volume"},
                      int firstRow = 0) const {
    const std::string page = write("page.html", "<html><table>" + rows + "</table></html>");
    return run({"check", historyDocument(columns, firstRow), "--page", page});
  }
  static std::string row(const std::vector<std::string>& cells) {
    std::string text = "<tr>";
    for (const std::string& cell : cells)
      text += "<td>" + cell + "</td>";
    return text + "</tr>";
  }
  const std::string m_toTable = in("body") + in("table");
};

// --- The document

TEST_F(CheckCommandTest, TellsTheKindOfADocument) {
  const std::string defaults = TALLYMOOR_SAMPLES "/../assets/defaults/Config/";
  EXPECT_TRUE(run({"check", defaults + "CurrentPriceLocators.xml"}).says("for current prices, version 1"));
  EXPECT_TRUE(run({"check", defaults + "HistoricalPricesLocators.xml"}).says("for past prices, version 1"));
  const Result search = run({"check", defaults + "CodeSearchLocators.xml"});
  EXPECT_TRUE(search.says("for searches for stock codes, version 1"));
  EXPECT_TRUE(search.says("Address: http://127.0.0.1:8317/search?s=CODE&t=S&m=ALL\n"));
  EXPECT_TRUE(search.says("No page to test: give"));
  EXPECT_EQ(search.status, 0);
}

TEST_F(CheckCommandTest, BuildsTheAddressOfPastPricesAsTheProgramDoes) {
  const Result result =
      run({"check", TALLYMOOR_SAMPLES "/../assets/defaults/Config/HistoricalPricesLocators.xml"});
  EXPECT_TRUE(result.says("Rows on a page: at most 250"));
  // 250 trading days are 350 calendar days, less five, because the range ends today. Months count from 0.
  EXPECT_TRUE(result.says("history?s=CODE&a=2&b=23&c=2025&d=2&e=3&f=2026\n")) << result.out;
}

TEST_F(CheckCommandTest, RefusesWhatIsNoLocatorDocument) {
  const Result other = run({"check", write("x.xml", "<Portfolios><A/></Portfolios>")});
  EXPECT_EQ(other.status, 1);
  EXPECT_TRUE(other.complains("this is not a locator document. Its root is \"Portfolios\"")) << other.errors;
  const Result text = run({"check", write("x.xml", "hello")});
  EXPECT_EQ(text.status, 1);
  EXPECT_TRUE(text.complains("this is not valid XML")) << text.errors;
  EXPECT_TRUE(text.complains("Parse problem at line 1 column 1")) << text.errors;
}

TEST_F(CheckCommandTest, NamesTheLineWhereADocumentBreaksTheForm) {
  const std::string head = "<CurrentPriceLocators active=\"a\" version=\"1\">\n<CurrentPrice domain=\"a\">\n"
                           "<URLLocator><URLPart>http://x.example/</URLPart></URLLocator>\n";
  const std::string foot = "</CurrentPrice>\n</CurrentPriceLocators>\n";
  const auto complaint = [&](const std::string& body) {
    const Result result = run({"check", write("x.xml", head + body + foot)});
    EXPECT_EQ(result.status, 1);
    return result.errors;
  };
  EXPECT_THAT(complaint("<TagLocator>\n<TagMove move=\"In\" name=\"b\"/>\n</TagLocator>\n"),
              ::testing::AllOf(::testing::HasSubstr("is invalid at line 5."),
                               ::testing::HasSubstr("unexpected element in TagLocator")));
  EXPECT_THAT(complaint("<TagLocator><TagFind>\n<TagMove move=\"In\"/>\n</TagFind></TagLocator>\n"),
              ::testing::AllOf(::testing::HasSubstr("at line 5."),
                               ::testing::HasSubstr("lacks a required attribute"),
                               ::testing::HasSubstr("missing attribute name in TagMove")));
  EXPECT_THAT(complaint("<TagLocator>\n\n<TagFind>\n</TagFind></TagLocator>\n"),
              ::testing::AllOf(::testing::HasSubstr("at line 7."),
                               ::testing::HasSubstr("neither a TagSearch nor a TagMove")));
  EXPECT_THAT(complaint("<TagLocator><TagFind><TagSearch tagname=\"a\" val=\"x\"/>\n<TagMove move=\"In\" "
                        "name=\"b\"/></TagFind></TagLocator>\n"),
              ::testing::AllOf(::testing::HasSubstr("at line 5."),
                               ::testing::HasSubstr("contains a TagSearch and a TagMove")));
  EXPECT_THAT(
      complaint("<TagLocator/>\n"),
      ::testing::AllOf(::testing::HasSubstr("at line 4."), ::testing::HasSubstr("lacks a required element")));
}

TEST_F(CheckCommandTest, ARootThatIsOnlyAPartOfADocumentIsRefused) {
  const Result result = run({"check", write("x.xml", "<CurrentPrice domain=\"a\"/>")});
  EXPECT_EQ(result.status, 1);
  EXPECT_TRUE(result.complains("this is not a locator document. Its root is \"CurrentPrice\""));
}

TEST_F(CheckCommandTest, ChecksTheSourceInUseOrTheOneNamed) {
  const std::string two =
      "<CurrentPriceLocators active=\"b\" version=\"7\">"
      "<CurrentPrice domain=\"a\"><URLLocator><URLPart>http://a.example</URLPart></URLLocator>"
      "<TagLocator>" +
      in("p") +
      "</TagLocator></CurrentPrice>"
      "<CurrentPrice domain=\"b\"><URLLocator><URLPart>http://b.example</URLPart></URLLocator>"
      "<TagLocator>" +
      in("p") + "</TagLocator></CurrentPrice></CurrentPriceLocators>";
  const std::string document = write("two.xml", two);
  const Result inUse = run({"check", document});
  EXPECT_TRUE(inUse.says("Sources: \"a\", \"b\"; in use is \"b\"\n"));
  EXPECT_TRUE(inUse.says("Address: http://b.example\n"));
  EXPECT_TRUE(inUse.says("The program reads this kind of document from the file CurrentPriceLocators.xml"));
  EXPECT_TRUE(run({"check", document, "--domain", "a"}).says("Address: http://a.example\n"));
  const Result unknown = run({"check", document, "--domain", "c"});
  EXPECT_EQ(unknown.status, 1);
  EXPECT_TRUE(unknown.complains("the source \"c\" does not exist")) << unknown.errors;
  EXPECT_TRUE(unknown.complains("Its sources are: \"a\", \"b\""));
}

TEST_F(CheckCommandTest, AnActiveNameWithoutASourceIsTold) {
  const Result result = run({"check", write("x.xml", "<CodeSearchLocators active=\"gone\" version=\"1\"/>")});
  EXPECT_EQ(result.status, 1);
  EXPECT_TRUE(result.complains("its active source \"gone\" does not exist")) << result.errors;
  EXPECT_TRUE(result.complains("Its sources are: none"));
}

TEST_F(CheckCommandTest, AnAddressWithoutValueOrHostIsTold) {
  const std::string start =
      "<CurrentPriceLocators active=\"a\" version=\"1\"><CurrentPrice domain=\"a\"><URLLocator>";
  const std::string end =
      "</URLLocator><TagLocator>" + in("p") + "</TagLocator></CurrentPrice></CurrentPriceLocators>";
  const Result market = run({"check", write("x.xml", start + "<URLPart type=\"MarketCode\"/>" + end)});
  EXPECT_EQ(market.status, 1);
  EXPECT_TRUE(market.complains("a URLPart has the type MarketCode or DMY")) << market.errors;
  const Result none = run({"check", write("x.xml", start + "<URLPart>http://</URLPart>" + end)});
  EXPECT_EQ(none.status, 1);
  EXPECT_TRUE(none.complains("The parts of the address name no host")) << none.errors;
}

// --- The walk

TEST_F(CheckCommandTest, ShowsEachStepAndThePrice) {
  const Result result =
      check(search("tagname=\"table\" attr=\"id\" attrVal=\"q\"") + in("tr") + in("th") + down("td"));
  EXPECT_EQ(result.status, 0);
  EXPECT_TRUE(result.says("  1. search: <table> with id=\"q\"\n      reached <table id=\"q\">, 1 tag in it\n"
                          "  2. in: tr 0\n      reached <tr>, 3 tags in it\n"
                          "  3. in: th 0\n      reached <th> \"Last Trade:\"\n"
                          "  4. down: td 0\n      reached <td class=\"p\"> \"3.42\"\n"
                          "\nThe price: \"3.42\" reads as 3.4200\n"))
      << result.out;
}

TEST_F(CheckCommandTest, AMoveInThatFailsShowsWhatIsThere) {
  const Result result = check(m_toTable + in("tr") + in("td", 2));
  EXPECT_EQ(result.status, 1);
  EXPECT_TRUE(result.says("  4. in: td 2\n      STOPPED: <tr> has no td 2 directly in it. It has:\n"
                          "        th 0: <th> \"Last Trade:\"\n"
                          "        td 0: <td class=\"p\"> \"3.42\"\n"
                          "        td 1: <td> \"3.40\"\n"))
      << result.out;
  EXPECT_TRUE(result.says("tallymoor-locator find " + m_profile.folder() + "/page.html VALUE\n"));
  const Result empty = check(in("body") + in("ul") + in("li"));
  EXPECT_TRUE(empty.says("STOPPED: <ul> has no tags in it.\n")) << empty.out;
  EXPECT_FALSE(empty.says("never closed"));
  const Result unclosed = check(in("body") + in("p") + in("ul"));
  EXPECT_TRUE(unclosed.says("It is never closed, so the tags after it are its siblings: use a move \"Down\""))
      << unclosed.out;
}

TEST_F(CheckCommandTest, AMoveDownThatFailsShowsWhatFollows) {
  const Result result = check(m_toTable + in("tr") + in("td") + down("th"));
  EXPECT_TRUE(result.says("STOPPED: after <td class=\"p\"> there is no th 0 under the same parent. The tags "
                          "after it are:\n        td 0: <td> \"3.40\"\n"))
      << result.out;
  EXPECT_TRUE(check(m_toTable + down("td")).says("The tags after it are:\n        p 0: <p>"));
  EXPECT_TRUE(check(down("td")).says("The tags after it are:\n        nothing\n"));
}

TEST_F(CheckCommandTest, ASearchThatFailsShowsWhatIsNearest) {
  const Result text = check(search("tagname=\"th\" val=\"Last Trade:\""));
  EXPECT_EQ(text.status, 1);
  EXPECT_TRUE(text.says("The text and the tag's name must match exactly")) << text.out;
  EXPECT_TRUE(text.says("Similar tags are:\n        <th> \"Last Trade:\"\n")) << text.out;
  const Result name = check(search("tagname=\"td\" val=\"last trade: \""));
  EXPECT_TRUE(name.says("Similar tags are:\n        <th> \"Last Trade:\"\n")) << name.out;
  const Result attribute = check(search("tagname=\"td\" attr=\"id\" attrVal=\"p\""));
  EXPECT_TRUE(attribute.says("1. search: <td> with id=\"p\"\n      STOPPED: there is no such tag in <html>.\n"
                             "      The <td> tags are:\n        <td class=\"p\"> \"3.42\"\n"))
      << attribute.out;
  const Result none = check(search("tagname=\"TABLE\" attr=\"id\""));
  EXPECT_TRUE(none.says("There is no <TABLE> at all.")) << none.out;
}

TEST_F(CheckCommandTest, LongListsAreCut) {
  std::string many = "<html><body>";
  for (int i = 0; i < 40; ++i)
    many += "<b>x</b>";
  const Result result = check(in("body") + in("i"), many + "</body></html>");
  EXPECT_TRUE(result.says("b 14: <b> \"x\"\n        ... and 25 more\n")) << result.out;
}

TEST_F(CheckCommandTest, APriceThatIsNoneIsWrong) {
  const Result currency = check(in("b"), "<html><b>$3.42</b></html>");
  EXPECT_EQ(currency.status, 1);
  EXPECT_TRUE(currency.says("WRONG: \"$3.42\" can't be read as a number")) << currency.out;
  EXPECT_TRUE(currency.says("The program reads no price from it."));
  const Result comma = check(in("b"), "<html><b>12,30</b></html>");
  EXPECT_EQ(comma.status, 1);
  EXPECT_TRUE(comma.says("WRONG: \"12,30\" can't be read as a number")) << comma.out;
  const Result nothing = check(in("b"), "<html><b>0.00</b></html>");
  EXPECT_EQ(nothing.status, 1);
  EXPECT_TRUE(nothing.says("WRONG: this is not a price.")) << nothing.out;
}

TEST_F(CheckCommandTest, APriceWithoutTheFloatFormatIsWrong) {
  const Result result =
      run({"check", quoteDocument(in("b"), ""), "--page", write("p", "<html><b>1</b></html>")});
  EXPECT_EQ(result.status, 1);
  EXPECT_TRUE(result.says("STOPPED: the TagLocator must have format=\"Float\"")) << result.out;
}

// --- The page

TEST_F(CheckCommandTest, TellsWhatIsWrongWithAPage) {
  const auto complaint = [&](const std::string& page) {
    const Result result = check(in("b"), page);
    EXPECT_EQ(result.status, 1);
    return result.errors;
  };
  using ::testing::HasSubstr;
  EXPECT_THAT(complaint("date;close\n1;2\n"), HasSubstr("It contains no tags"));
  EXPECT_THAT(complaint(""), HasSubstr("HTMLParser::Parse - no tags found"));
  EXPECT_THAT(complaint("<p>x</p>"), HasSubstr("It has no <html> tag"));
  EXPECT_THAT(complaint("<html><script>x</Script></html>"),
              HasSubstr("A <script> has no </script> after it"));
  EXPECT_TRUE(check(in("b"), "<html><b>1</b>").says("never closed by </html>"));
  EXPECT_TRUE(check(in("b"), std::string("<html><b>1</b></html>\0x", 23)).says("it contains zero bytes"));
}

TEST_F(CheckCommandTest, WhatAPageHoldsIsHarmlessForATerminal) {
  const Result result = check(in("b"), "<html><b title=\"\x1B]0;x\x07\">\x1B[2J\xC2\x9B\xE2\x80\xAE"
                                       "1\r\n2</b></html>");
  EXPECT_EQ(result.out.find('\x1B'), std::string::npos);
  EXPECT_EQ(result.out.find('\x07'), std::string::npos);
  EXPECT_EQ(result.out.find('\r'), std::string::npos);
  EXPECT_EQ(result.out.find("\xC2\x9B"), std::string::npos);
  EXPECT_EQ(result.out.find("\xE2\x80\xAE"), std::string::npos);
  EXPECT_TRUE(result.says("\xEF\xBF\xBD[2J")) << result.out;
}

// --- Tables

TEST_F(CheckCommandTest, ShowsTheRowsThatArePassedOverAndWhy) {
  const Result result =
      checkHistory(row({"2-Mar-26", "1.50", "1.60", "1.40", "12,000"}) + row({"2-Mar-26", "", "", "", ""}) +
                   row({"", "1.50", "", "", ""}) + row({"5-Mar-26", "1.50", "1.60", "1.40", "1"}) +
                   row({"27-Feb-26", "1.45", "1.50", "1.41", "900"}));
  EXPECT_EQ(result.status, 0);
  EXPECT_TRUE(result.says("  1     2026/3/2    1.5000      1.6000      1.4000      12000\n"
                          "  2     skipped: its close is empty, as in the row of a dividend\n"
                          "  3     skipped: its date is empty\n"
                          "  4     skipped: its day 2026/3/5 is to come: the program asks about it\n"
                          "  5     2026/2/27   1.4500      1.5000      1.4100      900\n"
                          "5 rows: 2 read, 3 skipped.\n"))
      << result.out;
}

TEST_F(CheckCommandTest, ARowThatLacksACellIsNamed) {
  const Result result = checkHistory(row({"2-Mar-26", "1.50", "1.60", "1.40", "12,000"}) +
                                     "<tr><td>27-Feb-26</td><td colspan=4>Dividend</td></tr>");
  EXPECT_EQ(result.status, 1);
  EXPECT_TRUE(result.says(
      "Row 2, <tr>, 2 tags in it, has no cell for High. One row that lacks a cell makes the "
      "whole table unreadable.\n  1. in: td 2\n      STOPPED: <tr> has no td 2 directly in it. It "
      "has:\n        td 0: <td> \"27-Feb-26\"\n        td 1: <td colspan=\"4\"> \"Dividend\"\n"))
      << result.out;
  EXPECT_TRUE(result.says("\nIf the row belongs to the table, no document can read this page. Many sources"));
  EXPECT_TRUE(result.says("tallymoor-locator table "));
}

TEST_F(CheckCommandTest, ADateThatCannotBeReadIsNamed) {
  const Result result = checkHistory(row({"2-Mar-26", "1.50", "1.60", "1.40", "1"}) +
                                     row({"27/02/2026", "1.45", "1.5", "1.4", "1"}));
  EXPECT_EQ(result.status, 1);
  EXPECT_TRUE(result.says("  2     STOPPED: Date::fromString - no separator: 27/02/2026\n"
                          "  A date must look like 3-Mar-06, and a price like 1,234.50."))
      << result.out;
}

TEST_F(CheckCommandTest, ACloseOfNothingIsWrong) {
  const Result result = checkHistory(row({"2-Mar-26", "0.00", "1.60", "1.40", "1.2x"}));
  EXPECT_EQ(result.status, 1);
  EXPECT_TRUE(result.says("<- WRONG: a close of zero")) << result.out;
  EXPECT_TRUE(result.says("Note:\n  row 1, Volume: \"1.2x\" can't be read as a number")) << result.out;
}

TEST_F(CheckCommandTest, ACloseThatIsNoNumberIsNamed) {
  const Result result = checkHistory(row({"2-Mar-26", "A$1.50", "1.60", "1.40", "1"}));
  EXPECT_EQ(result.status, 1);
  EXPECT_TRUE(result.says("STOPPED: TallymoorInternet - no number: A$1.50")) << result.out;
  EXPECT_TRUE(result.says("Note:\n  row 1, Close: \"A$1.50\" can't be read as a number")) << result.out;
}

TEST_F(CheckCommandTest, AShortRowThatLeadsIntoTheNextIsWrong) {
  const std::string flat = "<table><tr><td>2-Mar-26</td><td>Dividend</td><tr><td>27-Feb-26</td><td>1.5</td>"
                           "<td>1.6</td></table>";
  std::string document = readTestFile(historyDocument({"Date", "Close", "High", "Low", "Volume"}));
  document = std::regex_replace(document, std::regex("<TagMove move=\"In\" name=\"td\""),
                                "<TagMove move=\"Down\" name=\"td\"");
  document = std::regex_replace(document, std::regex("index=\"[34]\""), "index=\"2\"");
  const Result result =
      run({"check", write("h.xml", document), "--page", write("p.html", "<html>" + flat + "</html>")});
  EXPECT_EQ(result.status, 1);
  EXPECT_TRUE(result.says(
      "WRONG: Row 1, <tr>, empty, is too short: the cell read as its High belongs to the next row."))
      << result.out;
}

TEST_F(CheckCommandTest, MissingColumnsAreNamed) {
  const Result result = checkHistory(row({"2-Mar-26", "1.50"}), {"Date", "Close"});
  EXPECT_EQ(result.status, 1);
  EXPECT_TRUE(result.says("STOPPED: the program also needs columns of these types: High, Low, Volume\n"));
}

TEST_F(CheckCommandTest, AColumnThatFailsInTheFirstRowIsTraced) {
  const Result result = checkHistory("<tr><th>2-Mar-26</th></tr>");
  EXPECT_TRUE(result.says("  Date       in: td 0\n    1. in: td 0\n        STOPPED: <tr> has no td 0"))
      << result.out;
}

TEST_F(CheckCommandTest, LongTablesAreCutUnlessAllIsWanted) {
  std::string rows;
  for (int i = 1; i <= 28; ++i)
    rows += row({std::to_string(i) + "-Jan-26", "1.5", "1.6", "1.4", "9"});
  const Result cut = checkHistory(rows);
  EXPECT_EQ(cut.status, 0);
  EXPECT_TRUE(cut.says("... and 16 rows more; --all shows them\n28 rows: 28 read, 0 skipped.\n")) << cut.out;
  const Result all = run({"check", historyDocument({"Date", "Close", "High", "Low", "Volume"}), "--all",
                          "--page", write("page.html", "<html><table>" + rows + "</table></html>")});
  EXPECT_TRUE(all.says("  28    2026/1/28   1.5000"));
  EXPECT_FALSE(all.says("--all shows them"));
}

TEST_F(CheckCommandTest, ATableOfNothingIsNotRead) {
  EXPECT_EQ(checkHistory(row({"2-Mar-26", "", "", "", ""})).status, 1);
  const Result nowhere =
      run({"check", historyDocument({"Date"}), "--page", write("p.html", "<html><p></p></html>")});
  EXPECT_TRUE(nowhere.says("To the table\n  1. in: table 0\n      STOPPED: <html> has no table 0"))
      << nowhere.out;
  const Result rowless = run({"check", historyDocument({"Date"}, 3), "--page",
                              write("p.html", "<html><table>" + row({"x"}) + "</table></html>")});
  EXPECT_TRUE(
      rowless.says("From the table to its first row\n  1. in: tr 3\n      STOPPED: <table> has no tr 3"))
      << rowless.out;
}

TEST_F(CheckCommandTest, OddNumbersOfEntriesAreTold) {
  const Result result = run({"check", historyDocument({"Date"}, 0, "many")});
  EXPECT_TRUE(result.says("Note: with this number the program fetches one day at a time.")) << result.out;
}

TEST_F(CheckCommandTest, EachPageOfASearchHasItsOwn) {
  const std::string detail = "<CodeSearchDetail><URLLocator><URLPart>http://a.example/</URLPart><URLPart "
                             "type=\"Code\"/></URLLocator><TableLocator><TagLocator>" +
                             in("table") + "</TagLocator><TagLocator>" + in("tr") +
                             "</TagLocator><TagLocator type=\"Code\">" + in("td") +
                             "</TagLocator><TagLocator type=\"StockName\">" + in("td", 1) +
                             "</TagLocator><TagLocator type=\"MarketName\">" + in("td", 2) +
                             "</TagLocator></TableLocator></CodeSearchDetail>";
  const std::string document =
      write("CodeSearchLocators.xml", "<CodeSearchLocators active=\"a\" version=\"1\">"
                                      "<CodeSearch domain=\"a\">" +
                                          detail + detail + "</CodeSearch></CodeSearchLocators>");
  const auto page = [&](const std::string& code) {
    return write(code + ".html", "<html><table>" + row({code, "Name", "N/A"}) + "</table></html>");
  };
  const Result both = run({"check", document, "--page", page("A.AX"), "--page", page("B.SW")});
  EXPECT_EQ(both.status, 0);
  EXPECT_TRUE(both.says("Search page 1 of 2\n"));
  EXPECT_TRUE(both.says("\"A.AX\", \"Name\", \"Australia\""));
  EXPECT_TRUE(both.says("\"B.SW\", \"Name\", \"Switzerland\""));
  const Result one = run({"check", document, "--page", page("A.AX")});
  EXPECT_TRUE(one.says("No page to test: give"));
  EXPECT_EQ(run({"check", document, "--page", page("A.AX"), "--page", page("")}).status, 1)
      << "nothing is found";
}

} // namespace
} // namespace Tallymoor
