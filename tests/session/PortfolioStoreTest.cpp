#include "session/PortfolioStore.h"
#include "books/SharePortfolioUser.h"
#include "foundation/FileReplacement.h"
#include "session/BookQuestions.h"
#include "support/FakeUserInteraction.h"
#include "support/FileMode.h"
#include "support/GatewayScope.h"
#include "support/MarketFixture.h"
#include "support/TestProfile.h"
#include "xml/PortfolioRecords.h"
#include <filesystem>
#include <gtest/gtest.h>
#include <map>

namespace Tallymoor {
namespace {

using Kind = FakeUserInteraction::Kind;

const char* const HEAD = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                         "<!DOCTYPE Portfolios SYSTEM \"Tallymoor Records.dtd\">\n";

/// A portfolio with one deposit.
std::string document(const std::string& name, const std::string& amount) {
  return HEAD +
         ("<Portfolios><SharePortfolio><String>" + name +
          "</String><HeldShares/><SoldShares/><Dividends/><CashReserve><CashEvent><Date>3/3/2006</"
          "Date><Constant>" +
          amount +
          "</Constant><Constant>4</Constant><String>DEPOSIT </String></CashEvent></CashReserve><String/>"
          "</SharePortfolio></Portfolios>");
}

class PortfolioStoreTest : public ::testing::Test {
protected:
  String records() const { return profile.dataFolder() + u"Portfolios.xml"; }
  String backup() const { return records() + u".bak"; }
  void put(const std::string& content) const { TestProfile::writeFile(records(), content); }

