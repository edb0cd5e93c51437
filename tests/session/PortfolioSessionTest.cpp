#include "session/PortfolioSession.h"
#include "foundation/LengthyFunctions.h"
#include "foundation/Settings.h"
#include "foundation/TransferFolder.h"
#include "market/SharePriceCache.h"
#include "market/TallymoorInternet.h"
#include "session/PortfolioExport.h"
#include "support/FakeUserInteraction.h"
#include "support/GatewayScope.h"
#include "support/ImportFiles.h"
#include "support/MarketFixture.h"
#include "support/MessageOf.h"
#include "support/TestProfile.h"
#include "xml/CountryOfResidence.h"
#include <filesystem>
#include <fx.h>
#include <gtest/gtest.h>

namespace Tallymoor {
namespace {

using Kind = FakeUserInteraction::Kind;

class NotedProgress : public Progress {
public:
  void setTotal(unsigned) override {}
  void step(unsigned increment, const String& text) override {
    steps += increment;
    texts.push_back(text);
  }
  void setText(const String&) override {}
  bool isCancelled() const override { return false; }

  unsigned steps = 0;
  std::vector<String> texts;
};

/// A session with the portfolio "Trading", which has 100.00 in cash.
class PortfolioSessionTest : public ::testing::Test {
protected:
  PortfolioSessionTest() {
    CountryOfResidence::destroyInstance(); // Left by another test.
    Settings::Instance().writeString(u"Config", u"Country", u"Australia");
    TestProfile::writeFile(records(), document(portfolio("Trading", "100.00")));
    session.load(progress);
  }
  ~PortfolioSessionTest() override { CountryOfResidence::destroyInstance(); }

  String priceFile() const { return SharePriceCache(profile.cacheFolder()).pathOf(u"ABC.AX"); }
  String records() const { return profile.dataFolder() + u"Portfolios.xml"; }
  String import(const std::string& content) const {
    const String path = profile.path("import.xml");
    TestProfile::writeFile(path, content);
    return path;
  }

