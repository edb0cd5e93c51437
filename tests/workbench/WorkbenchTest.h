#pragma once
#include "TestPaths.h"
#include "market/HTTPClient.h"
#include "support/TestProfile.h"
#include "workbench/Workbench.h"
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

namespace Tallymoor {

inline std::string readTestFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  EXPECT_TRUE(file) << path;
  return std::string(std::istreambuf_iterator<char>(file), {});
}

inline std::string testData(const std::string& name) {
  return std::string(TALLYMOOR_TEST_DATA) + "/" + name;
}

/// Runs the workbench's commands on Tuesday, 3 March 2026, with a scratch folder for files.
class WorkbenchTest : public ::testing::Test {
protected:
  struct Result {
    int status;
    std::string out;
    std::string errors;
    bool says(const std::string& text) const { return out.find(text) != std::string::npos; }
    bool complains(const std::string& text) const { return errors.find(text) != std::string::npos; }
  };

  Result run(const std::vector<std::string>& arguments) const {
    std::ostringstream out;
    std::ostringstream errors;
    const int status = Workbench(out, errors, m_makeClient).run(arguments);
    return {status, out.str(), errors.str()};
  }

  std::string write(const std::string& name, const std::string& content) const {
    const std::string path = m_profile.folder() + "/" + name;
    std::ofstream(path, std::ios::binary) << content;
    return path;
  }

  /// A document of current prices with these steps.
  std::string quoteDocument(const std::string& steps, const std::string& attributes = " format=\"Float\"",
                            const std::string& address = "http://prices.karrabin.example/") const {
    return write(
        "CurrentPriceLocators.xml",
        "<CurrentPriceLocators active=\"karrabin\" version=\"1\">\n<CurrentPrice domain=\"karrabin\">\n"
        "<URLLocator><URLPart>" +
            address + "</URLPart><URLPart type=\"Code\"/></URLLocator>\n<TagLocator" + attributes + ">" +
            steps + "</TagLocator>\n</CurrentPrice>\n</CurrentPriceLocators>\n");
  }
  /// A document of past prices. Its table is the first one of the page; the columns are td 0, td 1 and so on.
  std::string historyDocument(const std::vector<std::string>& columns, int firstRow = 0,
                              const std::string& entries = "60") const {
    std::string text = "<HistoricalPricesLocators active=\"k\" version=\"1\"><HistoricalPrices domain=\"k\" "
                       "maxEntries=\"" +
                       entries +
                       "\"><URLLocator><URLPart>http://prices.karrabin.example/</URLPart></URLLocator>"
                       "<TableLocator><TagLocator>" +
                       in("table") + "</TagLocator><TagLocator>" + in("tr", firstRow) + "</TagLocator>";
    for (std::size_t i = 0; i < columns.size(); ++i)
      text += "<TagLocator type=\"" + columns[i] + "\">" + in("td", static_cast<int>(i)) + "</TagLocator>";
    return write("HistoricalPricesLocators.xml",
                 text + "</TableLocator></HistoricalPrices></HistoricalPricesLocators>");
  }

  static std::string in(const std::string& name, int index = 0) {
    return "<TagFind><TagMove move=\"In\" name=\"" + name + "\" index=\"" + std::to_string(index) +
           "\"/></TagFind>";
  }
  static std::string down(const std::string& name, int index = 0) {
    return "<TagFind><TagMove move=\"Down\" name=\"" + name + "\" index=\"" + std::to_string(index) +
           "\"/></TagFind>";
  }
  static std::string search(const std::string& attributes) {
    return "<TagFind><TagSearch " + attributes + "/></TagFind>";
  }

  TestProfile m_profile;
  CheckCommand::ClientFactory m_makeClient = createHTTPClient;
};

} // namespace Tallymoor
