#include "views/PortfolioTable.h"
#include "views/TotalsBar.h"

namespace Tallymoor {

FXIMPLEMENT_ABSTRACT(PortfolioTable, Table, nullptr, 0)

PortfolioTable::PortfolioTable(const String& name, SharePortfolioUser& portfolio, PortfolioCommands& commands,
                               FXComposite* parent, Watcher* watcher, std::int32_t rowCompareType)
    : Table(name, parent, true, watcher, rowCompareType), m_portfolio(&portfolio), m_commands(&commands) {}

void PortfolioTable::moveContents(FXint x, FXint y) {
  Table::moveContents(x, y);
  if (m_totalsBar)
    m_totalsBar->followTable();
}

void PortfolioTable::layout() {
  Table::layout();
  if (m_totalsBar)
    m_totalsBar->followTable();
}

} // namespace Tallymoor
