#pragma once
#include "foundation/String.h"
#include <fx.h>
#include <optional>

namespace Tallymoor {

struct FoundStock {
  String code;
  String name; ///< with its market
};

/// Lets the user choose among the stocks that match what he typed as a code or a part of a name; tells him
/// when that is nothing. Nothing when he chose none. Throws as StockSearchDialog.
std::optional<FoundStock> searchForStock(FXWindow* owner, const String& text);

} // namespace Tallymoor
