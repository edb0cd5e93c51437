#pragma once
#include "session/ChangeHistory.h"
#include "widgets/Dialog.h"
#include <cstdint>
#include <optional>
#include <vector>

namespace Tallymoor {

class ChangeTable;
class FormTextField;
class HistoryTable;

/// The changes of the records with what each did. The user may want to go back to one, which the caller does
/// when the dialog has closed.
class HistoryDialog : public Dialog {
  FXDECLARE(HistoryDialog)
public:
  enum { ID_FILTER = Dialog::ID_LAST, ID_GO_BACK, ID_LAST };

  HistoryDialog(FXWindow* owner, ChangeHistory history);

  HistoryTable* table() const { return m_table; }
  ChangeTable* details() const { return m_details; }
  /// The number of the change after which the state is wanted back, 0 for the oldest state; nothing if none
  /// is.
  std::optional<std::uint64_t> wantedBack() const { return m_wantedBack; }

  long onFilter(FXObject*, FXSelector, void*);
  long onGoBack(FXObject*, FXSelector, void*);
  long onKeyPress(FXObject*, FXSelector, void*);

protected:
  HistoryDialog() {}

private:
  void addFilter();
  void addTables();
  void showChoice();
  std::vector<struct ChangeDetail> detailsOfChosen();

  std::optional<ChangeHistory> m_history;
  FormTextField* m_text = nullptr;
  FXListBox* m_portfolios = nullptr;
  std::vector<String> m_names; ///< of the portfolios in the list
  HistoryTable* m_table = nullptr;
  FXLabel* m_caption = nullptr;
  ChangeTable* m_details = nullptr;
  FXButton* m_goBack = nullptr;
  std::optional<std::uint64_t> m_shown; ///< whose details are shown
  std::optional<std::uint64_t> m_wantedBack;
};

} // namespace Tallymoor
