#pragma once
#include "xml/ElementList.h"
#include "xml/Leaves.h"
#include <vector>

namespace Tallymoor {

// "Portfolios.xml", and the form in which portfolios are exported. The order of the registrations is the
// order in the file and must never change: elements of one name are told apart by it. Every single
// sub-element exists from construction on, so code can always read it, and it is always written.
//
// The operations read and write the texts of the sub-elements in the forms of RecordTexts; each enum holds
// the places of the registrations. A reader throws Exception where a date is none.

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

/// Something that happened on a day.
class XMLEvent : public XMLElement {
public:
  /// The day by which tables list it: a sale's day of sale.
  Date day() const { return dayLeaf().date(); }
  const XMLDate& dayLeaf() const { return elementAs<XMLDate>(subElementAt(dayPlace())); }
  /// True when its day can't be read (see XMLDate::setAside), so that no figure counts it.
  bool isSetAside() const { return dayLeaf().isSetAside(); }
  /// All its dates.
  virtual std::vector<XMLDate*> dates();

protected:
  using XMLElement::XMLElement;
  virtual std::size_t dayPlace() const = 0;
};

/// "StartDate", the day from which a split counts, and "Factor": n for n:1, -n for a merge, 1 or -1 where the
/// user confirmed that there was none.
class XMLSplitAdjustment : public XMLEvent {
public:
  XMLSplitAdjustment();
  void set(const Date& start, std::int64_t factor);
  std::int32_t factor() const { return textAt(FACTOR).toLong(); }

protected:
  std::size_t dayPlace() const override { return START_DATE; }

private:
  enum Place : std::size_t { START_DATE, FACTOR };
};

/// A parcel: shares that were bought at one time, and are held (XMLBuyEvent) or have been sold
/// (XMLSellEvent). Number and price are in shares of the purchase; the adjustments tell what became of them.
class XMLParcel : public XMLEvent {
public:
  /// Of its stock; the parcel must belong to one.
  const String& code() const;
  Date bought() const { return boughtLeaf().date(); }
  double number() const { return numberText().toDouble(); }
  /// What was paid for each share.
  double price() const { return textAt(places().price).toDouble(); }
  /// Of the purchase.
  double brokerage() const { return textAt(places().brokerage).toDouble(); }
  const String& comment() const { return textAt(places().comment); }
  ElementList<XMLSplitAdjustment> adjustments() { return {*this, places().adjustments}; }
  ElementList<const XMLSplitAdjustment> adjustments() const { return {*this, places().adjustments}; }

  // As they are written.
  const XMLDate& boughtLeaf() const { return elementAs<XMLDate>(subElementAt(places().bought)); }
  const String& numberText() const { return textAt(places().number); }

  void setBought(const Date& day);
  void setNumberText(const String& text) { setTextAt(places().number, text); }
  void setPrice(double price);
  void setBrokerage(double brokerage);
  void setComment(const String& comment) { setTextAt(places().comment, comment); }
  /// Day, number, price and brokerage, to the letter.
  void copyPurchase(const XMLParcel& other);

protected:
  struct Places {
    std::size_t bought, number, price, brokerage, comment, adjustments;
  };
  using XMLEvent::XMLEvent;
  virtual const Places& places() const = 0;
};

/// A parcel that is held: "BuyDate", "NumHeld", "BuyPrice", "Brokerage", "Comment", any number of
/// "Adjustments".
class XMLBuyEvent : public XMLParcel {
public:
  XMLBuyEvent();

protected:
  std::size_t dayPlace() const override { return BUY_DATE; }
  const Places& places() const override;

private:
  enum Place : std::size_t { BUY_DATE, NUM_HELD, BUY_PRICE, BROKERAGE, COMMENT, ADJUSTMENTS };
};

/// A sale, of a parcel or a part of one: "BuyDate", "SellDate", "NumHeld", "BuyPrice", "SellPrice",
/// "BuyBrokerage", "SellBrokerage", "Comment", any number of "Adjustments". "SellPrice" is of the day of
/// sale. The comment is that of the sale.
class XMLSellEvent : public XMLParcel {
public:
  XMLSellEvent();
  Date sold() const { return day(); }
  double sellPrice() const { return textAt(SELL_PRICE).toDouble(); }
  double sellBrokerage() const { return textAt(SELL_BROKERAGE).toDouble(); }
  /// The comment of a purchase of which the last went with this sale; empty if missing.
  String buyComment() const;
  std::vector<XMLDate*> dates() override;

