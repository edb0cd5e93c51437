#include "shell/Application.h"
#include "foundation/Constants.h"
#include "foundation/Platform.h"
#include "foundation/RunTimeSettings.h"
#include "foundation/Settings.h"
#include "foundation/XmlLibrary.h"
#include "market/TallymoorInternet.h"
#include "shell/TallymoorWindow.h"
#include "shell/UpdateHandover.h"
#include "widgets/ToolkitText.h"
#include "xml/CountryOfResidence.h"
#include <fx.h>

namespace Tallymoor {

namespace {

/// A message box before there is a main window.
void showStartError(FXApp& app, const String& caption, const String& text) {
  app.create();
  FXMessageBox::error(&app, MBOX_OK, toFox(caption).text(), messageBoxText(text).text());
}

bool anotherCopyRuns(FXApp& app) {
  if (Platform::Instance().countProcesses(APP_EXE) <= 1)
    return false;
  showStartError(app, APP_NAME, u"An instance of Tallymoor is already running.");
  return true;
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

int runWindow(FXApp& app) {
  Settings::attach(&app.reg());
  readSettings();
  WindowIcons icons(&app);
  TallymoorWindow* window = new TallymoorWindow(&app, icons);
  app.create();
  const int status = app.run();
  delete window; // before the icons that it shows
  return status;
}

int runUnderToolkit(int argc, char** argv) {
  FXApp app(APP_NAME.toUTF8().c_str(), VENDOR_NAME.toUTF8().c_str());
  app.init(argc, argv);
  if (anotherCopyRuns(app))
    return 0;
  if (endsForUpdates(app))
    return 1;
  return runWindow(app);
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
