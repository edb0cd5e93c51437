#pragma once
#include "books/CapitalRecordWalk.h"
#include "books/DayPrice.h"
#include "books/DividendEntry.h"
#include "books/SharePortfolioCapitalRecordUser.h"
#include "books/Trade.h"
#include "foundation/Date.h"
#include "foundation/String.h"
#include <cstdint>
#include <map>
#include <optional>
#include <vector>

namespace Tallymoor {

class SuspectedSplit;
class XMLBuyEvent;
class XMLCashEvent;
class XMLDividendEvent;
class XMLHeldShare;
class XMLParcel;
class XMLSellEvent;
class XMLSharePortfolio;
class XMLSoldShare;
class XMLSplitAdjustment;
struct CashEntryKey;
struct SharesAt;

/// Everything that happens to one share portfolio: buying and selling, split adjustment, dividends, cash, and
/// the figures that the views show. It works in place on the portfolio's tree, which it does not own, and
/// tells its capital record from which day on that has become wrong.
///
/// Values pass through text on each store: 2 decimals for money and numbers of shares, 4 for prices, 6 for
/// dividend rates. Records have no keys: a purchase or sale finds its cash entry again because the texts of
/// date, amount, type and code agree. Events are passed as elements of the tree and told apart by identity.
///
/// Used on the GUI thread, under the big mutex.
class SharePortfolioUser : public WalkedPortfolio {
public:
  /// Hears that the cash reserve of some portfolio has changed, in the middle of the operation that changed
  /// it: note what is to be refreshed, and return.
  class CashWatcher {
  public:
    virtual ~CashWatcher();
    virtual void cashChanged(SharePortfolioUser& portfolio) = 0;
  };
  /// One for the program, not owned; null takes it away.
  static void setCashWatcher(CashWatcher* watcher);

  /// The portfolio element must outlive this object. Reads the capital record under the portfolio's name.
  explicit SharePortfolioUser(XMLSharePortfolio& portfolio);
  ~SharePortfolioUser() override;
  SharePortfolioUser(const SharePortfolioUser&) = delete;
  SharePortfolioUser& operator=(const SharePortfolioUser&) = delete;

  const String& name() const;
  /// Renames the portfolio and the file of its capital record. The name goes raw into the document and the
  /// file name, so the caller cleans it. Throws Exception and changes nothing when the
  /// file can't be written.
  void rename(const String& newName);
  XMLSharePortfolio& portfolio() { return m_portfolio; }
  const XMLSharePortfolio& portfolio() const override { return m_portfolio; }
  SharePortfolioCapitalRecordUser& capitalRecord() { return m_capitalRecord; }
  const SharePortfolioCapitalRecordUser& capitalRecord() const { return m_capitalRecord; }
  /// Removes the portfolio's own files; for a portfolio that is about to be deleted.
  void removeFiles();

  /// Code of the comparison index; empty when there is none.
  String comparisonIndex() const;
  bool hasComparisonIndex() const;
  /// An empty code takes the index away. The moving averages of the old one are forgotten.
  void setComparisonIndex(const String& code);

  // ---- Finding ----

  /// Null when the code is not held.
  XMLHeldShare* findHeldShare(const String& code);
  const XMLHeldShare* findHeldShare(const String& code) const;
  /// Null when nothing was sold of the code.
  XMLSoldShare* findSoldShare(const String& code);
  const XMLSoldShare* findSoldShare(const String& code) const;
  /// Earliest purchase (of held or sold shares) or cash event; today when there is nothing.
  Date portfolioStartDate() const override;
  /// Split-adjusted number of shares of the code as of today, without purchases that are set aside for their
  /// unreadable dates; 0 when it is not held.
  double numHeld(const String& code) const;
  /// The same parcels in shares of the day: what a sale on it can take.
  double numHeld(const String& code, const Date& day) const;
  /// Price of the purchase or sale of the stock nearest in time; 0.0 with no record of it.
  double nearestRecordedPrice(const String& code, const Date& date) const;
  /// The price of the day and what it rests on: what the user typed for it, the source's close (of the real
  /// today the current price), the last known close before it, and only then nearestRecordedPrice; the last
  /// two in shares of the day. upTo only chooses in which direction a fetch reaches. Throws Exception when
  /// there is none, or one that shows as zero.
  DayPrice dayPriceFor(const String& code, const Date& date, bool upTo) const;
  /// The price alone. Throws as dayPriceFor.
  double sharePriceFor(const String& code, const Date& date, bool upTo) const;

  // ---- Figures of the portfolio (percentages are plain percent numbers) ----

  /// From today's capital record; 0.0 when today has none.
  double sharesValueToday() const;
  double cashReserveToday() const;
  /// Both together as the record's capitalOn gives them: unlike the two above it throws Exception when today
  /// has no record.
  double capitalToday() const;
  /// Percent since yesterday, or since the Friday before last weekend, apart from money put in or taken out;
  /// 0.0 unless both days have records.
  double dailyGain() const;
  double weeklyGain() const;
  /// The same of the comparison index; 0.0 without one. Throw as sharePriceFor.
  double indexDailyGain() const;
  double indexWeeklyGain() const;
  /// 0.0 without an index. Nothing stands in for a missing value: throws as sharePriceFor.
  double indexValueOn(const Date& date) const;

