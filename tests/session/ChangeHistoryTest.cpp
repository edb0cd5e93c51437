#include "session/ChangeHistory.h"
#include "books/SharePortfolioUser.h"
#include "foundation/Exception.h"
#include "market/MarketPrices.h"
#include "session/ChangeDetails.h"
#include "session/PortfolioStore.h"
#include "support/FailureOf.h"
#include "support/FakeUserInteraction.h"
#include "support/GatewayScope.h"
#include "support/MarketFixture.h"
#include "support/TestProfile.h"
#include "xml/PortfolioRecords.h"
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <random>
#include <sstream>

namespace Tallymoor {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

/// Changes of a store with a journal, and what the history tells of them.
class ChangeHistoryTest : public ::testing::Test {
protected:
  ChangeHistoryTest() { store.load(); }

  SharePortfolioUser& portfolio(const String& name = u"Trading") { return *store.portfolios().at(name); }
  void add(const String& name) {
    makeChange(u"New portfolio " + name, [&] {
      XMLSharePortfolio& element = store.records().portfolios().add();
      element.setPortfolioName(name);
      store.portfolios()[name] = std::make_unique<SharePortfolioUser>(element, gatewayPrices());
    });
  }
  void remove(const String& name) {
    makeChange(u"Deletion of portfolio " + name,
               [&] { removePortfolio(store.portfolios(), store.records(), name); });
  }
  void rename(const String& from, const String& to) {
    makeChange(u"Renaming of " + from, [&] { renamePortfolio(store.portfolios(), from, to); });
  }
  void deposit(double amount, const String& name = u"Trading") {
    makeChange(u"Deposit", [&] {
      portfolio(name).creditCash(Date(2006, 3, 3), amount, CASH_EVENT_DEPOSIT, u"DEPOSIT ");
    });
  }
  void buy(double number, const String& code = u"ABC.AX") {
    makeChange(u"Purchase", [&] {
      portfolio().buyShares(code, {Date(2006, 3, 6), number, 1.25, 10.0, u"Cheap & good"});
    });
  }
  std::string text() {
    std::ostringstream stream;
    store.records().encode(stream);
    return stream.str();
  }
  std::uint64_t lastNumber() { return store.changes().history().changes().back().number; }
  /// What the change did that many changes ago.
  std::vector<std::string> details(std::size_t ago = 0, std::size_t most = 100) {
    ChangeHistory history = store.changes().history();
    std::vector<std::string> all;
    for (const auto& difference :
         history.differencesOf(history.changes().at(history.changes().size() - 1 - ago)))
      for (const ChangeDetail& detail : detailsOf(difference, most))
        all.push_back(
            (detail.entry + u"|" + detail.field + u"|" + detail.before + u"|" + detail.after).toUTF8());
    return all;
  }

