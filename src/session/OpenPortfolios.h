#pragma once
#include "books/SharePortfolioUser.h"
#include "foundation/String.h"
#include <map>
#include <memory>

namespace Tallymoor {

/// All open portfolios by name. PortfolioStore owns the map; the root node of the tree adds to it, renames
/// and deletes.
using OpenPortfolios = std::map<String, std::unique_ptr<SharePortfolioUser>>;

} // namespace Tallymoor
