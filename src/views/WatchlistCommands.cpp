#include "views/WatchlistCommands.h"

namespace Tallymoor {

WatchlistCommands::~WatchlistCommands() = default;

} // namespace Tallymoor