  TestProfile profile;
  FakeUserInteraction user;
  MarketFixture market;
  GatewayScope gateway;
  NotedProgress progress;
  PortfolioSession session{user};
};

TEST_F(PortfolioSessionTest, LoadOpensPricesAndPortfoliosAndShowsItsSteps) {
  EXPECT_TRUE(TallymoorInternet::exists());
  EXPECT_EQ(1u, session.store().portfolios().count(u"Trading"));
  EXPECT_EQ(2u, progress.steps);
  EXPECT_EQ((std::vector<String>{u"loading price cache", u"loading portfolio records"}), progress.texts);
  EXPECT_TRUE(user.texts(Kind::Error).empty());
}

TEST_F(PortfolioSessionTest, LoadRemovesWhatAnInterruptedSaveLeft) {
  const String leftover = profile.dataFolder() + u".tallymoor-abc.tmp";
  TestProfile::writeFile(leftover, "half");
  PortfolioSession(user).load(progress);
  EXPECT_FALSE(TestProfile::fileExists(leftover));
}

TEST_F(PortfolioSessionTest, LoadRemovesWhatAnInterruptedCopyOfTheDayLeft) {
  const String left = profile.dataFolder() + u"Backups/.tallymoor-abc.tmp";
  TestProfile::writeFile(left, "half");
  PortfolioSession(user).load(progress);
  EXPECT_FALSE(TestProfile::fileExists(left));
}

TEST_F(PortfolioSessionTest, SaveWritesPricesPortfoliosAndSettings) {
  FXRegistry registry("Tallymoor", "Brindlecove");
  Settings::attach(&registry);
  const String settings = Settings::Instance().filePath();
  std::filesystem::create_directories(std::filesystem::path(settings.toUTF8()).parent_path());
  Settings::Instance().writeString(u"Config", u"Colour", u"blue");
  session.store()
      .portfolios()
      .at(u"Trading")
      ->creditCash(Date(2026, 3, 3), 23.0, CASH_EVENT_DEPOSIT, u"DEPOSIT more");
  TallymoorInternet::Instance().setCachedPrice(u"ABC.AX", Date(2026, 3, 2), 2.5);
  session.save();
  EXPECT_NE(std::string::npos, TestProfile::readFile(records()).find("DEPOSIT more"));
  EXPECT_NE(std::string::npos, TestProfile::readFile(settings).find("Colour=blue"));
  EXPECT_NE(std::string::npos, TestProfile::readFile(priceFile()).find("2.5"));
  ASSERT_EQ(1u, user.calls(Kind::WarningOver).size());
  EXPECT_EQ(String(PortfolioSession::UNSAVED_RECORDS), user.calls(Kind::WarningOver)[0].key);
  Settings::attach(nullptr);
}

TEST_F(PortfolioSessionTest, PortfoliosAreSavedWhenThePricesCannotBe) {
  TallymoorInternet::Instance().setCachedPrice(u"ABC.AX", Date(2026, 3, 2), 2.5);
  TestProfile::writeFile(priceFile() + u"/in the way", "a folder has the name of the file");
  std::filesystem::remove(records().toUTF8());
  EXPECT_NE(u"(nothing thrown)", messageOf([this] { session.save(); }));
  EXPECT_EQ(document(portfolio("Trading", "100.00")), TestProfile::readFile(records()));
}

TEST_F(PortfolioSessionTest, AFailedSaveIsReportedOnceAndTheWarningStays) {
  session.store().records().subElement(u"SharePortfolios").subElement(u"Name").setValue(u"A&B");
  session.save();
  EXPECT_FALSE(session.store().lastSaveSucceeded());
  EXPECT_EQ(1u, user.texts(Kind::Error).size());
  EXPECT_TRUE(user.calls(Kind::WarningOver).empty());
}

TEST_F(PortfolioSessionTest, AnImportOfAnotherDocumentIsReportedAndChangesNothing) {
  const String path = import("<Portfolios><SharePortfolio>");
  EXPECT_FALSE(session.readImport(path));
  ASSERT_EQ(1u, user.texts(Kind::Error).size());
  const String told = user.texts(Kind::Error)[0];
  EXPECT_TRUE(told.startsWith(u"Failed to decode the imported portfolios:  XMLException : "))
      << told.toUTF8();
  const String end = u"\nNothing was imported from " + path + u", and your portfolios are as they were.";
  EXPECT_TRUE(told.ends_with(end)) << told.toUTF8();
  EXPECT_EQ(1u, session.store().portfolios().size());
}

TEST_F(PortfolioSessionTest, AnImportAsksForEachNameThatIsTaken) {
  const String path = import(
      document(portfolio("Trading", "1.00") + portfolio("Savings", "2.00") + portfolio("Savings", "3.00")));
  user.answerQuestion(false);
  user.answerQuestion(true);
  const auto imported = session.readImport(path);
  ASSERT_TRUE(imported);
  EXPECT_EQ((std::vector<String>{u"Savings", u"Savings"}), imported->names());
  EXPECT_EQ(String(u"You already have a portfolio called \"Trading\"\nin your Total Capital. Do you want to "
                   u"replace it with\nan imported portfolio?"),
            user.texts(Kind::Question).at(0));
  EXPECT_EQ(1u, session.store().records().numSubElements(u"SharePortfolios"));
}

TEST_F(PortfolioSessionTest, WhatWasExportedIsImportedAgain) {
  std::filesystem::create_directory(profile.path("stick").toUTF8());
  const String path = profile.path("stick/backup.xml");
  writeExport(path, session.store().records());
  EXPECT_EQ(profile.path("stick/"), lastTransferFolder());
  user.answerQuestion(true);
  const auto imported = session.readImport(path);
  ASSERT_TRUE(imported);
  EXPECT_EQ(std::vector<String>{u"Trading"}, imported->names());
}

} // namespace
} // namespace Tallymoor
