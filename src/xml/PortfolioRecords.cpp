#include "xml/PortfolioRecords.h"
#include "xml/ElementLayout.h"
#include "xml/RecordTexts.h"

namespace Tallymoor {

namespace {

constexpr std::u16string_view BUY_COMMENT_ATTRIBUTE = u"BuyComment";

} // namespace

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

void XMLSharePortfolio::setComparisonIndex(const String& code) {
  // A copy: the code may be the very text that is about to go.
  const String index = code; // NOLINT(performance-unnecessary-copy-initialization)
  removeSubElements(u"ComparisonIndex");
  if (!index.empty())
    setTextAt(COMPARISON_INDEX, index);
}

void XMLSharePortfolio::startElement(const char16_t* uri, const char16_t* localName,
                                     const char16_t* qualifiedName, const xercesc::Attributes& attributes) {
  if (name() == String(qualifiedName)) // not the tag of a sub-element
    removeSubElements(u"ComparisonIndex");
  XMLElement::startElement(uri, localName, qualifiedName, attributes);
}

XMLHeldShares::XMLHeldShares() : XMLEntries(layoutOf<XMLHeldShares>(u"HeldShares")) {
  registerSubElements(u"HeldShare", u"HeldShares", newElement<XMLHeldShare>, false);
}

XMLHeldShare::XMLHeldShare() : XMLStock(layoutOf<XMLHeldShare>(u"HeldShare")) {
  registerAndCreate(u"String", u"Code", newElement<XMLString>);
  markContentUnsafe(u"Code");
  registerSubElements(u"BuyEvent", u"BuyEvents", newElement<XMLBuyEvent>, true);
  registerAndCreate(u"Constant", u"MinPrice", newElement<XMLConstant>);
  registerAndCreate(u"Constant", u"MaxPrice", newElement<XMLConstant>);
  registerAndCreate(u"Constant", u"PortfolioMax", newElement<XMLConstant>);
}

void XMLHeldShare::setMinMax(double min, double max) {
  setTextAt(MIN_PRICE, priceText(min));
  setTextAt(MAX_PRICE, priceText(max));
}

void XMLHeldShare::setPortfolioMax(double value) {
  setTextAt(PORTFOLIO_MAX, moneyText(value));
}

std::vector<XMLDate*> XMLEvent::dates() {
  return {&elementAs<XMLDate>(subElementAt(dayPlace()))};
}

const String& XMLParcel::code() const {
  return static_cast<const XMLStock*>(parent())->code();
}

void XMLParcel::setBought(const Date& day) {
  setTextAt(places().bought, dayText(day));
}

void XMLParcel::setPrice(double price) {
  setTextAt(places().price, priceText(price));
}

void XMLParcel::setBrokerage(double brokerage) {
  setTextAt(places().brokerage, moneyText(brokerage));
}

void XMLParcel::copyPurchase(const XMLParcel& other) {
  const Places& mine = places();
  const Places& theirs = other.places();
  setTextAt(mine.bought, other.textAt(theirs.bought));
  setTextAt(mine.number, other.textAt(theirs.number));
  setTextAt(mine.price, other.textAt(theirs.price));
  setTextAt(mine.brokerage, other.textAt(theirs.brokerage));
}

XMLBuyEvent::XMLBuyEvent() : XMLParcel(layoutOf<XMLBuyEvent>(u"BuyEvent")) {
  registerAndCreate(u"Date", u"BuyDate", newElement<XMLDate>);
  registerAndCreate(u"Constant", u"NumHeld", newElement<XMLConstant>);
  registerAndCreate(u"Constant", u"BuyPrice", newElement<XMLConstant>);
  registerAndCreate(u"Constant", u"Brokerage", newElement<XMLConstant>);
  registerAndCreate(u"String", u"Comment", newElement<XMLString>, true);
  markContentUnsafe(u"Comment");
  registerSubElements(u"SplitAdjustment", u"Adjustments", newElement<XMLSplitAdjustment>, false);
}

const XMLParcel::Places& XMLBuyEvent::places() const {
  static constexpr Places PLACES{BUY_DATE, NUM_HELD, BUY_PRICE, BROKERAGE, COMMENT, ADJUSTMENTS};
  return PLACES;
}

XMLSoldShares::XMLSoldShares() : XMLEntries(layoutOf<XMLSoldShares>(u"SoldShares")) {
  registerSubElements(u"SoldShare", u"SoldShares", newElement<XMLSoldShare>, false);
}

XMLSoldShare::XMLSoldShare() : XMLStock(layoutOf<XMLSoldShare>(u"SoldShare")) {
  registerAndCreate(u"String", u"Code", newElement<XMLString>);
  markContentUnsafe(u"Code");
  registerSubElements(u"SellEvent", u"SellEvents", newElement<XMLSellEvent>, true);
}

XMLSellEvent::XMLSellEvent() : XMLParcel(layoutOf<XMLSellEvent>(u"SellEvent")) {
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

const XMLParcel::Places& XMLSellEvent::places() const {
  static constexpr Places PLACES{BUY_DATE, NUM_HELD, BUY_PRICE, BUY_BROKERAGE, COMMENT, ADJUSTMENTS};
  return PLACES;
}

std::vector<XMLDate*> XMLSellEvent::dates() {
  return {&elementAs<XMLDate>(subElementAt(BUY_DATE)), &elementAs<XMLDate>(subElementAt(SELL_DATE))};
}

String XMLSellEvent::buyComment() const {
  return hasAttribute(BUY_COMMENT_ATTRIBUTE) ? attribute(BUY_COMMENT_ATTRIBUTE) : String();
}

void XMLSellEvent::setBuyComment(const String& comment) {
  setAttribute(BUY_COMMENT_ATTRIBUTE, comment);
}

void XMLSellEvent::setSold(const Date& day) {
  setTextAt(SELL_DATE, dayText(day));
}

void XMLSellEvent::setSellPrice(double price) {
  setTextAt(SELL_PRICE, priceText(price));
}

void XMLSellEvent::setSellBrokerage(double brokerage) {
  setTextAt(SELL_BROKERAGE, moneyText(brokerage));
}

XMLSplitAdjustment::XMLSplitAdjustment() : XMLEvent(layoutOf<XMLSplitAdjustment>(u"SplitAdjustment")) {
  registerAndCreate(u"Date", u"StartDate", newElement<XMLDate>);
  registerAndCreate(u"Constant", u"Factor", newElement<XMLConstant>);
}

void XMLSplitAdjustment::set(const Date& start, std::int64_t factor) {
  setTextAt(START_DATE, dayText(start));
  setTextAt(FACTOR, String::fromLong(factor));
}

XMLDividends::XMLDividends() : XMLEntries(layoutOf<XMLDividends>(u"Dividends")) {
  registerSubElements(u"DividendEvent", u"DividendEvents", newElement<XMLDividendEvent>, false);
}

XMLDividendEvent::XMLDividendEvent() : XMLEvent(layoutOf<XMLDividendEvent>(u"DividendEvent")) {
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

void XMLDividendEvent::setReceived(const Date& day) {
  setTextAt(RECEIVE_DATE, dayText(day));
}

void XMLDividendEvent::setNumber(double number) {
  setTextAt(NUM_HELD, numberText(number));
}

void XMLDividendEvent::setRate(double rate) {
  setTextAt(RATE, dividendRateText(rate));
}

void XMLDividendEvent::setPercentFranked(std::int32_t percent) {
  setTextAt(PERCENT_FRANKED, String::fromLong(percent));
}

void XMLDividendEvent::setReinvestment(double shares, double rate) {
  setTextAt(DRP_SHARES, numberText(shares));
  setTextAt(DRP_RATE, priceText(rate));
}

void XMLDividendEvent::setWithholdingTax(double tax) {
  setTextAt(WITHHOLDING_TAX, moneyText(tax));
}

XMLCashReserve::XMLCashReserve() : XMLEntries(layoutOf<XMLCashReserve>(u"CashReserve")) {
  registerSubElements(u"CashEvent", u"CashEvents", newElement<XMLCashEvent>, false);
}

XMLCashEvent::XMLCashEvent() : XMLEvent(layoutOf<XMLCashEvent>(u"CashEvent")) {
  registerAndCreate(u"Date", u"Date", newElement<XMLDate>);
  registerAndCreate(u"Constant", u"Value", newElement<XMLConstant>);
  registerAndCreate(u"Constant", u"Type", newElement<XMLConstant>);
  registerAndCreate(u"String", u"Description", newElement<XMLString>);
  markContentUnsafe(u"Description");
}

void XMLCashEvent::setType(std::int32_t type) {
  setTextAt(TYPE, String::fromLong(type));
}

void XMLCashEvent::set(const Date& day, double amount, const String& description) {
  setTextAt(DATE, Tallymoor::dayText(day));
  setTextAt(VALUE, moneyText(amount));
  setTextAt(DESCRIPTION, description);
}

} // namespace Tallymoor
