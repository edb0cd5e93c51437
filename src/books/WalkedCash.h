#pragma once
#include "foundation/Date.h"
#include <cstdint>
#include <vector>

namespace Tallymoor {

class XMLCashEvent;
class XMLSharePortfolio;

/// The cash entries of a portfolio as a walk over its days adds them up, close together in memory. There are
/// thousands of them, and a walk follows each transaction, so they are kept from one to the next: only those
/// that have changed are read again.
class WalkedCash {
public:
  struct Entry {
    const XMLCashEvent* event;
    std::uint64_t stamp; ///< of the event when it was read
    Date day;
    double value; ///< with the sign of its type
    bool external;
    bool interest; ///< and not set aside
  };

  /// Reads what has changed since the last time. Throws Exception for a day that can't be read.
  void read(const XMLSharePortfolio& portfolio);

  /// In the order of the records.
  const std::vector<Entry>& entries() const { return m_entries; }
  /// Days with entries, rising, each once.
  const std::vector<Date>& days() const { return m_days; }
  /// Interest of the days from the first to the last.
  double interestBetween(const Date& first, const Date& last) const;

private:
  static Entry entryOf(const XMLCashEvent& event);
  void readDays();

  std::uint64_t m_stamp = 0; ///< of all events when they were read without a failure
  std::vector<Entry> m_entries;
  std::vector<Date> m_days;
  bool m_daysKnown = false; ///< the days are those of the entries
};

} // namespace Tallymoor
