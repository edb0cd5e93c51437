#pragma once
#include "widgets/ChartFont.h"
#include "widgets/ChartLayout.h"
#include "widgets/ChartModel.h"
#include <functional>
#include <fx.h>
#include <memory>
#include <optional>

namespace Tallymoor {

/// A chart in a window. A crosshair follows the pointer, or with the focus the arrow keys, and a box beside
/// it tells the day and its values. A right click or the menu key offers to save the chart. Drawn into a
/// picture once, which is only copied while the crosshair moves.
///
/// GUI thread, under the big mutex.
class ChartView : public FXFrame {
  FXDECLARE(ChartView)
public:
  enum { ID_SAVE = FXFrame::ID_LAST, ID_LAST };

  /// Gives the chart's model; an Exception from it is shown in the chart's place.
  using Source = std::function<ChartModel()>;

  explicit ChartView(FXComposite* parent, FXuint options = FRAME_LINE | LAYOUT_FILL_X | LAYOUT_FILL_Y);
  ~ChartView() override;

  /// Shows this model from now on.
  void setModel(ChartModel model);
  /// From now on the model is asked for when it is to be drawn, and again after each call of modelChanged;
  /// but never while a handler runs, in which the records may be half changed.
  void setSource(Source source);
  void modelChanged();
  /// What is shown; asks the source when that is due.
  const ChartModel& model();

  /// The chart as it is laid out in the window, within its frame.
  const ChartLayout& chart();
  /// What the box beside the crosshair tells; nothing while there is no crosshair.
  std::optional<ChartReading> reading();

  bool canFocus() const override;
  FXint getDefaultWidth() override;
  FXint getDefaultHeight() override;

  long onPaint(FXObject*, FXSelector, void*);
  long onMotion(FXObject*, FXSelector, void*);
  long onLeave(FXObject*, FXSelector, void*);
  long onPress(FXObject*, FXSelector, void*);
  long onKeyPress(FXObject*, FXSelector, void*);
  long onFocusIn(FXObject*, FXSelector, void*);
  long onFocusOut(FXObject*, FXSelector, void*);
  long onRightClick(FXObject*, FXSelector, void*);
  long onSave(FXObject*, FXSelector, void*);

protected:
  ChartView() = default;

private:
  void askSource();
  void showDay(const std::optional<Date>& day);
  void moveCrosshair(int steps);
  FXint innerWidth() const;
  FXint innerHeight() const;
  void drawPicture();
  void openMenu(FXint screenX, FXint screenY);
  long openMenuByKey();

  Source m_source;
  bool m_stale = false; ///< the source is to be asked
  ChartModel m_model;
  std::unique_ptr<ChartFont> m_font;    ///< of m_chart
  std::unique_ptr<ChartLayout> m_chart; ///< null until it is needed for this model and size
  std::unique_ptr<FXImage> m_picture;   ///< the chart without crosshair; null until drawn for m_chart
  std::unique_ptr<FXImage> m_frame;     ///< the picture with the crosshair, as large
  std::optional<Date> m_day;            ///< where the crosshair stands
};

} // namespace Tallymoor
