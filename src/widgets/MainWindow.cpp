#include "widgets/MainWindow.h"
#include "foundation/Constants.h"
#include "foundation/EndingSignals.h"
#include "foundation/RunTimeSettings.h"
#include "widgets/HandlerScope.h"
#include "widgets/MessageBox.h"
#include "widgets/StatusTexts.h"
#include "widgets/TextSize.h"
#include "widgets/ToolkitText.h"
#include "widgets/WindowInteraction.h"
#include <csignal>
#include <mutex>

namespace Tallymoor {

FXDEFMAP(MainWindow)
MainWindowMap[] = {
    FXMAPFUNC(SEL_COMMAND, MainWindow::ID_SHUTDOWN, MainWindow::onShutdown),
    FXMAPFUNC(SEL_SIGNAL, MainWindow::ID_SHUTDOWN, MainWindow::onShutdown),
    FXMAPFUNC(SEL_TIMEOUT, MainWindow::ID_SHUTDOWN, MainWindow::onShutdown),
    FXMAPFUNC(SEL_CLOSE, MainWindow::ID_MAINWINDOW, MainWindow::onShutdown),
    FXMAPFUNC(SEL_CONFIGURE, MainWindow::ID_MAINWINDOW, MainWindow::onConfigure),
    FXMAPFUNC(SEL_UPDATE, MainWindow::ID_MAINWINDOW, MainWindow::onUpdate),
    FXMAPFUNC(SEL_MINIMIZE, MainWindow::ID_MAINWINDOW, MainWindow::onMinimise),
    FXMAPFUNC(SEL_UNMAP, 0, MainWindow::onUnmap),
    FXMAPFUNC(SEL_MAP, 0, MainWindow::onMap),
};

FXIMPLEMENT_ABSTRACT(MainWindow, FXMainWindow, MainWindowMap, ARRAYNUMBER(MainWindowMap))

namespace {

constexpr int ENDING_SIGNALS[] = {SIGTERM, SIGINT, SIGHUP};

/// Milliseconds between two looks at whether the last dialog and handler have returned.
constexpr FXuint SHUTDOWN_RETRY = 10;

std::mutex instanceMutex;
MainWindow* instance = nullptr; // guarded by instanceMutex

} // namespace

MainWindow::MainWindow() = default;

MainWindow::MainWindow(FXApp* app, FXIcon* icon, FXIcon* miniIcon)
    : FXMainWindow(app, toFox(APP_NAME), icon, miniIcon, DECOR_ALL, 100, 100, 1000, 600) {
  buildFonts();
  buildFrames();
  m_statusTexts = std::make_unique<StatusTexts>(app, m_statusBar->getStatusLine());
  m_previousNormalFont = app->getNormalFont();
  app->setNormalFont(m_normalFont.get());
  getAccelTable()->addAccel(parseAccel("Alt+F4"), this, FXSEL(SEL_COMMAND, ID_SHUTDOWN));
  // The window's own messages (close, configure, update, minimise) come back to it under this identifier.
  setTarget(this);
  setSelector(ID_MAINWINDOW);
  watchSignals();
  m_interaction = std::make_unique<WindowInteraction>(app); // behind the signals, which it notes
  UserInteraction::setInstance(m_interaction.get());
  std::lock_guard lock(instanceMutex);
  instance = this;
}

MainWindow::~MainWindow() {
  {
    std::lock_guard lock(instanceMutex);
    if (instance == this)
      instance = nullptr;
  }
  if (!m_statusTexts) // never built
    return;
  UserInteraction::setInstance(nullptr);
  m_interaction.reset();
  ignoreSignals();
  getApp()->removeTimeout(this, ID_SHUTDOWN);
  getApp()->setNormalFont(m_previousNormalFont);
}

void MainWindow::buildFonts() {
  m_normalFont = programFont(*getApp(), 9, FXFont::Normal);
  m_boldFont = programFont(*getApp(), 10, FXFont::Bold);
  m_largeFont = programFont(*getApp(), 12, FXFont::Normal);
  m_largerFont = programFont(*getApp(), 15, FXFont::Normal);
}

void MainWindow::buildFrames() {
  m_menuBar = new FXMenuBar(this, LAYOUT_SIDE_TOP | LAYOUT_FILL_X);
  new FXHorizontalSeparator(this, LAYOUT_SIDE_TOP | LAYOUT_FILL_X | SEPARATOR_GROOVE);
  // The lower frames come first, since the toolkit gives what is left to the one that fills.
  m_statusFrame =
      new FXHorizontalFrame(this, LAYOUT_SIDE_BOTTOM | LAYOUT_FILL_X, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0);
  const FXint barHeight = m_normalFont->getFontHeight() + 10;
  m_statusBar = new FXStatusBar(m_statusFrame, LAYOUT_FILL_X | LAYOUT_FIX_HEIGHT | STATUSBAR_WITH_DRAGCORNER,
                                0, 0, 0, barHeight);
  m_statusBar->getStatusLine()->setFont(m_normalFont.get());
  m_panelFrame = new FXVerticalFrame(this, LAYOUT_SIDE_BOTTOM | LAYOUT_FILL_X, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0);
  m_contentFrame = new FXVerticalFrame(this, LAYOUT_SIDE_TOP | LAYOUT_FILL_X | LAYOUT_FILL_Y, 0, 0, 0, 0, 0,
                                       0, 0, 0, 0, 0);
}

void MainWindow::watchSignals() {
  for (int signal : ENDING_SIGNALS)
    getApp()->addSignal(signal, this, ID_SHUTDOWN);
}

void MainWindow::ignoreSignals() {
  for (int signal : ENDING_SIGNALS)
    getApp()->removeSignal(signal);
}

void MainWindow::create() {
  for (FXFont* font : {normalFont(), boldFont(), largeFont(), largerFont()})
    font->create();
  FXMainWindow::create();
  show();
}

MainWindow& MainWindow::Instance() {
  std::lock_guard lock(instanceMutex);
  if (!instance)
    throw Exception(u"MainWindow::Instance - no MainWindow yet!");
  return *instance;
}

bool MainWindow::exists() {
  std::lock_guard lock(instanceMutex);
  return instance != nullptr;
}

BigMutex& MainWindow::mutex() {
  Instance();
  return bigMutex();
}

bool MainWindow::mayOpenDialog() const {
  if (!m_statusTexts->onGuiThread())
    return false;
  // Under the lock a pass that is seen to run can only be this thread's own.
  BigMutexLock lock;
  return !inBackgroundPass;
}

void MainWindow::information(const String& text) {
  showMessageBox(&FXMessageBox::information, MBOX_OK, text);
}

bool MainWindow::question(const String& text) {
  return showMessageBox(&FXMessageBox::question, MBOX_YES_NO, text) == MBOX_CLICKED_YES;
}

void MainWindow::warning(const String& text) {
  showMessageBox(&FXMessageBox::warning, MBOX_OK, text);
}

void MainWindow::error(const String& text) {
  showMessageBox(&FXMessageBox::error, MBOX_OK, text);
}

void MainWindow::reportException(const String& context, const Exception& exception) {
  error(context + u" " + exception.description());
}

void MainWindow::setStatusText(const String& text) {
  Instance().m_statusTexts->setText(text);
}

void MainWindow::setNormalStatusText(const String& text) {
  Instance().m_statusTexts->setNormalText(text);
}

void MainWindow::beginWait() {
  Instance().getApp()->beginWaitCursor();
}

void MainWindow::endWait() {
  Instance().getApp()->endWaitCursor();
}

void MainWindow::applicationTitle(String& title) const {
  title = APP_NAME;
}

void MainWindow::saveAll() {}

void MainWindow::warnOnce(const String&, const String&, const String&, int) {}

void MainWindow::warningOver(const String&) {}

long MainWindow::onShutdown(FXObject*, FXSelector, void*) {
  if (m_shuttingDown)
    return 1;
  // A handler that is still under way holds the big mutex, and a dialog or popup has its own loop on the
  // stack: ending the program under either would pull the data out from under it.
  if (bigMutex().heldByThisThread() || getApp()->getModality() != MODAL_FOR_NONE) {
    cancelModalWindow();
    getApp()->addTimeout(this, ID_SHUTDOWN, SHUTDOWN_RETRY);
    return 1;
  }
  getApp()->removeTimeout(this, ID_SHUTDOWN);
  runShutdown();
  return 1;
}

void MainWindow::runShutdown() {
  BigMutexLock lock;
  m_shuttingDown = true;
  EndingSignalsNoted::forget();
  try {
    withUnforeseenFailures([this] { shutdown(); });
  } catch (const Exception& exception) {
    reportException(u"MainWindow::onShutdown failed.", exception);
    m_shuttingDown = false; // or nothing but a kill could end the program
  }
}

void MainWindow::cancelModalWindow() {
  FXWindow* modal = getApp()->getModalWindow();
  if (dynamic_cast<FXDialogBox*>(modal))
    modal->handle(this, FXSEL(SEL_COMMAND, FXDialogBox::ID_CANCEL), nullptr);
  else if (auto* popup = dynamic_cast<FXPopup*>(modal))
    popup->popdown();
}

/// Asked of the display: the toolkit takes over what an event says only after its handlers, and the event of
/// a framed window may tell the place of the frame.
FXPoint MainWindow::placeOnScreen() const {
  FXint x = 0, y = 0;
  translateCoordinatesTo(x, y, getRoot(), 0, 0);
  return FXPoint(static_cast<FXshort>(x), static_cast<FXshort>(y));
}

long MainWindow::onConfigure(FXObject*, FXSelector, void*) {
  return guardedHandler(u"MainWindow::onConfigure failed.", [this] {
    const FXPoint place = placeOnScreen();
    if (place.x < 0 && place.y < 0)
      minimiseToTray();
  });
}

long MainWindow::onUpdate(FXObject*, FXSelector, void*) {
  return guardedHandler(u"MainWindow::onUpdate failed.", [this] { updateStatus(); });
}

long MainWindow::onMinimise(FXObject*, FXSelector, void*) {
  return guardedHandler(u"MainWindow::onMinimise failed.", [this] {
    if (m_minimiseTold)
      return;
    m_minimiseTold = true;
    minimiseToTray();
  });
}

long MainWindow::onUnmap(FXObject* sender, FXSelector selector, void* data) {
  FXMainWindow::onUnmap(sender, selector, data);
  // A window manager that iconifies the window by itself tells no more than this.
  if (isMinimized())
    onMinimise(sender, selector, data);
  return 1;
}

long MainWindow::onMap(FXObject* sender, FXSelector selector, void* data) {
  m_minimiseTold = false;
  return FXMainWindow::onMap(sender, selector, data);
}

} // namespace Tallymoor
