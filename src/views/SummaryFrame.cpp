#include "views/SummaryFrame.h"
#include "views/SummaryRow.h"
#include "widgets/HandlerScope.h"
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
constexpr FXint BUTTON_GAP = 20;
constexpr FXint REMARK_GAP = 40;
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

/// What its command asks for may take the button itself away, so it waits until the toolkit's code is done.
class SummaryButton : public FXButton {
public:
  using FXButton::FXButton;
  long handle(FXObject* sender, FXSelector selector, void* data) override {
    const HandlerScope scope;
    return FXButton::handle(sender, selector, data);
  }
};

} // namespace

SummaryFrame::SummaryFrame(FXPacker* page)
    : FXVerticalFrame(page, LAYOUT_FILL_X | FRAME_SUNKEN, 0, 0, 0, 0, 4, 4, 4, 4, 4, 4) {}

void SummaryFrame::clear() {
  while (FXWindow* child = getFirst())
    delete child;
  m_row = nullptr;
  m_rows.clear();
  m_figures.clear();
  m_captionWidths[0] = m_captionWidths[1] = m_valueWidth = 0;
  m_leastCaptionWidths[0] = m_leastCaptionWidths[1] = 0;
}

void SummaryFrame::startRow() {
  m_row = new SummaryRow(this);
  m_rows.push_back(m_row);
  m_nextColumn = 0;
}

void SummaryFrame::addSeparator() {
  new FXSeparator(this, SEPARATOR_GROOVE | LAYOUT_FILL_X);
}

FXLabel* SummaryFrame::addFigure(const String& caption) {
  Figure figure{m_nextColumn++, nullptr, nullptr};
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

FXButton* SummaryFrame::addButton(const String& caption, FXObject* target, FXSelector command) {
  auto* button = new SummaryButton(m_row, labelText(caption), nullptr, target, command);
  m_row->addTail(button, BUTTON_GAP);
  return button;
}

FXLabel* SummaryFrame::addRemark() {
  auto* remark = new FXLabel(m_row, FXString(), nullptr, JUSTIFY_LEFT);
  m_row->addTail(remark, REMARK_GAP);
  return remark;
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

/// Asked by the page before it gives the summary its size: with the tails below, the summary is higher.
FXint SummaryFrame::getDefaultHeight() {
  placeTails();
  return FXVerticalFrame::getDefaultHeight();
}

void SummaryFrame::layout() {
  placeTails();
  const Widths widths = fittingWidths();
  for (const Figure& figure : m_figures)
    place(figure, widths);
  FXVerticalFrame::layout();
}

FXint SummaryFrame::widthForRows() const {
  const auto* page = static_cast<const FXPacker*>(getParent());
  return page->getWidth() - page->getPadLeft() - page->getPadRight() - 2 * page->getBorderWidth() -
         getPadLeft() - getPadRight() - 2 * border;
}

FXint SummaryFrame::wantedWidth() const {
  const FXint first = m_captionWidths[0] + m_valueWidth;
  return hasSecondColumn() ? first + COLUMN_GAP + m_captionWidths[1] + m_valueWidth : first;
}

void SummaryFrame::placeTails() {
  for (SummaryRow* row : m_rows)
    row->placeTail(wantedWidth(), widthForRows());
}

bool SummaryFrame::hasSecondColumn() const {
  return std::any_of(m_figures.begin(), m_figures.end(),
                     [](const Figure& figure) { return figure.column == 1; });
}

SummaryFrame::Widths SummaryFrame::fittingWidths() const {
  Widths widths{{m_captionWidths[0], m_captionWidths[1]}, m_valueWidth, COLUMN_GAP};
  const FXint columns = hasSecondColumn() ? 2 : 1;
  FXint tooMuch = wantedWidth() - widthForRows();
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