  TestProfile profile;
  FakeUserInteraction user;
  MarketFixture market;
  GatewayScope gateway;
  PortfolioStore store{user};
};

TEST_F(ChangeHistoryTest, WithoutAChangeItIsEmpty) {
  EXPECT_TRUE(store.changes().history().changes().empty());
}

TEST_F(ChangeHistoryTest, APurchaseIsToldByItsFields) {
  add(u"Trading");
  buy(100);
  EXPECT_THAT(details(), ElementsAre("Purchase of ABC.AX, 06/03/2006|Bought||06/03/2006",
                                     "Purchase of ABC.AX, 06/03/2006|Number||100.00",
                                     "Purchase of ABC.AX, 06/03/2006|Price||1.2500",
                                     "Purchase of ABC.AX, 06/03/2006|Brokerage||10.00",
                                     "Purchase of ABC.AX, 06/03/2006|Comment||Cheap & good",
                                     "Cash, 06/03/2006|Date||06/03/2006", "Cash, 06/03/2006|Amount||135.00",
                                     "Cash, 06/03/2006|Kind||Debit",
                                     "Cash, 06/03/2006|Description||" +
                                         portfolio().portfolio().cashEvents()[0].description().toUTF8()));
}

TEST_F(ChangeHistoryTest, OfAnEditOnlyTheFieldsThatDifferAreTold) {
  add(u"Trading");
  buy(100);
  buy(50);
  makeChange(u"Edit", [&] { portfolio().portfolio().heldShares()[0].parcels()[1].setComment(u"Better"); });
  EXPECT_THAT(details(), ElementsAre("Purchase of ABC.AX, 06/03/2006|Comment|Cheap & good|Better"));
  EXPECT_EQ(9u, details(1).size()) << "of a change before others";
}

TEST_F(ChangeHistoryTest, LimitsAndPropertiesAreTold) {
  add(u"Trading");
  buy(100);
  makeChange(u"Limits", [&] { portfolio().portfolio().heldShares()[0].setMinMax(1.0, 0.0); });
  EXPECT_THAT(details(), ElementsAre("Limits of ABC.AX|Minimum||1.0000"));
  rename(u"Trading", u"Saving");
  EXPECT_THAT(details(), ElementsAre("Properties|Name|Trading|Saving"));
}

TEST_F(ChangeHistoryTest, MoreEntriesThanAreWantedAreCounted) {
  add(u"Trading");
  makeChange(u"Many", [&] {
    for (int i = 1; i <= 5; ++i)
      portfolio().creditCash(Date(2006, 3, 3), i, CASH_EVENT_DEPOSIT, u"DEPOSIT ");
  });
  const auto told = details(0, 2);
  EXPECT_EQ(9u, told.size());
  EXPECT_EQ("And 3 more|||", told.back());
}

TEST_F(ChangeHistoryTest, GoingBackIsOneChangeThatCanBeUndone) {
  add(u"Trading");
  deposit(100.0);
  const std::uint64_t number = lastNumber();
  const std::string then = text();
  buy(20);
  deposit(50.0);
  const std::string before = text();
  const std::size_t count = store.changes().history().changes().size();
  EXPECT_EQ(2u, store.changes().history().countSince(number));

  EXPECT_TRUE(store.changes().goBackTo(number));
  EXPECT_EQ(then, text());
  EXPECT_EQ(count + 1, store.changes().history().changes().size());
  EXPECT_EQ(u"Return to the state after Deposit", store.changes().toUndo()->sentence);
  store.changes().undo();
  EXPECT_EQ(before, text());
  store.changes().redo();
  EXPECT_EQ(then, text());
  store.changes().undo();
  store.changes().undo();
  store.changes().undo();
  EXPECT_EQ(then, text()) << "the changes before it can be undone, too";
}

TEST_F(ChangeHistoryTest, ToTheStateOfNowThereIsNothingToDo) {
  add(u"Trading");
  deposit(100.0);
  const std::uint64_t number = lastNumber();
  buy(20);
  store.changes().undo();
  const std::size_t count = store.changes().history().changes().size();
  EXPECT_FALSE(store.changes().goBackTo(number));
  EXPECT_EQ(count, store.changes().history().changes().size());
}

TEST_F(ChangeHistoryTest, PortfoliosComeGoAndSwapNamesOnTheWayBack) {
  add(u"A");
  add(u"B");
  add(u"C");
  deposit(1.0, u"A");
  deposit(2.0, u"B");
  deposit(3.0, u"C");
  const std::uint64_t number = lastNumber();
  const std::string then = text();
  rename(u"A", u"X");
  rename(u"B", u"A");
  rename(u"X", u"B");
  remove(u"C");
  add(u"D");
  add(u"C");
  deposit(4.0, u"D");
  const std::string before = text();
  EXPECT_EQ(u"no failure", failureOf<Exception>([&] { store.changes().goBackTo(number); }));
  EXPECT_EQ(then, text());
  EXPECT_EQ(1.0, portfolio(u"A").portfolio().cashEvents()[0].amount());
  EXPECT_EQ(u"no failure", failureOf<Exception>([&] { store.changes().undo(); }));
  EXPECT_EQ(before, text());
  EXPECT_EQ(u"no failure", failureOf<Exception>([&] { store.changes().goBackTo(0); }));
  EXPECT_TRUE(store.portfolios().empty());
  EXPECT_EQ(u"no failure", failureOf<Exception>([&] { store.changes().undo(); }));
  EXPECT_EQ(before, text());
}

TEST_F(ChangeHistoryTest, ItReachesAcrossAStart) {
  add(u"Trading");
  deposit(100.0);
  const std::uint64_t number = lastNumber();
  const std::string then = text();
  buy(20);
  store.save();
  PortfolioStore again(user);
  store.clear();
  again.load();
  EXPECT_EQ(9u, [&] {
    ChangeHistory history = again.changes().history();
    return detailsOf(history.differencesOf(history.changes().back()).front(), 10).size();
  }());
  again.changes().goBackTo(number);
  std::ostringstream stream;
  again.records().encode(stream);
  EXPECT_EQ(then, stream.str());
}

TEST_F(ChangeHistoryTest, RandomChangesLeadBackToEachState) {
  std::mt19937 random(7);
  add(u"A");
  std::vector<std::pair<std::uint64_t, std::string>> states{{lastNumber(), text()}};
  for (int step = 0; step < 40; ++step) {
    std::vector<String> names;
    for (const auto& [name, portfolio] : store.portfolios())
      names.push_back(name);
    const String name = names[random() % names.size()];
    const String free = u"N" + String::fromLong(step);
    switch (random() % 6) {
    case 0:
      add(free);
      break;
    case 1:
      if (names.size() > 1)
        remove(name);
      break;
    case 2:
      rename(name, free);
      break;
    case 3:
      if (store.changes().toUndo())
        store.changes().undo();
      break;
    default:
      deposit(1.0 + step, name);
    }
    if (store.portfolios().empty())
      add(free + u" again");
    states.emplace_back(lastNumber(), text());
  }
  for (int turn = 0; turn < 20; ++turn) {
    const auto& [number, then] = states[random() % states.size()];
    const std::string before = text();
    const bool differs = store.changes().goBackTo(number);
    ASSERT_EQ(then, text());
    ASSERT_EQ(differs, before != then);
    if (differs && turn % 2 == 0) {
      store.changes().undo();
      ASSERT_EQ(before, text());
    }
  }
}

TEST_F(ChangeHistoryTest, BehindAChangeThatDoesNotBelongToTheRecordsThereIsNoWayBack) {
  add(u"Trading");
  deposit(100.0);
  const std::uint64_t number = lastNumber();
  deposit(200.0);
  store.save();
  store.clear();
  std::string records = TestProfile::readFile(profile.dataFolder() + u"Portfolios.xml");
  records.replace(records.find("200.00"), 6, "300.00");
  TestProfile::writeFile(profile.dataFolder() + u"Portfolios.xml", records);
  PortfolioStore again(user);
  again.load();
  EXPECT_THAT(failureOf<Exception>([&] { again.changes().goBackTo(number); }).toUTF8(),
              HasSubstr("There is no way back"));
  ChangeHistory history = again.changes().history();
  const auto told = detailsOf(history.differencesOf(history.changes().back()).front(), 10);
  ASSERT_FALSE(told.empty());
  EXPECT_EQ(u"In the document", told.front().entry);
  EXPECT_THAT(told.front().after.toUTF8(), HasSubstr("200.00"));
}

} // namespace
} // namespace Tallymoor
