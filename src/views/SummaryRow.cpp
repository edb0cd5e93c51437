#include "views/SummaryRow.h"
#include <algorithm>

namespace Tallymoor {

FXIMPLEMENT(SummaryRow, FXHorizontalFrame, nullptr, 0)

namespace {

constexpr FXint LINE_GAP = 4;         ///< between the figures and a tail below them
constexpr FXint ROOM_BELOW_MOST = 20; ///< between the widgets of a tail below them

FXint centred(FXint height, FXint lineHeight) {
  return std::max(0, (lineHeight - height) / 2);
}

} // namespace

SummaryRow::SummaryRow(FXComposite* parent)
    : FXHorizontalFrame(parent, LAYOUT_FILL_X, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0) {}

void SummaryRow::addTail(FXWindow* widget, FXint room) {
  m_tail.push_back({widget, room});
}

FXint SummaryRow::tailWidth() const {
  FXint width = 0;
  for (const Tail& tail : m_tail)
    width += tail.room + tail.widget->getDefaultWidth();
  return width;
}

void SummaryRow::placeTail(FXint figuresEnd, bool below) {
  m_figuresEnd = figuresEnd;
  m_tailBelow = below;
}

bool SummaryRow::isTail(const FXWindow* widget) const {
  return std::any_of(m_tail.begin(), m_tail.end(),
                     [widget](const Tail& tail) { return tail.widget == widget; });
}

FXint SummaryRow::figuresHeight() const {
  FXint height = 0;
  for (FXWindow* child = getFirst(); child; child = child->getNext())
    if (!isTail(child))
      height = std::max(height, child->getDefaultHeight());
  return height;
}

FXint SummaryRow::tailHeight() const {
  FXint height = 0;
  for (const Tail& tail : m_tail)
    height = std::max(height, tail.widget->getDefaultHeight());
  return height;
}

FXint SummaryRow::getDefaultWidth() {
  return m_tailBelow ? std::max(m_figuresEnd, tailWidth()) : m_figuresEnd + tailWidth();
}

FXint SummaryRow::getDefaultHeight() {
  if (m_tailBelow)
    return figuresHeight() + LINE_GAP + tailHeight();
  return std::max(figuresHeight(), tailHeight());
}

void SummaryRow::layout() {
  layoutFigures();
  layoutTail();
  flags &= ~FLAG_DIRTY;
}

void SummaryRow::layoutFigures() {
  const FXint lineHeight = m_tailBelow ? figuresHeight() : getDefaultHeight();
  for (FXWindow* child = getFirst(); child; child = child->getNext()) {
    const FXint height = child->getDefaultHeight();
    if (!isTail(child))
      child->position(child->getX(), centred(height, lineHeight), child->getWidth(), height);
  }
}

void SummaryRow::layoutTail() {
  const FXint top = m_tailBelow ? figuresHeight() + LINE_GAP : 0;
  const FXint lineHeight = m_tailBelow ? tailHeight() : getDefaultHeight();
  FXint x = m_tailBelow ? 0 : m_figuresEnd;
  for (const Tail& tail : m_tail) {
    const FXint roomBelow = x == 0 ? 0 : std::min(tail.room, ROOM_BELOW_MOST);
    x += m_tailBelow ? roomBelow : tail.room;
    const FXint width = std::clamp(tail.widget->getDefaultWidth(), 1, std::max(1, getWidth() - x));
    const FXint height = tail.widget->getDefaultHeight();
    tail.widget->position(x, top + centred(height, lineHeight), width, height);
    x += width;
  }
}

} // namespace Tallymoor
