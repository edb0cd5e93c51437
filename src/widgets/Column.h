#pragma once
#include "foundation/String.h"
#include "widgets/CellResult.h"
#include "widgets/RowCompare.h"
#include <cstdint>
#include <exception>
#include <fx.h>
#include <optional>
#include <unordered_map>

namespace Tallymoor {

class Row;
class Table;

/// One declared column of a Table: its header, the function that computes its cells, and the results that
/// were computed since each row's last refresh.
class Column {
public:
  /// Computes the cell of a row. It is also the column's identity within its table. What it throws costs only
  /// that cell, which then reads "error".
  using Function = CellResult (*)(Row& row);

  /// The title is also the key under which the user's choice of the column is kept. justify is
  /// FXTableItem::RIGHT, FXTableItem::LEFT or 0 for centred.
  Column(const String& title, Function function, CompareType compareType = COMPARE_TEXT,
         bool defaultVisible = true, FXuint justify = FXTableItem::RIGHT, bool editable = false);
  Column(const Column&) = delete;
  Column& operator=(const Column&) = delete;

  const String& title() const { return m_title; }
  const String& toolTip() const { return m_toolTip; }
  /// Help text of the header; empty for none. Gives the column back, so that it can follow the declaration.
  Column& setToolTip(const String& text);
  /// Says that a cell depends on its row's payload and on nothing else that the table does not count as a
  /// change of it: what was computed then holds until the payload changes (Table::keepRow). Gives the column
  /// back.
  Column& followPayloadAlone();
  bool followsPayloadAlone() const { return m_followsPayloadAlone; }
  Function function() const { return m_function; }
  Table* table() const { return m_table; }
  /// Position among the visible columns; -1 while hidden.
  FXint index() const { return m_index; }
  FXuint justify() const { return m_justify; }
  bool defaultVisible() const { return m_defaultVisible; }
  CompareType compareType() const { return m_compareType; }
  bool editable() const { return m_editable; }

  /// The cell's text; "error" when the cell function or the text form throws.
  String operator()(Row& row);
  /// The cell's result, from the cache when it is there. Throws what the cell function threw, also for a
  /// failure that is remembered. The reference holds until the row's next refresh.
  const CellResult& result(Row& row);

  /// Drops what was computed for the row.
  void forget(const Row& row) { m_cache.erase(&row); }
  /// Counts all results as unknown, except those that follow their payload alone.
  void outdate();
  /// Computes the cell unless that was done since outdate. False when it certainly shows what it showed
  /// before.
  bool renew(Row& row);

private:
  friend class Table;
  friend class TableContents;

  struct Cached {
    std::optional<CellResult> result;
    std::exception_ptr failure;
    std::uint64_t generation = 0;
  };

  Cached& compute(Row& row);
  String m_title;
  String m_toolTip;
  Function m_function;
  Table* m_table = nullptr;
  FXint m_index = -1;
  FXuint m_justify;
  bool m_defaultVisible;
  CompareType m_compareType;
  bool m_editable;
  bool m_followsPayloadAlone = false;
  std::unordered_map<const Row*, Cached> m_cache; ///< those of an earlier generation only for comparison
  std::uint64_t m_generation = 0;
};

} // namespace Tallymoor
