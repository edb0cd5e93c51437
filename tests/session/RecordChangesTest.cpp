#include "session/RecordChanges.h"
#include "books/SharePortfolioUser.h"
#include "foundation/Exception.h"
#include "foundation/FileOperations.h"
#include "market/MarketPrices.h"
#include "session/Backups.h"
#include "session/BookQuestions.h"
#include "session/PortfolioStore.h"
#include "support/FailureOf.h"
#include "support/FakeUserInteraction.h"
#include "support/GatewayScope.h"
#include "support/MarketFixture.h"
#include "support/TestProfile.h"
#include "xml/PortfolioRecords.h"
#include <filesystem>
#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <openssl/evp.h>
#include <sstream>

namespace Tallymoor {
namespace {

using ::testing::HasSubstr;
using Kind = FakeUserInteraction::Kind;

class RecordChangesTest : public ::testing::Test {
protected:
  ~RecordChangesTest() override { FileOperations::current() = FileOperations::system(); }

  String records() const { return profile.dataFolder() + u"Portfolios.xml"; }
  String journal() const { return profile.dataFolder() + u"Journal"; }

  static void addPortfolioTo(PortfolioStore& store, const String& name) {
    makeChange(u"New portfolio " + name, [&] {
      XMLSharePortfolio& portfolio = store.records().portfolios().add();
      portfolio.setPortfolioName(name);
      store.portfolios()[name] = std::make_unique<SharePortfolioUser>(portfolio, gatewayPrices());
    });
  }
  static void deposit(PortfolioStore& store, double amount, const String& portfolio = u"Trading") {
    makeChange(u"Deposit of " + String::fromDouble(amount, 2), [&] {
      store.portfolios().at(portfolio)->creditCash(Date(2006, 3, 3), amount, CASH_EVENT_DEPOSIT, u"DEPOSIT ");
    });
  }
  static void buy(PortfolioStore& store, const String& code, double number) {
    makeChange(u"Purchase", [&] {
      store.portfolios().at(u"Trading")->buyShares(code, {Date(2006, 3, 6), number, 1.25, 10.0, u""});
    });
  }
  /// Its content, on the disk.
  void damageLastEntry() const {
    std::string bytes = TestProfile::readFile(journal());
    bytes.back() = static_cast<char>(bytes.back() ^ 1);
    TestProfile::writeFile(journal(), bytes);
  }
  static std::string textOfAll(PortfolioStore& store) {
    std::ostringstream stream;
    store.records().encode(stream);
    return stream.str();
  }
  static std::string textOf(PortfolioStore& store, const String& portfolio) {
    std::ostringstream stream;
    store.portfolios().at(portfolio)->portfolio().encode(stream);
    return stream.str();
  }
  static RecordsState sha256(const std::string& text) {
    RecordsState state{};
    EVP_Digest(text.data(), text.size(), state.data(), nullptr, EVP_sha256(), nullptr);
    return state;
  }
  void rewriteJournal(const std::function<void(Change&)>& alter) const {
    std::vector<Change> changes;
    {
      Journal before(journal());
      for (const Journal::Entry& entry : before.entries())
        changes.push_back(before.read(entry));
    }
    std::filesystem::remove(journal().toUTF8());
    Journal after(journal());
    for (Change& change : changes) {
      alter(change);
      after.append(change);
    }
  }
  /// What a start makes of the files.
  std::string textAfterStart() {
    PortfolioStore store(user);
    store.load();
    return textOfAll(store);
  }

