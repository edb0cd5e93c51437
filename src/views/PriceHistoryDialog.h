#pragma once
#include "analysis/Performance.h"
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

  /// The chart shows the trades of the portfolios, and prices in shares of today by their splits.
  PriceHistoryDialog(FXWindow* owner, const String& code, const Portfolios& portfolios);
  ~PriceHistoryDialog() override;

  /// Prices go on coming while it is open.
  FXuint execute(FXuint placement = PLACEMENT_OWNER) override;

  PriceHistoryTable* table() const { return m_table; }

  long onAddDay(FXObject*, FXSelector, void*);
  long onDeleteTyped(FXObject*, FXSelector, void*);

protected:
  PriceHistoryDialog() {}

private:
  void addTableAndChart(const Portfolios& portfolios);
  void addActions();
  void typed(const Date& day, double close);
  void keepTyped(const Date& day);
  void showAll();
  void showChoice();

  String m_code;
  PriceHistoryTable* m_table = nullptr;
  PriceChart* m_chart = nullptr;
  FXButton* m_deleteTyped = nullptr;
  std::optional<PriceWatch> m_prices;
};

} // namespace Tallymoor
