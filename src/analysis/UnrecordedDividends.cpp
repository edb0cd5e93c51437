#include "analysis/UnrecordedDividends.h"
#include "books/SharePortfolioUser.h"
#include "books/SplitTerms.h"
#include "foundation/Amounts.h"
#include "xml/PortfolioRecords.h"
#include <algorithm>
#include <cstdlib>
#include <utility>

namespace Tallymoor {

namespace {

constexpr int DAYS_BEFORE = 10; ///< for a day that was typed by a slip
constexpr int DAYS_UNTIL_PAID = 60;

/// The days of receipt that are recorded, in their order.
std::vector<Date> recordedDays(const XMLSharePortfolio& records, const String& code) {
  std::vector<Date> days;
  for (const XMLDividendEvent& dividend : records.dividends())
    if (dividend.code() == code)
      days.push_back(dividend.received());
  std::ranges::sort(days);
  return days;
}

/// Pairs told and recorded days, each with one at most and both in their order: as many as possible, and of
/// those ways the one in which they lie nearest together. So a dividend a month is not taken for the next
/// one.
class Pairing {
public:
  Pairing(const std::vector<Date>& told, const std::vector<Date>& recorded)
      : m_told(told), m_recorded(recorded), m_best(told.size() + 1, std::vector<Cost>(recorded.size() + 1)) {
    for (std::size_t i = told.size(); i-- > 0;)
      for (std::size_t j = recorded.size(); j-- > 0;)
        m_best[i][j] = std::min({m_best[i + 1][j], m_best[i][j + 1], pairedAt(i, j)});
  }

  /// Those of the told days that have no recorded one.
  std::vector<Date> unpaired() const {
    std::vector<Date> days;
    for (std::size_t i = 0, j = 0; i < m_told.size();)
      if (j < m_recorded.size() && m_best[i][j] == m_best[i][j + 1])
        ++j;
      else if (m_best[i][j] == m_best[i + 1][j])
        days.push_back(m_told[i++]);
      else
        ++i, ++j;
    return days;
  }

private:
  /// Fewer without a partner are better, then fewer days between partners.
  using Cost = std::pair<std::ptrdiff_t, int>;

  Cost pairedAt(std::size_t i, std::size_t j) const {
    const int days = m_recorded[j].daysSince(m_told[i]);
    if (days < -DAYS_BEFORE || days > DAYS_UNTIL_PAID)
      return {};
    return {m_best[i + 1][j + 1].first - 1, m_best[i + 1][j + 1].second + std::abs(days)};
  }

  const std::vector<Date>& m_told;
  const std::vector<Date>& m_recorded;
  std::vector<std::vector<Cost>> m_best; ///< of what follows each pair of places
};

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

void addUnrecorded(std::vector<UnrecordedDividend>& all, SharePortfolioUser& portfolio, const String& code,
                   const std::map<Date, double>& dividends) {
  std::map<Date, double> numbers; // of shares, where some were held
  std::vector<Date> days;
  for (const auto& [day, rate] : dividends)
    if (const double number = sharesOnEvening(portfolio, code, day.plusDays(-1)); !showsAsZero(number)) {
      numbers.emplace(day, number);
      days.push_back(day);
    }
  if (days.empty())
    return;
  const std::vector<Date> recorded = recordedDays(portfolio.portfolio(), code);
  for (const Date& day : Pairing(days, recorded).unpaired())
    all.push_back({&portfolio, code, day, dividends.at(day), numbers.at(day)});
}

} // namespace

std::vector<UnrecordedDividend> unrecordedDividends(const Portfolios& portfolios,
                                                    const std::map<String, std::map<Date, double>>& told) {
  std::vector<UnrecordedDividend> all;
  for (SharePortfolioUser* portfolio : portfolios)
    for (const auto& [code, dividends] : told)
      addUnrecorded(all, *portfolio, code, dividends);
  std::ranges::stable_sort(all, std::greater(), &UnrecordedDividend::day);
  return all;
}

} // namespace Tallymoor
