#include "views/WatchlistCells.h"
#include "analysis/Indicators.h"
#include "foundation/Amounts.h"
#include "foundation/Exception.h"
#include "foundation/KeptTexts.h"
#include "market/RequestedClose.h"
#include "market/StockNames.h"
#include "views/CellFigures.h"
#include "views/HeldShareRow.h"
#include "views/IndicatorCells.h"
#include "views/SplitHistory.h"
#include "views/WatchlistTable.h"
#include "widgets/Colours.h"
#include "widgets/Row.h"
#include "xml/CountryOfResidence.h"

namespace Tallymoor {

namespace {

constexpr double RATE_WORTH_BUYING = 30.0; ///< percent a year
constexpr int DAYS_OF_A_WEEK = 7;

const String& codeOf(const Row& row) {
  return row.payload<HeldShareRow>().code;
}

/// The close of an earlier day in shares of today, by the splits that the portfolios have recorded.
std::optional<double> earlierPrice(const Row& row, const Date& date) {
  std::optional<double> close = requestedClose(codeOf(row), date);
  if (close) {
    const auto& table = static_cast<const WatchlistTable&>(*row.table());
    *close /= SplitHistory(codeOf(row), table.portfolios()).closeDivisor(date, Date());
  }
  return close;
}

/// The price that the row shows; nothing where its cell is empty.
std::optional<double> shownPrice(Row& row) {
  const double price = cellValue(row, &WatchlistCells::priceNow);
  return showsAsZero(price) ? std::nullopt : std::optional(price);
}

/// Without one of the two prices there is nothing to tell.
CellResult percentSince(Row& row, const Date& date) {
  const std::optional<double> price = shownPrice(row), previous = earlierPrice(row, date);
  return price && previous ? figure((*price - *previous) / *previous * 100.0, CELL_PERCENT)
                           : CellResult(String());
}

CellResult percentSinceMonths(Row& row, int months) {
  return percentSince(row, Date().plusMonths(-months));
}

/// The price stands above its trend and above the automatic minimum, the trend rises steeply, and the last
/// week has not gone against it.
bool isBuySignal(Row& row, double price) {
  const double trend = cellValue(row, &IndicatorCells::lrValue);
  if (showsAsZero(trend) || tenThousandths(price) <= tenThousandths(trend))
    return false;
  const PriceLimits limits = automaticLimits(row);
  if (limits.areNone() || tenThousandths(limits.min) > tenThousandths(price))
    return false;
  const std::optional<double> aWeekAgo = earlierPrice(row, Date().plusDays(-DAYS_OF_A_WEEK));
  return cellValue(row, &IndicatorCells::lrRate) >= RATE_WORTH_BUYING && aWeekAgo &&
         tenThousandths(*aWeekAgo) <= tenThousandths(price);
}

void tint(Row& row, double price) {
  if (checkLimits(row, codeOf(row), limitsInForce(row), price))
    return;
  try {
    if (isBuySignal(row, price))
      row.setColour(buySignalTint());
  } catch (const Exception&) {
    // Without the figures there is no signal; the price itself is known.
  }
}

} // namespace

namespace WatchlistCells {

CellResult name(Row& row) {
  return CellResult(StockNames::nameOf(codeOf(row)));
}

CellResult priceNow(Row& row) {
  const std::optional<double> price = requestedClose(codeOf(row), Date());
  if (!price) {
    row.resetColour();
    return CellResult(String());
  }
  tint(row, *price);
  return CellResult(*price, CELL_PRICE);
}

CellResult dayMove(Row& row) {
  const std::optional<double> price = shownPrice(row), previous = earlierPrice(row, Date().plusDays(-1));
  return price && previous ? CellResult(*price - *previous, CELL_PRICE) : CellResult(String());
}

CellResult dayPercent(Row& row) {
  return percentSince(row, Date().plusDays(-1));
}

CellResult weekPercent(Row& row) {
  return percentSince(row, Date().fridayBeforeLastWeekend());
}

CellResult monthPercent(Row& row) {
  return percentSinceMonths(row, 1);
}

CellResult threeMonthsPercent(Row& row) {
  return percentSinceMonths(row, 3);
}

CellResult sixMonthsPercent(Row& row) {
  return percentSinceMonths(row, 6);
}

CellResult twelveMonthsPercent(Row& row) {
  return percentSinceMonths(row, 12);
}

CellResult calendarYearPercent(Row& row) {
  return percentSince(row, Date(Date().year() - 1, 12, 31));
}

CellResult financialYearPercent(Row& row) {
  return percentSince(row, CountryOfResidence::Instance().financialYearOf(Date()));
}

CellResult priceMinMax(Row& row) {
  return CellResult(PriceLimits::ofStock(codeOf(row)).text());
}

CellResult percentInMinMax(Row& row) {
  cellValue(row, &IndicatorCells::autoMinMax); // which may not be known yet
  return percentInLimits(row, automaticLimits(row), &priceNow);
}

CellResult autoMaxPortfolio(Row& row) {
  const std::optional<double> minimum = indicatorsOf(codeOf(row), Date()).autoMin;
  const std::optional<double> price = shownPrice(row);
  const std::optional<double> capital = static_cast<WatchlistTable*>(row.table())->capital();
  if (!minimum || !price || !capital)
    return CellResult(String());
  const auto money = Tallymoor::autoMaxPortfolio(*capital, *price, *minimum);
  return money ? figure(*money, CELL_MONEY) : CellResult(String());
}

} // namespace WatchlistCells

namespace {

using namespace WatchlistCells;

Column& add(Table& table, const char16_t* title, Column::Function function, CompareType compareType,
            bool editable = false) {
  return table.addColumn(
      std::make_unique<Column>(title, function, compareType, true, FXTableItem::RIGHT, editable));
}

void addGainColumns(Table& table) {
  add(table, kept::DAY_MOVE, &dayMove, COMPARE_NUMBER);
  add(table, u"Day %", &dayPercent, COMPARE_PERCENT);
  add(table, u"Week %", &weekPercent, COMPARE_PERCENT);
  add(table, u"Month %", &monthPercent, COMPARE_PERCENT)
      .setToolTip(u"Change since the same day a month ago. The performance of a portfolio counts from the "
                  u"end of that month.");
  add(table, u"3 Months %", &threeMonthsPercent, COMPARE_PERCENT)
      .setToolTip(u"Change since the same day three months ago. The performance of a portfolio counts from "
                  u"the end of that month.");
  add(table, u"6 Months %", &sixMonthsPercent, COMPARE_PERCENT)
      .setToolTip(u"Change since the same day six months ago. The performance of a portfolio counts from the "
                  u"end of that month.");
  add(table, u"12 Months %", &twelveMonthsPercent, COMPARE_PERCENT)
      .setToolTip(u"Change since the same day twelve months ago. The performance of a portfolio counts from "
                  u"the end of that month.");
  add(table, kept::CALENDAR_YEAR, &calendarYearPercent, COMPARE_PERCENT);
  add(table, u"Fin. Year %", &financialYearPercent, COMPARE_PERCENT);
}

} // namespace

void declareWatchlistColumns(Table& table) {
  table.addColumn(
      std::make_unique<Column>(u"Name", &WatchlistCells::name, COMPARE_TEXT, true, FXTableItem::LEFT));
  add(table, u"Price Now", &priceNow, COMPARE_AMOUNT);
  addGainColumns(table);
  declareTrendColumns(table, true);
  add(table, u"Price Min/Max", &priceMinMax, COMPARE_TEXT, true)
      .setToolTip(u"Set your minimum and maximum prices for holding this stock. Hit F2 to edit.");
  declareAutoMinMaxColumn(table);
  add(table, u"% in Min/Max", &percentInMinMax, COMPARE_PERCENT);
  add(table, u"Auto Max Portfolio", &WatchlistCells::autoMaxPortfolio, COMPARE_PERCENT)
      .setToolTip(u"Maximum portfolio to risk on buying this share. Selling at Auto Min Price would see loss "
                  u"of 2% of capital.");
  add(table, u"Auto Volatility", &IndicatorCells::autoVolatility, COMPARE_PERCENT)
      .setToolTip(u"Average True Range (last two weeks) percentage of LR value");
}

} // namespace Tallymoor
