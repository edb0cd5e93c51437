#include "xml/PortfolioRecords.h"
#include "xml/ElementLayout.h"

namespace Tallymoor {

bool isCreditType(std::int32_t type) {
  return type == CASH_EVENT_CREDIT || type == CASH_EVENT_INTEREST || type == CASH_EVENT_DEPOSIT;
}

bool isExternalType(std::int32_t type) {
  return type == CASH_EVENT_DEPOSIT || type == CASH_EVENT_WITHDRAWAL;
}

XMLPortfolios::XMLPortfolios() : XMLElement(layoutOf<XMLPortfolios>(u"Portfolios")) {
  registerSubElements(u"SharePortfolio", u"SharePortfolios", newElement<XMLSharePortfolio>, false);
}

XMLSharePortfolio::XMLSharePortfolio() : XMLElement(layoutOf<XMLSharePortfolio>(u"SharePortfolio")) {
  registerAndCreate(u"String", u"Name", newElement<XMLString>);
  registerAndCreate(u"HeldShares", u"HeldShares", newElement<XMLHeldShares>);
  registerAndCreate(u"SoldShares", u"SoldShares", newElement<XMLSoldShares>);
  registerAndCreate(u"Dividends", u"Dividends", newElement<XMLDividends>);
  registerAndCreate(u"CashReserve", u"CashReserve", newElement<XMLCashReserve>);
  registerAndCreate(u"String", u"ComparisonIndex", newElement<XMLString>, true);
}

XMLHeldShares::XMLHeldShares() : XMLElement(layoutOf<XMLHeldShares>(u"HeldShares")) {
  registerSubElements(u"HeldShare", u"HeldShares", newElement<XMLHeldShare>, false);
}

XMLHeldShare::XMLHeldShare() : XMLElement(layoutOf<XMLHeldShare>(u"HeldShare")) {
  registerAndCreate(u"String", u"Code", newElement<XMLString>);
  markContentUnsafe(u"Code");
  registerSubElements(u"BuyEvent", u"BuyEvents", newElement<XMLBuyEvent>, true);
  registerAndCreate(u"Constant", u"MinPrice", newElement<XMLConstant>);
  registerAndCreate(u"Constant", u"MaxPrice", newElement<XMLConstant>);
  registerAndCreate(u"Constant", u"PortfolioMax", newElement<XMLConstant>);
}

XMLBuyEvent::XMLBuyEvent() : XMLElement(layoutOf<XMLBuyEvent>(u"BuyEvent")) {
  registerAndCreate(u"Date", u"BuyDate", newElement<XMLDate>);
  registerAndCreate(u"Constant", u"NumHeld", newElement<XMLConstant>);
  registerAndCreate(u"Constant", u"BuyPrice", newElement<XMLConstant>);
  registerAndCreate(u"Constant", u"Brokerage", newElement<XMLConstant>);
  registerAndCreate(u"String", u"Comment", newElement<XMLString>, true);
  markContentUnsafe(u"Comment");
  registerSubElements(u"SplitAdjustment", u"Adjustments", newElement<XMLSplitAdjustment>, false);
}

XMLSoldShares::XMLSoldShares() : XMLElement(layoutOf<XMLSoldShares>(u"SoldShares")) {
  registerSubElements(u"SoldShare", u"SoldShares", newElement<XMLSoldShare>, false);
}

XMLSoldShare::XMLSoldShare() : XMLElement(layoutOf<XMLSoldShare>(u"SoldShare")) {
  registerAndCreate(u"String", u"Code", newElement<XMLString>);
  markContentUnsafe(u"Code");
  registerSubElements(u"SellEvent", u"SellEvents", newElement<XMLSellEvent>, true);
}

XMLSellEvent::XMLSellEvent() : XMLElement(layoutOf<XMLSellEvent>(u"SellEvent")) {
  registerAndCreate(u"Date", u"BuyDate", newElement<XMLDate>);
  registerAndCreate(u"Date", u"SellDate", newElement<XMLDate>);
  registerAndCreate(u"Constant", u"NumHeld", newElement<XMLConstant>);
  registerAndCreate(u"Constant", u"BuyPrice", newElement<XMLConstant>);
  registerAndCreate(u"Constant", u"SellPrice", newElement<XMLConstant>);
  registerAndCreate(u"Constant", u"BuyBrokerage", newElement<XMLConstant>);
  registerAndCreate(u"Constant", u"SellBrokerage", newElement<XMLConstant>);
  registerAndCreate(u"String", u"Comment", newElement<XMLString>, true);
  markContentUnsafe(u"Comment");
  registerSubElements(u"SplitAdjustment", u"Adjustments", newElement<XMLSplitAdjustment>, false);
}

XMLSplitAdjustment::XMLSplitAdjustment() : XMLElement(layoutOf<XMLSplitAdjustment>(u"SplitAdjustment")) {
  registerAndCreate(u"Date", u"StartDate", newElement<XMLDate>);
  registerAndCreate(u"Constant", u"Factor", newElement<XMLConstant>);
}

XMLDividends::XMLDividends() : XMLElement(layoutOf<XMLDividends>(u"Dividends")) {
  registerSubElements(u"DividendEvent", u"DividendEvents", newElement<XMLDividendEvent>, false);
}

XMLDividendEvent::XMLDividendEvent() : XMLElement(layoutOf<XMLDividendEvent>(u"DividendEvent")) {
  registerAndCreate(u"String", u"Code", newElement<XMLString>);
  markContentUnsafe(u"Code");
  registerAndCreate(u"Date", u"ReceiveDate", newElement<XMLDate>);
  registerAndCreate(u"Constant", u"NumHeld", newElement<XMLConstant>);
  registerAndCreate(u"Constant", u"Rate", newElement<XMLConstant>);
  registerAndCreate(u"Constant", u"PercentFranked", newElement<XMLConstant>);
  registerAndCreate(u"Constant", u"DRPShares", newElement<XMLConstant>);
  registerAndCreate(u"Constant", u"DRPRate", newElement<XMLConstant>);
  registerAndCreate(u"String", u"ForeignDividend", newElement<XMLString>, true);
  markContentUnsafe(u"ForeignDividend");
  registerAndCreate(u"Constant", u"WithholdingTax", newElement<XMLConstant>, true);
}

XMLCashReserve::XMLCashReserve() : XMLElement(layoutOf<XMLCashReserve>(u"CashReserve")) {
  registerSubElements(u"CashEvent", u"CashEvents", newElement<XMLCashEvent>, false);
}

XMLCashEvent::XMLCashEvent() : XMLElement(layoutOf<XMLCashEvent>(u"CashEvent")) {
  registerAndCreate(u"Date", u"Date", newElement<XMLDate>);
  registerAndCreate(u"Constant", u"Value", newElement<XMLConstant>);
  registerAndCreate(u"Constant", u"Type", newElement<XMLConstant>);
  registerAndCreate(u"String", u"Description", newElement<XMLString>);
  markContentUnsafe(u"Description");
}

CashEventType XMLCashEvent::type() const {
  return static_cast<CashEventType>(longValue(*this, u"Type"));
}

bool XMLCashEvent::isCredit() const {
  return isCreditType(longValue(*this, u"Type"));
}

bool XMLCashEvent::isExternal() const {
  return isExternalType(longValue(*this, u"Type"));
}

} // namespace Tallymoor