  void setSold(const Date& day);
  void setSellPrice(double price);
  void setSellBrokerage(double brokerage);
  void setBuyComment(const String& comment);

protected:
  std::size_t dayPlace() const override { return SELL_DATE; }
  const Places& places() const override;

private:
  enum Place : std::size_t {
    BUY_DATE,
    SELL_DATE,
    NUM_HELD,
    BUY_PRICE,
    SELL_PRICE,
    BUY_BROKERAGE,
    SELL_BROKERAGE,
    COMMENT,
    ADJUSTMENTS
  };
};

/// A stock of a portfolio, with what is held of it (XMLHeldShare) or has been sold (XMLSoldShare).
class XMLStock : public XMLElement {
public:
  const String& code() const { return textAt(CODE); }
  void setCode(const String& code) { setTextAt(CODE, code); }

protected:
  using XMLElement::XMLElement;
  static constexpr std::size_t CODE = 0;
};

/// "Code", at least one of "BuyEvents", and the limits "MinPrice", "MaxPrice", "PortfolioMax", empty until
/// set.
class XMLHeldShare : public XMLStock {
public:
  XMLHeldShare();
  ElementList<XMLBuyEvent> parcels() { return {*this, BUY_EVENTS}; }
  ElementList<const XMLBuyEvent> parcels() const { return {*this, BUY_EVENTS}; }
  // 0 while not set.
  double minPrice() const { return textAt(MIN_PRICE).toDouble(); }
  double maxPrice() const { return textAt(MAX_PRICE).toDouble(); }
  double portfolioMax() const { return textAt(PORTFOLIO_MAX).toDouble(); }
  void setMinMax(double min, double max);
  void setPortfolioMax(double value);

private:
  enum Place : std::size_t { BUY_EVENTS = CODE + 1, MIN_PRICE, MAX_PRICE, PORTFOLIO_MAX };
};

/// "Code" and at least one of "SellEvents".
class XMLSoldShare : public XMLStock {
public:
  XMLSoldShare();
  ElementList<XMLSellEvent> sales() { return {*this, SELL_EVENTS}; }
  ElementList<const XMLSellEvent> sales() const { return {*this, SELL_EVENTS}; }

private:
  enum Place : std::size_t { SELL_EVENTS = CODE + 1 };
};

/// "Code", "ReceiveDate", "NumHeld", "Rate", "PercentFranked", "DRPShares", "DRPRate", "ForeignDividend",
/// "WithholdingTax".
class XMLDividendEvent : public XMLEvent {
public:
  XMLDividendEvent();
  const String& code() const { return textAt(CODE); }
  Date received() const { return day(); }
  double number() const { return textAt(NUM_HELD).toDouble(); }
  double rate() const { return rateText().toDouble(); }
  double percentFranked() const { return textAt(PERCENT_FRANKED).toDouble(); }
  /// As forms have it, within the bounds of the type.
  std::int32_t wholePercentFranked() const { return textAt(PERCENT_FRANKED).toLong(); }
  // The shares that it was reinvested in, and the price of each; 0 for a dividend that was paid out.
  double drpShares() const { return textAt(DRP_SHARES).toDouble(); }
  double drpRate() const { return drpRateText().toDouble(); }
  /// The country; empty for a domestic dividend.
  const String& foreignDividend() const { return textAt(FOREIGN_DIVIDEND); }
  double withholdingTax() const { return textAt(WITHHOLDING_TAX).toDouble(); }

  // As they are written.
  const String& rateText() const { return textAt(RATE); }
  const String& drpRateText() const { return textAt(DRP_RATE); }

  void setCode(const String& code) { setTextAt(CODE, code); }
  void setReceived(const Date& day);
  void setNumber(double number);
  void setRate(double rate);
  void setPercentFranked(std::int32_t percent);
  void setReinvestment(double shares, double rate);
  void setForeignDividend(const String& country) { setTextAt(FOREIGN_DIVIDEND, country); }
  void setWithholdingTax(double tax);

protected:
  std::size_t dayPlace() const override { return RECEIVE_DATE; }

private:
  enum Place : std::size_t {
    CODE,
    RECEIVE_DATE,
    NUM_HELD,
    RATE,
    PERCENT_FRANKED,
    DRP_SHARES,
    DRP_RATE,
    FOREIGN_DIVIDEND,
    WITHHOLDING_TAX
  };
};

/// "Date", "Value" (positive but for a sale that brought in less than its brokerage), "Type", "Description".
class XMLCashEvent : public XMLEvent {
public:
  XMLCashEvent();
  double amount() const { return amountText().toDouble(); }
  CashEventType type() const { return static_cast<CashEventType>(textAt(TYPE).toLong()); }
  bool isCredit() const { return isCreditType(type()); }
  bool isExternal() const { return isExternalType(type()); }
  const String& description() const { return textAt(DESCRIPTION); }

