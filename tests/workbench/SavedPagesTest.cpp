#include "TestPaths.h"
#include "WorkbenchTest.h"
#include "foundation/Constants.h"
#include "market/DataSource.h"
#include "market/LocatorSet.h"
#include <algorithm>
#include <filesystem>
#include <iostream>
#include <regex>

namespace Tallymoor {
namespace {

/// A saved page, its values, and the texts for which a user asks for proposals. A price has one line. A day
/// has date, close, high, low and volume. A match of a search has code, name and market.
struct SavedPage {
  std::string name;
  std::vector<std::string> values;
  std::vector<std::string> example;

  bool isQuote() const { return name.starts_with("quote"); }
  bool isHistory() const { return name.starts_with("history"); }
};

const std::vector<SavedPage> PAGES{
    {"quote-frames", {"1234.5000"}, {"1,234.50"}},
    {"quote-definition-list", {"7.1150"}, {"7.115"}},
    {"quote-unclosed", {"0.0850"}, {"0.085"}},
    {"quote-div-grid", {"2.1900"}, {"2.190"}},
    {"quote-latin1", {"45.3000"}, {"45.30"}},
    {"quote-script", {"3.4200"}, {"3.42"}},
    {"quote-entities", {"12.3400"}, {"12.34 AUD"}},
    {"history-thead",
     {"2026/2/27 11.4200 11.4800 11.1500 1204300", "2026/2/26 11.1800 11.3500 11.0200 987015",
      "2026/2/25 11.2900 11.3100 11.0100 1530992"},
     {"26-Feb-26", "11.30", "11.35", "11.02", "11.18", "987,015"}},
    {"history-uppercase",
     {"1999/12/31 1015.2500 1020.5000 1001.0000 4100", "1999/12/30 1009.7500 1011.0000 998.0000 3900"},
     {"30-Dec-99", "1,000.0", "1,011.0", "998.0", "1,009.75", "3,900", "504.875"}},
    {"history-unclosed",
     {"2026/3/2 0.2350 0.2400 0.2250 51000", "2026/2/27 0.2300 0.2300 0.2200 0",
      "2026/2/26 0.2200 0.2250 0.2150 120500"},
     {"27-Feb-26", "0.220", "0.230", "0.220", "0.230", "0"}},
    {"history-closed-cells",
     {"2026/3/3 55.1000 55.8000 54.9500 10010", "2026/3/2 54.9000 55.2500 54.1000 9876",
      "2026/2/27 54.0000 54.4500 53.8000 12345"},
     {"Date=2-Mar-26", "Close=54.90", "High=55.25", "Low=54.10", "Volume=9,876"}},
    {"history-comments",
     {"2026/3/2 5.0500 5.1000 4.9500 7000", "2026/2/27 5.0100 5.0200 4.8800 6500"},
     {"2-Mar-26", "5.00", "5.10", "4.95", "5.05", "7,000"}},
    {"history-spans",
     {"2026/2/27 8.1000 8.2000 7.9000 1000", "2026/2/26 8.0000 8.0500 7.7500 2000",
      "2026/2/25 7.8000 7.8500 7.7000 1500"},
     {"25-Feb-26", "7.70", "7.85", "7.70", "7.80", "1500"}},
    {"history-definition",
     {"2026/2/27 21.7500 21.9000 21.2000 40250", "2026/2/26 21.4500 21.5000 20.9500 38100"},
     {"26-Feb-26", "21.00", "21.50", "20.95", "21.45", "38,100"}},
    {"search-table",
     {"\"OWL.AX\", \"Owl Ridge Timber Ltd\", \"Australia\"", "\"OWLT\", \"Owlett & Tern Inc\", \"NYSE\"",
      "\"OWX.TA\", \"Owlex Sea Transport\", \"Israel\""},
     {"OWL.AX", "Owl Ridge Timber Ltd", "N/A"}},
    {"search-list",
     {"\"BRL\", \"Brolga Salt\", \"ASX\"", "\"BRLO\", \"Brolga Salt options\", \"ASX\"",
      "\"BRG\", \"Brigalow Energy\", \"NZX\""},
     {"BRL", "Brolga Salt", "ASX"}},
    {"search-latin1",
     {"\"SVL\", \"Soci\xC3\xA9t\xC3\xA9 Verri\xC3\xA8re du L\xC3\xA9man\", \"Gen\xC3\xA8ve\"",
      "\"MBK\", \"M\xC3\xBChlbach K\xC3\xA4se AG\", \"Z\xC3\xBCrich\""},
     {"Code=SVL", "StockName=Soci\xC3\xA9t\xC3\xA9 Verri\xC3\xA8re du L\xC3\xA9man",
      "MarketName=Gen\xC3\xA8ve"}},
};

/// An HTTP client that returns one page for every address.
class OnePage : public HTTPClient {
public:
  explicit OnePage(const std::string& page) : m_page(page) {}
  void goOnline() override {}
  HTTPAnswer get(const URL&, const HTTPHeaders&, const std::stop_token&) override {
    return {200, "OK", {}, {m_page.begin(), m_page.end()}};
  }
  void setBodyLimit(std::size_t) override {}

private:
  const std::string m_page;
};

/// The page's content as transmitted. One page has a megabyte of script.
std::string contentOf(const SavedPage& page) {
  std::string content = readTestFile(testData(page.name + ".html"));
  const std::size_t filler = content.find("FILLER");
  if (filler != std::string::npos) {
    std::string script;
    while (script.size() < 1024 * 1024)
      script += "if (a<b && c>d) { document.write(\"<td>Last</td></table><td>11.11</td>\"); }\n";
    content.replace(filler, 6, script);
  }
  return content;
}

/// All parts of a text from an opening to a closing mark.
std::vector<std::string> pieces(const std::string& text, const std::string& opening,
                                const std::string& closing) {
  std::vector<std::string> found;
  for (std::size_t at = text.find(opening); at != std::string::npos; at = text.find(opening, at + 1))
    found.push_back(text.substr(at, text.find(closing, at) + closing.size() - at));
  return found;
}

class SavedPagesTest : public WorkbenchTest {
protected:
  /// The values shown by "check".
  std::vector<std::string> shown(const SavedPage& page, const std::string& document) const {
    const std::string html = write("page.html", contentOf(page));
    const Result result = run({"check", document, "--page", html});
    EXPECT_EQ(result.status, 0) << page.name << ":\n" << result.out << result.errors;
    std::vector<std::string> values;
    std::smatch match;
    std::istringstream lines(result.out);
    const std::regex price(R"(The price: ".*" reads as (.*))");
    const std::regex row(R"( +\d+ +((\d+/\d+/\d+|").*))");
    for (std::string line; std::getline(lines, line);)
      if (std::regex_match(line, match, page.isQuote() ? price : row))
        values.push_back(
            std::regex_replace(std::string(match[1]), std::regex(page.isHistory() ? " +" : "$^"), " "));
    return values;
  }

