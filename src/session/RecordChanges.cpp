#include "session/RecordChanges.h"
#include "foundation/Constants.h"
#include "foundation/FileReplacement.h"
#include "foundation/Platform.h"
#include "foundation/UnforeseenFailure.h"
#include "foundation/UserInteraction.h"
#include "session/RecordTree.h"
#include "session/RecordsWriting.h"
#include "session/Recovery.h"
#include "session/UnappliedRecords.h"
#include "xml/ElementText.h"
#include "xml/PortfolioRecords.h"
#include <algorithm>
#include <chrono>
#include <filesystem>
#include <map>
#include <set>

namespace Tallymoor {

namespace {

String journalPath() {
  return dataDirectory(Platform::Instance(), APP_NAME) + u"Journal";
}

std::int64_t secondsNow() {
  using namespace std::chrono;
  return duration_cast<seconds>(system_clock::now().time_since_epoch()).count();
}

/// Empty where they can't be kept: the copy of the journal has the changes.
String recordsWithAllChanges(Journal& journal, bool isDamaged) {
  String path;
  try {
    withUnforeseenFailures([&] { path = keepUnappliedRecords(journal, isDamaged); });
  } catch (const Exception&) {
    path.clear();
  }
  return path;
}

/// Sets a flag for a scope.
class Running {
public:
  explicit Running(bool& flag) : m_flag(flag) { m_flag = true; }
  ~Running() { m_flag = false; }
  Running(const Running&) = delete;
  Running& operator=(const Running&) = delete;

private:
  bool& m_flag;
};

} // namespace

RecordChanges::RecordChanges(XMLPortfolios& records, OpenPortfolios& portfolios, UserInteraction& user)
    : m_records(records), m_portfolios(portfolios), m_user(user) {
  s_current = this;
}

RecordChanges::~RecordChanges() {
  if (s_current == this)
    s_current = nullptr;
}

// ---- The journal ----

void RecordChanges::open() {
  m_isOpen = true;
  if (filePresence(journalPath()) == FilePresence::Missing)
    return;
  try {
    openJournal();
    if (m_journal)
      recover();
  } catch (...) {
    close(); // leaves the journal to the next start
    throw;
  }
}

void RecordChanges::close() {
  m_isOpen = false;
  m_journal.reset();
  m_texts.clear();
  m_undo.clear();
  m_redo.clear();
}

/// A journal that is none is set aside. Where that fails too, each change tries again and fails with the
/// reason.
void RecordChanges::openJournal() {
  const String path = journalPath();
  try {
    withUnforeseenFailures([&] { m_journal.emplace(path); });
  } catch (const Exception& exception) {
    const String aside = unusedPath(path);
    std::error_code failed;
    std::filesystem::rename(path.toUTF8(), aside.toUTF8(), failed);
    m_user.warning(u"The journal of your changes can't be read:\n" + exception.message() +
                   (failed ? String(u"\nUntil that is mended, nothing can be changed.")
                           : u"\nIt was put aside as " + aside + u", and a new one is begun."));
    return;
  }
  followAll();
  if (m_journal->lostTornEntry())
    m_user.warning(u"The last change was not written to its end when Tallymoor stopped, and is not in your "
                   u"records.");
  if (m_journal->damagedPlaces() > 0 && !m_journal->isDamagedSinceSave())
    m_user.warning(u"A part of the journal of your changes is damaged. What can be read is used.");
}

Journal& RecordChanges::journal() {
  if (!m_journal)
    m_journal.emplace(journalPath());
  return *m_journal;
}

/// What is on disk is to be a state that the journal knows.
std::uint64_t RecordChanges::beforeSave() {
  try {
    if (!m_texts.empty())
      withUnforeseenFailures([this] { noticeRest(); });
  } catch (const Exception&) {
    // The save matters more, and has its own reasons to fail.
  }
  return lastNumber();
}

std::uint64_t RecordChanges::lastNumber() const {
  return m_journal && !m_journal->entries().empty() ? m_journal->entries().back().number : 0;
}

const ElementText* RecordChanges::knownText(const XMLElement& portfolio) const {
  const Kept* const kept = keptOf(elementAs<XMLSharePortfolio>(portfolio));
  return kept && kept->stamp == portfolio.changeStamp() ? kept->text.get() : nullptr;
}

void RecordChanges::saved(std::uint64_t lastChange) {
  if (lastChange == 0 || lastNumber() != lastChange ||
      m_journal->entries().back().kind == Change::Kind::Saved)
    return;
  Change mark;
  mark.kind = Change::Kind::Saved;
  try {
    append(mark);
    m_journal->thin({}, mark.moment);
  } catch (const Exception&) {
    // Without the mark the next start finds by the records themselves that they lack nothing.
  }
}

void RecordChanges::append(Change& change) {
  change.moment = secondsNow();
  try {
    withUnforeseenFailures([&] { journal().append(change); });
  } catch (const Exception& exception) {
    throw Exception(u"The change was not made, because it can't be kept safe:\n" + exception.message());
  }
}

// ---- Recovery ----

void RecordChanges::recover() {
  std::vector<Change> changes;
  const auto& entries = m_journal->entries();
  const auto lastSave = std::find_if(entries.rbegin(), entries.rend(), [](const Journal::Entry& entry) {
    return entry.kind == Change::Kind::Saved;
  });
  for (const Journal::Entry& entry : m_journal->changes())
    if (lastSave == entries.rend() || entry.place > lastSave->place)
      changes.push_back(m_journal->read(entry));
  const bool isDamaged = m_journal->isDamagedSinceSave();
  if (changes.empty() && !isDamaged)
    return;
  keepAll();
  std::optional<Recovery> recovery = Recovery::of(changes, portfoliosNow(), isDamaged);
  if (!recovery || (!recovery->made.empty() && !bringToRecovered(*recovery))) {
    const String copy = keepJournal();
    const String records = recordsWithAllChanges(*m_journal, isDamaged);
    drop(changes);
    mark(Change::Kind::Saved, 0);
    m_user.warning(refusedText(changes, isDamaged, copy, records));
    return;
  }
  if (isDamaged) {
    const String copy = keepJournal();
    drop(recovery->lost);
    if (recovery->made.empty())
      mark(Change::Kind::Saved, 0); // so that the damage is not told again
    m_user.warning(partlyRecoveredText(*recovery, copy));
  } else if (!recovery->made.empty())
    m_user.information(recoveredText(recovery->made));
}

/// False if the records can't be read that the changes lead to; then nothing has changed.
bool RecordChanges::bringToRecovered(Recovery& recovery) {
  try {
    bringTo(std::move(recovery.portfolios));
  } catch (...) {
    putBack();
    return false;
  }
  m_texts = textsNow(ChangedOnes::Written);
  if (m_afterChange)
    m_afterChange();
  return true;
}

/// Gives the place of the copy.
String RecordChanges::keepJournal() {
  String aside = unusedPath(m_journal->path());
  copyFileReplacing(m_journal->path(), aside);
  return aside;
}

/// What does not belong to the records is not tried again, and neither undone nor made again.
void RecordChanges::drop(const std::vector<Change>& changes) {
  for (const Change& dropped : changes)
    mark(Change::Kind::Dropped, dropped.number);
  followAll();
}

void RecordChanges::mark(Change::Kind kind, std::uint64_t other) {
  Change mark;
  mark.kind = kind;
  mark.other = other;
  append(mark);
}

// ---- Changes ----

/// All of them, as of the last change.
std::vector<Replay::Portfolio> RecordChanges::portfoliosNow() const {
  std::vector<Replay::Portfolio> portfolios;
  for (const Present& present : presentOnes())
    if (const Kept* const kept = keptOf(present.element))
      portfolios.push_back({present.name, kept->text->text()});
  return portfolios;
}

const RecordChanges::Kept* RecordChanges::keptOf(const XMLSharePortfolio& element) const {
  const auto found = std::find_if(m_texts.begin(), m_texts.end(),
                                  [&element](const Kept& kept) { return kept.element == &element; });
  return found == m_texts.end() ? nullptr : &*found;
}

RecordChanges::Kept RecordChanges::textNow(const Present& present, const Kept* former) {
  auto text = std::make_shared<const ElementText>(present.element, former ? former->text.get() : nullptr);
  const RecordsState state = stateOf(text->fingerprint());
  return {
      &present.element, present.element.changeStamp(), present.place, present.name, std::move(text), state};
}

/// The open portfolios in the order of their records: not the one that the wizard is at.
std::vector<RecordChanges::Present> RecordChanges::presentOnes() const {
  std::map<const XMLSharePortfolio*, String> names;
  for (const auto& [name, portfolio] : m_portfolios)
    names[&portfolio->portfolio()] = name;
  std::vector<Present> present;
  std::uint32_t place = 0;
  for (XMLSharePortfolio& element : m_records.portfolios()) {
    if (const auto name = names.find(&element); name != names.end())
      present.push_back({element, place, name->second});
    ++place;
  }
  return present;
}

RecordChanges::Texts RecordChanges::textsNow(ChangedOnes changed) const {
  Texts texts;
  for (const Present& present : presentOnes()) {
    const Kept* const kept = keptOf(present.element);
    const bool isSame = kept && kept->stamp == present.element.changeStamp();
    if (isSame)
      texts.push_back({&present.element, kept->stamp, present.place, present.name, kept->text, kept->state});
    else if (changed == ChangedOnes::Written)
      texts.push_back(textNow(present, kept));
    else
      texts.push_back({&present.element, 0, present.place, present.name, nullptr, {}});
  }
  return texts;
}

void RecordChanges::prepare(const SharePortfolioUser& portfolio) {
  if (!m_isOpen || keptOf(portfolio.portfolio()))
    return;
  for (const Present& present : presentOnes())
    if (&present.element == &portfolio.portfolio())
      m_texts.push_back(textNow(present, nullptr));
}

void RecordChanges::keepAll() {
  for (const Present& present : presentOnes())
    if (!keptOf(present.element))
      m_texts.push_back(textNow(present, nullptr));
}

/// What is null was not there, or is not there now.
ChangedPortfolio RecordChanges::changeOf(const Kept* before, const Kept* after) {
  if (!before || !after) {
    const std::string text = (before ? before : after)->text->text();
    const auto versionOf = [&text](const Kept* portfolio) {
      return portfolio ? PortfolioText::of(portfolio->name, portfolio->place, text)
                       : PortfolioText::of(String(), 0, {});
    };
    return ChangedPortfolio::between(versionOf(before), versionOf(after));
  }
  ChangedPortfolio change{before->name, after->name, before->place, after->place, before->state,
                          after->state, {}};
  for (const ElementText::Difference& difference : ElementText::differences(*before->text, *after->text))
    for (TextEdit& edit : editsBetween(difference.before, difference.after)) {
      edit.place += difference.place;
      change.edits.push_back(std::move(edit));
    }
  return change;
}

/// The kept portfolio that this one was: the same element, or else one of its name whose element has gone.
const RecordChanges::Kept* RecordChanges::formerOf(const Kept& now, const Texts& all) const {
  if (const Kept* const kept = keptOf(*now.element))
    return kept;
  const auto isNow = [&all](const Kept& kept) {
    return std::any_of(all.begin(), all.end(),
                       [&kept](const Kept& other) { return other.element == kept.element; });
  };
  const auto found = std::find_if(m_texts.begin(), m_texts.end(),
                                  [&](const Kept& kept) { return kept.name == now.name && !isNow(kept); });
  return found == m_texts.end() ? nullptr : &*found;
}

std::vector<std::pair<const RecordChanges::Kept*, const RecordChanges::Kept*>>
RecordChanges::differencesTo(const Texts& now) const {
  std::vector<std::pair<const Kept*, const Kept*>> different;
  std::set<const Kept*> met;
  for (const Kept& after : now) {
    const Kept* const before = formerOf(after, now);
    met.insert(before);
    if (!before || before->text != after.text)
      different.emplace_back(before, &after);
  }
  for (const Kept& before : m_texts)
    if (!met.contains(&before))
      different.emplace_back(&before, nullptr);
  return different;
}

std::vector<ChangedPortfolio> RecordChanges::changesTo(const Texts& now) const {
  std::vector<ChangedPortfolio> changes;
  for (const auto& [before, after] : differencesTo(now))
    if (!before || !after || before->name != after->name || before->state != after->state ||
        (before->element != after->element && before->place != after->place))
      changes.push_back(changeOf(before, after));
  return changes;
}

void RecordChanges::make(const String& sentence, const Command& command) {
  if (!m_isOpen || m_isRunning) {
    command();
    return;
  }
  noticeRest();
  Change change;
  change.sentence = sentence;
  run(std::move(change), command);
}

void RecordChanges::replaceAll(const String& sentence, XMLPortfolios& others) {
  make(sentence, [&] {
    std::vector<RestoredPortfolio> wanted;
    std::set<String> names;
    for (XMLSharePortfolio& other : others.portfolios()) {
      const String name = other.portfolioName();
      const auto place = static_cast<std::uint32_t>(names.size());
      if (names.insert(name).second)
        wanted.push_back(
            {m_portfolios.contains(name) ? name : String(), name, place, false, ElementText(other).text()});
    }
    for (const auto& [name, portfolio] : m_portfolios)
      if (!names.contains(name))
        wanted.push_back({name, String(), 0, false, std::string()});
    bringTo(std::move(wanted));
    for (const auto& [name, portfolio] : m_portfolios)
      portfolio->mendOldSales();
  });
}

void RecordChanges::noticeRest() {
  if (!m_isOpen || m_isRunning)
    return;
  keepAll();
  Change change;
  change.sentence = u"Other changes";
  note(std::move(change));
}

void RecordChanges::take(const String& sentence, const Command& command) {
  if (m_isOpen)
    keepAll();
  command();
  if (!m_isOpen)
    return;
  try {
    Change change;
    change.sentence = sentence;
    withUnforeseenFailures([&] { note(std::move(change)); });
  } catch (const Exception& exception) {
    m_user.reportException(u"Save now: the journal of your changes can't keep this one.\n", exception);
  }
}

/// Appends what has changed since the last change.
void RecordChanges::note(Change change) {
  Texts now = textsNow(ChangedOnes::Written);
  change.portfolios = changesTo(now);
  if (!change.portfolios.empty()) {
    append(change);
    follow(m_journal->entries().back());
  }
  m_texts = std::move(now);
  if (!change.portfolios.empty() && m_afterChange)
    m_afterChange();
}

void RecordChanges::run(Change change, const Command& command) {
  const Running running(m_isRunning);
  try {
    command();
    note(std::move(change));
  } catch (...) {
    putBack();
    throw;
  }
}

void RecordChanges::putBack() {
  // A command that was stopped may have left what can't be written.
  const Texts now = textsNow(ChangedOnes::Unwritten);
  std::vector<RestoredPortfolio> wanted;
  for (const auto& [before, after] : differencesTo(now))
    wanted.push_back({after ? after->name : String(), before ? before->name : String(),
                      before ? before->place : 0, before && after && before->element != after->element,
                      before ? before->text->text() : std::string()});
  bringTo(std::move(wanted));
  m_texts = textsNow(ChangedOnes::Written);
}

/// On a full disk the file of the capital record keeps its name for this run: the records matter more.
void RecordChanges::rename(const String& nameNow, const String& nameThen) {
  try {
    renamePortfolio(m_portfolios, nameNow, nameThen);
  } catch (const Exception&) {
    auto entry = m_portfolios.extract(nameNow);
    entry.key() = nameThen;
    entry.mapped()->portfolio().setPortfolioName(nameThen);
    m_portfolios.insert(std::move(entry));
  }
}

void RecordChanges::bringTo(std::vector<RestoredPortfolio> wanted) {
  if (wanted.empty())
    return;
  if (m_beforeOtherElements)
    m_beforeOtherElements();
  std::sort(wanted.begin(), wanted.end(),
            [](const RestoredPortfolio& a, const RestoredPortfolio& b) { return a.place < b.place; });
  for (const RestoredPortfolio& portfolio : wanted)
    if (!portfolio.nameNow.empty() && (portfolio.nameThen.empty() || portfolio.moves))
      removePortfolio(m_portfolios, m_records, portfolio.nameNow);
  for (const RestoredPortfolio& portfolio : wanted) {
    if (portfolio.nameThen.empty())
      continue;
    if (portfolio.nameNow.empty() || portfolio.moves) {
      openFromText(m_portfolios, m_records, portfolio.text, portfolio.place);
      continue;
    }
    if (portfolio.nameNow != portfolio.nameThen)
      rename(portfolio.nameNow, portfolio.nameThen);
    replaceRecords(*m_portfolios.at(portfolio.nameThen), portfolio.text);
  }
}

// ---- Undo and redo ----

const Journal::Entry* RecordChanges::find(const std::vector<std::uint64_t>& numbers) const {
  if (!m_journal || numbers.empty())
    return nullptr;
  const auto& entries = m_journal->entries();
  const auto found = std::find_if(entries.rbegin(), entries.rend(), [&numbers](const Journal::Entry& entry) {
    return entry.number == numbers.back();
  });
  return found == entries.rend() ? nullptr : &*found;
}

const Journal::Entry* RecordChanges::toUndo() const {
  return find(m_undo);
}

const Journal::Entry* RecordChanges::toRedo() const {
  return find(m_redo);
}

void RecordChanges::follow(const Journal::Entry& entry) {
  const auto move = [&entry](std::vector<std::uint64_t>& from, std::vector<std::uint64_t>& to) {
    if (!from.empty() && from.back() == entry.other)
      from.pop_back();
    to.push_back(entry.other);
  };
  if (entry.kind == Change::Kind::Undone)
    move(m_undo, m_redo);
  else if (entry.kind == Change::Kind::Redone)
    move(m_redo, m_undo);
  else if (entry.kind == Change::Kind::Made) {
    m_undo.push_back(entry.number);
    m_redo.clear();
  }
}

void RecordChanges::followAll() {
  m_undo.clear();
  m_redo.clear();
  for (const Journal::Entry& entry : m_journal->changes())
    follow(entry);
}

void RecordChanges::undo() {
  noticeRest();
  makeAgain(toUndo(), Change::Kind::Undone);
}

void RecordChanges::redo() {
  noticeRest();
  makeAgain(toRedo(), Change::Kind::Redone);
}

ChangeHistory RecordChanges::history() {
  noticeRest();
  return {m_journal ? &*m_journal : nullptr, portfoliosNow()};
}

bool RecordChanges::goBackTo(std::uint64_t number) {
  if (!m_isOpen || m_isRunning)
    return false;
  ChangeHistory past = history();
  const auto& changes = past.changes();
  const auto last = std::find_if(changes.begin(), changes.end(),
                                 [number](const Journal::Entry& entry) { return entry.number == number; });
  Change change;
  change.sentence = last == changes.end() ? String(u"Return to the oldest state")
                                          : u"Return to the state after " + last->sentence;
  const std::size_t count = m_journal ? m_journal->entries().size() : 0;
  run(std::move(change), [&] { bringTo(past.wayBackTo(number)); });
  return m_journal && m_journal->entries().size() > count;
}

std::vector<std::pair<String, String>> RecordChanges::lastRenamings() {
  std::vector<std::pair<String, String>> renamings;
  if (m_journal && !m_journal->entries().empty())
    for (const ChangedPortfolio& portfolio : m_journal->read(m_journal->entries().back()).portfolios)
      if (!portfolio.nameBefore.empty() && !portfolio.nameAfter.empty() &&
          portfolio.nameBefore != portfolio.nameAfter)
        renamings.emplace_back(portfolio.nameBefore, portfolio.nameAfter);
  return renamings;
}

void RecordChanges::makeAgain(const Journal::Entry* entry, Change::Kind kind) {
  if (!entry || m_isRunning)
    return;
  Change made = m_journal->read(*entry);
  Change change;
  change.kind = kind;
  change.other = made.number;
  change.sentence = made.sentence;
  if (kind == Change::Kind::Undone)
    for (ChangedPortfolio& portfolio : made.portfolios)
      portfolio = portfolio.reversed();
  run(std::move(change), [&] { apply(made.portfolios); });
}

void RecordChanges::apply(const std::vector<ChangedPortfolio>& portfolios) {
  std::vector<RestoredPortfolio> wanted;
  for (const ChangedPortfolio& portfolio : portfolios) {
    const auto kept = std::find_if(m_texts.begin(), m_texts.end(), [&portfolio](const Kept& text) {
      return text.name == portfolio.nameBefore;
    });
    const auto text = portfolio.appliedTo(kept == m_texts.end() ? std::string() : kept->text->text());
    const bool nameIsTaken =
        std::none_of(portfolios.begin(), portfolios.end(),
                     [&](const auto& other) { return other.nameBefore == portfolio.nameAfter; }) &&
        m_portfolios.contains(portfolio.nameAfter);
    if (!text || nameIsTaken || (kept == m_texts.end()) != portfolio.nameBefore.empty())
      throw Exception(u"The records of " +
                      (portfolio.nameBefore.empty() ? portfolio.nameAfter : portfolio.nameBefore) +
                      u" are not those that this change left, so it stays as it is.");
    wanted.push_back({portfolio.nameBefore, portfolio.nameAfter, portfolio.placeAfter,
                      !portfolio.nameBefore.empty() && !portfolio.nameAfter.empty() &&
                          portfolio.placeBefore != portfolio.placeAfter,
                      *text});
  }
  makeRoomForNames(wanted);
  bringTo(std::move(wanted));
}

void makeChange(const String& sentence, const std::function<void()>& command) {
  if (RecordChanges* const changes = RecordChanges::current())
    changes->make(sentence, command);
  else
    command();
}

} // namespace Tallymoor