  TestProfile profile;
  FakeUserInteraction user;
  MarketFixture market;
  GatewayScope gateway;
};

TEST_F(RecordChangesTest, WithoutAChangeThereIsNoJournal) {
  PortfolioStore store(user);
  store.load();
  store.save();
  EXPECT_FALSE(TestProfile::fileExists(journal()));
  EXPECT_EQ(nullptr, store.changes().toUndo());
}

TEST_F(RecordChangesTest, ChangesSinceTheLastSaveAreRecovered) {
  std::string text;
  {
    PortfolioStore store(user);
    store.load();
    addPortfolioTo(store, u"Trading");
    store.save();
    deposit(store, 100.0);
    buy(store, u"ABC.AX", 20);
    text = textOfAll(store);
  }
  user.clearCalls();
  EXPECT_EQ(text, textAfterStart());
  EXPECT_EQ(std::vector<String>{u"Tallymoor ended without saving the last time. The 2 changes that were made "
                                u"since the last save were recovered, the last of them:\nPurchase"},
            user.texts(Kind::Information));
}

TEST_F(RecordChangesTest, NothingIsRecoveredAfterASave) {
  std::string text;
  {
    PortfolioStore store(user);
    store.load();
    addPortfolioTo(store, u"Trading");
    deposit(store, 100.0);
    store.save();
    text = textOfAll(store);
  }
  user.clearCalls();
  EXPECT_EQ(text, textAfterStart());
  EXPECT_TRUE(user.calls(Kind::Information).empty());
}

TEST_F(RecordChangesTest, RecordsThatWereWrittenWithoutTheMarkOfTheirSaveAreRecognised) {
  std::string text;
  {
    PortfolioStore store(user);
    store.load();
    addPortfolioTo(store, u"Trading");
    deposit(store, 100.0);
    store.save();
  }
  const std::string saved = TestProfile::readFile(records());
  const auto sizeOfMark = [&] {
    const Journal whole(journal());
    return whole.entries().back().length;
  }();
  std::filesystem::resize_file(journal().toUTF8(),
                               std::filesystem::file_size(journal().toUTF8()) - sizeOfMark);
  {
    PortfolioStore store(user);
    store.load();
    deposit(store, 200.0);
    text = textOfAll(store);
  }
  EXPECT_TRUE(user.calls(Kind::Information).empty());
  EXPECT_EQ(text, textAfterStart());
  EXPECT_THAT(user.texts(Kind::Information).at(0).toUTF8(), HasSubstr("The change that was made"));
}

// Their states are SHA-256 of the records.
TEST_F(RecordChangesTest, JournalsOfTheFirstVersionsAreRecoveredUndoneAndContinued) {
  std::vector<std::string> texts;
  {
    PortfolioStore store(user);
    store.load();
    addPortfolioTo(store, u"Trading");
    store.save();
    const auto keepText = [&] { texts.push_back(textOf(store, u"Trading")); };
    keepText();
    deposit(store, 100.0);
    keepText();
    buy(store, u"ABC.AX", 20);
    keepText();
  }
  rewriteJournal([&texts, next = std::size_t{0}](Change& change) mutable {
    if (change.portfolios.empty() || change.portfolios[0].nameBefore.empty())
      return; // the new portfolio
    change.portfolios[0].before = sha256(texts.at(next));
    change.portfolios[0].after = sha256(texts.at(++next));
  });
  {
    PortfolioStore store(user);
    store.load();
    EXPECT_EQ(texts.at(2), textOf(store, u"Trading"));
    store.changes().undo();
    EXPECT_EQ(texts.at(1), textOf(store, u"Trading"));
    deposit(store, 7.0);
    texts.push_back(textOf(store, u"Trading"));
  }
  PortfolioStore store(user);
  store.load();
  EXPECT_EQ(texts.at(3), textOf(store, u"Trading"));
  EXPECT_TRUE(user.calls(Kind::Warning).empty());
  store.changes().undo();
  store.changes().undo();
  EXPECT_EQ(texts.at(0), textOf(store, u"Trading"));
}

TEST_F(RecordChangesTest, AJournalOfTheFirstVersionsForOtherRecordsIsRefused) {
  {
    PortfolioStore store(user);
    store.load();
    addPortfolioTo(store, u"Trading");
    store.save();
    deposit(store, 100.0);
  }
  rewriteJournal([](Change& change) {
    for (ChangedPortfolio& portfolio : change.portfolios)
      portfolio.before = sha256("other records");
  });
  user.clearCalls();
  textAfterStart();
  EXPECT_THAT(user.texts(Kind::Warning).at(0).toUTF8(), HasSubstr("can't be added to them"));
}

// The element of the index goes with the index.
TEST_F(RecordChangesTest, APortfolioWhoseIndexWasTakenAwayIsRecoveredAndUndone) {
  std::string without, after;
  {
    PortfolioStore store(user);
    store.load();
    addPortfolioTo(store, u"Trading");
    makeChange(u"Index", [&] { store.portfolios().at(u"Trading")->setComparisonIndex(u"^AXJO"); });
    makeChange(u"No index", [&] { store.portfolios().at(u"Trading")->setComparisonIndex(String()); });
    store.save();
    without = textOfAll(store);
    deposit(store, 100.0);
    after = textOfAll(store);
  }
  PortfolioStore store(user);
  store.load();
  EXPECT_TRUE(user.calls(Kind::Warning).empty());
  EXPECT_EQ(after, textOfAll(store));
  store.changes().undo();
  EXPECT_EQ(without, textOfAll(store));
  store.changes().undo();
  EXPECT_EQ(u"^AXJO", store.portfolios().at(u"Trading")->comparisonIndex());
}

TEST_F(RecordChangesTest, RenamedDeletedAndNewPortfoliosAreRecovered) {
  std::string text;
  {
    PortfolioStore store(user);
    store.load();
    addPortfolioTo(store, u"Trading");
    addPortfolioTo(store, u"Savings");
    store.save();
    makeChange(u"Rename", [&] { renamePortfolio(store.portfolios(), u"Trading", u"Old"); });
    deposit(store, 1.0, u"Old");
    makeChange(u"Delete", [&] { removePortfolio(store.portfolios(), store.records(), u"Savings"); });
    addPortfolioTo(store, u"Savings");
    deposit(store, 2.0, u"Savings");
    text = textOfAll(store);
  }
  EXPECT_EQ(text, textAfterStart());
}

TEST_F(RecordChangesTest, ChangesOfOtherRecordsAreToldAndKept) {
  {
    PortfolioStore store(user);
    store.load();
    addPortfolioTo(store, u"Trading");
    store.save();
    deposit(store, 100.0);
  }
  std::string other = TestProfile::readFile(records());
  other.replace(other.find("<SoldShares/>"), 13, "<SoldShares/><!-- mine -->");
  TestProfile::writeFile(records(), other);
  for (int start = 0; start < 2; ++start) {
    user.clearCalls();
    PortfolioStore store(user);
    store.load();
    EXPECT_THAT(other, HasSubstr(textOfAll(store)));
    std::vector<String> expected;
    if (start == 0)
      expected = {
          u"Your records were changed by another program. The change that Tallymoor had made since its "
          u"last save can't be added to them:\nDeposit of 100.00\nYour records stay as they are on disk, "
          u"and these changes are kept in\n" +
          journal() + u".1."};
    EXPECT_EQ(expected, user.texts(Kind::Warning));
  }
  EXPECT_EQ(u"Deposit of 100.00", Journal(journal() + u".1").entries().back().sentence);
}

TEST_F(RecordChangesTest, TheRecordsWithTheChangesThatAreRefusedAreABackup) {
  std::string ours;
  {
    PortfolioStore store(user);
    store.load();
    addPortfolioTo(store, u"Trading");
    addPortfolioTo(store, u"Savings");
    store.save();
  }
  {
    PortfolioStore store(user);
    store.load();
    deposit(store, 50.0);
    store.save(); // its copy of the records before is where the way begins
    deposit(store, 100.0);
    addPortfolioTo(store, u"New");
    ours = textOfAll(store);
  }
  std::string other = TestProfile::readFile(records());
  other.replace(other.find("50.00"), 5, "51.00");
  TestProfile::writeFile(records(), other);
  user.clearCalls();
  {
    PortfolioStore store(user);
    store.load();
    EXPECT_THAT(other, HasSubstr(textOfAll(store)));
  }
  ASSERT_EQ(2u, listBackups().size()) << "with that of the day";
  const Backup kept = listBackups().back();
  EXPECT_THAT(TestProfile::readFile(kept.path), HasSubstr(ours));
  EXPECT_EQ(
      std::vector<String>{u"Your records were changed by another program. The 2 changes that Tallymoor had "
                          u"made since its last save can't be added to them:\nDeposit of 100.00\nNew "
                          u"portfolio New\nYour records stay as they are on disk, and these changes are "
                          u"kept in\n" +
                          journal() +
                          u".1.\nFile, Backups lists the records with these changes, as they should have "
                          u"been:\n" +
                          kept.path + u"."},
      user.texts(Kind::Warning));
}

TEST_F(RecordChangesTest, BehindADamagedChangeIsRecoveredWhatDoesNotNeedIt) {
  std::string expected;
  {
    PortfolioStore store(user);
    store.load();
    addPortfolioTo(store, u"Trading");
    addPortfolioTo(store, u"Savings");
    store.save();
    deposit(store, 100.0);
    deposit(store, 5.0, u"Savings");
    expected = textOfAll(store);
    deposit(store, 300.0);
    damageLastEntry();
    deposit(store, 400.0);
    deposit(store, 6.0, u"Savings");
  }
  user.clearCalls();
  {
    PortfolioStore store(user);
    store.load();
    EXPECT_EQ(
        std::vector<String>{
            u"A part of the journal of your changes is damaged, so changes since the last save may be "
            u"missing: please compare your last entries. The 3 changes that were made since the last "
            u"save were recovered, the last of them:\nDeposit of 6.00\nThe change behind the damage "
            u"can't be added to your records:\nDeposit of 400.00\nThe damaged journal is kept in\n" +
            journal() + u".1."},
        user.texts(Kind::Warning));
    EXPECT_EQ(u"Deposit of 6.00", store.changes().toUndo()->sentence);
    store.changes().undo();
    EXPECT_EQ(expected, textOfAll(store));
    EXPECT_EQ(u"Deposit of 5.00", store.changes().toUndo()->sentence) << "the lost ones can't be undone";
    EXPECT_EQ(5u, store.changes().history().changes().size() - 1) << "nor are they part of the history";
    store.changes().goBackTo(0);
    EXPECT_TRUE(store.portfolios().empty()) << "the way back leads over the damage";
    store.changes().undo();
    store.save();
  }
  user.clearCalls();
  EXPECT_EQ(expected, textAfterStart());
  EXPECT_EQ(
      std::vector<String>{u"A part of the journal of your changes is damaged. What can be read is used."},
      user.texts(Kind::Warning));
}

TEST_F(RecordChangesTest, ADamagedLastChangeIsToldOnceForTheRecordsThatLackIt) {
  std::string expected;
  {
    PortfolioStore store(user);
    store.load();
    addPortfolioTo(store, u"Trading");
    store.save();
    expected = textOfAll(store);
    deposit(store, 100.0);
    damageLastEntry();
  }
  user.clearCalls();
  EXPECT_EQ(expected, textAfterStart());
  EXPECT_EQ(
      std::vector<String>{
          u"A part of the journal of your changes is damaged, so changes since the last save may be "
          u"missing: please compare your last entries. The damaged journal is kept in\n" +
          journal() + u".1."},
      user.texts(Kind::Warning));
  user.clearCalls();
  EXPECT_EQ(expected, textAfterStart());
  EXPECT_FALSE(TestProfile::fileExists(journal() + u".2"));
}

TEST_F(RecordChangesTest, RecordsOfTheMomentOfADamagedChangeAreRecognised) {
  std::string saved;
  std::string expected;
  {
    PortfolioStore store(user);
    store.load();
    addPortfolioTo(store, u"Trading");
    deposit(store, 100.0);
    damageLastEntry();
    store.save();
    saved = TestProfile::readFile(records());
    deposit(store, 200.0);
    expected = textOfAll(store);
  }
  // As if the program had been killed between the records and the mark of the save.
  Journal whole(journal());
  std::string bytes = TestProfile::readFile(journal());
  for (const Journal::Entry& entry : whole.entries())
    if (entry.kind == Change::Kind::Saved)
      bytes[entry.place + entry.length - 1] = static_cast<char>(bytes[entry.place + entry.length - 1] ^ 1);
  TestProfile::writeFile(journal(), bytes);
  TestProfile::writeFile(records(), saved);
  EXPECT_EQ(expected, textAfterStart());
}

TEST_F(RecordChangesTest, AJournalThatIsNoneIsPutAside) {
  TestProfile::writeFile(journal(), "<something/>");
  PortfolioStore store(user);
  store.load();
  EXPECT_EQ(u"The journal of your changes can't be read:\nJournal - " + journal() +
                u" is no journal of this program.\nIt was put aside as " + journal() +
                u".1, and a new one is begun.",
            user.texts(Kind::Warning).at(0));
  addPortfolioTo(store, u"Trading");
  EXPECT_EQ("<something/>", TestProfile::readFile(journal() + u".1"));
  EXPECT_EQ(1u, Journal(journal()).entries().size());
}

TEST_F(RecordChangesTest, ACommandThatThrowsLeavesTheRecordsAsTheyWere) {
  PortfolioStore store(user);
  store.load();
  addPortfolioTo(store, u"Trading");
  deposit(store, 100.0);
  buy(store, u"ABC.AX", 20);
  SharePortfolioUser& trading = *store.portfolios().at(u"Trading");
  const XMLSharePortfolio* const element = &trading.portfolio();
  const std::string before = textOfAll(store);
  EXPECT_EQ(u"stopped", failureOf<Exception>([&] {
              makeChange(u"Sale", [&] {
                trading.sellShares(u"ABC.AX", {Date(2006, 4, 1), 20, 2.0, 5.0, u""}, true);
                renamePortfolio(store.portfolios(), u"Trading", u"Other");
                XMLSharePortfolio& added = store.records().portfolios().add();
                added.setPortfolioName(u"New");
                store.portfolios()[u"New"] = std::make_unique<SharePortfolioUser>(added, gatewayPrices());
                trading.portfolio().heldShares().add(); // which has no purchase and can't be written
                throw Exception(u"stopped");
              });
            }));
  EXPECT_EQ(before, textOfAll(store));
  EXPECT_EQ(element, &store.portfolios().at(u"Trading")->portfolio());
  EXPECT_EQ(1u, store.portfolios().size());
  EXPECT_EQ(20.0, trading.numHeld(u"ABC.AX", Date(2006, 5, 1)));
  EXPECT_EQ(3u, Journal(journal()).entries().size());
}

ssize_t writeToFullDisk(int, const void*, size_t) {
  errno = ENOSPC;
  return -1;
}

TEST_F(RecordChangesTest, AChangeThatCannotBeKeptIsRefused) {
  PortfolioStore store(user);
  store.load();
  addPortfolioTo(store, u"Trading");
  deposit(store, 100.0);
  const std::string before = textOfAll(store);
  FileOperations::current().write = writeToFullDisk;
  EXPECT_EQ(u"The change was not made, because it can't be kept safe:\nJournal - cannot write " + journal() +
                u": No space left on device",
            failureOf<Exception>([&] { deposit(store, 200.0); }));
  EXPECT_EQ(before, textOfAll(store));
  FileOperations::current() = FileOperations::system();
  deposit(store, 300.0);
  const std::string after = textOfAll(store);
  EXPECT_NE(before, after);
  store.changes().undo();
  EXPECT_EQ(before, textOfAll(store));
}

TEST_F(RecordChangesTest, EveryChangeIsUndoneAndMadeAgainAlsoAfterARestart) {
  std::vector<std::string> states;
  {
    PortfolioStore store(user);
    store.load();
    const auto note = [&] { states.push_back(textOfAll(store)); };
    note();
    addPortfolioTo(store, u"Trading");
    note();
    deposit(store, 100.0);
    note();
    store.save();
    buy(store, u"ABC.AX", 20);
    note();
    makeChange(u"Rename", [&] { renamePortfolio(store.portfolios(), u"Trading", u"Old"); });
    note();
    addPortfolioTo(store, u"Savings");
    note();
    makeChange(u"Delete", [&] { removePortfolio(store.portfolios(), store.records(), u"Old"); });
    note();
    store.save();
  }
  for (const bool restarts : {false, true}) {
    auto store = std::make_unique<PortfolioStore>(user);
    store->load();
    const auto restart = [&] {
      if (!restarts)
        return;
      store.reset();
      store = std::make_unique<PortfolioStore>(user);
      store->load();
    };
    for (std::size_t i = states.size() - 1; i > 0; --i) {
      ASSERT_NE(nullptr, store->changes().toUndo()) << i;
      store->changes().undo();
      EXPECT_EQ(states[i - 1], textOfAll(*store)) << i;
      restart();
    }
    EXPECT_EQ(nullptr, store->changes().toUndo());
    for (std::size_t i = 1; i < states.size(); ++i) {
      ASSERT_NE(nullptr, store->changes().toRedo()) << i;
      store->changes().redo();
      EXPECT_EQ(states[i], textOfAll(*store)) << i;
      restart();
    }
    EXPECT_EQ(nullptr, store->changes().toRedo());
  }
}

TEST_F(RecordChangesTest, AnotherChangeEndsWhatCanBeMadeAgain) {
  PortfolioStore store(user);
  store.load();
  addPortfolioTo(store, u"Trading");
  deposit(store, 100.0);
  store.changes().undo();
  EXPECT_EQ(u"Deposit of 100.00", store.changes().toRedo()->sentence);
  EXPECT_EQ(u"New portfolio Trading", store.changes().toUndo()->sentence);
  deposit(store, 200.0);
  EXPECT_EQ(nullptr, store.changes().toRedo());
}

TEST_F(RecordChangesTest, AChangeOfOtherRecordsIsNotUndone) {
  {
    PortfolioStore store(user);
    store.load();
    addPortfolioTo(store, u"Trading");
    deposit(store, 100.0);
    store.save();
  }
  std::string other = TestProfile::readFile(records());
  other.replace(other.find("100.00"), 6, "101.00");
  TestProfile::writeFile(records(), other);
  PortfolioStore store(user);
  store.load();
  EXPECT_TRUE(user.calls().empty());
  EXPECT_EQ(u"The records of Trading are not those that this change left, so it stays as it is.",
            failureOf<Exception>([&] { store.changes().undo(); }));
  EXPECT_THAT(other, HasSubstr(textOfAll(store)));
}

TEST_F(RecordChangesTest, WhatWasChangedOtherwiseIsAChangeOfItsOwn) {
  PortfolioStore store(user);
  store.load();
  addPortfolioTo(store, u"Trading");
  store.portfolios().at(u"Trading")->creditCash(Date(2006, 3, 4), 7.0, CASH_EVENT_DEPOSIT, u"DEPOSIT ");
  const std::string between = textOfAll(store);
  deposit(store, 100.0);
  store.changes().undo();
  EXPECT_EQ(between, textOfAll(store));
  EXPECT_EQ(u"Other changes", store.changes().toUndo()->sentence);
}

TEST_F(RecordChangesTest, TheCapitalRecordFollowsFromTheEarliestDifferenceOn) {
  profile.setToday(Date(2006, 3, 20));
  PortfolioStore store(user);
  store.load();
  addPortfolioTo(store, u"Trading");
  deposit(store, 100.0);
  SharePortfolioUser& trading = *store.portfolios().at(u"Trading");
  makeChange(u"Interest",
             [&] { trading.creditCash(Date(2006, 3, 10), 5.0, CASH_EVENT_INTEREST, u"INTEREST "); });
  updateCapitalRecord(trading);
  EXPECT_EQ(105.0, trading.capitalRecord().cashOn(Date(2006, 3, 20)));
  store.changes().undo();
  EXPECT_TRUE(trading.capitalRecord().hasDayCap(Date(2006, 3, 9)));
  EXPECT_FALSE(trading.capitalRecord().hasDayCap(Date(2006, 3, 10)));
  updateCapitalRecord(trading);
  EXPECT_EQ(100.0, trading.capitalRecord().cashOn(Date(2006, 3, 20)));
  store.changes().redo();
  updateCapitalRecord(trading);
  EXPECT_EQ(105.0, trading.capitalRecord().cashOn(Date(2006, 3, 20)));
  EXPECT_EQ(100.0, trading.capitalRecord().cashOn(Date(2006, 3, 9)));
}

TEST_F(RecordChangesTest, CommentsInTheRecordsOutliveAnUndo) {
  {
    PortfolioStore store(user);
    store.load();
    addPortfolioTo(store, u"Trading");
    store.save();
  }
  std::string commented = TestProfile::readFile(records());
  commented.replace(commented.find("<SoldShares/>"), 13, "<!-- mine --><SoldShares/>");
  TestProfile::writeFile(records(), commented);
  std::filesystem::remove(journal().toUTF8());
  PortfolioStore store(user);
  store.load();
  deposit(store, 100.0);
  store.changes().undo();
  EXPECT_THAT(commented, HasSubstr(textOfAll(store)));
}

} // namespace
} // namespace Tallymoor
