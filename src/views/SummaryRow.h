#pragma once
#include <fx.h>
#include <vector>

namespace Tallymoor {

/// One row of a summary: figures side by side, where the summary has put them, and behind them a tail of
/// other widgets. Where the tail doesn't fit behind the figures it stands below them, in as many lines as it
/// needs.
class SummaryRow : public FXHorizontalFrame {
  FXDECLARE(SummaryRow)
public:
  explicit SummaryRow(FXComposite* parent);

  /// The widget, already a child of the row, goes behind what is there, with this much room before it. The
  /// last one of a tail is cut where even a line of its own is too short.
  void addTail(FXWindow* widget, FXint room);
  /// What the tail needs behind the figures.
  FXint tailWidth() const;
  /// Where the figures end, and how wide the row may be: a tail that does not fit goes below.
  void placeTail(FXint figuresEnd, FXint width);

  FXint getDefaultWidth() override;
  FXint getDefaultHeight() override;
  void layout() override;

protected:
  SummaryRow() = default;

private:
  struct Tail {
    FXWindow* widget;
    FXint room;
  };

  /// Where a widget of the tail stands when the tail is below the figures: in which of its lines, and how far
  /// to the right.
  struct TailPlace {
    FXint line;
    FXint x;
  };

  bool isTail(const FXWindow* widget) const;
  FXint figuresHeight() const;
  FXint tailHeight() const;
  std::vector<TailPlace> tailPlaces(FXint width) const;
  FXint heightOfTailBelow() const;
  void layoutFigures();
  void layoutTail();

  std::vector<Tail> m_tail;
  FXint m_figuresEnd = 0;
  FXint m_widthForTail = 0;
  bool m_tailBelow = false;
};

} // namespace Tallymoor
