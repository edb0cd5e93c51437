#pragma once
#include "foundation/String.h"

namespace Tallymoor {

class Row;
class XMLElement;

/// The prices between which a share is to be held; a limit that shows as zero is none.
struct PriceLimits {
  double min = 0.0;
  double max = 0.0;

  bool areNone() const;
  /// "$1.00 - $2.00"; an empty text for none.
  String text() const;

  /// Reads a text of that form as the user types it. Throws Exception "SharesHeldTable::MinMaxFromString -
  /// bad min/max format " and the text, when there is no " - " in it.
  static PriceLimits MinMaxFromString(const String& text);
  /// The user's own limits of a held share.
  static PriceLimits ofHeldShare(const XMLElement& heldShare);
  /// Those that hold now: the user's own, none while the automatic ones are chosen.
  static PriceLimits inForce(const XMLElement& heldShare);
};

bool operator==(const PriceLimits& left, const PriceLimits& right);

/// Tints the row of a share whose price has left its limits and warns once a run; otherwise takes the tint
/// back.
void checkLimits(Row& row, const String& code, const PriceLimits& limits, double price);

} // namespace Tallymoor
