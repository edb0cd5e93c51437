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
  std::optional<std::size_t> saved;
  for (std::size_t count = 0;; ++count) {
    if (std::all_of(states.begin(), states.end(), isOnDisk))
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

} // namespace

std::optional<Recovery> Recovery::of(const std::vector<Change>& changes,
                                     std::vector<Replay::Portfolio> portfolios) {
  const std::optional<std::size_t> saved = countOfSaved(changes, portfolios);
  if (!saved)
    return std::nullopt;
  Replay replay(std::move(portfolios));
  for (std::size_t i = *saved; i < changes.size(); ++i)
    if (!replay.follow(changes[i]))
      return std::nullopt;
  if (!replay.isSound())
    return std::nullopt;
  return Recovery{changes.size() - *saved, replay.takeChanged()};
}

String recoveredText(const std::vector<Change>& changes, std::size_t count) {
  return u"Tallymoor ended without saving the last time. " + changesText(count) +
         (count == 1 ? u" that was made since the last save was recovered:\n"
                     : u" that were made since the last save were recovered, the last of them:\n") +
         changes.back().sentence;
}

String refusedText(const std::vector<Change>& changes, const String& copy) {
  constexpr std::size_t MOST_SENTENCES = 20;
  String text = u"Your records were changed by another program. " + changesText(changes.size()) +
                u" that Tallymoor had made since its last save can't be added to them:\n";
  const std::size_t first = changes.size() - std::min(changes.size(), MOST_SENTENCES);
  for (std::size_t i = first; i < changes.size(); ++i)
    text += changes[i].sentence + u"\n";
  return text + u"Your records stay as they are on disk, and these changes are kept in\n" + copy + u".";
}

} // namespace Tallymoor
