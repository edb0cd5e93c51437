#include "books/RandomPortfolio.h"
#include "analysis/SaleFigures.h"
#include "foundation/Amounts.h"
#include "market/MarketPrices.h"
#include "market/TallymoorInternet.h"
#include "support/StringPrinting.h"
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <gtest/gtest.h>

namespace Tallymoor {

RandomPortfolio::RandomPortfolio(std::uint32_t seed)
    : m_user((m_portfolio.subElement(u"Name").setValue(u"Random"), m_portfolio), gatewayPrices()),
      m_fresh(u"Fresh", gatewayPrices()), m_chance(seed) {}

void RandomPortfolio::setPrices() {
  for (int code = 0; code < CODES; ++code)
    for (int day = -1; day < DAYS; ++day)
      TallymoorInternet::Instance().setCachedPrice(codeText(code), dayAt(day),
                                                   3.0 + 2 * code + 0.1237 * ((day + code) % 5));
}

Date RandomPortfolio::dayAt(int index) {
  return Date(2026, 2, 20).plusDays(index);
}

int RandomPortfolio::indexOfDay(const Date& day) {
  return day.daysSince(dayAt(0));
}

const char16_t* RandomPortfolio::codeText(int code) {
  static const char16_t* const texts[CODES] = {u"ABC.AX", u"XYZ.AX", u"T&C.AX"};
  return texts[code];
}

int RandomPortfolio::indexOfCode(const String& code) {
  for (int i = 0; i < CODES; ++i)
    if (code == codeText(i))
      return i;
  throw std::logic_error("an unknown code: " + code.toUTF8());
}

RandomPortfolio::Hundredths RandomPortfolio::hundredths(const XMLElement& event,
                                                        std::u16string_view reference) {
  return std::llround(doubleValue(event, reference) * 100);
}

void RandomPortfolio::note(const std::string& operation) {
  m_history += operation + '\n';
}

// ---- Random numbers ----

String RandomPortfolio::anyComment() {
  static const char16_t* const comments[] = {u"", u"", u"plain", u"<Tom & \"Ann's\">", u"größer 漢字"};
  return comments[below(5)];
}

bool RandomPortfolio::drawParcel(DrawnParcel& drawn) {
  auto* stock = draw(m_portfolio.heldShares());
  if (!stock)
    return false;
  drawn.event = draw(stock->parcels());
  drawn.code = indexOfCode(textValue(*stock, u"Code"));
  drawn.day = indexOfDay(dateValue(*drawn.event, u"BuyDate"));
  drawn.number = hundredths(*drawn.event, u"NumHeld");
  return true;
}

std::vector<RandomPortfolio::DrawnParcel> RandomPortfolio::parcelsOf(XMLHeldShare& stock) {
  std::vector<DrawnParcel> parcels;
  for (XMLBuyEvent& event : stock.parcels()) {
    parcels.push_back({&event, indexOfCode(textValue(stock, u"Code")),
                       indexOfDay(dateValue(event, u"BuyDate")), hundredths(event, u"NumHeld")});
  }
  return parcels;
}

bool RandomPortfolio::drawSale(DrawnSale& drawn) {
  auto* stock = draw(m_portfolio.soldShares());
  if (!stock)
    return false;
  drawn.event = draw(stock->sales());
  drawn.code = indexOfCode(textValue(*stock, u"Code"));
  drawn.day = indexOfDay(dateValue(*drawn.event, u"BuyDate"));
  drawn.number = hundredths(*drawn.event, u"NumHeld");
  return true;
}

// ---- Operations ----

void RandomPortfolio::step() {
  using Operation = void (RandomPortfolio::*)();
  struct Weighted {
    Operation operation;
    int weight;
  };
  static const Weighted operations[] = {{&RandomPortfolio::buy, 20},
                                        {&RandomPortfolio::addParcel, 5},
                                        {&RandomPortfolio::sell, 20},
                                        {&RandomPortfolio::moveCash, 12},
                                        {&RandomPortfolio::receiveDividend, 9},
                                        {&RandomPortfolio::editBuy, 6},
                                        {&RandomPortfolio::editSell, 5},
                                        {&RandomPortfolio::editCash, 4},
                                        {&RandomPortfolio::editDividend, 6},
                                        {&RandomPortfolio::deleteBuy, 3},
                                        {&RandomPortfolio::deleteSell, 3},
                                        {&RandomPortfolio::undoSell, 3},
                                        {&RandomPortfolio::deleteCash, 3},
                                        {&RandomPortfolio::deleteDividend, 3},
                                        {&RandomPortfolio::removeHeld, 1},
                                        {&RandomPortfolio::removeSold, 1},
                                        {&RandomPortfolio::split, 3},
                                        {&RandomPortfolio::setLimits, 1}};
  static const int total = [] {
    int sum = 0;
    for (const Weighted& choice : operations)
      sum += choice.weight;
    return sum;
  }();
  int drawn = below(total);
  for (const Weighted& choice : operations) {
    drawn -= choice.weight;
    if (drawn < 0) {
      (this->*choice.operation)();
      break;
    }
  }
  ++m_stepsDone;
}

void RandomPortfolio::buy() {
  const int code = below(CODES), day = anyDay();
  const Hundredths number = anyNumber();
  note("buy " + std::to_string(code) + " day " + std::to_string(day) + " number " + std::to_string(number));
  const double price = anyPrice();
  m_user.buyShares(codeText(code),
                   {dayAt(day), static_cast<double>(number) / 100, price, anyMoney(40), anyComment()});
  m_bought[static_cast<std::size_t>(code)][static_cast<std::size_t>(day)] += number;
  noteSplits(code);
}

void RandomPortfolio::addParcel() {
  const int code = below(CODES), day = anyDay();
  const Hundredths number = anyNumber();
  note("add parcel " + std::to_string(code) + " day " + std::to_string(day) + " number " +
       std::to_string(number));
  m_user.addBuyEvent(codeText(code),
                     {dayAt(day), static_cast<double>(number) / 100, anyPrice(), 0.0, anyComment()});
  m_bought[static_cast<std::size_t>(code)][static_cast<std::size_t>(day)] += number;
  noteSplits(code);
}

void RandomPortfolio::sell() {
  DrawnParcel drawn;
  if (!drawParcel(drawn))
    return;
  const bool firstInFirstOut = oneIn(2);
  std::vector<DrawnParcel> parcels = parcelsOf(elementAs<XMLHeldShare>(*drawn.event->parent()));
  if (!firstInFirstOut)
    std::reverse(parcels.begin(), parcels.end());
  int last = 0;
  for (const DrawnParcel& parcel : parcels)
    last = std::max(last, parcel.day);
  const int day = dayFrom(last);
  // Some complete parcels and a part of the next one. The part stays exact after every split and merge.
  const int whole = oneIn(4) ? static_cast<int>(parcels.size()) : below(static_cast<int>(parcels.size()));
  Hundredths ofPurchase = 0, number = 0;
  for (int i = 0; i < whole; ++i) {
    ofPurchase += parcels[static_cast<std::size_t>(i)].number;
    number += numberOn(parcels[static_cast<std::size_t>(i)], day);
  }
  if (whole < static_cast<int>(parcels.size())) {
    DrawnParcel part = parcels[static_cast<std::size_t>(whole)];
    part.number = 16 * (1 + below(static_cast<int>(part.number / 16)));
    ofPurchase += part.number;
    number += numberOn(part, day);
  }
  note("sell " + std::to_string(drawn.code) + " day " + std::to_string(day) + " number " +
       std::to_string(number) + (firstInFirstOut ? " fifo" : " lifo"));
  const double price = anyPrice();
  m_user.sellShares(codeText(drawn.code),
                    {dayAt(day), static_cast<double>(number) / 100, price, anyMoney(40), anyComment()},
                    firstInFirstOut);
  m_soldSum[static_cast<std::size_t>(drawn.code)] += ofPurchase;
}

void RandomPortfolio::moveCash() {
  const int type = 1 + below(5), day = anyDay();
  note("cash of type " + std::to_string(type) + " day " + std::to_string(day));
  const double value = anyMoney(5000);
  if (isCreditType(type))
    m_user.creditCash(dayAt(day), value, type, u"DEPOSIT " + anyComment());
  else
    m_user.debitCash(dayAt(day), value, type, u"WITHDRAWAL " + anyComment());
}

void RandomPortfolio::receiveDividend() {
  const int code = below(CODES), day = anyDay();
  const Hundredths shares = oneIn(2) ? anyNumber() : 0;
  note("dividend " + std::to_string(code) + " day " + std::to_string(day) + " shares " +
       std::to_string(shares));
  const double number = anyMoney(1000), rate = anyPrice() / 10, price = shares ? anyPrice() : 0.0;
  m_user.receiveDividend({codeText(code), dayAt(day), number, rate, below(101),
                          static_cast<double>(shares) / 100, price, anyComment(), oneIn(3) ? 1.5 : 0.0});
  m_bought[static_cast<std::size_t>(code)][static_cast<std::size_t>(day)] += shares;
  noteSplits(code);
}

void RandomPortfolio::editBuy() {
  DrawnParcel parcel;
  if (!drawParcel(parcel))
    return;
  const int day = anyDay();
  const Hundredths number = anyNumber();
  note("edit parcel " + std::to_string(parcel.code) + " day " + std::to_string(parcel.day) + " to " +
       std::to_string(day) + " number " + std::to_string(number));
  const double cost = doubleValue(*parcel.event, u"NumHeld") * doubleValue(*parcel.event, u"BuyPrice") +
                      doubleValue(*parcel.event, u"Brokerage");
  const double price = anyPrice();
  m_user.editBuyEvent(*parcel.event,
                      {dayAt(day), static_cast<double>(number) / 100, price, anyMoney(40), anyComment()},
                      oneIn(5) ? cost + 1 : cost, dayAt(parcel.day));
  auto& bought = m_bought[static_cast<std::size_t>(parcel.code)];
  bought[static_cast<std::size_t>(parcel.day)] -= parcel.number;
  bought[static_cast<std::size_t>(day)] += number;
  noteSplits(parcel.code);
}

void RandomPortfolio::editSell() {
  DrawnSale sale;
  if (!drawSale(sale))
    return;
  const int sold = indexOfDay(dateValue(*sale.event, u"SellDate"));
  const int newBought = isSplit(sale.code) ? sale.day : anyDay();
  const int newSold = isSplit(sale.code) ? sold : dayFrom(newBought);
  const Hundredths number = anyNumber();
  note("edit sale " + std::to_string(sale.code) + " day " + std::to_string(sale.day) + " to " +
       std::to_string(newBought) + " sold " + std::to_string(newSold) + " number " + std::to_string(number));
  const double buyPrice = anyPrice(), sellPrice = anyPrice();
  // The form shows the number of shares on the day of the sale.
  const double sharesOfOne = m_splits[static_cast<std::size_t>(sale.code)].empty()
                                 ? 1.0
                                 : SaleFigures(*sale.event).number() * 100 / static_cast<double>(sale.number);
  m_user.editSellEvent(*sale.event,
                       {dayAt(newBought), dayAt(newSold), static_cast<double>(number) * sharesOfOne / 100,
                        buyPrice, sellPrice, 1.0, 2.0, anyComment()});
  const auto code = static_cast<std::size_t>(sale.code);
  m_soldSum[code] += number - sale.number;
  m_bought[code][static_cast<std::size_t>(sale.day)] -= sale.number;
  m_bought[code][static_cast<std::size_t>(newBought)] += number;
}

void RandomPortfolio::editCash() {
  XMLCashEvent* event = draw(m_portfolio.cashEvents());
  if (!event)
    return;
  const int day = anyDay();
  note("edit cash to day " + std::to_string(day));
  m_user.editCashEvent(*event, dayAt(day), dateValue(*event, u"Date"), anyMoney(5000),
                       oneIn(2) ? textValue(*event, u"Description") : u"by hand " + anyComment());
}

void RandomPortfolio::editDividend() {
  XMLDividendEvent* event = draw(m_portfolio.dividends());
  if (!event)
    return;
  const int oldCode = indexOfCode(textValue(*event, u"Code"));
  const int oldDay = indexOfDay(dateValue(*event, u"ReceiveDate"));
  const Hundredths oldShares = hundredths(*event, u"DRPShares");
  const int code = oneIn(4) ? below(CODES) : oldCode;
  const Hundredths shares = oneIn(2) ? anyNumber() : 0;
  const bool parcelStays = oldShares && shares && code == oldCode;
  const int day = anyDay();
  note("edit dividend " + std::to_string(oldCode) + " day " + std::to_string(oldDay) + " shares " +
       std::to_string(oldShares) + " to " + std::to_string(code) + " day " + std::to_string(day) +
       " shares " + std::to_string(shares));
  const double oldValue = oldShares ? 0.0 : doubleValue(*event, u"NumHeld") * doubleValue(*event, u"Rate");
  const double number = anyMoney(1000), rate = anyPrice() / 10, price = shares ? anyPrice() : 0.0;
  const bool found = m_user.editDividend(*event,
                                         {codeText(code), dayAt(day), number, rate, below(101),
                                          static_cast<double>(shares) / 100, price, u"", 0.0},
                                         static_cast<double>(oldShares) / 100,
                                         doubleValue(*event, u"DRPRate"), oldValue, dayAt(oldDay));
  if (oldShares && found)
    m_bought[static_cast<std::size_t>(oldCode)][static_cast<std::size_t>(oldDay)] -= oldShares;
  if (found || !parcelStays)
    m_bought[static_cast<std::size_t>(code)][static_cast<std::size_t>(day)] += shares;
  noteSplits(code);
}

void RandomPortfolio::deleteBuy() {
  DrawnParcel parcel;
  if (!drawParcel(parcel))
    return;
  note("delete parcel " + std::to_string(parcel.code) + " day " + std::to_string(parcel.day));
  const double number = m_user.adjustedBuyEvent(*parcel.event, Date()).number;
  m_user.deleteBuyEvent(codeText(parcel.code), dayAt(parcel.day), number);
  m_bought[static_cast<std::size_t>(parcel.code)][static_cast<std::size_t>(parcel.day)] -= parcel.number;
}

void RandomPortfolio::deleteSell() {
  DrawnSale sale;
  if (!drawSale(sale))
    return;
  // If there are equal sales, the first one is deleted, which may be of other parcels.
  const String sold = textValue(*sale.event, u"SellDate");
  const double number = SaleFigures(*sale.event).number();
  const auto& stock = elementAs<XMLSoldShare>(*sale.event->parent());
  for (std::size_t i = 0; i < stock.sales().size(); ++i) {
    const auto& other = stock.sales()[i];
    if (textValue(other, u"SellDate") == sold && showsTheSame(SaleFigures(other).number(), number, 4)) {
      sale.day = indexOfDay(dateValue(other, u"BuyDate"));
      sale.number = hundredths(other, u"NumHeld");
      break;
    }
  }
  note("delete sale " + std::to_string(sale.code) + " number " + std::to_string(sale.number));
  m_user.deleteSellEvent(codeText(sale.code), Date(sold, DATE_DISPLAY_DMY), number);
  const auto code = static_cast<std::size_t>(sale.code);
  m_soldSum[code] -= sale.number;
  m_bought[code][static_cast<std::size_t>(sale.day)] -= sale.number;
}

void RandomPortfolio::undoSell() {
  DrawnSale sale;
  if (!drawSale(sale))
    return;
  note("undo sale " + std::to_string(sale.code) + " number " + std::to_string(sale.number));
  const std::size_t purchases = countPurchasesPaid();
  m_user.undoSale(*sale.event);
  EXPECT_EQ(countPurchasesPaid(), purchases) << "the shares are held again, so their cost stays paid";
  m_soldSum[static_cast<std::size_t>(sale.code)] -= sale.number;
  noteSplits(sale.code);
}

std::size_t RandomPortfolio::countPurchasesPaid() const {
  std::size_t count = 0;
  const XMLElement& reserve = m_portfolio.subElement(u"CashReserve");
  for (std::size_t i = 0; i < reserve.numSubElements(u"CashEvents"); ++i)
    count += longValue(reserve.subElement(u"CashEvents", i), u"Type") == CASH_EVENT_DEBIT;
  return count;
}

void RandomPortfolio::deleteCash() {
  const XMLCashEvent* event = draw(m_portfolio.cashEvents());
  if (!event)
    return;
  note("delete cash");
  m_user.deleteCashEvent(*event);
}

void RandomPortfolio::deleteDividend() {
  const XMLDividendEvent* event = draw(m_portfolio.dividends());
  if (!event)
    return;
  const auto code = static_cast<std::size_t>(indexOfCode(textValue(*event, u"Code")));
  const auto day = static_cast<std::size_t>(indexOfDay(dateValue(*event, u"ReceiveDate")));
  const Hundredths shares = hundredths(*event, u"DRPShares");
  note("delete dividend " + std::to_string(code) + " day " + std::to_string(day) + " shares " +
       std::to_string(shares));
  if (m_user.deleteDividend(*event))
    m_bought[code][day] -= shares;
}

void RandomPortfolio::removeHeld() {
  const int code = below(CODES);
  note("remove held " + std::to_string(code));
  const Ledger parcels = held();
  m_user.removeHeldShare(codeText(code));
  const auto place = static_cast<std::size_t>(code);
  for (std::size_t day = 0; day < DAYS; ++day)
    m_bought[place][day] -= parcels[place][day];
}

void RandomPortfolio::removeSold() {
  const int code = below(CODES);
  note("remove sold " + std::to_string(code));
  const Ledger sales = sold();
  m_user.removeSoldShare(codeText(code));
  const auto place = static_cast<std::size_t>(code);
  for (std::size_t day = 0; day < DAYS; ++day)
    m_bought[place][day] -= sales[place][day];
  m_soldSum[place] = 0;
}

void RandomPortfolio::split() {
  const int code = below(CODES), day = anyDay();
  const int factor = (oneIn(2) ? 2 : 4) * (oneIn(2) ? 1 : -1);
  std::vector<Split>& splits = m_splits[static_cast<std::size_t>(code)];
  const auto known =
      std::find_if(splits.begin(), splits.end(), [day](const Split& s) { return s.day == day; });
  if (known != splits.end())
    known->factor = factor;
  else if (splits.size() < 2) // Two merges by four still give exact numbers.
    splits.push_back({day, factor});
  else
    return;
  note("split " + std::to_string(code) + " day " + std::to_string(day) + " factor " + std::to_string(factor));
  noteSplits(code);
}

void RandomPortfolio::setLimits() {
  auto* stock = draw(m_portfolio.heldShares());
  if (!stock)
    return;
  note("limits");
  const double least = anyPrice();
  m_user.setMinMax(*stock, least, anyPrice());
  m_user.setPortfolioMax(*stock, anyMoney(100000));
}

// ---- Splits ----

RandomPortfolio::Hundredths RandomPortfolio::numberOn(const DrawnParcel& parcel, int day) const {
  return adjusted(parcel.number, parcel.code, parcel.day, day);
}

void RandomPortfolio::noteSplits(int code) {
  for (const Split& split : m_splits[static_cast<std::size_t>(code)]) {
    m_user.recordAdjustment(codeText(code), dayAt(split.day), std::abs(split.factor), split.factor < 0);
    m_user.capitalRecord().recordsChangedFrom(dayAt(split.day));
  }
}

RandomPortfolio::Hundredths RandomPortfolio::adjusted(Hundredths number, int code, int bought,
                                                      int day) const {
  Hundredths times = 1, parts = 1;
  for (const Split& split : m_splits[static_cast<std::size_t>(code)])
    if (bought < split.day && split.day <= day)
      (split.factor > 0 ? times : parts) *= std::abs(split.factor);
  EXPECT_EQ(number * times % parts, 0) << "the test's own numbers don't come out even";
  return number * times / parts;
}

} // namespace Tallymoor
