#include "views/SummaryFrame.h"
#include "widgets/ToolkitText.h"
#include <algorithm>

namespace Tallymoor {

FXIMPLEMENT(SummaryFrame, FXVerticalFrame, nullptr, 0)

namespace {

constexpr FXint CAPTION_PADDING = 2;
constexpr FXint CAPTION_GAP = 10; ///< at least, before the value
constexpr FXint VALUE_PADDING = 8;
constexpr FXint VALUE_PADDING_VERTICAL = 3;
constexpr FXint COLUMN_GAP = 50; ///< between the first value and the second caption
constexpr FXint LEAST_COLUMN_GAP = 10;
constexpr FXint SHORTEST_CAPTION = 60; ///< a clipped one still shows how it begins

/// Takes from the width what is too much, down to the least; gives what is then still too much.
FXint squeeze(FXint& width, FXint least, FXint tooMuch) {
  const FXint taken = std::clamp(tooMuch, 0, std::max(0, width - least));
  width -= taken;
  return tooMuch - taken;
}

/// Says nothing where nothing changes: the toolkit would lay out again and again.
void moveTo(FXLabel& label, FXint x, FXint width) {
  if (label.getX() == x && label.getWidth() == width)
    return;
  label.setX(x);
  label.setWidth(width);
  label.getParent()->recalc();
}

} // namespace

SummaryFrame::SummaryFrame(FXComposite* page)
    : FXVerticalFrame(page, LAYOUT_FILL_X | FRAME_SUNKEN, 0, 0, 0, 0, 4, 4, 4, 4, 4, 4) {}

void SummaryFrame::clear() {
  while (FXWindow* child = getFirst())
    delete child;
  m_row = nullptr;
  m_figures.clear();
  m_captionWidths[0] = m_captionWidths[1] = m_valueWidth = 0;
  m_leastCaptionWidths[0] = m_leastCaptionWidths[1] = 0;
}

void SummaryFrame::startRow() {
  m_row = new FXHorizontalFrame(this, LAYOUT_FILL_X, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0);
  m_nextColumn = 0;
}

void SummaryFrame::addSeparator() {
  new FXSeparator(this, SEPARATOR_GROOVE | LAYOUT_FILL_X);
}

FXLabel* SummaryFrame::addFigure(const String& caption) {
  Figure figure;
  figure.column = m_nextColumn++;
  figure.caption = new FXLabel(m_row, labelText(caption), nullptr,
                               JUSTIFY_LEFT | LAYOUT_FIX_X | LAYOUT_FIX_WIDTH | LAYOUT_CENTER_Y, 0, 0, 0, 0,
                               CAPTION_PADDING, CAPTION_PADDING, CAPTION_PADDING, CAPTION_PADDING);
  figure.value =
      new FXLabel(m_row, FXString(), nullptr,
                  FRAME_SUNKEN | JUSTIFY_RIGHT | LAYOUT_FIX_X | LAYOUT_FIX_WIDTH | LAYOUT_CENTER_Y, 0, 0, 0,
                  0, VALUE_PADDING, VALUE_PADDING, VALUE_PADDING_VERTICAL, VALUE_PADDING_VERTICAL);
  m_figures.push_back(figure);
  reserveCaption(figure.column, caption, CAPTION_GAP);
  FXint& least = m_leastCaptionWidths[figure.column];
  least = std::max(least, figure.caption->getDefaultWidth());
  return figure.value;
}

FXint SummaryFrame::textWidth(const FXString& text) const {
  return getApp()->getNormalFont()->getTextWidth(text);
}

void SummaryFrame::reserveCaption(int column, const String& text, int extra) {
  FXint& width = m_captionWidths[column];
  width = std::max(width, textWidth(toFox(text)) + extra + 2 * CAPTION_PADDING);
}

void SummaryFrame::reserveValue(const String& text) {
  m_valueWidth = std::max(m_valueWidth, valueWidth(toFox(text)));
}

FXint SummaryFrame::valueWidth(const FXString& text) const {
  return textWidth(text) + 2 * VALUE_PADDING + 4;
}

FXint SummaryFrame::leastValueWidth() const {
  FXint width = 0;
  for (const Figure& figure : m_figures)
    width = std::max(width, valueWidth(figure.value->getText()));
  return width;
}

void SummaryFrame::setValue(FXLabel* value, const String& text) {
  if (value)
    value->setText(toFox(text));
}

void SummaryFrame::align() {
  for (const Figure& figure : m_figures)
    reserveValue(fromFox(figure.value->getText()));
  if (FXWindow* page = getParent(); page->id() != 0)
    create();
  layout();
  recalc();
}

void SummaryFrame::layout() {
  const Widths widths = fittingWidths();
  for (const Figure& figure : m_figures)
    place(figure, widths);
  FXVerticalFrame::layout();
}

bool SummaryFrame::hasSecondColumn() const {
  return std::any_of(m_figures.begin(), m_figures.end(),
                     [](const Figure& figure) { return figure.column == 1; });
}

SummaryFrame::Widths SummaryFrame::fittingWidths() const {
  Widths widths{{m_captionWidths[0], m_captionWidths[1]}, m_valueWidth, COLUMN_GAP};
  const FXint columns = hasSecondColumn() ? 2 : 1;
  FXint tooMuch =
      widths.captions[0] + widths.value - (getWidth() - getPadLeft() - getPadRight() - 2 * border);
  if (columns == 2)
    tooMuch += widths.gap + widths.captions[1] + widths.value;
  tooMuch = squeeze(widths.gap, LEAST_COLUMN_GAP, tooMuch);
  for (FXint column = 0; column < columns; ++column)
    tooMuch = squeeze(widths.captions[column], m_leastCaptionWidths[column], tooMuch);
  // All values are of one width, so that each pixel taken counts once a column.
  tooMuch = columns * squeeze(widths.value, leastValueWidth(), (tooMuch + columns - 1) / columns);
  for (FXint column = 0; column < columns; ++column)
    tooMuch = squeeze(widths.captions[column], SHORTEST_CAPTION, tooMuch);
  return widths;
}

void SummaryFrame::place(const Figure& figure, const Widths& widths) const {
  const FXint x = figure.column == 0 ? 0 : widths.captions[0] + widths.value + widths.gap;
  const FXint caption = widths.captions[figure.column];
  moveTo(*figure.caption, x, caption);
  moveTo(*figure.value, x + caption, widths.value);
  // What is cut off can still be read.
  const bool cut = figure.caption->getDefaultWidth() > caption;
  figure.caption->setTipText(cut ? figure.caption->getText() : FXString());
}

} // namespace Tallymoor
