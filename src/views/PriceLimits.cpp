#include "views/PriceLimits.h"
#include "foundation/Amounts.h"
#include "foundation/Exception.h"
#include "foundation/Platform.h"
#include "foundation/RunTimeSettings.h"
#include "foundation/UserInteraction.h"
#include "widgets/Colours.h"
#include "widgets/Row.h"
#include "xml/Leaves.h"

namespace Tallymoor {

namespace {

const String SEPARATOR = u" - ";
constexpr int WARNING_LEVEL = 1;

String money(double amount) {
  return Platform::Instance().currencyFormat(amount);
}

void warn(const String& text, const String& key) {
  UserInteraction::Instance().warnOnce(text, u"Warning from Tallymoor!", key, WARNING_LEVEL);
}

} // namespace

bool PriceLimits::areNone() const {
  return showsAsZero(min) && showsAsZero(max);
}

String PriceLimits::text() const {
  return areNone() ? String() : money(min) + SEPARATOR + money(max);
}

PriceLimits PriceLimits::MinMaxFromString(const String& text) {
  if (text.empty())
    return {};
  const std::size_t split = text.find(SEPARATOR);
  if (split == String::npos)
    throw Exception(String(u"SharesHeldTable::MinMaxFromString - bad min/max format ") + text);
  Platform& platform = Platform::Instance();
  return {platform.parseAmount(text.substr(0, split)),
          platform.parseAmount(text.substr(split + SEPARATOR.size()))};
}

PriceLimits PriceLimits::ofHeldShare(const XMLElement& heldShare) {
  return {doubleValue(heldShare, u"MinPrice"), doubleValue(heldShare, u"MaxPrice")};
}

PriceLimits PriceLimits::inForce(const XMLElement& heldShare) {
  return autoMinMaxPrices ? PriceLimits{} : ofHeldShare(heldShare);
}

bool operator==(const PriceLimits& left, const PriceLimits& right) {
  return showsTheSame(left.min, right.min, 4) && showsTheSame(left.max, right.max, 4);
}

void checkLimits(Row& row, const String& code, const PriceLimits& limits, double price) {
  const auto priceNow = tenThousandths(price);
  if (priceNow < tenThousandths(limits.min) && !showsAsZero(limits.min)) {
    row.setColour(belowLimitTint());
    warn(code + u" has dropped below " + money(limits.min) + u" and is now at " + money(price),
         code + u"min warning");
  } else if (priceNow > tenThousandths(limits.max) && !showsAsZero(limits.max)) {
    row.setColour(aboveLimitTint());
    // No blank after "above": the text is known by its letters.
    warn(code + u" has increased above" + money(limits.max) + u" and is now at " + money(price),
         code + u"max warning");
  } else {
    row.resetColour();
  }
}

} // namespace Tallymoor
