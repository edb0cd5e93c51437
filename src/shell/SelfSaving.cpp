#include "shell/SelfSaving.h"
#include "foundation/UnforeseenFailure.h"
#include "shell/TallymoorWindow.h"
#include "widgets/HandlerScope.h"

namespace Tallymoor {

FXDEFMAP(SelfSaving)
selfSavingMap[] = {
    FXMAPFUNC(SEL_TIMEOUT, SelfSaving::ID_SAVE, SelfSaving::onSave),
};

FXIMPLEMENT_ABSTRACT(SelfSaving, FXObject, selfSavingMap, ARRAYNUMBER(selfSavingMap))

SelfSaving::SelfSaving(TallymoorWindow& window)
    : m_window(window), m_app(window.getApp()), m_delays(s_delays), m_written(m_app, [this] { written(); }) {
  if (m_delays)
    m_window.store().changes().afterChange([this] { saveIn(m_delays->afterChange); });
}

SelfSaving::~SelfSaving() {
  stop();
}

void SelfSaving::stop() {
  m_delays.reset();
  m_app->removeTimeout(this, ID_SAVE);
  m_window.store().changes().afterChange({});
  m_window.store().finishSaving(); // what failed is written, or told, by the save at the end
}

void SelfSaving::saveIn(FXuint milliseconds) {
  m_app->addTimeout(this, ID_SAVE, milliseconds);
}

long SelfSaving::onSave(FXObject*, FXSelector, void*) {
  if (!m_delays)
    return 1;
  if (!m_window.isReady() || !m_window.isIdle())
    saveIn(m_delays->whileBusy);
  else
    guardedHandler(u"SelfSaving::onSave failed.", [this] { begin(); });
  return 1;
}

void SelfSaving::begin() {
  if (m_window.store().isChangedOnDisk()) {
    m_window.warnOnce(u"Another program has changed your records on disk. Tallymoor saves nothing by itself "
                      u"until you choose File, Save, which asks what to keep.",
                      u"Saving", PortfolioSession::UNSAVED_RECORDS, 2);
    return;
  }
  try {
    bool begun = false;
    withUnforeseenFailures([&] { begun = m_window.store().beginSaving([this] { m_written.wake(); }); });
    if (!begun && !m_window.store().loadFailed())
      saveIn(m_delays->whileBusy);
  } catch (const Exception& exception) {
    tellFailure(exception.message());
  }
}

void SelfSaving::written() {
  guardedHandler(u"SelfSaving::written failed.", [this] {
    if (const std::optional<Exception> failure = m_window.store().finishSaving())
      tellFailure(failure->message());
    else
      m_window.warningOver(PortfolioSession::UNSAVED_RECORDS);
  });
}

void SelfSaving::tellFailure(const String& reason) {
  m_window.warnOnce(u"Your records could not be saved: " + reason +
                        u"\nWhat you entered is still in Tallymoor, and in the journal of your changes. "
                        u"Tallymoor tries again.",
                    u"Saving", PortfolioSession::UNSAVED_RECORDS, 2);
  if (m_delays)
    saveIn(m_delays->afterFailure);
}

} // namespace Tallymoor
