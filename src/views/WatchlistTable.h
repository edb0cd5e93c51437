#pragma once
#include "analysis/Performance.h"
#include "market/PriceUpdater.h"
#include "views/HeldShareRow.h"
#include "views/WatchedCodes.h"
#include "widgets/Table.h"
#include <functional>
#include <list>
#include <vector>

namespace Tallymoor {

class WatchlistCommands;

/// The stocks of a watchlist, a row each by its code. Limits can be typed into it. Follows the prices by
/// itself.
class WatchlistTable : public Table, public PriceUpdater::PricesObserver {
  FXDECLARE_ABSTRACT(WatchlistTable)
public:
  enum { ID_REMOVE = Table::ID_LAST, ID_BUY, ID_LAST };

  /// What a list stands for.
  enum class Kind {
    USERS_LIST,  ///< kept under its name in the settings; its rows have commands
    HELD_SHARES, ///< of the portfolio of that name
  };

  /// Shows the codes. The name is that of the list; the commands are not owned and outlive the table.
  WatchlistTable(const String& name, Kind kind, const std::vector<String>& codes, WatchlistCommands& commands,
                 FXComposite* parent);
  ~WatchlistTable() override;

  const std::vector<String>& codes() const { return m_codes; }
  /// Others from now on, without those that are there twice.
  void setCodes(const std::vector<String>& codes);
  /// Of the portfolio whose shares it lists, or of all of them.
  std::optional<double> capital() const;
  /// All that are open, for the splits that they record.
  Portfolios portfolios() const;

  /// Code of the row that the user has chosen, else of the first one; empty without rows.
  String chosenCode() const;
  /// Called when the user chooses a row or types limits, and when other rows are shown.
  void setChoiceWatcher(std::function<void()> watcher) { m_choiceWatcher = std::move(watcher); }

  void currentPriceUpdated(const String& code, double price) override;
  void pricesUpdateFinished() override;
  void historicalPriceChanged(const String& code, const Date& date, double close) override;
  void historyArrived(const String& code) override;

  long onRemoveRow(FXObject*, FXSelector, void*);
  long onBuy(FXObject*, FXSelector, void*);
  long onChanged(FXObject*, FXSelector, void*);

protected:
  void fillTable() override;
  void rowPopup(const TableClick& click) override;
  /// What can be changed of a stock are its limits.
  void editRow(Row& row) override;
  void cellEdited(Column& column, Row& row) override;

private:
  bool editable() const { return m_kind == Kind::USERS_LIST; }
  String emptyText() const;
  void removeCode(const String& code);
  void choiceChanged() const;

  Kind m_kind;
  WatchlistCommands* m_commands = nullptr;
  std::vector<String> m_codes;
  std::list<HeldShareRow> m_rowData;
  WatchedCodes m_watchedCodes;
  std::function<void()> m_choiceWatcher;
};

} // namespace Tallymoor
