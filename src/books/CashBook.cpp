#include "books/CashBook.h"
#include "books/PortfolioEvents.h"
#include "books/SharePortfolioCapitalRecordUser.h"
#include "xml/PortfolioRecords.h"
#include <algorithm>

namespace Tallymoor {

namespace {

constexpr const char16_t* AMOUNT = u"The amount";

} // namespace

void CashBook::add(const Date& date, double value, std::int32_t type, const String& description) {
  XMLCashEvent& event = m_portfolio.cashEvents().add();
  event.set(date, value, description);
  event.setType(type);
  m_record.recordsChangedFrom(date);
}

void CashBook::credit(const Date& date, double value, std::int32_t type, const String& description) {
  if (type != CASH_EVENT_CREDIT) // a sale for less than its brokerage brings in less than nothing
    requireNotNegative(value, AMOUNT);
  add(date, value, type, description);
}

void CashBook::debit(const Date& date, double value, std::int32_t type, const String& description) {
  requireNotNegative(value, AMOUNT);
  add(date, value, type, description);
}

void CashBook::edit(XMLCashEvent& event, const Date& newDate, const Date& oldDate, double value,
                    const String& description) {
  if (!(event.amount() < 0.0))
    requireNotNegative(value, AMOUNT);
  const Date earliest = std::min({newDate, oldDate, event.day()});
  event.set(newDate, value, description);
  m_record.recordsChangedFrom(earliest);
}

void CashBook::remove(const XMLCashEvent& event) {
  if (!m_portfolio.cashEvents().contains(event))
    return;
  m_record.recordsChangedFrom(event.day());
  m_portfolio.cashEvents().remove(event);
}

bool CashBook::remove(const CashEntryKey& key) {
  const XMLCashEvent* entry = findCashEntry(m_portfolio, key);
  if (entry)
    remove(*entry);
  return entry != nullptr;
}

bool CashBook::move(const CashEntryKey& key, double oldValue, const Date& date, double value,
                    const String& description) {
  if (!(oldValue > 0.0))
    return false;
  XMLCashEvent* entry = findCashEntry(m_portfolio, key);
  if (!entry)
    return false;
  entry->set(date, value, description);
  return true;
}

} // namespace Tallymoor