  /// The same values from the classes used by the gateway.
  std::vector<std::string> gateways(const SavedPage& page, const std::string& document) const {
    for (const String& name :
         {CURRENT_PRICE_LOCATORS_FILE, HISTORICAL_PRICE_LOCATORS_FILE, CODE_SEARCH_LOCATORS_FILE})
      TestProfile::writeFile(m_profile.configFolder() + name,
                             readTestFile(TALLYMOOR_SAMPLES "/../assets/defaults/Config/" + name.toUTF8()));
    const String& kind = page.isQuote()     ? CURRENT_PRICE_LOCATORS_FILE
                         : page.isHistory() ? HISTORICAL_PRICE_LOCATORS_FILE
                                            : CODE_SEARCH_LOCATORS_FILE;
    TestProfile::writeFile(m_profile.configFolder() + kind, readTestFile(document));
    const LocatorSet locators(m_profile.configFolder());
    const DataSource source(std::make_shared<OnePage>(contentOf(page)), locators);
    return page.isQuote() ? price(source) : page.isHistory() ? days(source) : matches(source);
  }

  static std::vector<std::string> price(const DataSource& source) {
    return {String::fromDouble(source.currentPrice(u"X").price, 4).toUTF8()};
  }
  static std::vector<std::string> days(const DataSource& source) {
    std::vector<std::string> values;
    for (const auto& [day, value] : source.history(u"X", HistoryRange::around(Date(), true, 60)))
      values.push_back((day.toString(DATE_DISPLAY_YMD) + u" " + String::fromDouble(value.close, 4) + u" " +
                        String::fromDouble(value.high, 4) + u" " + String::fromDouble(value.low, 4) + u" " +
                        String::fromLong(value.volume))
                           .toUTF8());
    std::reverse(values.begin(), values.end()); // Pages start with the newest day.
    return values;
  }
  static std::vector<std::string> matches(const DataSource& source) {
    std::vector<CodeSearchResult> results;
    source.search(u"X", true, false, results);
    std::vector<std::string> values;
    for (const CodeSearchResult& found : results)
      values.push_back(
          (u"\"" + found.code + u"\", \"" + found.name + u"\", \"" + found.market + u"\"").toUTF8());
    return values;
  }

