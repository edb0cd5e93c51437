#pragma once
#include "foundation/Date.h"
#include "foundation/Exception.h"
#include "foundation/String.h"
#include "market/CachedShare.h"
#include "market/HistoryRange.h"
#include <cstdint>
#include <map>
#include <optional>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace Tallymoor {

/// A close that the cache holds.
struct KnownClose {
  Date day;
  double close;
  bool isFinal; ///< false for a day that may not have been over when its price was taken
};

/// Past prices by code and day, in memory and in one small XML file a code. A code's file is read when the
/// code is first asked for. Guarded by the big mutex, which its callers hold.
///
/// A file that can't be read is left alone: the first one to ask for a price hears the failure, from then on
/// the code begins empty, and nothing is written over the file.
///
/// No price of a day after the real today is taken, and those in a file, of a clock that was ahead, are
/// dropped when it is read, but for typed ones.
class SharePriceCache {
public:
  using Rows = std::map<Date, ShareValue>;
  using Closes = std::vector<std::pair<Date, double>>;
  static constexpr int LONGEST_CLOSURE = 10; ///< days for which a market closes at most

  /// The folder with a trailing separator.
  explicit SharePriceCache(const String& directory);

  /// The code's prices, loaded if need be. Throws XMLException or Exception, once, when its file can't be
  /// read.
  CachedShare& share(const String& code);
  /// The same for those who don't ask for a price: a file that can't be read gives an empty entry, and the
  /// failure waits for the next caller of share.
  CachedShare& shareOrEmpty(const String& code);

  /// Stores the rows that were fetched for the range over what is there, but not over what the user typed,
  /// and none without a price over one with a price, then gives each day without trade, from the first
  /// fetched one to the end of the range, the close before it. A range that begins on days without trade, as
  /// a weekend, goes on from the close of the day before it where that is known; days before the first row
  /// stay empty otherwise. Returns the days whose close is new or another one.
  Closes merge(const String& code, const Rows& fetched, const HistoryRange& range);
  /// Notes a current price for the day, unless the code is bad or the day's row came from the data source or
  /// the user.
  void noteCurrentPrice(const String& code, const Date& day, double price);
  /// The days after it that were filled in follow. Returns the days whose close it is now: none, with nothing
  /// done, for a day after the real today.
  Closes setTypedPrice(const String& code, const Date& day, double close);
  /// The close of the day counts as typed from now on; nothing is done where there is none.
  void setTypedRange(const String& code, const Date& day, double high, double low);
  std::optional<double> typedPrice(const String& code, const Date& day);
  /// The day has no price afterwards, nor have the days after it that were filled in from it. Returns them,
  /// with the last close before the day, 0 if there is none; no days for one whose price was not typed.
  Closes removeTypedPrice(const String& code, const Date& day);
  /// The close of the day; nothing when there is none, or one that shows as zero.
  std::optional<KnownClose> closeOn(const String& code, const Date& day);
  /// The last close before the day, whatever its age; none that shows as zero.
  std::optional<KnownClose> lastCloseBefore(const String& code, const Date& day);
  /// The last close up to the day that belongs to its day, and was not filled in from the day before.
  std::optional<KnownClose> lastTradedClose(const String& code, const Date& day);
  /// Looks at the head of the code's file alone where that says enough: all codes are asked about at the
  /// start, and few of their prices are needed then.
  bool isBad(const String& code);
  void setBad(const String& code, bool bad);
  /// Sorted; looks into the files of codes that are not loaded too. Files that can't be read are passed over.
  std::vector<String> badCodes();

  /// Drops all prices of all codes that were fetched, or filled in after them; what was typed stays. Returns
  /// them.
  using Forgotten = std::map<String, Rows>;
  Forgotten forgetFetched();
  void putBack(Forgotten forgotten);

  /// Writes what has changed. A failure does not stop the rest; afterwards the first one is thrown as
  /// Exception.
  void save();
  /// Writes the prices of one code, if they have changed. Throws Exception also if they can't be written
  /// because the code's file could not be read.
  void save(const String& code);
  /// Forgets everything and deletes all "*.xml" of the folder. Throws as save does.
  void clear();

  String pathOf(const String& code) const;
  /// Another number after each change of a price or of a code's mark, and after a failure has been heard.
  std::uint64_t changeStamp() const { return m_changeStamp; }

  static std::optional<KnownClose> lastTradedClose(const CachedShare& known, const Date& day);
  /// True if a row of the code was taken when its day was over.
  static bool isFinal(const CachedShare& known, Rows::const_iterator row);

private:
  struct CodeHash {
    std::size_t operator()(const String& code) const { return std::hash<std::u16string_view>{}(code); }
  };
  struct Entry {
    CachedShare share;
    std::optional<XMLException> failure; ///< of the load, until someone has heard it
  };

  Entry& entry(const String& code);
  void load(const String& code, Entry& entry) const;
  void loadAllFiles();

  String m_directory;
  std::unordered_map<String, Entry, CodeHash> m_entries;
  std::uint64_t m_changeStamp = 0;
};

} // namespace Tallymoor
