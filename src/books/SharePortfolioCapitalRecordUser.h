#pragma once
#include "books/DayPrice.h"
#include "foundation/Date.h"
#include "foundation/LengthyFunctions.h"
#include "foundation/String.h"
#include "market/PriceUpdater.h"
#include <map>
#include <memory>
#include <optional>
#include <set>

namespace Tallymoor {

class CapitalRecordWalk;
class WalkedPortfolio;
class XMLElement;
class XMLSharePortfolioCapitalRecord;

/// The worth of one portfolio day by day: cash, and number and price of each stock held. The days are derived
/// from the portfolio's records and the prices, so they can always be thrown away: a change of the past drops
/// the days from it on, and the next update computes them again, forward only, up to today (or the view
/// date).
///
/// A day is computed with what prices are known. Where one is missing, an earlier close or a transaction
/// stands in, and the day is provisional; where the day was not over, its price is open. Such prices are
/// known by stock and day (m_unsettled). An update looks whether the day's own close has come, and has it
/// fetched if it may exist; and the cache tells of each close that changes. The price is then put right at
/// once, and the next update computes anew from that day on, since a split may lie there.
///
/// Days rise strictly both in the tree and in the index, so that a day's place in the one is its place in the
/// other. The GUI thread calls everything but the observer's operations, which come from the price updater;
/// the big mutex is held in both cases, and it is what guards the tree.
class SharePortfolioCapitalRecordUser : public HasLengthyFunctions, public PriceUpdater::PricesObserver {
public:
  /// Observes the prices and reads the portfolio's file; a file that can't be used is silently started again.
  explicit SharePortfolioCapitalRecordUser(const String& name);
  ~SharePortfolioCapitalRecordUser() override;
  SharePortfolioCapitalRecordUser(const SharePortfolioCapitalRecordUser&) = delete;
  SharePortfolioCapitalRecordUser& operator=(const SharePortfolioCapitalRecordUser&) = delete;

  void load();
  /// Writes the file if the days differ from it. The finished temporary is decoded once before it replaces
  /// the old file. Throws Exception; the old file then stands and the record stays modified.
  void save();
  /// True when the days differ from the file.
  bool isModified() const { return m_modified; }
  /// Removes the file, not the days in memory, which count as modified from then on. A missing file is fine.
  void removeFile();
  /// Full name of the file.
  const String& fileName() const { return m_fileName; }
  const String& name() const { return m_name; }
  /// Saves under the new name and removes the file of the old one. The same name does nothing. Throws
  /// Exception when the new file can't be written; the old name then stands.
  void rename(const String& newName);

  /// The records changed as of this day: drops it and every later day. Before the first day, all is dropped.
  void recordsChangedFrom(const Date& date);
  /// The days from this one on are computed again by the next update, or at the end of the one that runs;
  /// until then they stay. Kept in the document, too.
  void recomputeFrom(const Date& date);
  /// Computes the missing days up to and including today; 15 days and more run under a progress dialog, which
  /// the user may cancel after any day. May ask about share splits. Returns at once inside another update of
  /// this record, and in a background pass, where nothing may be asked. Throws Exception when a price is
  /// unavailable; the days before stay.
  void update(WalkedPortfolio& portfolio);

  bool hasDayCap(const Date& date) const;
  /// The day's element: Date, CashTotal, ShareVals, CashInjected. Valid until the record changes. Throws
  /// Exception when there is no such day.
  const XMLElement& dayCapFor(const Date& date) const;
  /// True when another price stands in for that of the day with some stock, so that what is computed from the
  /// day is provisional. False for a day without a record.
  bool isProvisional(const Date& date) const;
  /// The price of the stock on the day; nothing when it was not held then or the day has no record.
  std::optional<DayPrice> priceOn(const String& code, const Date& date) const;
  /// The first day; today when there is none.
  Date firstRecordDate() const;
  /// Value of the shares and cash at the end of the day. Throws as dayCapFor.
  double capitalOn(const Date& date) const;
  /// Value of the shares alone. Throws as dayCapFor.
  double sharesValueOn(const Date& date) const;
  /// Cash alone. Throws as dayCapFor.
  double cashOn(const Date& date) const;
  /// Money that came in from outside (negative: went out) after `from`, up to and including `to`.
  double externalFlowBetween(const Date& from, const Date& to) const;

  /// From the price updater's thread, under the big mutex; also called when the user types a price.
  void currentPriceUpdated(const String& code, double price) override;
  void pricesUpdateFinished() override {}
  /// True when another price stands in for a recent close of the stock that nobody has asked the source for.
  bool wantsHistory(const String& code) const override;
  void historicalPriceChanged(const String& code, const Date& date, double close) override;

  /// The walk of a long update, under a progress dialog.
  void runLengthyFunction(Progress& progress, int argument) override;

private:
  using DayCaps = std::map<Date, XMLElement*>;
  /// A day at which all stocks were looked at for splits, by the ratios of the options.
  struct SplitLook {
    Date day;
    double ratio;
    double reverseRatio;
    bool operator==(const SplitLook&) const = default;
  };

  /// What was asked of a day since it last changed. Tables ask the same for each of their rows.
  struct DayLookUps {
    std::optional<double> sharesValue;
    std::map<String, const XMLElement*> shareVals; ///< by code; empty before the first question
  };

  void indexDays();
  void startAgain();
  void setName(const String& name);
  void dropFrom(DayCaps::iterator first);
  void dropDaysAfterToday();
  Date nextDay(const WalkedPortfolio& portfolio) const;
  void checkLastDayForSplits(WalkedPortfolio& portfolio);
  void updateDays(WalkedPortfolio& portfolio);
  void updateTo(WalkedPortfolio& portfolio, Progress* progress);
  bool computeDay(CapitalRecordWalk& walk, const Date& day, Progress* progress);
  void setPrice(const String& code, const Date& date, double price, PriceStanding standing);
  const XMLElement* knownShareVal(const String& code, const Date& date) const;
  XMLElement* shareValOf(const String& code, const Date& date) const;
  void noteStanding(XMLElement& shareVal, const String& code, const Date& date, PriceStanding standing);
  void settlePrices();
  void fetchUnsettled(const String& code, const std::set<Date>& days);
  void settlePrice(const String& code, const Date& day);
  void forgetUnsettledFrom(const Date& date);

  std::unique_ptr<XMLSharePortfolioCapitalRecord> m_record;
  DayCaps m_dayCaps; ///< index of the tree by day; does not own
  mutable std::map<Date, DayLookUps> m_lookUps;
  String m_fileName;
  String m_name;
  WalkedPortfolio* m_updating = nullptr; ///< set during an update
  bool m_modified = false;
  std::map<String, std::set<Date>> m_unsettled; ///< days on which a stock's price is not final
  std::optional<SplitLook> m_splitLook; ///< that of the last day; none once one of its prices is another one
  std::optional<Date> m_recomputeFrom;  ///< the earliest day whose price is another one since
};

} // namespace Tallymoor
