#pragma once
#include "foundation/Date.h"
#include <optional>
#include <string_view>
#include <vector>

namespace Tallymoor {

class SharePortfolioUser;
class XMLElement;

// How the capital of one or several portfolios grew, month by month, apart from money put in or taken out,
// and how the comparison index did over the same time. Everything is derived from the capital records, with
// nothing kept; only brokerage is read from the purchases and sales. Percentages are plain percent numbers,
// and nothing is an empty cell.
//
// A portfolio counts in a gain only if it has records of both days, so that a young one does not empty the
// figures of all. There is an index figure only for exactly one portfolio, and only if it has a comparison
// index; the operations that read the index's price throw as SharePortfolioUser::sharePriceFor does, and may
// fetch and ask like it. GUI thread, under the big mutex; the portfolios are not owned.

using Portfolios = std::vector<SharePortfolioUser*>;

/// One month: from the last day of the month before to the last day of the month, or to today in the current
/// one.
struct PerformanceSpan {
  Date start;
  Date end;
};

/// The current month first, then each one before it, as long as some portfolio has a record of the month's
/// end.
std::vector<PerformanceSpan> performanceMonths(const Portfolios& portfolios, const Date& today);

/// True when some portfolio's record of the day was computed with a stand-in price, so that the capital is
/// provisional.
bool isProvisional(const Portfolios& portfolios, const Date& day);
/// Summed over the portfolios that have a record of the day.
double capitalOn(const Portfolios& portfolios, const Date& day);
bool hasRecordOn(const Portfolios& portfolios, const Date& day);
std::optional<double> indexValue(const Portfolios& portfolios, const Date& day);

/// The first day of a period of months that ends on a day: that many months back, then the last day of that
/// month. One month up to a day in the middle of March begins on the last of February.
Date startOfPeriod(const Date& end, int months);

/// Growth of the capital from one day to another. Money that came in meanwhile is taken off, whenever it
/// came.
std::optional<double> gainBetween(const Portfolios& portfolios, const Date& then, const Date& now);
std::optional<double> indexGainBetween(const Portfolios& portfolios, const Date& then, const Date& now);
std::optional<double> periodGain(const Portfolios& portfolios, const Date& end, int months);
std::optional<double> indexGain(const Portfolios& portfolios, const Date& end, int months);
/// The gain over that many years, as growth a year.
std::optional<double> annualisedGain(const Portfolios& portfolios, const Date& end, int years);
/// Unlike the other figures of the index this one is empty unless the portfolio has a record of the
/// period's start: it stands beside a gain that needs it too.
std::optional<double> annualisedIndexGain(const Portfolios& portfolios, const Date& end, int years);

/// What the purchases and sales of portfolios have cost in brokerage. Read once for the figures of many
/// spans, since it goes through all records; to be read again when they change.
class PaidBrokerage {
public:
  explicit PaidBrokerage(const Portfolios& portfolios);
  /// From the span's first to its last day, both included.
  double within(const PerformanceSpan& span) const;

private:
  struct Payment {
    Date day;
    double amount;
  };
  void addPayment(const Date& day, double amount);

  std::vector<Payment> m_payments; ///< by day
};

/// Brokerage paid from the span's first to its last day, both included, in percent of the capital on the
/// first.
std::optional<double> brokeragePercent(const Portfolios& portfolios, const PerformanceSpan& span);
/// The same, with the brokerage that has been read already.
std::optional<double> brokeragePercent(const Portfolios& portfolios, const PerformanceSpan& span,
                                       const PaidBrokerage& paid);
/// Money that came in after the span's first day, up to and including its last; nothing if it shows as
/// zero.
std::optional<double> externalFlow(const Portfolios& portfolios, const PerformanceSpan& span);

/// Whole months from the first month of today's financial year to the month of `end`, both included. May ask
/// for the country when none is known yet.
int monthsOfFinancialYear(const Date& end, const Date& today);

} // namespace Tallymoor
