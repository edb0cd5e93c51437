#include "entry/StartupRecording.h"
#include "books/SharePortfolioUser.h"
#include "entry/BuySharesPanel.h"
#include "entry/GetFloatPanel.h"
#include "entry/ReceiveDividendsPanel.h"
#include "entry/SellSharesPanel.h"
#include "entry/StartupPages.h"
#include "entry/StartupStages.h"
#include "widgets/MainWindow.h"
#include "xml/PortfolioRecords.h"

namespace Tallymoor {

namespace {

String localText(const Date& date) {
  return date.toString(DATE_DISPLAY_LOCAL);
}

} // namespace

bool StartupRecording::record(const GUIPanel* page, int stage, SharePortfolioUser& portfolio) {
  if (page == m_pages.buy)
    return recordPurchase(stage, portfolio);
  if (page == m_pages.dividend)
    return recordDividend(portfolio);
  if (page == m_pages.sell)
    return recordSale(portfolio);
  recordCash(stage, portfolio);
  return true;
}

void StartupRecording::recordCash(int stage, SharePortfolioUser& portfolio) {
  const Date date = m_pages.money->date();
  const double value = m_pages.money->value();
  const String text = m_pages.money->text();
  if (stage == STAGE_HELD)
    m_startDate = date;
  if (stage == STAGE_INTEREST)
    portfolio.creditCash(date, value, CASH_EVENT_INTEREST, u"INTEREST " + text);
  else if (stage == STAGE_WITHDRAWALS)
    portfolio.debitCash(date, value, CASH_EVENT_WITHDRAWAL, u"WITHDRAWAL " + text);
  else
    portfolio.creditCash(date, value, CASH_EVENT_DEPOSIT, u"DEPOSIT " + text);
}

bool StartupRecording::recordPurchase(int stage, SharePortfolioUser& portfolio) {
  const BuySharesPanel& form = *m_pages.buy;
  const Date date = form.date();
  const bool beforeStart = date < m_startDate;
  if (stage == STAGE_HELD && date > m_startDate) {
    MainWindow::error(u"You specified a buy date of " + localText(date) +
                      u",\nwhich is after your portfolio start date, " + localText(m_startDate) +
                      u".\nShares bought since then are entered in the next section.");
    m_pages.buy->focusDate();
    return false;
  }
  if (stage == STAGE_BOUGHT && !beforeStart) {
    portfolio.buyShares(form.code(), form.trade());
    return true;
  }
  if (stage == STAGE_BOUGHT &&
      MainWindow::question(u"You specified a buy date of " + localText(date) +
                           u",\nwhich is before your portfolio start date, " + localText(m_startDate) +
                           u".\nDo you want to re enter the date for this? If you don't\n"
                           u"the stock will be added as portfolio starting stock.")) {
    m_pages.buy->focusDate();
    return false;
  }
  portfolio.addBuyEvent(form.code(), form.trade());
  return true;
}

bool StartupRecording::recordDividend(SharePortfolioUser& portfolio) {
  const ReceiveDividendsPanel& form = *m_pages.dividend;
  const Date date = form.date();
  if (date < m_startDate) {
    MainWindow::error(u"You specified a dividend date of " + localText(date) +
                      u",\nwhich is before your portfolio start date, " + localText(m_startDate) +
                      u".\nPlease re-enter the date for this, or cancel the dividend\n"
                      u"as it won't affect your portfolio.");
    m_pages.dividend->focusDate();
    return false;
  }
  portfolio.receiveDividend(form.entry());
  return true;
}

bool StartupRecording::recordSale(SharePortfolioUser& portfolio) {
  const SellSharesPanel& form = *m_pages.sell;
  const Date date = form.date();
  if (date < m_startDate) {
    // The message names the day of the other form; it has always done so.
    MainWindow::error(u"You specified a sell date of " + m_pages.dividend->shownDate() +
                      u",\nwhich is before your portfolio start date, " + localText(m_startDate) +
                      u".\nPlease re-enter the date for this, or cancel the sale\n"
                      u"as it won't affect your portfolio.");
    m_pages.sell->focusDate();
    return false;
  }
  portfolio.sellShares(form.code(), form.trade(), true);
  return true;
}

} // namespace Tallymoor
