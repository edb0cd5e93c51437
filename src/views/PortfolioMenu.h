#pragma once
#include <fx.h>

namespace Tallymoor {

class SharePortfolioTreeItem;

/// The popup of a portfolio's node.
namespace PortfolioMenu {

struct Command {
  FXuint id;               ///< of the node
  const char16_t* handler; ///< the name that a failure is reported with
  void (*run)(SharePortfolioTreeItem& node);
};

/// Null when the popup has no such command.
const Command* find(FXuint id);

/// Opens it at that place of the screen; what is chosen is sent to the node.
void open(SharePortfolioTreeItem& node, FXint x, FXint y);

} // namespace PortfolioMenu

} // namespace Tallymoor
