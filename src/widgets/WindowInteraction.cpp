#include "widgets/WindowInteraction.h"
#include "widgets/CalendarDialog.h"
#include "widgets/GetRatioDialog.h"
#include "widgets/ListChoiceDialog.h"
#include "widgets/MainWindow.h"
#include "widgets/ModalDialogs.h"
#include "widgets/ProgressDialog.h"
#include "widgets/StopRequest.h"

namespace Tallymoor {

namespace {

/// Stands for the progress dialog where none may open.
class UnseenProgress : public Progress {
public:
  void setTotal(unsigned) override {}
  void step(unsigned, const String&) override {}
  void setText(const String&) override {}
  bool isCancelled() const override { return false; }
};

/// Tells the request of a progress dialog for as long as it works.
class ProgressKnown {
public:
  ProgressKnown(StopRequest& request, const ProgressDialog& dialog) : m_request(request) {
    m_request.setProgress(&dialog);
  }
  ~ProgressKnown() { m_request.setProgress(nullptr); }

private:
  StopRequest& m_request;
};

} // namespace

WindowInteraction::WindowInteraction(FXApp* app) : m_stopRequest(std::make_unique<StopRequest>(app)) {}

WindowInteraction::~WindowInteraction() = default;

bool WindowInteraction::isStopWanted() {
  return m_stopRequest->isWanted();
}

void WindowInteraction::information(const String& text) {
  MainWindow::information(text);
}

bool WindowInteraction::question(const String& text) {
  return MainWindow::question(text);
}

void WindowInteraction::warning(const String& text) {
  MainWindow::warning(text);
}

void WindowInteraction::error(const String& text) {
  MainWindow::error(text);
}

void WindowInteraction::reportException(const String& context, const Exception& exception) {
  MainWindow::reportException(context, exception);
}

void WindowInteraction::setStatusText(const String& text) {
  MainWindow::setStatusText(text);
}

void WindowInteraction::setNormalStatusText(const String& text) {
  MainWindow::setNormalStatusText(text);
}

void WindowInteraction::beginWait() {
  MainWindow::beginWait();
}

void WindowInteraction::endWait() {
  MainWindow::endWait();
}

void WindowInteraction::warnOnce(const String& text, const String& caption, const String& key, int level) {
  MainWindow::Instance().warnOnce(text, caption, key, level);
}

void WindowInteraction::warningOver(const String& key) {
  MainWindow::Instance().warningOver(key);
}

std::optional<std::size_t> WindowInteraction::chooseFromList(const String& title, const String& heading,
                                                             const std::vector<String>& entries) {
  if (!MainWindow::Instance().mayOpenDialog())
    return std::nullopt;
  ListChoiceDialog dialog(&MainWindow::Instance(), title, heading, false);
  for (const String& entry : entries)
    dialog.addListEntry(entry, nullptr);
  if (!dialog.execute())
    return std::nullopt;
  return dialog.chosenIndexes().front();
}

std::optional<Date> WindowInteraction::askDate(const String& title, const String& heading,
                                               const Date& initial) {
  if (!MainWindow::Instance().mayOpenDialog())
    return std::nullopt;
  CalendarDialog dialog(&MainWindow::Instance(), title, initial, heading);
  if (!dialog.execute())
    return std::nullopt;
  return dialog.date();
}

std::optional<WholeRatio> WindowInteraction::askRatio(const String& title, const String& heading,
                                                      const String& remark, std::int32_t maximum,
                                                      const WholeRatio& initial) {
  if (!MainWindow::Instance().mayOpenDialog())
    return std::nullopt;
  GetRatioDialog dialog(&MainWindow::Instance(), title, heading, remark, maximum, initial);
  if (!dialog.execute())
    return std::nullopt;
  return dialog.ratio();
}

bool WindowInteraction::runLengthy(const String& caption, const String& heading, unsigned steps,
                                   HasLengthyFunctions& work, int argument) {
  if (!MainWindow::Instance().mayOpenDialog()) {
    UnseenProgress unseen;
    work.runLengthyFunction(unseen, argument);
    return true;
  }
  // Of a handler that was cancelled the next view would begin again.
  if (m_stopRequest->wasWanted())
    return false;
  ProgressDialog dialog(ownerOfNextWindow(), caption, heading, steps,
                        ProgressDialog::PERCENT_BAR | ProgressDialog::CAN_CANCEL);
  const ProgressKnown known(*m_stopRequest, dialog);
  const bool finished = dialog.run(work, argument);
  if (!finished)
    m_stopRequest->want();
  return finished;
}

} // namespace Tallymoor
