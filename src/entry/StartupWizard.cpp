#include "entry/StartupWizard.h"
#include "books/PortfolioEvents.h"
#include "books/SharePortfolioUser.h"
#include "entry/BuySharesPanel.h"
#include "entry/ChoosePortfolioPanel.h"
#include "entry/FinishPanel.h"
#include "entry/GetFloatPanel.h"
#include "entry/IntroPanel.h"
#include "entry/LoopControlPanel.h"
#include "entry/ReceiveDividendsPanel.h"
#include "entry/RecordedEntries.h"
#include "entry/SellSharesPanel.h"
#include "entry/StartupStages.h"
#include "foundation/Exception.h"
#include "foundation/FileReplacement.h"
#include "market/MarketPrices.h"
#include "session/BookQuestions.h"
#include "widgets/HandlerScope.h"
#include "widgets/MainWindow.h"
#include "xml/PortfolioRecords.h"

namespace Tallymoor {

FXIMPLEMENT(StartupWizard, Wizard, nullptr, 0)

StartupWizard::StartupWizard() = default;

StartupWizard::StartupWizard(FXWindow* owner, XMLPortfolios& records)
    : Wizard(owner, u"Tallymoor - Getting Started"), m_records(&records) {
  buildPages();
  setToPage(m_pages.intro);
}

// Nothing is thrown: the portfolio is one of the records.
StartupWizard::~StartupWizard() { // NOLINT(bugprone-exception-escape)
  dropPortfolio();
}

void StartupWizard::buildPages() {
  m_pages = StartupPages(pages(), *m_records);
  int number = 0;
  for (GUIPanel* page : m_pages.all())
    registerPage(page, number++);
  m_entries = new RecordedEntries(besidePages());
}

void StartupWizard::create() {
  Wizard::create();
  if (const FXint missing = getDefaultWidth() - getRoot()->getDefaultWidth(); missing > 0) {
    m_entries->setWidth(m_entries->getWidth() - missing);
    resize(getDefaultWidth(), getDefaultHeight());
  }
}

std::unique_ptr<SharePortfolioUser> StartupWizard::takePortfolio() {
  m_portfolio = nullptr;
  return std::move(m_user);
}

// ---- Buttons ----

long StartupWizard::onNext(FXObject* sender, FXSelector selector, void* data) {
  if (currentPage() == m_pages.intro)
    return Wizard::onNext(sender, selector, data);
  return guardedHandler(u"Wizard::onNext failed.", [this] {
    if (!currentPage()->validate())
      return;
    State before = state();
    try {
      if (!leavePage())
        return;
    } catch (const Exception&) {
      restore(before);
      throw;
    }
    m_before = std::move(before);
    backButton()->enable();
    m_entries->show(m_portfolio);
  });
}

long StartupWizard::onBack(FXObject* sender, FXSelector selector, void* data) {
  return guardedHandler(u"Wizard::onBack failed.", [&] {
    backButton()->disable();
    rememberTypedEntry();
    restore(m_before);
    Wizard::onBack(sender, selector, data);
    makeRecordCurrentFor(currentPage());
    focusFirstField();
    m_entries->show(m_portfolio);
  });
}

long StartupWizard::onCancel(FXObject* sender, FXSelector selector, void* data) {
  // The main window cancels open dialogs when the program ends; there may be no user to ask then.
  const bool programEnds = sender == &MainWindow::Instance();
  bool mayLeave = true;
  guardedHandler(u"Wizard::onCancel failed.", [&] {
    mayLeave = programEnds || mayDropEntries();
    if (!mayLeave)
      return;
    const String file = m_user ? m_user->capitalRecord().fileName() : String();
    dropPortfolio();
    if (!file.empty())
      removeFile(file);
  });
  return mayLeave ? Wizard::onCancel(sender, selector, data) : 1;
}

bool StartupWizard::mayDropEntries() const {
  return !m_portfolio || !hasEntries(*m_portfolio) ||
         MainWindow::question(u"If you leave now, the portfolio " + m_user->name() +
                              u" is dropped\nwith all that you have entered here.\nDo you want to leave?");
}

// ---- What Back restores ----

StartupWizard::State StartupWizard::state() const {
  State now;
  now.page = currentPage();
  if (m_portfolio)
    now.records = std::make_unique<XMLSharePortfolio>(*m_portfolio);
  now.stage = m_stage;
  now.startDate = m_recording.startDate();
  now.sectionFinished = m_pages.loop->isFinished();
  return now;
}

void StartupWizard::restore(const State& before) {
  m_stage = before.stage;
  m_recording.setStartDate(before.startDate);
  if (!before.records) {
    dropPortfolio();
  } else if (before.page == m_pages.loop) {
    // That page recorded nothing, and what came after it (an answer on a share split) stays.
    showSection();
    m_pages.loop->setFinished(before.sectionFinished);
  } else {
    *m_portfolio = *before.records;
    dropComputedDays();
  }
}

void StartupWizard::rememberTypedEntry() {
  if (currentPage() == m_pages.money || currentPage() == m_pages.entryPage(m_stage))
    m_typedEntry = {currentPage(), m_stage};
}

bool StartupWizard::showsTypedEntry(const GUIPanel* page) {
  if (!m_typedEntry || m_typedEntry->page != page)
    return false;
  const bool sameStage = m_typedEntry->stage == m_stage;
  m_typedEntry.reset();
  return sameStage;
}

// ---- The portfolio ----

void StartupWizard::makePortfolio() {
  m_portfolio = &m_records->portfolios().add();
  m_portfolio->setPortfolioName(m_pages.choose->name());
  m_user = std::make_unique<SharePortfolioUser>(*m_portfolio, gatewayPrices());
  dropComputedDays(); // a file of that name may hold those of other records
  m_pages.setPortfolio(m_user.get());
}

/// The pages and the user refer to the records, so they go first.
void StartupWizard::dropPortfolio() {
  if (!m_portfolio)
    return;
  m_pages.setPortfolio(nullptr);
  m_user.reset();
  m_records->portfolios().remove(*m_portfolio);
  m_portfolio = nullptr;
}

void StartupWizard::dropComputedDays() {
  SharePortfolioCapitalRecordUser& record = m_user->capitalRecord();
  record.recordsChangedFrom(record.firstRecordDate());
}

// ---- The route ----

/// Records the page and shows the next one; false to stay.
bool StartupWizard::leavePage() {
  const GUIPanel* page = currentPage();
  if (page == m_pages.choose) {
    makePortfolio();
    showEntryPage(m_pages.money, u"Starting Cash",
                  u"Please enter the value of the cash reserve\n"
                  u"and the portfolio start date for when it was valid.");
  } else if (page == m_pages.loop) {
    leaveLoopPage();
  } else {
    if (!m_recording.record(page, m_stage, *m_user))
      return false;
    showLoopPage();
  }
  return true;
}

void StartupWizard::leaveLoopPage() {
  if (!m_pages.loop->isFinished()) {
    const StartupStageTexts& texts = startupStageTexts(m_stage);
    showEntryPage(m_pages.entryPage(m_stage), texts.entryTitle, texts.entryDescription);
  } else if (nextStage() < STAGE_COUNT) {
    m_stage = nextStage();
    showLoopPage();
  } else {
    setToPage(m_pages.finish);
    setFinalPage();
  }
}

/// There is nothing to sell without shares.
int StartupWizard::nextStage() const {
  const bool holdsShares = !m_portfolio->heldShares().empty();
  return m_stage == STAGE_DIVIDENDS && !holdsShares ? STAGE_INTEREST : m_stage + 1;
}

void StartupWizard::showSection() {
  const StartupStageTexts& texts = startupStageTexts(m_stage);
  m_pages.loop->showSection(texts.title, texts.text, texts.question, texts.help);
}

void StartupWizard::showLoopPage() {
  showSection();
  m_pages.loop->setFinished(false);
  setToPage(m_pages.loop);
}

/// An entry that was typed there and left by "< Back" is kept.
void StartupWizard::showEntryPage(GUIPanel* page, const String& title, const String& description) {
  page->setTexts(title, description);
  m_pages.money->allowZero(m_stage == STAGE_HELD);
  makeRecordCurrentFor(page);
  if (!showsTypedEntry(page))
    m_pages.resetEntry(page, m_stage, m_recording.startDate());
  setToPage(page);
}

/// The forms for dividends and sales look at what was held on a day. A failure is told, and tried again with
/// the next entry.
void StartupWizard::makeRecordCurrentFor(const GUIPanel* page) {
  if (page != m_pages.dividend && page != m_pages.sell)
    return;
  try {
    updateCapitalRecord(*m_user);
  } catch (const Exception& failure) {
    MainWindow::reportException(u"There was a problem refreshing your capital records.", failure);
  }
  setFocus(); // the window that showed the progress has had the keyboard
}

} // namespace Tallymoor
