#include "session/Recovery.h"
#include <algorithm>

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
                                        const std::map<String, std::string>& texts) {
  States states = statesBefore(changes);
  std::map<String, StatesOf> onDisk;
  for (const auto& [name, text] : texts)
    if (states.contains(name))
      onDisk.emplace(name, text);
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

/// Carries the portfolios through the changes.
class Replay {
public:
  explicit Replay(const std::map<String, std::string>& texts) {
    for (const auto& [name, text] : texts)
      m_portfolios[name] = {{name, name, 0, false, text}, false};
  }

  /// False if the change does not belong to the texts.
  bool follow(const Change& change) {
    std::vector<std::pair<String, Followed>> after;
    for (const ChangedPortfolio& change : change.portfolios) {
      Followed portfolio;
      if (!change.nameBefore.empty()) {
        const auto found = m_portfolios.extract(change.nameBefore);
        if (found.empty())
          return false;
        portfolio = std::move(found.mapped());
      }
      std::optional<std::string> text = edited(portfolio.portfolio.text, change.edits);
      if (!text)
        return false;
      portfolio.portfolio.text = std::move(*text);
      portfolio.portfolio.nameThen = change.nameAfter;
      portfolio.portfolio.place = change.placeAfter;
      portfolio.portfolio.moves |= change.placeBefore != change.placeAfter;
      portfolio.isChanged = true;
      if (!change.nameAfter.empty())
        after.emplace_back(change.nameAfter, std::move(portfolio));
      else if (!portfolio.portfolio.nameNow.empty())
        m_gone.push_back(std::move(portfolio.portfolio));
    }
    for (auto& [name, portfolio] : after)
      if (!m_portfolios.emplace(name, std::move(portfolio)).second)
        return false;
    return true;
  }

  /// Whether the texts are those that the last change of each left.
  bool endsIn(const States& states) const {
    return std::all_of(states.begin(), states.end(), [this](const auto& state) {
      const auto found = m_portfolios.find(state.first);
      if (found == m_portfolios.end())
        return !state.second;
      return state.second && StatesOf(found->second.portfolio.text).contain(*state.second);
    });
  }

  std::vector<Recovery::Portfolio> takeChanged() {
    std::vector<Recovery::Portfolio> changed = std::move(m_gone);
    for (auto& [name, portfolio] : m_portfolios)
      if (portfolio.isChanged)
        changed.push_back(std::move(portfolio.portfolio));
    return changed;
  }

private:
  struct Followed {
    Recovery::Portfolio portfolio{};
    bool isChanged = false;
  };

  std::map<String, Followed> m_portfolios;
  std::vector<Recovery::Portfolio> m_gone;
};

String changesText(std::size_t count) {
  return count == 1 ? String(u"The change")
                    : u"The " + String::fromLong(static_cast<std::int64_t>(count)) + u" changes";
}

} // namespace

std::optional<Recovery> Recovery::of(const std::vector<Change>& changes,
                                     const std::map<String, std::string>& texts) {
  const std::optional<std::size_t> saved = countOfSaved(changes, texts);
  if (!saved)
    return std::nullopt;
  States states = statesBefore(changes);
  Replay replay(texts);
  for (std::size_t i = 0; i < changes.size(); ++i) {
    Tallymoor::follow(states, changes[i]);
    if (i >= *saved && !replay.follow(changes[i]))
      return std::nullopt;
  }
  if (!replay.endsIn(states))
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
