#include "market/SourceList.h"
#include "foundation/Exception.h"
#include "market/LocatorSet.h"
#include "support/FileMode.h"
#include "support/MarketFixture.h"
#include "support/MessageOf.h"
#include "support/StringPrinting.h"
#include "support/TestProfile.h"
#include <filesystem>
#include <gtest/gtest.h>

namespace Tallymoor {
namespace {

const String KEY = u"s3cr+t<&>\"key";

class SourceListTest : public testing::Test {
protected:
  SourceListTest() {
    std::filesystem::create_directories((m_config + u"Sources").toUTF8());
    std::filesystem::create_directory(m_prices.toUTF8());
  }

  /// A document whose history needs a key.
  void writeDocument(const std::string& file, const std::string& name, const std::string& extra = "",
                     const std::string& host = "https://prices.example") {
    TestProfile::writeFile(
        m_config + u"Sources/" + String(file.c_str()),
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<PriceSource name=\"" + name + "\"" + extra +
            "><Serves codes=\"*\"/><History reader=\"csv\"><Address>" + host +
            "/{CODE}?k={KEY}</Address><Column type=\"Date\" at=\"date\"/><Column type=\"Close\" "
            "at=\"close\"/></History></PriceSource>\n");
  }
  SourceList list() const { return SourceList(m_config); }
  /// "locators+ One- ": names in order, with a plus for those that are on.
  static String names(const SourceList& list) {
    String text;
    for (const ListedSource& source : list.sources())
      text += source.name + (source.isOn ? u"+ " : u"- ");
    return text;
  }
  /// The names of the sources that are asked.
  String asked(const SourceList& list) const {
    String text;
    for (const auto& source : list.choice(nullptr, LocatorSet(m_config)).sources)
      text += source->name() + u" ";
    return text;
  }
  String complaints(const SourceList& list) const {
    String text;
    for (const SourceComplaint& complaint : list.complaints())
      text += complaint.file.substr(m_config.size()) + u"|" + complaint.cause + u"\n";
    return text;
  }

