#include "market/MarketPrices.h"
#include "market/TallymoorInternet.h"

namespace Tallymoor {

namespace {

TallymoorInternet& gateway() {
  return TallymoorInternet::Instance();
}

class GatewayPrices : public MarketPrices {
public:
  double latestPrice(const String& code) override { return gateway().priceUpdater().getLatestPrice(code); }
  double historicalPrice(const String& code, const Date& date, bool upTo) override {
    return gateway().historicalPrice(code, date, upTo);
  }
  std::optional<KnownClose> closeOn(const String& code, const Date& day) override {
    return gateway().closeOn(code, day);
  }
  std::optional<KnownClose> lastCloseBefore(const String& code, const Date& day) override {
    return gateway().lastCloseBefore(code, day);
  }
  bool hasAnsweredFor(const String& code, const Date& day) override {
    return gateway().hasAnsweredFor(code, day);
  }
  std::optional<double> toldSplit(const String& code, const Date& first, const Date& last) override {
    return gateway().toldSplit(code, first, last);
  }
  std::vector<std::pair<String, Date>> toldSplitDays() override { return gateway().toldSplitDays(); }
  bool isToBeFetched(const String& code, const Date& day) override {
    return gateway().isToBeFetched(code, day);
  }
  bool hasCachedHistory(const String& code) override { return gateway().hasCachedHistory(code); }
  bool hasCachedPrice(const String& code, const Date& day) override {
    return gateway().hasCachedPrice(code, day);
  }
  HistoryRange recentRange() override { return gateway().recentRange(); }
  std::uint64_t changeStamp() const override { return gateway().changeStamp(); }
  bool completeHistory(const std::vector<HistoryNeed>& needs, Progress* progress) override {
    return gateway().completeHistory(needs, progress);
  }
  void addRecord(PriceUpdater::PricesObserver& record) override {
    gateway().priceUpdater().addObserver(&record, PriceUpdater::Rank::Records);
  }
  void removeRecord(PriceUpdater::PricesObserver& record) override {
    if (TallymoorInternet::exists())
      gateway().priceUpdater().removeObserver(&record);
  }
};

} // namespace

MarketPrices::~MarketPrices() = default;

std::optional<double> MarketPrices::toldSplit(const String&, const Date&, const Date&) {
  return std::nullopt;
}

std::vector<std::pair<String, Date>> MarketPrices::toldSplitDays() {
  return {};
}

MarketPrices& gatewayPrices() {
  static GatewayPrices prices;
  return prices;
}

} // namespace Tallymoor
