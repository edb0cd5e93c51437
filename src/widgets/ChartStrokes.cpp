#include "widgets/ChartStrokes.h"

namespace Tallymoor {

const std::vector<double>& strokePattern(ChartStyle style) {
  static const std::vector<double> unbroken;
  static const std::vector<double> dashes{5.0, 3.0};
  static const std::vector<double> dots{1.2, 2.6};
  switch (style) {
  case ChartStyle::LINE:
    break;
  case ChartStyle::DASHES:
    return dashes;
  case ChartStyle::DOTS:
    return dots;
  }
  return unbroken;
}

const std::vector<double>& levelPattern() {
  static const std::vector<double> pattern{8.0, 3.0, 1.5, 3.0};
  return pattern;
}

} // namespace Tallymoor
