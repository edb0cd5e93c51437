#pragma once
#include "foundation/UserInteraction.h"
#include <fx.h>
#include <memory>

namespace Tallymoor {

class StopRequest;

/// What the folders below the windows ask of the user, answered by the main window's message boxes and by the
/// prompts. While a background pass holds the big mutex no prompt opens; the user then counts as having
/// cancelled.
class WindowInteraction : public UserInteraction {
public:
  explicit WindowInteraction(FXApp* app);
  ~WindowInteraction() override;

  void information(const String& text) override;
  bool question(const String& text) override;
  void warning(const String& text) override;
  void error(const String& text) override;
  void reportException(const String& context, const Exception& exception) override;
  void setStatusText(const String& text) override;
  void setNormalStatusText(const String& text) override;
  void beginWait() override;
  void endWait() override;
  void warnOnce(const String& text, const String& caption, const String& key, int level) override;
  void warningOver(const String& key) override;
  std::optional<std::size_t> chooseFromList(const String& title, const String& heading,
                                            const std::vector<String>& entries) override;
  std::optional<Date> askDate(const String& title, const String& heading, const Date& initial) override;
  std::optional<WholeRatio> askRatio(const String& title, const String& heading, const String& remark,
                                     std::int32_t maximum, const WholeRatio& initial) override;
  bool runLengthy(const String& caption, const String& heading, unsigned steps, HasLengthyFunctions& work,
                  int argument) override;
  bool isStopWanted() override;

private:
  std::unique_ptr<StopRequest> m_stopRequest;
};

} // namespace Tallymoor
