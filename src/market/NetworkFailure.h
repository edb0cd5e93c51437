#pragma once
#include "foundation/Exception.h"
#include <exception>

namespace Tallymoor {

/// True if the source answered "not found".
bool isNotFound(const HTTPException& failure);

/// True if the failure would also happen for other codes; false for an answer about one code, and for null.
bool isFailureOfNetwork(const std::exception_ptr& failure);

} // namespace Tallymoor
