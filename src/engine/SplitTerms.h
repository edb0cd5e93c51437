#pragma once
#include "foundation/Date.h"
#include <cstddef>
#include <cstdint>
#include <optional>

namespace Tallymoor {

class XMLElement;

// A parcel (BuyEvent) and a sale (SellEvent) keep number and buying price in the terms of their purchase, and
// the splits since then as adjustments. What is shown, summed or written into the cash is as of a day.

/// Number and buying price of the same shares.
struct SharesAt {
  double number;
  double price;
};

/// A factor as adjustments have it: n for n:1, -n for a merge of n into one, 1 or -1 for no change.
void applyFactor(std::int32_t factor, SharesAt& shares);
/// The event's shares as of the end of the day.
SharesAt sharesOn(const XMLElement& event, const Date& day);
/// The way back: shares of the day in the terms of the event's purchase.
SharesAt sharesAsBought(const XMLElement& event, const Date& day, const SharesAt& shares);
/// How many shares of the second day are one share of the first, a day since the purchase and not later.
double sharesBetween(const XMLElement& event, const Date& from, const Date& to);
/// True when a split or merge of the event counts by the day, so that the two above change anything.
bool isSplitBy(const XMLElement& event, const Date& day);

/// A sale's shares as of its own day, as the user sold them. A sale that tells a split in a record of an
/// earlier version, or that was told it after it had been recorded, has its number in the terms of its own
/// day: its cash entry says so, since that was made of the same number.
SharesAt sharesAsSold(const XMLElement& sale);
/// True for such a sale.
bool isRecordedAsSold(const XMLElement& sale);
/// The first of these, where the answer to the second is known.
SharesAt sharesAsSold(const XMLElement& sale, bool recordedAsSold);

/// Place of the adjustment that starts on that very day.
std::optional<std::size_t> findAdjustment(const XMLElement& event, const Date& day);
/// Copies the adjustments that start by the day, in their order.
void copyAdjustments(const XMLElement& from, XMLElement& to, const Date& upTo);

} // namespace Tallymoor
