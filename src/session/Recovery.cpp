#include "session/Recovery.h"
#include <algorithm>
#include <map>
#include <utility>

namespace Tallymoor {

namespace {

/// Of the portfolios that the changes touch, by name; nothing for one that is not there.
using States = std::map<String, std::optional<RecordsState>>;

/// Before the first of the changes.
States statesBefore(const std::vector<Change>& changes) {
  States states;
  for (const Change& change : changes)
    for (const ChangedPortfolio& portfolio : change.portfolios) {
      if (!portfolio.nameBefore.empty())
        states.emplace(portfolio.nameBefore, portfolio.before);
      if (!portfolio.nameAfter.empty())
        states.emplace(portfolio.nameAfter, std::nullopt);
    }
  return states;
}

/// The same, as a change has met them.
States statesBefore(States states, const Change& change) {
  for (const ChangedPortfolio& portfolio : change.portfolios)
    if (!portfolio.nameBefore.empty())
      states[portfolio.nameBefore] = portfolio.before;
  return states;
}

void follow(States& states, const Change& change) {
  for (const ChangedPortfolio& portfolio : change.portfolios)
    if (!portfolio.nameBefore.empty())
      states[portfolio.nameBefore] = std::nullopt;
  for (const ChangedPortfolio& portfolio : change.portfolios)
    if (!portfolio.nameAfter.empty())
      states[portfolio.nameAfter] = portfolio.after;
}

/// How many of the changes the records have already; nothing if they are of another history.
std::optional<std::size_t> countOfSaved(const std::vector<Change>& changes,
                                        const std::vector<Replay::Portfolio>& portfolios) {
  States states = statesBefore(changes);
  std::map<String, StatesOf> onDisk;
  for (const Replay::Portfolio& portfolio : portfolios)
    if (states.contains(portfolio.name))
      onDisk.emplace(portfolio.name, portfolio.text);
  const auto isOnDisk = [&onDisk](const auto& state) {
    const auto found = onDisk.find(state.first);
    return found == onDisk.end() ? !state.second : state.second && found->second.contain(*state.second);
  };
  const auto areOnDisk = [&isOnDisk](const States& states) {
    return std::all_of(states.begin(), states.end(), isOnDisk);
  };
  std::optional<std::size_t> saved;
  for (std::size_t count = 0;; ++count) {
    // Behind one that can't be read the next change knows better what was there.
    if (areOnDisk(states) || (count < changes.size() && areOnDisk(statesBefore(states, changes[count]))))
      saved = count;
    if (count == changes.size())
      return saved;
    follow(states, changes[count]);
  }
}

String changesText(std::size_t count) {
  return count == 1 ? String(u"The change")
                    : u"The " + String::fromLong(static_cast<std::int64_t>(count)) + u" changes";
}

/// The last of their sentences, a line each.
String sentencesOf(const std::vector<Change>& changes) {
  constexpr std::size_t MOST = 20;
  String text;
  for (std::size_t i = changes.size() - std::min(changes.size(), MOST); i < changes.size(); ++i)
    text += changes[i].sentence + u"\n";
  return text;
}

String madeText(const std::vector<Change>& made) {
  return changesText(made.size()) +
         (made.size() == 1 ? u" that was made since the last save was recovered:\n"
                           : u" that were made since the last save were recovered, the last of them:\n") +
         made.back().sentence;
}

} // namespace

std::optional<Recovery> Recovery::of(const std::vector<Change>& changes,
                                     std::vector<Replay::Portfolio> portfolios, bool isDamaged) {
  const std::optional<std::size_t> saved = countOfSaved(changes, portfolios);
  if (!saved)
    return std::nullopt;
  Recovery recovery;
  Replay replay(std::move(portfolios));
  for (std::size_t i = *saved; i < changes.size(); ++i)
    if (replay.follow(changes[i]))
      recovery.made.push_back(changes[i]);
    else if (isDamaged)
      recovery.lost.push_back(changes[i]);
    else
      return std::nullopt;
  if (!replay.isSound())
    return std::nullopt;
  recovery.portfolios = replay.takeChanged();
  return recovery;
}

String recoveredText(const std::vector<Change>& made) {
  return u"Tallymoor ended without saving the last time. " + madeText(made);
}

String partlyRecoveredText(const Recovery& recovery, const String& copy) {
  String text = u"A part of the journal of your changes is damaged, so changes since the last save may be "
                u"missing: please compare your last entries. ";
  if (!recovery.made.empty())
    text += madeText(recovery.made) + u"\n";
  if (!recovery.lost.empty())
    text += changesText(recovery.lost.size()) + u" behind the damage can't be added to your records:\n" +
            sentencesOf(recovery.lost);
  return text + u"The damaged journal is kept in\n" + copy + u".";
}

String refusedText(const std::vector<Change>& changes, bool isDamaged, const String& journalCopy,
                   const String& recordsCopy) {
  String text =
      (isDamaged ? u"A part of the journal of your changes is damaged. "
                 : u"Your records were changed by another program. ") +
      changesText(changes.size()) +
      u" that Tallymoor had made since its last save can't be added to them:\n" + sentencesOf(changes) +
      u"Your records stay as they are on disk, and these changes are kept in\n" + journalCopy + u".";
  if (!recordsCopy.empty())
    text += u"\nFile, Backups lists the records with these changes, as they should have been:\n" +
            recordsCopy + u".";
  return text;
}

} // namespace Tallymoor
