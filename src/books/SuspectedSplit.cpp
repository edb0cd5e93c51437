#include "books/SuspectedSplit.h"
#include "foundation/RunTimeSettings.h"
#include <algorithm>
#include <cmath>
#include <numeric>

namespace Tallymoor {

namespace {

constexpr std::int32_t LARGEST_NUMBER = 1000000;
/// Splits that happen besides those in whole numbers, the likely ones first.
constexpr WholeRatio BROKEN_RATIOS[] = {{3, 2}, {5, 2}, {4, 3}, {5, 4}};
constexpr std::size_t LOOKED_FOR = 2; ///< of these, whatever the ratio of the options is

double valueOf(const WholeRatio& ratio) {
  return double(ratio.first) / ratio.second;
}

/// How much is left of the jump apart from the ratio, up or down; 1 for nothing.
double restOf(double jump, const WholeRatio& ratio) {
  return std::max(jump / valueOf(ratio), valueOf(ratio) / jump);
}

WholeRatio nearestWhole(double jump) {
  return {static_cast<std::int32_t>(std::clamp(jump, 1.0, double(LARGEST_NUMBER)) + 0.5), 1};
}

/// True when at most a tenth is left of the jump apart from the ratio.
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

/// What is looked for comes first, then the ratio that leaves the least of the jump.
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

/// So many shares after for so many before, as adjustments have it.
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

std::vector<std::int32_t> SuspectedSplit::ask(const String& code, const Date& date) const {
  const bool merge = m_kind == Kind::Merge;
  const String title = merge ? u"Possible reverse share split (share merge)" : u"Possible share split";
  const String remark = merge ? u"  (shares before : shares after)" : u"  (shares after : shares before)";
  const auto answer =
      UserInteraction::Instance().askRatio(title, question(code, date), remark, LARGEST_NUMBER, m_proposed);
  if (!answer)
    return {merge ? -1 : 1};
  return factorsOf(merge ? WholeRatio{answer->second, answer->first} : *answer);
}

String SuspectedSplit::question(const String& code, const Date& date) const {
  const bool merge = m_kind == Kind::Merge;
  const String kind = merge ? u"reverse share split" : u"share split";
  const String confirmed = merge ? u"reverse split" : u"share split";
  return u"A possible " + kind + u" was detected for the stock\nwith code " + code +
         u" around the day of \n" + date.toString(DATE_DISPLAY_LOCAL) + u" at a value of " +
         String::fromLong(m_proposed.first) + u":" + String::fromLong(m_proposed.second) +
         u".\nPlease confirm the " + confirmed +
         u" ratio, or press cancel\nif this was just stock value movement.";
}

} // namespace Tallymoor
