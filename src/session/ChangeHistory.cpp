#include "session/ChangeHistory.h"
#include "foundation/Exception.h"
#include <algorithm>

namespace Tallymoor {

namespace {

Change reversed(Change change) {
  for (ChangedPortfolio& portfolio : change.portfolios)
    portfolio = portfolio.reversed();
  return change;
}

} // namespace

ChangeHistory::ChangeHistory(Journal* journal, std::vector<Replay::Portfolio> now)
    : m_journal(journal), m_changes(journal ? journal->changes() : std::vector<Entry>()),
      m_texts(std::move(now)), m_next(m_changes.size()) {}

/// Goes as far as there is a way.
bool ChangeHistory::goTo(std::size_t next) {
  while (m_next > next) {
    if (!m_texts.follow(reversed(m_journal->read(m_changes[m_next - 1]))))
      return false;
    --m_next;
  }
  while (m_next < next) {
    if (!m_texts.follow(m_journal->read(m_changes[m_next])))
      return false;
    ++m_next;
  }
  return true;
}

std::vector<ChangeHistory::Difference> ChangeHistory::differencesOf(const Entry& change) {
  const Change read = m_journal->read(change);
  const std::size_t index = firstAfter(change.number) - 1;
  std::vector<Difference> differences;
  for (const ChangedPortfolio& portfolio : read.portfolios)
    differences.push_back(
        {portfolio.nameAfter.empty() ? portfolio.nameBefore : portfolio.nameAfter, {}, {}, portfolio.edits});
  // The texts after it come first on the way back.
  const auto take = [&](std::size_t next, const String ChangedPortfolio::*name,
                        std::string Difference::*text) {
    if (!goTo(next))
      return false;
    for (std::size_t i = 0; i < differences.size(); ++i)
      differences[i].*text = m_texts.textOf(read.portfolios[i].*name);
    return true;
  };
  const bool isReached = take(index + 1, &ChangedPortfolio::nameAfter, &Difference::after) &&
                         take(index, &ChangedPortfolio::nameBefore, &Difference::before);
  for (Difference& difference : differences)
    if (isReached)
      difference.edits.clear();
    else
      difference.after.clear();
  return differences;
}

std::size_t ChangeHistory::firstAfter(std::uint64_t number) const {
  const auto first =
      std::upper_bound(m_changes.begin(), m_changes.end(), number,
                       [](std::uint64_t value, const Entry& entry) { return value < entry.number; });
  return static_cast<std::size_t>(first - m_changes.begin());
}

std::size_t ChangeHistory::countSince(std::uint64_t number) const {
  return m_changes.size() - firstAfter(number);
}

std::vector<RestoredPortfolio> ChangeHistory::wayBackTo(std::uint64_t number) {
  if (goTo(firstAfter(number)) && m_texts.isSound())
    return m_texts.takeChanged();
  throw Exception(
      u"There is no way back to that change: one that was made since then does not belong to your "
      u"records. Nothing was taken back.");
}

} // namespace Tallymoor
