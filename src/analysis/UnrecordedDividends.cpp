#include "analysis/UnrecordedDividends.h"
#include "books/SharePortfolioUser.h"
#include "books/SplitTerms.h"
#include "foundation/Amounts.h"
#include "xml/PortfolioRecords.h"
#include <algorithm>

namespace Tallymoor {

namespace {

constexpr int DAYS_BEFORE = 10; ///< for a day that was typed by a slip
constexpr int DAYS_UNTIL_PAID = 60;

bool isRecorded(const XMLSharePortfolio& records, const String& code, const Date& day) {
  const auto dividends = records.dividends();
  return std::any_of(dividends.begin(), dividends.end(), [&](const XMLDividendEvent& dividend) {
    return dividend.code() == code && dividend.received() >= day.plusDays(-DAYS_BEFORE) &&
           dividend.received() <= day.plusDays(DAYS_UNTIL_PAID);
  });
}

/// From the records, since the capital record lacks the days after a change until it is brought up to date.
double sharesOnEvening(const SharePortfolioUser& portfolio, const String& code, const Date& day) {
  double number = 0.0;
  if (const XMLHeldShare* held = portfolio.findHeldShare(code))
    for (const XMLBuyEvent& parcel : held->parcels())
      if (parcel.bought() <= day)
        number += portfolio.adjustedBuyEvent(parcel, day).number;
  if (const XMLSoldShare* sold = portfolio.findSoldShare(code))
    for (const XMLSellEvent& sale : sold->sales())
      if (sale.bought() <= day && sale.sold() > day)
        number += portfolio.adjustedSellEvent(sale, day).number;
  return number;
}

} // namespace

std::vector<UnrecordedDividend> unrecordedDividends(const Portfolios& portfolios,
                                                    const std::map<String, std::map<Date, double>>& told) {
  std::vector<UnrecordedDividend> all;
  for (SharePortfolioUser* portfolio : portfolios)
    for (const auto& [code, dividends] : told)
      for (const auto& [day, rate] : dividends)
        if (const double number = sharesOnEvening(*portfolio, code, day.plusDays(-1));
            !showsAsZero(number) && !isRecorded(portfolio->portfolio(), code, day))
          all.push_back({portfolio, code, day, rate, number});
  std::ranges::stable_sort(all, std::greater(), &UnrecordedDividend::day);
  return all;
}

} // namespace Tallymoor
