#pragma once
#include "foundation/BigMutex.h"
#include "market/CsvFile.h"
#include "market/SourceList.h"
#include <cstdint>
#include <functional>
#include <optional>
#include <stop_token>
#include <vector>

namespace Tallymoor {

class Connection;
class HistoryFetcher;
class PriceHistory;
class PriceUpdater;

/// Where the prices of the codes come from and how the sources do, and what the user can do about it.
///
/// GUI thread, under the big mutex, which each operation takes.
class PriceStatus {
public:
  /// What is known of one code.
  struct OfCode {
    String code;
    String source; ///< that answered last in this run; empty when none has
    bool isTyped = false;
    std::optional<double> price; ///< the last one
    Date day{0u};                ///< of the price
    int age = 0;                 ///< days from there to today
    String currency;             ///< that the source told; empty when it told none
    bool isSample = false;       ///< the price is made up, by the sample service
    bool isDelisted = false;
    std::vector<SourceReason> reasons; ///< why sources before it, or all, gave no price, in their order
    std::map<Date, double> dividends;  ///< that a source told in this run: cash a share
    std::map<Date, double> splits;     ///< shares that one became
  };
  /// What is known of one source.
  struct OfSource {
    ListedSource listed;
    bool isSample = false;
    bool needsKey = false;
    bool hasKey = false;
    String notTried; ///< the day on which its document was written without being tried; empty otherwise
    SourceLog::Summary told;
  };
  /// What a source gave for a code.
  struct Trial {
    std::optional<SourceReason> failure; ///< nothing when all went well
    std::vector<FormatDoubt> doubts;     ///< what a CSV text leaves open, which is the failure then
    std::optional<AnsweredPrice> price;
    std::map<Date, ShareValue> lastDays; ///< the last rows of its past prices
    std::size_t days = 0;                ///< of all rows of its past prices
    std::size_t passedOver = 0;          ///< rows without a day or a price
    String currency;
  };
  /// What a file held.
  struct Import {
    std::vector<FormatDoubt> doubts; ///< if there are any, nothing was stored
    std::size_t days = 0;
    Date first{0u};
    Date last{0u};
    std::size_t changed = 0;    ///< days whose close is new or another one
    std::size_t passedOver = 0; ///< rows without a day or a price
  };

  /// What is referred to is not owned.
  PriceStatus(Connection& connection, PriceHistory& history, PriceUpdater& updater, HistoryFetcher& fetcher);

  OfCode ofCode(const String& code);
  /// In their order.
  std::vector<OfSource> ofSources();
  /// The documents that can't be used.
  std::vector<SourceComplaint> complaints();
  /// For changes. Those of what is on are made by setOn, so that the markets do not mix.
  SourceList& sources();

  /// True while the sample market is on, whose prices are made up. Reads no document.
  bool isSampleMarket();
  bool hasSourceOn();
  /// What a change of what is on means for prices that are known.
  enum class MarketChange : std::uint8_t { None, EndsSample, BeginsSample };
  MarketChange marketChangeBy(const String& name, bool isOn);
  /// As SourceList::setOn. Made-up and real prices never mix: the first source of real prices switches the
  /// sample market off, the sample market is refused beside other sources, and with each change from one to
  /// the other all prices are forgotten that the user has not typed, in memory and on disk, and the capital
  /// records compute all days again. Throws Exception, with nothing changed, where something can't be
  /// written.
  void setOn(const String& name, bool isOn);

  /// The requests of a trial. Runs without the big mutex, on any thread; throws nothing that is an Exception.
  using TrialFetch = std::function<Trial(const std::stop_token&)>;
  /// A trial of a source, on or off, for a code as it knows it; without one for the code that its document
  /// says it has. Throws Exception for a name that no source has, without a code, and offline.
  TrialFetch beginTrial(const String& name, const String& code = String());
  /// Notes a success, so that the source can be switched on. Throws Exception if it can't be written.
  void endTrial(const String& name, const Trial& trial);

  /// The files of a folder; none of any other source. Reads them all.
  std::vector<PriceFile> filesOf(const String& name);
  /// Stores the prices of a CSV file for a code as those of a source, which ends the sample market. Throws
  /// Exception for a file that can't be read.
  Import importFile(const String& code, const String& path, const CsvAnswers& answers);

private:
  void changeMarket(const std::function<void()>& changeSources) REQUIRES(bigMutex());

  Connection& m_connection;
  PriceHistory& m_history;
  PriceUpdater& m_updater;
  HistoryFetcher& m_fetcher;
};

} // namespace Tallymoor
