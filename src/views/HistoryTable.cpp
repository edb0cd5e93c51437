#include "views/HistoryTable.h"
#include "foundation/Date.h"
#include <algorithm>
#include <ctime>
#include <utility>

namespace Tallymoor {

FXIMPLEMENT_ABSTRACT(HistoryTable, ChoiceTable, nullptr, 0)

namespace {

const ChangeHistory::Entry* changeOf(const Row& row) {
  return row.payload<HistoryTable::Line>().change;
}

std::tm localTime(std::int64_t moment) {
  const auto seconds = static_cast<std::time_t>(moment);
  std::tm local{};
  ::localtime_r(&seconds, &local);
  return local;
}

CellResult timeCell(Row& row) {
  const ChangeHistory::Entry* const change = changeOf(row);
  return CellResult(change ? timeOfMoment(change->moment) : String());
}

CellResult sentenceCell(Row& row) {
  const ChangeHistory::Entry* const change = changeOf(row);
  return CellResult(change ? sentenceOf(*change) : String(u"The oldest state that is known"));
}

CellResult portfolioCell(Row& row) {
  String names;
  if (const ChangeHistory::Entry* const change = changeOf(row))
    for (const String& name : change->portfolios)
      names += (names.empty() ? u"" : u", ") + name;
  return CellResult(names);
}

} // namespace

String sentenceOf(const ChangeHistory::Entry& change) {
  if (change.kind == Change::Kind::Undone)
    return u"Undo: " + change.sentence;
  return change.kind == Change::Kind::Redone ? u"Redo: " + change.sentence : change.sentence;
}

String dayOfMoment(std::int64_t moment) {
  constexpr int FIRST_YEAR = 1900;
  const std::tm local = localTime(moment);
  return Date(FIRST_YEAR + local.tm_year, local.tm_mon + 1, local.tm_mday).toString(DATE_DISPLAY_LOCAL);
}

String timeOfMoment(std::int64_t moment) {
  const std::tm local = localTime(moment);
  char text[] = "hh:mm:ss";
  std::strftime(text, sizeof text, "%H:%M:%S", &local);
  return String(text);
}

HistoryTable::HistoryTable(FXComposite* parent, const std::vector<ChangeHistory::Entry>& changes)
    : ChoiceTable(u"History Table", parent, COMPARE_NEWEST_FIRST), m_changes(changes) {
  updateTable();
}

void HistoryTable::filter(const String& text, const String& portfolio) {
  m_text = text.toLower();
  m_portfolio = portfolio;
  updateTable();
}

bool HistoryTable::isWanted(const ChangeHistory::Entry& change) const {
  const auto& names = change.portfolios;
  return (m_portfolio.empty() || std::find(names.begin(), names.end(), m_portfolio) != names.end()) &&
         (m_text.empty() || sentenceOf(change).toLower().contains(m_text));
}

// Rows of the same day stay in the order in which they are added, and what is no day is the oldest.
void HistoryTable::fillTable() {
  clear();
  setEmptyText(m_changes.empty() ? u"Nothing has been changed yet." : u"No change is like that.");
  addColumn(std::make_unique<Column>(u"Time", timeCell));
  addColumn(std::make_unique<Column>(u"Change", sentenceCell, COMPARE_TEXT, true, FXTableItem::LEFT));
  addColumn(std::make_unique<Column>(u"Portfolio", portfolioCell, COMPARE_TEXT, true, FXTableItem::LEFT));
  m_lines.clear();
  for (auto change = m_changes.rbegin(); change != m_changes.rend(); ++change)
    if (isWanted(*change))
      addRow(std::make_unique<Row>(dayOfMoment(change->moment), &m_lines.emplace_back(Line{&*change})));
  if (!m_changes.empty() && m_text.empty() && m_portfolio.empty())
    addRow(std::make_unique<Row>(u"before", &m_lines.emplace_back(Line{nullptr})));
  rebuild();
  choose(String());
}

const HistoryTable::Line* HistoryTable::chosen() const {
  const Row* const row = chosenRow();
  return row ? &row->payload<Line>() : nullptr;
}

} // namespace Tallymoor
