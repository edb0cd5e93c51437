#include "widgets/ChartStrokes.h"

namespace Tallymoor {

const std::vector<double>& strokePattern(ChartStyle style) {
  static const std::vector<double> unbroken;
  static const std::vector<double> DASHES{5.0, 3.0};
  static const std::vector<double> DOTS{1.2, 2.6};
  switch (style) {
  case ChartStyle::LINE:
    break;
  case ChartStyle::DASHES:
    return DASHES;
  case ChartStyle::DOTS:
    return DOTS;
  }
  return unbroken;
}

const std::vector<double>& levelPattern() {
  static const std::vector<double> PATTERN{8.0, 3.0, 1.5, 3.0};
  return PATTERN;
}

} // namespace Tallymoor
