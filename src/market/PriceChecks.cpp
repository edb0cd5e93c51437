#include "market/PriceChecks.h"
#include "foundation/Amounts.h"
#include "market/PriceCacheFile.h"
#include <algorithm>
#include <cmath>

namespace Tallymoor {

namespace {

constexpr double LARGEST_JUMP = 3.0;
constexpr double LEAST_UNIT_JUMP = 80.0;
constexpr double LARGEST_UNIT_JUMP = 125.0;
constexpr double LARGEST_DIFFERENCE = 0.01; ///< of two closes of one day
constexpr double LARGEST_ROUNDING = 0.001;  ///< of a close against its high or low
constexpr std::size_t ROWS_OF_A_LEVEL = 2;  ///< after a jump, that confirm it
constexpr std::size_t ROWS_LOOKED_AT = 5;   ///< after a jump

using Rows = SharePriceCache::Rows;

/// How many times the larger of two prices above 0 is the smaller one.
double timesApart(double a, double b) {
  return std::max(a, b) / std::min(a, b);
}

std::optional<DoubtReason> jumpBetween(double before, double after) {
  if (showsAsZero(before, PRICE_CACHE_DECIMALS) || showsAsZero(after, PRICE_CACHE_DECIMALS))
    return std::nullopt;
  const double times = timesApart(before, after);
  if (times >= LEAST_UNIT_JUMP && times <= LARGEST_UNIT_JUMP)
    return DoubtReason::Unit;
  return times > LARGEST_JUMP ? std::optional(DoubtReason::Jump) : std::nullopt;
}

bool isOutsideItsRange(const ShareValue& value) {
  const bool hasHigh = !showsAsZero(value.high, PRICE_CACHE_DECIMALS);
  const bool hasLow = !showsAsZero(value.low, PRICE_CACHE_DECIMALS);
  return (hasHigh && hasLow && value.high < value.low * (1 - LARGEST_ROUNDING)) ||
         (hasHigh && value.close > value.high * (1 + LARGEST_ROUNDING)) ||
         (hasLow && value.close < value.low * (1 - LARGEST_ROUNDING));
}

/// True if the rows after a jump stay at its level.
bool isNewLevel(const Rows& rows, Rows::const_iterator jump) {
  std::size_t confirming = 0;
  for (auto row = std::next(jump); row != rows.end() && confirming < ROWS_LOOKED_AT; ++row) {
    if (showsAsZero(row->second.close, PRICE_CACHE_DECIMALS))
      continue;
    if (timesApart(row->second.close, jump->second.close) > LARGEST_JUMP)
      return false;
    ++confirming;
  }
  return confirming >= ROWS_OF_A_LEVEL;
}

std::optional<KnownClose> contradicted(const CachedShare& known, const Date& day, double close) {
  const auto row = known.values.find(day);
  if (row == known.values.end() || row->second.origin != PriceOrigin::Source ||
      showsAsZero(row->second.close, PRICE_CACHE_DECIMALS) || showsAsZero(close, PRICE_CACHE_DECIMALS) ||
      !SharePriceCache::isFinal(known, row) || std::abs(close / row->second.close - 1) <= LARGEST_DIFFERENCE)
    return std::nullopt;
  return KnownClose{day, row->second.close, true};
}

/// The first close behind the day that a source has told.
std::optional<KnownClose> firstToldAfter(const CachedShare& known, const Date& day) {
  for (auto row = known.values.upper_bound(day); row != known.values.end(); ++row)
    if (row->second.origin == PriceOrigin::Source && !showsAsZero(row->second.close, PRICE_CACHE_DECIMALS))
      return KnownClose{row->first, row->second.close, SharePriceCache::isFinal(known, row)};
  return std::nullopt;
}

/// Walks a page forward and divides it.
class PageCheck {
public:
  PageCheck(const CachedShare& known, const Rows& fetched, bool mayChangeLevel)
      : m_known(known), m_fetched(fetched), m_mayChangeLevel(mayChangeLevel),
        m_before(SharePriceCache::lastTradedClose(known, fetched.begin()->first.plusDays(-1))) {}

  CheckedPrices run() {
    if (!m_before && leadsUpToAnotherUnit())
      return std::move(m_result);
    for (auto row = m_fetched.begin(); row != m_fetched.end(); ++row)
      check(row);
    return std::move(m_result);
  }

private:
  void check(Rows::const_iterator row) {
    const auto& [day, value] = *row;
    if (const ShareValue* known = m_known.find(day); known && known->origin == PriceOrigin::Typed)
      return keep(day, *known); // which the row does not replace
    if (const auto reason = jump(row))
      return doubt(row, *reason, m_before);
    if (isOutsideItsRange(value))
      return doubt(row, DoubtReason::Range, std::nullopt);
    if (const auto known = contradicted(m_known, day, value.close))
      return doubt(row, DoubtReason::Contradiction, known);
    keep(day, value);
  }

  void keep(const Date& day, const ShareValue& value) {
    m_result.good.emplace(day, value);
    if (!showsAsZero(value.close, PRICE_CACHE_DECIMALS))
      m_before = KnownClose{day, value.close, false};
  }

