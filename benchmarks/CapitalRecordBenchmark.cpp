// Recomputes a capital record of 20 years and 30 shares from 2,000 records and a full price cache, compared
// with reading the same record from its document. Also computes the growth shown by its chart. Uses no
// network: every price is cached.
#include "Offline.h"
#include "Ratio.h"
#include "analysis/CapitalGrowth.h"
#include "analysis/Indicators.h"
#include "books/SharePortfolioUser.h"
#include "foundation/Constants.h"
#include "foundation/LinuxPlatform.h"
#include "foundation/RunTimeSettings.h"
#include "market/MarketPrices.h"
#include "market/TallymoorInternet.h"
#include "session/BookQuestions.h"
#include "xml/CapitalRecord.h"
#include "xml/PortfolioRecords.h"
#include <benchmark/benchmark.h>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <memory>
#include <random>
#include <sstream>
#include <string>

namespace Tallymoor {
namespace {

constexpr int YEARS = 20;
constexpr int SHARES = 30;
constexpr int EVENTS = 2000;
constexpr int DAYS = YEARS * 365 + YEARS / 4;
constexpr int ROUNDS = 7;
constexpr double REBUILD_LIMIT = 1.0;
constexpr double GROWTH_LIMIT = 0.5;

/// CPU time, which is least affected by other programs. All work is done on one thread.
double processorSeconds() {
  timespec now{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

template <class Work>
double secondsOf(const Work& work) {
  const double start = processorSeconds();
  work();
  return processorSeconds() - start;
}

/// A user's folder that is removed at the end.
class ScratchProfile {
public:
  ScratchProfile() {
    std::string pattern = (std::filesystem::temp_directory_path() / "tallymoor-bench-XXXXXX").string();
    if (!mkdtemp(pattern.data()))
      std::abort();
    m_folder = pattern;
    LinuxPlatformOptions options;
    options.dataHome = m_folder;
    options.locale = "en_AU";
    options.programFolder = TALLYMOOR_PROGRAM_FOLDER;
    Platform::setInstance(std::make_unique<LinuxPlatform>(options));
    installMissingDefaults(Platform::Instance(), APP_NAME);
    TallymoorInternet::Options gateway;
    gateway.startUpdater = false;
    gateway.makeClient = [] { return std::make_unique<Bench::NoConnection>(); };
    TallymoorInternet::setOptions(gateway);
  }
  ~ScratchProfile() {
    TallymoorInternet::shutdown();
    std::filesystem::remove_all(m_folder);
  }

private:
  std::string m_folder;
};

String codeOf(int share) {
  return String(u"AB") + static_cast<char16_t>(u'A' + share % 26) + (share < 26 ? u".AX" : u"X.AX");
}

/// A portfolio over 20 years: all shares are held from the first day, followed by purchases, sales, fees and
/// deposits.
class LongHeldPortfolio {
public:
  explicit LongHeldPortfolio(const Date& today) : m_first(today.plusDays(1 - DAYS)) {
    m_tree.subElement(u"Name").setValue(u"Trading");
    fillCache(today);
    m_user = std::make_unique<SharePortfolioUser>(m_tree, gatewayPrices());
    for (int share = 0; share < SHARES; ++share)
      buy(share, m_first);
    for (int day = 1; numEvents() < EVENTS; day = (day + 37) % DAYS)
      trade(m_first.plusDays(day));
  }

  SharePortfolioUser& user() { return *m_user; }
  const Date& first() const { return m_first; }

  std::size_t numEvents() const {
    std::size_t events = m_tree.subElement(u"CashReserve").numSubElements(u"CashEvents");
    const XMLElement& held = m_tree.subElement(u"HeldShares");
    for (std::size_t i = 0; i < held.numSubElements(u"HeldShares"); ++i)
      events += held.subElement(u"HeldShares", i).numSubElements(u"BuyEvents");
    const XMLElement& sold = m_tree.subElement(u"SoldShares");
    for (std::size_t i = 0; i < sold.numSubElements(u"SoldShares"); ++i)
      events += sold.subElement(u"SoldShares", i).numSubElements(u"SellEvents");
    return events;
  }

private:
  double priceOn(int share, int day) const {
    return 3.0 + 0.4 * share + day * 0.002 + std::sin(day * 0.05 + share);
  }

  void fillCache(const Date& today) {
    for (int share = 0; share < SHARES; ++share)
      for (int day = -1; m_first.plusDays(day) <= today; ++day)
        TallymoorInternet::Instance().setCachedPrice(codeOf(share), m_first.plusDays(day),
                                                     priceOn(share, day));
  }

  void buy(int share, const Date& date) {
    m_user->buyShares(codeOf(share),
                      {date, 100.0 + share, priceOn(share, date.daysSince(m_first)), 29.95, String()});
  }

  void trade(const Date& date) {
    const int share = std::uniform_int_distribution<int>(0, SHARES - 1)(m_random);
    switch (std::uniform_int_distribution<int>(0, 3)(m_random)) {
    case 0:
      m_user->creditCash(date, 123.45, CASH_EVENT_DEPOSIT, u"DEPOSIT savings");
      break;
    case 1:
      // Last in, first out, but never the first day's parcel, so that every share stays held.
      if (m_user->numHeld(codeOf(share)) > 250)
        m_user->sellShares(codeOf(share),
                           {date, 50, priceOn(share, date.daysSince(m_first)), 29.95, String()}, false);
      break;
    default:
      buy(share, date);
    }
  }

  const Date m_first;
  std::mt19937 m_random{510};
  XMLSharePortfolio m_tree;
  std::unique_ptr<SharePortfolioUser> m_user;
};

double rebuild(LongHeldPortfolio& portfolio) {
  portfolio.user().capitalRecord().recordsChangedFrom(portfolio.first());
  return secondsOf([&] { updateCapitalRecord(portfolio.user()); });
}

double grow(LongHeldPortfolio& portfolio, const Date& today) {
  const Portfolios portfolios{&portfolio.user()};
  return secondsOf(
      [&] { benchmark::DoNotOptimize(capitalGrowth(portfolios, portfolio.first(), today).size()); });
}

double decode(const std::string& document) {
  XMLSharePortfolioCapitalRecord record;
  return secondsOf([&] { record.decode(document.c_str()); });
}

/// The document of a rebuilt record.
std::string documentOf(LongHeldPortfolio& portfolio) {
  rebuild(portfolio);
  SharePortfolioCapitalRecordUser& record = portfolio.user().capitalRecord();
  record.save();
  XMLSharePortfolioCapitalRecord saved;
  saved.decode(record.fileName());
  std::ostringstream text;
  saved.encodeWithDoctype(text, RECORDS_DTD);
  std::printf("capital record: %zu events, %zu days, %zu shares on the last, %.1f MB\n",
              portfolio.numEvents(), saved.numSubElements(u"DayCaps"),
              saved.subElement(u"DayCaps", saved.numSubElements(u"DayCaps") - 1).numSubElements(u"ShareVals"),
              static_cast<double>(text.str().size()) / 1e6);
  return text.str();
}

LongHeldPortfolio* thePortfolio;
const std::string* theDocument;

void BM_Rebuild(benchmark::State& state) {
  for (auto _ : state)
    state.SetIterationTime(rebuild(*thePortfolio));
}

void BM_Decode(benchmark::State& state) {
  for (auto _ : state)
    state.SetIterationTime(decode(*theDocument));
}

void BM_Growth(benchmark::State& state) {
  for (auto _ : state)
    state.SetIterationTime(grow(*thePortfolio, Date()));
}

void BM_Indicators(benchmark::State& state) {
  const Date today;
  for (auto _ : state)
    benchmark::DoNotOptimize(indicatorsOf(codeOf(0), today).lrValue);
}

BENCHMARK(BM_Rebuild)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Growth)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Indicators)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_Decode)->UseManualTime()->Unit(benchmark::kMillisecond);

} // namespace
} // namespace Tallymoor

int main(int argc, char** argv) {
  using namespace Tallymoor;
  readSettings();
  const Bench::NoUser noUser;
  const ScratchProfile profile;
  LongHeldPortfolio portfolio((Date()));
  const std::string document = documentOf(portfolio);
  const double ratio = Bench::measureRatio(
      ROUNDS, [&] { return rebuild(portfolio); }, [&] { return decode(document); });
  const double growthRatio = Bench::measureRatio(
      ROUNDS, [&] { return grow(portfolio, Date()); }, [&] { return decode(document); });
  const bool rebuildKept = Bench::printRatio("capital_record_rebuild", ratio, REBUILD_LIMIT);
  const bool growthKept = Bench::printRatio("capital_growth", growthRatio, GROWTH_LIMIT);
  thePortfolio = &portfolio;
  theDocument = &document;
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  return rebuildKept && growthKept ? 0 : 1;
}
