#pragma once
#include <fx.h>
#include <vector>

namespace Tallymoor {

/// One row of a summary: figures side by side, where the summary has put them, and behind them a tail of
/// other widgets. Where the tail doesn't fit behind the figures it stands on a line of its own below them.
class SummaryRow : public FXHorizontalFrame {
  FXDECLARE(SummaryRow)
public:
  explicit SummaryRow(FXComposite* parent);

  /// The widget, already a child of the row, goes behind what is there, with this much room before it. The
  /// last one of a tail is cut where even its own line is too short.
  void addTail(FXWindow* widget, FXint room);
  /// What the tail needs behind the figures.
  FXint tailWidth() const;
  /// Where the figures end, and whether the tail stands below them.
  void placeTail(FXint figuresEnd, bool below);

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

  bool isTail(const FXWindow* widget) const;
  FXint figuresHeight() const;
  FXint tailHeight() const;
  void layoutFigures();
  void layoutTail();

  std::vector<Tail> m_tail;
  FXint m_figuresEnd = 0;
  bool m_tailBelow = false;
};

} // namespace Tallymoor