  // As they are written.
  const String& dayText() const { return textAt(DATE); }
  const String& amountText() const { return textAt(VALUE); }

  void setType(std::int32_t type);
  void set(const Date& day, double amount, const String& description);

protected:
  std::size_t dayPlace() const override { return DATE; }

private:
  enum Place : std::size_t { DATE, VALUE, TYPE, DESCRIPTION };
};

/// A sub-element of a portfolio that holds entries of one kind and nothing else.
template <class Entry>
class XMLEntries : public XMLElement {
public:
  ElementList<Entry> all() { return {*this, 0}; }
  ElementList<const Entry> all() const { return {*this, 0}; }

protected:
  using XMLElement::XMLElement;
};

/// Any number of "HeldShares".
class XMLHeldShares : public XMLEntries<XMLHeldShare> {
public:
  XMLHeldShares();
};

/// Any number of "SoldShares".
class XMLSoldShares : public XMLEntries<XMLSoldShare> {
public:
  XMLSoldShares();
};

/// Any number of "DividendEvents".
class XMLDividends : public XMLEntries<XMLDividendEvent> {
public:
  XMLDividends();
};

/// Any number of "CashEvents", in the order of entry.
class XMLCashReserve : public XMLEntries<XMLCashEvent> {
public:
  XMLCashReserve();
};

/// "Name", "HeldShares", "SoldShares", "Dividends", "CashReserve", "ComparisonIndex". The name and the
/// comparison index are written raw; the prompts that take them keep markup out.
class XMLSharePortfolio : public XMLElement {
public:
  XMLSharePortfolio();
  const String& portfolioName() const { return textAt(NAME); }
  void setPortfolioName(const String& name) { setTextAt(NAME, name); }
  /// Code of the index; empty if missing.
  const String& comparisonIndex() const { return textAt(COMPARISON_INDEX); }
  /// An empty code takes the element away.
  void setComparisonIndex(const String& code);

  ElementList<XMLHeldShare> heldShares() { return elementAs<XMLHeldShares>(subElementAt(HELD_SHARES)).all(); }
  ElementList<const XMLHeldShare> heldShares() const {
    return elementAs<XMLHeldShares>(subElementAt(HELD_SHARES)).all();
  }
  ElementList<XMLSoldShare> soldShares() { return elementAs<XMLSoldShares>(subElementAt(SOLD_SHARES)).all(); }
  ElementList<const XMLSoldShare> soldShares() const {
    return elementAs<XMLSoldShares>(subElementAt(SOLD_SHARES)).all();
  }
  ElementList<XMLDividendEvent> dividends() { return elementAs<XMLDividends>(subElementAt(DIVIDENDS)).all(); }
  ElementList<const XMLDividendEvent> dividends() const {
    return elementAs<XMLDividends>(subElementAt(DIVIDENDS)).all();
  }
  ElementList<XMLCashEvent> cashEvents() {
    return elementAs<XMLCashReserve>(subElementAt(CASH_RESERVE)).all();
  }
  ElementList<const XMLCashEvent> cashEvents() const {
    return elementAs<XMLCashReserve>(subElementAt(CASH_RESERVE)).all();
  }

  /// One that is read without a comparison index is written back without one.
  void startElement(const char16_t* uri, const char16_t* localName, const char16_t* qualifiedName,
                    const xercesc::Attributes& attributes) override;

private:
  enum Place : std::size_t { NAME, HELD_SHARES, SOLD_SHARES, DIVIDENDS, CASH_RESERVE, COMPARISON_INDEX };
};

/// Root: any number of "SharePortfolios". The user may write comments into the records.
class XMLPortfolios : public XMLElement {
public:
  XMLPortfolios();
  ElementList<XMLSharePortfolio> portfolios() { return {*this, 0}; }
  ElementList<const XMLSharePortfolio> portfolios() const { return {*this, 0}; }

protected:
  bool keepsComments() const override { return true; }
};

} // namespace Tallymoor
