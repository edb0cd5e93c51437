#include "views/PricesTable.h"
#include "foundation/Amounts.h"
#include "market/StockNames.h"
#include "market/TallymoorInternet.h"
#include <algorithm>

namespace Tallymoor {

FXIMPLEMENT_ABSTRACT(PricesTable, ChoiceTable, nullptr, 0)

namespace {

using KnownPrice = PricesTable::KnownPrice;

const KnownPrice& priceOf(const Row& row) {
  return row.payload<KnownPrice>();
}

CellResult nameCell(Row& row) {
  return CellResult(StockNames::nameOf(row.key()));
}

CellResult priceCell(Row& row) {
  const auto& last = priceOf(row).last;
  return last ? CellResult(last->close, CELL_PRICE) : CellResult(String());
}

CellResult sourceCell(Row& row) {
  const PriceStatus::OfCode& status = priceOf(row).status;
  if (!status.price)
    return CellResult(String());
  if (status.isTyped)
    return CellResult(u"typed");
  return CellResult(status.isSample ? u"made up, by the sample service" : status.source);
}

/// A current price stands at today, even if the source says that it is one of days ago.
std::optional<Date> dayOf(const KnownPrice& price) {
  if (price.status.price && !Date::hasFixedDate())
    return price.status.day;
  return price.last ? std::optional(price.last->day) : std::nullopt;
}

CellResult dayCell(Row& row) {
  const auto day = dayOf(priceOf(row));
  return day ? CellResult(*day) : CellResult(String());
}

CellResult ageCell(Row& row) {
  const auto day = dayOf(priceOf(row));
  return day ? CellResult(Date().daysSince(*day)) : CellResult(String());
}

/// What is wrong, and what to do about it.
CellResult stateCell(Row& row) {
  const auto& [status, last, isDoubtful] = priceOf(row);
  if (isDoubtful)
    return CellResult(u"Doubtful: accept or refuse it.");
  if (status.isDelisted)
    return CellResult(u"Marked as delisted: its past prices are not fetched.");
  if (!status.reasons.empty())
    return CellResult(status.reasons.front().source + u": " + status.reasons.front().text);
  if (!last)
    return CellResult(u"No price is known. Check the code, or type a price.");
  return CellResult(String());
}

} // namespace

PricesTable::PricesTable(FXComposite* parent) : ChoiceTable(u"Prices Table", parent) {
  updateTable();
}

void PricesTable::fillTable() {
  TallymoorInternet& gateway = TallymoorInternet::Instance();
  const String chosen = chosenKey();
  clear();
  addColumn(std::make_unique<Column>(u"Name", nameCell, COMPARE_TEXT, true, FXTableItem::LEFT));
  addColumn(std::make_unique<Column>(u"Last price", priceCell, COMPARE_NUMBER));
  addColumn(std::make_unique<Column>(u"Day", dayCell, COMPARE_OLDEST_FIRST));
  addColumn(std::make_unique<Column>(u"Age", ageCell, COMPARE_NUMBER))
      .setToolTip(u"Days since the day of the price");
  addColumn(std::make_unique<Column>(u"State", stateCell, COMPARE_TEXT, true, FXTableItem::LEFT));
  addColumn(std::make_unique<Column>(u"Source", sourceCell, COMPARE_TEXT, true, FXTableItem::LEFT))
      .setToolTip(u"Where the last price came from; empty if that was before the program was started");
  m_prices.clear();
  const auto doubtful = gateway.doubtfulPrices();
  for (const String& code : gateway.priceUpdater().codes())
    addRow(std::make_unique<Row>(code, &m_prices.emplace_back(KnownPrice{
                                           gateway.priceStatus().ofCode(code),
                                           gateway.lastTradedClose(code, Date()), doubtful.contains(code)})));
  rebuild();
  choose(chosen);
}

String PricesTable::summary() const {
  const auto numberText = [](std::ptrdiff_t number) {
    return String::fromLong(static_cast<std::int64_t>(number));
  };
  if (m_prices.empty())
    return u"No stock is held or watched yet.";
  const auto known =
      std::ranges::count_if(m_prices, [](const KnownPrice& price) { return price.last.has_value(); });
  String text = numberText(known) + u" of " + numberText(std::ssize(m_prices)) +
                (m_prices.size() == 1 ? u" stock has a price." : u" stocks have a price.");
  const auto doubtful = std::ranges::count_if(m_prices, &KnownPrice::isDoubtful);
  if (doubtful == 1)
    text += u" The price of 1 stock is doubtful.";
  else if (doubtful > 1)
    text += u" The prices of " + numberText(doubtful) + u" stocks are doubtful.";
  return text;
}

} // namespace Tallymoor
