#pragma once
#include "session/PortfolioStore.h"
#include <random>
#include <string>
#include <vector>

namespace Tallymoor {

/// Commands of every kind that changes records, in an order drawn by lot: the same for the same seed and
/// records. All trades are of a few stocks with constant prices in a few weeks of 2026.
class RandomCommands {
public:
  static const std::vector<String>& codes();
  static Date firstDay() { return {2026, 1, 5}; }
  static constexpr int DAYS = 50;

  RandomCommands(PortfolioStore& store, unsigned seed) : m_store(store), m_random(seed) {}

  /// One command, by makeChange. It may find nothing to do.
  void make();
  /// A command that changes something and then fails.
  void makeAndFail();

private:
  using Action = void (RandomCommands::*)(SharePortfolioUser&);

  std::size_t below(std::size_t count) { return m_random() % count; }
  Date day() { return firstDay().plusDays(static_cast<int>(below(DAYS))); }
  String code() { return codes()[below(codes().size())]; }
  String number() { return String::fromLong(static_cast<std::int64_t>(below(100'000))); }
  SharePortfolioUser& portfolio();
  template <class List>
  auto* anyOf(const List& list) {
    return list.empty() ? nullptr : &list[below(list.size())];
  }

  void buy(SharePortfolioUser& portfolio);
  void sell(SharePortfolioUser& portfolio);
  void deposit(SharePortfolioUser& portfolio);
  void withdraw(SharePortfolioUser& portfolio);
  void receiveDividend(SharePortfolioUser& portfolio);
  void editPurchase(SharePortfolioUser& portfolio);
  void deletePurchase(SharePortfolioUser& portfolio);
  void deleteSale(SharePortfolioUser& portfolio);
  void undoSale(SharePortfolioUser& portfolio);
  void editCash(SharePortfolioUser& portfolio);
  void deleteCash(SharePortfolioUser& portfolio);
  void deleteDividend(SharePortfolioUser& portfolio);
  void setLimits(SharePortfolioUser& portfolio);
  void removeStock(SharePortfolioUser& portfolio);
  void setIndex(SharePortfolioUser& portfolio);
  void rename(SharePortfolioUser& portfolio);
  void removeThePortfolio(SharePortfolioUser& portfolio);
  void import(SharePortfolioUser& portfolio);
  void add();

  PortfolioStore& m_store;
  std::mt19937 m_random;
};

/// The records as they would be written.
std::string textOf(PortfolioStore& store);

} // namespace Tallymoor
