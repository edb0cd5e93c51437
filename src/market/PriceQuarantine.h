#pragma once
#include "foundation/String.h"
#include "market/DataSource.h"
#include "market/PriceChecks.h"
#include <functional>
#include <map>
#include <set>
#include <utility>
#include <vector>

namespace Tallymoor {

/// In the data folder.
inline const String PRICE_DECISIONS_FILE = u"PriceDecisions.xml";

/// Keeps doubtful prices aside until the user has decided on them; meanwhile the last good price counts. A
/// code is asked about once: what the user has refused is not asked about again, and a code that he trusts is
/// not checked for the same reason again. Decisions outlive the program, in a document of their own.
///
/// The caller holds the big mutex.
class PriceQuarantine {
public:
  /// The doubtful prices of a code by day.
  using Prices = std::map<Date, DoubtfulPrice>;

  /// Reads earlier decisions. A file that can't be read counts as empty, and is kept as ".bak" when the next
  /// decision is written.
  explicit PriceQuarantine(const String& fileName);

  /// Called after a price was kept aside, and after the last one of a code was taken out.
  std::function<void()> changed;

  /// Keeps the doubtful rows of a page aside and returns the others, with accepted ones whose day has come.
  SharePriceCache::Rows admit(const String& code, const CachedShare& known, const DataSource::Rows& fetched);
  /// False if the current price is kept aside, or refused.
  bool admitCurrent(const String& code, const CachedShare& known, const Date& day,
                    const AnsweredPrice& price);

  /// The codes with prices that wait for a decision.
  const std::map<String, Prices>& waiting() const { return m_waiting; }

  // Decisions on all waiting prices of a code. They throw Exception if the decision can't be written; it then
  // counts for this run.

  /// Removes them; the caller stores them.
  Prices accept(const String& code);
  /// The same, and no price of the code is doubted for these reasons any more.
  Prices acceptFromNowOn(const String& code);
  /// Drops them for good.
  void refuse(const String& code);

private:
  struct Decisions {
    std::set<DoubtReason> trusted;
    std::set<std::pair<Date, String>> refused; ///< day and close
    String currency;                           ///< that was accepted; empty for the user's own
    std::set<String> refusedCurrencies;
    std::map<Date, String> toCome; ///< closes that were accepted for days to come
  };

  bool isForeign(const String& code, const String& currency) const;
  void keepForeignAside(const String& code, const CachedShare& known, const DataSource::Rows& fetched);
  void addThoseThatCame(const String& code, const CachedShare& known, SharePriceCache::Rows& rows) const;
  String usualCurrency(const String& code) const;
  bool noteAccepted(const String& code, const Prices& prices);

  void keepAside(const String& code, const DoubtfulPrice& price);
  void removeSettled(const String& code, const SharePriceCache::Rows& good);
  bool isTrusted(const String& code, DoubtReason reason) const;
  bool isRefused(const String& code, const DoubtfulPrice& price) const;
  bool hasOpenLevel(const String& code) const;
  Prices takeOut(const String& code);
  void tellChanged() const;
  void read();
  void write();

  const String m_fileName;
  bool m_unreadable = false; ///< the file, so far
  std::map<String, Prices> m_waiting;
  std::map<String, Decisions> m_decisions;
};

} // namespace Tallymoor
