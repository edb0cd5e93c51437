#pragma once
#include "foundation/String.h"
#include <vector>

namespace Tallymoor {

class XMLBuyEvent;
class XMLHeldShare;
struct Trade;

/// What a sale takes from a parcel, and what it leaves.
struct SalePart {
  XMLBuyEvent* parcel;
  double taken;  ///< in shares of the day of sale
  String number; ///< as the sale records it
  String rest;   ///< as the parcel records it; empty when the parcel goes whole
};

/// How a sale divides among the parcels of its stock: in their stored order, from the first or from the last,
/// whatever their dates, until the number is reached. Changes nothing.
std::vector<SalePart> partsOfSale(XMLHeldShare& stock, const Trade& sale, bool firstInFirstOut);

/// True when the shares sold so far are all of the sale.
bool isAllSold(double sold, double number);

} // namespace Tallymoor
