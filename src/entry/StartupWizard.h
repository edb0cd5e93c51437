#pragma once
#include "entry/StartupPages.h"
#include "entry/StartupRecording.h"
#include "foundation/Date.h"
#include "widgets/Wizard.h"
#include <memory>
#include <optional>

namespace Tallymoor {

class RecordedEntries;
class SharePortfolioUser;
class XMLPortfolios;
class XMLSharePortfolio;

/// Takes a new user through setting up a portfolio from paper records: its name, the cash at a start date,
/// the shares held then, and all that has happened since. Beside every page stands what has been recorded.
/// Each page is recorded as it is left, by the operations that the menus use; "< Back" takes that back. Until
/// Finish the portfolio stands in the records but belongs to the wizard, and goes with it on Cancel.
class StartupWizard : public Wizard {
  FXDECLARE(StartupWizard)
public:
  /// The root element of the records ("SharePortfolios") outlives the wizard.
  StartupWizard(FXWindow* owner, XMLPortfolios& records);
  /// Takes a portfolio that was not finished out of the records.
  ~StartupWizard() override;

  /// The portfolio, once execute() has given 1; its records stay where they stand.
  std::unique_ptr<SharePortfolioUser> takePortfolio();

  /// Removes the portfolio with all that was entered, and its file. Asks first when anything was, unless the
  /// program ends.
  long onCancel(FXObject*, FXSelector, void*) override;
  long onNext(FXObject*, FXSelector, void*) override;
  /// One page back, and no further until the next "Next >".
  long onBack(FXObject*, FXSelector, void*) override;
  /// The list of what was recorded gets narrower on a small screen.
  void create() override;

protected:
  StartupWizard();

private:
  /// What "< Back" restores: how it was before the last "Next >".
  struct State {
    GUIPanel* page = nullptr;                   ///< that was left
    std::unique_ptr<XMLSharePortfolio> records; ///< a copy; null before there is a portfolio
    int stage = 0;
    Date startDate;
    bool sectionFinished = false;
  };
  /// An entry that was typed and left by "< Back".
  struct TypedEntry {
    GUIPanel* page;
    int stage;
  };

  void buildPages();

  State state() const;
  void restore(const State& before);
  void rememberTypedEntry();
  bool showsTypedEntry(const GUIPanel* page);

  bool mayDropEntries() const;
  void makePortfolio();
  void dropPortfolio();
  void dropComputedDays();

  bool leavePage();
  void leaveLoopPage();
  int nextStage() const;
  void showSection();
  void showLoopPage();
  void showEntryPage(GUIPanel* page, const String& title, const String& description);
  void makeRecordCurrentFor(const GUIPanel* page);

  StartupPages m_pages;
  StartupRecording m_recording{m_pages};
  RecordedEntries* m_entries = nullptr;
  int m_stage = 0; ///< a StartupStage
  std::unique_ptr<SharePortfolioUser> m_user;
  XMLSharePortfolio* m_portfolio = nullptr; ///< stands in the records
  XMLPortfolios* m_records = nullptr;
  State m_before;
  std::optional<TypedEntry> m_typedEntry;
};

} // namespace Tallymoor
