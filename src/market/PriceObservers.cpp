#include "market/PriceObservers.h"
#include <algorithm>

namespace Tallymoor {

PricesObserver::~PricesObserver() = default;

void PricesObserver::pricesUpdateFinished() {}

bool PricesObserver::wantsHistory(const String&) const {
  return false;
}

void PricesObserver::historicalPriceChanged(const String&, const Date&, double) {}

void PricesObserver::pricesForgotten() {}

void PricesObserver::historyArrived(const String&) {}

void PriceObservers::add(PricesObserver* observer, Rank rank) {
  if (contains(observer))
    return;
  const auto endOfRank = std::upper_bound(m_registrations.begin(), m_registrations.end(), rank,
                                          [](Rank wanted, const Registration& r) { return wanted < r.rank; });
  m_registrations.insert(endOfRank, Registration{observer, rank});
}

void PriceObservers::remove(PricesObserver* observer) {
  std::erase_if(m_registrations, [observer](const Registration& r) { return r.observer == observer; });
}

bool PriceObservers::contains(const PricesObserver* observer) const {
  return std::any_of(m_registrations.begin(), m_registrations.end(),
                     [observer](const Registration& r) { return r.observer == observer; });
}

std::vector<PricesObserver*> PriceObservers::all() const {
  std::vector<PricesObserver*> observers;
  for (const Registration& registration : m_registrations)
    observers.push_back(registration.observer);
  return observers;
}

void PriceObservers::tellRecords(const String& code, const Date& date, double close) const {
  // By place, since an observer may remove itself.
  for (std::size_t i = 0; i < m_registrations.size(); ++i)
    if (m_registrations[i].rank == Rank::Records)
      m_registrations[i].observer->historicalPriceChanged(code, date, close);
}

void PriceObservers::tellPricesForgotten() const {
  for (std::size_t i = 0; i < m_registrations.size(); ++i)
    m_registrations[i].observer->pricesForgotten();
}

void PriceObservers::tellHistoryArrived(const String& code) const {
  for (std::size_t i = 0; i < m_registrations.size(); ++i)
    m_registrations[i].observer->historyArrived(code);
}

} // namespace Tallymoor
