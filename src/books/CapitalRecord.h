#pragma once
#include "books/CapitalRecordDocument.h"
#include "books/DayPrice.h"
#include "foundation/Date.h"
#include "foundation/String.h"
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <utility>
#include <vector>

namespace Tallymoor {

/// The worth of one portfolio day by day, cash and number and price of each stock held, and the file that
/// keeps it.
///
/// The file is read when a day is first needed: prices that come before that wait until then. A file that
/// can't be used is silently started again, since all of it can be worked out again.
///
/// The big mutex guards it.
class CapitalRecord {
public:
  /// A stock on a day.
  struct Holding {
    String code;
    double number;
    DayPrice price;
  };

  explicit CapitalRecord(const String& name);
  virtual ~CapitalRecord() = default;
  CapitalRecord(const CapitalRecord&) = delete;
  CapitalRecord& operator=(const CapitalRecord&) = delete;

  /// Reads the file, also when it was read before.
  void load();
  bool isLoaded() const { return m_isLoaded; }
  /// Writes the file if the days differ from it. The finished temporary is read once before it replaces
  /// the old file. Throws Exception; the old file then stands and the record stays modified.
  void save();
  /// A copy of what save() would write, for BackgroundWriting. The record counts as saved from then on;
  /// notWritten() tells that it could not be.
  CapitalRecordDocument takeToWrite();
  void notWritten() { m_modified = true; }
  /// True when the days differ from the file.
  bool isModified() const;
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

  bool hasDayCap(const Date& date) const;
  /// The day as an element: Date, CashTotal, ShareVals, CashInjected. Rebuilt by each call, and valid until
  /// the next one. Throws Exception when there is no such day.
  const XMLElement& dayCapFor(const Date& date) const;
  /// True when another price stands in for that of the day with some stock, so that what is computed from the
  /// day is provisional. False for a day without a record.
  bool isProvisional(const Date& date) const;
  /// The stocks held on the day, in the order of the document. Throws as dayCapFor.
  std::vector<Holding> holdingsOn(const Date& date) const;
  /// Nothing when the stock was not held then or the day has no record.
  std::optional<Holding> holdingOn(const String& code, const Date& date) const;
  /// The price of the stock on the day; nothing as holdingOn.
  std::optional<DayPrice> priceOn(const String& code, const Date& date) const;
  /// The first day; today when there is none.
  Date firstRecordDate() const;
  std::optional<Date> lastRecordDate() const;
  /// Value of the shares and cash at the end of the day. Throws as dayCapFor.
  double capitalOn(const Date& date) const;
  /// Value of the shares alone. Throws as dayCapFor.
  double sharesValueOn(const Date& date) const;
  /// Cash alone. Throws as dayCapFor.
  double cashOn(const Date& date) const;
  /// Money that came in from outside (negative: went out) after `from`, up to and including `to`.
  double externalFlowBetween(const Date& from, const Date& to) const;

protected:
  using UnsettledPrices = std::map<String, std::set<Date>>;

  /// The days on which a stock's price is not final, by code.
  const UnsettledPrices& unsettledPrices() const;
  /// The day from which recomputeFrom wants the days computed again; gone by the question.
  std::optional<Date> takeRecomputeFrom();
  bool isToBeRecomputed() const { return m_recomputeFrom.has_value(); }
  /// Puts a stock's price of a day right; what is not in the record is ignored.
  void setPrice(const String& code, const Date& date, const DayPrice& price);
  /// Called when days from first to last are removed, or a price that they are compared with changes.
  virtual void daysChanged(const Date& first, const Date& last) = 0;

  /// Appends a day after all others. The texts are as in the document; injected may be empty.
  void addDay(const Date& date, const String& cash, const String& injected);
  /// To the last day.
  void addHolding(const String& code, const String& number, const String& price, PriceStanding standing);

private:
  const CapitalDays& days() const;
  CapitalDays& days() { return const_cast<CapitalDays&>(std::as_const(*this).days()); }
  std::size_t placeOf(const Date& date) const;
  Holding holdingAt(const CapitalDays::Holding& holding) const;
  void readFile();
  void startAgain();
  void setName(const String& name);
  void noteUnsettled(const String& code, const Date& date, PriceStanding standing);

  CapitalRecordDocument m_document;
  String m_fileName;
  String m_name;
  bool m_isLoaded = false;
  bool m_modified = false;
  std::map<std::pair<String, Date>, DayPrice> m_waitingPrices; ///< that came before the file was read
  UnsettledPrices m_unsettled;
  std::optional<Date> m_recomputeFrom;            ///< the earliest day whose price is another one since
  mutable std::unique_ptr<XMLElement> m_askedDay; ///< the last that dayCapFor gave
};

} // namespace Tallymoor
