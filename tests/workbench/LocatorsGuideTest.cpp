#include "TestPaths.h"
#include "WorkbenchTest.h"
#include <filesystem>
#include <iomanip>

namespace Tallymoor {
namespace {

const std::string REPOSITORY = TALLYMOOR_SAMPLES "/..";

/// A command line from the guide with the output shown there.
struct Session {
  std::vector<std::string> arguments;
  std::string answer;
};

/// Splits a line at blanks. A quoted text is one word.
std::vector<std::string> words(const std::string& line) {
  std::vector<std::string> found;
  std::istringstream stream(line);
  for (std::string word; stream >> std::quoted(word);)
    found.push_back(word);
  return found;
}

/// The guide's blocks that show a command with its output.
std::vector<Session> sessions() {
  std::vector<Session> found;
  std::istringstream lines(readTestFile(REPOSITORY + "/docs/locators.md"));
  const std::string prompt = "$ tallymoor-locator ";
  bool inside = false;
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with("```"))
      inside = line == "```console";
    else if (inside && line.starts_with(prompt))
      found.push_back({words(line.substr(prompt.size())), ""});
    else if (inside && !found.empty())
      found.back().answer += line + "\n";
  }
  return found;
}

class LocatorsGuideTest : public WorkbenchTest {
protected:
  LocatorsGuideTest() { std::filesystem::current_path(REPOSITORY); }
  ~LocatorsGuideTest() override { std::filesystem::current_path(m_before); }

  const std::filesystem::path m_before = std::filesystem::current_path();
};

TEST_F(LocatorsGuideTest, TheCommandsAnswerWhatTheGuideShows) {
  const std::vector<Session> shown = sessions();
  ASSERT_EQ(shown.size(), 6u);
  for (const Session& session : shown)
    EXPECT_EQ(run(session.arguments).out, session.answer);
}

TEST_F(LocatorsGuideTest, OnlyTheOldDocumentFails) {
  for (const Session& session : sessions())
    EXPECT_EQ(run(session.arguments).status, session.arguments[1].find("/old/") == std::string::npos ? 0 : 1)
        << session.arguments[1];
}

TEST_F(LocatorsGuideTest, TheDocumentsOfTheExampleReadItsPages) {
  const std::string folder = "samples/locators/";
  EXPECT_EQ(run({"check", folder + "new/CodeSearchLocators.xml", "--page", folder + "search.html"}).status,
            0);
  const std::string before = readTestFile(folder + "old/CurrentPriceLocators.xml");
  const std::string after = readTestFile(folder + "new/CurrentPriceLocators.xml");
  const auto walk = [](const std::string& document) {
    const std::size_t start = document.find("    <TagLocator");
    const std::string end = "</TagLocator>\n";
    return document.substr(start, document.find(end) + end.size() - start);
  };
  EXPECT_NE(readTestFile("docs/locators.md").find("```xml\n" + walk(after) + "```\n"), std::string::npos)
      << "the guide shows the walk of the new document";
  std::string mended = before;
  mended.replace(mended.find(walk(before)), walk(before).size(), walk(after));
  const std::string version = "version=\"1\">";
  mended.replace(mended.find(version), version.size(), "version=\"2\">");
  EXPECT_EQ(mended, after) << "nothing else differs but the version";
}

} // namespace
} // namespace Tallymoor
