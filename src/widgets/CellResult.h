#pragma once
#include "foundation/Date.h"
#include "foundation/String.h"
#include <cstdint>

namespace Tallymoor {

/// What a cell holds, and with it how the cell reads.
enum CellResultType : std::int32_t {
  CELL_TEXT = 0,          ///< the text as it is
  CELL_MONEY = 1,         ///< the user's currency form
  CELL_PRICE = 2,         ///< four decimals, or two when the last two are zeros
  CELL_PERCENT = 3,       ///< two decimals and "%"
  CELL_WHOLE_PERCENT = 4, ///< cut to a whole number, and "%"
  CELL_WHOLE_NUMBER = 5,
  CELL_DATE = 6,  ///< the user's short date
  CELL_NUMBER = 7 ///< two decimals
};

/// The typed value of one cell, as its column's function computed it. A plain value.
class CellResult {
public:
  explicit CellResult(const String& text);
  /// For the types that hold a double (1, 2, 3, 4 and 7); throws Exception for any other.
  CellResult(double value, CellResultType type);
  explicit CellResult(std::int32_t number);
  explicit CellResult(const Date& date);

  const String& text() const { return m_text; }
  double value() const { return m_value; }
  std::int32_t number() const { return m_number; }
  const Date& date() const { return m_date; }
  CellResultType type() const { return m_type; }

  /// What the cell adds to a total: the value or the whole number; 0 for texts and dates.
  double amount() const;
  /// Puts a star behind what is shown, for a figure that is provisional.
  CellResult& setProvisional() {
    m_provisional = true;
    return *this;
  }

  /// True when both show the same.
  friend bool operator==(const CellResult& left, const CellResult& right);

  /// The text that the cell shows. Throws Exception "Column::operator() - bad type".
  String shown() const;

protected:
  String m_text;
  double m_value = 0.0;
  std::int32_t m_number = 0;
  Date m_date{std::uint32_t(0)};
  CellResultType m_type;
  bool m_provisional = false;

private:
  String plainText() const;
};

} // namespace Tallymoor
