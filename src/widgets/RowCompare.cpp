#include "widgets/RowCompare.h"
#include "foundation/Date.h"
#include "foundation/Exception.h"
#include "foundation/Platform.h"
#include <cmath>

namespace Tallymoor {

namespace {

double dayOf(const String& text) {
  try {
    return Date(text, DATE_DISPLAY_LOCAL).julianDay();
  } catch (const Exception&) {
    return 0.0;
  }
}

/// What is not a number would leave a sort without any order.
double finite(double value) {
  return std::isfinite(value) ? value : 0.0;
}

/// An amount of money may stand among percentages: it is read as one.
double percentOf(const String& text) {
  const bool isPercent = !text.empty() && text.back() == u'%';
  return isPercent ? text.fromPercent() : Platform::Instance().parseAmount(text);
}

} // namespace

SortKey RowCompare::key(const String& text) const {
  switch (m_compareType) {
  case COMPARE_NEWEST_FIRST:
  case COMPARE_OLDEST_FIRST:
    return {text, dayOf(text)};
  case COMPARE_AMOUNT:
    return {text, finite(Platform::Instance().parseAmount(text))};
  case COMPARE_PERCENT:
    return {text, finite(percentOf(text))};
  case COMPARE_NUMBER:
    return {text, finite(text.toDouble())};
  default:
    return {text, 0.0};
  }
}

bool RowCompare::operator()(const SortKey& left, const SortKey& right) const {
  switch (m_compareType) {
  case COMPARE_NEWEST_FIRST:
    return left.number > right.number;
  case COMPARE_OLDEST_FIRST:
  case COMPARE_AMOUNT:
  case COMPARE_PERCENT:
  case COMPARE_NUMBER:
    return left.number < right.number;
  default:
    return left.text.compare(right.text) < 0;
  }
}

} // namespace Tallymoor
