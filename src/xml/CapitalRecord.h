#pragma once
#include "xml/ElementPool.h"
#include "xml/Leaves.h"

namespace Tallymoor {

// A portfolio's worth on each day: a store that can always be rebuilt from its records. A day is an element
// of its own, with one more for each stock held on it, so these two classes come from pools: create them by
// create(), never by new.

/// Root: "Name", the portfolio's, and any number of "DayCaps" in rising date order.
class XMLSharePortfolioCapitalRecord : public XMLElement {
public:
  XMLSharePortfolioCapitalRecord();
};

/// A day: "Date", "CashTotal", any number of "ShareVals", and "CashInjected" only where money crossed the
/// border.
class XMLDayCap : public XMLElement {
public:
  XMLDayCap();
  /// Takes an instance from the pool.
  static XMLElement* create();
  /// Gives the instance back to the pool; a copy that no pool made is left alone.
  void destroy() override;
  static ElementPool<XMLDayCap>& pool();
};

/// A stock held on a day: "Code", "Number" (adjusted for splits as of that day), "Price" (two to six
/// decimals). The attribute "Standing" says of a price that is not final what it rests on: "open" for a day
/// that was not over, "last-close" for an earlier close, "transaction" for the price of a purchase or sale.
/// It is not written otherwise, and an earlier version ignores it.
class XMLShareVal : public XMLElement {
public:
  XMLShareVal();
  static XMLElement* create();
  void destroy() override;
  static ElementPool<XMLShareVal>& pool();
};

/// The file name of a portfolio's capital record, without its folder.
String capitalRecordFileName(const String& portfolioName);

} // namespace Tallymoor
