#include "widgets/StatusTexts.h"
#include "widgets/GuiWakeUp.h"
#include "widgets/ToolkitText.h"

namespace Tallymoor {

StatusTexts::StatusTexts(FXApp* app, FXStatusLine* line)
    : m_line(line), m_guiThread(std::this_thread::get_id()),
      m_wakeUp(std::make_unique<GuiWakeUp>(app, [this] { showWaiting(); })) {}

StatusTexts::~StatusTexts() = default;

void StatusTexts::setText(const String& text) {
  {
    std::lock_guard lock(m_mutex);
    m_text = text;
  }
  showSoon();
}

void StatusTexts::setNormalText(const String& text) {
  {
    std::lock_guard lock(m_mutex);
    m_normalText = text;
  }
  showSoon();
}

void StatusTexts::showSoon() {
  if (onGuiThread())
    showWaiting();
  else
    m_wakeUp->wake();
}

void StatusTexts::showWaiting() {
  std::optional<String> text, normalText;
  {
    std::lock_guard lock(m_mutex);
    text.swap(m_text);
    normalText.swap(m_normalText);
  }
  if (normalText)
    m_line->setNormalText(toFox(*normalText));
  if (text)
    m_line->setText(toFox(*text));
}

} // namespace Tallymoor