  // ---- Buying and selling ----
  // Here and below, a number, price, brokerage, rate or tax below zero throws Exception and changes nothing.

  /// True when the stock is of another market than the first one held, which decides the portfolio's
  /// currency. A form asks about that before it closes.
  bool isOfAnotherMarket(const String& code) const;
  /// Records a purchase and its cash entry.
  void buyShares(const String& code, const Trade& purchase);
  /// Stores the parcel only, with no cash entry.
  XMLBuyEvent& addBuyEvent(const String& code, const Trade& purchase);
  /// Takes the number from the parcels in their stored order, from the first or from the last, whatever their
  /// dates; each parcel gives a sale and a cash entry, the first of which bears the whole brokerage. What the
  /// parcels can't supply is dropped. Throws Exception when the stock is not held.
  void sellShares(const String& code, const Trade& sale, bool firstInFirstOut);
  /// What the cash would gain by that sale. Shares that are not held count, too.
  double proceedsOfSale(const String& code, const Trade& sale, bool firstInFirstOut) const;

  // ---- Removing and changing records ----

  /// The stock with all its parcels; cash entries stay. A code that is not held does nothing.
  void removeHeldShare(const String& code);
  void removeSoldShare(const String& code);
  /// number is the one as adjusted for splits up to today. True if the purchase's cash entry was found and
  /// removed too.
  bool deleteBuyEvent(const String& code, const Date& date, double number);
  /// date is the day of sale, number the one sold on it. True if both cash entries, of the sale and of its
  /// purchase, were found and removed; one that is found alone is removed all the same.
  bool deleteSellEvent(const String& code, const Date& date, double number);
  /// The same for a sale of this portfolio (see SaleDeletion for what it will do).
  bool deleteSale(const XMLSellEvent& sale);
  /// Deletes the sale alone, with its own cash entry, and gives its shares back: to the rest of their
  /// purchase where that is still held, else as a parcel among the others by its day. The purchase's cash
  /// entry stays. Only the comment of a purchase that was sold whole is not known any more, and the limits of
  /// a stock that was. True if the cash entry was found.
  bool undoSale(const XMLSellEvent& sale);
  /// Stores the new values (an empty comment leaves the old one) and lets the cash entry of the old cost and
  /// date follow. True if that was found.
  bool editBuyEvent(XMLBuyEvent& event, const Trade& purchase, double oldCost, const Date& oldDate);
  /// Likewise for a sale; the old amounts and dates are read from the event. True if both cash entries were
  /// found; one that is found alone follows all the same.
  bool editSellEvent(XMLSellEvent& event, const SaleEntry& sale);
  /// Alarm limits of a held stock; 0 means none.
  void setMinMax(XMLHeldShare& heldShare, double min, double max);
  void setPortfolioMax(XMLHeldShare& heldShare, double value);

  // ---- Dividends and cash ----

  /// Types 1, 3 and 4 (credit, interest, deposit). The value is positive, but that of a credit may be less
  /// than zero: a sale that brings in less than its brokerage.
  void creditCash(const Date& date, double value, std::int32_t type, const String& description);
  /// Types 2 and 5 (debit, withdrawal). The value is positive here too: the type alone gives the sign.
  void debitCash(const Date& date, double value, std::int32_t type, const String& description);
  /// Overwrites all but the type. A value that is negative already may stay so.
  void editCashEvent(XMLCashEvent& event, const Date& newDate, const Date& oldDate, double value,
                     const String& description);
  /// An event that is none of this portfolio's does nothing.
  void deleteCashEvent(const XMLCashEvent& event);
  /// Records a dividend. With drpShares it was reinvested and makes a parcel at drpRate, without brokerage
  /// and without a cash entry; else it makes a cash entry of the gross amount. The tax withheld is only
  /// noted.
  void receiveDividend(const DividendEntry& dividend);
  /// Stores the new values (an empty country and no tax leave the old ones) and lets the cash entry or parcel
  /// follow. oldValue is the cash entry's amount, 0.0 when the dividend was reinvested; oldDRPShares and
  /// oldBuyPrice find the parcel of a reinvested one. False if the old cash entry or parcel was not found: a
  /// dividend that changes between cash and shares is then paid in the new way all the same.
  bool editDividend(XMLDividendEvent& event, const DividendEntry& dividend, double oldDRPShares,
                    double oldBuyPrice, double oldValue, const Date& oldDate);
  /// True if the cash entry or parcel of the dividend was found and removed.
  bool deleteDividend(const XMLDividendEvent& event);
  /// Brings the capital record up to date and warns, once a run, of a negative cash reserve; takes the
  /// warning back when the reserve no longer is. Reports failures itself. Does nothing in a background pass.
  void checkCashReserve();
  /// Takes the warning of a negative cash reserve back, since it speaks of a portfolio that goes.
  void forgetCashWarning() const;

