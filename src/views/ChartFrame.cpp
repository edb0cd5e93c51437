#include "views/ChartFrame.h"
#include "foundation/Settings.h"
#include "widgets/ChartView.h"
#include "widgets/HandlerScope.h"

namespace Tallymoor {

FXDEFMAP(ChartFrame)
ChartFrameMap[] = {
    FXMAPFUNCS(SEL_COMMAND, ChartFrame::ID_RANGE, ChartFrame::ID_LAST_RANGE, ChartFrame::onRange),
    FXMAPFUNCS(SEL_UPDATE, ChartFrame::ID_RANGE, ChartFrame::ID_LAST_RANGE, ChartFrame::onUpdateRange),
};

FXIMPLEMENT_ABSTRACT(ChartFrame, FXVerticalFrame, ChartFrameMap, ARRAYNUMBER(ChartFrameMap))

namespace {

const String SECTION = u"Charts";
constexpr std::array<const char*, 4> RANGE_NAMES{"3 Months", "1 Year", "3 Years", "All"};
constexpr ChartRange DEFAULT_RANGE = ChartRange::ONE_YEAR;

} // namespace

Date startOf(ChartRange range, const Date& end) {
  switch (range) {
  case ChartRange::THREE_MONTHS:
    return end.plusMonths(-3);
  case ChartRange::ONE_YEAR:
    return end.plusMonths(-12);
  case ChartRange::THREE_YEARS:
    return end.plusMonths(-36);
  case ChartRange::ALL:
    break;
  }
  return Date(1, 1, 1);
}

ChartFrame::ChartFrame(FXComposite* parent, const String& settingsKey)
    : FXVerticalFrame(parent, LAYOUT_FILL_X | LAYOUT_FILL_Y, 0, 0, 0, 0, 0, 0, 0, 0, 0, 2),
      m_settingsKey(settingsKey) {
  buildRangeButtons();
  m_chart = new ChartView(this);
  showRange();
  m_chart->setSource([this] {
    const Date end;
    return makeModel(startOf(range(), end), end);
  });
}

void ChartFrame::buildRangeButtons() {
  auto* row = new FXHorizontalFrame(this, LAYOUT_FILL_X | PACK_UNIFORM_WIDTH, 0, 0, 0, 0, 2, 2, 2, 0, 2, 0);
  for (std::size_t i = 0; i < m_buttons.size(); ++i)
    m_buttons[i] = new FXButton(row, RANGE_NAMES[i], nullptr, this, FXSelector(ID_RANGE + i),
                                FRAME_RAISED | BUTTON_TOOLBAR | JUSTIFY_CENTER_X, 0, 0, 0, 0, 8, 8, 2, 2);
}

ChartRange ChartFrame::range() const {
  const std::int32_t kept = Settings::Instance().readInt(SECTION, m_settingsKey, std::int32_t(DEFAULT_RANGE));
  return kept >= 0 && kept < std::int32_t(RANGE_NAMES.size()) ? ChartRange(kept) : DEFAULT_RANGE;
}

void ChartFrame::refresh() {
  m_chart->modelChanged();
}

void ChartFrame::showRange() {
  for (std::size_t i = 0; i < m_buttons.size(); ++i)
    showState(i);
  m_shown = range();
}

void ChartFrame::showState(std::size_t button) {
  m_buttons[button]->setState(ChartRange(button) == range() ? STATE_ENGAGED : STATE_UP);
}

long ChartFrame::onRange(FXObject*, FXSelector selector, void*) {
  return guardedHandler(u"ChartFrame::onRange failed.", [&] {
    Settings::Instance().writeInt(SECTION, m_settingsKey, std::int32_t(FXSELID(selector) - ID_RANGE));
    showRange();
    rangeChosen();
    refresh();
  });
}

/// Also takes over what was chosen in another chart of the kind. Touches no other button: one that is held
/// down would be let go, and its click lost.
long ChartFrame::onUpdateRange(FXObject*, FXSelector selector, void*) {
  const BigMutexLock lock;
  showState(FXSELID(selector) - ID_RANGE);
  if (range() == m_shown)
    return 1;
  m_shown = range();
  refresh();
  return 1;
}

} // namespace Tallymoor
