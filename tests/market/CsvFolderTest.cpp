#include "market/CsvFolder.h"
#include "foundation/Exception.h"
#include "support/MessageOf.h"
#include "support/StringPrinting.h"
#include "support/TestProfile.h"
#include <gtest/gtest.h>

namespace Tallymoor {
namespace {

using About = FormatDoubt::About;

const std::string ISO = "Date,Close\n2026-02-26,10.1\n2026-02-27,10.5\n";

class CsvFolderTest : public testing::Test {
protected:
  void write(const std::string& name, const std::string& text) {
    TestProfile::writeFile(m_profile.path("prices/" + name), text);
  }
  CsvFolder folder() const { return {u"My files", m_profile.path("prices"), m_answers, m_files}; }
  /// "26/2/2026=10.1000 27/2/2026=10.5000"
  String days(const String& code) const {
    String text;
    for (const auto& [day, value] : folder().history(code, m_range, {}).prices)
      text += (text.empty() ? String() : String(u" ")) + day.toString(DATE_DISPLAY_DMY) + u"=" +
              String::fromDouble(value.close, 4);
    return text;
  }

  TestProfile m_profile;
  std::map<String, CsvAnswers> m_answers;
  std::shared_ptr<CsvFolderFiles> m_files = std::make_shared<CsvFolderFiles>();
  const HistoryRange m_range{Date(2026, 2, 1), Date(2026, 3, 1)};
};

TEST_F(CsvFolderTest, ReadsTheFileOfACode) {
  write("ABC.AX.csv", ISO);
  EXPECT_TRUE(folder().serves(u"ABC.AX"));
  EXPECT_FALSE(folder().serves(u"ABC.L"));
  EXPECT_EQ(days(u"ABC.AX"), u"26/2/2026=10.1000 27/2/2026=10.5000");
  const auto price = folder().currentPrice(u"ABC.AX", {});
  ASSERT_TRUE(price);
  EXPECT_EQ(price->price, 10.5);
  EXPECT_EQ(price->day, Date(2026, 2, 27));
}

TEST_F(CsvFolderTest, ReadsGermanAndAmericanExports) {
  write("DEU.csv", "Datum;Schlusskurs\n26.02.2026;1.010,10\n27.02.2026;1.050,50\n");
  write("USA.csv", "\"Date\",\"Close/Last\"\n02/27/2026,10.50\n02/26/2026,10.10\n");
  EXPECT_EQ(days(u"DEU"), u"26/2/2026=1010.1000 27/2/2026=1050.5000");
  EXPECT_EQ(days(u"USA"), u"26/2/2026=10.1000 27/2/2026=10.5000");
}

TEST_F(CsvFolderTest, FindsVariantsOfTheName) {
  write("abc_ax.CSV", ISO);
  EXPECT_EQ(days(u"ABC.AX"), u"26/2/2026=10.1000 27/2/2026=10.5000");
  write("ABC-AX.txt", "Date,Close\n2026-02-26,1\n");
  EXPECT_FALSE(folder().serves(u"ABC.AX")) << "two variants: one may be another stock";
  write("ABC.AX.csv", "Date,Close\n2026-02-26,2.5\n");
  EXPECT_EQ(days(u"ABC.AX"), u"26/2/2026=2.5000");
}

TEST_F(CsvFolderTest, SeesAChangeOfAFileAtOnce) {
  write("ABC.csv", ISO);
  days(u"ABC");
  write("ABC.csv", "Date,Close\n2026-02-26,10.1\n2026-02-27,10.5\n2026-02-28,11\n");
  EXPECT_EQ(days(u"ABC"), u"26/2/2026=10.1000 27/2/2026=10.5000 28/2/2026=11.0000");
}

TEST_F(CsvFolderTest, WhatTheTextsLeaveOpenIsAskedAndNotGuessed) {
  write("ABC.csv", "Date;Close\n03/02/2026;12,345\n04/02/2026;12,346\n");
  EXPECT_EQ(messageOf([&] { days(u"ABC"); }),
            u"ABC.csv: Is the day 03/02/2026 written as \"dd/MM/yyyy\" or \"MM/dd/yyyy\"?");
  m_answers[String()] = {{About::DateOrder, u"dd/MM/yyyy"}};
  EXPECT_EQ(messageOf([&] { days(u"ABC"); }), u"ABC.csv: Is the decimal sign of 12,345 \".\" or \",\"?");
  m_answers[u"ABC.csv"] = {{About::DateOrder, u"dd/MM/yyyy"}, {About::DecimalSign, u","}};
  EXPECT_EQ(days(u"ABC"), u"3/2/2026=12.3450 4/2/2026=12.3460");
  m_answers[u"ABC.csv"] = {{About::DateOrder, u"dd/MM/yyyy"}, {About::DecimalSign, u"."}};
  EXPECT_EQ(days(u"ABC"), u"3/2/2026=12345.0000 4/2/2026=12346.0000") << "read anew with another answer";
}

TEST_F(CsvFolderTest, AFileThatIsNoTableIsToldByName) {
  write("ABC.csv", "<html>sign in</html>");
  EXPECT_TRUE(messageOf([&] { days(u"ABC"); }).startsWith(u"ABC.csv: "));
}

TEST_F(CsvFolderTest, FindsCodesByTheNamesOfFiles) {
  write("ABC.AX.csv", ISO);
  write("XYZ.csv", ISO);
  write("notes.pdf", "abc");
  std::vector<CodeSearchResult> results;
  folder().search(u"abc", true, false, results, {});
  ASSERT_EQ(results.size(), 1u);
  EXPECT_EQ(results[0].code, u"ABC.AX");
  EXPECT_EQ(results[0].name, u"ABC.AX") << "the search shows results by their names";
}

} // namespace
} // namespace Tallymoor
