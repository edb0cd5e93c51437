#include "widgets/TableHeader.h"
#include "widgets/Table.h"
#include "widgets/ToolkitText.h"

namespace Tallymoor {

FXDEFMAP(TableHeader)
tableHeaderMap[] = {
    FXMAPFUNC(SEL_MOTION, 0, TableHeader::onMotion),
};

FXIMPLEMENT(TableHeader, FXHeader, tableHeaderMap, ARRAYNUMBER(tableHeaderMap))

namespace {

constexpr FXuint STYLE = HEADER_TRACKING | HEADER_BUTTON | HEADER_RESIZE | FRAME_RAISED | FRAME_THICK;
constexpr FXint HEIGHT = 20;
constexpr FXint PADDING = 2;

} // namespace

TableHeader::TableHeader(Table* table, FXSelector identifier)
    : FXHeader(table, table, identifier, STYLE | LAYOUT_FIX_HEIGHT, 0, 0, 0, HEIGHT, PADDING, PADDING,
               PADDING, PADDING),
      m_table(table) {}

long TableHeader::onMotion(FXObject* sender, FXSelector selector, void* data) {
  const FXEvent* event = static_cast<FXEvent*>(data);
  const Column* column = m_table->columnAt(getItemAt(event->win_x));
  setHelpText(column ? toFox(column->toolTip()) : FXString());
  return FXHeader::onMotion(sender, selector, data);
}

} // namespace Tallymoor
