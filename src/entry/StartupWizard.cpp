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

namespace {

String localText(const Date& date) {
  return date.toString(DATE_DISPLAY_LOCAL);
}

} // namespace

StartupWizard::StartupWizard() = default;

StartupWizard::StartupWizard(FXWindow* owner, XMLPortfolios& records)
    : Wizard(owner, u"Tallymoor - Getting Started"), m_records(&records) {
  buildPages();
  setToPage(m_introPage);
}

StartupWizard::~StartupWizard() {
  dropPortfolio();
}

void StartupWizard::buildPages() {
  m_choosePage = new ChoosePortfolioPanel(pages(), *m_records);
  m_introPage = new IntroPanel(pages());
  m_moneyPage = new GetFloatPanel(pages(), String(), String());
  m_buyPage = new BuySharesPanel(pages());
  m_loopPage = new LoopControlPanel(pages());
  m_dividendPage = new ReceiveDividendsPanel(pages());
  m_sellPage = new SellSharesPanel(pages());
  m_finishPage = new FinishPanel(pages());
  int number = 0;
  for (GUIPanel* page : std::initializer_list<GUIPanel*>{m_introPage, m_choosePage, m_moneyPage, m_loopPage,
                                                         m_buyPage, m_dividendPage, m_sellPage, m_finishPage})
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
  if (currentPage() == m_introPage)
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
    rememberUnrecorded();
    restore(m_before);
    Wizard::onBack(sender, selector, data);
    makeRecordCurrentFor(currentPage());
    focusFirstField();
    m_entries->show(m_portfolio);
  });
}

long StartupWizard::onCancel(FXObject* sender, FXSelector selector, void* data) {
  // The window itself cancels what stands in the way of the program's end, and nobody may be there to ask.
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
  now.startDate = m_startDate;
  now.sectionFinished = m_loopPage->isFinished();
  return now;
}

void StartupWizard::restore(const State& before) {
  m_stage = before.stage;
  m_startDate = before.startDate;
  if (!before.records) {
    dropPortfolio();
  } else if (before.page == m_loopPage) {
    // That page recorded nothing, and what came after it (an answer on a share split) stays.
    showSection();
    m_loopPage->setFinished(before.sectionFinished);
  } else {
    *m_portfolio = *before.records;
    forgetDays();
  }
}

void StartupWizard::rememberUnrecorded() {
  if (currentPage() == m_moneyPage || currentPage() == entryPage())
    m_unrecorded = {currentPage(), m_stage};
}

bool StartupWizard::takesUpUnrecorded(const GUIPanel* page) {
  if (!m_unrecorded || m_unrecorded->page != page)
    return false;
  const bool sameStage = m_unrecorded->stage == m_stage;
  m_unrecorded.reset();
  return sameStage;
}

// ---- The portfolio ----

void StartupWizard::makePortfolio() {
  m_portfolio = &m_records->portfolios().add();
  m_portfolio->setPortfolioName(m_choosePage->name());
  m_user = std::make_unique<SharePortfolioUser>(*m_portfolio, gatewayPrices());
  forgetDays(); // a file that lies on disk under the name holds those of other records
  m_buyPage->setPortfolio(m_user.get());
  m_dividendPage->setPortfolio(m_user.get());
  m_sellPage->setPortfolio(m_user.get());
}

/// What refers goes before what it refers to.
void StartupWizard::dropPortfolio() {
  if (!m_portfolio)
    return;
  m_buyPage->setPortfolio(nullptr);
  m_dividendPage->setPortfolio(nullptr);
  m_sellPage->setPortfolio(nullptr);
  m_user.reset();
  m_records->portfolios().remove(*m_portfolio);
  m_portfolio = nullptr;
}

void StartupWizard::forgetDays() {
  SharePortfolioCapitalRecordUser& record = m_user->capitalRecord();
  record.recordsChangedFrom(record.firstRecordDate());
}

// ---- The route ----

/// Records the page and shows the next one; false to stay.
bool StartupWizard::leavePage() {
  const GUIPanel* page = currentPage();
  if (page == m_choosePage) {
    makePortfolio();
    showEntryPage(m_moneyPage, u"Starting Cash",
                  u"Please enter the value of the cash reserve\n"
                  u"and the portfolio start date for when it was valid.");
  } else if (page == m_loopPage) {
    leaveLoopPage();
  } else {
    if (!record(page))
      return false;
    showLoopPage();
  }
  return true;
}

