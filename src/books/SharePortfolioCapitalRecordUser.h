#pragma once
#include "books/CapitalRecord.h"
#include "books/CapitalRecordWalk.h"
#include "foundation/LengthyFunctions.h"
#include "market/PriceUpdater.h"
#include <set>
#include <utility>
#include <vector>

namespace Tallymoor {

class MarketPrices;
struct HistoryNeed;

/// The capital record of a portfolio, kept in step with its records and with the prices. The days are derived
/// from both, so they can always be thrown away: a change of the past drops the days from it on, and the next
/// update computes them again, forward only, up to today (or the view date).
///
/// A day is computed with what prices are known. Where one is missing, an earlier close or a transaction
/// stands in, and the day is provisional; where the day was not over, its price is open. An update looks
/// whether the day's own close has come, and has it fetched if it may exist; and the cache tells of each
/// close that changes. The price is then put right at once, and the next update computes again from that day
/// on, since a split may lie there.
///
/// The GUI thread calls everything but the observer's operations, which come from the price updater; the big
/// mutex is held in both cases.
class SharePortfolioCapitalRecordUser : public HasLengthyFunctions,
                                        public PriceUpdater::PricesObserver,
                                        public CapitalRecord {
public:
  /// Observes the prices, which must outlive it.
  SharePortfolioCapitalRecordUser(const String& name, MarketPrices& prices);
  ~SharePortfolioCapitalRecordUser() override;

  /// Computes the missing days up to and including today; 15 days and more run under a progress dialog, which
  /// the user may cancel after any day. May ask about share splits. Returns at once inside another update of
  /// this record, and in a background pass, where nothing may be asked. Throws Exception when a price is
  /// unavailable; the days before stay.
  void update(WalkedPortfolio& portfolio);
  /// The portfolio's cash entries as they are now. Throws Exception for a day that can't be read.
  const WalkedCash& cashOf(const XMLSharePortfolio& portfolio);

  /// From the price updater's thread, under the big mutex; also called when the user types a price.
  void currentPriceUpdated(const String& code, double price) override;
  void pricesUpdateFinished() override {}
  /// True when another price stands in for a recent close of the stock that the source was not asked for.
  /// False before the file was read: the first update then looks for the closes itself.
  bool wantsHistory(const String& code) const override;
  void historicalPriceChanged(const String& code, const Date& date, double close) override;
  /// The next update computes all days again. The file goes at once, so that a crash before that can't leave
  /// days of other prices.
  void pricesForgotten() override;

  /// The walk of a long update, under a progress dialog.
  void runLengthyFunction(Progress& progress, int argument) override;

private:
  /// A day at which all stocks were looked at for splits, by the ratios of the options.
  struct SplitLook {
    Date day;
    double ratio;
    double reverseRatio;
    bool operator==(const SplitLook&) const = default;
  };

  /// When the unsettled prices were looked at.
  struct SettledAt {
    std::uint64_t prices; ///< MarketPrices::changeStamp
    Date today;
    bool operator==(const SettledAt&) const = default;
  };

  void daysChanged(const Date& first, const Date& last) override;
  void dropDaysAfterToday();
  Date nextDay(const WalkedPortfolio& portfolio) const;
  void checkLastDayForSplits(WalkedPortfolio& portfolio);
  void updateDays(WalkedPortfolio& portfolio);
  void updateTo(WalkedPortfolio& portfolio, Progress* progress);
  bool computeDay(CapitalRecordWalk& walk, const Date& day, Progress* progress);
  void askAboutToldSplits(WalkedPortfolio& portfolio);
  void settlePrices();
  std::vector<HistoryNeed> unsettledNeeds() const;
  void addNeeds(std::vector<HistoryNeed>& needs, const String& code, const std::set<Date>& days) const;
  void settlePrice(const String& code, const Date& day);

  MarketPrices& m_prices;
  WalkedRecords m_records;                              ///< as the last walk has read them
  WalkedPortfolio* m_updating = nullptr;                ///< set during an update
  std::optional<SettledAt> m_settled;                   ///< none while the record waits for a price
  std::set<std::pair<String, Date>> m_splitsAskedAbout; ///< that a source has told
  std::optional<SplitLook> m_splitLook; ///< that of the last day; none once one of its prices is another one
};

} // namespace Tallymoor
