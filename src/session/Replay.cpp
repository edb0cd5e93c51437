#include "session/Replay.h"
#include <algorithm>
#include <set>
#include <utility>

namespace Tallymoor {

namespace {

bool staysAtItsPlace(const ChangedPortfolio& portfolio) {
  return !portfolio.nameBefore.empty() && !portfolio.nameAfter.empty() &&
         portfolio.placeBefore == portfolio.placeAfter;
}

} // namespace

void makeRoomForNames(std::vector<RestoredPortfolio>& portfolios) {
  const auto isRenamed = [](const RestoredPortfolio& portfolio) {
    return !portfolio.nameNow.empty() && !portfolio.nameThen.empty() &&
           portfolio.nameNow != portfolio.nameThen;
  };
  std::set<String> namesNow;
  for (const RestoredPortfolio& portfolio : portfolios)
    namesNow.insert(portfolio.nameNow);
  const bool isTaken = std::any_of(portfolios.begin(), portfolios.end(), [&](const auto& portfolio) {
    return isRenamed(portfolio) && namesNow.contains(portfolio.nameThen);
  });
  for (RestoredPortfolio& portfolio : portfolios)
    portfolio.moves |= isTaken && isRenamed(portfolio);
}

Replay::Replay(std::vector<Portfolio> portfolios) {
  for (Portfolio& portfolio : portfolios) {
    const RecordsState state = stateOf(portfolio.text);
    m_order.push_back(portfolio.name);
    m_first[portfolio.name] = state;
    m_portfolios[portfolio.name] = {portfolio.name, std::move(portfolio.text), state};
  }
}

/// The known checksum tells mostly; changes of the first versions have another one.
bool Replay::isIn(const Followed& portfolio, const RecordsState& state) {
  return portfolio.state == state || StatesOf(portfolio.text).contain(state);
}

bool Replay::startsHere(const Change& change) const {
  std::set<String> names(m_order.begin(), m_order.end());
  for (const ChangedPortfolio& portfolio : change.portfolios) {
    if (portfolio.nameBefore.empty()) {
      if (!fits({}, portfolio.edits))
        return false;
      continue;
    }
    const auto found = m_portfolios.find(portfolio.nameBefore);
    if (found == m_portfolios.end() || !isIn(found->second, portfolio.before) ||
        !fits(found->second.text, portfolio.edits) || names.erase(portfolio.nameBefore) == 0)
      return false;
  }
  return std::all_of(change.portfolios.begin(), change.portfolios.end(), [&names](const auto& portfolio) {
    return portfolio.nameAfter.empty() || names.insert(portfolio.nameAfter).second;
  });
}

bool Replay::follow(const Change& change) {
  if (!startsHere(change))
    return false;
  const std::vector<String> order = orderAfter(change);
  std::vector<std::pair<String, Followed>> after;
  for (const ChangedPortfolio& portfolio : change.portfolios) {
    Followed followed;
    if (!portfolio.nameBefore.empty())
      followed = std::move(m_portfolios.extract(portfolio.nameBefore).mapped());
    applyTo(followed.text, portfolio.edits);
    followed.state = portfolio.after;
    followed.isChanged = true;
    followed.moves |= !staysAtItsPlace(portfolio);
    if (!portfolio.nameAfter.empty())
      after.emplace_back(portfolio.nameAfter, std::move(followed));
    else if (!followed.nameNow.empty())
      m_gone.push_back(followed.nameNow);
  }
  for (auto& [name, followed] : after)
    m_portfolios[name] = std::move(followed);
  m_order = order;
  return true;
}

std::vector<String> Replay::orderAfter(const Change& change) const {
  std::map<String, String> names; // empty for one that is taken out
  std::map<std::uint32_t, String> putIn;
  for (const ChangedPortfolio& portfolio : change.portfolios) {
    const bool stays = staysAtItsPlace(portfolio);
    if (!portfolio.nameBefore.empty())
      names[portfolio.nameBefore] = stays ? portfolio.nameAfter : String();
    if (!portfolio.nameAfter.empty() && !stays)
      putIn[portfolio.placeAfter] = portfolio.nameAfter;
  }
  std::vector<String> order;
  for (const String& name : m_order)
    if (const auto changed = names.find(name); changed == names.end())
      order.push_back(name);
    else if (!changed->second.empty())
      order.push_back(changed->second);
  for (const auto& [place, name] : putIn)
    order.insert(order.begin() + static_cast<std::ptrdiff_t>(std::min<std::size_t>(place, order.size())),
                 name);
  return order;
}

const std::string& Replay::textOf(const String& name) const {
  static const std::string NOT_THERE;
  const auto found = m_portfolios.find(name);
  return found == m_portfolios.end() ? NOT_THERE : found->second.text;
}

bool Replay::isSound() const {
  return std::all_of(m_portfolios.begin(), m_portfolios.end(), [](const auto& portfolio) {
    return !portfolio.second.isChanged || StatesOf(portfolio.second.text).contain(portfolio.second.state);
  });
}

std::vector<RestoredPortfolio> Replay::takeChanged() {
  std::vector<RestoredPortfolio> changed;
  for (const String& name : m_gone)
    changed.push_back({name, String(), 0, false, {}});
  for (std::size_t place = 0; place < m_order.size(); ++place) {
    Followed& portfolio = m_portfolios.at(m_order[place]);
    const bool isAsAtFirst = portfolio.nameNow == m_order[place] && !portfolio.moves &&
                             m_first.at(portfolio.nameNow) == portfolio.state;
    if (!isAsAtFirst)
      changed.push_back({portfolio.nameNow, m_order[place], static_cast<std::uint32_t>(place),
                         portfolio.moves && !portfolio.nameNow.empty(), std::move(portfolio.text)});
  }
  makeRoomForNames(changed);
  m_portfolios.clear();
  m_order.clear();
  return changed;
}

} // namespace Tallymoor
