#pragma once
#include "foundation/String.h"
#include <fx.h>
#include <vector>

namespace Tallymoor {

class SummaryRow;

/// The summary above a node's views: rows of figures, each a label with a sunken value behind it, in two
/// columns whose edges line up over all rows. Behind the figures of a row a button and a remark may stand. In
/// a narrow page these two go below the figures; then the room between the columns goes first, then the end
/// of long captions; the values stay in view as long as they can. Like any widget it belongs to its page.
class SummaryFrame : public FXVerticalFrame {
  FXDECLARE(SummaryFrame)
public:
  /// The summary is as wide as the page, less the page's padding.
  explicit SummaryFrame(FXPacker* page);

  /// Takes all rows and measures away.
  void clear();
  void startRow();
  void addSeparator();
  /// The next figure of the row, at most two; gives its value, empty as yet. The caption shows as it stands.
  FXLabel* addFigure(const String& caption);
  /// A button behind the row's figures. Its command may rebuild the summary: that waits until the button has
  /// done its part.
  FXButton* addButton(const String& caption, FXObject* target, FXSelector command);
  /// A text behind the row's button, empty as yet.
  FXLabel* addRemark();
  /// Width of the captions of the first or second column (0 or 1) where there is room: in pixels beyond the
  /// text's width.
  void reserveCaption(int column, const String& text, int extra);
  /// Width of all values where there is room.
  void reserveValue(const String& text);

  static void setValue(FXLabel* value, const String& text);
  /// Lines the columns up, as wide as the texts need, and brings new rows onto the display: after the values
  /// have been set.
  void align();
  FXint getDefaultHeight() override;
  void layout() override;

protected:
  SummaryFrame() = default;

private:
  struct Figure {
    int column;
    FXLabel* caption;
    FXLabel* value;
  };

  /// Widths of the captions of the two columns, of all values, and what is left free between the columns.
  struct Widths {
    FXint captions[2];
    FXint value;
    FXint gap;
  };

  FXint textWidth(const FXString& text) const;
  FXint valueWidth(const FXString& text) const;
  FXint leastValueWidth() const;
  FXint widthForRows() const;
  FXint wantedWidth() const;
  void placeTails();
  bool hasSecondColumn() const;
  Widths fittingWidths() const;
  void place(const Figure& figure, const Widths& widths) const;

  SummaryRow* m_row = nullptr;
  std::vector<SummaryRow*> m_rows;
  int m_nextColumn = 0;
  std::vector<Figure> m_figures;
  FXint m_captionWidths[2] = {0, 0};      ///< as wide as they like to be
  FXint m_leastCaptionWidths[2] = {0, 0}; ///< as wide as their texts
  FXint m_valueWidth = 0;                 ///< as wide as they like to be
};

} // namespace Tallymoor
