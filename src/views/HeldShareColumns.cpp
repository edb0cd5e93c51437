#include "views/HeldShareColumns.h"
#include "views/HeldShareCells.h"
#include "views/IndicatorCells.h"
#include "widgets/Column.h"
#include "widgets/Table.h"

namespace Tallymoor {

namespace {

using namespace HeldShareCells;

enum class Editing { No, Yes };

Column& add(Table& table, const char16_t* title, Column::Function function, CompareType compareType,
            Editing editing = Editing::No) {
  return table.addColumn(std::make_unique<Column>(title, function, compareType, true, FXTableItem::RIGHT,
                                                  editing == Editing::Yes));
}

void addText(Table& table, const char16_t* title, Column::Function function) {
  table.addColumn(std::make_unique<Column>(title, function, COMPARE_TEXT, true, FXTableItem::LEFT));
}

/// From the current value to the gross gain both tables agree.
void addValueColumns(Table& table) {
  add(table, u"Purchase Value", &purchaseValue, COMPARE_AMOUNT);
  add(table, u"Current Value", &currentValue, COMPARE_AMOUNT);
  add(table, u"Day Move", &dayMove, COMPARE_AMOUNT);
  add(table, u"Day Gain", &dayGain, COMPARE_AMOUNT);
  add(table, u"Day %", &dayPercent, COMPARE_PERCENT);
  add(table, u"Week %", &weekPercent, COMPARE_PERCENT);
  add(table, u"Month %", &monthPercent, COMPARE_PERCENT);
  add(table, u"Gain %", &gainPercent, COMPARE_PERCENT);
  add(table, u"Annualised Gain %", &annualisedGainPercent, COMPARE_PERCENT);
  add(table, u"Gross Gain $", &grossGain, COMPARE_AMOUNT);
}

} // namespace

void declareHeldShareColumns(Table& table) {
  addText(table, u"Name", &HeldShareCells::name);
  add(table, u"Number", &number, COMPARE_NUMBER);
  add(table, u"Buy Price", &buyPrice, COMPARE_AMOUNT);
  add(table, u"Price Now", &priceNow, COMPARE_AMOUNT, Editing::Yes);
  addValueColumns(table);
  declareAutoMinMaxColumn(table);
  add(table, u"Price Min/Max", &priceMinMax, COMPARE_TEXT, Editing::Yes)
      .setToolTip(u"Set your minimum and maximum prices for holding this share. Press F2 to edit.");
  add(table, u"% in Min/Max", &percentInMinMax, COMPARE_PERCENT);
  add(table, u"Portfolio %", &portfolioPercent, COMPARE_PERCENT);
  add(table, u"Days Held", &daysHeld, COMPARE_NUMBER);
  declareTrendColumns(table, false);
  for (const std::unique_ptr<Column>& column : table.columns())
    if (column->function() != &portfolioPercent)
      column->followPayloadAlone();
}

void declarePurchaseColumns(Table& table) {
  add(table, u"Number", &number, COMPARE_NUMBER);
  add(table, u"Buy price", &buyPrice, COMPARE_AMOUNT);
  add(table, u"Price Now", &priceNow, COMPARE_AMOUNT);
  addValueColumns(table);
  add(table, u"Buy Date", &buyDate, COMPARE_OLDEST_FIRST);
  add(table, u"Days Held", &daysHeld, COMPARE_NUMBER);
  addText(table, u"Comment", &HeldShareCells::comment);
}

} // namespace Tallymoor
