#pragma once
#include "books/DayPrice.h"
#include "books/WrittenNumber.h"
#include "foundation/Date.h"
#include "foundation/String.h"
#include "xml/CapitalRecord.h"
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace Tallymoor {

class Utf8Writer;

/// What a portfolio was worth on each day: a row for each day and one for each stock held on it, in a few
/// arrays, since twenty years of thirty stocks are a million numbers. Days rise strictly. A day is named by
/// its place.
///
/// Every number keeps the text that it was read as. A day whose document holds what a row can't say (an
/// attribute of a later version, a date in another form) keeps its element besides, which is then what is
/// written.
class CapitalDays {
public:
  CapitalDays() = default;
  ~CapitalDays() = default;
  CapitalDays(const CapitalDays& other);
  CapitalDays(CapitalDays&& other) = default;
  CapitalDays& operator=(const CapitalDays&) = delete;
  CapitalDays& operator=(CapitalDays&&) = default;

  struct Holding {
    std::uint32_t code; ///< its place among the codes
    PriceStanding standing;
    WrittenNumber number;
    WrittenNumber price;
  };

  void clear();

  std::size_t size() const { return m_days.size(); }
  bool empty() const { return m_days.empty(); }
  std::optional<std::size_t> find(const Date& date) const;
  /// The first day on the date or later; size() when there is none.
  std::size_t firstFrom(const Date& date) const;
  /// The first day later than the date; size() when there is none.
  std::size_t firstAfter(const Date& date) const;
  Date date(std::size_t day) const { return Date(m_days[day].julianDay); }

  /// In the order of the document.
  std::span<const Holding> holdings(std::size_t day) const;
  /// Null when the stock was not held on the day.
  const Holding* holding(std::size_t day, const String& code) const;
  /// Its place among the holdings of the day.
  std::optional<std::size_t> placeInDay(std::size_t day, const String& code) const;
  const String& code(const Holding& holding) const { return m_codes[holding.code].text; }
  /// As it is written: "<String>ABC.AX</String>".
  const std::string& codeElement(const Holding& holding) const { return m_codes[holding.code].element; }
  double value(WrittenNumber number) const;

  double cash(std::size_t day) const { return value(m_days[day].cash); }
  /// The sum of number times price, which is kept.
  double sharesValue(std::size_t day) const;
  /// Money that came from outside (negative: went out) on the days from the first to before the end.
  double injectedBetween(std::size_t first, std::size_t end) const;

  /// Appends a day after all others.
  void addDay(const Date& date, WrittenNumber cash);
  // To the last day.
  void addHolding(std::uint32_t code, WrittenNumber number, WrittenNumber price, PriceStanding standing);
  void setInjected(WrittenNumber value);
  /// Appends the day of a document that was read by elements. Throws Exception when it has no date, or one
  /// that is not after all others.
  void addDay(XMLElement& dayCap);

  /// The code's place among the codes, where it is new from now on.
  std::uint32_t placeOf(const String& code);
  WrittenNumber written(const String& text);
  String text(WrittenNumber number) const;

  void setPrice(std::size_t day, std::size_t place, const String& price);
  void setStanding(std::size_t day, std::size_t place, PriceStanding standing);
  /// Drops the day and all later ones.
  void dropFrom(std::size_t day);

  void write(Utf8Writer& writer, std::size_t day) const;
  /// The day as a new element.
  std::unique_ptr<XMLDayCap> element(std::size_t day) const;

private:
  struct Day {
    std::uint32_t julianDay;
    std::uint32_t firstHolding;
    WrittenNumber cash;
    mutable double sharesValue; ///< NaN before the first question
  };
  struct Code {
    String text;
    std::string element;
  };
  struct Injection {
    std::size_t day;
    WrittenNumber value;
  };

  std::size_t endOfHoldings(std::size_t day) const;
  void writeNumber(Utf8Writer& writer, WrittenNumber number) const;
  void writeRows(Utf8Writer& writer, std::size_t day) const;
  std::vector<Injection>::const_iterator injectionFrom(std::size_t day) const;

  std::vector<Day> m_days;
  std::vector<Holding> m_holdings;     ///< day after day
  std::vector<Injection> m_injections; ///< by day
  std::vector<Code> m_codes;
  std::map<String, std::uint32_t> m_codePlaces;
  std::vector<String> m_texts;                                  ///< of numbers that are in no plain form
  std::map<std::size_t, std::unique_ptr<XMLDayCap>> m_elements; ///< of days that hold more than a row says
};

} // namespace Tallymoor
