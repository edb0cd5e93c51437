#pragma once
#include "foundation/Date.h"
#include "foundation/String.h"

namespace Tallymoor {

/// A purchase or a sale as a form gives it; number and price are of its day.
struct Trade {
  Date date;
  double number;
  double price;
  double brokerage;
  String comment;
};

/// A recorded sale with the purchase of its shares, as a form gives it; number and prices are of the day of
/// sale.
struct SaleEntry {
  Date bought;
  Date sold;
  double number;
  double buyPrice;
  double sellPrice;
  double buyBrokerage;
  double sellBrokerage;
  String comment;
};

} // namespace Tallymoor
