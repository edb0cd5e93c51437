#include "views/PortfolioCommands.h"

namespace Tallymoor {

PortfolioCommands::~PortfolioCommands() = default;

} // namespace Tallymoor
