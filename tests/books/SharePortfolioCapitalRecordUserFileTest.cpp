// The capital record's file: saving, loading, renaming, removing.
#include "books/CapitalRecordTest.h"
#include "books/PortfolioFiles.h"
#include <filesystem>

namespace Tallymoor {
namespace {

using CapitalRecordFileTest = CapitalRecordTest;

TEST_F(CapitalRecordFileTest, SavedDaysComeBack) {
  user().creditCash(m_yesterday, 100, CASH_EVENT_DEPOSIT, u"");
  user().addBuyEvent(u"ABC.AX", {m_yesterday, 10, 5, 0, u""});
  setPrices(u"ABC.AX", Date(2026, 3, 1), m_today, 5.5);
  update();
  EXPECT_TRUE(record().isModified());
  record().save();
  EXPECT_FALSE(record().isModified());
  EXPECT_EQ(TestProfile::readFile(file()),
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
            "<!DOCTYPE SharePortfolioCapitalRecord SYSTEM \"Tallymoor Records.dtd\">\n"
            "<SharePortfolioCapitalRecord><String>Trading</String>"
            "<DayCap><Date>2/3/2026</Date><Constant>100.00</Constant>"
            "<ShareVal><String>ABC.AX</String><Constant>10.00</Constant><Constant>5.50</Constant></ShareVal>"
            "<Constant>100.00</Constant></DayCap>"
            "<DayCap><Date>3/3/2026</Date><Constant>100.00</Constant>"
            "<ShareVal><String>ABC.AX</String><Constant>10.00</Constant><Constant>5.50</Constant></"
            "ShareVal></DayCap>"
            "</SharePortfolioCapitalRecord>");
  reopen();
  EXPECT_FALSE(record().isModified());
  EXPECT_EQ(record().firstRecordDate(), m_yesterday);
  EXPECT_EQ(dayOf(m_yesterday), String(u"2/3/2026 cash 100.00 injected 100.00; ABC.AX 10.00 x 5.50"));
  EXPECT_DOUBLE_EQ(record().externalFlowBetween(Date(2026, 1, 1), m_today), 100);
}

TEST_F(CapitalRecordFileTest, AnUnchangedRecordIsNotWritten) {
  makeDays(m_yesterday);
  record().save();
  std::filesystem::remove(file().toUTF8());
  record().save();
  EXPECT_FALSE(TestProfile::fileExists(file()));
}

TEST_F(CapitalRecordFileTest, ARemovedFileIsWrittenAgain) {
  makeDays(m_yesterday);
  record().save();
  record().removeFile();
  EXPECT_FALSE(TestProfile::fileExists(file()));
  EXPECT_TRUE(record().isModified());
  EXPECT_TRUE(record().hasDayCap(m_today));
  record().removeFile();
  record().save();
  EXPECT_TRUE(TestProfile::fileExists(file()));
}

TEST_F(CapitalRecordFileTest, AFailedSaveKeepsTheRecordModified) {
  makeDays(m_yesterday);
  std::filesystem::remove_all(file().toUTF8());
  std::filesystem::create_directories(file().toUTF8() + "/occupied");
  EXPECT_FALSE(messageOf([this] { record().save(); }).empty());
  EXPECT_TRUE(record().isModified());
}

TEST_F(CapitalRecordFileTest, AnotherPortfoliosFileIsSilentlyRebuilt) {
  TestProfile::writeFile(file(), "<SharePortfolioCapitalRecord><String>Other</String>"
                                 "<DayCap><Date>1/2/2026</Date><Constant>1.00</Constant></DayCap>"
                                 "</SharePortfolioCapitalRecord>");
  reopen();
  EXPECT_FALSE(record().hasDayCap(Date(2026, 2, 1)));
  makeDays(m_yesterday);
  record().save();
  EXPECT_NE(TestProfile::readFile(file()).find("<String>Trading</String>"), std::string::npos);
  EXPECT_TRUE(m_interaction.calls().empty());
}

TEST_F(CapitalRecordFileTest, UnusableFilesAreSilentlyStartedAgain) {
  for (const char* content :
       {"", "no document", "<SharePortfolioCapitalRecord><String>Trading</String><DayCap>",
        "<SharePortfolioCapitalRecord><String>Trading</String><DayCap><Date>today</Date></DayCap>"
        "</SharePortfolioCapitalRecord>",
        "<SharePortfolioCapitalRecord><String>Trading</String><DayCap><Date>2/2/2026</Date></DayCap>"
        "<DayCap><Date>1/2/2026</Date></DayCap></SharePortfolioCapitalRecord>",
        "<SharePortfolioCapitalRecord><String>Trading</String><DayCap><Date>2/2/2026</Date></DayCap>"
        "<DayCap><Date>2/2/2026</Date></DayCap></SharePortfolioCapitalRecord>"}) {
    TestProfile::writeFile(file(), content);
    reopen();
    EXPECT_EQ(numDays(Date(2026, 1, 1), m_today), 0u) << content;
    EXPECT_FALSE(record().isModified());
  }
  EXPECT_TRUE(m_interaction.calls().empty());
}

TEST_F(CapitalRecordFileTest, RenamingMovesTheFile) {
  makeDays(m_yesterday);
  record().save();
  record().rename(u"Saving");
  EXPECT_EQ(record().name(), String(u"Saving"));
  EXPECT_FALSE(TestProfile::fileExists(file()));
  EXPECT_EQ(record().fileName(), m_profile.dataFolder() + u"SavingCapRecord.xml");
  EXPECT_NE(TestProfile::readFile(record().fileName()).find("<String>Saving</String>"), std::string::npos);
  EXPECT_TRUE(record().hasDayCap(m_yesterday));
}

TEST_F(CapitalRecordFileTest, RenamingToTheSameNameDoesNothing) {
  makeDays(m_yesterday);
  record().rename(u"Trading");
  EXPECT_FALSE(TestProfile::fileExists(file()));
  EXPECT_TRUE(record().isModified());
}

TEST_F(CapitalRecordFileTest, AFailedRenameLeavesTheOldName) {
  makeDays(m_yesterday);
  record().save();
  std::filesystem::create_directories((m_profile.dataFolder() + u"SavingCapRecord.xml").toUTF8() +
                                      "/occupied");
  EXPECT_FALSE(messageOf([this] { user().rename(u"Saving"); }).empty());
  EXPECT_EQ(user().name(), String(u"Trading"));
  EXPECT_EQ(record().name(), String(u"Trading"));
  EXPECT_EQ(record().fileName(), file());
  EXPECT_TRUE(TestProfile::fileExists(file()));
  record().save();
  EXPECT_NE(TestProfile::readFile(file()).find("<String>Trading</String>"), std::string::npos);
}

TEST_F(CapitalRecordFileTest, TheFileIsNamedByThePortfolio) {
  EXPECT_EQ(capitalRecordFile(u"My 50% share"), m_profile.dataFolder() + u"My 50% shareCapRecord.xml");
}

TEST_F(CapitalRecordFileTest, ANameLeadsToNoOtherFolder) {
  EXPECT_EQ(capitalRecordFile(u"../Config/X"), m_profile.dataFolder() + u"..%2FConfig%2FXCapRecord.xml");
  EXPECT_FALSE(capitalRecordFile(u"a/b") == capitalRecordFile(u"a%2Fb")) << "nor to another's record";
}

/// A record of yesterday and today in a file that has not been read since.
class UnreadRecordTest : public CapitalRecordTest {
protected:
  UnreadRecordTest() {
    user().addBuyEvent(u"ABC.AX", {m_yesterday, 10, 5, 0, u""});
    setPrices(u"ABC.AX", Date(2026, 3, 1), m_today, 5);
    update();
    record().save();
    reopen();
  }
};

TEST_F(UnreadRecordTest, IsReadWhenADayIsFirstNeeded) {
  EXPECT_FALSE(record().isModified());
  record().save();
  EXPECT_FALSE(record().isLoaded());
  EXPECT_TRUE(record().hasDayCap(m_yesterday));
  EXPECT_TRUE(record().isLoaded());
  EXPECT_FALSE(record().isModified());
}

TEST_F(UnreadRecordTest, TakesOverThePricesThatCameBefore) {
  record().currentPriceUpdated(u"ABC.AX", 6);
  record().currentPriceUpdated(u"ABC.AX", 7);
  record().historicalPriceChanged(u"ABC.AX", m_yesterday, 4);
  m_profile.setToday(Date(2026, 3, 4)); // a price belongs to the day on which it came
  EXPECT_FALSE(record().isLoaded());
  EXPECT_EQ(dayOf(m_today), String(u"3/3/2026 cash 0.00; ABC.AX 10.00 x 7.00"));
  EXPECT_EQ(dayOf(m_yesterday), String(u"2/3/2026 cash 0.00; ABC.AX 10.00 x 4.00"));
  EXPECT_TRUE(record().isModified());
}

TEST_F(UnreadRecordTest, HasThePricesThatCameBeforeWritten) {
  record().currentPriceUpdated(u"ABC.AX", 7);
  EXPECT_TRUE(record().isModified());
  record().save();
  EXPECT_NE(TestProfile::readFile(file()).find("<Constant>7.00</Constant>"), std::string::npos);
}

TEST_F(UnreadRecordTest, IsNotModifiedByThePriceOfAStockThatIsNotHeld) {
  record().currentPriceUpdated(u"DEF.AX", 7);
  EXPECT_FALSE(record().isModified());
}

TEST_F(UnreadRecordTest, IsReadWhenThePricesOfYearsCome) {
  for (int i = 2000; i >= 0; --i)
    record().historicalPriceChanged(u"ABC.AX", m_yesterday.plusDays(-i), 4);
  EXPECT_TRUE(record().isLoaded());
  EXPECT_EQ(dayOf(m_yesterday), String(u"2/3/2026 cash 0.00; ABC.AX 10.00 x 4.00"));
}

TEST_F(UnreadRecordTest, IsRenamedWithItsDays) {
  record().rename(u"Saving");
  EXPECT_FALSE(TestProfile::fileExists(file()));
  const std::string content = TestProfile::readFile(record().fileName());
  EXPECT_NE(content.find("<String>Saving</String>"), std::string::npos);
  EXPECT_NE(content.find("<Date>3/3/2026</Date>"), std::string::npos);
}

TEST_F(UnreadRecordTest, KeepsItsDaysWhenTheFileIsRemoved) {
  record().removeFile();
  EXPECT_TRUE(record().isModified());
  EXPECT_TRUE(record().hasDayCap(m_yesterday));
  record().save();
  EXPECT_NE(TestProfile::readFile(file()).find("<Date>2/3/2026</Date>"), std::string::npos);
}

TEST_F(UnreadRecordTest, LosesTheDaysThatAChangeTouches) {
  user().creditCash(m_today, 5, CASH_EVENT_DEPOSIT, u"");
  EXPECT_TRUE(record().isModified());
  EXPECT_TRUE(record().hasDayCap(m_yesterday));
  EXPECT_FALSE(record().hasDayCap(m_today));
}

TEST_F(UnreadRecordTest, KeepsTheMarkOfDaysThatAreToBeComputedAgain) {
  record().recomputeFrom(m_today);
  EXPECT_TRUE(record().isModified());
  EXPECT_TRUE(record().hasDayCap(m_today));
  record().save();
  EXPECT_NE(TestProfile::readFile(file()).find(" RecomputeFrom=\"3/3/2026\""), std::string::npos);
  update();
  record().save();
  EXPECT_EQ(TestProfile::readFile(file()).find("RecomputeFrom"), std::string::npos);
}

} // namespace
} // namespace Tallymoor
