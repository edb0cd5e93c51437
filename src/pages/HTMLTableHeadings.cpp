#include "pages/HTMLTableHeadings.h"
#include "foundation/Exception.h"
#include "pages/HTMLParser.h"
#include "pages/HTMLTagSearch.h"
#include "pages/HTMLWalkLimit.h"
#include "pages/PageFigure.h"
#include "xml/LocatorDocuments.h"
#include <algorithm>
#include <vector>

namespace Tallymoor {

namespace {

constexpr std::u16string_view HEADING = u"heading";

bool namesHeadings(const XMLTableLocator& locator) {
  for (std::size_t i = 0; i < locator.numSubElements(u"Columns"); ++i)
    if (locator.subElement(u"Columns", i).hasAttribute(HEADING))
      return true;
  return false;
}

/// The cells of a row, be they of the body or of headings.
std::vector<const HTMLTag*> cellsOf(const HTMLTag& row, HTMLWalkLimit& limit) {
  std::vector<const HTMLTag*> cells;
  limit.take(row.numSubTags());
  for (const HTMLTag* tag = row.firstSubTag(); tag != nullptr; tag = row.nextSubTag(tag))
    if (tag->nameView() == u"td" || tag->nameView() == u"th")
      cells.push_back(tag);
  return cells;
}

/// The row before the first one, else the first row of the head that stands beside the body.
const HTMLTag* headingRow(const HTMLTag& firstRow, HTMLWalkLimit& limit) {
  const HTMLTag* const parent = firstRow.parent();
  if (parent == nullptr)
    return nullptr;
  const HTMLTag* before = nullptr;
  for (const HTMLTag* tag = parent->firstSubTag(); tag != nullptr && tag != &firstRow;
       tag = parent->nextSubTag(tag)) {
    limit.take(1);
    if (tag->nameView() == firstRow.nameView())
      before = tag;
  }
  if (before != nullptr || parent->parent() == nullptr)
    return before;
  const HTMLTag* const head = HTMLParser::FindTag(parent->parent(), u"thead", 0, &limit);
  return head == nullptr ? nullptr : HTMLParser::FindTag(head, firstRow.name(), 0, &limit);
}

/// The cell of a row that a column's walk goes through first; null for a walk that does not begin with a move
/// into it.
const HTMLTag* cellOnTheWay(const XMLElement& column, const HTMLTag& row, HTMLWalkLimit& limit) {
  const XMLElement& find = column.subElement(u"TagFinds", 0);
  if (find.numSubElements(u"TagMove") == 0)
    return nullptr;
  const auto& move = static_cast<const XMLTagMove&>(find.subElement(u"TagMove"));
  return move.movesIn() ? HTMLParser::FindTag(&row, move.attribute(u"name"), move.index(), &limit) : nullptr;
}

bool bears(const HTMLTag& cell, const String& heading, HTMLWalkLimit& limit) {
  const HTMLTagSearch inCell(cell);
  limit.take(inCell.numTags());
  return inCell.first([&](const HTMLTag& tag) { return withoutPageBlanks(tag.text()) == heading; }) !=
         nullptr;
}

} // namespace

HTMLTableHeadings::HTMLTableHeadings(const XMLTableLocator& locator, const HTMLTag& firstRow,
                                     HTMLWalkLimit& limit) {
  if (!namesHeadings(locator))
    return;
  const HTMLTag* const row = headingRow(firstRow, limit);
  if (row == nullptr)
    throw HTMLException(u"HTMLTable::fillFrom - no row of headings");
  const std::vector<const HTMLTag*> headings = cellsOf(*row, limit);
  const std::vector<const HTMLTag*> cells = cellsOf(firstRow, limit);
  for (std::size_t i = 0; i < locator.numSubElements(u"Columns"); ++i) {
    const XMLElement& column = locator.subElement(u"Columns", i);
    if (!column.hasAttribute(HEADING))
      continue;
    const String& heading = column.attribute(HEADING);
    const auto place = static_cast<std::size_t>(
        std::find(cells.begin(), cells.end(), cellOnTheWay(column, firstRow, limit)) - cells.begin());
    if (place == cells.size() || place >= headings.size() || !bears(*headings[place], heading, limit))
      throw HTMLException(u"HTMLTable::fillFrom - not under its heading: " + heading);
  }
  m_numCells = headings.size();
}

void HTMLTableHeadings::checkRow(const HTMLTag& row, HTMLWalkLimit& limit) const {
  if (m_numCells != 0 && cellsOf(row, limit).size() != m_numCells)
    throw HTMLException(u"HTMLTable::fillFrom - a row has not as many cells as headings");
}

} // namespace Tallymoor
