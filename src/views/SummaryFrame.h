#pragma once
#include "foundation/String.h"
#include <fx.h>
#include <vector>

namespace Tallymoor {

/// The summary above a node's views: rows of figures, each a label with a sunken value behind it, in two
/// columns whose edges line up over all rows. Like any widget it belongs to its page.
class SummaryFrame : public FXVerticalFrame {
  FXDECLARE(SummaryFrame)
public:
  explicit SummaryFrame(FXComposite* page);

  /// Takes all rows and measures away.
  void clear();
  void startRow();
  void addSeparator();
  /// The next figure of the row, at most two; gives its value, empty as yet. The caption shows as it stands.
  FXLabel* addFigure(const String& caption);
  /// Least width of the captions of the first or second column (0 or 1), in pixels beyond the text's width.
  void reserveCaption(int column, const String& text, int extra);
  /// Least width of all values.
  void reserveValue(const String& text);

  static void setValue(FXLabel* value, const String& text);
  /// Lines the columns up, as wide as the texts need, and brings new rows onto the display: after the values
  /// have been set.
  void align();

protected:
  SummaryFrame() = default;

private:
  struct Figure {
    int column;
    FXLabel* caption;
    FXLabel* value;
  };

  FXint textWidth(const FXString& text) const;

  FXHorizontalFrame* m_row = nullptr;
  int m_nextColumn = 0;
  std::vector<Figure> m_figures;
  FXint m_captionWidths[2] = {0, 0};
  FXint m_valueWidth = 0;
};

} // namespace Tallymoor