  // ---- Share splits ----

  /// Number and price of a parcel as of the day.
  SharesAt adjustedBuyEvent(const XMLBuyEvent& event, const Date& date) const;
  /// The same for a sold parcel; adjustments apply only to days on which it was held.
  SharesAt adjustedSellEvent(const XMLSellEvent& event, const Date& date) const;
  /// True if any parcel of the code has an adjustment that starts on that very day.
  bool hasHeldAdjustment(const String& code, const Date& date) const;
  bool hasSoldAdjustment(const String& code, const Date& date) const;
  /// False if some parcel held across the day has no adjustment that starts on it: an answer counts for its
  /// own day alone.
  bool isAdjusted(const String& code, const Date& date) const;
  /// Notes the factor on each parcel held across the day, over what is already noted for it. Factor 1 records
  /// that there was no split.
  void recordAdjustment(const String& code, const Date& date, std::int32_t factor, bool reverse);
  /// The same for several factors that count together: 3 and -2 for three shares that two became.
  void recordAdjustments(const String& code, const Date& date, const std::vector<std::int32_t>& factors);
  void setAdjustment(XMLSplitAdjustment& adjustment, const Date& date, std::int32_t factor, bool reverse);
  /// Puts sales of an earlier version into the terms of their purchase (OldSales); the days since those
  /// purchases are computed again at the next update. Called for records that were read from a file.
  void mendOldSales();
  /// The day's price. A jump since the day before (SuspectedSplit) is put to the user as a split, once,
  /// unless a background pass runs, and the answer is recorded on the parcels. A price that only stands in
  /// for that of its day says nothing of splits. Throws as sharePriceFor.
  double priceWithSplitCheck(const String& code, const Date& date);
  /// The same, telling whether the user was asked.
  CheckedPrice checkPriceForSplit(const String& code, const Date& date) override;

  // ---- Trend of the comparison index ----

  /// Exponential moving average of the comparison index over trendDays weekdays before today, started from
  /// the mean of as many before those. Kept for each period and day. 0.0 without an index. Throws as
  /// TallymoorInternet::historicalPrice.
  double indexMovingAverage(double period);
  /// The same, computed anew.
  double computeIndexMovingAverage(double period) const;
  /// The period as the whole number of days that is worked with: at least one, no fraction, bounded above.
  static int trendDays(double period);

private:
  double gainSince(const Date& then) const;
  double indexGainSince(const Date& then) const;
  XMLBuyEvent* findParcel(XMLHeldShare& stock, const Date& date, double number) const;
  void removeParcel(XMLHeldShare& stock, const XMLBuyEvent& parcel);
  double sellFromBuyEvent(XMLHeldShare& stock, XMLBuyEvent& parcel, const String& code, const Trade& sale);
  XMLSellEvent& addSellEvent(const String& code);
  void storeSoldShares(XMLSellEvent& sale, const Date& buyDate, const Date& sellDate, const SharesAt& shares,
                       bool recordedAsSold);
  void removeSale(const XMLSellEvent& sale);
  XMLHeldShare& heldShareFor(const String& code);
  void giveBack(const XMLSellEvent& sale, const XMLBuyEvent* rest);
  XMLBuyEvent& parcelOfSale(const XMLSellEvent& sale);
  String boughtComment(const XMLSellEvent& sale, const XMLBuyEvent& parcel) const;
  String reinvestmentComment(const XMLBuyEvent& parcel) const;
  void addCashEvent(const Date& date, double value, std::int32_t type, const String& description);
  bool moveCashEntry(const CashEntryKey& key, double oldValue, const Date& date, double value,
                     const String& description);
  void tellCashChanged();
  String cashWarningKey() const { return name() + u"CRW"; }
  void payDividend(const DividendEntry& dividend);
  bool moveCashDividend(const CashEntryKey& key, double oldValue, const DividendEntry& now);
  void moveReinvestment(const String& oldCode, XMLHeldShare* stock, XMLBuyEvent* parcel,
                        const DividendEntry& now);
  bool removeCashDividend(const DividendEntry& dividend);
  bool removeReinvestment(const DividendEntry& dividend);
  /// Adds the splits after the one day, up to the other, that a parcel of the stock knows and this one does
  /// not.
  void takeKnownSplits(XMLParcel& parcel, const Date& after, const Date& last);
  /// Leaves the parcel the splits after its purchase, up to the last day, that any of its stock knows.
  void takeSplitsBetween(XMLParcel& parcel, const Date& bought, const Date& last);
  std::optional<DayPrice> marketPrice(const String& code, const Date& date, bool upTo) const;
  DayPrice standInPrice(const String& code, const Date& date) const;
  bool askForSplit(const String& code, const Date& date, const SuspectedSplit& split);

  XMLSharePortfolio& m_portfolio;
  SharePortfolioCapitalRecordUser m_capitalRecord;
  std::map<int, std::map<Date, double>> m_indexTrends; ///< moving averages by period in days, then day
};

} // namespace Tallymoor
