#include "foundation/LengthyFunctions.h"

namespace Tallymoor {

Progress::~Progress() = default;

HasLengthyFunctions::~HasLengthyFunctions() = default;

} // namespace Tallymoor
