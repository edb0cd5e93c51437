#pragma once
#include "foundation/Date.h"
#include "market/CachedShare.h"
#include "widgets/Table.h"
#include <functional>
#include <list>
#include <optional>

namespace Tallymoor {

/// The stored prices of one stock up to the view date, a row a day, the newest first. Closes, highs and
/// lows can be typed over; days that were filled in for want of trade are left out. Whole rows are selected.
class PriceHistoryTable : public Table {
  FXDECLARE_ABSTRACT(PriceHistoryTable)
public:
  PriceHistoryTable(FXComposite* parent, const String& code);

  struct StoredDay {
    Date day;
    ShareValue value;
  };

  /// Called with what the user has typed over a close, or over a high or low, when it has been checked.
  void setTyped(std::function<void(const Date& day, double close)> close,
                std::function<void(const Date& day, double high, double low)> range) {
    m_closeTyped = std::move(close);
    m_rangeTyped = std::move(range);
  }
  /// Called when another row is chosen, or the rows were filled again.
  void setChoiceWatcher(std::function<void()> watcher) { m_choiceChanged = std::move(watcher); }

  /// The chosen row, else the first one; null without rows. Valid until the rows are filled again.
  const StoredDay* chosen() const;
  void choose(const Date& day);

  long onChanged(FXObject*, FXSelector, void*);

protected:
  void fillTable() override;
  void cellEdited(Column& column, Row& row) override;

private:
  void rangeEdited(const Column& column, StoredDay stored, const String& text);
  void selectCurrentRow();

  String m_code;
  std::list<StoredDay> m_days;
  std::function<void(const Date& day, double close)> m_closeTyped;
  std::function<void(const Date& day, double high, double low)> m_rangeTyped;
  std::function<void()> m_choiceChanged;
};

} // namespace Tallymoor
