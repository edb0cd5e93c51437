// What must hold of every portfolio, tried on ten thousand that chance made. A failure tells the seed and the
// operations that led to it.
#include "engine/RandomPortfolio.h"
#include "support/FakeUserInteraction.h"
#include "support/GatewayScope.h"
#include "support/MarketFixture.h"
#include "support/TestProfile.h"
#include <gtest/gtest.h>

namespace Tallymoor {
namespace {

constexpr int RANGES = 20;
constexpr int SEQUENCES = 500; ///< in a range
constexpr int OPERATIONS = 50; ///< in a sequence
constexpr int STEPS_BETWEEN_RECORDS = 4;

/// The parameter is the range of seeds.
class RandomPortfolioTest : public testing::TestWithParam<int> {
protected:
  RandomPortfolioTest() {
    TallymoorInternet::Instance().goOffline();
    RandomPortfolio::setPrices();
  }

  /// False as soon as something does not hold.
  static bool survives(std::uint32_t seed) {
    RandomPortfolio portfolio(seed);
    std::mt19937 rhythm(seed);
    while (portfolio.stepsDone() < OPERATIONS && !HasFailure()) {
      portfolio.step();
      portfolio.checkShares();
      // Not after each operation, so that the changes of several add up.
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

  TestProfile m_profile;
  FakeUserInteraction m_interaction;
  MarketFixture m_market;
  GatewayScope m_gateway;
};

TEST_P(RandomPortfolioTest, WhateverHappensTheBooksBalance) {
  const int first = GetParam() * SEQUENCES;
  for (int seed = first; seed < first + SEQUENCES; ++seed)
    if (!survives(static_cast<std::uint32_t>(seed)))
      break;
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomPortfolioTest, testing::Range(0, RANGES),
                         [](const testing::TestParamInfo<int>& info) {
                           return "From" + std::to_string(info.param * SEQUENCES);
                         });

} // namespace
} // namespace Tallymoor
