#include "views/TotalsBar.h"
#include "widgets/Table.h"
#include "widgets/ToolkitText.h"
#include <algorithm>

namespace Tallymoor {

FXIMPLEMENT(TotalsBar, FXPacker, nullptr, 0)

namespace {

constexpr FXint PADDING = 4;
constexpr FXint LABEL_PADDING_VERTICAL = 3;
/// Puts the end of a total's text exactly under the end of the texts in its column: the table's right margin
/// is as wide as this and the label's border together.
constexpr FXint LABEL_PADDING_RIGHT = 3;
constexpr FXint LABEL_PADDING_LEFT = 4;

} // namespace

TotalsBar::TotalsBar(FXComposite* parent, Table* table)
    : FXPacker(parent, LAYOUT_FILL_X | LAYOUT_BOTTOM | FRAME_SUNKEN, 0, 0, 0, 0, PADDING, PADDING, PADDING,
               PADDING),
      m_table(table) {
  m_caption = new FXLabel(this, "Totals:", nullptr, JUSTIFY_LEFT, 0, 0, 0, 0, 4, 4, 2, 2);
  m_cells = new FXComposite(this);
  m_cells->show(); // unlike other widgets, a bare composite begins hidden
}

void TotalsBar::showColumns(const std::vector<Column::Function>& functions) {
  for (const Total& total : m_totals)
    delete total.label;
  m_totals.clear();
  for (const Column::Function function : functions) {
    if (!m_table->hasColumn(function) || m_table->getColumn(function).index() < 0)
      continue;
    auto* label =
        new FXLabel(m_cells, FXString(), nullptr, FRAME_SUNKEN | JUSTIFY_RIGHT, 0, 0, 0, 0,
                    LABEL_PADDING_LEFT, LABEL_PADDING_RIGHT, LABEL_PADDING_VERTICAL, LABEL_PADDING_VERTICAL);
    m_totals.push_back({function, label});
  }
  if (m_cells->id() != 0)
    m_cells->create();
  recalc();
}

void TotalsBar::setTotal(Column::Function function, const String& text) {
  if (FXLabel* label = total(function)) {
    label->setText(toFox(text));
    recalc();
  }
}

FXLabel* TotalsBar::total(Column::Function function) const {
  const auto found = std::find_if(m_totals.begin(), m_totals.end(),
                                  [function](const Total& total) { return total.function == function; });
  return found == m_totals.end() ? nullptr : found->label;
}

FXint TotalsBar::getDefaultWidth() {
  return m_caption->getDefaultWidth() + 2 * PADDING + 2;
}

FXint TotalsBar::getDefaultHeight() {
  const FXint line = getApp()->getNormalFont()->getFontHeight() + 2 * LABEL_PADDING_VERTICAL + 2;
  return std::max(line, m_caption->getDefaultHeight()) + 2 * PADDING + 2;
}

FXint TotalsBar::tableLeft() const {
  FXint left = 0;
  for (const FXWindow* window = m_table; window && window != getParent(); window = window->getParent())
    left += window->getX();
  return left - getX();
}

FXint TotalsBar::cellsLeft() const {
  const FXint rowHeader = tableLeft() + m_table->getRowHeader()->getWidth();
  return std::max(rowHeader, PADDING + 1 + m_caption->getDefaultWidth());
}

void TotalsBar::place(const Total& total, FXint cellsLeft, FXint height) const {
  const Column& column = m_table->getColumn(total.function);
  const FXHeader* header = m_table->getColumnHeader();
  const FXint left = tableLeft() + header->getX() + header->getItemOffset(column.index()) - cellsLeft;
  const FXint columnWidth = m_table->columnWidth(column);
  // A total wider than its column reaches to the left, so that its figures still end under theirs.
  const FXint width = std::max(columnWidth, total.label->getDefaultWidth());
  total.label->position(left + columnWidth - width, 0, width, height);
}

void TotalsBar::followTable() {
  const FXint height = getHeight() - 2 * (PADDING + 1);
  const FXint left = cellsLeft();
  m_caption->position(PADDING + 1, PADDING + 1, left - PADDING - 1, height);
  m_cells->position(left, PADDING + 1, std::max(0, getWidth() - left - PADDING), height);
  for (const Total& total : m_totals)
    if (m_table->hasColumn(total.function) && m_table->getColumn(total.function).index() >= 0)
      place(total, left, height);
}

void TotalsBar::layout() {
  followTable();
  flags &= ~FLAG_DIRTY;
}

} // namespace Tallymoor
