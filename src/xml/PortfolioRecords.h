#pragma once
#include "xml/Leaves.h"

namespace Tallymoor {

// "Portfolios.xml", and the form in which portfolios are exported. The order of the registrations is the
// order in the file and must never change: elements of one name are told apart by it. Every single
// sub-element exists from construction on, so code can always read it, and it is always written.

/// The values of a cash event's "Type"; files hold the numbers, and may hold others.
enum CashEventType : std::int32_t {
  CASH_EVENT_CREDIT = 1,    ///< proceeds of a sale, cash dividend
  CASH_EVENT_DEBIT = 2,     ///< cost of a purchase, account fee
  CASH_EVENT_INTEREST = 3,  ///< interest received
  CASH_EVENT_DEPOSIT = 4,   ///< money paid in from outside
  CASH_EVENT_WITHDRAWAL = 5 ///< money taken out
};

/// True for what adds to the cash; false also for unknown types.
bool isCreditType(std::int32_t type);
/// True for money that crosses the portfolio's border.
bool isExternalType(std::int32_t type);

/// Root: any number of "SharePortfolios". The user may write comments into the records.
class XMLPortfolios : public XMLElement {
public:
  XMLPortfolios();

protected:
  bool keepsComments() const override { return true; }
};

/// "Name", "HeldShares", "SoldShares", "Dividends", "CashReserve", "ComparisonIndex". The name and the
/// comparison index are written raw; the prompts that take them keep markup out.
class XMLSharePortfolio : public XMLElement {
public:
  XMLSharePortfolio();
};

/// Any number of "HeldShares".
class XMLHeldShares : public XMLElement {
public:
  XMLHeldShares();
};

/// "Code", at least one of "BuyEvents", and the limits "MinPrice", "MaxPrice", "PortfolioMax", empty until
/// set.
class XMLHeldShare : public XMLElement {
public:
  XMLHeldShare();
};

/// A parcel: "BuyDate", "NumHeld", "BuyPrice", "Brokerage", "Comment", any number of "Adjustments". Number
/// and price are in shares of the purchase; the adjustments tell what became of them.
class XMLBuyEvent : public XMLElement {
public:
  XMLBuyEvent();
};

/// Any number of "SoldShares".
class XMLSoldShares : public XMLElement {
public:
  XMLSoldShares();
};

/// "Code" and at least one of "SellEvents".
class XMLSoldShare : public XMLElement {
public:
  XMLSoldShare();
};

/// "BuyDate", "SellDate", "NumHeld", "BuyPrice", "SellPrice", "BuyBrokerage", "SellBrokerage", "Comment", any
/// number of "Adjustments". "NumHeld" and "BuyPrice" as in a parcel; "SellPrice" is of the day of sale.
class XMLSellEvent : public XMLElement {
public:
  XMLSellEvent();
};

/// "StartDate", the day from which a split counts, and "Factor": n for n:1, -n for a merge, 1 or -1 where the
/// user confirmed that there was none.
class XMLSplitAdjustment : public XMLElement {
public:
  XMLSplitAdjustment();
};

/// Any number of "DividendEvents".
class XMLDividends : public XMLElement {
public:
  XMLDividends();
};

/// "Code", "ReceiveDate", "NumHeld", "Rate", "PercentFranked", "DRPShares", "DRPRate", "ForeignDividend",
/// "WithholdingTax".
class XMLDividendEvent : public XMLElement {
public:
  XMLDividendEvent();
};

/// Any number of "CashEvents", in the order of entry.
class XMLCashReserve : public XMLElement {
public:
  XMLCashReserve();
};

/// "Date", "Value" (always positive), "Type", "Description".
class XMLCashEvent : public XMLElement {
public:
  XMLCashEvent();
  CashEventType type() const;
  bool isCredit() const;
  bool isExternal() const;
};

} // namespace Tallymoor
