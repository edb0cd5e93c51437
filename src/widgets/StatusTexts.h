#pragma once
#include "foundation/String.h"
#include <fx.h>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>

namespace Tallymoor {

class GuiWakeUp;

/// The two texts of the status line, from any thread: a text from the GUI thread is shown at once, one from
/// another thread waits for the GUI thread to be woken. Of texts that wait, the last one counts.
class StatusTexts {
public:
  StatusTexts(FXApp* app, FXStatusLine* line);
  ~StatusTexts();
  StatusTexts(const StatusTexts&) = delete;
  StatusTexts& operator=(const StatusTexts&) = delete;

  /// The passing text, which the toolkit replaces at its next idle moment.
  void setText(const String& text);
  /// The text that stays.
  void setNormalText(const String& text);

  bool onGuiThread() const { return std::this_thread::get_id() == m_guiThread; }

private:
  void showSoon();
  void showWaiting();

  FXStatusLine* m_line;
  const std::thread::id m_guiThread;
  std::mutex m_mutex;
  std::optional<String> m_text;       ///< guarded by m_mutex
  std::optional<String> m_normalText; ///< guarded by m_mutex
  std::unique_ptr<GuiWakeUp> m_wakeUp;
};

} // namespace Tallymoor
