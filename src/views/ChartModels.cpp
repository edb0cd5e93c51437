#include "views/ChartModels.h"
#include "analysis/CapitalGrowth.h"
#include "analysis/Indicators.h"
#include "analysis/SaleFigures.h"
#include "books/SharePortfolioUser.h"
#include "books/SplitTerms.h"
#include "foundation/Amounts.h"
#include "foundation/NotYetKnown.h"
#include "foundation/RunTimeSettings.h"
#include "market/TallymoorInternet.h"
#include "views/PriceLimits.h"
#include "views/SplitHistory.h"
#include "widgets/CellResult.h"
#include "widgets/ChartTexts.h"
#include "xml/PortfolioRecords.h"
#include <map>
#include <utility>

namespace Tallymoor {

namespace {

/// All that was bought, or sold, of a stock on one day, as of the last day of the chart.
struct DaysTrade {
  double number = 0.0;
  double value = 0.0;

  void add(double sharesNumber, double price) {
    number += sharesNumber;
    value += sharesNumber * price;
  }
};
using Trades = std::map<Date, DaysTrade>;

bool isCarriedOverWeekend(const Date& day, const ShareValue& value) {
  return day.isWeekend() && value.volume == 0;
}

std::vector<ChartPoint> closes(const String& code, const SplitHistory& splits, const Date& from,
                               const Date& to) {
  std::vector<ChartPoint> points;
  for (const auto& [day, row] : TallymoorInternet::Instance().cachedRows(code, from, to))
    if (!showsAsZero(row.close) && !isCarriedOverWeekend(day, row))
      points.push_back({day, row.close / splits.closeDivisor(day, to)});
  return points;
}

/// The trades of one stock in the portfolios.
class TradeWalk {
public:
  TradeWalk(const SplitHistory& splits, const Date& from, const Date& to)
      : m_splits(splits), m_from(from), m_to(to) {}

  void read(const String& code, const SharePortfolioUser& portfolio) {
    if (const XMLHeldShare* held = portfolio.findHeldShare(code))
      for (const XMLBuyEvent& parcel : held->parcels())
        readPurchase(parcel);
    if (const XMLSoldShare* sold = portfolio.findSoldShare(code))
      for (const XMLSellEvent& sale : sold->sales())
        readSale(SaleFigures(sale));
  }

  std::vector<ChartMarker> markers() const {
    std::vector<ChartMarker> all;
    addMarkers(all, m_purchases, true);
    addMarkers(all, m_sales, false);
    return all;
  }

private:
  void readPurchase(const XMLBuyEvent& parcel) {
    const SharesAt shares = sharesOn(parcel, m_to);
    add(m_purchases, parcel.bought(), shares.number, shares.price);
  }

  /// A sale tells number and purchase price as of its own day.
  void readSale(const SaleFigures& sale) {
    const double shares = m_splits.sharesBetween(sale.sold(), m_to);
    add(m_purchases, sale.bought(), sale.number() * shares, sale.buyPrice() / shares);
    add(m_sales, sale.sold(), sale.number() * shares, sale.sellPrice() / shares);
  }

  void add(Trades& trades, const Date& day, double number, double price) const {
    if (day >= m_from && day <= m_to)
      trades[day].add(number, price);
  }

  static void addMarkers(std::vector<ChartMarker>& all, const Trades& trades, bool up) {
    for (const auto& [day, trade] : trades) {
      if (showsAsZero(trade.number))
        continue;
      const double price = trade.value / trade.number;
      all.push_back({day, price, up,
                     String(up ? u"Bought " : u"Sold ") + CellResult(trade.number, CELL_NUMBER).shown() +
                         u" at " + chartValueText(price, ChartUnit::PRICE)});
    }
  }

  const SplitHistory& m_splits;
  const Date m_from;
  const Date m_to;
  Trades m_purchases;
  Trades m_sales;
};

/// Nothing while the prices are being fetched.
template <class Figures>
auto ifKnown(Figures figures) -> std::optional<decltype(figures())> {
  try {
    return figures();
  } catch (const NotYetKnown&) {
    return std::nullopt;
  }
}

PriceLimits limitsInForce(const String& code, const Portfolios& portfolios, const Date& day) {
  if (autoMinMaxPrices) {
    const auto indicators = ifKnown([&] { return indicatorsOf(code, day); }).value_or(Indicators());
    return {indicators.autoMin.value_or(0.0), indicators.autoMax.value_or(0.0)};
  }
  for (const SharePortfolioUser* portfolio : portfolios)
    if (const XMLHeldShare* held = portfolio->findHeldShare(code))
      return PriceLimits::ofHeldShare(*held);
  return PriceLimits::ofStock(code);
}

void addLevels(ChartModel& model, const PriceLimits& limits) {
  if (!showsAsZero(limits.min))
    model.levels.push_back({u"Min", limits.min, ChartColours::VERMILLION});
  if (!showsAsZero(limits.max))
    model.levels.push_back({u"Max", limits.max, ChartColours::GREEN});
}

/// The part of the line from the first day on.
void addTrend(ChartModel& model, TrendLine line, const Date& from) {
  const int days = line.to.daysSince(line.from);
  if (line.from < from && days > 0) {
    line.fromValue += (line.toValue - line.fromValue) * from.daysSince(line.from) / days;
    line.from = from;
  }
  model.series.push_back({u"LR",
                          ChartColours::PURPLE,
                          ChartStyle::DOTS,
                          {{line.from, line.fromValue}, {line.to, line.toValue}},
                          true});
}

} // namespace

ChartModel capitalChartModel(const Portfolios& portfolios, const Date& from, const Date& to) {
  ChartModel model;
  model.title = (portfolios.size() == 1 ? u"Capital of " + portfolios[0]->name() : String(u"Capital")) +
                u", apart from deposits and withdrawals";
  model.emptyText = u"No capital to show yet.";
  ChartSeries capital{u"Capital", ChartColours::BLUE, ChartStyle::LINE, {}};
  ChartSeries index{String(), ChartColours::VERMILLION, ChartStyle::DASHES, {}};
  for (const GrowthDay& day : capitalGrowth(portfolios, from, to)) {
    capital.points.push_back({day.day, day.growth});
    if (day.index)
      index.points.push_back({day.day, *day.index});
  }
  model.series.push_back(std::move(capital));
  if (!index.points.empty()) {
    index.name = portfolios[0]->comparisonIndex();
    model.series.push_back(std::move(index));
  }
  return model;
}

ChartModel priceChartModel(const String& code, const Portfolios& portfolios, const Date& from,
                           const Date& to) {
  ChartModel model;
  model.title = code;
  model.unit = ChartUnit::PRICE;
  model.emptyText = u"No prices of " + code +
                    u" are known in this time. Check the code by searching for the "
                    u"company, try Tools, Refresh Prices, or show a longer time.";
  const SplitHistory splits(code, portfolios);
  model.series.push_back({u"Price", ChartColours::BLUE, ChartStyle::LINE, closes(code, splits, from, to)});
  if (model.series[0].points.empty())
    return model;
  TradeWalk trades(splits, from, to);
  for (const SharePortfolioUser* portfolio : portfolios)
    trades.read(code, *portfolio);
  model.markers = trades.markers();
  const std::optional<TrendLine> trend =
      ifKnown([&] { return trendLineOf(code, to); }).value_or(std::nullopt);
  if (trend && showsTheSame(splits.closeDivisor(trend->from, to), 1.0, 4))
    addTrend(model, *trend, from);
  addLevels(model, limitsInForce(code, portfolios, to));
  return model;
}

} // namespace Tallymoor
