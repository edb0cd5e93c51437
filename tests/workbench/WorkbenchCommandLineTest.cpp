#include "TestPaths.h"
#include "WorkbenchTest.h"
#include <cstdlib>
#include <sys/wait.h>

namespace Tallymoor {
namespace {

using WorkbenchCommandLineTest = WorkbenchTest;

TEST_F(WorkbenchCommandLineTest, TellsOfItself) {
  const Result help = run({"--help"});
  EXPECT_EQ(help.status, 0);
  EXPECT_TRUE(help.says("tallymoor-locator check DOCUMENT"));
  EXPECT_TRUE(help.says("The exit status is 0"));
  std::istringstream lines(help.out);
  for (std::string line; std::getline(lines, line);)
    EXPECT_LE(line.size(), 110u) << line;
  const Result version = run({"--version"});
  EXPECT_EQ(version.status, 0);
  EXPECT_EQ(version.out, "tallymoor-locator, Brindlecove Tallymoor Version 1.3.1 (Build 510)\n");
}

TEST_F(WorkbenchCommandLineTest, RefusesWrongCommandLines) {
  const auto complaint = [this](const std::vector<std::string>& arguments) {
    const Result result = run(arguments);
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.out, "");
    return result.errors;
  };
  const std::string head = "tallymoor-locator: ";
  EXPECT_EQ(complaint({}), head + "no command given; see --help\n");
  EXPECT_EQ(complaint({"mend"}), head + "unknown command mend; see --help\n");
  EXPECT_EQ(complaint({"check"}), head + "check needs a locator document\n");
  EXPECT_EQ(complaint({"check", "a", "b"}), head + "check needs exactly one document\n");
  EXPECT_EQ(complaint({"check", "a", "--fast"}), head + "check has no option --fast\n");
  EXPECT_EQ(complaint({"check", "a", "--page"}), head + "--page needs a value\n");
  EXPECT_EQ(complaint({"check", "a", "--code", ""}), head + "--code needs a value\n");
  EXPECT_EQ(complaint({"check", "a", "--code", "b", "--page", "c"}),
            head + "--page and --code exclude each other\n");
  EXPECT_EQ(complaint({"check", "a", "--save", "b"}), head + "--save needs --code\n");
  EXPECT_EQ(complaint({"find", "a"}),
            head + "find needs a page and a text; put a text of several words in quotation marks\n");
  EXPECT_EQ(complaint({"find", "a", "b", "c"}).substr(0, 40),
            (head + "find needs a page and a text").substr(0, 40));
  EXPECT_EQ(complaint({"find", "a", " "}), head + "the text to look for is empty\n");
  EXPECT_EQ(complaint({"table", "a"}), head + "table needs a page and the texts of one row\n");
}

TEST_F(WorkbenchCommandLineTest, FilesThatCannotBeReadAreNamed) {
  const std::string missing = m_profile.folder() + "/missing";
  const auto complaint = [this](const std::vector<std::string>& arguments) {
    const Result result = run(arguments);
    EXPECT_EQ(result.status, 2);
    return result.errors;
  };
  EXPECT_EQ(complaint({"check", missing}),
            "tallymoor-locator: can't read " + missing + ": No such file or directory\n");
  EXPECT_EQ(complaint({"find", missing, "x"}),
            "tallymoor-locator: can't read " + missing + ": No such file or directory\n");
  EXPECT_EQ(complaint({"table", m_profile.folder(), "a", "b", "c"}),
            "tallymoor-locator: can't read " + m_profile.folder() + ": it is a folder\n");
  EXPECT_EQ(complaint({"check", quoteDocument(in("b")), "--page", missing}),
            "tallymoor-locator: can't read " + missing + ": No such file or directory\n");
  const std::string large = write("large.html", std::string(10 * 1024 * 1024 + 1, 'x'));
  EXPECT_EQ(complaint({"find", large, "x"}),
            "tallymoor-locator: can't read " + large + ": it is larger than 10 MB, the program's limit\n");
  EXPECT_NE(complaint({"find", "/dev/zero", "x"}).find("larger than 10 MB"), std::string::npos);
}

TEST_F(WorkbenchCommandLineTest, TextsOfAPageMayLookLikeAnythingElse) {
  for (const std::string text : {"-1.50", "--", "--page", "check", "/all", "x=1", "-h", "--help"}) {
    const std::string page = write("page.html", "<html><p>" + text + "</p></html>");
    const Result result = run({"find", page, text});
    EXPECT_EQ(result.status, 0) << text << result.errors;
    EXPECT_TRUE(result.says(text)) << text << result.out;
    const Result table = run({"table", page, text, text, text});
    EXPECT_NE(table.status, 2) << text << table.errors;
  }
}

TEST_F(WorkbenchCommandLineTest, AValueMayBeJoinedToItsOption) {
  const std::string document = quoteDocument(in("p"));
  const std::string page = write("page.html", "<html><p>1.50</p></html>");
  const Result joined = run({"check", document, "--page=" + page});
  EXPECT_EQ(joined.status, 0) << joined.errors;
  EXPECT_EQ(joined.out, run({"check", document, "--page", page}).out);
}

TEST_F(WorkbenchCommandLineTest, NamesFromTheCommandLineAreHarmlessToo) {
  const Result result = run({"check", "/nowhere/\x1B[31m"});
  EXPECT_EQ(result.errors.find('\x1B'), std::string::npos);
}

// Runs the real program.

int statusOf(const std::string& arguments) {
  const int status = std::system((TALLYMOOR_LOCATOR_PROGRAM " " + arguments).c_str());
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

TEST_F(WorkbenchCommandLineTest, TheProgramEndsWithTheStatus) {
  const std::string out = " >" + m_profile.folder() + "/out 2>&1";
  EXPECT_EQ(statusOf("--version" + out), 0);
  EXPECT_EQ(readTestFile(m_profile.folder() + "/out").substr(0, 18), "tallymoor-locator,");
  EXPECT_EQ(
      statusOf("check " + testData("quote-frames.xml") + " --page " + testData("quote-frames.html") + out),
      0);
  EXPECT_EQ(statusOf("find " + testData("quote-frames.html") + " nothing" + out), 1);
  EXPECT_EQ(statusOf("mend" + out), 2);
  EXPECT_EQ(statusOf("--help >/dev/full"), 2) << "the output could not be written";
}

} // namespace
} // namespace Tallymoor
