#include "session/RandomCommands.h"
#include "books/SharePortfolioUser.h"
#include "foundation/Exception.h"
#include "market/MarketPrices.h"
#include <array>
#include <iterator>
#include <sstream>

namespace Tallymoor {

namespace {

constexpr double BROKERAGE = 29.95;
constexpr std::size_t MOST_PORTFOLIOS = 3;
constexpr int IMPORTED = 20;

} // namespace

const std::vector<String>& RandomCommands::codes() {
  static const std::vector<String> all{u"ABC.AX", u"DEF.AX", u"XYZ.NY"};
  return all;
}

std::string textOf(PortfolioStore& store) {
  std::ostringstream stream;
  store.records().encode(stream);
  return stream.str();
}

SharePortfolioUser& RandomCommands::portfolio() {
  auto found = m_store.portfolios().begin();
  std::advance(found, below(m_store.portfolios().size()));
  return *found->second;
}

void RandomCommands::make() {
  static constexpr std::array<Action, 22> ACTIONS{&RandomCommands::buy,
                                                  &RandomCommands::buy,
                                                  &RandomCommands::buy,
                                                  &RandomCommands::buy,
                                                  &RandomCommands::sell,
                                                  &RandomCommands::sell,
                                                  &RandomCommands::deposit,
                                                  &RandomCommands::withdraw,
                                                  &RandomCommands::receiveDividend,
                                                  &RandomCommands::receiveDividend,
                                                  &RandomCommands::editPurchase,
                                                  &RandomCommands::deletePurchase,
                                                  &RandomCommands::deleteSale,
                                                  &RandomCommands::undoSale,
                                                  &RandomCommands::editCash,
                                                  &RandomCommands::deleteCash,
                                                  &RandomCommands::deleteDividend,
                                                  &RandomCommands::setLimits,
                                                  &RandomCommands::removeStock,
                                                  &RandomCommands::setIndex,
                                                  &RandomCommands::rename,
                                                  &RandomCommands::import};
  if (m_store.portfolios().empty() || (m_store.portfolios().size() < MOST_PORTFOLIOS && below(20) == 0)) {
    makeChange(u"New portfolio", [this] { add(); });
    return;
  }
  SharePortfolioUser& chosen = portfolio();
  if (m_store.portfolios().size() > 1 && below(30) == 0) {
    makeChange(u"Deletion of a portfolio", [&] { removeThePortfolio(chosen); });
    return;
  }
  const std::size_t action = below(ACTIONS.size());
  makeChange(u"Command " + String::fromLong(static_cast<std::int64_t>(action)),
             [&] { (this->*ACTIONS.at(action))(chosen); });
}

void RandomCommands::makeAndFail() {
  makeChange(u"A command that fails", [this] {
    if (m_store.portfolios().empty() || below(3) == 0)
      add();
    else if (below(3) == 0)
      removeThePortfolio(portfolio());
    else
      buy(portfolio());
    throw Exception(u"half way");
  });
}

void RandomCommands::buy(SharePortfolioUser& portfolio) {
  portfolio.buyShares(code(),
                      {day(), static_cast<double>(100 + below(900)),
                       2.0 + 0.01 * static_cast<double>(below(50)), BROKERAGE, number() + u" <&> \u00e9"});
}

void RandomCommands::sell(SharePortfolioUser& portfolio) {
  XMLHeldShare* const share = anyOf(portfolio.portfolio().heldShares());
  if (share)
    portfolio.sellShares(
        String(share->code()),
        {firstDay().plusDays(DAYS), static_cast<double>(50 + below(400)), 2.25, BROKERAGE, String()},
        below(2) == 0);
}

void RandomCommands::deposit(SharePortfolioUser& portfolio) {
  portfolio.creditCash(day(), static_cast<double>(below(100'000)) / 100.0, CASH_EVENT_DEPOSIT,
                       u"DEPOSIT " + number());
}

void RandomCommands::withdraw(SharePortfolioUser& portfolio) {
  portfolio.debitCash(day(), static_cast<double>(below(10'000)) / 100.0, CASH_EVENT_WITHDRAWAL,
                      u"WITHDRAWAL " + number());
}

void RandomCommands::receiveDividend(SharePortfolioUser& portfolio) {
  const double drpShares = below(2) == 0 ? 0.0 : static_cast<double>(1 + below(20));
  portfolio.receiveDividend({code(), day(), static_cast<double>(100 + below(100)), 0.05, 100, drpShares,
                             drpShares > 0 ? 2.0 : 0.0, String(), 0.0});
}

void RandomCommands::editPurchase(SharePortfolioUser& portfolio) {
  XMLHeldShare* const share = anyOf(portfolio.portfolio().heldShares());
  if (!share)
    return;
  XMLBuyEvent& event = *anyOf(share->parcels());
  const Date before = event.bought();
  const double cost = event.number() * event.price() + event.brokerage();
  portfolio.editBuyEvent(event, {day(), static_cast<double>(100 + below(900)), 2.5, BROKERAGE, number()},
                         cost, before);
}

void RandomCommands::deletePurchase(SharePortfolioUser& portfolio) {
  XMLHeldShare* const share = anyOf(portfolio.portfolio().heldShares());
  if (!share)
    return;
  const XMLBuyEvent& event = *anyOf(share->parcels());
  portfolio.deleteBuyEvent(String(share->code()), event.bought(), event.number());
}

void RandomCommands::deleteSale(SharePortfolioUser& portfolio) {
  if (XMLSoldShare* const share = anyOf(portfolio.portfolio().soldShares()))
    portfolio.deleteSale(*anyOf(share->sales()));
}

void RandomCommands::undoSale(SharePortfolioUser& portfolio) {
  if (XMLSoldShare* const share = anyOf(portfolio.portfolio().soldShares()))
    portfolio.undoSale(*anyOf(share->sales()));
}

void RandomCommands::editCash(SharePortfolioUser& portfolio) {
  if (XMLCashEvent* const event = anyOf(portfolio.portfolio().cashEvents()))
    portfolio.editCashEvent(*event, day(), event->day(), static_cast<double>(below(100'000)) / 100.0,
                            number());
}

void RandomCommands::deleteCash(SharePortfolioUser& portfolio) {
  if (const XMLCashEvent* const event = anyOf(portfolio.portfolio().cashEvents()))
    portfolio.deleteCashEvent(*event);
}

void RandomCommands::deleteDividend(SharePortfolioUser& portfolio) {
  if (const XMLDividendEvent* const event = anyOf(portfolio.portfolio().dividends()))
    portfolio.deleteDividend(*event);
}

void RandomCommands::setLimits(SharePortfolioUser& portfolio) {
  XMLHeldShare* const share = anyOf(portfolio.portfolio().heldShares());
  if (!share)
    return;
  portfolio.setMinMax(*share, 1.0, 3.0 + static_cast<double>(below(100)) / 100.0);
  portfolio.setPortfolioMax(*share, static_cast<double>(below(1000)));
}

void RandomCommands::removeStock(SharePortfolioUser& portfolio) {
  if (below(2) == 0)
    portfolio.removeSoldShare(code());
  else
    portfolio.removeHeldShare(code());
}

void RandomCommands::setIndex(SharePortfolioUser& portfolio) {
  portfolio.setComparisonIndex(below(2) == 0 ? String() : code());
}

void RandomCommands::rename(SharePortfolioUser& portfolio) {
  const String name = u"Renamed " + number();
  if (!m_store.portfolios().contains(name))
    renamePortfolio(m_store.portfolios(), String(portfolio.name()), name);
}

void RandomCommands::removeThePortfolio(SharePortfolioUser& portfolio) {
  removePortfolio(m_store.portfolios(), m_store.records(), String(portfolio.name()));
}

/// Records from elsewhere in the place of the portfolio's.
void RandomCommands::import(SharePortfolioUser& portfolio) {
  auto imported = std::make_unique<XMLSharePortfolio>();
  imported->setPortfolioName(portfolio.name());
  {
    SharePortfolioUser fresh(*imported, gatewayPrices());
    for (int i = 0; i < IMPORTED; ++i)
      buy(fresh);
  }
  removeThePortfolio(portfolio);
  addPortfolio(m_store.portfolios(), m_store.records(), std::move(imported));
}

void RandomCommands::add() {
  const String name = u"Portfolio " + number();
  if (m_store.portfolios().contains(name))
    return;
  XMLSharePortfolio& records = m_store.records().portfolios().add();
  records.setPortfolioName(name);
  m_store.portfolios()[name] = std::make_unique<SharePortfolioUser>(records, gatewayPrices());
}

} // namespace Tallymoor
