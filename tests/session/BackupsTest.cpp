#include "session/Backups.h"
#include "books/SharePortfolioUser.h"
#include "foundation/Exception.h"
#include "session/PortfolioStore.h"
#include "session/RecordsReading.h"
#include "support/FakeUserInteraction.h"
#include "support/FileMode.h"
#include "support/GatewayScope.h"
#include "support/MarketFixture.h"
#include "support/MessageOf.h"
#include "support/StringPrinting.h"
#include "support/TestProfile.h"
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sstream>

namespace Tallymoor {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

std::string portfolio(const std::string& name, const std::string& amount) {
  return "<SharePortfolio><String>" + name +
         "</String><HeldShares><HeldShare><String>AAA.AX</String><BuyEvent><Date>2/3/2006</Date>"
         "<Constant>1.00</Constant><Constant>2.0000</Constant><Constant>0.00</Constant><String/></BuyEvent>"
         "<Constant/><Constant/><Constant/></HeldShare></HeldShares><SoldShares/><Dividends/><CashReserve>"
         "<CashEvent><Date>2/3/2006</Date><Constant>" +
         amount +
         "</Constant><Constant>4</Constant><String>DEPOSIT "
         "</String></CashEvent></CashReserve><String/></SharePortfolio>";
}

class BackupsTest : public ::testing::Test {
protected:
  String records() const { return profile.dataFolder() + u"Portfolios.xml"; }
  String folder() const { return profile.dataFolder() + u"Backups"; }
  void put(const std::string& portfolios) const {
    TestProfile::writeFile(records(), "<Portfolios>" + portfolios + "</Portfolios>");
  }
  std::vector<std::string> names() const {
    std::vector<std::string> found;
    if (std::filesystem::exists(folder().toUTF8()))
      for (const auto& file : std::filesystem::directory_iterator(folder().toUTF8()))
        found.push_back(file.path().filename().string());
    std::sort(found.begin(), found.end());
    return found;
  }

  TestProfile profile;
};

TEST_F(BackupsTest, TheFirstOfADayIsKept) {
  put("<!-- first -->");
  keepBackupOfDay(records(), Date(2026, 3, 3));
  put("<!-- second -->");
  keepBackupOfDay(records(), Date(2026, 3, 3));
  EXPECT_THAT(names(), ElementsAre("Portfolios 2026-03-03.xml"));
  EXPECT_EQ("<Portfolios><!-- first --></Portfolios>",
            TestProfile::readFile(folder() + u"/Portfolios 2026-03-03.xml"));
  keepBackupOfDay(records(), Date(2026, 3, 4));
  EXPECT_THAT(names(), ElementsAre("Portfolios 2026-03-03.xml", "Portfolios 2026-03-04.xml"));
}

TEST_F(BackupsTest, AFolderThatCannotBeListedLosesNone) {
  put("<!-- first -->");
  keepBackupOfDay(records(), Date(2026, 3, 3));
  put("<!-- second -->");
  std::filesystem::permissions(folder().toUTF8(), std::filesystem::perms(0300));
  keepBackupOfDay(records(), Date(2026, 3, 3));
  std::filesystem::permissions(folder().toUTF8(), std::filesystem::perms(0700));
  EXPECT_EQ("<Portfolios><!-- first --></Portfolios>",
            TestProfile::readFile(folder() + u"/Portfolios 2026-03-03.xml"));
}

TEST_F(BackupsTest, FileAndFolderAreTheUsersAlone) {
  const NoUmask umask;
  put("");
  keepBackupOfDay(records(), Date(2026, 3, 3));
  EXPECT_EQ(0700u, modeOf(folder()));
  EXPECT_EQ(0600u, modeOf(folder() + u"/Portfolios 2026-03-03.xml"));
}

TEST_F(BackupsTest, MissingRecordsGiveNone) {
  keepBackupOfDay(records(), Date(2026, 3, 3));
  EXPECT_THAT(names(), IsEmpty());
}

TEST_F(BackupsTest, TenDaysAndTheFirstOfEachMonthOfAYearAreKept) {
  put("");
  for (Date day(2024, 11, 5); day <= Date(2026, 3, 20); day = day.plusDays(1))
    keepBackupOfDay(records(), day);
  std::vector<std::string> expected;
  for (const char* month : {"2025-04", "2025-05", "2025-06", "2025-07", "2025-08", "2025-09", "2025-10",
                            "2025-11", "2025-12", "2026-01", "2026-02", "2026-03"})
    expected.push_back(std::string("Portfolios ") + month + "-01.xml");
  for (int day = 11; day <= 20; ++day)
    expected.push_back("Portfolios 2026-03-" + std::to_string(day) + ".xml");
  EXPECT_EQ(expected, names());
}

TEST_F(BackupsTest, DaysWithoutTheProgramTakeNoneAway) {
  put("");
  for (int day = 1; day <= 10; ++day)
    keepBackupOfDay(records(), Date(2024, 1, day));
  keepBackupOfDay(records(), Date(2026, 3, 3));
  EXPECT_EQ(10u, names().size());
}

TEST_F(BackupsTest, OtherFilesStay) {
  put("");
  std::filesystem::create_directories(folder().toUTF8());
  for (const char16_t* name : {u"/mine.xml", u"/Portfolios 2020-13-01.xml", u"/Portfolios 2020-02-30.xml"})
    TestProfile::writeFile(folder() + name, "x");
  keepBackupOfDay(records(), Date(2026, 3, 3));
  EXPECT_EQ(4u, names().size());
  EXPECT_EQ(1u, listBackups().size());
}

TEST_F(BackupsTest, TheListTellsWhatIsInEach) {
  put(portfolio("Mining", "1.00") + portfolio("Trading", "2.00"));
  keepBackupOfDay(records(), Date(2026, 3, 2));
  TestProfile::writeFile(records(), "<Portfolios><Share");
  keepBackupOfDay(records(), Date(2026, 3, 3));
  put("");
  const String further = furtherBackupPath(Date(2026, 3, 2));
  EXPECT_EQ(folder() + u"/Portfolios 2026-03-02 (2).xml", further);
  TestProfile::writeFile(further, "<Portfolios/>");
  EXPECT_EQ(folder() + u"/Portfolios 2026-03-02 (3).xml", furtherBackupPath(Date(2026, 3, 2)));

  const std::vector<Backup> backups = listBackups();
  ASSERT_EQ(3u, backups.size());
  EXPECT_EQ(Date(2026, 3, 3), backups[0].day);
  EXPECT_FALSE(backups[0].isReadable);
  EXPECT_THAT(backups[0].portfolios, IsEmpty());
  EXPECT_EQ(18u, backups[0].bytes);
  EXPECT_EQ(further, backups[2].path);
  EXPECT_EQ(Date(2026, 3, 2), backups[1].day);
  EXPECT_TRUE(backups[1].isReadable);
  EXPECT_THAT(backups[1].portfolios, ElementsAre(String(u"Mining"), String(u"Trading")));
  EXPECT_EQ(4u, backups[1].transactions);
}

TEST_F(BackupsTest, AFolderThatCannotBeMadeIsToldWithItsReason) {
  put("");
  TestProfile::writeFile(folder(), "a file in its place");
  EXPECT_NE(String::npos, messageOf([this] {
                            keepBackupOfDay(records(), Date(2026, 3, 3));
                          }).find(u"Backups/Portfolios 2026-03-03.xml"));
}

/// Copies that the program makes by itself, and puts back.
class BackupsInUseTest : public BackupsTest {
protected:
  static std::string textOfAll(PortfolioStore& store) {
    std::ostringstream stream;
    store.records().encode(stream);
    return stream.str();
  }
  static void deposit(PortfolioStore& store, const String& name) {
    makeChange(u"Deposit", [&] {
      store.portfolios().at(name)->creditCash(Date(2006, 3, 3), 1, CASH_EVENT_DEPOSIT, u"DEPOSIT ");
    });
  }

