#pragma once
#include "market/CodeSearchResult.h"
#include <cstddef>

namespace Tallymoor {

class HTMLTable;

/// A table of stock codes that a search found.
class SearchTable {
public:
  /// What became of a row. All but Read are passed over: without a code, or a code that can't be traded.
  enum class Reading { Read, NoCode, NotTradable };
  struct Row {
    Reading reading;
    CodeSearchResult result;
  };

  /// The table must be filled and outlive this. Throws HTMLException where one of the columns "Code",
  /// "StockName" and "MarketName" is missing.
  explicit SearchTable(const HTMLTable& table);

  Row row(std::size_t index) const;

private:
  const HTMLTable& m_table;
  std::size_t m_code;
  std::size_t m_name;
  std::size_t m_market;
};

} // namespace Tallymoor
