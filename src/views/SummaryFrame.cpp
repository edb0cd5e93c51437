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

} // namespace

SummaryFrame::SummaryFrame(FXComposite* page)
    : FXVerticalFrame(page, LAYOUT_FILL_X | FRAME_SUNKEN, 0, 0, 0, 0, 4, 4, 4, 4, 4, 4) {}

void SummaryFrame::clear() {
  while (FXWindow* child = getFirst())
    delete child;
  m_row = nullptr;
  m_figures.clear();
  m_captionWidths[0] = m_captionWidths[1] = m_valueWidth = 0;
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
  m_valueWidth = std::max(m_valueWidth, textWidth(toFox(text)) + 2 * VALUE_PADDING + 4);
}

void SummaryFrame::setValue(FXLabel* value, const String& text) {
  if (value)
    value->setText(toFox(text));
}

void SummaryFrame::align() {
  for (const Figure& figure : m_figures)
    reserveValue(fromFox(figure.value->getText()));
  const FXint secondColumn = m_captionWidths[0] + m_valueWidth + COLUMN_GAP;
  for (const Figure& figure : m_figures) {
    const FXint x = figure.column == 0 ? 0 : secondColumn;
    figure.caption->setX(x);
    figure.caption->setWidth(m_captionWidths[figure.column]);
    figure.value->setX(x + m_captionWidths[figure.column]);
    figure.value->setWidth(m_valueWidth);
    figure.caption->getParent()->recalc();
  }
  if (FXWindow* page = getParent(); page->id() != 0)
    create();
  recalc();
}

} // namespace Tallymoor
