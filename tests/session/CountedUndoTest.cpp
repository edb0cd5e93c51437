// Random commands are undone and made again, across saves and restarts.
#include "books/SharePortfolioUser.h"
#include "foundation/Exception.h"
#include "foundation/FileOperations.h"
#include "session/BookQuestions.h"
#include "session/CountedJournalTest.h"
#include "support/FailureOf.h"
#include "support/WholeCounts.h"
#include <cstdio>
#include <memory>

namespace Tallymoor {
namespace {

constexpr unsigned SHORT_FORM = 150;
constexpr unsigned LONG_FORM = 10'000;
constexpr std::size_t STEPS = 12;           ///< of a sequence
constexpr unsigned SEQUENCES_TOGETHER = 10; ///< in the same records

class CountedUndoTest : public CountedJournalTest {
protected:
  // What is flushed has no part in this.
  CountedUndoTest() {
    FileOperations::current().sync = [](int) { return 0; };
  }

  void start() {
    store = std::make_unique<PortfolioStore>(user);
    store->load();
  }
  void beginRecords(unsigned seed) {
    store.reset();
    forgetEverything();
    start();
    texts = {textOf(*store)};
    at = 0;
    random.seed(seed);
  }
  void compare(const char* what) {
    ++compared;
    if (textOf(*store) == texts.at(at))
      return;
    ++different;
    ADD_FAILURE() << what << ", seed " << seed << "\n" << texts.at(at) << "\n" << textOf(*store);
  }
  void command(RandomCommands& commands) {
    const std::string before = textOf(*store);
    commands.make();
    if (textOf(*store) == before)
      return;
    texts.resize(at + 1);
    texts.push_back(textOf(*store));
    ++at;
  }
  void step(RandomCommands& commands) {
    switch (random() % 16) {
    case 0:
    case 1:
    case 2:
    case 3:
      if (at > 0) {
        store->changes().undo();
        --at;
        compare("undo");
      }
      return;
    case 4:
    case 5:
    case 6:
      if (at + 1 < texts.size()) {
        store->changes().redo();
        ++at;
        compare("redo");
      }
      return;
    case 7:
      EXPECT_EQ(u"half way", failureOf<Exception>([&] { commands.makeAndFail(); }));
      compare("a command that failed");
      return;
    case 8:
      store->save();
      return;
    default:
      command(commands);
    }
  }
  std::string capitalOf(SharePortfolioUser& portfolio) {
    updateCapitalRecord(portfolio);
    portfolio.capitalRecord().save();
    const String file = portfolio.capitalRecord().fileName();
    return TestProfile::fileExists(file) ? TestProfile::readFile(file) : std::string();
  }
  void compareCapital() {
    for (const auto& [name, portfolio] : store->portfolios()) {
      const std::string kept = capitalOf(*portfolio);
      portfolio->capitalRecord().recordsChangedFrom(RandomCommands::firstDay().plusDays(-1));
      ++records;
      if (kept == capitalOf(*portfolio))
        continue;
      ++differentRecords;
      ADD_FAILURE() << "capital record of " << name.toUTF8() << ", seed " << seed;
    }
  }
  void sequence() {
    RandomCommands commands(*store, seed);
    for (std::size_t i = 0; i < STEPS; ++i)
      step(commands);
    if (random() % 4 == 0)
      compareCapital();
    if (random() % 4 == 0) {
      start();
      compare("start");
    }
  }

  std::unique_ptr<PortfolioStore> store;
  std::vector<std::string> texts; ///< of the states that undo and redo lead through
  std::size_t at = 0;
  std::mt19937 random;
  unsigned seed = 0;
  unsigned compared = 0, different = 0, records = 0, differentRecords = 0;
};

TEST_F(CountedUndoTest, UndoAndRedoLeadToTheSameLetters) {
  const unsigned count = wholeCounts() ? LONG_FORM : SHORT_FORM;
  for (seed = 0; seed < count && !HasFailure(); ++seed) {
    if (seed % SEQUENCES_TOGETHER == 0)
      beginRecords(seed);
    sequence();
  }
  std::printf(
      "COUNT: undo and redo: %u sequences of %zu steps, trees compared: %u, different by a letter: %u, "
      "capital records compared with those from nothing: %u, different: %u\n",
      seed, STEPS, compared, different, records, differentRecords);
  EXPECT_LT(0U, compared);
  EXPECT_LT(0U, records);
}

} // namespace
} // namespace Tallymoor
