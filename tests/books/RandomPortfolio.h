#pragma once
#include "books/SharePortfolioUser.h"
#include "xml/PortfolioRecords.h"
#include <array>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

namespace Tallymoor {

/// A portfolio changed by random operations from a seed, and its invariants. All events are within the twelve
/// days up to 3 March 2026, in three stocks of one market.
///
/// A ledger beside the portfolio knows only how many shares were bought and sold, by day of purchase, in
/// units of that day. They are multiples of 0.16, so that every split and merge gives exact numbers. Rounding
/// is tested by separate sequences.
///
/// Needs a TestProfile of that day and an offline gateway on which setPrices was called.
class RandomPortfolio {
public:
  explicit RandomPortfolio(std::uint32_t seed);
  /// Sets prices of all stocks on all days, without jumps. The same for every portfolio.
  static void setPrices();

  /// Performs a random user operation. Does nothing if it is not applicable.
  void step();

  // Each check adds a failure to the running test if it fails.

  /// Each stock occurs once and has a parcel or a sale. For each code and day of purchase, shares bought
  /// minus sold minus held are zero, both as recorded and as adjusted to today.
  void checkShares();
  /// The incrementally computed days equal those computed from scratch. Cash and share numbers of each day
  /// match the cash events and the ledger.
  void checkRecord();
  /// The written document decodes to the same tree.
  void checkDocument();

  /// The operations performed, one per line.
  const std::string& history() const { return m_history; }
  int stepsDone() const { return m_stepsDone; }

private:
  static constexpr int CODES = 3;
  static constexpr int DAYS = 12;
  using Hundredths = std::int64_t;
  using Ledger = std::array<std::array<Hundredths, DAYS>, CODES>; ///< By code and day of purchase.
  struct Split {
    int day;
    int factor; ///< Negative for a merge.
  };
  /// An event selected for a change.
  template <class Event>
  struct Drawn {
    Event* event;
    int code;
    int day; ///< Of the purchase.
    Hundredths number;
  };
  using DrawnParcel = Drawn<XMLBuyEvent>;
  using DrawnSale = Drawn<XMLSellEvent>;

  static Date dayAt(int index);
  static int indexOfDay(const Date& day);
  static const char16_t* codeText(int code);
  static int indexOfCode(const String& code);
  static Hundredths hundredths(const XMLElement& event, std::u16string_view reference);

  // Random choices
  int below(int limit) { return static_cast<int>(m_chance() % static_cast<std::uint32_t>(limit)); }
  bool oneIn(int count) { return below(count) == 0; }
  int anyDay() { return below(DAYS); }
  int dayFrom(int first) { return first + below(DAYS - first); }
  Hundredths anyNumber() { return 16 * (1 + below(600)); }
  double anyPrice() { return (5000 + below(200000)) / 10000.0; }
  double anyMoney(int limit) { return below(limit * 100) / 100.0; }
  String anyComment();
  bool drawParcel(DrawnParcel& drawn);
  bool drawSale(DrawnSale& drawn);
  static std::vector<DrawnParcel> parcelsOf(XMLHeldShare& stock);
  /// Null if there is none.
  template <class Element>
  Element* draw(const ElementList<Element>& all) {
    return all.empty() ? nullptr : &all[static_cast<std::size_t>(below(static_cast<int>(all.size())))];
  }

  // Operations
  void buy();
  void addParcel();
  void sell();
  void moveCash();
  void receiveDividend();
  void editBuy();
  void editSell();
  void editCash();
  void editDividend();
  void deleteBuy();
  void deleteSell();
  void undoSell();
  void deleteCash();
  void deleteDividend();
  void removeHeld();
  void removeSold();
  void split();
  void setLimits();

  std::size_t countPurchasesPaid() const;

  bool isSplit(int code) const { return !m_splits[static_cast<std::size_t>(code)].empty(); }
  /// Number of the parcel's shares on a day.
  Hundredths numberOn(const DrawnParcel& parcel, int day) const;
  /// Applies the splits of a code to its new parcels, as the user does when asked.
  void noteSplits(int code);
  Hundredths adjusted(Hundredths number, int code, int bought, int day) const;
  void note(const std::string& operation);

  Ledger held() const;
  Ledger sold() const;
  Hundredths expectedOn(int code, int day) const;
  void checkStocks(const XMLElement& stocks, std::u16string_view reference, std::u16string_view events) const;
  void checkDay(const SharePortfolioCapitalRecordUser& record, int day) const;

  XMLSharePortfolio m_portfolio;
  SharePortfolioUser m_user;
  SharePortfolioCapitalRecordUser m_fresh;
  std::mt19937 m_chance;
  Ledger m_bought{};                         ///< Shares added, minus deleted records.
  std::array<Hundredths, CODES> m_soldSum{}; ///< Shares sold, in units of their purchase.
  std::array<std::vector<Split>, CODES> m_splits;
  std::string m_history;
  int m_stepsDone = 0;
};

} // namespace Tallymoor
