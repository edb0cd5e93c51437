#include "engine/HoldingOnDay.h"
#include "engine/SharePortfolioUser.h"
#include "market/TallymoorInternet.h"
#include "xml/Leaves.h"
#include <algorithm>

namespace Tallymoor {

namespace {

/// Adds up the parcels as they are found.
class Parcels {
public:
  explicit Parcels(const Date& day) : m_day(day) {}

  void addHeld(const SharePortfolioUser& portfolio, const XMLElement& stock) {
    for (std::size_t i = 0; i < stock.numSubElements(u"BuyEvents"); ++i) {
      const XMLElement& parcel = stock.subElement(u"BuyEvents", i);
      if (dateValue(parcel, u"BuyDate") > m_day)
        continue;
      double number = 0.0, price = 0.0;
      portfolio.adjustedBuyEvent(parcel, m_day, number, price);
      add(dateValue(parcel, u"BuyDate"), number, price);
    }
  }
  void addSoldSince(const SharePortfolioUser& portfolio, const XMLElement& stock) {
    for (std::size_t i = 0; i < stock.numSubElements(u"SellEvents"); ++i) {
      const XMLElement& sale = stock.subElement(u"SellEvents", i);
      if (dateValue(sale, u"BuyDate") > m_day || dateValue(sale, u"SellDate") <= m_day)
        continue;
      double number = 0.0, price = 0.0;
      portfolio.adjustedSellEvent(sale, m_day, number, price);
      add(dateValue(sale, u"BuyDate"), number, price);
    }
  }
  const std::optional<HeldOnDay>& sum() const { return m_sum; }

private:
  void add(const Date& bought, double number, double price) {
    if (!m_sum)
      m_sum = HeldOnDay{{}, bought};
    m_sum->earliest = std::min(m_sum->earliest, bought);
    m_sum->cost.number += number;
    m_sum->cost.value += number * price;
  }

  Date m_day;
  std::optional<HeldOnDay> m_sum;
};

} // namespace

std::optional<HeldOnDay> heldOn(const SharePortfolioUser& portfolio, const String& code, const Date& day) {
  Parcels parcels(day);
  std::size_t index = 0;
  if (const XMLElement* held = portfolio.findHeldShare(code, index))
    parcels.addHeld(portfolio, *held);
  if (const XMLElement* sold = portfolio.findSoldShare(code, index))
    parcels.addSoldSince(portfolio, *sold);
  return parcels.sum();
}

double shownPrice(const SharePortfolioUser& portfolio, const String& code, const Date& day) {
  return day < Date::realToday() ? TallymoorInternet::Instance().historicalPrice(code, day, true)
                                 : portfolio.sharePriceFor(code, day, true);
}

} // namespace Tallymoor
