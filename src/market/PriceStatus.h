#pragma once
#include "market/CsvFile.h"
#include "market/SourceList.h"
#include <optional>
#include <vector>

namespace Tallymoor {

class Connection;
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
    std::optional<SourceLog::Failure> lastFailure;
  };
  /// What a source gave for a code.
  struct Trial {
    std::optional<SourceReason> failure; ///< nothing when all went well
    std::optional<AnsweredPrice> price;
    std::map<Date, ShareValue> lastDays; ///< the last rows of its past prices
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
  PriceStatus(Connection& connection, PriceHistory& history, PriceUpdater& updater);

  OfCode ofCode(const String& code);
  /// In their order.
  std::vector<OfSource> ofSources();
  /// The documents that can't be used.
  std::vector<SourceComplaint> complaints();
  /// For changes. Those of what is on are made by setOn.
  SourceList& sources();

  /// As SourceList::setOn. The first source of real prices ends the sample market: its source is switched
  /// off, and its prices are forgotten.
  void setOn(const String& name, bool isOn);
  /// Asks a source, on or off, for a code as it knows it; without one for the code that its document says it
  /// has. Success is noted, so that it can be switched on. Throws Exception for a name that no source has,
  /// without a code, and offline. Ends when the user wants that.
  Trial trySource(const String& name, const String& code = String());
  /// Stores the prices of a CSV file for a code as those of a source. Throws Exception for a file that can't
  /// be read.
  Import importFile(const String& code, const String& path, const CsvAnswers& answers);

private:
  Connection& m_connection;
  PriceHistory& m_history;
  PriceUpdater& m_updater;
};

} // namespace Tallymoor
