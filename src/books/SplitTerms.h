#pragma once
#include "foundation/Date.h"
#include <cstdint>

namespace Tallymoor {

class XMLParcel;
class XMLSellEvent;
class XMLSplitAdjustment;

// A parcel that is held and one that has been sold keep number and buying price in the terms of their
// purchase, and the splits since then as adjustments. What is shown, summed or written into the cash is as of
// a day.

/// Number and buying price of the same shares.
struct SharesAt {
  double number;
  double price;
};

/// A factor as adjustments have it: n for n:1, -n for a merge of n into one, 1 or -1 for no change.
void applyFactor(std::int32_t factor, SharesAt& shares);
/// The parcel's shares as of the end of the day.
SharesAt sharesOn(const XMLParcel& parcel, const Date& day);
/// The way back: shares of the day in the terms of its purchase.
SharesAt sharesAsBought(const XMLParcel& parcel, const Date& day, const SharesAt& shares);
/// How many shares of the second day are one share of the first, a day since the purchase and not later.
double sharesBetween(const XMLParcel& parcel, const Date& from, const Date& to);
/// True when a split or merge of the parcel counts by the day, so that the conversions above change anything.
bool isSplitBy(const XMLParcel& parcel, const Date& day);

/// A sale's shares as of its own day, as the user sold them. A sale that an earlier version recorded with a
/// split, or that was given the split later, has its number in the terms of its own day: the amount of its
/// cash entry, which was computed from the same number, shows that.
SharesAt sharesAsSold(const XMLSellEvent& sale);
/// True for such a sale.
bool isRecordedAsSold(const XMLSellEvent& sale);
/// sharesAsSold(sale), if the result of isRecordedAsSold is known already.
SharesAt sharesAsSold(const XMLSellEvent& sale, bool recordedAsSold);

/// The adjustment that starts on that day; null if there is none.
const XMLSplitAdjustment* findAdjustment(const XMLParcel& parcel, const Date& day);
/// Copies the adjustments that start by the day, in their order.
void copyAdjustments(const XMLParcel& from, XMLParcel& to, const Date& upTo);

} // namespace Tallymoor
