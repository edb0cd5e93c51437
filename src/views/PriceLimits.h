#pragma once
#include "foundation/String.h"
#include <optional>

namespace Tallymoor {

class Row;
class XMLHeldShare;
struct HeldShareRow;

/// The prices between which a stock is to be held or watched; a limit that shows as zero is none.
///
/// The user's limits belong to the stock: a holding keeps them in its portfolio's records, and the settings
/// keep them for the watchlists (see SharedLimits).
struct PriceLimits {
  double min = 0.0;
  double max = 0.0;

  bool areNone() const;
  /// "$1.00 - $2.00"; a limit that is not set is left out ("$1.00 - "), and none give an empty text.
  String text() const;

  /// Reads a text of that form as the user types it. Throws Exception "SharesHeldTable::MinMaxFromString -
  /// bad min/max format " and the text, when there is no " - " in it, nor a "- " before or a " -" behind one
  /// price.
  static PriceLimits MinMaxFromString(const String& typed);
  /// The user's limits as a held share has them.
  static PriceLimits ofHeldShare(const XMLHeldShare& heldShare);
  /// The user's limits as the settings have them.
  static PriceLimits ofStock(const String& code);
  /// The user's limits of what a row shows: those of the holding, otherwise of the stock.
  static PriceLimits ofRow(const HeldShareRow& share);
  /// Keeps these in the settings from now on.
  void keepForStock(const String& code) const;
};

bool operator==(const PriceLimits& left, const PriceLimits& right);

/// What the user typed over limits, when it says anything else than they do; nothing also when it can't be
/// read or is less than zero, which the user is told.
std::optional<PriceLimits> changedLimits(const String& typed, const String& shown, const PriceLimits& old);

/// Warns once a run of a price that has left its limits, unless it is of a view date; of one that is within
/// them the warning is taken back.
void warnOfLimits(const String& code, const PriceLimits& limits, double price);

/// As warnOfLimits, and tints the row of a stock whose price has left its limits, or takes the tint back.
/// True when the price has left them.
bool checkLimits(Row& row, const String& code, const PriceLimits& limits, double price);

/// Takes the warnings of a stock back that no table shows any longer.
void forgetLimitWarnings(const String& code);

} // namespace Tallymoor