void StartupWizard::leaveLoopPage() {
  if (!m_loopPage->isFinished()) {
    const StartupStageTexts& texts = startupStageTexts(m_stage);
    showEntryPage(entryPage(), texts.entryTitle, texts.entryDescription);
  } else if (nextStage() < STAGE_COUNT) {
    m_stage = nextStage();
    showLoopPage();
  } else {
    setToPage(m_finishPage);
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
  m_loopPage->showSection(texts.title, texts.text, texts.question, texts.help);
}

void StartupWizard::showLoopPage() {
  showSection();
  m_loopPage->setFinished(false);
  setToPage(m_loopPage);
}

GUIPanel* StartupWizard::entryPage() const {
  switch (m_stage) {
  case STAGE_HELD:
  case STAGE_BOUGHT:
    return m_buyPage;
  case STAGE_DIVIDENDS:
    return m_dividendPage;
  case STAGE_SOLD:
    return m_sellPage;
  default:
    return m_moneyPage;
  }
}

/// What the user typed there and left by "< Back" stands there again.
void StartupWizard::showEntryPage(GUIPanel* page, const String& title, const String& description) {
  page->setTexts(title, description);
  m_moneyPage->allowZero(m_stage == STAGE_HELD);
  makeRecordCurrentFor(page);
  if (!takesUpUnrecorded(page))
    resetEntry(page);
  setToPage(page);
}

void StartupWizard::resetEntry(const GUIPanel* page) {
  if (page == m_moneyPage)
    m_moneyPage->reset();
  else if (page == m_buyPage) {
    m_buyPage->reset();
    m_buyPage->setPaidFromCash(m_stage != STAGE_HELD);
    if (m_stage == STAGE_HELD)
      m_buyPage->setDate(m_startDate);
  } else if (page == m_dividendPage)
    m_dividendPage->reset();
  else
    m_sellPage->reset();
}

/// The forms for dividends and sales look at what was held on a day. A failure is told, and tried again with
/// the next entry.
void StartupWizard::makeRecordCurrentFor(const GUIPanel* page) {
  if (page != m_dividendPage && page != m_sellPage)
    return;
  try {
    updateCapitalRecord(*m_user);
  } catch (const Exception& failure) {
    MainWindow::reportException(u"There was a problem refreshing your capital records.", failure);
  }
  setFocus(); // the window that showed the progress has had the keyboard
}

// ---- The records ----

bool StartupWizard::record(const GUIPanel* page) {
  if (page == m_buyPage)
    return recordPurchase();
  if (page == m_dividendPage)
    return recordDividend();
  if (page == m_sellPage)
    return recordSale();
  recordCash();
  return true;
}

void StartupWizard::recordCash() {
  const Date date = m_moneyPage->date();
  const double value = m_moneyPage->value();
  const String text = m_moneyPage->text();
  if (m_stage == STAGE_HELD)
    m_startDate = date;
  if (m_stage == STAGE_INTEREST)
    m_user->creditCash(date, value, CASH_EVENT_INTEREST, u"INTEREST " + text);
  else if (m_stage == STAGE_WITHDRAWALS)
    m_user->debitCash(date, value, CASH_EVENT_WITHDRAWAL, u"WITHDRAWAL " + text);
  else
    m_user->creditCash(date, value, CASH_EVENT_DEPOSIT, u"DEPOSIT " + text);
}

bool StartupWizard::recordPurchase() {
  const BuySharesPanel& form = *m_buyPage;
  const Date date = form.date();
  const bool beforeStart = date < m_startDate;
  if (m_stage == STAGE_HELD && date > m_startDate) {
    MainWindow::error(u"You specified a buy date of " + localText(date) +
                      u",\nwhich is after your portfolio start date, " + localText(m_startDate) +
                      u".\nShares bought since then are entered in the next section.");
    m_buyPage->focusDate();
    return false;
  }
  if (m_stage == STAGE_BOUGHT && !beforeStart) {
    m_user->buyShares(form.code(), form.trade());
    return true;
  }
  if (m_stage == STAGE_BOUGHT &&
      MainWindow::question(u"You specified a buy date of " + localText(date) +
                           u",\nwhich is before your portfolio start date, " + localText(m_startDate) +
                           u".\nDo you want to re enter the date for this? If you don't\n"
                           u"the stock will be added as portfolio starting stock.")) {
    m_buyPage->focusDate();
    return false;
  }
  m_user->addBuyEvent(form.code(), form.trade());
  return true;
}

bool StartupWizard::recordDividend() {
  const ReceiveDividendsPanel& form = *m_dividendPage;
  const Date date = form.date();
  if (date < m_startDate) {
    MainWindow::error(u"You specified a dividend date of " + localText(date) +
                      u",\nwhich is before your portfolio start date, " + localText(m_startDate) +
                      u".\nPlease re-enter the date for this, or cancel the dividend\n"
                      u"as it won't affect your portfolio.");
    m_dividendPage->focusDate();
    return false;
  }
  m_user->receiveDividend(form.entry());
  return true;
}

bool StartupWizard::recordSale() {
  const SellSharesPanel& form = *m_sellPage;
  const Date date = form.date();
  if (date < m_startDate) {
    // The message names the day of the other form; it has always done so.
    MainWindow::error(u"You specified a sell date of " + m_dividendPage->shownDate() +
                      u",\nwhich is before your portfolio start date, " + localText(m_startDate) +
                      u".\nPlease re-enter the date for this, or cancel the sale\n"
                      u"as it won't affect your portfolio.");
    m_sellPage->focusDate();
    return false;
  }
  m_user->sellShares(form.code(), form.trade(), true);
  return true;
}

} // namespace Tallymoor
