#pragma once
#include "foundation/Date.h"
#include "foundation/String.h"

namespace Tallymoor {

class CashBook;
class Holdings;
class SharePortfolioCapitalRecordUser;
class SplitBook;
class XMLBuyEvent;
class XMLSellEvent;
struct SaleEntry;
struct SalePart;
struct SharesAt;
struct Trade;

/// The purchases and sales of a portfolio with their cash entries: records, changes, deletes and undoes them,
/// and tells the capital record from which day on it is wrong.
///
/// A number, price or brokerage below zero throws Exception and changes nothing.
class TradeBook {
public:
  TradeBook(Holdings& holdings, CashBook& cash, const SplitBook& splits,
            SharePortfolioCapitalRecordUser& record)
      : m_holdings(holdings), m_cash(cash), m_splits(splits), m_record(record) {}

  /// Records a purchase and its cash entry.
  void buyShares(const String& code, const Trade& purchase);
  /// Stores the parcel only, with no cash entry.
  XMLBuyEvent& addBuyEvent(const String& code, const Trade& purchase);
  /// Takes the number from the parcels (partsOfSale); each gives a sale and a cash entry, the first of which
  /// bears the whole brokerage. What the parcels can't supply is dropped. Throws Exception when the stock is
  /// not held.
  void sellShares(const String& code, const Trade& sale, bool firstInFirstOut);
  /// What the cash would gain by that sale. Shares that are not held count, too.
  double proceedsOfSale(const String& code, const Trade& sale, bool firstInFirstOut) const;

  /// The stock with all its parcels; cash entries stay. A code that is not held does nothing.
  void removeHeldShare(const String& code);
  void removeSoldShare(const String& code);
  /// number is the one as adjusted for splits up to today. True if the purchase's cash entry was found and
  /// removed too.
  bool deleteBuyEvent(const String& code, const Date& date, double number);
  /// date is the day of sale, number the one sold on it. True if both cash entries, of the sale and of its
  /// purchase, were found and removed; one that is found alone is removed nevertheless.
  bool deleteSellEvent(const String& code, const Date& date, double number);
  /// The same for a sale of this portfolio (see SaleDeletion for what it will do).
  bool deleteSale(const XMLSellEvent& sale);
  /// Deletes the sale alone, with its own cash entry, and gives its shares back: to the rest of their
  /// purchase where that is still held, else as a parcel among the others by its day. The purchase's cash
  /// entry stays. True if the cash entry was found.
  bool undoSale(const XMLSellEvent& sale);
  /// Stores the new values (an empty comment leaves the old one) and lets the cash entry of the old cost and
  /// date follow. True if that was found.
  bool editBuyEvent(XMLBuyEvent& event, const Trade& purchase, double oldCost, const Date& oldDate);
  /// Likewise for a sale; the old amounts and dates are read from the event. True if both cash entries were
  /// found; one that is found alone follows nevertheless.
  bool editSellEvent(XMLSellEvent& event, const SaleEntry& sale);

private:
  void recordSale(const String& code, const SalePart& part, const Trade& sale);
  void storeSoldShares(XMLSellEvent& sale, const SaleEntry& now, bool recordedAsSold);

  Holdings& m_holdings;
  CashBook& m_cash;
  const SplitBook& m_splits;
  SharePortfolioCapitalRecordUser& m_record;
};

} // namespace Tallymoor
