#pragma once
#include "books/CashBook.h"
#include "books/DividendBook.h"
#include "books/DividendEntry.h"
#include "books/Holdings.h"
#include "books/IndexTrend.h"
#include "books/PortfolioPrices.h"
#include "books/SharePortfolioCapitalRecordUser.h"
#include "books/SplitBook.h"
#include "books/Trade.h"
#include "books/TradeBook.h"
#include "foundation/Date.h"
#include "foundation/String.h"
#include <cstdint>
#include <vector>

namespace Tallymoor {

class MarketPrices;
class XMLBuyEvent;
class XMLCashEvent;
class XMLDividendEvent;
class XMLHeldShare;
class XMLSellEvent;
class XMLSharePortfolio;
class XMLSoldShare;
class XMLSplitAdjustment;
struct SharesAt;

/// Everything that happens to one share portfolio: a thin face over its books, whose headers say what each
/// operation does, and the figures of the portfolio's node. It works in place on the portfolio's tree, which
/// it does not own, and its books tell the capital record from which day on that is wrong.
///
/// Values pass through text on each store: 2 decimals for money and numbers of shares, 4 for prices, 6 for
/// dividend rates. Records have no keys: a purchase or sale finds its cash entry again because the texts of
/// date, amount, type and code agree. Events are passed as elements of the tree and told apart by identity.
///
/// Nothing is asked or shown here: a suspected split, a purchase from another market and a negative cash
/// reserve are results. Used on the GUI thread, under the big mutex.
class SharePortfolioUser {
public:
  /// The portfolio element and the prices must outlive this object. The capital record is that of
  /// the portfolio's name.
  SharePortfolioUser(XMLSharePortfolio& portfolio, MarketPrices& prices);
  ~SharePortfolioUser();
  SharePortfolioUser(const SharePortfolioUser&) = delete;
  SharePortfolioUser& operator=(const SharePortfolioUser&) = delete;

  const String& name() const;
  /// Renames the portfolio and the file of its capital record. The name goes raw into the document and the
  /// file name, so the caller cleans it. Throws Exception and changes nothing when the file can't be written.
  void rename(const String& newName);
  XMLSharePortfolio& portfolio() { return m_holdings.portfolio(); }
  const XMLSharePortfolio& portfolio() const { return m_holdings.portfolio(); }
  const Holdings& holdings() const { return m_holdings; }
  SharePortfolioCapitalRecordUser& capitalRecord() { return m_capitalRecord; }
  const SharePortfolioCapitalRecordUser& capitalRecord() const { return m_capitalRecord; }

  // ---- Holdings ----

  XMLHeldShare* findHeldShare(const String& code) { return m_holdings.findHeldShare(code); }
  const XMLHeldShare* findHeldShare(const String& code) const { return m_holdings.findHeldShare(code); }
  XMLSoldShare* findSoldShare(const String& code) { return m_holdings.findSoldShare(code); }
  const XMLSoldShare* findSoldShare(const String& code) const { return m_holdings.findSoldShare(code); }
  Date portfolioStartDate() const { return m_holdings.startDate(); }
  /// Of today, or of the day.
  double numHeld(const String& code) const { return m_holdings.numHeld(code, Date()); }
  double numHeld(const String& code, const Date& day) const { return m_holdings.numHeld(code, day); }
  /// A form asks the user about that before it closes.
  bool isOfAnotherMarket(const String& code) const { return m_holdings.isOfAnotherMarket(code); }
  /// Alarm limits of a held stock; 0 means none.
  void setMinMax(XMLHeldShare& heldShare, double min, double max);
  void setPortfolioMax(XMLHeldShare& heldShare, double value);

  // ---- PortfolioPrices ----

  double nearestRecordedPrice(const String& code, const Date& date) const {
    return m_holdings.nearestPrice(code, date).price;
  }
  const PortfolioPrices& prices() const { return m_prices; }
  double sharePriceFor(const String& code, const Date& date, bool upTo) const {
    return m_prices.priceOn(code, date, upTo).price;
  }

  // ---- Figures of the portfolio (percentages are plain percent numbers) ----

  /// From today's capital record; 0.0 when today has none.
  double sharesValueToday() const;
  double cashReserveToday() const;
  /// Both together as the record's capitalOn gives them: unlike the two above it throws Exception when today
  /// has no record.
  double capitalToday() const { return m_capitalRecord.capitalOn(Date()); }
  /// Percent since yesterday, or since the Friday before last weekend, apart from money put in or taken out;
  /// 0.0 unless both days have records.
  double dailyGain() const;
  double weeklyGain() const;

  // ---- TradeBook ----

