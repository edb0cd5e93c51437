// A process that makes random commands is killed at random moments, and so is the start behind it. What the
// process had shown is there afterwards, and nothing is half there.
#include "session/CountedJournalTest.h"
#include "support/WholeCounts.h"
#include <algorithm>
#include <array>
#include <csignal>
#include <cstdio>
#include <functional>
#include <sys/wait.h>
#include <unistd.h>

namespace Tallymoor {
namespace {

constexpr unsigned SHORT_FORM = 25;
constexpr unsigned LONG_FORM = 1000;
constexpr std::size_t COMMANDS = 40;
constexpr unsigned LONGEST_LIFE = 60'000; ///< microseconds
constexpr unsigned SHORT_FORM_OF_STEPS = 10;
constexpr unsigned LONG_FORM_OF_STEPS = 150;
constexpr std::size_t STEP_BETWEEN_ENDS = 13;
constexpr unsigned LONGEST_START = 8'000;

class CountedKillsTest : public CountedJournalTest {
protected:
  /// Tells after each step, from when on the user may see what it did.
  void work(unsigned seed, const std::function<void(PortfolioStore&)>& shown) {
    PortfolioStore store(user);
    store.load();
    RandomCommands commands(store, seed);
    for (std::size_t i = 0; i < COMMANDS; ++i) {
      commands.make();
      shown(store);
      if (i % 7 == 6)
        store.save();
      if (i % 5 == 4 && store.changes().toUndo())
        store.changes().undo();
      shown(store);
    }
  }
  /// The records before the first step and after each.
  std::vector<std::string> statesOf(unsigned seed) {
    forgetEverything();
    std::vector<std::string> states;
    {
      PortfolioStore store(user);
      states.push_back(textOf(store));
    }
    work(seed, [&states](PortfolioStore& store) { states.push_back(textOf(store)); });
    return states;
  }
  /// In a process of its own, which is killed after that time unless it has come to its end.
  static void runAndKill(unsigned microseconds, const std::function<void()>& run) {
    const pid_t child = ::fork();
    ASSERT_LE(0, child);
    if (child == 0) {
      run();
      ::_exit(0);
    }
    ::usleep(microseconds);
    ::kill(child, SIGKILL);
    ASSERT_EQ(child, ::waitpid(child, nullptr, 0));
  }
  /// How many steps the killed process had shown.
  std::size_t workAndKill(unsigned seed, unsigned microseconds) {
    int ends[2];
    EXPECT_EQ(0, ::pipe(ends));
    runAndKill(microseconds, [&] {
      work(seed, [&ends](PortfolioStore&) {
        if (::write(ends[1], "+", 1) != 1)
          ::_exit(1);
      });
    });
    ::close(ends[1]);
    std::array<char, 2 * COMMANDS + 1> told{};
    std::size_t count = 0;
    for (ssize_t length = 1; length > 0; count += static_cast<std::size_t>(length))
      length = std::max<ssize_t>(0, ::read(ends[0], told.data(), told.size()));
    ::close(ends[0]);
    return count;
  }
};

TEST_F(CountedKillsTest, WhatWasShownIsThereAndNothingIsHalfThere) {
  const unsigned count = wholeCounts() ? LONG_FORM : SHORT_FORM;
  unsigned lost = 0, half = 0, recovered = 0, unshown = 0, startsKilled = 0;
  std::size_t changes = 0;
  for (unsigned seed = 0; seed < count; ++seed) {
    const std::vector<std::string> states = statesOf(seed);
    forgetEverything();
    std::mt19937 random(seed);
    const std::size_t shown = workAndKill(seed, random() % LONGEST_LIFE);
    ASSERT_LT(shown, states.size());
    if (random() % 4 == 0) {
      ++startsKilled;
      runAndKill(random() % LONGEST_START, [this] {
        PortfolioStore store(user);
        store.load();
      });
    }
    user.clearCalls();
    PortfolioStore store(user);
    store.load();
    EXPECT_FALSE(store.loadFailed());
    changes += shown;
    recovered += user.calls(FakeUserInteraction::Kind::Information).empty() ? 0 : 1;
    const std::string found = textOf(store);
    if (found == states[shown])
      continue;
    if (shown + 1 < states.size() && found == states[shown + 1]) {
      ++unshown; // on disk, and not shown yet
      continue;
    }
    const bool isEarlier = std::find(states.begin(), states.end(), found) != states.end();
    ++(isEarlier ? lost : half);
    ADD_FAILURE() << "seed " << seed << ", " << shown << " steps shown\n"
                  << states[shown] << "\nthen\n"
                  << (shown + 1 < states.size() ? states[shown + 1] : std::string()) << "\nfound\n"
                  << found;
  }
  std::printf(
      "COUNT: kills of a session at random moments: %u, and of the start behind it: %u, steps shown: %zu, "
      "starts that recovered: %u, steps on disk and not shown yet: %u, shown and not there afterwards: %u, "
      "half changes: %u\n",
      count, startsKilled, changes, recovered, unshown, lost, half);
  EXPECT_LT(0U, recovered);
  EXPECT_LT(0U, changes);
}

TEST_F(CountedKillsTest, AnEndRightBehindAnyStepLosesNothing) {
  const unsigned count = wholeCounts() ? LONG_FORM_OF_STEPS : SHORT_FORM_OF_STEPS;
  unsigned ends = 0, different = 0;
  for (unsigned seed = 0; seed < count; ++seed) {
    const std::vector<std::string> states = statesOf(seed);
    std::mt19937 random(seed);
    for (std::size_t last = 1 + random() % STEP_BETWEEN_ENDS; last < states.size();
         last += STEP_BETWEEN_ENDS) {
      forgetEverything();
      const pid_t child = ::fork();
      ASSERT_LE(0, child);
      if (child == 0) {
        std::size_t steps = 0;
        work(seed, [&](PortfolioStore&) {
          if (++steps == last)
            ::_exit(0);
        });
      }
      ASSERT_EQ(child, ::waitpid(child, nullptr, 0));
      PortfolioStore store(user);
      store.load();
      ++ends;
      if (textOf(store) == states[last])
        continue;
      ++different;
      ADD_FAILURE() << "seed " << seed << ", after step " << last << "\n"
                    << states[last] << "\nfound\n"
                    << textOf(store);
    }
  }
  std::printf("COUNT: ends of a session right behind a step: %u, records that are not there as shown: %u\n",
              ends, different);
}

} // namespace
} // namespace Tallymoor
