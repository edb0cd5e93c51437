#pragma once
#include "session/ChangeHistory.h"
#include "session/Journal.h"
#include "session/OpenPortfolios.h"
#include "session/Replay.h"
#include <functional>
#include <memory>
#include <optional>
#include <utility>

namespace Tallymoor {

class ElementText;
struct Recovery;
class UserInteraction;

/// Makes the user's changes of the records: each happens whole or not at all, is in the journal before
/// anything shows it, and can be undone and made again.
///
/// The text of each portfolio as of the last change is kept, and what a command changed is found by
/// comparing. So a command may do whatever it wants, to one portfolio or to several.
///
/// GUI thread, under the big mutex.
class RecordChanges {
public:
  using Command = std::function<void()>;

  /// All outlive this object. Until `open`, changes are made without a journal.
  RecordChanges(XMLPortfolios& records, OpenPortfolios& portfolios, UserInteraction& user);
  ~RecordChanges();
  RecordChanges(const RecordChanges&) = delete;
  RecordChanges& operator=(const RecordChanges&) = delete;

  /// The one of the open session; null if there is none.
  static RecordChanges* current() { return s_current; }

  /// Opens the journal for the records that have just been read, and makes the changes in it that they lack.
  /// The user is told what was recovered, and what could not be. A journal that is missing is made with the
  /// first change.
  void open();
  /// Before the records are let go.
  void close();

  /// Runs a command and appends what it has changed to the journal, under that sentence. If either throws,
  /// the records are put back as they were before, the elements of portfolios that still stand among them,
  /// and the exception goes on. A command inside another one is a part of that.
  void make(const String& sentence, const Command& command);
  /// As `make` for a command whose work is too much to be lost: what it did stays even where the journal
  /// can't keep it, which the user is told.
  void take(const String& sentence, const Command& command);
  /// Makes the portfolios those of another document, as one change. The elements of those that have the same
  /// name stay, with other events in them.
  void replaceAll(const String& sentence, XMLPortfolios& others);
  /// Called before the elements of portfolios are replaced by others, when something is put back or undone;
  /// empty for none.
  void beforeOtherElements(Command command) { m_beforeOtherElements = std::move(command); }
  /// Keeps the text of a portfolio, which takes a moment for a large one, so that its first change does not
  /// have to. Until its text is kept, nothing may change it but by `make`.
  void prepare(const SharePortfolioUser& portfolio);
  /// What was changed without `make` becomes a change of its own, so that another one can be undone alone.
  /// Call it before toUndo and toRedo. Throws Exception.
  void noticeRest();
  /// To be called right before the records are written: gives the number of the last change in them.
  std::uint64_t beforeSave();
  /// To be called when they are on disk. Without the mark that it makes, as when there were more changes
  /// meanwhile, the next start finds by the records themselves what they lack.
  void saved(std::uint64_t lastChange);
  /// The text of a portfolio, if it is kept and still that; else null.
  const ElementText* knownText(const XMLElement& portfolio) const;
  /// Called after each change that was made, undone, made again or recovered; empty for none.
  void afterChange(Command command) { m_afterChange = std::move(command); }

  /// A change that can be undone or made again, without what it changed; null if there is none.
  const Journal::Entry* toUndo() const;
  const Journal::Entry* toRedo() const;
  /// Undoes the last change, or makes the last undone one again. Throws Exception and changes nothing where
  /// the records are not those that the change left.
  void undo();
  void redo();
  /// All changes, after what was changed without `make`. Good until the next one. Throws Exception.
  ChangeHistory history();
  /// Brings the records back to the state after the change with that number, 0 for the one before the oldest.
  /// That is a change itself, which can be undone. False, and there is no change, if nothing differs. Throws
  /// Exception and changes nothing where there is no way back.
  bool goBackTo(std::uint64_t number);
  /// The old and the new name of each portfolio that the last change has renamed.
  std::vector<std::pair<String, String>> lastRenamings();

private:
  /// A portfolio as of the last change.
  struct Kept {
    const XMLSharePortfolio* element; ///< only compared
    std::uint64_t stamp;
    std::uint32_t place;
    String name;
    std::shared_ptr<const ElementText> text;
    RecordsState state; ///< of the text
  };
  using Texts = std::vector<Kept>;
  /// An open portfolio.
  struct Present {
    XMLSharePortfolio& element;
    std::uint32_t place;
    String name;
  };
  enum class ChangedOnes { Written, Unwritten }; ///< unwritten ones have no text

  Journal& journal();
  std::uint64_t lastNumber() const;
  void openJournal();
  void recover();
  bool bringToRecovered(Recovery& recovery);
  String keepJournal();
  void drop(const std::vector<Change>& changes);
  void mark(Change::Kind kind, std::uint64_t other);

  const Kept* keptOf(const XMLSharePortfolio& element) const;
  std::vector<Replay::Portfolio> portfoliosNow() const;
  void keepAll();
  static Kept textNow(const Present& present, const Kept* former);
  std::vector<Present> presentOnes() const;
  Texts textsNow(ChangedOnes changed) const;
  static ChangedPortfolio changeOf(const Kept* before, const Kept* after);
  const Kept* formerOf(const Kept& now, const Texts& all) const;
  /// What was before and what is now, where they differ; null for what was not or is not there.
  std::vector<std::pair<const Kept*, const Kept*>> differencesTo(const Texts& now) const;
  std::vector<ChangedPortfolio> changesTo(const Texts& now) const;
  void note(Change change);
  void run(Change change, const Command& command);
  void append(Change& change);
  void putBack();
  void rename(const String& nameNow, const String& nameThen);
  void bringTo(std::vector<RestoredPortfolio> wanted);
  void apply(const std::vector<ChangedPortfolio>& portfolios);
  void makeAgain(const Journal::Entry* entry, Change::Kind kind);
  void follow(const Journal::Entry& entry);
  void followAll();
  const Journal::Entry* find(const std::vector<std::uint64_t>& numbers) const;

  XMLPortfolios& m_records;
  OpenPortfolios& m_portfolios;
  UserInteraction& m_user;
  std::optional<Journal> m_journal;
  Texts m_texts;
  Command m_beforeOtherElements;
  Command m_afterChange;
  bool m_isOpen = false;
  bool m_isRunning = false;
  std::vector<std::uint64_t> m_undo; ///< numbers of entries
  std::vector<std::uint64_t> m_redo;

  inline static RecordChanges* s_current = nullptr;
};

/// Makes a change by the current RecordChanges; without one, just runs the command.
void makeChange(const String& sentence, const std::function<void()>& command);

} // namespace Tallymoor
