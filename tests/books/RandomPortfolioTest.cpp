// Checks the invariants on ten thousand random portfolios (a thousand in the short form). A failure shows the
// seed and the operations.
#include "books/RandomPortfolio.h"
#include "support/FakeUserInteraction.h"
#include "support/GatewayScope.h"
#include "support/MarketFixture.h"
#include "support/TestProfile.h"
#include "support/WholeCounts.h"
#include <cstdio>
#include <gtest/gtest.h>

namespace Tallymoor {
namespace {

constexpr int RANGES = 20;
constexpr int SEQUENCES = 500; ///< Per range of seeds.
constexpr int SEQUENCES_IN_SHORT = 50;
constexpr int OPERATIONS = 50; ///< Per sequence.
constexpr int STEPS_BETWEEN_RECORDS = 4;

/// The parameter is the range of seeds.
class RandomPortfolioTest : public testing::TestWithParam<int> {
protected:
  RandomPortfolioTest() {
    TallymoorInternet::Instance().goOffline();
    RandomPortfolio::setPrices();
  }

  /// False as soon as a check fails.
  static bool survives(std::uint32_t seed) {
    RandomPortfolio portfolio(seed);
    std::mt19937 rhythm(seed);
    while (portfolio.stepsDone() < OPERATIONS && !HasFailure()) {
      portfolio.step();
      portfolio.checkShares();
      // Not after each operation, so that several changes accumulate.
      if (rhythm() % STEPS_BETWEEN_RECORDS == 0)
        portfolio.checkRecord();
    }
    if (!HasFailure()) {
      portfolio.checkRecord();
      portfolio.checkDocument();
    }
    if (HasFailure())
      ADD_FAILURE() << "seed " << seed << " after\n" << portfolio.history();
    return !HasFailure();
  }

  static void TearDownTestSuite() {
    std::printf("COUNT: random portfolios: %d sequences of %d operations, %d out of balance\n", s_tried,
                OPERATIONS, s_failed);
  }

  static inline int s_tried = 0;
  static inline int s_failed = 0;

  TestProfile m_profile;
  FakeUserInteraction m_interaction;
  MarketFixture m_market;
  GatewayScope m_gateway;
};

TEST_P(RandomPortfolioTest, TheBooksBalanceAfterRandomOperations) {
  const int first = GetParam() * SEQUENCES;
  const int count = wholeCounts() ? SEQUENCES : SEQUENCES_IN_SHORT;
  for (int seed = first; seed < first + count; ++seed) {
    ++s_tried;
    if (!survives(static_cast<std::uint32_t>(seed))) {
      ++s_failed;
      break;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(CountedSeeds, RandomPortfolioTest, testing::Range(0, RANGES),
                         [](const testing::TestParamInfo<int>& info) {
                           return "From" + std::to_string(info.param * SEQUENCES);
                         });

} // namespace
} // namespace Tallymoor
