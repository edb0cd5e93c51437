#include "books/SharePortfolioUser.h"
#include "foundation/BackgroundWriting.h"
#include "foundation/Exception.h"
#include "foundation/FileOperations.h"
#include "session/BookQuestions.h"
#include "session/PortfolioStore.h"
#include "support/FakeUserInteraction.h"
#include "support/GatewayScope.h"
#include "support/MarketFixture.h"
#include "support/TestProfile.h"
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sstream>

namespace Tallymoor {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;
using Kind = FakeUserInteraction::Kind;

std::string portfolio(const std::string& name) {
  return "<SharePortfolio><String>" + name +
         "</String><HeldShares/><SoldShares/><Dividends/><CashReserve><CashEvent><Date>2/3/2026</Date>"
         "<Constant>100.00</Constant><Constant>4</Constant><String>DEPOSIT "
         "</String></CashEvent></CashReserve><String/></SharePortfolio>";
}

/// The records are written by another thread.
class BackgroundSavingTest : public ::testing::Test {
protected:
  BackgroundSavingTest() {
    TestProfile::writeFile(file(u"Portfolios.xml"), atTheStart);
    store.load();
  }
  ~BackgroundSavingTest() override {
    store.clear();
    FileOperations::current() = FileOperations::system();
  }

  String file(const String& name) const { return profile.dataFolder() + name; }
  std::string content(const String& name) const { return TestProfile::readFile(file(name)); }
  std::string records() const { return content(u"Portfolios.xml"); }
  SharePortfolioUser& open(const String& name) { return *store.portfolios().at(name); }
  void deposit(const std::string& word, const String& name = u"Trading") {
    makeChange(u"Deposit", [&] {
      open(name).creditCash(Date(2026, 3, 3), 1, CASH_EVENT_DEPOSIT, String(("DEPOSIT " + word).c_str()));
    });
  }
  bool begin() {
    return store.beginSaving([this] { ++written; });
  }
  std::optional<Exception> save() {
    EXPECT_TRUE(begin());
    return store.finishSaving();
  }

