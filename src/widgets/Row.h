#pragma once
#include "foundation/String.h"
#include <cstddef>
#include <fx.h>

namespace Tallymoor {

class Table;

/// One row of a Table: the key in its header, by which it is found, and the payload that its cells are
/// computed from.
class Row {
public:
  /// The payload is not owned.
  explicit Row(const String& key, void* data = nullptr) : m_key(key), m_data(data) {}
  Row(const Row&) = delete;
  Row& operator=(const Row&) = delete;

  const String& key() const { return m_key; }
  void* data() const { return m_data; }
  /// The payload as what the subclass put there.
  template <class Payload>
  Payload& payload() const {
    return *static_cast<Payload*>(m_data);
  }
  /// No total counts the row from now on.
  void leaveOutOfTotals() { m_counts = false; }
  /// True when a cell function has failed for the row since its cells were last forgotten.
  bool hasFailed() const { return m_hasFailed; }
  bool countsInTotals() const { return m_counts; }
  /// Position in the toolkit's table; -1 until the row has been placed there.
  FXint index() const { return m_index; }
  /// The table that the row was added to; null before.
  Table* table() const { return m_table; }

  /// Tints every cell of the row. All three do nothing while the row has no place in the toolkit's table.
  void setColour(FXColor colour);
  /// Takes every tint away, also that of editable cells.
  void clearColour();
  /// Goes back to the tint that each cell has by itself.
  void resetColour();

private:
  friend class Column;
  friend class RowList;
  friend class Table;
  friend class TableCells;
  friend class TableContents;
  friend class TableWidths;

  String m_key;
  void* m_data;
  bool m_counts = true;
  bool m_payloadChanged = true; ///< since its cells were computed
  bool m_hasFailed = false;
  FXint m_index = -1;
  FXint m_keyWidth = -1; ///< in the row header; -1 until it is measured
  Table* m_table = nullptr;
  std::size_t m_place = 0; ///< among rows with equal keys: that of its insertion
};

} // namespace Tallymoor
