#include "engine/SuspectedSplit.h"
#include "foundation/RunTimeSettings.h"
#include "foundation/UserInteraction.h"
#include <algorithm>
#include <cmath>

namespace Tallymoor {

namespace {

constexpr std::int32_t LEAST_FACTOR = 1;
constexpr std::int32_t LARGEST_FACTOR = 1000000;
constexpr double THREE_FOR_TWO = 1.5;

std::int32_t roundedFactor(double ratio) {
  const double bounded = std::clamp(ratio, double(LEAST_FACTOR), double(LARGEST_FACTOR));
  return static_cast<std::int32_t>(bounded + 0.5);
}

/// True when at most a tenth, up or down, is left of the jump apart from the ratio.
bool isNear(double jump, double ratio) {
  constexpr double A_TENTH_MORE = 1.1 + 1e-9; // prices of whole cents reach the edge inexactly
  return std::max(jump / ratio, ratio / jump) <= A_TENTH_MORE;
}

bool isNearWholeRatio(double jump) {
  const std::int32_t factor = roundedFactor(jump);
  return factor > 1 && isNear(jump, factor);
}

bool reaches(double jump, double ratio) {
  return jump >= ratio - 1e-9;
}

} // namespace

SuspectedSplit::SuspectedSplit(Kind kind, double jump) : m_kind(kind), m_factor(roundedFactor(jump)) {}

std::optional<SuspectedSplit> SuspectedSplit::between(double yesterday, double today) {
  const double fall = yesterday / today;
  const double rise = today / yesterday;
  if (isNear(fall, THREE_FOR_TWO))
    return SuspectedSplit(Kind::ThreeForTwo, fall);
  if (fall > 1.0 && (isNearWholeRatio(fall) || reaches(fall, splitRatioDetect)))
    return SuspectedSplit(Kind::Split, fall);
  if (rise > 1.0 && (isNearWholeRatio(rise) || reaches(rise, reverseSplitRatioDetect)))
    return SuspectedSplit(Kind::Merge, rise);
  return std::nullopt;
}

std::vector<std::int32_t> SuspectedSplit::ask(const String& code, const Date& date) const {
  UserInteraction& user = UserInteraction::Instance();
  // Its ratio is no whole number, and three shares for two are three for one, merged two to one.
  if (m_kind == Kind::ThreeForTwo)
    return user.question(question(code, date)) ? std::vector<std::int32_t>{3, -2}
                                               : std::vector<std::int32_t>{1};
  const bool merge = m_kind == Kind::Merge;
  const String title = merge ? u"Possible reverse share split (share merge)" : u"Possible share split";
  const std::int32_t factor =
      user.askWholeNumber(title, question(code, date), LEAST_FACTOR, LARGEST_FACTOR, m_factor).value_or(1);
  return {merge ? -factor : factor};
}

String SuspectedSplit::question(const String& code, const Date& date) const {
  const bool merge = m_kind == Kind::Merge;
  const String kind = merge ? u"reverse share split" : u"share split";
  const String confirmed = merge ? u"reverse split" : u"share split";
  const String ratio = m_kind == Kind::ThreeForTwo ? String(u"3:2") : String::fromLong(m_factor) + u":1";
  const String detected = u"A possible " + kind + u" was detected for the stock\nwith code " + code +
                          u" around the day of \n" + date.toString(DATE_DISPLAY_LOCAL) + u" at a value of " +
                          ratio + u".\n";
  if (m_kind == Kind::ThreeForTwo)
    return detected + u"Did two shares become three? Answer No\nif this was just stock value movement.";
  return detected + u"Please confirm the " + confirmed +
         u" ratio, or press cancel\nif this was just stock value movement.";
}

} // namespace Tallymoor
