#include "xml/LocatorDocuments.h"
#include "foundation/KeptTexts.h"
#include <algorithm>
#include <array>

namespace Tallymoor {

namespace {

// The position in a list of names is the value that the name stands for; position 0 stands for everything
// else.
constexpr std::array<std::u16string_view, 11> COLUMN_TYPE_NAMES = {
    u"",     u"Code", u"StockName", u"MarketName", u"Date",    u"Open",
    u"High", u"Low",  u"Close",     u"Volume",     u"AdjClose"};
constexpr std::array<std::u16string_view, 6> VALUE_FORMAT_NAMES = {u"",     u"UTF8",  u"MidDate1",
                                                                   u"Long", u"Float", u"CommaLong"};
constexpr std::array<std::u16string_view, 12> URL_VARIABLE_NAMES = {
    u"",       u"Code",     u"MarketCode", u"StartDay", u"StartMonth", u"StartYear",
    u"EndDay", u"EndMonth", u"EndYear",    u"DMY",      u"Country",    u"IndexOrShare"};

template <class Enumeration, std::size_t N>
Enumeration readEnumeration(const XMLElement& element, std::u16string_view attribute,
                            const std::array<std::u16string_view, N>& names) {
  if (!element.hasAttribute(attribute))
    return Enumeration{};
  const std::u16string_view text = element.attribute(attribute);
  const auto found = std::find(names.begin(), names.end(), text);
  return found == names.end() ? Enumeration{} : static_cast<Enumeration>(found - names.begin());
}

template <class Enumeration, std::size_t N>
void writeEnumeration(XMLElement& element, std::u16string_view attribute, Enumeration value,
                      const std::array<std::u16string_view, N>& names) {
  const auto index = static_cast<std::size_t>(value);
  if (index == 0 || index >= N)
    element.removeAttribute(attribute);
  else
    element.setAttribute(attribute, String(names[index]));
}

constexpr bool ONE = false; ///< a single sub-element that must be there
constexpr bool OPTIONAL = true;
constexpr bool ONE_OR_MORE = true;
constexpr bool ANY_NUMBER = false;

} // namespace

// Single sub-elements that must be there are not made by the constructors: an instance made here would hide
// that a document has none.

XMLCurrentPriceLocators::XMLCurrentPriceLocators() : XMLSelfCheckedElement(u"CurrentPriceLocators") {
  registerAttribute(u"active");
  registerAttribute(u"version");
  registerSubElements(u"CurrentPrice", u"CurrentPrices", newElement<XMLCurrentPrice>, ANY_NUMBER);
}

XMLCurrentPrice::XMLCurrentPrice() : XMLSelfCheckedElement(u"CurrentPrice") {
  registerAttribute(u"domain");
  registerSubElement(u"URLLocator", u"URLLocator", newElement<XMLURLLocator>, ONE);
  registerSubElement(u"TagLocator", u"TagLocator", newElement<XMLTagLocator>, ONE);
}

XMLCodeSearchLocators::XMLCodeSearchLocators() : XMLSelfCheckedElement(u"CodeSearchLocators") {
  registerAttribute(u"active");
  registerAttribute(u"version");
  registerSubElements(u"CodeSearch", u"CodeSearchs", newElement<XMLCodeSearch>, ANY_NUMBER);
}

XMLCodeSearch::XMLCodeSearch() : XMLSelfCheckedElement(u"CodeSearch") {
  registerAttribute(u"domain");
  registerSubElements(u"CodeSearchDetail", u"Details", newElement<XMLCodeSearchDetail>, ONE_OR_MORE);
}

XMLCodeSearchDetail::XMLCodeSearchDetail() : XMLSelfCheckedElement(u"CodeSearchDetail") {
  registerSubElement(u"URLLocator", u"URLLocator", newElement<XMLURLLocator>, ONE);
  registerSubElement(u"TableLocator", u"TableLocator", newElement<XMLTableLocator>, ONE);
}

XMLHistoricalPricesLocators::XMLHistoricalPricesLocators()
    : XMLSelfCheckedElement(u"HistoricalPricesLocators") {
  registerAttribute(u"active");
  registerAttribute(u"version");
  registerSubElements(u"HistoricalPrices", u"HistPrices", newElement<XMLHistoricalPrices>, ANY_NUMBER);
}

XMLHistoricalPrices::XMLHistoricalPrices() : XMLSelfCheckedElement(u"HistoricalPrices") {
  registerAttribute(u"domain");
  registerAttribute(u"maxEntries");
  registerSubElement(u"URLLocator", u"URLLocator", newElement<XMLURLLocator>, ONE);
  registerSubElement(u"TableLocator", u"TableLocator", newElement<XMLTableLocator>, ONE);
}

const String& XMLHistoricalPrices::domain() const {
  return attribute(u"domain");
}

std::int32_t XMLHistoricalPrices::maxEntries() const {
  return attribute(u"maxEntries").toLong();
}

XMLURLLocator::XMLURLLocator() : XMLSelfCheckedElement(u"URLLocator") {
  registerSubElements(u"URLPart", u"URLParts", newElement<XMLURLPart>, ONE_OR_MORE);
  markContentUnsafe(u"URLParts"); // queries are full of "&"
}

XMLURLPart::XMLURLPart() : XMLElement(u"URLPart") {}

URLVariableType XMLURLPart::type() const {
  return readEnumeration<URLVariableType>(*this, u"type", URL_VARIABLE_NAMES);
}

void XMLURLPart::setType(URLVariableType type) {
  writeEnumeration(*this, u"type", type, URL_VARIABLE_NAMES);
}

XMLTableLocator::XMLTableLocator() : XMLSelfCheckedElement(u"TableLocator") {
  registerSubElement(u"TagLocator", u"TableRoot", newElement<XMLTagLocator>, ONE);
  registerSubElement(u"TagLocator", u"Row", newElement<XMLTagLocator>, ONE);
  registerSubElements(u"TagLocator", u"Columns", newElement<XMLTagLocator>, ONE_OR_MORE);
}

XMLTagLocator::XMLTagLocator() : XMLSelfCheckedElement(u"TagLocator") {
  registerSubElements(u"TagFind", u"TagFinds", newElement<XMLTagFind>, ONE_OR_MORE);
}

ColumnType XMLTagLocator::type() const {
  return readEnumeration<ColumnType>(*this, u"type", COLUMN_TYPE_NAMES);
}

void XMLTagLocator::setType(ColumnType type) {
  writeEnumeration(*this, u"type", type, COLUMN_TYPE_NAMES);
}

ValueFormat XMLTagLocator::format() const {
  return readEnumeration<ValueFormat>(*this, u"format", VALUE_FORMAT_NAMES);
}

void XMLTagLocator::setFormat(ValueFormat format) {
  writeEnumeration(*this, u"format", format, VALUE_FORMAT_NAMES);
}

XMLTagFind::XMLTagFind() : XMLSelfCheckedElement(u"TagFind") {
  registerSubElement(u"TagSearch", u"TagSearch", newElement<XMLTagSearch>, OPTIONAL);
  registerSubElement(u"TagMove", u"TagMove", newElement<XMLTagMove>, OPTIONAL);
}

void XMLTagFind::endTagRead() {
  XMLSelfCheckedElement::endTagRead();
  const std::size_t steps = numSubElements(u"TagSearch") + numSubElements(u"TagMove");
  if (steps > 1)
    throw XMLException(u"XMLTagFind::endElement - both are present");
  if (steps == 0)
    throw XMLException(kept::NEITHER_FOUND);
}

XMLTagMove::XMLTagMove() : XMLSelfCheckedElement(u"TagMove") {
  registerAttribute(u"move");
  registerAttribute(u"name");
}

bool XMLTagMove::movesIn() const {
  return attribute(u"move") == u"In";
}

std::size_t XMLTagMove::index() const {
  if (!hasAttribute(u"index"))
    return 0;
  // A negative index is no position: it finds nothing.
  return static_cast<std::size_t>(static_cast<std::int64_t>(attribute(u"index").toLong()));
}

XMLTagSearch::XMLTagSearch() : XMLSelfCheckedElement(u"TagSearch") {
  registerAttribute(u"tagname");
}

} // namespace Tallymoor
