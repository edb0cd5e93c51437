#include "books/SuspectedSplit.h"
#include "foundation/RunTimeSettings.h"
#include <algorithm>
#include <cmath>
#include <numeric>

namespace Tallymoor {

namespace {

/// Splits that happen besides those in whole numbers, the likely ones first.
constexpr WholeRatio BROKEN_RATIOS[] = {{3, 2}, {5, 2}, {4, 3}, {5, 4}};
constexpr std::size_t LOOKED_FOR =
    2; ///< the first of these are suspected even below the ratio of the options

double valueOf(const WholeRatio& ratio) {
  return double(ratio.first) / ratio.second;
}

/// The part of the jump that the ratio does not explain, as a factor of 1 or more.
double restOf(double jump, const WholeRatio& ratio) {
  return std::max(jump / valueOf(ratio), valueOf(ratio) / jump);
}

WholeRatio nearestWhole(double jump) {
  const double within = std::clamp(jump, 1.0, double(SuspectedSplit::LARGEST_NUMBER));
  return {static_cast<std::int32_t>(std::lround(within)), 1};
}

/// True when the ratio explains the jump except for a tenth at most.
bool isNear(double jump, const WholeRatio& ratio) {
  constexpr double A_TENTH_MORE = 1.1 + 1e-9; // prices of whole cents reach the edge inexactly
  return restOf(jump, ratio) <= A_TENTH_MORE;
}

bool isNearWholeRatio(double jump) {
  const WholeRatio whole = nearestWhole(jump);
  return whole.first > 1 && isNear(jump, whole);
}

const WholeRatio* nearBrokenRatio(double jump) {
  const auto* const end = BROKEN_RATIOS + LOOKED_FOR;
  const auto* const found =
      std::find_if(BROKEN_RATIOS, end, [jump](const WholeRatio& ratio) { return isNear(jump, ratio); });
  return found == end ? nullptr : found;
}

bool reaches(double jump, double ratio) {
  return jump >= ratio - 1e-9;
}

/// The ratios that are looked for come first, then the one that explains most of the jump.
WholeRatio likeliestRatio(double jump) {
  WholeRatio likeliest = nearestWhole(jump);
  if (isNearWholeRatio(jump))
    return likeliest;
  if (const WholeRatio* broken = nearBrokenRatio(jump))
    return *broken;
  for (const WholeRatio& ratio : BROKEN_RATIOS)
    if (restOf(jump, ratio) < restOf(jump, likeliest))
      likeliest = ratio;
  return likeliest;
}

/// A ratio of shares after to shares before, as the factors of adjustments.
std::vector<std::int32_t> factorsOf(const WholeRatio& shares) {
  const std::int32_t common = std::gcd(shares.first, shares.second);
  const std::int32_t after = shares.first / common;
  const std::int32_t before = shares.second / common;
  if (before == 1)
    return {after};
  return after == 1 ? std::vector{-before} : std::vector{after, -before};
}

} // namespace

SuspectedSplit::SuspectedSplit(Kind kind, double jump) : m_kind(kind), m_proposed(likeliestRatio(jump)) {}

std::optional<SuspectedSplit> SuspectedSplit::between(double yesterday, double today) {
  const double fall = yesterday / today;
  const double rise = today / yesterday;
  if (fall > 1.0 && (isNearWholeRatio(fall) || nearBrokenRatio(fall) || reaches(fall, splitRatioDetect)))
    return SuspectedSplit(Kind::Split, fall);
  if (rise > 1.0 && (isNearWholeRatio(rise) || reaches(rise, reverseSplitRatioDetect)))
    return SuspectedSplit(Kind::Merge, rise);
  return std::nullopt;
}

/// Sources round ratios such as 4:3 to a few decimals.
std::optional<SuspectedSplit> SuspectedSplit::told(double ratio) {
  constexpr double ROUNDING = 1e-4;
  constexpr std::int32_t LARGEST_DENOMINATOR = 1000;
  const double larger = ratio > 1.0 ? ratio : 1.0 / ratio;
  if (!(ratio > 0.0) || !(larger > 1.0 + ROUNDING) || larger > LARGEST_NUMBER)
    return std::nullopt;
  for (std::int32_t second = 1; second <= LARGEST_DENOMINATOR; ++second) {
    const double first = std::round(larger * second);
    if (first <= LARGEST_NUMBER && std::abs(first / second - larger) <= larger * ROUNDING)
      return SuspectedSplit(ratio > 1.0 ? Kind::Split : Kind::Merge,
                            WholeRatio{static_cast<std::int32_t>(first), second});
  }
  return std::nullopt;
}

std::vector<std::int32_t> SuspectedSplit::factors(const std::optional<WholeRatio>& answer) const {
  if (!answer)
    return {isMerge() ? -1 : 1};
  return factorsOf(isMerge() ? WholeRatio{answer->second, answer->first} : *answer);
}

} // namespace Tallymoor
