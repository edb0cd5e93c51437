#include "shell/WarningStrip.h"
#include "foundation/BigMutex.h"
#include "widgets/Colours.h"
#include "widgets/HandlerScope.h"
#include "widgets/MainWindow.h"
#include "widgets/ToolkitText.h"
#include <algorithm>

namespace Tallymoor {

namespace {

constexpr std::size_t LINE_LENGTH = 72; ///< units; fits the first window
constexpr FXuint TINT_STRENGTH = 60;

FXColor tintOf(int level) {
  if (level == 0)
    return makeColour(70, 130, 180, TINT_STRENGTH);
  return level == 1 ? makeColour(255, 190, 0, TINT_STRENGTH) : makeColour(255, 0, 0, TINT_STRENGTH);
}

/// Line ends in place of blanks, so that no line is longer than the window is wide.
String inLines(const String& text) {
  String lines = text;
  std::size_t lineStart = 0;
  while (lines.size() - lineStart > LINE_LENGTH) {
    const std::size_t blank = lines.rfind(u' ', lineStart + LINE_LENGTH);
    if (blank == String::npos || blank <= lineStart)
      break;
    lines[blank] = u'\n';
    lineStart = blank + 1;
  }
  return lines;
}

FXDEFMAP(WarningStrip)
WarningStripMap[] = {
    FXMAPFUNC(SEL_COMMAND, WarningStrip::ID_CLOSE_WARNING, WarningStrip::onCloseWarning),
};

} // namespace

FXIMPLEMENT(WarningStrip, FXVerticalFrame, WarningStripMap, ARRAYNUMBER(WarningStripMap))

WarningStrip::WarningStrip() : m_wakeUp(FXApp::instance(), [] {}) {}

WarningStrip::WarningStrip(FXComposite* parent)
    : FXVerticalFrame(parent, LAYOUT_FILL_X, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1),
      m_wakeUp(parent->getApp(), [this] { catchUp(); }) {}

void WarningStrip::add(const String& caption, const String& text, int level, const String& key) {
  m_waiting.push_back({caption, text, level, key});
  m_wakeUp.wake();
}

void WarningStrip::follow(const String& caption, const String& text, const String& key, int level) {
  if (m_withdrawn.erase(key) > 0) {
    add(caption, text, level, key);
    return;
  }
  const auto change = [&](Warning& warning) {
    if (warning.key != key || warning.text == text)
      return;
    warning.text = text;
    m_wakeUp.wake();
  };
  std::for_each(m_waiting.begin(), m_waiting.end(), change);
  for (ShownWarning& shown : m_shown)
    if (!shown.over)
      change(shown.warning);
}

void WarningStrip::withdraw(const String& key) {
  bool found = std::erase_if(m_waiting, [&](const Warning& warning) { return warning.key == key; }) > 0;
  for (ShownWarning& shown : m_shown)
    if (!shown.over && shown.warning.key == key)
      found = shown.over = true;
  if (!found)
    return;
  m_withdrawn.insert(key);
  m_wakeUp.wake();
}

void WarningStrip::catchUp() {
  guardedHandler(u"WarningStrip::catchUp failed.", [this] {
    for (const ShownWarning& shown : m_shown)
      if (shown.over)
        delete shown.row;
    std::erase_if(m_shown, [](const ShownWarning& shown) { return shown.over; });
    for (ShownWarning& shown : m_shown)
      bringUpToDate(shown);
    while (!m_waiting.empty() && m_shown.size() < SHOWN_AT_ONCE) {
      show(m_waiting.front());
      m_waiting.pop_front();
    }
    recalc();
  });
}

void WarningStrip::bringUpToDate(ShownWarning& shown) const {
  shown.label->setText(labelText(inLines(shown.warning.text)));
}

void WarningStrip::show(const Warning& warning) {
  const FXColor tint = tintOf(warning.level);
  auto* row = new FXHorizontalFrame(this, LAYOUT_FILL_X | FRAME_SUNKEN, 0, 0, 0, 0, 6, 6, 3, 3, 8, 0);
  auto* caption = new FXLabel(row, labelText(warning.caption), nullptr, JUSTIFY_LEFT | LAYOUT_CENTER_Y);
  caption->setFont(MainWindow::Instance().boldFont());
  auto* text = new FXLabel(row, labelText(inLines(warning.text)), nullptr,
                           JUSTIFY_LEFT | LAYOUT_FILL_X | LAYOUT_CENTER_Y);
  auto* close = new FXButton(row, "Close\tClose this warning", nullptr, this, ID_CLOSE_WARNING,
                             FRAME_RAISED | FRAME_THICK | LAYOUT_CENTER_Y, 0, 0, 0, 0, 8, 8, 2, 2);
  for (FXWindow* part :
       {static_cast<FXWindow*>(row), static_cast<FXWindow*>(caption), static_cast<FXWindow*>(text)})
    part->setBackColor(tint);
  m_shown.push_back({row, text, close, warning});
  row->create();
}

std::vector<String> WarningStrip::shownTexts() const {
  std::vector<String> texts;
  for (const ShownWarning& shown : m_shown)
    if (!shown.over)
      texts.push_back(shown.warning.text);
  return texts;
}

// The button can't go while its own handler runs: the row is hidden, and goes with the next wake-up.
long WarningStrip::onCloseWarning(FXObject* sender, FXSelector, void*) {
  return guardedHandler(u"WarningStrip::onCloseWarning failed.", [this, sender] {
    for (ShownWarning& shown : m_shown)
      if (shown.close == sender) {
        shown.over = true;
        shown.row->hide();
      }
    m_wakeUp.wake();
  });
}

} // namespace Tallymoor
