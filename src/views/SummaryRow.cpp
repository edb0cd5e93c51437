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

void SummaryRow::placeTail(FXint figuresEnd, FXint width) {
  m_figuresEnd = figuresEnd;
  m_widthForTail = width;
  m_tailBelow = figuresEnd + tailWidth() > width;
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
    return figuresHeight() + heightOfTailBelow();
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

/// From left to right, in a new line where the width ends.
std::vector<SummaryRow::TailPlace> SummaryRow::tailPlaces(FXint width) const {
  std::vector<TailPlace> places;
  TailPlace next{0, 0};
  for (const Tail& tail : m_tail) {
    const FXint wanted = tail.widget->getDefaultWidth();
    FXint x = next.x == 0 ? 0 : next.x + std::min(tail.room, ROOM_BELOW_MOST);
    if (x > 0 && x + wanted > width) {
      ++next.line;
      x = 0;
    }
    places.push_back({next.line, x});
    next.x = x + wanted;
  }
  return places;
}

FXint SummaryRow::heightOfTailBelow() const {
  const std::vector<TailPlace> places = tailPlaces(m_widthForTail);
  const FXint lines = places.empty() ? 0 : places.back().line + 1;
  return lines * (LINE_GAP + tailHeight());
}

void SummaryRow::layoutTail() {
  const std::vector<TailPlace> below = tailPlaces(m_widthForTail);
  const FXint lineHeight = m_tailBelow ? tailHeight() : getDefaultHeight();
  FXint behind = m_figuresEnd;
  for (std::size_t i = 0; i < m_tail.size(); ++i) {
    FXWindow& widget = *m_tail[i].widget;
    const FXint x = m_tailBelow ? below[i].x : behind + m_tail[i].room;
    const FXint top = m_tailBelow ? figuresHeight() + LINE_GAP + below[i].line * (LINE_GAP + lineHeight) : 0;
    const FXint width = std::clamp(widget.getDefaultWidth(), 1, std::max(1, getWidth() - x));
    const FXint height = widget.getDefaultHeight();
    widget.position(x, top + centred(height, lineHeight), width, height);
    behind = x + width;
  }
}

} // namespace Tallymoor
