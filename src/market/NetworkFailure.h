#pragma once
#include "foundation/Exception.h"
#include <exception>

namespace Tallymoor {

/// True for "not found" as an answer of the source.
bool isNotFound(const HTTPException& failure);

/// True for a failure that other codes have in common, in contrast to an answer that speaks of this one;
/// false for null.
bool isFailureOfNetwork(const std::exception_ptr& failure);

} // namespace Tallymoor
