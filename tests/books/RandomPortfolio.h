#pragma once
#include "books/SharePortfolioUser.h"
#include "xml/PortfolioRecords.h"
#include <array>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

namespace Tallymoor {

/// A portfolio to which anything may happen, in an order that a seed decides, and what must hold of it
/// whatever happens. All events lie within the twelve days up to 3 March 2026, in three stocks of one market.
///
/// Beside the portfolio runs a ledger that knows only how many shares came and went, by the day on which they
/// were bought, in shares of then. These are multiples of 0.16, so that every split and merge here comes out
/// even; sequences of their own show what does not.
///
/// Needs a TestProfile of that day, and an offline gateway that setPrices has been called on.
class RandomPortfolio {
public:
  explicit RandomPortfolio(std::uint32_t seed);
  /// Prices of all stocks on all days, which never jump; the same for every portfolio.
  static void setPrices();

  /// One operation, any of those that a user can do. Some find nothing to work on and do nothing.
  void step();

  // Each adds a failure to the running test where something does not hold.

  /// Every stock has a parcel or a sale, no stock is there twice, and shares bought less shares sold less
  /// shares held is nothing, by code and day of purchase, as recorded and as adjusted to today.
  void checkShares();
  /// The days computed so far and forward from there equal those computed from nothing; cash and numbers of
  /// each day are what the cash events and the ledger make of them.
  void checkRecord();
  /// What would be written decodes to the same tree.
  void checkDocument();

  /// What was done, a line an operation.
  const std::string& history() const { return m_history; }
  int stepsDone() const { return m_stepsDone; }

private:
  static constexpr int CODES = 3;
  static constexpr int DAYS = 12;
  using Hundredths = std::int64_t;
  using Ledger = std::array<std::array<Hundredths, DAYS>, CODES>; ///< by code and day of purchase
  struct Split {
    int day;
    int factor; ///< negative for a merge
  };
  /// An event of the tree that a change was drawn for.
  template <class Event>
  struct Drawn {
    Event* event;
    int code;
    int day; ///< of purchase
    Hundredths number;
  };
  using DrawnParcel = Drawn<XMLBuyEvent>;
  using DrawnSale = Drawn<XMLSellEvent>;

  static Date dayAt(int index);
  static int indexOfDay(const Date& day);
  static const char16_t* codeText(int code);
  static int indexOfCode(const String& code);
  static Hundredths hundredths(const XMLElement& event, std::u16string_view reference);

  // Chance
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
  /// Null where there is none.
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
  /// Shares of the parcel on a day.
  Hundredths numberOn(const DrawnParcel& parcel, int day) const;
  /// Notes the splits of a code on its new parcels, as the user would when asked about them.
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
  Ledger m_bought{};                         ///< shares that came, less those whose record was taken back
  std::array<Hundredths, CODES> m_soldSum{}; ///< shares sold, as they were bought
  std::array<std::vector<Split>, CODES> m_splits;
  std::string m_history;
  int m_stepsDone = 0;
};

} // namespace Tallymoor
