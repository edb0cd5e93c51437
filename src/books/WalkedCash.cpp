#include "books/WalkedCash.h"
#include "books/CashBalance.h"
#include "xml/PortfolioRecords.h"
#include <algorithm>

namespace Tallymoor {

void WalkedCash::read(const XMLSharePortfolio& portfolio) {
  const ElementList<const XMLCashEvent> events = portfolio.cashEvents();
  if (m_daysKnown && m_stamp == events.changeStamp())
    return;
  std::size_t place = 0;
  for (const XMLCashEvent& event : events) {
    const bool isNew = place == m_entries.size();
    if (isNew || m_entries[place].event != &event || m_entries[place].stamp != event.changeStamp()) {
      const Entry entry = entryOf(event);
      m_daysKnown = false;
      if (isNew)
        m_entries.push_back(entry);
      else
        m_entries[place] = entry;
    }
    ++place;
  }
  if (place < m_entries.size()) {
    m_entries.erase(m_entries.begin() + static_cast<std::ptrdiff_t>(place), m_entries.end());
    m_daysKnown = false;
  }
  if (!m_daysKnown)
    readDays();
  m_stamp = events.changeStamp();
}

WalkedCash::Entry WalkedCash::entryOf(const XMLCashEvent& event) {
  return {&event,
          event.changeStamp(),
          event.day(),
          signedAmount(event),
          event.isExternal(),
          event.type() == CASH_EVENT_INTEREST && !event.isSetAside()};
}

double WalkedCash::interestBetween(const Date& first, const Date& last) const {
  double sum = 0.0;
  for (const Entry& entry : m_entries)
    if (entry.interest && first <= entry.day && entry.day <= last)
      sum += entry.value;
  return sum;
}

/// Entries are mostly recorded in the order of their days.
void WalkedCash::readDays() {
  m_days.clear();
  for (const Entry& entry : m_entries)
    if (m_days.empty() || m_days.back() != entry.day)
      m_days.push_back(entry.day);
  std::sort(m_days.begin(), m_days.end());
  m_days.erase(std::unique(m_days.begin(), m_days.end()), m_days.end());
  m_daysKnown = true;
}

} // namespace Tallymoor
