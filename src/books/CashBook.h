#pragma once
#include "foundation/Date.h"
#include "foundation/String.h"
#include <cstdint>

namespace Tallymoor {

class SharePortfolioCapitalRecordUser;
class XMLCashEvent;
class XMLSharePortfolio;
struct CashEntryKey;

/// The cash entries of a portfolio: adds, changes and deletes them, and tells the capital record from which
/// day on it is wrong.
class CashBook {
public:
  CashBook(XMLSharePortfolio& portfolio, SharePortfolioCapitalRecordUser& record)
      : m_portfolio(portfolio), m_record(record) {}

  /// Types 1, 3 and 4 (credit, interest, deposit). The value is positive, but that of a credit may be less
  /// than zero: a sale that brings in less than its brokerage.
  void credit(const Date& date, double value, std::int32_t type, const String& description);
  /// Types 2 and 5 (debit, withdrawal). The value is positive here too: the type alone gives the sign.
  void debit(const Date& date, double value, std::int32_t type, const String& description);
  /// Overwrites all but the type. A value that is negative already may stay so.
  void edit(XMLCashEvent& event, const Date& newDate, const Date& oldDate, double value,
            const String& description);
  /// An event of another portfolio stays.
  void remove(const XMLCashEvent& event);

  // The entry of a purchase, sale or dividend, found again by its texts.

  /// True if it was found and removed.
  bool remove(const CashEntryKey& key);
  /// Gives the entry new values. True if it was found; an entry of nothing is never looked for. The caller
  /// tells the record.
  bool move(const CashEntryKey& key, double oldValue, const Date& date, double value,
            const String& description);

private:
  void add(const Date& date, double value, std::int32_t type, const String& description);

  XMLSharePortfolio& m_portfolio;
  SharePortfolioCapitalRecordUser& m_record;
};

} // namespace Tallymoor