  /// The page's document with its locators replaced by the program's proposals.
  std::vector<std::string> proposed(const SavedPage& page) const {
    std::vector<std::string> arguments{page.isQuote() ? "find" : "table",
                                       write("page.html", contentOf(page))};
    arguments.insert(arguments.end(), page.example.begin(), page.example.end());
    const Result result = run(arguments);
    EXPECT_EQ(result.status, 0) << page.name << ":\n" << result.out << result.errors;
    const std::string opening = page.isQuote() ? "<TagLocator" : "<TableLocator";
    const std::string closing = page.isQuote() ? "</TagLocator>" : "</TableLocator>";
    std::vector<std::string> documents;
    for (const std::string& proposal : pieces(result.out, opening, closing)) {
      std::string document = readTestFile(testData(page.name + ".xml"));
      const std::string old = pieces(document, opening, closing).front();
      document.replace(document.find(old), old.size(), proposal);
      documents.push_back(write("proposed-" + std::to_string(documents.size()) + ".xml", document));
    }
    EXPECT_FALSE(documents.empty()) << page.name << ":\n" << result.out;
    return documents;
  }
};

using CountedSavedPages = SavedPagesTest;

TEST_F(CountedSavedPages, AreReadByTheirDocumentsAndByTheProposals) {
  std::size_t byDocument = 0, byProposal = 0, proposals = 0, wrong = 0;
  const auto isRight = [&](const SavedPage& page, const std::string& document) {
    const std::vector<std::string> byCheck = shown(page, document);
    const std::vector<std::string> byGateway = gateways(page, document);
    EXPECT_EQ(byCheck, page.values) << page.name;
    EXPECT_EQ(byGateway, page.values) << page.name;
    const bool right = byCheck == page.values && byGateway == page.values;
    wrong += !right;
    return right;
  };
  for (const SavedPage& page : PAGES) {
    byDocument += isRight(page, testData(page.name + ".xml"));
    const std::vector<std::string> documents = proposed(page);
    proposals += documents.size();
    byProposal += std::count_if(documents.begin(), documents.end(), [&](const std::string& document) {
                    return isRight(page, document);
                  }) == std::ssize(documents);
  }
  EXPECT_GE(PAGES.size(), 12u);
  EXPECT_EQ(wrong, 0u);
  std::cout << "COUNT: saved pages of price sources: " << byDocument << " read by their documents, "
            << byProposal << " by " << proposals << " proposed walks and tables, " << wrong
            << " with a wrong value\n";
}

TEST_F(SavedPagesTest, EveryPageInTheFolderIsTried) {
  std::size_t files = 0;
  for (const auto& entry : std::filesystem::directory_iterator(TALLYMOOR_TEST_DATA))
    files += entry.path().extension() == ".html";
  EXPECT_EQ(files, PAGES.size());
}

TEST_F(SavedPagesTest, AScriptIsNeverRun) {
  const SavedPage& page = PAGES[5];
  ASSERT_EQ(page.name, "quote-script");
  const std::string html = write("page.html", contentOf(page));
  ASSERT_GT(readTestFile(html).size(), 1024u * 1024);
  EXPECT_EQ(shown(page, testData("quote-script.xml")), page.values) << "not what the scripts would write";
  for (const char* const written : {"99.99", "98.76", "97.53", "11.11"}) {
    const Result result = run({"find", html, written});
    EXPECT_EQ(result.status, 1);
    EXPECT_TRUE(result.says(std::string("No tag contains the text \"") + written + "\"")) << result.out;
    EXPECT_TRUE(result.says("but in a script. The program runs no scripts")) << result.out;
  }
}

} // namespace
} // namespace Tallymoor
