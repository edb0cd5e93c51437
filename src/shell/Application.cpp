#include "shell/Application.h"
#include "foundation/Constants.h"
#include "foundation/Platform.h"
#include "foundation/RunTimeSettings.h"
#include "foundation/Settings.h"
#include "foundation/UnforeseenFailure.h"
#include "foundation/UserInteraction.h"
#include "foundation/XmlLibrary.h"
#include "market/TallymoorInternet.h"
#include "shell/TallymoorWindow.h"
#include "shell/UpdateHandover.h"
#include "shell/Updates.h"
#include "widgets/ToolkitText.h"
#include "xml/CountryOfResidence.h"
#include <fx.h>
#include <memory>

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
  Settings::attach(&app.reg());
  readSettings();
  WindowIcons icons(&app);
  const auto window = std::make_unique<TallymoorWindow>(&app, icons); // goes before the icons that it shows
  app.create();
  return runLoop(app, *window);
}

int runProgram(FXApp& app) {
  if (anotherCopyRuns(app))
    return 0;
  finishInterruptedUpdates();
  if (endsForUpdates(app))
    return 1;
  return runWindow(app);
}

int runUnderToolkit(int argc, char** argv) {
  Toolkit app(APP_NAME.toUTF8().c_str(), VENDOR_NAME.toUTF8().c_str());
  app.init(argc, argv);
  int status = 1;
  try {
    withUnforeseenFailures([&] { status = runProgram(app); });
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
