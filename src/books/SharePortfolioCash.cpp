// The cash reserve of a portfolio.
#include "books/PortfolioEvents.h"
#include "books/SharePortfolioUser.h"
#include "foundation/Exception.h"
#include "foundation/RunTimeSettings.h"
#include "foundation/UserInteraction.h"
#include "xml/PortfolioRecords.h"
#include <algorithm>

namespace Tallymoor {

namespace {

SharePortfolioUser::CashWatcher* s_cashWatcher = nullptr; ///< GUI thread only

constexpr int WARNING_LEVEL = 1;
constexpr const char16_t* AMOUNT = u"The amount";

} // namespace

SharePortfolioUser::CashWatcher::~CashWatcher() = default;

void SharePortfolioUser::setCashWatcher(CashWatcher* watcher) {
  s_cashWatcher = watcher;
}

void SharePortfolioUser::tellCashChanged() {
  if (s_cashWatcher)
    s_cashWatcher->cashChanged(*this);
}

void SharePortfolioUser::addCashEvent(const Date& date, double value, std::int32_t type,
                                      const String& description) {
  XMLCashEvent& event = m_portfolio.cashEvents().add();
  event.set(date, value, description);
  event.setType(type);
  m_capitalRecord.recordsChangedFrom(date);
  tellCashChanged();
}

void SharePortfolioUser::creditCash(const Date& date, double value, std::int32_t type,
                                    const String& description) {
  if (type != CASH_EVENT_CREDIT) // a sale for less than its brokerage brings in less than nothing
    requireNotNegative(value, AMOUNT);
  addCashEvent(date, value, type, description);
}

void SharePortfolioUser::debitCash(const Date& date, double value, std::int32_t type,
                                   const String& description) {
  requireNotNegative(value, AMOUNT);
  addCashEvent(date, value, type, description);
}

void SharePortfolioUser::editCashEvent(XMLCashEvent& event, const Date& newDate, const Date& oldDate,
                                       double value, const String& description) {
  if (!(event.amount() < 0.0))
    requireNotNegative(value, AMOUNT);
  const Date earliest = std::min({newDate, oldDate, event.day()});
  event.set(newDate, value, description);
  m_capitalRecord.recordsChangedFrom(earliest);
  tellCashChanged();
}

void SharePortfolioUser::deleteCashEvent(const XMLCashEvent& event) {
  if (!m_portfolio.cashEvents().contains(event))
    return;
  m_capitalRecord.recordsChangedFrom(event.day());
  m_portfolio.cashEvents().remove(event);
  tellCashChanged();
}

bool SharePortfolioUser::moveCashEntry(const CashEntryKey& key, double oldValue, const Date& date,
                                       double value, const String& description) {
  if (!(oldValue > 0.0))
    return false;
  XMLCashEvent* entry = findCashEntry(m_portfolio, key);
  if (!entry)
    return false;
  entry->set(date, value, description);
  return true;
}

void SharePortfolioUser::checkCashReserve() {
  if (inBackgroundPass)
    return;
  try {
    m_capitalRecord.update(*this);
    // The text speaks of now.
    if (Date::hasFixedDate())
      return;
    if (cashReserveToday() < 0.0)
      UserInteraction::Instance().warnOnce(u"Warning: The cash reserve for " + name() +
                                               u" is currently negative. You need to reconcile the cash "
                                               u"reserve with the actual trading account.",
                                           u"Cash Reserve Warning", cashWarningKey(), WARNING_LEVEL);
    else
      forgetCashWarning();
  } catch (const Exception& failure) {
    UserInteraction::Instance().reportException(u"There was a problem refreshing your capital records.",
                                                failure);
  }
}

void SharePortfolioUser::forgetCashWarning() const {
  if (UserInteraction::exists())
    UserInteraction::Instance().warningOver(cashWarningKey());
}

} // namespace Tallymoor