  TestProfile profile;
  FakeUserInteraction user;
  MarketFixture market;
  GatewayScope gateway;
};

TEST_F(PortfolioStoreTest, FirstRunHasNoMessageAndNoPortfolio) {
  PortfolioStore store(user);
  store.load();
  EXPECT_FALSE(store.loadFailed());
  EXPECT_TRUE(store.portfolios().empty());
  EXPECT_TRUE(user.calls().empty());
}

TEST_F(PortfolioStoreTest, WhatWasSavedIsLoadedAgainToTheLetter) {
  put(document("Trading", "100.00"));
  PortfolioStore store(user);
  store.load();
  ASSERT_EQ(1u, store.portfolios().count(u"Trading"));
  store.save();
  EXPECT_EQ(document("Trading", "100.00"), TestProfile::readFile(records()));
}

TEST_F(PortfolioStoreTest, AnUnreadableDateIsReportedAtTheStartAndTheRestIsOpened) {
  std::string content = document("Trading", "100.00");
  content.replace(content.find("3/3/2006"), 8, "31/2 &amp; so");
  put(content);
  for (int run = 0; run < 2; ++run) {
    user.clearCalls();
    PortfolioStore store(user);
    store.load();
    ASSERT_EQ(1u, user.calls().size());
    EXPECT_EQ(String(u"Your records hold dates that can't be read:\n"
                     u"Trading, cash reserve, entry 1: \"31/2 & so\" (line 3 of the file)\n"
                     u"These entries are shown on the day 01/01/9999 and left out of all figures\n"
                     u"until you put their dates right in the table. All else is computed as ever."),
              user.texts(Kind::Warning).at(0));
    EXPECT_FALSE(store.loadFailed());
    EXPECT_EQ(1u, store.portfolios().count(u"Trading"));
    store.save();
  }
}

TEST_F(PortfolioStoreTest, BackupHoldsTheLastSavedState) {
  put(document("Trading", "100.00"));
  PortfolioStore store(user);
  store.load();
  SharePortfolioUser& trading = *store.portfolios().at(u"Trading");
  trading.creditCash(Date(2006, 3, 4), 1.0, CASH_EVENT_DEPOSIT, u"DEPOSIT one");
  store.save();
  EXPECT_EQ(document("Trading", "100.00"), TestProfile::readFile(backup()));
  const std::string first = TestProfile::readFile(records());
  trading.creditCash(Date(2006, 3, 5), 2.0, CASH_EVENT_DEPOSIT, u"DEPOSIT two");
  store.save();
  EXPECT_EQ(first, TestProfile::readFile(backup()));
}

TEST_F(PortfolioStoreTest, MissingFileGivesNoBackupAndNoError) {
  PortfolioStore store(user);
  store.load();
  store.save();
  EXPECT_FALSE(TestProfile::fileExists(backup()));
  EXPECT_EQ(std::string(HEAD) + "<Portfolios/>", TestProfile::readFile(records()));
  EXPECT_TRUE(user.calls().empty());
}

const char16_t* const RECOVERY_START = u"An error occurred while loading your data.\n"
                                       u"BEFORE EXITING, please backup \"Portfolios.xml\"\n"
                                       u"and \"Portfolios.xml.bak\" from\n";
const char16_t* const RECOVERY_END =
    u".\nTo recover your data, either import your portfolio from backup now,\n"
    u"or replace the data file \"Portfolios.xml\" with \"Portfolios.xml.bak\"\n"
    u"in the above directory after exiting.\n";
const char16_t* const OVERWRITE = u"Since there was a problem when you opened your\n"
                                  u"portfolio file, you may not wish to save your portfolios\n"
                                  u"as they appear now. Are you sure you want to save the\n"
                                  u"current portfolios and overwrite the existing ones\n"
                                  u"Tallymoor had a problem opening?";

TEST_F(PortfolioStoreTest, ACorruptFileGivesTheRecoveryTextAndStaysUnchanged) {
  put("<Portfolios><SharePortfolio><String>Tra");
  PortfolioStore store(user);
  store.load();
  EXPECT_TRUE(store.loadFailed());
  EXPECT_TRUE(store.portfolios().empty());
  EXPECT_EQ(0u, store.records().numSubElements(u"SharePortfolios"));
  ASSERT_EQ(1u, user.texts(Kind::Error).size());
  const String told = user.texts(Kind::Error)[0];
  EXPECT_TRUE(
      told.startsWith(String(RECOVERY_START) + profile.dataFolder() + RECOVERY_END + u" XMLException : "))
      << told.toUTF8();

  user.answerQuestion(false);
  store.save();
  EXPECT_EQ(String(OVERWRITE), user.texts(Kind::Question).at(0));
  EXPECT_EQ("<Portfolios><SharePortfolio><String>Tra", TestProfile::readFile(records()));
  EXPECT_FALSE(TestProfile::fileExists(backup()));
}

TEST_F(PortfolioStoreTest, OverwritingAfterAFailedLoadSetsTheOldBackupAside) {
  put("broken");
  TestProfile::writeFile(backup(), "the last good state");
  PortfolioStore store(user);
  store.load();
  user.answerQuestion(true);
  store.save();
  EXPECT_EQ("the last good state", TestProfile::readFile(backup() + u".1"));
  EXPECT_EQ("broken", TestProfile::readFile(backup()));
  EXPECT_EQ(std::string(HEAD) + "<Portfolios/>", TestProfile::readFile(records()));
}

TEST_F(PortfolioStoreTest, AFolderInPlaceOfTheFileIsAFailureAndNotAFirstRun) {
  std::filesystem::create_directories(records().toUTF8());
  PortfolioStore store(user);
  store.load();
  EXPECT_TRUE(store.loadFailed());
}

TEST_F(PortfolioStoreTest, ADanglingLinkIsAFailureAndNotAFirstRun) {
  std::filesystem::create_symlink(profile.folder() + "/nowhere", records().toUTF8());
  PortfolioStore store(user);
  store.load();
  EXPECT_TRUE(store.loadFailed());
}

TEST_F(PortfolioStoreTest, AFailedSaveIsReportedAndLeavesTheOldFile) {
  put(document("Trading", "100.00"));
  PortfolioStore store(user);
  store.load();
  // Written without escaping, this value would make the file unreadable.
  store.records().subElement(u"SharePortfolios").subElement(u"Name").setValue(u"A&B");
  store.save();
  EXPECT_FALSE(store.lastSaveSucceeded());
  ASSERT_EQ(1u, user.texts(Kind::Error).size());
  EXPECT_TRUE(user.texts(Kind::Error)[0].startsWith(u"XMLException occurred while saving your data. \n"
                                                    u"You should load a previous data file."))
      << user.texts(Kind::Error)[0].toUTF8();
  EXPECT_EQ(document("Trading", "100.00"), TestProfile::readFile(records()));
}

TEST_F(PortfolioStoreTest, NamesFromAHandEditedFileAreCleaned) {
  put(document("../Tra&lt;ding", "100.00"));
  PortfolioStore store(user);
  store.load();
  EXPECT_EQ(1u, store.portfolios().count(u"..Trading"));
  EXPECT_FALSE(store.loadFailed());
}

TEST_F(PortfolioStoreTest, ALaterPortfolioOfTheSameNameTakesThePlaceOfTheEarlier) {
  std::string two = document("Trading", "100.00");
  const std::string second =
      two.substr(two.find("<SharePortfolio>"), two.find("</Portfolios>") - two.find("<SharePortfolio>"));
  two.insert(two.find("</Portfolios>"), second);
  put(two);
  PortfolioStore store(user);
  store.load();
  ASSERT_EQ(1u, store.portfolios().size());
  EXPECT_EQ(&store.records().subElement(u"SharePortfolios", 1),
            &store.portfolios().at(u"Trading")->portfolio());
}

/// Records of an earlier version: 200 shares were all sold after a 2:1 split, and the program then asked for
/// the split again.
void addSaleCountedTwice(SharePortfolioUser& portfolio) {
  portfolio.debitCash(Date(2006, 1, 3), 1000, CASH_EVENT_DEBIT, u"BUY 100.00 of ABC.AX @ 10.0000");
  portfolio.creditCash(Date(2006, 3, 1), 1200, CASH_EVENT_CREDIT, u"SELL 200.00 of ABC.AX @ 6.0000");
  XMLSoldShare& stock = portfolio.portfolio().soldShares().add();
  stock.setCode(u"ABC.AX");
  XMLSellEvent& sale = stock.sales().add();
  for (const auto& [reference, value] : std::map<String, String>{{u"BuyDate", u"3/1/2006"},
                                                                 {u"SellDate", u"1/3/2006"},
                                                                 {u"NumHeld", u"200.00"},
                                                                 {u"BuyPrice", u"5.0000"},
                                                                 {u"SellPrice", u"6.0000"},
                                                                 {u"BuyBrokerage", u"0.00"},
                                                                 {u"SellBrokerage", u"0.00"}})
    sale.subElement(reference).setValue(value);
  portfolio.setAdjustment(sale.adjustments().add(), Date(2006, 2, 1), 2, false);
}

TEST_F(PortfolioStoreTest, ASaleCountedTwiceByAnEarlierVersionIsCorrected) {
  put(document("Trading", "100.00"));
  PortfolioStore store(user);
  store.load();
  addSaleCountedTwice(*store.portfolios().at(u"Trading"));
  store.save();
  PortfolioStore next(user);
  next.load();
  const auto& sale = next.portfolios().at(u"Trading")->portfolio().soldShares()[0].subElement(u"SellEvents");
  EXPECT_EQ(textValue(sale, u"NumHeld") + u" at " + textValue(sale, u"BuyPrice"),
            String(u"100.00 at 10.0000"));
}

TEST_F(PortfolioStoreTest, CapitalRecordsOfChangedPortfoliosAreWrittenAfterTheRecords) {
  put(document("Trading", "100.00"));
  PortfolioStore store(user);
  store.load();
  checkCashReserve(*store.portfolios().at(u"Trading"));
  store.save();
  const std::string record = TestProfile::readFile(profile.dataFolder() + u"TradingCapRecord.xml");
  EXPECT_NE(std::string::npos, record.find("<DayCap><Date>3/3/2006</Date><Constant>100.00</Constant>"));
}

TEST_F(PortfolioStoreTest, OutdatedCapitalRecordsAreEmptiedBeforeTheRecordsAreWritten) {
  put(document("Trading", "100.00"));
  PortfolioStore store(user);
  store.load();
  SharePortfolioUser& trading = *store.portfolios().at(u"Trading");
  checkCashReserve(trading);
  store.save();
  trading.creditCash(Date(2006, 3, 4), 1.0, CASH_EVENT_DEPOSIT, u"DEPOSIT one");
  EXPECT_TRUE(store.saveRecords());
  EXPECT_EQ("", TestProfile::readFile(profile.dataFolder() + u"TradingCapRecord.xml"));
}

TEST_F(PortfolioStoreTest, ASaveKeepsTheModesAndNamesThatTheUserGaveItsFiles) {
  put(document("Trading", "100.00"));
  PortfolioStore store(user);
  store.load();
  SharePortfolioUser& trading = *store.portfolios().at(u"Trading");
  checkCashReserve(trading);
  store.save();
  const String capital = profile.dataFolder() + u"TradingCapRecord.xml";
  EXPECT_EQ(0600u, modeOf(capital));
  EXPECT_EQ(0600u, modeOf(backup()));
  for (const String& file : {records(), backup(), capital}) {
    std::filesystem::permissions(file.toUTF8(), std::filesystem::perms(0640));
    std::filesystem::create_hard_link(file.toUTF8(), (file + u".mine").toUTF8());
  }
  trading.creditCash(Date(2006, 3, 4), 1.0, CASH_EVENT_DEPOSIT, u"DEPOSIT one");
  store.save();
  for (const String& file : {records(), backup(), capital}) {
    EXPECT_EQ(0640u, modeOf(file)) << file.toUTF8();
    EXPECT_TRUE(std::filesystem::equivalent(file.toUTF8(), (file + u".mine").toUTF8())) << file.toUTF8();
  }
  EXPECT_EQ(document("Trading", "100.00"), TestProfile::readFile(backup()));
}

TEST_F(PortfolioStoreTest, ADataFolderThatIsDeletedWhileTheProgramRunsIsMadeAgain) {
  put(document("Trading", "100.00"));
  PortfolioStore store(user);
  store.load();
  std::filesystem::remove_all(profile.dataFolder().toUTF8());
  store.save();
  EXPECT_EQ(document("Trading", "100.00"), TestProfile::readFile(records()));
  EXPECT_TRUE(user.calls().empty());
}

} // namespace
} // namespace Tallymoor