  std::optional<DoubtReason> jump(Rows::const_iterator row) const {
    const auto reason =
        m_before ? jumpBetween(m_before->close, row->second.close) : std::optional<DoubtReason>();
    const bool isTaken = reason == DoubtReason::Jump && m_mayChangeLevel && isNewLevel(m_fetched, row);
    return isTaken ? std::nullopt : reason;
  }

  /// An older page has no close before it to be compared with. In another unit than the known days it is
  /// doubtful as a whole.
  bool leadsUpToAnotherUnit() {
    const auto last = std::prev(m_fetched.end());
    const auto after = firstToldAfter(m_known, last->first);
    if (!after || jumpBetween(after->close, last->second.close) != DoubtReason::Unit)
      return false;
    for (auto row = m_fetched.begin(); row != m_fetched.end(); ++row)
      doubt(row, DoubtReason::Unit, after);
    return true;
  }

  void doubt(Rows::const_iterator row, DoubtReason reason, const std::optional<KnownClose>& known) {
    m_result.doubtful.push_back({.day = row->first, .value = row->second, .reason = reason, .known = known});
  }

  const CachedShare& m_known;
  const Rows& m_fetched;
  const bool m_mayChangeLevel;
  std::optional<KnownClose> m_before; ///< the last good close
  CheckedPrices m_result;
};

struct MinorUnit {
  std::u16string_view name; ///< as sources call it
  std::u16string_view currency;
};
constexpr MinorUnit MINOR_UNITS[] = {{u"GBX", u"GBP"}, {u"GBp", u"GBP"}, {u"ZAc", u"ZAR"},
                                     {u"ZAC", u"ZAR"}, {u"ILA", u"ILS"}, {u"ILX", u"ILS"}};

String reasonOfCurrency(const DoubtfulPrice& price) {
  for (const MinorUnit& unit : MINOR_UNITS)
    if (price.currency == String(unit.name) && price.usualCurrency == String(unit.currency))
      return u"100 " + price.currency + u" are 1 " + price.usualCurrency +
             u": the source's document lacks the factor 0.01.";
  return u"The source may mean another listing of the stock. Prices are not converted.";
}

/// Day and month change places if that gives a day not long ago.
String reasonOfFuture(const Date& day) {
  constexpr int LONG_AGO = 60;
  constexpr int LAST_MONTH = 12;
  const Date today = Date::realToday();
  if (day.day() <= LAST_MONTH) {
    const Date swapped(day.year(), day.day(), day.month());
    if (swapped <= today && swapped > today.plusDays(-LONG_AGO))
      return u"Day and month may have changed places: then it is of " + swapped.toString(DATE_DISPLAY_LOCAL) +
             u". It can't count before its day.";
  }
  return u"The source or the clock of this computer may be wrong. It can't count before its day.";
}

String likelyReason(const DoubtfulPrice& price) {
  switch (price.reason) {
  case DoubtReason::Unit:
    return u"One of them may be in cents or pence.";
  case DoubtReason::Jump:
    return u"It may be a split, another unit or currency, or a mistake of the source.";
  case DoubtReason::Range:
    return u"The close does not lie between the low and the high of the day.";
  case DoubtReason::Currency:
    return reasonOfCurrency(price);
  case DoubtReason::Future:
    return reasonOfFuture(price.day);
  default:
    return u"The source may have changed its closes after a split.";
  }
}

} // namespace

CheckedPrices checkPrices(const CachedShare& known, const SharePriceCache::Rows& fetched,
                          bool mayChangeLevel) {
  return fetched.empty() ? CheckedPrices() : PageCheck(known, fetched, mayChangeLevel).run();
}

std::optional<DoubtfulPrice> checkCurrentPrice(const CachedShare& known, const Date& day, double price) {
  const auto before = SharePriceCache::lastTradedClose(known, day);
  const auto reason = before ? jumpBetween(before->close, price) : std::optional<DoubtReason>();
  if (!reason)
    return std::nullopt;
  return DoubtfulPrice{.day = day,
                       .value = {.close = price, .origin = PriceOrigin::Current},
                       .reason = *reason,
                       .known = before};
}

String doubtText(const String& code, const DoubtfulPrice& price) {
  const auto ofDay = [](double close, const Date& day) {
    return shortPriceText(close) + u" of " + day.toString(DATE_DISPLAY_LOCAL);
  };
  String text = code + u": " + ofDay(price.value.close, price.day);
  if (price.reason == DoubtReason::Currency)
    text += u" is in " + price.currency + u", but prices of this stock are in " + price.usualCurrency + u'.';
  else if (price.reason == DoubtReason::Future)
    text += u", a day to come.";
  else if (price.known)
    text += u", but " + ofDay(price.known->close, price.known->day) + u" is known.";
  else
    text += u", with " + shortPriceText(price.value.low) + u" as the low and " +
            shortPriceText(price.value.high) + u" as the high.";
  return text + u" " + likelyReason(price);
}

} // namespace Tallymoor
