#include "WorkbenchTest.h"

namespace Tallymoor {
namespace {

class TableCommandTest : public WorkbenchTest {
protected:
  Result table(const std::string& rows, const std::vector<std::string>& texts) const {
    std::vector<std::string> arguments{"table",
                                       write("page.html", "<html><table>" + rows + "</table></html>")};
    arguments.insert(arguments.end(), texts.begin(), texts.end());
    return run(arguments);
  }
  static std::string row(const std::vector<std::string>& cells) {
    std::string text = "<tr>";
    for (const std::string& cell : cells)
      text += "<td>" + cell + "</td>";
    return text + "</tr>";
  }
  const std::vector<std::string> m_first{"2-Mar-26", "1.1", "1.3", "1.0", "1.2", "900"};
  const std::vector<std::string> m_second{"27-Feb-26", "1.0", "1.2", "0.9", "1.1", "800"};
};

TEST_F(TableCommandTest, ProposesATableFromARow) {
  const Result result = table(row(m_first) + row(m_second), m_second);
  EXPECT_EQ(result.status, 0);
  EXPECT_TRUE(
      result.says("This reads 2 rows; the example is row 2.\n\n    <TableLocator>\n      <TagLocator>\n"
                  "        <TagFind><TagMove move=\"In\" name=\"table\" index=\"0\"/></TagFind>\n"
                  "      </TagLocator>\n      <TagLocator>\n"
                  "        <TagFind><TagMove move=\"In\" name=\"tr\" index=\"0\"/></TagFind>\n"
                  "      </TagLocator>\n      <TagLocator type=\"Date\" format=\"MidDate1\">\n"
                  "        <TagFind><TagMove move=\"In\" name=\"td\" index=\"0\"/></TagFind>\n"))
      << result.out;
  EXPECT_TRUE(result.says("<TagLocator type=\"Volume\" format=\"CommaLong\">"));
  EXPECT_TRUE(
      result.says("  tallymoor-locator check DOCUMENT --page " + m_profile.folder() + "/page.html\n"));
}

TEST_F(TableCommandTest, LeavesOutAHeadingOfOrdinaryCells) {
  const Result result =
      table(row({"Date", "Open", "High", "Low", "Close", "Volume"}) + row(m_first) + row(m_second), m_second);
  EXPECT_TRUE(result.says("This reads 2 rows; the example is row 2.")) << result.out;
  EXPECT_TRUE(result.says("name=\"tr\" index=\"1\""));
}

TEST_F(TableCommandTest, ARowIsFoundAmongManyOfOneDay) {
  std::string rows;
  for (int i = 0; i < 1000; ++i)
    rows += row({"2-Mar-26", std::to_string(i) + ".5"});
  const Result result = table(rows, {"Date=2-Mar-26", "Close=900.5"});
  EXPECT_TRUE(result.says("This reads 1000 rows; the example is row 901.")) << result.out;
}

TEST_F(TableCommandTest, APageMadeToWasteTimeIsGivenUp) {
  std::string cells;
  for (int i = 0; i < 60000; ++i)
    cells += "<p>1</p>";
  const Result result =
      run({"table", write("p.html", "<html><body>" + cells + "</body></html>"), "1", "1", "1"});
  EXPECT_EQ(result.status, 1);
  EXPECT_TRUE(result.says("No TableLocator was found.")) << result.out;
}

TEST_F(TableCommandTest, TheSameTextInTwoColumnsIsTwoCells) {
  const Result result = table(row({"2-Mar-26", "1.1", "1.1", "1.1", "1.1", "900"}) + row(m_second),
                              {"2-Mar-26", "1.1", "1.1", "1.1", "1.1", "900"});
  for (int column = 0; column < 6; ++column)
    EXPECT_TRUE(result.says("name=\"td\" index=\"" + std::to_string(column) + "\"")) << result.out;
}

TEST_F(TableCommandTest, WarnsOfTextsThatCanBeConfused) {
  const Result result =
      table(row({"2-Mar-26", "1.2", "1.3", "1.2"}), {"Date=2-Mar-26", "Close=1.2", "Low=1.2"});
  EXPECT_TRUE(result.says("Note: Close and Low have the same text here and can be confused.")) << result.out;
  EXPECT_FALSE(table(row(m_first), m_first).says("taken for each other"));
}

TEST_F(TableCommandTest, ColumnsMayStandInAnyOrder) {
  const Result result = table(row({"900", "1.2", "2-Mar-26"}), {"Date=2-Mar-26", "Close=1.2", "Volume=900"});
  EXPECT_EQ(result.status, 0);
  EXPECT_TRUE(
      result.says("<TagLocator type=\"Date\" format=\"MidDate1\">\n        <TagFind><TagMove move=\"In\" "
                  "name=\"td\" index=\"2\"/>"))
      << result.out;
  EXPECT_TRUE(result.says("Note: the program also needs these columns: High, Low.\n"));
}

TEST_F(TableCommandTest, ARowThatWouldSpoilTheTableIsNamed) {
  const Result result = table(row(m_first) + "<tr><td colspan=6>Advertisement</td></tr>", m_first);
  EXPECT_EQ(result.status, 1);
  EXPECT_TRUE(
      result.says("No TableLocator was found.\nThe table was found, but the program can't read it: row 2 of "
                  "the table, <tr>, 1 tag in it, has no cell of its own for Open.\nOne row that lacks a cell "
                  "makes a whole table unreadable for the program.\n"))
      << result.out;
}

TEST_F(TableCommandTest, ShortRowsThatAreNotClosedAreNotReadAcross) {
  const std::string flat =
      "<tr><td>2-Mar-26</td><td>1.1</td><tr><td>27-Feb-26</td><tr><td>26-Feb-26</td><td>1.0</td>";
  const Result result = table(flat, {"Date=2-Mar-26", "Close=1.1"});
  EXPECT_EQ(result.status, 1);
  EXPECT_TRUE(result.says(
      "has no cell of its own for Close.\nThe program would read a cell of the next row instead."))
      << result.out;
}

TEST_F(TableCommandTest, AWholeTableIsNotTakenForARow) {
  const std::string rows =
      "<tr><td>2-Mar-26</td><td>1.1</td><tr><td>27-Feb-26</td><tr><td>26-Feb-26</td><td>1.0</td>";
  const Result result =
      run({"table", write("p.html", "<html><body><table>" + rows + "</table></body></html>"), "Date=2-Mar-26",
           "Close=1.1"});
  EXPECT_EQ(result.status, 1) << result.out;
  EXPECT_TRUE(result.says("has no cell of its own for Close.")) << result.out;
}

TEST_F(TableCommandTest, ATableOfDivsInDivsIsToldToBeUnreadable) {
  const std::string rows =
      "<div><div>2-Mar-26</div><div>1.1</div></div><div><div>27-Feb-26</div><div>1.0</div></div>";
  const Result result = run({"table", write("p.html", "<html><body><div>" + rows + "</div></body></html>"),
                             "Date=27-Feb-26", "Close=1.0"});
  EXPECT_EQ(result.status, 1);
  EXPECT_TRUE(result.says("The cells are <div> in <div>: tags directly in tags of the same name."))
      << result.out;
}

TEST_F(TableCommandTest, WarnsOfASingleRow) {
  EXPECT_TRUE(table(row(m_first), m_first).says("Note: it reads only this row."));
  EXPECT_FALSE(table(row(m_first) + row(m_second), m_first).says("alone"));
}

TEST_F(TableCommandTest, DatesOfAnotherFormAreNamed) {
  const Result result = table(row({"27/02/2026", "1.1"}), {"Date=27/02/2026", "Close=1.1"});
  EXPECT_EQ(result.status, 1);
  EXPECT_TRUE(result.says("row 1 has \"27/02/2026\" as its date; dates must look like 3-Mar-06."))
      << result.out;
}

TEST_F(TableCommandTest, TextsThatAreNotThereOrNotInOneRowAreNamed) {
  const Result missing = table(row(m_first), {"Date=2-Mar-26", "Close=9.99"});
  EXPECT_EQ(missing.status, 1);
  EXPECT_TRUE(missing.says("No tag contains the text \"9.99\".\nThe page does not contain this text."))
      << missing.out;
  const Result apart = run({"table", write("p.html", "<html><b>2-Mar-26</b></html><html><b>1.1</b></html>"),
                            "Date=2-Mar-26", "Close=1.1"});
  EXPECT_EQ(apart.status, 1);
  EXPECT_TRUE(apart.says("No tag contains the text \"1.1\".")) << apart.out;
  const Result rows = table(row(m_first) + row(m_second), {"Date=2-Mar-26", "Volume=800"});
  EXPECT_EQ(rows.status, 1);
  EXPECT_TRUE(rows.says("No TableLocator was found.\nThe texts are not in one row.\n")) << rows.out;
}

TEST_F(TableCommandTest, RowsDirectlyInHtmlNeedAMarkOfIt) {
  const auto propose = [this](const std::string& html) {
    return run({"table", write("p.html", html + row(m_first) + row(m_second) + "</html>"), "Date=2-Mar-26",
                "Close=1.2"});
  };
  EXPECT_TRUE(propose("<html lang=en>").says("<TagSearch tagname=\"html\" attr=\"lang\" attrVal=\"en\"/>"));
  const Result bare = propose("<html>");
  EXPECT_EQ(bare.status, 1);
  EXPECT_TRUE(bare.says("No walk leads to the tag around the rows, <html>.")) << bare.out;
}

TEST_F(TableCommandTest, WarnsOfUnreadableNumbers) {
  const Result result = table(row({"2-Mar-26", "$1.1"}), {"Date=2-Mar-26", "Close=$1.1"});
  EXPECT_EQ(result.status, 0);
  EXPECT_TRUE(result.says("Note: Close: \"$1.1\" can't be read as a number")) << result.out;
}

TEST_F(TableCommandTest, TypesMustBeClear) {
  for (const std::vector<std::string>& texts : {std::vector<std::string>{"2-Mar-26", "1.1"},
                                                {"a", "b", "c", "d", "e", "f"},
                                                {"Date=2-Mar-26", "1.1"}}) {
    const Result result = table(row(m_first), texts);
    EXPECT_EQ(result.status, 2);
    EXPECT_TRUE(result.complains("the columns of the texts are unknown")) << result.errors;
  }
  const Result empty = table(row(m_first), {"Date=2-Mar-26", "Close="});
  EXPECT_EQ(empty.status, 2);
  EXPECT_TRUE(empty.complains("the text of Close is empty"));
}

} // namespace
} // namespace Tallymoor
