#pragma once
#include "foundation/Date.h"
#include "foundation/String.h"
#include "widgets/ChartModel.h"
#include <array>
#include <fx.h>

namespace Tallymoor {

class ChartView;

/// How far back a chart goes from the view date.
enum class ChartRange { THREE_MONTHS, ONE_YEAR, THREE_YEARS, ALL };

/// The first day of a range that ends on this day; the first of the calendar for all.
Date startOf(ChartRange range, const Date& end);

/// A chart below a row of buttons for its range. The choice is kept in the settings and is the same for all
/// charts of its kind.
class ChartFrame : public FXVerticalFrame {
  FXDECLARE_ABSTRACT(ChartFrame)
public:
  enum { ID_RANGE = FXVerticalFrame::ID_LAST, ID_LAST_RANGE = ID_RANGE + 3, ID_LAST };

  ChartView& chart() const { return *m_chart; }
  ChartRange range() const;

  /// Prices or records have changed: the chart is drawn again from them when it is next seen.
  void refresh();

  long onRange(FXObject*, FXSelector, void*);
  long onUpdateRange(FXObject*, FXSelector, void*);

protected:
  /// The key of the settings that keeps the range.
  ChartFrame(FXComposite* parent, const String& settingsKey);
  ChartFrame() = default;

  virtual ChartModel makeModel(const Date& from, const Date& to) = 0;
  /// The user has chosen another range.
  virtual void rangeChosen() {}

private:
  void buildRangeButtons();
  void showRange();
  void showState(std::size_t button);

  String m_settingsKey;
  std::array<FXButton*, 4> m_buttons{};
  ChartView* m_chart = nullptr;
  ChartRange m_shown = ChartRange::ALL; ///< by the buttons
};

} // namespace Tallymoor
