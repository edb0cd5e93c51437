#include "views/IndicatorCells.h"
#include "analysis/Indicators.h"
#include "foundation/Amounts.h"
#include "foundation/Exception.h"
#include "foundation/KeptTexts.h"
#include "foundation/RunTimeSettings.h"
#include "views/CellFigures.h"
#include "views/HeldShareRow.h"
#include "widgets/Row.h"
#include "widgets/Table.h"

namespace Tallymoor {

namespace {

Indicators indicatorsOf(const Row& row) {
  return indicatorsOf(row.payload<HeldShareRow>().code, Date());
}

CellResult figureOrEmpty(const std::optional<double>& value, CellResultType type) {
  return value ? figure(*value, type) : CellResult(String());
}

String autoMinMaxText(const Indicators& indicators) {
  if (!indicators.autoMin || !indicators.autoMax)
    return String();
  return PriceLimits{*indicators.autoMin, *indicators.autoMax}.text();
}

} // namespace

namespace IndicatorCells {

CellResult lrValue(Row& row) {
  return figureOrEmpty(indicatorsOf(row).lrValue, CELL_PRICE);
}

CellResult lrRate(Row& row) {
  return figureOrEmpty(indicatorsOf(row).lrRate, CELL_PERCENT);
}

CellResult averageTrueRange(Row& row) {
  return figureOrEmpty(indicatorsOf(row).averageTrueRange, CELL_PRICE);
}

CellResult autoMinMax(Row& row) {
  return CellResult(autoMinMaxText(indicatorsOf(row)));
}

CellResult autoVolatility(Row& row) {
  return figureOrEmpty(indicatorsOf(row).autoVolatility, CELL_PERCENT);
}

} // namespace IndicatorCells

namespace {

Column& add(Table& table, const char16_t* title, Column::Function function, CompareType compareType,
            bool defaultVisible) {
  return table.addColumn(std::make_unique<Column>(title, function, compareType, defaultVisible));
}

} // namespace

void declareTrendColumns(Table& table, bool defaultVisible) {
  add(table, u"LR Value", &IndicatorCells::lrValue, COMPARE_AMOUNT, defaultVisible)
      .setToolTip(u"Value now of the linear regression line of recent weekly values");
  add(table, u"LR Rate", &IndicatorCells::lrRate, COMPARE_PERCENT, defaultVisible)
      .setToolTip(u"Annualised percentage increase of the 'LR Value' now against six months ago.");
  add(table, u"Av. True Range", &IndicatorCells::averageTrueRange, COMPARE_AMOUNT, defaultVisible)
      .setToolTip(u"Average of the recent weekly true range");
}

void declareAutoMinMaxColumn(Table& table) {
  add(table, u"Auto Min/Max", &IndicatorCells::autoMinMax, COMPARE_TEXT, true)
      .setToolTip(kept::LIMITS_BY_RANGE);
}

PriceLimits automaticLimits(Row& row) {
  try {
    return PriceLimits::MinMaxFromString(row.table()->cell(&IndicatorCells::autoMinMax, row).text());
  } catch (const Exception&) {
    return {};
  }
}

PriceLimits automaticLimits(const String& code) {
  try {
    return PriceLimits::MinMaxFromString(autoMinMaxText(indicatorsOf(code, Date())));
  } catch (const Exception&) {
    return {};
  }
}

PriceLimits limitsInForce(Row& row) {
  return autoMinMaxPrices ? automaticLimits(row) : PriceLimits::ofRow(row.payload<HeldShareRow>());
}

CellResult percentInLimits(Row& row, const PriceLimits& limits, Column::Function price) {
  const double now = cellValue(row, price);
  if (showsAsZero(limits.max) || showsAsZero(now))
    return CellResult(String());
  return figure((now - limits.min) / (limits.max - limits.min) * 100.0, CELL_WHOLE_PERCENT);
}

} // namespace Tallymoor
