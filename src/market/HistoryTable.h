#pragma once
#include "foundation/Date.h"
#include "market/CachedShare.h"
#include "market/SourceAnswer.h"
#include <cstddef>

namespace Tallymoor {

class HTMLTable;

/// A table of past prices, with its cells turned into days and figures.
class HistoryTable {
public:
  /// What became of a row. All but Read and ToCome are passed over.
  enum class Reading { Read, ToCome, NoDate, NoClose, UnbelievableDay };
  struct Row {
    Reading reading;
    Date day;         ///< means something for Read, ToCome and UnbelievableDay
    ShareValue value; ///< means something for Read and ToCome
  };

  /// The table must be filled and outlive this. Throws HTMLException where one of the columns "Date", "High",
  /// "Low", "Volume" and "Close" is missing.
  explicit HistoryTable(const HTMLTable& table);

  /// Throws HTMLException or Exception for a day, close, high or low that can't be read without doubt (see
  /// PageFigure.h). The row of dividends or of a split has no close; a high or low that is not there is 0.
  Row row(std::size_t index) const;
  /// All rows that are read, and those of days to come; of two with one day the later one.
  AnsweredHistory history() const;

private:
  const HTMLTable& m_table;
  std::size_t m_date;
  std::size_t m_high;
  std::size_t m_low;
  std::size_t m_volume;
  std::size_t m_close;
};

} // namespace Tallymoor
