#pragma once
#include "foundation/String.h"

namespace Tallymoor {

/// One row that the data source found for a search by name.
struct CodeSearchResult {
  String code;
  String name;
  String market;
};

} // namespace Tallymoor
