#include "WorkbenchTest.h"

namespace Tallymoor {
namespace {

class FindCommandTest : public WorkbenchTest {
protected:
  Result find(const std::string& page, const std::string& text) const {
    return run({"find", write("page.html", page), text});
  }
};

TEST_F(FindCommandTest, WritesTheMovesFromTheRoot) {
  const Result result = find("<html><body><p>1</p><p>2<b>x</b><b>3.42</b></p></body></html>", "3.42");
  EXPECT_EQ(result.status, 0);
  EXPECT_TRUE(result.says("1 tag has the text \"3.42\".\n\n1. <b> \"3.42\"\n  at html > body > p > b\n"
                          "  as a number it reads as 3.4200\n"))
      << result.out;
  EXPECT_TRUE(result.says("  By position; works until something is inserted before it:\n"
                          "    <TagLocator format=\"Float\">\n"
                          "      <TagFind><TagMove move=\"In\" name=\"body\" index=\"0\"/></TagFind>\n"
                          "      <TagFind><TagMove move=\"In\" name=\"p\" index=\"1\"/></TagFind>\n"
                          "      <TagFind><TagMove move=\"In\" name=\"b\" index=\"1\"/></TagFind>\n"
                          "    </TagLocator>\n"))
      << result.out;
}

TEST_F(FindCommandTest, PutsLabelsAndMarksFirst) {
  const Result result =
      find("<html><div id=\"quote\"><span>Last</span><span>3.42</span></div></html>", "3.42");
  const std::size_t label =
      result.out.find("<TagSearch tagname=\"span\" val=\"Last\"/></TagFind>\n"
                      "      <TagFind><TagMove move=\"Down\" name=\"span\" index=\"0\"/>");
  const std::size_t mark = result.out.find("<TagSearch tagname=\"div\" attr=\"id\" attrVal=\"quote\"/>");
  const std::size_t position = result.out.find("By position");
  EXPECT_LT(label, mark) << result.out;
  EXPECT_LT(mark, position);
  EXPECT_NE(position, std::string::npos);
}

TEST_F(FindCommandTest, ALabelThatLeadsElsewhereIsNotProposed) {
  const Result result =
      find("<html><tr><td>Last</td><td>1</td></tr><tr><td>Last</td><td>2</td></tr></html>", "2");
  EXPECT_EQ(result.status, 0);
  EXPECT_FALSE(result.says("val=\"Last\"")) << result.out;
  EXPECT_TRUE(result.says("By position"));
}

TEST_F(FindCommandTest, AValuesOwnStyleIsNoMark) {
  const Result result = find("<html><p class=up>3.42</p></html>", "3.42");
  EXPECT_FALSE(result.says("attrVal=\"up\"")) << "it would be \"down\" tomorrow";
}

TEST_F(FindCommandTest, TextsAreComparedAsTheyAreShown) {
  const Result result =
      find("<html><b>Smith\n &amp;&nbsp;Sons</b><i>All of Smith &#38; Sons, 1</i></html>", "Smith & Sons");
  EXPECT_TRUE(result.says("1 tag has the text \"Smith & Sons\"; 1 tag has it among other text."));
  EXPECT_TRUE(result.says("1. <b> \"Smith &amp;&nbsp;Sons\"")) << result.out;
}

TEST_F(FindCommandTest, WhatAnXmlDocumentWouldChangeIsWrittenAsReferences) {
  const Result result = find("<html><td>A&amp;B\xC2\xA0\"<\t></td><td>5</td></html>", "5");
  EXPECT_EQ(result.status, 0);
  const Result label = find("<html><td>A &amp; B\xC2\xA0\t\"last\"</td><td>5</td></html>", "5");
  EXPECT_TRUE(label.says("val=\"A &#x26;amp; B&#xA0;&#x9;&#x22;last&#x22;\"")) << label.out;
}

TEST_F(FindCommandTest, WarnsOfUnreadableNumbers) {
  EXPECT_TRUE(
      find("<html><b>US$ 3.42</b></html>", "3.42").says("Note: \"US$ 3.42\" can't be read as a number"));
  EXPECT_FALSE(find("<html><b>Name</b></html>", "Name").says("number"));
  EXPECT_FALSE(find("<html><b>3-Mar-06</b></html>", "3-Mar-06").says("number")) << "a date is not a number";
}

TEST_F(FindCommandTest, ExplainsWhereATextOutsideOfTagsIs) {
  const auto told = [this](const std::string& page) {
    const Result result = find(page, "3.42");
    EXPECT_EQ(result.status, 1);
    EXPECT_TRUE(result.says("No tag contains the text \"3.42\".\n"));
    return result.out;
  };
  const auto expectPart = [](const std::string& text, const std::string& part) {
    EXPECT_NE(text.find(part), std::string::npos) << text;
  };
  expectPart(told("<html>\n<!-- 3.42 --></html>"), "It is on line 2 of the page, but in a comment");
  expectPart(told("<html><b data-p=\"3.42\">x</b></html>"), "inside a tag, in an attribute");
  expectPart(told("<html><b>3.42<i>x</i></b></html>"), "as text that the program assigns to no tag");
  expectPart(told("<html><SCRIPT>p = 3.42</SCRIPT></html>"), "but in a script");
  expectPart(told("<html><b>3,42</b></html>"), "The page does not contain this text.");
}

TEST_F(FindCommandTest, CutsALongListOfTags) {
  std::string page = "<html>";
  for (int i = 0; i < 25; ++i)
    page += "<b>7</b>";
  const Result result = find(page + "</html>", "7");
  EXPECT_TRUE(result.says("25 tags have the text \"7\"."));
  EXPECT_TRUE(result.says("\n10. <b>"));
  EXPECT_FALSE(result.says("\n11. <b>"));
  EXPECT_TRUE(result.says("15 more are not shown."));
}

TEST_F(FindCommandTest, ProposesNoWalkToATagNestedTooDeep) {
  std::string page = "<html>";
  for (int i = 0; i < 3000; ++i)
    page += "<t" + std::to_string(i) + ">";
  page += "<b>3.42</b>";
  for (int i = 2999; i >= 0; --i)
    page += "</t" + std::to_string(i) + ">";
  const Result result = find(page + "</html>", "3.42");
  EXPECT_EQ(result.status, 1);
  EXPECT_TRUE(result.says("No walk leads there from <html>")) << result.out.substr(0, 500);
}

TEST_F(FindCommandTest, ATagThatIsTakenByAnotherParentIsNotPromised) {
  // The inner div is found both below the outer one and, later, below body, so the moves start at body.
  const Result result = find("<html><body><div><div>3.42</div></div></body></html>", "3.42");
  EXPECT_EQ(result.status, 0);
  EXPECT_TRUE(result.says("<TagMove move=\"In\" name=\"div\" index=\"1\"/>")) << result.out;
}

} // namespace
} // namespace Tallymoor
