#pragma once
#include "foundation/Amounts.h"
#include "foundation/Exception.h"
#include "market/HistoryPage.h"
#include "market/MarketPrices.h"
#include <functional>
#include <map>
#include <set>
#include <utility>
#include <vector>

namespace Tallymoor {

/// A market in memory: the closes that a test has set, and no others. Nothing is ever fetched.
class MemoryPrices : public MarketPrices {
public:
  /// As if the user had typed it: final, and told to the records.
  void set(const String& code, const Date& day, double close) {
    double& known = m_closes[code][day];
    const bool changed = known != close;
    known = close;
    ++m_changeStamp;
    if (changed)
      for (PriceUpdater::PricesObserver* record : m_records)
        record->historicalPriceChanged(code, day, close);
  }
  void clear() {
    ++m_changeStamp;
    m_closes.clear();
  }
  /// From now on the source has answered for the day, be it without a close.
  void setAnswered(const String& code, const Date& day) { m_answered.insert({code, day}); }
  /// Called before each answer to historicalPrice: a source may tell of other days then.
  std::function<void()> beforeAnswer;
  /// The codes for which somebody has asked for a range of days.
  std::vector<String> completed;

  double latestPrice(const String& code) override { return historicalPrice(code, Date(), false); }
  double historicalPrice(const String& code, const Date& date, bool) override {
    if (beforeAnswer)
      beforeAnswer();
    if (const auto known = closeOn(code, date))
      return known->close;
    throw Exception(u"no price of " + code);
  }
  std::optional<KnownClose> closeOn(const String& code, const Date& day) override {
    const auto& closes = m_closes[code];
    const auto known = closes.find(day);
    if (known == closes.end() || showsAsZero(known->second))
      return std::nullopt;
    return KnownClose{day, known->second, true};
  }
  std::optional<KnownClose> lastCloseBefore(const String& code, const Date& day) override {
    const auto& closes = m_closes[code];
    const auto after = closes.lower_bound(day);
    if (after == closes.begin())
      return std::nullopt;
    const auto& [before, close] = *std::prev(after);
    return KnownClose{before, close, true};
  }
  bool hasAnsweredFor(const String& code, const Date& day) override {
    return m_answered.contains({code, day});
  }

  /// The shares that one became, by a split that a source tells.
  std::map<std::pair<String, Date>, double> toldSplits;
  std::optional<double> toldSplit(const String& code, const Date& first, const Date& last) override {
    for (const auto& [told, ratio] : toldSplits)
      if (told.first == code && first <= told.second && told.second <= last)
        return ratio;
    return std::nullopt;
  }

  std::vector<std::pair<String, Date>> toldSplitDays() override {
    std::vector<std::pair<String, Date>> days;
    for (const auto& [day, ratio] : toldSplits)
      days.push_back(day);
    return days;
  }

  bool isToBeFetched(const String&, const Date&) override { return false; }
  bool hasCachedHistory(const String& code) override { return !m_closes[code].empty(); }
  bool hasCachedPrice(const String& code, const Date& day) override { return closeOn(code, day).has_value(); }
  HistoryRange recentRange() override { return {Date().plusDays(-14), Date()}; }
  std::uint64_t changeStamp() const override { return m_changeStamp; }
  bool completeHistory(const std::vector<HistoryNeed>& needs, Progress*) override {
    for (const HistoryNeed& need : needs)
      completed.push_back(need.code);
    return true;
  }

  void addRecord(PriceUpdater::PricesObserver& record) override { m_records.push_back(&record); }
  void removeRecord(PriceUpdater::PricesObserver& record) override { std::erase(m_records, &record); }

private:
  std::uint64_t m_changeStamp = 0;
  std::map<String, std::map<Date, double>> m_closes;
  std::set<std::pair<String, Date>> m_answered;
  std::vector<PriceUpdater::PricesObserver*> m_records;
};

} // namespace Tallymoor