  FakeUserInteraction user;
  MarketFixture market;
  GatewayScope gateway;
};

TEST_F(BackupsInUseTest, TheFirstSaveOfADayKeepsWhatWasThereBefore) {
  put(portfolio("Trading", "1.00"));
  const std::string before = TestProfile::readFile(records());
  PortfolioStore store(user);
  store.load();
  deposit(store, u"Trading");
  ASSERT_TRUE(store.beginSaving([] {}));
  EXPECT_FALSE(store.finishSaving());
  deposit(store, u"Trading");
  store.save();
  const std::vector<Backup> backups = listBackups();
  ASSERT_EQ(1u, backups.size());
  EXPECT_EQ(Date::realToday(), backups[0].day);
  EXPECT_EQ(before, TestProfile::readFile(backups[0].path));
}

TEST_F(BackupsInUseTest, ACopyThatCannotBeMadeIsToldAndTheRecordsAreSaved) {
  put(portfolio("Trading", "1.00"));
  TestProfile::writeFile(folder(), "a file in its place");
  PortfolioStore store(user);
  store.load();
  deposit(store, u"Trading");
  store.save();
  EXPECT_TRUE(store.lastSaveSucceeded());
  ASSERT_EQ(1u, user.texts(FakeUserInteraction::Kind::Error).size());
  EXPECT_TRUE(user.texts(FakeUserInteraction::Kind::Error)[0].startsWith(
      u"Your data were saved, but not the copy of the last ones."));
}

TEST_F(BackupsInUseTest, AllPortfoliosBecomeAsTheyWereAndOneUndoTakesItBack) {
  put(portfolio("Mining", "1.00") + portfolio("Trading", "2.00"));
  keepBackupOfDay(records(), Date(2026, 3, 2));
  put(portfolio("Other", "3.00") + portfolio("Trading", "4.00"));
  PortfolioStore store(user);
  store.load();
  const std::string before = textOfAll(store);
  const XMLSharePortfolio* const trading = &store.portfolios().at(u"Trading")->portfolio();

  XMLPortfolios backup;
  readRecordsDocument(backup, listBackups().at(0).path);
  store.changes().replaceAll(u"Return", backup);
  EXPECT_EQ("<Portfolios>" + portfolio("Mining", "1.00") + portfolio("Trading", "2.00") + "</Portfolios>",
            textOfAll(store));
  EXPECT_EQ(2u, store.portfolios().size());
  EXPECT_EQ(trading, &store.portfolios().at(u"Trading")->portfolio()) << "which nodes refer to";
  ASSERT_NE(nullptr, store.changes().toUndo());
  EXPECT_EQ(String(u"Return"), store.changes().toUndo()->sentence);

  store.changes().undo();
  EXPECT_EQ(before, textOfAll(store));
  EXPECT_EQ(nullptr, store.changes().toUndo());
}

} // namespace
} // namespace Tallymoor
