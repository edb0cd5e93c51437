#pragma once
#include "foundation/Date.h"
#include "foundation/String.h"

namespace Tallymoor {

class XMLBuyEvent;
class XMLHeldShare;
class XMLSellEvent;
class XMLSharePortfolio;
class XMLSoldShare;

/// The stocks of a portfolio, held and sold: finds them by code, and their parcels and sales by what they
/// record. Works in place on the portfolio's tree, which it does not own. Changes no cash and tells no
/// record.
///
/// A stock without a parcel, or without a sale, can't be written: it goes with its last one.
class Holdings {
public:
  explicit Holdings(XMLSharePortfolio& portfolio) : m_portfolio(portfolio) {}

  XMLSharePortfolio& portfolio() { return m_portfolio; }
  const XMLSharePortfolio& portfolio() const { return m_portfolio; }

  /// Null when the code is not held.
  XMLHeldShare* findHeldShare(const String& code);
  const XMLHeldShare* findHeldShare(const String& code) const;
  /// Null when nothing was sold of the code.
  XMLSoldShare* findSoldShare(const String& code);
  const XMLSoldShare* findSoldShare(const String& code) const;
  /// The stock of the code, which is added when it is missing.
  XMLHeldShare& heldShareFor(const String& code);
  XMLSoldShare& soldShareFor(const String& code);

  /// The first parcel that was bought on the day and has that number by the splits up to today; null if there
  /// is none.
  XMLBuyEvent* findParcel(XMLHeldShare& stock, const Date& bought, double number) const;
  /// The first sale of the code on the day, of that number of shares of the day; null if there is none.
  const XMLSellEvent* findSale(const String& code, const Date& sold, double number) const;
  void remove(XMLHeldShare& stock, const XMLBuyEvent& parcel);
  void remove(const XMLSellEvent& sale);

  /// True when the stock is of another market than the first one held, which decides the portfolio's
  /// currency.
  bool isOfAnotherMarket(const String& code) const;
  /// Earliest purchase, of held or sold shares, or cash entry; today when there is none.
  Date startDate() const;
  /// Number of shares of the code in shares of the day, without purchases that are set aside for their
  /// unreadable dates; 0 when it is not held.
  double numHeld(const String& code, const Date& day) const;

  struct RecordedPrice {
    Date day;
    double price;
  };
  /// The price of the purchase or sale of the stock nearest in time, in shares of its own day; 0.0 on the day
  /// itself if the stock has neither. The first one wins a tie.
  RecordedPrice nearestPrice(const String& code, const Date& date) const;

private:
  XMLSharePortfolio& m_portfolio;
};

} // namespace Tallymoor
