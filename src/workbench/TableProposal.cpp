#include "workbench/TableProposal.h"
#include "foundation/Date.h"
#include "foundation/Exception.h"
#include "pages/HTMLTable.h"
#include "pages/HTMLTag.h"
#include "pages/HTMLTagLocator.h"
#include "workbench/ColumnTypes.h"
#include "workbench/LocatorWay.h"
#include "workbench/PageText.h"
#include "workbench/TableFault.h"
#include "workbench/TagLists.h"
#include "workbench/WebPage.h"
#include <algorithm>
#include <map>
#include <utility>

namespace Tallymoor {

namespace {

constexpr std::size_t MOST_MARKS = 12; ///< Tags tried before a row's first cell.

/// True if no sibling has the tag's name: the row is then an ancestor of the tag.
bool hasUniqueName(const HTMLTag* tag) {
  if (tag->parent() == nullptr || tag->parent()->parent() == nullptr)
    return false;
  const std::vector<const HTMLTag*> beside = tagsIn(*tag->parent());
  return std::count_if(beside.begin(), beside.end(),
                       [tag](const HTMLTag* other) { return other->nameView() == tag->nameView(); }) == 1;
}

ValueFormat formatOf(ColumnType type) {
  switch (type) {
  case COLUMN_TYPE_DATE:
    return VALUE_FORMAT_MID_DATE1;
  case COLUMN_TYPE_VOLUME:
    return VALUE_FORMAT_COMMA_LONG;
  case COLUMN_TYPE_CODE:
  case COLUMN_TYPE_STOCK_NAME:
  case COLUMN_TYPE_MARKET_NAME:
    return VALUE_FORMAT_UTF8;
  default:
    return VALUE_FORMAT_FLOAT;
  }
}

bool isReadableDate(const String& text) {
  try {
    static_cast<void>(Date(text, DATE_DISPLAY_MIDDATE1));
    return true;
  } catch (const Exception&) {
    return false;
  }
}

/// True for a whole table whose rows are not closed.
bool holdsSeveralDates(const HTMLTag& tag) {
  const auto isDate = [](const HTMLTag& inside) {
    constexpr std::size_t LONGEST = 20;
    const std::u16string_view text = inside.textView();
    return text.size() <= LONGEST && text.find(u'-') != text.npos && isReadableDate(inside.text());
  };
  return tagsBelow(tag, isDate).size() > 1;
}

/// Adds a walk from a row's first tag to a cell in a later sibling, or to the tag itself, which only a search
/// can reach. False if there is none.
bool walkFromMark(XMLTagLocator& column, const HTMLTag& mark, const HTMLTag& head, const HTMLTag& cell) {
  if (&mark != &head)
    return LocatorWay::addMoveDown(column, mark, head) && LocatorWay::addMovesIn(column, head, cell);
  const std::map<String, String> attributes = mark.attributes();
  if (&head != &cell || attributes.empty())
    return false;
  LocatorWay::addSearchByAttribute(column, mark, attributes.begin()->first);
  return true;
}

} // namespace

TableProposal::TableProposal(const WebPage& page, std::vector<ExampleCell> example)
    : m_page(page), m_example(std::move(example)), m_tagsOnPage(page.root()->countTags()) {
  const ExampleRows rows(page, m_example);
  m_reason = rows.reason().empty() ? String(u"The texts are not in one row.") : rows.reason();
  for (const auto& [around, cells] : rows.places()) {
    tryRow(around, cells);
    if (m_best.locator)
      return;
  }
}

void TableProposal::tryRow(const HTMLTag* row, const Cells& cells) {
  tryAround(*row, cells);
  tryAfterMarks(*row, cells);
  for (std::size_t level = 0; level < ExampleRows::MOST_LEVELS && hasUniqueName(row); ++level) {
    row = row->parent();
    tryAround(*row, cells);
  }
}

void TableProposal::tryAround(const HTMLTag& row, const Cells& cells) {
  if (holdsSeveralDates(row))
    return;
  Plan plan{&row, {}};
  for (const HTMLTag* const cell : cells) {
    XMLTagLocator column;
    if (!LocatorWay::addMovesIn(column, row, *cell))
      return;
    plan.columns.push_back(column);
  }
  tryPlan(plan, cells);
}

void TableProposal::tryAfterMarks(const HTMLTag& table, const Cells& cells) {
  Cells heads;
  for (const HTMLTag* const cell : cells)
    heads.push_back(ExampleRows::childAround(cell, table));
  const HTMLTag* const first = *std::min_element(heads.begin(), heads.end());
  Cells marks = tagsBefore(*first);
  marks.resize(std::min(marks.size(), MOST_MARKS));
  noteIfFoundTwice(*first, marks);
  marks.insert(marks.begin(), first);
  for (const HTMLTag* const mark : marks) {
    // A cell inside a later tag with the mark's name belongs to another row.
    if (std::any_of(heads.begin(), heads.end(), [mark](const HTMLTag* head) {
          return head != mark && head->nameView() == mark->nameView();
        }))
      continue;
    Plan plan{mark, {}};
    bool whole = true;
    for (std::size_t i = 0; i < cells.size() && whole; ++i) {
      plan.columns.emplace_back();
      whole = walkFromMark(plan.columns.back(), *mark, *heads[i], *cells[i]);
    }
    if (whole)
      tryPlan(plan, cells);
  }
}

/// A search also finds tags nested directly in tags of the same name.
void TableProposal::noteIfFoundTwice(const HTMLTag& cell, const Cells& before) {
  for (const HTMLTag* const tag : before) {
    const bool isSameName = tag->nameView() == cell.nameView();
    const Cells inside = isSameName ? tagsIn(*tag) : Cells();
    if (std::find(inside.begin(), inside.end(), &cell) != inside.end())
      noteReason(u"The cells are " + tagTitle(cell) + u" in " + tagTitle(*tag) +
                 u": tags directly in tags of the same name. The program then finds\nthe cells as well as "
                 u"the rows and can't tell them apart, so no document can read the table.");
  }
}

/// Keeps the plan's locator if it reads more rows than the best so far. A price table starts at its first row
/// of prices, any other table at the example, because headings can't be recognised there.
void TableProposal::tryPlan(const Plan& plan, const Cells& cells) {
  if (plan.row->parent() == nullptr)
    return;
  Trial trial = build(plan, *plan.row, cells);
  if (!trial.locator)
    return;
  const HTMLTag& first = firstRowOf(plan);
  Trial longer = &first == plan.row ? Trial() : build(plan, first, cells);
  if (longer.locator)
    trial = std::move(longer);
  if (trial.numRows > m_best.numRows)
    m_best = std::move(trial);
}

/// The first of the adjacent price rows before the plan's row.
const HTMLTag& TableProposal::firstRowOf(const Plan& plan) const {
  const HTMLTag* first = plan.row;
  const HTMLTag* next = plan.row;
  for (const HTMLTag* const earlier : tagsBefore(*plan.row)) {
    if (earlier->nameView() != plan.row->nameView())
      continue;
    const RowKind kind = kindOf(plan, *earlier, *next);
    if (kind == RowKind::Other)
      break;
    if (kind == RowKind::Prices)
      first = earlier;
    next = earlier;
  }
  return *first;
}

TableProposal::RowKind TableProposal::kindOf(const Plan& plan, const HTMLTag& row,
                                             const HTMLTag& next) const {
  std::map<ColumnType, String> texts;
  try {
    for (std::size_t i = 0; i < plan.columns.size(); ++i) {
      const HTMLTag* const cell = HTMLTagLocator(&plan.columns[i])(&row);
      if (cell >= &next)
        return RowKind::Other;
      texts.emplace(m_example[i].type, cell->text());
    }
  } catch (const HTMLException&) {
    return RowKind::Other;
  }
  if (!texts.contains(COLUMN_TYPE_DATE))
    return RowKind::Other;
  const String& date = texts[COLUMN_TYPE_DATE];
  if (date.empty() || (texts.contains(COLUMN_TYPE_CLOSE) && texts[COLUMN_TYPE_CLOSE].empty()))
    return RowKind::Skipped;
  return isReadableDate(date) ? RowKind::Prices : RowKind::Other;
}

TableProposal::Trial TableProposal::build(const Plan& plan, const HTMLTag& firstRow, const Cells& cells) {
  const std::vector<LocatorWay> ways = LocatorWay::withoutLabels(*firstRow.parent(), *m_page.root());
  XMLTagLocator row;
  Trial trial;
  if (m_tagsOnPage > m_tagsLeft)
    return trial;
  m_tagsLeft -= m_tagsOnPage;
  if (ways.empty() || !LocatorWay::addMovesIn(row, *firstRow.parent(), firstRow)) {
    noteReason(u"No walk leads to the tag around the rows, " + tagTitle(*firstRow.parent()) + u".");
    return trial;
  }
  trial.locator = std::make_unique<XMLTableLocator>();
  trial.locator->addSubElement(new XMLTagLocator(ways.front().locator), u"TableRoot");
  trial.locator->addSubElement(new XMLTagLocator(row), u"Row");
  for (std::size_t i = 0; i < plan.columns.size(); ++i) {
    auto column = std::make_unique<XMLTagLocator>(plan.columns[i]);
    setTypes(*column, i);
    trial.locator->addSubElement(column.release(), u"Columns");
  }
  read(trial, cells);
  return trial;
}

void TableProposal::setTypes(XMLTagLocator& column, std::size_t index) const {
  column.setType(m_example[index].type);
  column.setFormat(formatOf(m_example[index].type));
}

/// Reads the page with the trial's locator and removes the locator on failure.
void TableProposal::read(Trial& trial, const Cells& cells) {
  HTMLTable table(trial.locator.get());
  String fault;
  try {
    table.fillFrom(m_page.root());
    fault = unreadableDate(table);
  } catch (const HTMLException& failure) {
    fault = failure.message();
  }
  if (const std::optional<TableFault> place = TableFault::find(*trial.locator, m_page.root()))
    fault = describe(*place);
  const auto isExample = [&](std::size_t row) {
    for (std::size_t i = 0; i < cells.size(); ++i)
      if (table.cellValue(row, i) != cells[i]->text())
        return false;
    return true;
  };
  if (fault.empty()) {
    trial.numRows = table.numRows();
    while (trial.exampleRow < trial.numRows && !isExample(trial.exampleRow))
      ++trial.exampleRow;
    if (trial.exampleRow < trial.numRows)
      return;
    fault = u"Walks from the rows do not lead to the cells of the example.";
  }
  noteReason(u"The table was found, but the program can't read it: " + fault);
  trial.locator.reset();
}

/// Keeps the first reason, because the most likely plan is tried first.
void TableProposal::noteReason(const String& reason) {
  if (!m_hasReason)
    m_reason = reason;
  m_hasReason = true;
}

String TableProposal::describe(const TableFault& fault) const {
  const String row = u"row " + numberText(fault.rowNumber + 1) + u" of the table, " + tagSummary(*fault.row) +
                     u", has no cell of its own for " + columnTypeName(m_example[fault.column].type) + u".\n";
  return row +
         String(fault.kind == TableFault::Kind::MissingCell
                    ? u"One row that lacks a cell makes a whole table unreadable for the program."
                    : u"The program would read a cell of the next row instead.") +
         u"\n" + TableFault::ADVICE;
}

/// Describes the first row with an unreadable date. Empty if there is none.
String TableProposal::unreadableDate(const HTMLTable& table) {
  if (!table.hasColumn(COLUMN_TYPE_DATE))
    return String();
  const std::size_t date = table.columnByType(COLUMN_TYPE_DATE);
  const bool hasClose = table.hasColumn(COLUMN_TYPE_CLOSE);
  for (std::size_t row = 0; row < table.numRows(); ++row) {
    const String text = table.cellValue(row, date);
    if (text.empty() || (hasClose && table.cellValue(row, table.columnByType(COLUMN_TYPE_CLOSE)).empty()))
      continue;
    if (!isReadableDate(text))
      return u"row " + numberText(row + 1) + u" has " + inQuotes(text) +
             u" as its date; dates must look like 3-Mar-06.";
  }
  return String();
}

} // namespace Tallymoor
