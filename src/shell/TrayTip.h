#pragma once
#include "foundation/String.h"
#include <optional>

namespace Tallymoor {

class TotalCapTreeItem;

/// The day's result in one line: of the portfolio that `format` names (the setting "TrayFormat"), with its
/// comparison index in brackets; of all of them together where it names none. Nothing while that can't be
/// told: under a view date, or after midnight until today has its records.
///
/// GUI thread, under the big mutex.
std::optional<String> trayTip(const TotalCapTreeItem& totalCapital, const String& format);

} // namespace Tallymoor
