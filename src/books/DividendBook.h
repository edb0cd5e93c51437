#pragma once
#include "foundation/Date.h"

namespace Tallymoor {

class CashBook;
class Holdings;
class SharePortfolioCapitalRecordUser;
class SplitBook;
class TradeBook;
class XMLBuyEvent;
class XMLDividendEvent;
struct DividendEntry;

/// The dividends of a portfolio, each with the cash entry or the reinvested parcel that it came as: records,
/// changes and deletes them, and tells the capital record from which day on it is wrong.
///
/// A number, price, rate or tax below zero throws Exception and changes nothing.
class DividendBook {
public:
  DividendBook(Holdings& holdings, TradeBook& trades, CashBook& cash, const SplitBook& splits,
               SharePortfolioCapitalRecordUser& record)
      : m_holdings(holdings), m_trades(trades), m_cash(cash), m_splits(splits), m_record(record) {}

  /// Records a dividend. With drpShares it was reinvested and makes a parcel at drpRate, without brokerage
  /// and without a cash entry; else it makes a cash entry of the gross amount. The tax withheld is only
  /// noted.
  void receive(const DividendEntry& dividend);
  /// Stores the new values (an empty country and no tax leave the old ones) and lets the cash entry or parcel
  /// follow. oldValue is the cash entry's amount, 0.0 when the dividend was reinvested; oldDRPShares and
  /// oldBuyPrice find the parcel of a reinvested one. False if the old cash entry or parcel was not found: a
  /// dividend that changes between cash and shares is then paid in the new way nevertheless.
  bool edit(XMLDividendEvent& event, const DividendEntry& dividend, double oldDRPShares, double oldBuyPrice,
            double oldValue, const Date& oldDate);
  /// True if the cash entry or parcel of the dividend was found and removed.
  bool remove(const XMLDividendEvent& event);

private:
  void pay(const DividendEntry& dividend);
  bool moveCash(const DividendEntry& before, const DividendEntry& now, double oldValue, const Date& oldDate);
  void moveReinvestment(const DividendEntry& before, XMLBuyEvent* parcel, const DividendEntry& now);
  void removeParcel(const XMLBuyEvent& parcel);

  Holdings& m_holdings;
  TradeBook& m_trades;
  CashBook& m_cash;
  const SplitBook& m_splits;
  SharePortfolioCapitalRecordUser& m_record;
};

} // namespace Tallymoor
