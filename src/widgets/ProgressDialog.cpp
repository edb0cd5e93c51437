#include "widgets/ProgressDialog.h"
#include "foundation/BigMutex.h"
#include "foundation/Exception.h"
#include "foundation/Thread.h"
#include "widgets/Colours.h"
#include "widgets/MainWindow.h"
#include "widgets/ToolkitText.h"
#include <algorithm>

namespace Tallymoor {

FXDEFMAP(ProgressDialog)
ProgressDialogMap[] = {
    FXMAPFUNC(SEL_COMMAND, FXDialogBox::ID_CANCEL, ProgressDialog::onCmdCancel),
};

FXIMPLEMENT(ProgressDialog, FXProgressDialog, ProgressDialogMap, ARRAYNUMBER(ProgressDialogMap))

namespace {

constexpr FXint LOG_ROWS = 6;
constexpr FXint LOG_COLUMNS = 55;
constexpr FXint SMALL_BAR_WIDTH = 150;
/// How long the full bar stays in view.
constexpr std::uint32_t FULL_BAR_MILLISECONDS = 300;

} // namespace

ProgressDialog::ProgressDialog(FXWindow* owner, const String& caption, const String& heading, unsigned steps,
                               unsigned style, FXIcon* banner)
    : FXProgressDialog(owner, toFox(caption), FXString::null, PROGRESSDIALOG_NORMAL) {
  while (FXWindow* widget = getFirst()) // the toolkit's own arrangement
    delete widget;
  auto* across = new FXHorizontalFrame(this, LAYOUT_FILL_X | LAYOUT_FILL_Y, 0, 0, 0, 0, 0, 0, 0, 0, 10, 10);
  if (banner)
    new FXLabel(across, FXString::null, banner, LAYOUT_TOP | LAYOUT_LEFT);
  auto* column = new FXVerticalFrame(across, LAYOUT_FILL_X | LAYOUT_FILL_Y, 0, 0, 0, 0, 0, 0, 0, 0, 8, 8);
  buildHeading(column, heading);
  buildLog(column);
  buildBar(column, style);
  buildCancel(column, style);
  setTotal(steps);
  resize(getDefaultWidth(), getDefaultHeight()); // the toolkit has given it a width of its own
  if (getApp()->getDisplay())
    create();
}

ProgressDialog::~ProgressDialog() = default;

void ProgressDialog::buildHeading(FXComposite* parent, const String& heading) {
  message = new FXLabel(parent, labelText(heading), nullptr, JUSTIFY_LEFT | LAYOUT_FILL_X);
  message->setFont(MainWindow::Instance().largerFont());
}

void ProgressDialog::buildLog(FXComposite* parent) {
  auto* frame = new FXHorizontalFrame(parent, FRAME_SUNKEN | FRAME_THICK | LAYOUT_FILL_X | LAYOUT_FILL_Y, 0,
                                      0, 0, 0, 0, 0, 0, 0);
  m_log = new FXText(frame, nullptr, 0, TEXT_READONLY | LAYOUT_FILL_X | LAYOUT_FILL_Y);
  m_log->setVisibleRows(LOG_ROWS);
  m_log->setVisibleColumns(LOG_COLUMNS);
  m_log->setBackColor(namedColour("light grey"));
  m_log->setActiveBackColor(namedColour("light grey"));
}

void ProgressDialog::buildBar(FXComposite* parent, unsigned style) {
  const bool wide = style & PERCENT_BAR;
  const FXuint options = wide ? PROGRESSBAR_HORIZONTAL | PROGRESSBAR_PERCENTAGE | LAYOUT_FILL_X
                              : PROGRESSBAR_HORIZONTAL | LAYOUT_FIX_WIDTH;
  progress =
      new FXProgressBar(parent, nullptr, 0, options | FRAME_SUNKEN | FRAME_THICK, 0, 0, SMALL_BAR_WIDTH);
  progress->setBarColor(namedColour("DarkOliveGreen4"));
}

void ProgressDialog::buildCancel(FXComposite* parent, unsigned style) {
  separator = new FXHorizontalSeparator(parent, SEPARATOR_GROOVE | LAYOUT_FILL_X);
  cancel =
      new FXButton(parent, "Cancel", nullptr, this, ID_CANCEL,
                   BUTTON_NORMAL | BUTTON_DEFAULT | BUTTON_INITIAL | LAYOUT_RIGHT, 0, 0, 0, 0, 20, 20, 4, 4);
  if (style & CAN_CANCEL)
    return;
  separator->hide();
  cancel->hide();
}

bool ProgressDialog::run(Tallymoor::HasLengthyFunctions& work, int argument) {
  show(getOwner()->shown() ? PLACEMENT_OWNER : PLACEMENT_SCREEN);
  getApp()->flush();
  letEventsPass();
  try {
    work.runLengthyFunction(*this, argument);
  } catch (...) {
    hide();
    throw;
  }
  return shown();
}

void ProgressDialog::setTotal(unsigned steps) {
  // A total of nothing would be divided by.
  progress->setTotal(std::max(steps, 1u));
}

void ProgressDialog::step(unsigned increment, const String& text) {
  progress->increment(static_cast<FXint>(increment));
  if (!text.empty()) {
    m_log->appendText(toFox(text + u"\n"));
    m_log->makePositionVisible(m_log->getLength());
  }
  letEventsPass();
}

void ProgressDialog::setText(const String& text) {
  step(0, text);
}

bool ProgressDialog::isCancelled() const {
  return FXProgressDialog::isCancelled();
}

void ProgressDialog::finish() {
  progress->setProgress(progress->getTotal());
  letEventsPass();
  Thread::sleep(FULL_BAR_MILLISECONDS);
}

void ProgressDialog::letEventsPass() {
  getApp()->runModalWhileEvents(this);
  // Paints are left over by the step above, so that a busy stretch would show a stale dialog.
  getApp()->repaint();
  getApp()->flush();
}

unsigned ProgressDialog::total() const {
  return progress->getTotal();
}

String ProgressDialog::log() const {
  return fromFox(m_log->getText());
}

long ProgressDialog::onCmdCancel(FXObject* sender, FXSelector selector, void* data) {
  BigMutexLock lock;
  if (shown())
    FXProgressDialog::onCmdCancel(sender, selector, data);
  return 1;
}

} // namespace Tallymoor
