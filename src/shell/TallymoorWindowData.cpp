// The window's data: how it is loaded when the window is created, and how it is saved and let go at the end.
#include "foundation/Settings.h"
#include "foundation/UnforeseenFailure.h"
#include "foundation/UserInteraction.h"
#include "market/TallymoorInternet.h"
#include "shell/AdvertStrip.h"
#include "shell/TallymoorWindow.h"
#include "shell/WindowCommands.h"
#include "updates/ProgramUpdater.h"
#include "updates/UpdateCheck.h"
#include "views/NodeIcons.h"
#include "views/PriceWatch.h"
#include "views/TotalCapTreeItem.h"
#include "views/WatchlistRootTreeItem.h"
#include "widgets/HandlerScope.h"
#include "widgets/InvestmentTree.h"
#include "widgets/ProgressDialog.h"

namespace Tallymoor {

namespace {

/// Which of the window's lengthy functions runs.
enum LengthyWork { LOAD, UNLOAD };

/// What was told once may be told again.
void forgetWarnings() {
  Settings::Instance().deleteSection(u"Warnings");
}

} // namespace

void TallymoorWindow::loadUnderProgress() {
  ProgressDialog dialog(this, u"Tallymoor startup", u"Please wait while caches and portfolio are loaded.", 5,
                        ProgressDialog::PERCENT_BAR, m_icons.banner.get());
  try {
    withUnforeseenFailures([&] { dialog.run(*this, LOAD); });
    dialog.finish();
  } catch (const Exception& exception) {
    store().setLoadFailed();
    reportException(u"Failure during startup. You may need to restart.\n", exception);
  }
  m_loadEnded = true;
}

void TallymoorWindow::runLengthyFunction(Progress& progress, int argument) {
  if (argument == LOAD)
    load(progress);
  else
    unload(progress);
}

void TallymoorWindow::load(Progress& progress) {
  progress.setTotal(4);
  forgetWarnings(); // of a run that did not come to its end
  m_session.load(progress);
  TallymoorInternet::Instance().priceUpdater().addObserver(this);
  progress.setTotal(static_cast<unsigned>(store().portfolios().size()) + 4);
  const NodeIcons nodeIcons{m_icons.portfolio.get(), m_icons.sharesHeld.get(),  m_icons.sharesSold.get(),
                            m_icons.dividends.get(), m_icons.cashReserve.get(), m_icons.watchHeld.get(),
                            m_icons.watchlist.get()};
  m_totalCapital =
      new TotalCapTreeItem(m_portfolios.tree, store().portfolios(), store().records(), nodeIcons, &progress);
  m_watchlistRoot = std::make_unique<WatchlistRootTreeItem>(m_totalCapital, m_watchlists.tree, nodeIcons,
                                                            [this] { m_commands->table().run(ID_BUY); });
  if (store().portfolios().empty() && !store().loadFailed())
    runFirstWizard(progress);
  progress.step(1, u"showing Total Capital");
  m_portfolios.tree->showFirst();
  m_watchlists.tree->showFirst();
  if (!m_portfolios.tree->isSound() || !m_watchlists.tree->isSound())
    throw Exception(STARTUP_FAILURE);
  followPricesInTray();
  m_advertThread = std::make_unique<AdvertThread>(AdvertSettings::current(), m_adverts->pending());
  tellInstallerFailure();
}

/// The progress of the start is out of the way meanwhile.
void TallymoorWindow::runFirstWizard(Progress& progress) {
  auto* dialog = dynamic_cast<FXWindow*>(&progress);
  if (dialog)
    dialog->hide();
  m_commands->table().run(ID_WIZARD);
  if (dialog)
    dialog->show();
}

void TallymoorWindow::shutdown() {
  if (m_shutdownDone)
    return;
  {
    ProgressDialog dialog(this, u"Tallymoor shutdown", u"Please wait while caches and portfolio are saved.",
                          4, ProgressDialog::PERCENT_BAR, m_icons.banner.get());
    dialog.run(*this, UNLOAD);
    dialog.finish();
  }
  getApp()->handle(this, FXSEL(SEL_COMMAND, FXApp::ID_QUIT), nullptr); // writes the settings, too
  m_shutdownDone = true;
}

void TallymoorWindow::endAfterFailure(const Exception& exception) {
  reportException(u"Tallymoor has to end because of a failure. It saves your records now; the state before\n"
                  u"stays beside them, in \"Portfolios.xml.bak\".\n",
                  exception);
  onShutdown(this, 0, nullptr);
  if (!m_shutdownDone)
    saveAll();
}

void TallymoorWindow::unload(Progress& progress) {
  if (TallymoorInternet::exists())
    TallymoorInternet::Instance().priceUpdater().removeObserver(this);
  progress.step(1, u"waiting for update threads");
  m_programUpdater->stopAndJoin();
  m_advertThread.reset();
  progress.step(1, u"saving portfolio records");
  forgetWarnings();
  saveUntilDoneOrGivenUp();
  closeViews();
  store().clear();
  progress.step(1, u"writing share price cache, waiting for background tasks");
  TallymoorInternet::shutdown();
  progress.step(1, u"shutting down");
}

// The records in memory are all that there is of what was typed since the last save, so a full disk or a
// missing folder must not end them unasked.
void TallymoorWindow::saveUntilDoneOrGivenUp() {
  saveAll();
  while (!store().lastSaveSucceeded() &&
         question(u"Your records could not be saved, and leaving now loses the changes since the last save.\n"
                  u"Do you want to try to save them again?"))
    saveAll();
}

void TallymoorWindow::closeViews() {
  m_trayPrices.reset();
  m_watchlistRoot.reset(); // its lists show portfolios
  m_totalCapital = nullptr;
  m_portfolios.tree->clearItems();
}

void TallymoorWindow::saveAll() {
  m_commands->table().run(ID_SAVE);
}

void TallymoorWindow::save() {
  rememberSplitters();
  m_session.save();
}

void TallymoorWindow::rememberSplitters() {
  Settings& settings = Settings::Instance();
  for (const Tab& tab : {m_portfolios, m_watchlists})
    settings.writeUnsigned(u"Gui Settings", tab.widthKey,
                           static_cast<std::uint32_t>(tab.splitter->getSplit(0)));
}

} // namespace Tallymoor
