#include "market/PriceProvider.h"

namespace Tallymoor {

PriceProvider::~PriceProvider() = default;

} // namespace Tallymoor
