#include "session/ImportChecks.h"
#include "foundation/Date.h"
#include "foundation/Exception.h"
#include "xml/PortfolioRecords.h"
#include <initializer_list>
#include <utility>

namespace Tallymoor {

namespace {

/// A field of the records, and what the user calls it.
using Field = std::pair<std::u16string_view, const char16_t*>;

/// Calls the operation for each element under the name.
template <class Operation>
void forEach(const XMLElement& parent, std::u16string_view name, Operation operation) {
  for (std::size_t i = 0; i < parent.numSubElements(name); ++i)
    operation(parent.subElement(name, i));
}

/// Calls the operations for each stock held and its purchases, each stock sold and its sales, and each
/// dividend.
template <class OfHeld, class OfBuy, class OfSale, class OfDividend>
void forEachTrade(const XMLElement& portfolio, OfHeld ofHeld, OfBuy ofBuy, OfSale ofSale,
                  OfDividend ofDividend) {
  forEach(portfolio.subElement(u"HeldShares"), u"HeldShares", [&](const XMLElement& stock) {
    ofHeld(stock);
    forEach(stock, u"BuyEvents", [&](const XMLElement& event) { ofBuy(stock, event); });
  });
  forEach(portfolio.subElement(u"SoldShares"), u"SoldShares", [&](const XMLElement& stock) {
    forEach(stock, u"SellEvents", [&](const XMLElement& event) { ofSale(stock, event); });
  });
  forEach(portfolio.subElement(u"Dividends"), u"DividendEvents", ofDividend);
}

void checkDate(const XMLElement& event, std::u16string_view name) {
  Date(textValue(event, name), DATE_DISPLAY_DMY);
}

void checkDatesOfShares(const XMLElement& event) {
  checkDate(event, u"BuyDate");
  forEach(event, u"Adjustments", [](const XMLElement& adjustment) { checkDate(adjustment, u"StartDate"); });
}

/// "purchase of ABC.AX on 3/03/2026"
String entryName(const char16_t* kind, const XMLElement& stock, const XMLElement& event,
                 std::u16string_view date) {
  return String(kind) + u" of " + textValue(stock, u"Code") + u" on " +
         dateValue(event, date).toString(DATE_DISPLAY_LOCAL);
}

/// A field that an entry may lack is passed over.
void requireNotNegative(const XMLElement& portfolio, const String& entry, const XMLElement& event,
                        std::initializer_list<Field> fields) {
  for (const auto& [name, words] : fields)
    if (event.numSubElements(name) > 0 && doubleValue(event, name) < 0.0)
      throw Exception(u"In the portfolio \"" + textValue(portfolio, u"Name") + u"\", the " + words +
                      u" of the " + entry + u" is " + textValue(event, name) +
                      u".\nIt can't be less than zero.");
}

} // namespace

void checkImportedDates(const XMLElement& portfolio) {
  forEachTrade(
      portfolio, [](const XMLElement&) {},
      [](const XMLElement&, const XMLElement& purchase) { checkDatesOfShares(purchase); },
      [](const XMLElement&, const XMLElement& sale) {
        checkDatesOfShares(sale);
        checkDate(sale, u"SellDate");
      },
      [](const XMLElement& dividend) { checkDate(dividend, u"ReceiveDate"); });
  forEach(portfolio.subElement(u"CashReserve"), u"CashEvents",
          [](const XMLElement& event) { checkDate(event, u"Date"); });
}

void checkImportedAmounts(const XMLElement& portfolio) {
  forEachTrade(
      portfolio,
      [&](const XMLElement& stock) {
        requireNotNegative(portfolio, u"stock " + textValue(stock, u"Code"), stock,
                           {{u"MinPrice", u"minimum price"}, {u"MaxPrice", u"maximum price"}});
      },
      [&](const XMLElement& stock, const XMLElement& purchase) {
        requireNotNegative(
            portfolio, entryName(u"purchase", stock, purchase, u"BuyDate"), purchase,
            {{u"NumHeld", u"number"}, {u"BuyPrice", u"buy price"}, {u"Brokerage", u"brokerage"}});
      },
      [&](const XMLElement& stock, const XMLElement& sale) {
        requireNotNegative(portfolio, entryName(u"sale", stock, sale, u"SellDate"), sale,
                           {{u"NumHeld", u"number"},
                            {u"BuyPrice", u"buy price"},
                            {u"SellPrice", u"sell price"},
                            {u"BuyBrokerage", u"buy brokerage"},
                            {u"SellBrokerage", u"sell brokerage"}});
      },
      [&](const XMLElement& dividend) {
        requireNotNegative(portfolio, entryName(u"dividend", dividend, dividend, u"ReceiveDate"), dividend,
                           {{u"NumHeld", u"number of shares"},
                            {u"Rate", u"dividend rate"},
                            {u"PercentFranked", u"percent franked"},
                            {u"DRPShares", u"number of shares received"},
                            {u"DRPRate", u"share price"},
                            {u"WithholdingTax", u"withholding tax"}});
      });
}

} // namespace Tallymoor
