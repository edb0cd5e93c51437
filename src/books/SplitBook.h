#pragma once
#include "books/DayPrice.h"
#include "books/SuspectedSplit.h"
#include "foundation/Date.h"
#include "foundation/String.h"
#include <cstdint>
#include <optional>
#include <vector>

namespace Tallymoor {

class Holdings;
class PortfolioPrices;
class SharePortfolioCapitalRecordUser;
class XMLParcel;

/// The splits of a portfolio's stocks: notes them on the parcels and sales that were held across them, and
/// suspects them where a price jumps.
class SplitBook {
public:
  SplitBook(Holdings& holdings, const PortfolioPrices& prices, SharePortfolioCapitalRecordUser& record)
      : m_holdings(holdings), m_prices(prices), m_record(record) {}

  /// True if any parcel, or any sale, of the code has an adjustment that starts on that very day.
  bool hasHeldAdjustment(const String& code, const Date& date) const;
  bool hasSoldAdjustment(const String& code, const Date& date) const;
  /// False if some parcel held across the day has no adjustment that starts on it: an answer counts for its
  /// own day alone.
  bool isAdjusted(const String& code, const Date& date) const;
  /// Notes the factors on each parcel held across the day, over what is already noted for it. Several count
  /// together: 3 and -2 for three shares that two became. 1 records that there was no split.
  void record(const String& code, const Date& date, const std::vector<std::int32_t>& factors);
  /// Puts sales of an earlier version into the terms of their purchase (OldSales); the days since those
  /// purchases are computed again at the next update.
  void mendOldSales();

  struct PriceCheck {
    DayPrice price;
    std::optional<SuspectedSplit> split; ///< to be put to the user, and the answer recorded
  };
  /// The day's price, and the split that a jump since the day before suggests or that a source tells of the
  /// day, unless an answer is recorded. A jump is explained by a split that is told of days around it.
  /// A price that only stands in for that of its day says nothing of splits. Throws as
  /// PortfolioPrices::priceOn.
  PriceCheck checkPrice(const String& code, const Date& date) const;

  /// Leaves the parcel the splits after its purchase, up to the last day, that any of its stock knows.
  void takeSplitsBetween(XMLParcel& parcel, const Date& bought, const Date& last) const;
  /// Adds the splits after the one day, up to the other, that a parcel of the stock knows and this one does
  /// not.
  void addKnownSplits(XMLParcel& parcel, const Date& after, const Date& last) const;

private:
  std::optional<SuspectedSplit> toldSplit(const String& code, const Date& date,
                                          const std::optional<SuspectedSplit>& jump) const;
  bool isAnsweredAround(const String& code, const Date& date) const;

  Holdings& m_holdings;
  const PortfolioPrices& m_prices;
  SharePortfolioCapitalRecordUser& m_record;
};

} // namespace Tallymoor
