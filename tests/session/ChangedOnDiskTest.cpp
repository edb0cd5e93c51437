#include "books/SharePortfolioUser.h"
#include "foundation/Exception.h"
#include "session/Backups.h"
#include "session/BookQuestions.h"
#include "session/PortfolioStore.h"
#include "support/FakeUserInteraction.h"
#include "support/GatewayScope.h"
#include "support/MarketFixture.h"
#include "support/TestProfile.h"
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Tallymoor {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using Kind = FakeUserInteraction::Kind;

constexpr std::size_t KEEP_MINE = 0;
constexpr std::size_t TAKE_THEIRS = 1;
constexpr std::size_t KEEP_BOTH = 2;

std::string portfolio(const std::string& name, const std::string& amount) {
  return "<SharePortfolio><String>" + name +
         "</String><HeldShares/><SoldShares/><Dividends/><CashReserve><CashEvent><Date>2/3/2026</Date>"
         "<Constant>" +
         amount +
         "</Constant><Constant>4</Constant><String>DEPOSIT "
         "</String></CashEvent></CashReserve><String/></SharePortfolio>";
}

std::string document(const std::string& portfolios) {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!DOCTYPE Portfolios SYSTEM \"Tallymoor "
         "Records.dtd\">\n"
         "<Portfolios>" +
         portfolios + "</Portfolios>";
}

/// Another hand changes the records while the program has them: "Trading" gets other cash, and "Mining" is
/// the same on both sides.
class ChangedOnDiskTest : public ::testing::Test {
protected:
  ChangedOnDiskTest() {
    put(document(portfolio("Mining", "7.00") + portfolio("Trading", "1.00")));
    store.load();
    makeChange(u"Deposit", [this] {
      store.portfolios().at(u"Trading")->creditCash(Date(2026, 3, 3), 5, CASH_EVENT_DEPOSIT, u"DEPOSIT mine");
    });
  }
  ~ChangedOnDiskTest() override { store.clear(); }

  String path() const { return profile.dataFolder() + u"Portfolios.xml"; }
  void put(const std::string& content) const { TestProfile::writeFile(path(), content); }
  void changeByAnother() const { put(theirs); }
  std::string onDisk() const { return TestProfile::readFile(path()); }
  std::vector<String> names() {
    std::vector<String> all;
    for (const auto& [name, portfolio] : store.portfolios())
      all.push_back(name);
    return all;
  }
  /// The copy that was kept of the version that was not chosen.
  static std::string otherVersion() {
    const std::vector<Backup> backups = listBackups();
    return backups.empty() ? "none" : TestProfile::readFile(backups.back().path);
  }
  std::size_t questions() const { return user.calls(Kind::ChooseFromList).size(); }

  const std::string theirs = document(portfolio("Mining", "7.00") + portfolio("Trading", "222.00"));
  TestProfile profile;
  FakeUserInteraction user;
  MarketFixture market;
  GatewayScope gateway;
  PortfolioStore store{user};
};

TEST_F(ChangedOnDiskTest, IsNoticedByItsContent) {
  EXPECT_FALSE(store.isChangedOnDisk());
  const std::string same = onDisk();
  put(same);
  std::filesystem::last_write_time(path().toUTF8(),
                                   std::filesystem::file_time_type::clock::now() + std::chrono::hours(1));
  EXPECT_FALSE(store.isChangedOnDisk()) << "it only looks newer";
  std::string other = same;
  other.replace(other.find("1.00"), 4, "1.01");
  put(other);
  EXPECT_TRUE(store.isChangedOnDisk()) << "as long as before";
  std::filesystem::remove(path().toUTF8());
  EXPECT_FALSE(store.isChangedOnDisk()) << "there is nothing to keep";
}

TEST_F(ChangedOnDiskTest, OwnSavesAreNone) {
  store.save();
  EXPECT_FALSE(store.isChangedOnDisk());
  ASSERT_TRUE(store.beginSaving([] {}));
  EXPECT_FALSE(store.finishSaving());
  EXPECT_FALSE(store.isChangedOnDisk());
  std::filesystem::create_hard_link(path().toUTF8(), (path() + u".mine").toUTF8());
  store.save();
  EXPECT_FALSE(store.isChangedOnDisk());
  EXPECT_EQ(0u, questions());
}

TEST_F(ChangedOnDiskTest, MineAreKept) {
  changeByAnother();
  user.answerChoice(KEEP_MINE);
  store.save();
  EXPECT_TRUE(store.lastSaveSucceeded());
  EXPECT_EQ(String(u"Another program has changed your records on disk\nsince Tallymoor read or wrote them. "
                   u"What do you want\nto keep? The other version stays in File, Backups."),
            user.texts(Kind::ChooseFromList).at(0));
  EXPECT_THAT(onDisk(), HasSubstr("DEPOSIT mine"));
  EXPECT_EQ(theirs, otherVersion());
  store.save();
  EXPECT_EQ(1u, questions()) << "once";
}

TEST_F(ChangedOnDiskTest, TheirsAreTakenAndOneUndoTakesThatBack) {
  updateCapitalRecord(*store.portfolios().at(u"Trading"));
  store.save();
  changeByAnother();
  user.answerChoice(TAKE_THEIRS);
  store.save();
  EXPECT_TRUE(store.lastSaveSucceeded());
  EXPECT_EQ(theirs, onDisk());
  EXPECT_THAT(otherVersion(), HasSubstr("DEPOSIT mine"));
  EXPECT_EQ(1u, store.portfolios().at(u"Trading")->portfolio().cashEvents().size());
  EXPECT_FALSE(TestProfile::fileExists(profile.dataFolder() + u"TradingCapRecord.xml"))
      << "days of other records";
  EXPECT_FALSE(store.isChangedOnDisk());

  ASSERT_NE(nullptr, store.changes().toUndo());
  EXPECT_EQ(String(u"Records that another program had saved"), store.changes().toUndo()->sentence);
  store.changes().undo();
  store.save();
  EXPECT_THAT(onDisk(), HasSubstr("DEPOSIT mine"));
  EXPECT_EQ(1u, questions());
}

TEST_F(ChangedOnDiskTest, AfterTheirsNothingIsRecovered) {
  changeByAnother();
  user.answerChoice(TAKE_THEIRS);
  store.save();
  PortfolioStore next(user);
  next.load();
  EXPECT_THAT(user.texts(Kind::Information), IsEmpty());
  EXPECT_THAT(user.texts(Kind::Warning), IsEmpty());
}

TEST_F(ChangedOnDiskTest, OfBothTheirsGetOtherNames) {
  changeByAnother();
  user.answerChoice(KEEP_BOTH);
  store.save();
  EXPECT_TRUE(store.lastSaveSucceeded());
  EXPECT_THAT(names(), ElementsAre(String(u"Mining"), String(u"Trading"), String(u"Trading 2")));
  EXPECT_THAT(onDisk(), HasSubstr("DEPOSIT mine"));
  EXPECT_THAT(onDisk(), HasSubstr("<String>Trading 2</String>"));
  EXPECT_THAT(onDisk(), HasSubstr("222.00"));
  EXPECT_EQ(theirs, otherVersion());
  store.changes().undo();
  EXPECT_THAT(names(), ElementsAre(String(u"Mining"), String(u"Trading")));
}

TEST_F(ChangedOnDiskTest, ACancelledQuestionWritesNothing) {
  changeByAnother();
  user.answerChoice(std::nullopt);
  store.save();
  EXPECT_FALSE(store.lastSaveSucceeded());
  EXPECT_EQ(theirs, onDisk());
  EXPECT_TRUE(store.isChangedOnDisk());
}

TEST_F(ChangedOnDiskTest, DamagedOnesAreNotTaken) {
  put("<Portfolios><Sha");
  user.answerChoice(TAKE_THEIRS);
  store.save();
  EXPECT_FALSE(store.lastSaveSucceeded());
  ASSERT_EQ(1u, user.texts(Kind::Error).size());
  EXPECT_TRUE(user.texts(Kind::Error)[0].startsWith(
      u"Your records were not saved, and those on disk stay as they are.\n"));
  EXPECT_EQ("<Portfolios><Sha", onDisk());
  EXPECT_EQ(2u, store.portfolios().at(u"Trading")->portfolio().cashEvents().size());
  user.answerChoice(KEEP_MINE);
  store.save();
  EXPECT_THAT(onDisk(), HasSubstr("DEPOSIT mine"));
  EXPECT_EQ("<Portfolios><Sha", otherVersion());
}

} // namespace
} // namespace Tallymoor