  TestProfile m_profile;
  MarketFixture m_market;
  const String m_config = m_profile.configFolder();
  const String m_file = m_config + u"PriceSources.xml";
  const String m_keyFile = m_config + u"PriceSourceKeys.xml";
  const String m_prices = m_profile.path("my \"prices\" & more");
};

TEST_F(SourceListTest, APathThatIsTooLongIsNoFolder) {
  SourceList sources = list();
  const String path = u"/" + String(10000, u'x');
  EXPECT_EQ(messageOf([&] { sources.addFolder(u"Long", path); }), path + u" is no folder");
}

TEST_F(SourceListTest, TheRequestsOfTheDayAreKeptInItsFolder) {
  EXPECT_FALSE(list().log().beginRequest(u"ABC", u"One", 1));
  EXPECT_TRUE(list().log().beginRequest(u"ABC", u"One", 1));
  EXPECT_TRUE(std::filesystem::exists((m_config + u"PriceRequests.xml").toUTF8()));
}

TEST_F(SourceListTest, WithoutAChoiceTheLocatorsAloneAreOn) {
  writeDocument("One.xml", "One");
  const SourceList sources = list();
  EXPECT_EQ(names(sources), u"locators+ One- ");
  EXPECT_EQ(asked(sources), u"locators ");
  EXPECT_TRUE(sources.isLocatorsAlone());
  EXPECT_EQ(complaints(sources), u"");
  EXPECT_FALSE(TestProfile::fileExists(m_file)) << "reading writes nothing";
}

TEST_F(SourceListTest, ARestartKeepsOrderPinsAnswersAndKeys) {
  writeDocument("One.xml", "One");
  {
    SourceList sources = list();
    sources.addFolder(u"My <files>", m_prices);
    sources.addCommand(u"Script", {u"/bin/prices", u"--code={CODE}", u"a & b"});
    for (const char16_t* name : {u"One", u"Script", u"My <files>"})
      sources.setOn(name, true);
    sources.setOn(u"locators", false);
    sources.move(u"Script", 0);
    sources.setAnswers(
        u"My <files>", u"A&B.csv",
        {{FormatDoubt::About::DateOrder, u"dd/MM/yyyy"}, {FormatDoubt::About::DecimalSign, u","}});
    sources.pin(u"A&B.AX", {u"One", u"\"AB\""});
    sources.setKey(u"One", KEY);
  }
  SourceList sources = list();
  EXPECT_EQ(complaints(sources), u"");
  EXPECT_EQ(names(sources), u"Script+ locators- One+ My <files>+ ");
  EXPECT_EQ(asked(sources), u"Script One My <files> ");
  EXPECT_EQ(sources.source(u"My <files>").folder, m_prices);
  EXPECT_EQ(
      sources.source(u"My <files>").answers.at(u"A&B.csv"),
      (CsvAnswers{{FormatDoubt::About::DateOrder, u"dd/MM/yyyy"}, {FormatDoubt::About::DecimalSign, u","}}));
  EXPECT_EQ(sources.source(u"Script").command,
            (std::vector<String>{u"/bin/prices", u"--code={CODE}", u"a & b"}));
  ASSERT_TRUE(sources.pins().contains(u"A&B.AX"));
  EXPECT_EQ(sources.pins().at(u"A&B.AX").source, u"One");
  EXPECT_EQ(sources.pins().at(u"A&B.AX").codeThere, u"\"AB\"");
  EXPECT_TRUE(sources.hasKey(u"One"));
  sources.unpin(u"A&B.AX");
  sources.remove(u"Script");
  EXPECT_TRUE(list().pins().empty());
  EXPECT_EQ(names(list()), u"locators- One+ My <files>+ ");
}

TEST_F(SourceListTest, ADocumentThatWasNotTriedStaysOffUntilTheUserTriesIt) {
  writeDocument("One.xml", "One", " notTried=\"2026-11-22\"");
  SourceList sources = list();
  EXPECT_EQ(messageOf([&] { sources.setOn(u"One", true); }),
            u"The source One has not been tried. Try it first.");
  EXPECT_EQ(names(list()), u"locators+ One- ");
  sources.noteTried(u"One");
  sources.setOn(u"One", true);
  EXPECT_EQ(asked(list()), u"locators One ");
}

TEST_F(SourceListTest, KeysLieInAFileThatOnlyTheUserCanReadAndNowhereElse) {
  const NoUmask open;
  writeDocument("One.xml", "One");
  SourceList sources = list();
  sources.setKey(u"One", KEY);
  sources.setOn(u"One", true);
  EXPECT_EQ(modeOf(m_keyFile), 0600u);
  EXPECT_EQ(TestProfile::readFile(m_file).find("s3cr"), std::string::npos);
  std::filesystem::permissions(m_keyFile.toUTF8(), std::filesystem::perms::all);
  list();
  EXPECT_EQ(modeOf(m_keyFile), 0600u) << "of a file that came from elsewhere";
  sources.setKey(u"One", String());
  EXPECT_FALSE(list().hasKey(u"One"));
  EXPECT_EQ(TestProfile::readFile(m_keyFile).find("s3cr"), std::string::npos);
}

TEST_F(SourceListTest, AKeyIsNotForAnotherServer) {
  writeDocument("One.xml", "One");
  list().setKey(u"One", KEY);
  writeDocument("One.xml", "One", "", "https://prices.example.evil");
  EXPECT_FALSE(list().hasKey(u"One"));
  writeDocument("One.xml", "One");
  EXPECT_TRUE(list().hasKey(u"One"));
}

TEST_F(SourceListTest, ADocumentThatCanNotBeReadIsToldAndLosesNothing) {
  writeDocument("One.xml", "One");
  list().setOn(u"One", true);
  TestProfile::writeFile(m_config + u"Sources/One.xml", "<PriceSource name=\"One\">");
  SourceList sources = list();
  EXPECT_TRUE(complaints(sources).startsWith(u"Sources/One.xml|")) << complaints(sources).toUTF8();
  EXPECT_EQ(asked(sources), u"locators ");
  sources.move(u"One", 0);
  writeDocument("One.xml", "One");
  EXPECT_EQ(asked(list()), u"One locators ") << "its place and that it was on are kept";
  sources.readAgain();
  EXPECT_EQ(asked(sources), u"One locators ");
  EXPECT_EQ(complaints(sources), u"");
}

TEST_F(SourceListTest, TwoDocumentsOfOneNameAreTold) {
  writeDocument("One.xml", "One");
  writeDocument("Two.xml", "One");
  EXPECT_EQ(complaints(list()), u"Sources/Two.xml|another source has the name One\n");
}

TEST_F(SourceListTest, AnUnreadableChoiceIsToldAndNeverWrittenOver) {
  for (const char* text :
       {"<PriceSources><Sour", "<PriceSources><Source kind=\"magic\" name=\"a\" on=\"yes\" "
                               "tried=\"no\" folder=\"\"/></PriceSources>"}) {
    TestProfile::writeFile(m_file, text);
    SourceList sources = list();
    EXPECT_TRUE(complaints(sources).startsWith(u"PriceSources.xml|")) << complaints(sources).toUTF8();
    EXPECT_EQ(asked(sources), u"locators ");
    EXPECT_TRUE(messageOf([&] { sources.setOn(u"locators", false); }).contains(u"can't be read"));
    EXPECT_EQ(TestProfile::readFile(m_file), text);
  }
}

TEST_F(SourceListTest, UnreadableKeysAreToldAndNeverWrittenOver) {
  writeDocument("One.xml", "One");
  TestProfile::writeFile(m_keyFile, "<SourceKeys><Key");
  SourceList sources = list();
  EXPECT_TRUE(complaints(sources).startsWith(u"PriceSourceKeys.xml|"));
  EXPECT_TRUE(messageOf([&] { sources.setKey(u"One", KEY); }).contains(u"can't be stored"));
  EXPECT_EQ(TestProfile::readFile(m_keyFile), "<SourceKeys><Key");
}

TEST_F(SourceListTest, AChangeThatCanNotBeWrittenIsNotMade) {
  SourceList sources = list();
  std::filesystem::create_directory(m_file.toUTF8());
  EXPECT_THROW(sources.addFolder(u"My files", m_prices), Exception);
  EXPECT_EQ(names(sources), u"locators+ ");
}

TEST_F(SourceListTest, RefusesWhatMakesNoSense) {
  SourceList sources = list();
  EXPECT_EQ(messageOf([&] { sources.addFolder(u"locators", m_prices); }),
            u"There is a source of prices named locators already");
  EXPECT_EQ(messageOf([&] { sources.addFolder(u" ", m_prices); }), u"A source of prices needs a name");
  EXPECT_EQ(messageOf([&] { sources.addFolder(u"Files", u"/nowhere"); }), u"/nowhere is no folder");
  EXPECT_EQ(messageOf([&] {
              sources.pin(u"ABC", {u"Nobody", u"ABC"});
            }),
            u"There is no source of prices named Nobody");
  EXPECT_EQ(messageOf([&] { sources.remove(u"locators"); }), u"The source locators can only be switched off");
}

} // namespace
} // namespace Tallymoor
