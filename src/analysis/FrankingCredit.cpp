#include "analysis/FrankingCredit.h"

namespace Tallymoor {

double frankingCredit(double numHeld, double rate, double percentFranked) {
  return rate * numHeld * percentFranked / 100 * 3 / 7;
}

} // namespace Tallymoor
