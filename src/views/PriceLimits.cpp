#include "views/PriceLimits.h"
#include "foundation/Amounts.h"
#include "foundation/Date.h"
#include "foundation/Exception.h"
#include "foundation/KeptTexts.h"
#include "foundation/Platform.h"
#include "foundation/Settings.h"
#include "foundation/UserInteraction.h"
#include "views/HeldShareRow.h"
#include "widgets/Colours.h"
#include "widgets/Row.h"
#include "xml/PortfolioRecords.h"

namespace Tallymoor {

namespace {

const String SEPARATOR = u" - ";
const String SECTION = u"Watchlists";
constexpr int WARNING_LEVEL = 1;

String money(double amount) {
  return Platform::Instance().currencyFormat(amount);
}

String limitText(double limit) {
  return showsAsZero(limit) ? String() : money(limit);
}

String minKey(const String& code) {
  return u"minvalue" + SEPARATOR + code;
}

String maxKey(const String& code) {
  return u"maxvalue" + SEPARATOR + code;
}

String minWarning(const String& code) {
  return code + u"min warning";
}

String maxWarning(const String& code) {
  return code + u"max warning";
}

enum class Place { BELOW, WITHIN, ABOVE };

/// Where a price stands to its limits; the lower one is looked at first.
Place placeOf(double price, const PriceLimits& limits) {
  const auto priceNow = tenThousandths(price);
  if (priceNow < tenThousandths(limits.min) && !showsAsZero(limits.min))
    return Place::BELOW;
  return priceNow > tenThousandths(limits.max) && !showsAsZero(limits.max) ? Place::ABOVE : Place::WITHIN;
}

/// A price of the past is no news, and would use up the one warning of the run.
void warn(const String& text, const String& key) {
  if (Date::hasFixedDate())
    return;
  UserInteraction::Instance().warnOnce(text, u"Warning from Tallymoor!", key, WARNING_LEVEL);
}

void warningOver(const String& key) {
  if (!Date::hasFixedDate())
    UserInteraction::Instance().warningOver(key);
}

} // namespace

bool PriceLimits::areNone() const {
  return showsAsZero(min) && showsAsZero(max);
}

String PriceLimits::text() const {
  return areNone() ? String() : limitText(min) + SEPARATOR + limitText(max);
}

PriceLimits PriceLimits::MinMaxFromString(const String& typed) {
  if (typed.empty())
    return {};
  // So that a limit alone is found whether or not the blank on its other side was typed.
  const String text = u" " + typed + u" ";
  const std::size_t split = text.find(SEPARATOR);
  if (split == String::npos)
    throw Exception(String(kept::BAD_LIMITS) + typed);
  Platform& platform = Platform::Instance();
  return {platform.parseAmount(text.substr(0, split)),
          platform.parseAmount(text.substr(split + SEPARATOR.size()))};
}

PriceLimits PriceLimits::ofHeldShare(const XMLHeldShare& heldShare) {
  return {heldShare.minPrice(), heldShare.maxPrice()};
}

PriceLimits PriceLimits::ofStock(const String& code) {
  const Settings& settings = Settings::Instance();
  return {settings.readReal(SECTION, minKey(code)), settings.readReal(SECTION, maxKey(code))};
}

PriceLimits PriceLimits::ofRow(const HeldShareRow& share) {
  return share.heldShare ? ofHeldShare(*share.heldShare) : ofStock(share.code);
}

void PriceLimits::keepForStock(const String& code) const {
  Settings& settings = Settings::Instance();
  settings.writeReal(SECTION, minKey(code), min);
  settings.writeReal(SECTION, maxKey(code), max);
}

bool operator==(const PriceLimits& left, const PriceLimits& right) {
  return showsTheSame(left.min, right.min, 4) && showsTheSame(left.max, right.max, 4);
}

std::optional<PriceLimits> changedLimits(const String& typed, const String& shown, const PriceLimits& old) {
  if (typed == shown)
    return std::nullopt;
  try {
    const PriceLimits limits = PriceLimits::MinMaxFromString(typed);
    if (limits.min < 0.0 || limits.max < 0.0) {
      UserInteraction::Instance().error(u"The limits of a price can't be less than zero.");
      return std::nullopt;
    }
    return limits == old ? std::nullopt : std::optional(limits);
  } catch (const Exception&) {
    UserInteraction::Instance().error(u"The Min Price has a bad format.");
    return std::nullopt;
  }
}

void warnOfLimits(const String& code, const PriceLimits& limits, double price) {
  const Place place = placeOf(price, limits);
  if (place == Place::BELOW)
    warn(code + u" has dropped below " + money(limits.min) + u" and is now at " + money(price),
         minWarning(code));
  else
    warningOver(minWarning(code));
  if (place == Place::ABOVE)
    // No blank after "above": the text is known by its letters.
    warn(code + u" has increased above" + money(limits.max) + u" and is now at " + money(price),
         maxWarning(code));
  else
    warningOver(maxWarning(code));
}

bool checkLimits(Row& row, const String& code, const PriceLimits& limits, double price) {
  warnOfLimits(code, limits, price);
  const Place place = placeOf(price, limits);
  if (place == Place::WITHIN)
    row.resetColour();
  else
    row.setColour(place == Place::BELOW ? belowLimitTint() : aboveLimitTint());
  return place != Place::WITHIN;
}

void forgetLimitWarnings(const String& code) {
  if (!UserInteraction::exists())
    return;
  UserInteraction::Instance().warningOver(minWarning(code));
  UserInteraction::Instance().warningOver(maxWarning(code));
}

} // namespace Tallymoor