  void buyShares(const String& code, const Trade& purchase) { m_trades.buyShares(code, purchase); }
  XMLBuyEvent& addBuyEvent(const String& code, const Trade& purchase) {
    return m_trades.addBuyEvent(code, purchase);
  }
  void sellShares(const String& code, const Trade& sale, bool firstInFirstOut) {
    m_trades.sellShares(code, sale, firstInFirstOut);
  }
  double proceedsOfSale(const String& code, const Trade& sale, bool firstInFirstOut) const {
    return m_trades.proceedsOfSale(code, sale, firstInFirstOut);
  }
  void removeHeldShare(const String& code) { m_trades.removeHeldShare(code); }
  void removeSoldShare(const String& code) { m_trades.removeSoldShare(code); }
  bool deleteBuyEvent(const String& code, const Date& date, double number) {
    return m_trades.deleteBuyEvent(code, date, number);
  }
  bool deleteSellEvent(const String& code, const Date& date, double number) {
    return m_trades.deleteSellEvent(code, date, number);
  }
  bool deleteSale(const XMLSellEvent& sale) { return m_trades.deleteSale(sale); }
  bool undoSale(const XMLSellEvent& sale) { return m_trades.undoSale(sale); }
  bool editBuyEvent(XMLBuyEvent& event, const Trade& purchase, double oldCost, const Date& oldDate) {
    return m_trades.editBuyEvent(event, purchase, oldCost, oldDate);
  }
  bool editSellEvent(XMLSellEvent& event, const SaleEntry& sale) {
    return m_trades.editSellEvent(event, sale);
  }

  // ---- CashBook ----

  void creditCash(const Date& date, double value, std::int32_t type, const String& description) {
    m_cash.credit(date, value, type, description);
  }
  void debitCash(const Date& date, double value, std::int32_t type, const String& description) {
    m_cash.debit(date, value, type, description);
  }
  void editCashEvent(XMLCashEvent& event, const Date& newDate, const Date& oldDate, double value,
                     const String& description) {
    m_cash.edit(event, newDate, oldDate, value, description);
  }
  void deleteCashEvent(const XMLCashEvent& event) { m_cash.remove(event); }
  /// Interest of the days from the first to the last. Throws Exception for a day that can't be read.
  double interestBetween(const Date& first, const Date& last) {
    return m_capitalRecord.cashOf(portfolio()).interestBetween(first, last);
  }
  enum class CashReserve { Sound, Negative };
  /// How the reserve of today stands, by the capital record as it is. A negative one is worth a warning.
  CashReserve checkCashReserve() const;

  // ---- DividendBook ----

  void receiveDividend(const DividendEntry& dividend) { m_dividends.receive(dividend); }
  bool editDividend(XMLDividendEvent& event, const DividendEntry& dividend, double oldDRPShares,
                    double oldBuyPrice, double oldValue, const Date& oldDate) {
    return m_dividends.edit(event, dividend, oldDRPShares, oldBuyPrice, oldValue, oldDate);
  }
  bool deleteDividend(const XMLDividendEvent& event) { return m_dividends.remove(event); }

  // ---- SplitBook ----

  /// Number and price of a parcel as of the day.
  SharesAt adjustedBuyEvent(const XMLBuyEvent& event, const Date& date) const;
  /// The same for a sold parcel; adjustments apply only to days on which it was held.
  SharesAt adjustedSellEvent(const XMLSellEvent& event, const Date& date) const;
  bool hasHeldAdjustment(const String& code, const Date& date) const {
    return m_splits.hasHeldAdjustment(code, date);
  }
  bool hasSoldAdjustment(const String& code, const Date& date) const {
    return m_splits.hasSoldAdjustment(code, date);
  }
  bool isAdjusted(const String& code, const Date& date) const { return m_splits.isAdjusted(code, date); }
  void recordAdjustment(const String& code, const Date& date, std::int32_t factor, bool reverse) {
    m_splits.record(code, date, {reverse ? -factor : factor});
  }
  void recordAdjustments(const String& code, const Date& date, const std::vector<std::int32_t>& factors) {
    m_splits.record(code, date, factors);
  }
  void setAdjustment(XMLSplitAdjustment& adjustment, const Date& date, std::int32_t factor, bool reverse);
  /// Called for records that were read from a file.
  void mendOldSales() { m_splits.mendOldSales(); }
  SplitBook::PriceCheck priceWithSplitCheck(const String& code, const Date& date) const {
    return m_splits.checkPrice(code, date);
  }

  // ---- IndexTrend ----

  String comparisonIndex() const { return m_index.code(); }
  bool hasComparisonIndex() const { return !comparisonIndex().empty(); }
  void setComparisonIndex(const String& code) { m_index.setCode(code); }
  double indexValueOn(const Date& date) const { return m_index.valueOn(date); }
  double indexDailyGain() const { return m_index.gainSince(Date().plusDays(-1)); }
  double indexWeeklyGain() const { return m_index.gainSince(Date().fridayBeforeLastWeekend()); }
  double indexMovingAverage(double period) { return m_index.movingAverage(period); }
  double computeIndexMovingAverage(double period) const { return m_index.computeMovingAverage(period); }
  static int trendDays(double period) { return IndexTrend::trendDays(period); }

private:
  double gainSince(const Date& then) const;

  SharePortfolioCapitalRecordUser m_capitalRecord;
  Holdings m_holdings;
  PortfolioPrices m_prices;
  IndexTrend m_index;
  SplitBook m_splits;
  CashBook m_cash;
  TradeBook m_trades;
  DividendBook m_dividends;
};

} // namespace Tallymoor
