#pragma once
#include <cstddef>

namespace Tallymoor {

class HTMLTag;
class HTMLWalkLimit;
class XMLTableLocator;

/// Sees to it that the cells which a table locator finds by their position still stand under the headings
/// that it expects: those of its columns that have an attribute "heading". A page whose columns moved fails
/// then, instead of giving one figure for another. Nothing is checked for a locator that names no headings.
class HTMLTableHeadings {
public:
  /// The locator must outlive this. Finds the row of headings: the row before the first one, or the first row
  /// of the table's "thead". Throws HTMLException "HTMLTable::fillFrom - no row of headings", or
  /// "HTMLTable::fillFrom - not under its heading: " and the heading.
  HTMLTableHeadings(const XMLTableLocator& locator, const HTMLTag& firstRow, HTMLWalkLimit& limit);

  /// Throws HTMLException "HTMLTable::fillFrom - a row has not as many cells as headings".
  void checkRow(const HTMLTag& row, HTMLWalkLimit& limit) const;

private:
  std::size_t m_numCells = 0; ///< 0 when nothing is to be checked
};

} // namespace Tallymoor
