#include "market/StockNameSearch.h"
#include "market/StockNames.h"

namespace Tallymoor {

bool StockNameSearch::isWanted(const String& code) const {
  return StockNames::nameOf(code).empty() && !m_asked.contains(code);
}

void StockNameSearch::keep(const String& code, const std::vector<CodeSearchResult>& found) {
  m_asked.insert(code);
  for (const CodeSearchResult& stock : found)
    if (stock.code == code)
      return StockNames::remember(code, stock.name);
}

} // namespace Tallymoor
