#include "widgets/ChartView.h"
#include "foundation/BigMutex.h"
#include "foundation/Exception.h"
#include "widgets/CairoHandles.h"
#include "widgets/ChartPicture.h"
#include "widgets/ChartSaving.h"
#include "widgets/ChartStrokes.h"
#include "widgets/ContextMenu.h"
#include "widgets/HandlerScope.h"
#include "widgets/MeasuredFont.h"
#include <algorithm>
#include <cairo-xlib.h>
#include <fxkeys.h>

namespace Tallymoor {

FXDEFMAP(ChartView)
ChartViewMap[] = {
    FXMAPFUNC(SEL_PAINT, 0, ChartView::onPaint),
    FXMAPFUNC(SEL_MOTION, 0, ChartView::onMotion),
    FXMAPFUNC(SEL_LEAVE, 0, ChartView::onLeave),
    FXMAPFUNC(SEL_LEFTBUTTONPRESS, 0, ChartView::onPress),
    FXMAPFUNC(SEL_KEYPRESS, 0, ChartView::onKeyPress),
    FXMAPFUNC(SEL_FOCUSIN, 0, ChartView::onFocusIn),
    FXMAPFUNC(SEL_FOCUSOUT, 0, ChartView::onFocusOut),
    FXMAPFUNC(SEL_RIGHTBUTTONRELEASE, 0, ChartView::onRightClick),
    FXMAPFUNC(SEL_COMMAND, ChartView::ID_SAVE, ChartView::onSave),
};

FXIMPLEMENT(ChartView, FXFrame, ChartViewMap, ARRAYNUMBER(ChartViewMap))

namespace {

constexpr FXint DEFAULT_LINES_WIDE = 24;
constexpr FXint DEFAULT_LINES_HIGH = 11;
constexpr int DAYS_WITH_CONTROL = 20; ///< that the arrow keys go with Control

/// On the display, where the image is.
CairoContext contextOf(const FXImage& image) {
  const CairoSurface surface(cairo_xlib_surface_create(
      static_cast<Display*>(image.getApp()->getDisplay()), image.id(),
      static_cast<Visual*>(image.getVisual()->getVisual()), image.getWidth(), image.getHeight()));
  return CairoContext(cairo_create(surface.get()));
}

std::unique_ptr<FXImage> makeImage(FXApp* app, FXint width, FXint height) {
  auto image = std::make_unique<FXImage>(app, nullptr, 0, width, height);
  image->create();
  return image;
}

} // namespace

ChartView::ChartView(FXComposite* parent, FXuint options) : FXFrame(parent, options) {
  enable();
  setBackColor(ChartColours::BACKGROUND);
  setBorderColor(ChartColours::AXIS);
}

ChartView::~ChartView() {
  HandlerScope::forget(this);
}

bool ChartView::canFocus() const {
  return true;
}

FXint ChartView::getDefaultWidth() {
  return measuredFont(getApp()->getNormalFont())->getFontHeight() * DEFAULT_LINES_WIDE;
}

FXint ChartView::getDefaultHeight() {
  return measuredFont(getApp()->getNormalFont())->getFontHeight() * DEFAULT_LINES_HIGH;
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
    m_font = std::make_unique<ChartFont>(*measuredFont(getApp()->getNormalFont()), ChartFont::Target::SCREEN);
    m_chart = std::make_unique<ChartLayout>(m_model, areaWidth, areaHeight, m_font->metrics());
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
  const ChartPicture chart(m_model, layout, innerWidth(), innerHeight(), *m_font);
  m_picture = makeImage(getApp(), innerWidth(), innerHeight());
  m_frame = makeImage(getApp(), innerWidth(), innerHeight());
  const CairoContext context = contextOf(*m_picture);
  cairo_set_source_surface(context.get(), chart.surface(), 0.0, 0.0);
  cairo_paint(context.get());
}

long ChartView::onPaint(FXObject*, FXSelector, void* data) {
  const BigMutexLock lock;
  const FXWindow* const shell = getShell();
  if (!HandlerScope::running(shell))
    askSource();
  else if (m_stale)
    HandlerScope::whenDone(
        this, [this] { update(); }, shell);
  drawPicture();
  FXDCWindow dc(this, static_cast<FXEvent*>(data));
  if (m_day) {
    FXDCWindow(m_frame.get()).drawImage(m_picture.get(), 0, 0);
    paintReading(contextOf(*m_frame).get(), m_model, *m_chart, m_chart->reading(*m_day), *m_font);
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

/// Nothing for a chart that has nothing to save.
void ChartView::openMenu(FXint screenX, FXint screenY) {
  if (chart().isEmpty())
    return;
  ContextMenu menu(this, this);
  menu.addCommand(u"Save chart as...", ID_SAVE);
  menu.run(screenX, screenY);
}

long ChartView::onRightClick(FXObject*, FXSelector, void* data) {
  return guardedHandler(u"ChartView::onRightClick failed.", [&] {
    const auto* event = static_cast<FXEvent*>(data);
    openMenu(event->root_x, event->root_y);
  });
}

/// What is shown now: it may change while the dialog is open.
long ChartView::onSave(FXObject*, FXSelector, void*) {
  return guardedHandler(u"ChartView::onSave failed.", [this] {
    const ChartModel shown = m_model;
    const ChartFont font(*getApp()->getNormalFont(), ChartFont::Target::DOCUMENT);
    saveChart(this, shown, innerWidth(), innerHeight(), font);
  });
}

long ChartView::openMenuByKey() {
  return guardedHandler(u"ChartView::onKeyPress failed.", [this] {
    FXint x = 0;
    FXint y = 0;
    translateCoordinatesTo(x, y, getRoot(), width / 2, height / 2);
    openMenu(x, y);
  });
}

long ChartView::onKeyPress(FXObject* sender, FXSelector selector, void* data) {
  const auto* event = static_cast<FXEvent*>(data);
  if (isMenuKey(*event))
    return openMenuByKey();
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
