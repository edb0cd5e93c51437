#include "views/TotalsBar.h"
#include "widgets/Table.h"
#include "widgets/ToolkitText.h"
#include <algorithm>

namespace Tallymoor {

FXDEFMAP(TotalsBar)
TotalsBarMap[] = {
    FXMAPFUNC(SEL_UPDATE, 0, TotalsBar::onUpdate),
};

FXIMPLEMENT(TotalsBar, FXPacker, TotalsBarMap, ARRAYNUMBER(TotalsBarMap))

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
    m_totals.push_back({function, label, 0, 0});
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

bool TotalsBar::follow(Total& total) const {
  const Column& column = m_table->getColumn(total.function);
  const FXHeader* header = m_table->getColumnHeader();
  FXint left = tableLeft() + header->getX() + header->getItemOffset(column.index()) - m_cellsLeft;
  FXint width = m_table->columnWidth(column);
  // A total wider than its column reaches to the left, so that its figures still end under theirs.
  if (const FXint needed = total.label->getDefaultWidth(); needed > width) {
    left -= needed - width;
    width = needed;
  }
  const bool moved = left != total.left || width != total.width;
  total.left = left;
  total.width = width;
  return moved;
}

void TotalsBar::layout() {
  const FXint inside = getHeight() - 2 * (PADDING + 1);
  m_cellsLeft = cellsLeft();
  m_cellsWidth = std::max(0, getWidth() - m_cellsLeft - PADDING);
  m_caption->position(PADDING + 1, PADDING + 1, m_cellsLeft - PADDING - 1, inside);
  m_cells->position(m_cellsLeft, PADDING + 1, m_cellsWidth, inside);
  for (Total& total : m_totals) {
    follow(total);
    total.label->position(total.left, 0, total.width, inside);
  }
  flags &= ~FLAG_DIRTY;
}

long TotalsBar::onUpdate(FXObject* sender, FXSelector selector, void* data) {
  bool moved = cellsLeft() != m_cellsLeft;
  for (Total& total : m_totals) {
    Total now = total;
    moved = follow(now) || moved;
  }
  if (moved)
    recalc();
  return FXPacker::onUpdate(sender, selector, data);
}

} // namespace Tallymoor
