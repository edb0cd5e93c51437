#include "workbench/TableFault.h"
#include "foundation/Exception.h"
#include "pages/HTMLTable.h"
#include "pages/HTMLTagLocator.h"
#include "pages/HTMLWalkLimit.h"
#include "xml/LocatorDocuments.h"

namespace Tallymoor {

namespace {

/// The first column whose cell is missing in the row or belongs to the next row.
std::optional<TableFault> faultIn(const XMLTableLocator& locator, const HTMLTag* row, const HTMLTag* next,
                                  HTMLWalkLimit& limit) {
  const std::size_t count = locator.numSubElements(u"Columns");
  for (std::size_t column = 0; column < count; ++column)
    try {
      const HTMLTag* const cell = HTMLTagLocator(&locator.subElement(u"Columns", column))(row, &limit);
      if (next != nullptr && cell >= next) // The tags' order in memory is their order on the page.
        return TableFault{TableFault::Kind::CellOfNextRow, row, 0, column};
    } catch (const HTMLException&) {
      return TableFault{TableFault::Kind::MissingCell, row, 0, column};
    }
  return std::nullopt;
}

} // namespace

std::optional<TableFault> TableFault::find(const XMLTableLocator& locator, const HTMLTag* page) {
  constexpr std::size_t MOST_STEPS = 20000000; // Far more than a page of 10 MB needs.
  HTMLWalkLimit limit(MOST_STEPS);
  try {
    std::size_t number = 0;
    const HTMLTag* next = nullptr;
    for (const HTMLTag* row = HTMLTable(&locator).firstRow(page); row != nullptr; row = next, ++number) {
      next = HTMLTable::nextRow(row, &limit);
      if (std::optional<TableFault> fault = faultIn(locator, row, next, limit)) {
        fault->rowNumber = number;
        return fault;
      }
    }
  } catch (const HTMLException&) {
    // There is no first row, or the step limit was reached.
  }
  return std::nullopt;
}

} // namespace Tallymoor
