#include "widgets/ChartView.h"
#include "foundation/BigMutex.h"
#include "foundation/Exception.h"
#include "widgets/ChartPicture.h"
#include "widgets/ChartStrokes.h"
#include "widgets/HandlerScope.h"
#include "widgets/MeasuredFont.h"
#include "widgets/ToolkitText.h"
#include <algorithm>
#include <fxkeys.h>

namespace Tallymoor {

FXDEFMAP(ChartView)
ChartViewMap[] = {
    FXMAPFUNC(SEL_PAINT, 0, ChartView::onPaint),       FXMAPFUNC(SEL_MOTION, 0, ChartView::onMotion),
    FXMAPFUNC(SEL_LEAVE, 0, ChartView::onLeave),       FXMAPFUNC(SEL_LEFTBUTTONPRESS, 0, ChartView::onPress),
    FXMAPFUNC(SEL_KEYPRESS, 0, ChartView::onKeyPress), FXMAPFUNC(SEL_FOCUSIN, 0, ChartView::onFocusIn),
    FXMAPFUNC(SEL_FOCUSOUT, 0, ChartView::onFocusOut),
};

FXIMPLEMENT(ChartView, FXFrame, ChartViewMap, ARRAYNUMBER(ChartViewMap))

namespace {

constexpr FXint DEFAULT_LINES_WIDE = 24;
constexpr FXint DEFAULT_LINES_HIGH = 11;
constexpr FXint DOT_RADIUS = 3;
constexpr int DAYS_WITH_CONTROL = 20; ///< that the arrow keys go with Control

std::unique_ptr<FXFont> boldFont(const FXFont& font) {
  FXFontDesc description;
  font.getFontDesc(description);
  description.weight = FXFont::Bold;
  return std::make_unique<FXFont>(font.getApp(), description);
}

} // namespace

ChartView::ChartView(FXComposite* parent, FXuint options)
    : FXFrame(parent, options), m_titleFont(boldFont(*getApp()->getNormalFont())) {
  enable();
  setBackColor(ChartColours::BACKGROUND);
  setBorderColor(ChartColours::AXIS);
}

ChartView::~ChartView() {
  HandlerScope::forget(this);
}

void ChartView::create() {
  measuredFont(m_titleFont.get());
  FXFrame::create();
}

bool ChartView::canFocus() const {
  return true;
}

FXFont* ChartView::font() const {
  return getApp()->getNormalFont();
}

FXint ChartView::getDefaultWidth() {
  return measuredFont(font())->getFontHeight() * DEFAULT_LINES_WIDE;
}

FXint ChartView::getDefaultHeight() {
  return measuredFont(font())->getFontHeight() * DEFAULT_LINES_HIGH;
}

FXint ChartView::innerWidth() const {
  return std::max(1, width - 2 * border);
}

FXint ChartView::innerHeight() const {
  return std::max(1, height - 2 * border);
}

void ChartView::setModel(ChartModel model) {
  m_chart.reset();
  m_model = std::move(model);
  update();
}

void ChartView::setSource(Source source) {
  m_source = std::move(source);
  modelChanged();
}

void ChartView::modelChanged() {
  m_stale = true;
  update();
}

const ChartModel& ChartView::model() {
  askSource();
  return m_model;
}

void ChartView::askSource() {
  if (!m_stale || !m_source)
    return;
  m_stale = false;
  try {
    withUnforeseenFailures([this] { setModel(m_source()); });
  } catch (const Exception& exception) {
    ChartModel failed;
    failed.emptyText = exception.message();
    setModel(std::move(failed));
  }
}

const ChartLayout& ChartView::chart() {
  const FXint areaWidth = innerWidth();
  const FXint areaHeight = innerHeight();
  if (!m_chart || m_chart->width() != areaWidth || m_chart->height() != areaHeight) {
    FXFont* textFont = measuredFont(font());
    const ChartMetrics metrics{[textFont](const String& text) { return textFont->getTextWidth(toFox(text)); },
                               double(textFont->getFontHeight())};
    m_chart = std::make_unique<ChartLayout>(m_model, areaWidth, areaHeight, metrics);
    m_picture.reset();
    if (m_day)
      m_day = m_chart->isEmpty() ? std::nullopt : std::optional(m_chart->dayBeside(*m_day, 0));
  }
  return *m_chart;
}

std::optional<ChartReading> ChartView::reading() {
  const ChartLayout& layout = chart();
  return m_day ? std::optional(layout.reading(*m_day)) : std::nullopt;
}

void ChartView::showDay(const std::optional<Date>& day) {
  if (day == m_day)
    return;
  m_day = day;
  update();
}

void ChartView::drawPicture() {
  const ChartLayout& layout = chart();
  if (m_picture)
    return;
  const FXint areaWidth = innerWidth();
  const FXint areaHeight = innerHeight();
  const ChartPicture chart(m_model, layout, areaWidth, areaHeight, font()->getFontHeight());
  m_picture = std::make_unique<FXImage>(getApp(), nullptr, IMAGE_KEEP | IMAGE_OWNED, areaWidth, areaHeight);
  std::copy(chart.pixels().begin(), chart.pixels().end(), m_picture->getData());
  m_picture->create();
  m_picture->release();
  m_frame = std::make_unique<FXImage>(getApp(), nullptr, 0, areaWidth, areaHeight);
  m_frame->create();
  FXDCWindow dc(m_picture.get());
  drawTexts(dc);
}

void ChartView::drawText(FXDC& dc, const ChartText& text) const {
  const FXString shown = toFox(text.text);
  dc.drawText(FXint(text.x), FXint(text.y) + dc.getFont()->getFontAscent(), shown.text(),
              FXuint(shown.length()));
}

void ChartView::drawTexts(FXDC& dc) const {
  dc.setForeground(ChartColours::TEXT);
  if (m_chart->title()) {
    dc.setFont(m_titleFont.get());
    drawText(dc, *m_chart->title());
  }
  dc.setFont(font());
  for (const ChartText& line : m_chart->emptyText())
    drawText(dc, line);
  for (const auto* ticks : {&m_chart->valueTicks(), &m_chart->timeTicks()})
    for (const ChartTick& tick : *ticks)
      if (tick.label)
        drawText(dc, *tick.label);
  for (const ChartKey& key : m_chart->legend())
    drawText(dc, key.name);
}

void ChartView::drawCrosshair(FXDC& dc, const ChartReading& reading) const {
  const FXint x = FXint(reading.x);
  dc.setForeground(ChartColours::AXIS);
  dc.drawLine(x, FXint(m_chart->plot().y), x, FXint(m_chart->plot().bottom()));
  for (const ChartReading::Value& value : reading.values) {
    dc.setForeground(m_model.series[value.series].colour);
    dc.fillArc(x - DOT_RADIUS, FXint(value.y) - DOT_RADIUS, 2 * DOT_RADIUS + 1, 2 * DOT_RADIUS + 1, 0,
               360 * 64);
  }
  drawBox(dc, m_chart->boxOf(reading));
}

void ChartView::drawBox(FXDC& dc, const ChartBox& box) const {
  const FXint x = FXint(box.area.x);
  const FXint y = FXint(box.area.y);
  const FXint boxWidth = FXint(box.area.width);
  const FXint boxHeight = FXint(box.area.height);
  dc.setForeground(ChartColours::BACKGROUND);
  dc.fillRectangle(x, y, boxWidth, boxHeight);
  dc.setForeground(ChartColours::AXIS);
  dc.drawRectangle(x, y, boxWidth - 1, boxHeight - 1);
  dc.setFont(font());
  const FXint line = font()->getFontHeight();
  for (const ChartBox::Line& entry : box.lines) {
    if (entry.series) {
      dc.setForeground(m_model.series[*entry.series].colour);
      dc.fillRectangle(FXint(entry.text.x) - line, FXint(entry.text.y) + line / 4, line / 2, line / 2);
    }
    dc.setForeground(ChartColours::TEXT);
    drawText(dc, entry.text);
  }
}

long ChartView::onPaint(FXObject*, FXSelector, void* data) {
  const BigMutexLock lock;
  if (!HandlerScope::running())
    askSource();
  else if (m_stale)
    HandlerScope::whenDone(this, [this] { update(); });
  drawPicture();
  FXDCWindow dc(this, static_cast<FXEvent*>(data));
  if (m_day) {
    FXDCWindow frame(m_frame.get());
    frame.drawImage(m_picture.get(), 0, 0);
    drawCrosshair(frame, m_chart->reading(*m_day));
  }
  dc.drawImage(m_day ? m_frame.get() : m_picture.get(), border, border);
  drawFrame(dc, 0, 0, width, height);
  if (hasFocus())
    dc.drawFocusRectangle(border + 1, border + 1, width - 2 * border - 2, height - 2 * border - 2);
  return 1;
}

long ChartView::onMotion(FXObject*, FXSelector, void* data) {
  return guardedHandler(u"ChartView::onMotion failed.", [&] {
    const auto* event = static_cast<FXEvent*>(data);
    showDay(chart().dayAt(event->win_x - border));
  });
}

long ChartView::onLeave(FXObject* sender, FXSelector selector, void* data) {
  FXFrame::onLeave(sender, selector, data);
  return guardedHandler(u"ChartView::onLeave failed.", [this] { showDay(std::nullopt); });
}

long ChartView::onPress(FXObject*, FXSelector, void* data) {
  handle(this, FXSEL(SEL_FOCUS_SELF, 0), data);
  return 1;
}

void ChartView::moveCrosshair(int steps) {
  const ChartLayout& layout = chart();
  if (layout.isEmpty())
    return;
  showDay(m_day ? layout.dayBeside(*m_day, steps) : layout.lastDay());
}

long ChartView::onKeyPress(FXObject* sender, FXSelector selector, void* data) {
  const auto* event = static_cast<FXEvent*>(data);
  const int steps = event->state & CONTROLMASK ? DAYS_WITH_CONTROL : 1;
  constexpr int ALL = 1 << 20;
  int wanted = 0;
  switch (event->code) {
  case KEY_Left:
  case KEY_KP_Left:
    wanted = -steps;
    break;
  case KEY_Right:
  case KEY_KP_Right:
    wanted = steps;
    break;
  case KEY_Home:
  case KEY_KP_Home:
    wanted = -ALL;
    break;
  case KEY_End:
  case KEY_KP_End:
    wanted = ALL;
    break;
  default:
    return FXFrame::onKeyPress(sender, selector, data);
  }
  return guardedHandler(u"ChartView::onKeyPress failed.", [&] { moveCrosshair(wanted); });
}

long ChartView::onFocusIn(FXObject* sender, FXSelector selector, void* data) {
  FXFrame::onFocusIn(sender, selector, data);
  update();
  return 1;
}

long ChartView::onFocusOut(FXObject* sender, FXSelector selector, void* data) {
  FXFrame::onFocusOut(sender, selector, data);
  update();
  return 1;
}

} // namespace Tallymoor