  const std::string atTheStart =
      "<Portfolios>" + portfolio("Mining") + portfolio("Trading") + "</Portfolios>";
  TestProfile profile;
  FakeUserInteraction user;
  MarketFixture market;
  GatewayScope gateway;
  PortfolioStore store{user};
  int written = 0;
};

TEST_F(BackgroundSavingTest, TheRecordsOnDiskAreThoseOfTheMomentOfTheCall) {
  deposit("one");
  std::ostringstream expected;
  store.records().encodeWithDoctype(expected, u"Tallymoor Records.dtd");
  ASSERT_TRUE(begin());
  deposit("two");
  BackgroundWriting::finish();
  EXPECT_FALSE(store.isChangedOnDisk()) << "the file is this program's own";
  EXPECT_FALSE(begin()) << "one at a time";
  EXPECT_FALSE(store.finishSaving());
  EXPECT_EQ(1, written);
  EXPECT_EQ(expected.str(), records());
  EXPECT_FALSE(store.finishSaving()) << "there is nothing to wait for";
}

TEST_F(BackgroundSavingTest, TheCopyOfTheLastRecordsIsOfBeforeTheChangesOfTheUser) {
  deposit("one");
  EXPECT_FALSE(save());
  EXPECT_EQ(atTheStart, content(u"Portfolios.xml.bak"));
  deposit("two");
  EXPECT_FALSE(save());
  EXPECT_EQ(atTheStart, content(u"Portfolios.xml.bak"));
  deposit("three");
  store.save();
  EXPECT_EQ(atTheStart, content(u"Portfolios.xml.bak"));
  const std::string saved = records();
  deposit("four");
  EXPECT_FALSE(save());
  EXPECT_EQ(saved, content(u"Portfolios.xml.bak"));
  deposit("five");
  store.save();
  EXPECT_EQ(saved, content(u"Portfolios.xml.bak"));
  const std::string savedAgain = records();
  store.save();
  EXPECT_EQ(savedAgain, content(u"Portfolios.xml.bak"));
}

TEST_F(BackgroundSavingTest, AfterItNothingIsRecovered) {
  deposit("one");
  EXPECT_FALSE(save());
  PortfolioStore next(user);
  next.load();
  EXPECT_THAT(user.texts(Kind::Information), ::testing::IsEmpty());
  ASSERT_NE(nullptr, next.changes().toUndo());
}

TEST_F(BackgroundSavingTest, WhatIsChangedMeanwhileIsRecovered) {
  deposit("one");
  ASSERT_TRUE(begin());
  deposit("two");
  EXPECT_FALSE(store.finishSaving());
  PortfolioStore next(user);
  next.load();
  ASSERT_EQ(1u, user.texts(Kind::Information).size());
  EXPECT_THAT(user.texts(Kind::Information)[0].toUTF8(), HasSubstr("The change that was made since"));
  EXPECT_EQ(3u, next.portfolios().at(u"Trading")->portfolio().cashEvents().size());
}

TEST_F(BackgroundSavingTest, OnlyCapitalRecordsOfChangedPortfoliosAreWritten) {
  updateCapitalRecord(open(u"Mining"));
  deposit("one");
  updateCapitalRecord(open(u"Trading"));
  EXPECT_FALSE(save());
  EXPECT_THAT(content(u"TradingCapRecord.xml"),
              HasSubstr("<DayCap><Date>3/3/2026</Date><Constant>101.00</Constant>"));
  EXPECT_FALSE(open(u"Trading").capitalRecord().isModified());
  EXPECT_FALSE(TestProfile::fileExists(file(u"MiningCapRecord.xml")));
  EXPECT_TRUE(open(u"Mining").capitalRecord().isModified());

  deposit("two", u"Mining");
  updateCapitalRecord(open(u"Mining"));
  open(u"Trading").capitalRecord().recomputeFrom(Date(2026, 3, 3)); // as after a price
  EXPECT_FALSE(save());
  EXPECT_TRUE(TestProfile::fileExists(file(u"MiningCapRecord.xml")));
  EXPECT_TRUE(open(u"Trading").capitalRecord().isModified());
}

TEST_F(BackgroundSavingTest, AChangedCapitalRecordIsWrittenAsItWasAtTheCall) {
  deposit("one");
  updateCapitalRecord(open(u"Trading"));
  ASSERT_TRUE(begin());
  open(u"Trading").capitalRecord().recordsChangedFrom(Date(2026, 3, 3));
  EXPECT_FALSE(store.finishSaving());
  EXPECT_THAT(content(u"TradingCapRecord.xml"), HasSubstr("<Date>3/3/2026</Date>"));
  EXPECT_TRUE(open(u"Trading").capitalRecord().isModified());
}

ssize_t writeToFullDisk(int, const void*, size_t) {
  errno = ENOSPC;
  return -1;
}

TEST_F(BackgroundSavingTest, AFailureIsToldAndTheNextSaveWritesAll) {
  deposit("one");
  updateCapitalRecord(open(u"Trading"));
  FileOperations::current().write = writeToFullDisk;
  const std::optional<Exception> failure = save();
  FileOperations::current() = FileOperations::system();
  ASSERT_TRUE(failure);
  EXPECT_THAT(failure->message().toUTF8(), HasSubstr("No space left"));
  EXPECT_EQ(1, written);
  EXPECT_EQ(atTheStart, records());
  EXPECT_TRUE(open(u"Trading").capitalRecord().isModified());

  EXPECT_FALSE(save());
  EXPECT_THAT(records(), HasSubstr("DEPOSIT one"));
  EXPECT_EQ(atTheStart, content(u"Portfolios.xml.bak"));
  EXPECT_TRUE(TestProfile::fileExists(file(u"TradingCapRecord.xml")));
}

TEST_F(BackgroundSavingTest, ASaveOfTheUserComesAfterIt) {
  deposit("one");
  ASSERT_TRUE(begin());
  deposit("two");
  store.save();
  EXPECT_THAT(records(), HasSubstr("DEPOSIT two"));
}

TEST_F(BackgroundSavingTest, ARenamedPortfolioLeavesNoFileOfItsOldName) {
  deposit("one");
  updateCapitalRecord(open(u"Trading"));
  ASSERT_TRUE(begin());
  makeChange(u"Renaming", [this] { renamePortfolio(store.portfolios(), u"Trading", u"Other"); });
  EXPECT_FALSE(store.finishSaving());
  EXPECT_FALSE(TestProfile::fileExists(file(u"TradingCapRecord.xml")));
  EXPECT_TRUE(TestProfile::fileExists(file(u"OtherCapRecord.xml")));
}

TEST_F(BackgroundSavingTest, RecordsThatCannotBeADocumentAreRefused) {
  // Written without escaping, this value would make the file unreadable.
  store.records().subElement(u"SharePortfolios").subElement(u"Name").setValue(u"A&B");
  EXPECT_TRUE(save());
  EXPECT_EQ(atTheStart, records());
}

TEST_F(BackgroundSavingTest, NothingIsWrittenAfterAFailedLoad) {
  store.setLoadFailed();
  EXPECT_FALSE(begin());
  EXPECT_EQ(atTheStart, records());
}

TEST_F(BackgroundSavingTest, EachChangeIsToldOnce) {
  int told = 0;
  store.changes().afterChange([&told] { ++told; });
  deposit("one");
  EXPECT_EQ(1, told);
  makeChange(u"Nothing", [] {});
  EXPECT_EQ(1, told);
  store.changes().undo();
  EXPECT_EQ(2, told);
  store.save();
  EXPECT_EQ(2, told) << "the mark of a save is no change";
}

} // namespace
} // namespace Tallymoor
