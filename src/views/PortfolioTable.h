#pragma once
#include "widgets/Table.h"

namespace Tallymoor {

class PortfolioCommands;
class SharePortfolioUser;
class TotalsBar;

/// A table of what one portfolio's records hold, with a bar of totals that goes along with its columns.
///
/// Rows point into the records: after a change of these, call recordsChanged at once and updateTable when it
/// is safe.
class PortfolioTable : public Table {
  FXDECLARE_ABSTRACT(PortfolioTable)
public:
  /// As Table, filling its parent. The portfolio and the commands are not owned and outlive the table.
  PortfolioTable(const String& name, SharePortfolioUser& portfolio, PortfolioCommands& commands,
                 FXComposite* parent, Watcher* watcher, std::int32_t rowCompareType);

  SharePortfolioUser& portfolio() const { return *m_portfolio; }

  /// The bar that goes along with the columns; not owned, null for none.
  void setTotalsBar(TotalsBar* bar) { m_totalsBar = bar; }
  void moveContents(FXint x, FXint y) override;
  void layout() override;

protected:
  PortfolioCommands& commands() const { return *m_commands; }

private:
  SharePortfolioUser* m_portfolio = nullptr;
  PortfolioCommands* m_commands = nullptr;
  TotalsBar* m_totalsBar = nullptr;
};

} // namespace Tallymoor
