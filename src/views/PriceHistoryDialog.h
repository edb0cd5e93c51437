#pragma once
#include "views/PriceWatch.h"
#include "widgets/Dialog.h"
#include <optional>

namespace Tallymoor {

class PriceChart;
class PriceHistoryTable;

/// The stored prices of a stock as a table beside their chart. What is corrected counts at once and is
/// written at once.
class PriceHistoryDialog : public Dialog {
  FXDECLARE(PriceHistoryDialog)
public:
  enum { ID_ADD_DAY = Dialog::ID_LAST, ID_DELETE_TYPED, ID_LAST };

  PriceHistoryDialog(FXWindow* owner, const String& code);
  ~PriceHistoryDialog() override;

  PriceHistoryTable* table() const { return m_table; }

  long onAddDay(FXObject*, FXSelector, void*);
  long onDeleteTyped(FXObject*, FXSelector, void*);

protected:
  PriceHistoryDialog() {}

private:
  void addTableAndChart();
  void addActions();
  void typed(const Date& day, double close);
  void showAll();
  void showChoice();

  String m_code;
  PriceHistoryTable* m_table = nullptr;
  PriceChart* m_chart = nullptr;
  FXButton* m_deleteTyped = nullptr;
  std::optional<PriceWatch> m_prices;
};

} // namespace Tallymoor
