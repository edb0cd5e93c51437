#pragma once
#include "analysis/Performance.h"
#include "views/PriceWatch.h"
#include "widgets/Dialog.h"
#include <array>
#include <optional>

namespace Tallymoor {

class PricesTable;

/// What is known of the prices of all stocks that are held or watched, and what can be done where one is
/// missing, old or doubtful. What its buttons do is done at once.
class PricesDialog : public Dialog {
  FXDECLARE(PricesDialog)
public:
  enum {
    ID_TYPE_PRICE = Dialog::ID_LAST,
    ID_ACCEPT_DOUBTFUL,
    ID_TRUST,
    ID_REFUSE,
    ID_REFRESH,
    ID_HISTORY,
    ID_SOURCES,
    ID_CODE_SOURCE,
    ID_IMPORT,
    ID_TRY_AGAIN,
    ID_LAST
  };

  /// The portfolios are those whose trades a chart shows; not owned.
  explicit PricesDialog(FXWindow* owner, Portfolios portfolios = {});
  ~PricesDialog() override;

  /// Prices go on coming while it is open.
  FXuint execute(FXuint placement = PLACEMENT_OWNER) override;

  PricesTable* table() const { return m_table; }

  long onTypePrice(FXObject*, FXSelector, void*);
  long onDecide(FXObject*, FXSelector selector, void*);
  long onRefresh(FXObject*, FXSelector, void*);
  long onHistory(FXObject*, FXSelector, void*);
  long onSources(FXObject*, FXSelector, void*);
  /// What is done for the chosen stock alone.
  long onStock(FXObject*, FXSelector selector, void*);

protected:
  PricesDialog() {}

private:
  void addActions();
  void showAll();
  void showChoice();
  void showText(const String& doubt);
  static void tryAgain(const String& code);
  static void decide(FXSelector decision, const String& code);

  Portfolios m_portfolios;
  PricesTable* m_table = nullptr;
  FXLabel* m_summary = nullptr;
  FXLabel* m_doubt = nullptr;
  std::array<FXButton*, 5> m_ofStock{}; ///< those that work on the chosen stock
  std::array<FXButton*, 3> m_decisions{};
  std::optional<PriceWatch> m_prices;
};

} // namespace Tallymoor
