#pragma once
#include "foundation/String.h"
#include <cstdint>

namespace Tallymoor {

/// How the texts of a column, or the keys of rows, are ordered.
enum CompareType : std::int32_t {
  COMPARE_TEXT = 0,         ///< by character value
  COMPARE_NEWEST_FIRST = 1, ///< the user's short dates, newest first
  COMPARE_OLDEST_FIRST = 2, ///< the user's short dates, oldest first
  COMPARE_AMOUNT = 3,       ///< amounts with currency signs and separators
  COMPARE_PERCENT = 4,      ///< numbers with "%", or amounts
  COMPARE_NUMBER = 5        ///< plain numbers
};

/// A text together with what it reads as, so that sorting reads each text once.
struct SortKey {
  String text;
  double number = 0.0; ///< a day number, amount or number; 0 for text order
};

/// The ordering of row keys and of cell texts. A date that can't be read counts as the oldest, a number that
/// is not finite as 0.
class RowCompare {
public:
  explicit RowCompare(std::int32_t compareType) : m_compareType(compareType) {}

  /// Reads the text for comparisons by this ordering.
  SortKey key(const String& text) const;
  bool operator()(const SortKey& left, const SortKey& right) const;

private:
  std::int32_t m_compareType;
};

} // namespace Tallymoor
