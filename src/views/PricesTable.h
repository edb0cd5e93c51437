#pragma once
#include "market/PriceStatus.h"
#include "market/SharePriceCache.h"
#include "views/ChoiceTable.h"
#include <list>
#include <optional>

namespace Tallymoor {

/// The codes that are held or watched, a row each: the last known price with its day, and what is wrong with
/// it.
class PricesTable : public ChoiceTable {
  FXDECLARE_ABSTRACT(PricesTable)
public:
  /// What a row shows, as it was when the table was filled.
  struct KnownPrice {
    PriceStatus::OfCode status;
    std::optional<KnownClose> last; ///< up to today, or up to the view date
    bool isDoubtful;
  };

  explicit PricesTable(FXComposite* parent);

  /// "38 of 40 stocks have a price. 1 price is doubtful."
  String summary() const;

protected:
  void fillTable() override;

private:
  std::list<KnownPrice> m_prices;
};

} // namespace Tallymoor
