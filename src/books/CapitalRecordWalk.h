#pragma once
#include "books/DayPrice.h"
#include "books/WalkedCash.h"
#include "books/WalkedParcels.h"
#include "foundation/Date.h"
#include "foundation/String.h"
#include <cstddef>
#include <limits>
#include <map>
#include <vector>

namespace Tallymoor {

class HasLengthyFunctions;
class MarketPrices;
class Progress;
struct HistoryNeed;
class XMLSharePortfolio;

/// The price of a stock on a day, looked at for a split.
struct CheckedPrice {
  DayPrice price;
  bool adjusted; ///< an answer has just been recorded, so numbers as of the day may have changed
};

/// The portfolio whose days are computed: its events, the prices of its stocks, and what the user says of
/// them meanwhile.
class WalkedPortfolio {
public:
  virtual ~WalkedPortfolio();
  virtual const XMLSharePortfolio& portfolio() const = 0;
  /// The first day that has a record.
  virtual Date portfolioStartDate() const = 0;
  /// The day's price. A jump since the day before may be put to the user as a split; the answer is recorded
  /// on the parcels. Throws Exception when there is no price.
  virtual CheckedPrice checkPriceForSplit(const String& code, const Date& date) = 0;
  /// Runs an update of many days, which the user may follow and cancel.
  virtual void runLengthy(const String& caption, const String& heading, unsigned steps,
                          HasLengthyFunctions& work, int argument) = 0;
  /// True when the user, or the end of the program, wants the work under way to end.
  virtual bool isStopWanted() const = 0;
};

/// What a walk has read of the records and leaves to the next one.
struct WalkedRecords {
  WalkedCash cash;
  WalkedParcels parcels;
};

/// The figures of a portfolio day by day, forward, as the capital record writes them.
///
/// A day is defined by all records up to it: the cash is the sum of all cash events up to the day in the
/// order of the records; the number of a stock is the sum over its parcels, each adjusted for splits as of
/// the day, with the sum written at two decimals after each parcel; parts of a divided purchase are added up
/// first, since three thirds of 100 would else be 99.99. Years of days over thousands of events
/// are too many to work that out afresh each day, so the walk reads the records once and recomputes a figure
/// only on the days on which one of its events begins, ends or is adjusted. Prices are looked at on each day.
///
/// Refers to the portfolio's events, so these must not change while it lives, except the adjustments that it
/// records itself. GUI thread, under the big mutex.
class CapitalRecordWalk {
public:
  struct Holding {
    String code;
    String number;
    String price;
    PriceStanding standing;
  };

  /// The records are what an earlier walk over the portfolio has left, or new; they outlive the walk.
  CapitalRecordWalk(WalkedPortfolio& portfolio, MarketPrices& prices, WalkedRecords& records);
  ~CapitalRecordWalk();

  // Days are asked for in rising order.

  /// All cash up to the end of the day.
  const String& cashTotal(const Date& day);
  /// Money from outside on the very day; empty when it would read as zero.
  String cashInjected(const Date& day) const;
  /// The stocks held at the end of the day, in the order of the records. Asks about splits. The first price
  /// that is not cached has those of all stocks and of all days from there on fetched, of which a progress
  /// text tells. Null when the user has cancelled, or the program is to end. Throws Exception when a price is
  /// unavailable.
  const std::vector<Holding>* holdings(const Date& day, Progress* progress);
  struct SplitCheck {
    bool adjusted = false; ///< an answer was recorded
    bool complete = true;  ///< false when some stock had no price to be looked at
  };
  /// Asks about the splits of the stocks held on the day and does nothing else.
  SplitCheck checkForSplits(const Date& day);

private:
  /// Parcels of one stock that follow each other in the records.
  struct Parcels {
    const std::vector<WalkedParcels::Parcel>* all;
    std::size_t firstRank; ///< place of the first in the order of the records
  };
  struct Stock {
    String code;
    std::vector<Parcels> parcels; ///< those held, those sold
    std::size_t rank = NOT_HELD;  ///< of the first parcel held on the day of the walk
    String number;
    String price;
    double lastPrice = 0.0; ///< what `price` says
    bool stale = true;
    bool adjusted = false; ///< the walk has recorded a split, which the parcels that were read don't know
    bool historyKnown = false;
  };
  /// A day on which the number of a stock may change.
  struct Change {
    Date day;
    std::size_t stock;
  };
  static constexpr std::size_t NOT_HELD = std::numeric_limits<std::size_t>::max();

  void readParcels();
  Stock& stockOf(const String& code);
  void noteChanges(const WalkedParcels::Parcel& parcel, std::size_t stock);
  void advanceTo(const Date& day);
  void recompute(Stock& stock, const Date& day);
  bool fetchPrices(const Stock& stock, const Date& day, Progress* progress) const;
  std::vector<HistoryNeed> pricesFrom(const Date& day) const;
  void announceFetch(Stock& stock, const Date& day, Progress* progress);
  bool isCancelled(const Progress* progress) const;

  WalkedPortfolio& m_portfolio;
  MarketPrices& m_prices;
  WalkedCash& m_cash;
  WalkedParcels& m_parcels;
  std::size_t m_nextCashDay = 0;
  String m_cashTotal;
  std::map<String, std::size_t> m_places; ///< of the stocks, by code
  std::vector<Stock> m_stocks;            ///< in the order of the records
  std::vector<Change> m_changes;          ///< by day
  std::size_t m_nextChange = 0;
  std::vector<std::size_t> m_held; ///< stocks held on the day of the walk, in the order of their first parcel
  std::vector<Holding> m_holdings;
};

} // namespace Tallymoor
