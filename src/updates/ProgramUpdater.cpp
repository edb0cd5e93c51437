#include "updates/ProgramUpdater.h"
#include "foundation/BigMutex.h"
#include "foundation/RunTimeSettings.h"
#include "foundation/UserInteraction.h"
#include "market/RestingStatus.h"
#include "market/TallymoorInternet.h"
#include "updates/UpdateSearch.h"
#include "xml/CountryOfResidence.h"
#include <exception>

namespace Tallymoor {

namespace {

const String CAPTION = u"Tallymoor Updates";

/// A key of its own for each warning, so that none is taken for one that was shown.
String nextWarningKey() {
  static std::atomic<unsigned> count = 0;
  return u"updates" + String::fromLong(++count);
}

UserInteraction& user() {
  return UserInteraction::Instance();
}

/// The living gateway and the country take what was put in place.
void reloadDocuments() {
  if (TallymoorInternet::exists())
    TallymoorInternet::reset();
  CountryOfResidence::Instance().reload();
}

} // namespace

ProgramUpdater::ProgramUpdater(const UpdateSettings& settings)
    : Thread(settings.period, false, settings.startDelay), m_settings(settings) {
  start();
}

ProgramUpdater::~ProgramUpdater() {
  stopAndJoin();
}

void ProgramUpdater::requestDownload() {
  m_downloadRequested = true;
  wakeUp();
}

void ProgramUpdater::connectionIsBack() {
  if (m_downloadRequested)
    wakeUp();
}

void ProgramUpdater::threadFunction() {
  runPass();
}

/// Does a piece of work under the big mutex with the background flag set, unless the thread has been told to
/// stop or there is no window to tell.
template <class Work>
void ProgramUpdater::inStretch(Work work) {
  if (stopRequested())
    return;
  const BackgroundPassScope scope;
  if (!stopRequested() && UserInteraction::exists())
    work();
}

void ProgramUpdater::runPass() {
  const auto failed = [this](const String& description) {
    inStretch([&]() REQUIRES(bigMutex()) {
      user().setStatusText(u"ProgramUpdater::threadFunction failed: " + description);
    });
  };
  try {
    if (isOffline())
      return;
    if (m_downloadRequested.exchange(false))
      downloadAll();
    else
      look();
  } catch (const Exception& exception) {
    failed(exception.description());
  } catch (const std::exception& exception) {
    failed(exception.what());
  }
}

// While the user works offline nothing is connected to; a download that was asked for waits until then, too.
bool ProgramUpdater::isOffline() {
  const BigMutexLock lock;
  return TallymoorInternet::exists() && !TallymoorInternet::Instance().isOnline();
}

/// The pass under way was aborted because the user went offline.
bool ProgramUpdater::isCutOff() const {
  return passToken().stop_requested() && !stopRequested();
}

// That the program's files can't be replaced is told where the user asks for updates, not every three hours.
void ProgramUpdater::look() {
  Updates updates(m_settings, passToken());
  const UpdatesFound found = lookForUpdates(updates, true);
  inStretch([&]() REQUIRES(bigMutex()) {
    if (found.any || found.failures.empty())
      takeBack(m_available);
    if (found.any)
      tell(m_available, u"Updates are available. Please use the 'Tools/Check For Updates' menu to download.",
           0);
    else if (found.failures.empty())
      takeBack(m_failed); // there is nothing left that could fail
  });
  if (!found.failures.empty() && !isCutOff())
    throw found.failures.front();
}

void ProgramUpdater::downloadAll() {
  inStretch([this]() REQUIRES(bigMutex()) {
    takeBack(m_available);
    takeBack(m_failed);
    user().setNormalStatusText(u"Updates are downloading, you will be notified when they are ready.");
  });
  UpdatesFound found;
  try {
    Updates updates(m_settings, passToken());
    found = lookForUpdates(updates, false);
    install(updates, found);
  } catch (const Exception& exception) {
    found.failures.push_back(exception);
  } catch (const std::exception& exception) {
    found.failures.emplace_back(String(exception.what()));
  }
  const bool goesOnLater = isCutOff() && !found.failures.empty();
  if (goesOnLater)
    waitForConnection();
  inStretch([&]() REQUIRES(bigMutex()) {
    if (!goesOnLater)
      for (const Exception& failure : found.failures)
        tell(m_failed, u"Failed to download updates: " + failure.description(), 2);
    user().setNormalStatusText(restingStatusText());
  });
}

void ProgramUpdater::tell(Keys& keys, const String& text, int level) {
  keys.push_back(nextWarningKey());
  user().warnOnce(text, CAPTION, keys.back(), level);
}

void ProgramUpdater::takeBack(Keys& keys) {
  for (const String& key : keys)
    user().warningOver(key);
  keys.clear();
}

void ProgramUpdater::waitForConnection() {
  m_downloadRequested = true;
  if (!isOffline()) // again, by now
    wakeUp();
}

/// When the program is told to end after the download, all of this is still done, but the user gets no
/// message.
void ProgramUpdater::install(Updates& updates, UpdatesFound& found) {
  const bool programFiles = updates.installBinaryUpdates();
  const bool documents = updates.installConfigUpdates();
  inStretch([&]() REQUIRES(bigMutex()) {
    if (documents) {
      try {
        reloadDocuments();
      } catch (const Exception& exception) {
        found.failures.push_back(exception);
      }
    }
    if (documents || programFiles) {
      takeBack(m_installed);
      tell(m_installed, u"Updates were installed.\nYou should restart as soon as possible.", 0);
    }
  });
}

} // namespace Tallymoor
