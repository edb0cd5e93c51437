#include "shell/Application.h"
#include "foundation/Constants.h"
#include "foundation/FileReplacement.h"
#include "foundation/FolderLock.h"
#include "foundation/OpenFile.h"
#include "foundation/Platform.h"
#include "foundation/RunTimeSettings.h"
#include "foundation/Settings.h"
#include "foundation/UnforeseenFailure.h"
#include "foundation/UserInteraction.h"
#include "foundation/XmlLibrary.h"
#include "market/TallymoorInternet.h"
#include "shell/DisplayEnd.h"
#include "shell/TallymoorWindow.h"
#include "updates/UpdateFolders.h"
#include "updates/UpdateHandover.h"
#include "widgets/ToolkitText.h"
#include "xml/CountryOfResidence.h"
#include <fx.h>
#include <memory>
#include <optional>

namespace Tallymoor {

namespace {

/// The toolkit would write the settings itself when it ends. It does not notice a full disk, and would put
/// half a file in the place of the last one.
class Toolkit : public FXApp {
public:
  using FXApp::FXApp;

  void exit(FXint code = 0) override {
    try {
      Settings::Instance().commit();
    } catch (const Exception& exception) {
      if (UserInteraction::exists())
        UserInteraction::Instance().reportException(u"Your settings could not be saved.", exception);
    }
    reg().setModified(false);
    FXApp::exit(code);
  }
};

/// A message box before there is a main window.
void showStartError(FXApp& app, const String& caption, const String& text) {
  app.create();
  FXMessageBox::error(&app, MBOX_OK, toFox(caption).text(), messageBoxText(text).text());
}

/// True when this process must end with status 1 because of downloaded updates.
bool endsForUpdates(FXApp& app) {
  switch (handOverToUpdateInstaller(Platform::Instance())) {
  case UpdateHandover::StartProgram:
    return false;
  case UpdateHandover::InstallerRuns:
    return true;
  case UpdateHandover::InstallerMissing:
    showStartError(
        app, u"Updating Tallymoor",
        u"Updates found in update directory, but unable to start updater process.\nPlease restart.");
    leaveOverrideMarker();
    return true;
  }
  return false;
}

/// The exit status. An exception on its way through the toolkit's loop ends the program, but not without a
/// word, and not without saving the records.
int runLoop(FXApp& app, TallymoorWindow& window) {
  int status = 1;
  try {
    withUnforeseenFailures([&] { status = app.run(); });
  } catch (const Exception& exception) {
    window.endAfterFailure(exception);
  }
  return status;
}

int runWindow(FXApp& app) {
  readSettings();
  WindowIcons icons(&app);
  const auto window = std::make_unique<TallymoorWindow>(&app, icons); // goes before the icons that it shows
  app.create();
  return runLoop(app, *window);
}

/// The user's folder, locked for this program. Before the toolkit reads the settings, they are made whole
/// where their writing was cut off, which only the program that holds the lock may do.
FolderLock lockUsersFolder() {
  FolderLock lock = FolderLock::onFileIn(Platform::Instance().userHomeDirectory(APP_NAME));
  if (!lock.isHeldByAnother())
    removeLeftoverTemporaries(String::fromUTF8(folderOf(Settings::Instance().filePath().toUTF8())));
  return lock;
}

int runProgram(FXApp& app) {
  // Programs with other data may run from the same folder; what waits there is for the last one to start.
  const FolderLock programFolder = FolderLock::on(u".");
  if (!programFolder.isHeldByAnother()) {
    finishInterruptedUpdates();
    if (endsForUpdates(app))
      return 1;
  }
  return runWindow(app);
}

int runIfAlone(FXApp& app, const FolderLock& lock) {
  if (!lock.isHeldByAnother())
    return runProgram(app);
  showStartError(app, APP_NAME,
                 u"An instance of Tallymoor is already running." +
                     (lock.holder().empty() ? String() : u"\nIt is " + lock.holder() + u"."));
  return 0;
}

int runUnderToolkit(int argc, char** argv) {
  Toolkit app(APP_NAME.toUTF8().c_str(), VENDOR_NAME.toUTF8().c_str());
  Settings::attach(&app.reg());
  std::optional<FolderLock> lock;
  std::optional<Exception> failure;
  int status = 1;
  try {
    lock.emplace(lockUsersFolder());
  } catch (const Exception& exception) {
    failure = exception; // told as soon as there can be a box
  }
  app.init(argc, argv);
  endWithDisplay();
  try {
    if (failure)
      throw *failure;
    withUnforeseenFailures([&] { status = runIfAlone(app, *lock); });
  } catch (const Exception& exception) {
    showStartError(app, APP_NAME, u"Tallymoor could not start. " + exception.description());
  }
  return status;
}

} // namespace

int runApplication(int argc, char** argv) {
  Platform::Instance();
  const int status = runUnderToolkit(argc, argv);
  Settings::attach(nullptr);
  TallymoorInternet::shutdown();
  CountryOfResidence::destroyInstance();
  terminateXmlLibrary();
  return status;
}

} // namespace Tallymoor
