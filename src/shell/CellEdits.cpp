#include "shell/CellEdits.h"
#include "widgets/Table.h"

namespace Tallymoor {

void finishEdits(FX::FXWindow& window) {
  if (auto* table = dynamic_cast<Table*>(&window))
    table->acceptInput(TRUE);
  for (FX::FXWindow* child = window.getFirst(); child; child = child->getNext())
    finishEdits(*child);
}

} // namespace Tallymoor
