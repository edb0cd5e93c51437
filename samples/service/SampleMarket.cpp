#include "SampleMarket.h"
#include "TradingCalendar.h"
#include <algorithm>
#include <array>
#include <cstdio>

namespace SampleService {

using namespace std::chrono;

/// Parameters of a stock's price series.
struct Security {
  const char* code;
  const char* name;
  const char* market;
  int firstPriceCents;
  int driftPerMillion;      ///< Mean daily return.
  int volatilityPerMillion; ///< Typical daily return.
  int dividendPerMille;     ///< Per mille of the price, paid twice a year; 0 for none.
  int listedYear = 2001;
};

namespace {

struct SplitEvent {
  const char* code;
  year_month_day day;
  int numerator; ///< New shares per `denominator` old shares.
  int denominator;
};

const SplitEvent SPLITS[] = {
    {"GRV.AX", 2024y / May / 14, 2, 1},
    {"TLM.AX", 2022y / September / 6, 3, 1},
    {"OPL.AX", 2023y / November / 15, 1, 5},
};

const Security SECURITIES[] = {
    {"ABC.AX", "Abercorn Brick and Cement", "Australia", 820, 260, 11000, 22},
    {"AGW.AX", "Aldgate Water Utilities", "Australia", 340, 180, 7000, 28},
    {"ALP.AX", "Alpine Logistics Property", "Australia", 215, 190, 9000, 26},
    {"BDG.AX", "Bendalong Gold", "Australia", 95, 330, 24000, 6},
    {"BLK.AX", "Blackwood Timber", "Australia", 410, 170, 12000, 20},
    {"BRN.AX", "Barronvale Wines", "Australia", 505, 120, 13000, 15},
    {"CBR.AX", "Canterbury Bank of Reserve", "Australia", 2150, 240, 9500, 27},
    {"CLD.AX", "Cloudburst Data Centres", "Australia", 180, 430, 19000, 4},
    {"CPY.AX", "Coppertree Mining", "Australia", 265, 310, 21000, 10},
    {"DRM.AX", "Darumbal Minerals", "Australia", 45, 290, 28000, 0},
    {"DUN.AX", "Dunmore Insurance", "Australia", 760, 200, 10500, 24},
    {"ELK.AX", "Elkington Electrical", "Australia", 315, 220, 12500, 18},
    {"EVR.AX", "Everglade Energy", "Australia", 1120, 210, 14000, 19},
    {"FRT.AX", "Fairfort Retail", "Australia", 640, 150, 13500, 25},
    {"FSH.AX", "Fishermans Harbour Seafood", "Australia", 155, 230, 15000, 16},
    {"GLC.AX", "Gladstone Chemicals", "Australia", 980, 160, 12000, 21},
    {"GRV.AX", "Grevillea Health", "Australia", 1240, 420, 13000, 12},
    {"HBR.AX", "Harbourline Ports", "Australia", 890, 250, 10000, 23},
    {"HLT.AX", "Hilltop Aged Care", "Australia", 275, 140, 14500, 17},
    {"IRW.AX", "Ironwood Steel", "Australia", 560, 200, 17500, 14},
    {"JAC.AX", "Jacana Airlines", "Australia", 330, 90, 20000, 5},
    {"KOA.AX", "Koala Mutual Bank", "Australia", 1530, 210, 9000, 29},
    {"KUR.AX", "Kurrajong Uranium", "Australia", 60, 350, 29000, 0, 2006},
    {"LMP.AX", "Lamplight Telecom", "Australia", 420, 130, 9500, 27},
    {"LTH.AX", "Lithgow Lithium", "Australia", 38, 480, 31000, 0, 2011},
    {"MDC.AX", "Midcoast Dairy", "Australia", 225, 170, 12000, 18},
    {"MRL.AX", "Merlinda Software", "Australia", 130, 450, 18000, 5, 2004},
    {"NPT.AX", "Neptune Offshore", "Australia", 470, 180, 18500, 9},
    {"NRD.AX", "Nardoo Pastoral", "Australia", 185, 160, 11500, 15},
    {"OPL.AX", "Opaline Exploration", "Australia", 70, -150, 27000, 0},
    {"ORB.AX", "Orbost Builders", "Australia", 350, 190, 15500, 20},
    {"PLT.AX", "Platypus Media", "Australia", 610, 60, 15000, 22},
    {"QLD.AX", "Quillodin Sugar", "Australia", 290, 140, 13000, 17},
    {"RED.AX", "Redgum Finance", "Australia", 205, 280, 17000, 19},
    {"RVR.AX", "Riverina Grain", "Australia", 375, 170, 12000, 21},
    {"SNG.AX", "Songlark Entertainment", "Australia", 255, 210, 16500, 11},
    {"STR.AX", "Stringybark Paper", "Australia", 445, 80, 13500, 23},
    {"TLM.AX", "Tallowood Medical", "Australia", 880, 460, 14000, 8},
    {"TST.AX", "Testament Tools", "Australia", 190, 240, 15500, 16},
    {"UMB.AX", "Umbrella Travel", "Australia", 145, 200, 21500, 7},
    {"VNT.AX", "Ventnor Gas", "Australia", 720, 190, 9000, 26},
    {"WTL.AX", "Wattle Foods", "Australia", 530, 210, 10000, 22},
    {"YRR.AX", "Yarraman Rail", "N/A", 660, 230, 11000, 20},
    {"ZEB.AX", "Zebra Finch Payments", "N/A", 240, 380, 20500, 3, 2014},
    {"ARDN", "Ardenne Aerospace Inc.", "NYSE", 4250, 260, 13000, 9},
    {"BLUX", "Bluxford Semiconductors Inc.", "NasdaqGS", 1875, 520, 22000, 2},
    {"CRNL", "Cornell Lake Foods Co.", "NYSE", 3310, 170, 8500, 14},
    {"DVYN", "Devlyn Software Corp.", "NasdaqGS", 960, 540, 19000, 0, 2003},
    {"FRNT", "Frontier Plains Railroad", "NYSE", 2740, 250, 11500, 10},
    {"GLDR", "Gilder Brothers Bank", "NYSE", 5120, 190, 14500, 12},
    {"HYLO", "Hyloft Storage Trust", "NYSE", 2080, 220, 12000, 18},
    {"MNTA", "Montara Pharmaceuticals", "NasdaqGM", 1430, 300, 21000, 0},
    {"PKWY", "Parkway Stores Inc.", "NYSE", 3890, 180, 12500, 11},
    {"TSTA", "Testarossa Instruments Inc.", "NasdaqGS", 2260, 340, 17500, 5},
    {"^AORD", "All Ordinaries (sample)", "Australia", 315000, 200, 7500, 0},
    {"^AXJO", "Top 200 (sample)", "Australia", 320000, 190, 7800, 0},
    {"^GSPC", "Large Companies 500 (sample)", "NYSE", 132000, 260, 8200, 0},
};

const Security* findSecurity(std::string_view code) {
  const auto found = std::find_if(std::begin(SECURITIES), std::end(SECURITIES),
                                  [code](const Security& security) { return code == security.code; });
  return found == std::end(SECURITIES) ? nullptr : found;
}

/// Pseudo-random numbers derived from a text: FNV-1a for the seed, then splitmix64.
class Sequence {
public:
  explicit Sequence(std::string_view text) {
    for (const char c : text)
      m_state = (m_state ^ static_cast<unsigned char>(c)) * 1099511628211ULL;
  }
  std::uint64_t next() {
    m_state += 0x9E3779B97F4A7C15ULL;
    std::uint64_t z = m_state;
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ULL;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBULL;
    return z ^ (z >> 31);
  }
  std::int64_t below(std::int64_t limit) {
    return static_cast<std::int64_t>(next() % static_cast<std::uint64_t>(limit));
  }
  /// Approximately normally distributed: the sum of four uniform numbers.
  std::int64_t around(std::int64_t size) {
    std::int64_t sum = 0;
    for (int i = 0; i < 4; ++i)
      sum += below(2 * size + 1) - size;
    return sum * 866 / 1000;
  }

private:
  std::uint64_t m_state = 14695981039346656037ULL;
};

/// The tick size: half a cent below two currency units, one cent above.
std::int64_t tick(std::int64_t price) {
  const std::int64_t step = price < 20000 ? 50 : 100;
  return std::max<std::int64_t>((price + step / 2) / step * step, step);
}

const SplitEvent* splitOn(std::string_view code, Day day) {
  for (const SplitEvent& split : SPLITS)
    if (code == split.code && sys_days(split.day) == day)
      return &split;
  return nullptr;
}

std::string dividendText(std::int64_t amount) {
  char text[40];
  std::snprintf(text, sizeof text, "$%lld.%04lld Dividend", static_cast<long long>(amount / 10000),
                static_cast<long long>(amount % 10000));
  return text;
}

/// Creates the days of one security in order.
class HistoryMaker {
public:
  explicit HistoryMaker(const Security& security)
      : m_security(security), m_random(security.code), m_value(std::int64_t(security.firstPriceCents) * 100) {
  }

  PriceHistory upTo(Day today) {
    for (Day day = sys_days(year(m_security.listedYear) / January / 2); day < today; day += days(1))
      if (isTradingDay(day))
        addDay(day);
    adjustCloses();
    return std::move(m_history);
  }

private:
  void addDay(Day day) {
    std::int64_t change = m_security.driftPerMillion + m_random.around(m_security.volatilityPerMillion);
    if (const SplitEvent* split = splitOn(m_security.code, day)) {
      m_value = m_value * split->denominator / split->numerator;
      change = -12000; // Makes a split day close lower, so that the jump clearly exceeds the ratio.
      if (split->numerator < split->denominator)
        change = 9000;
      m_history.events.push_back({day, std::to_string(split->numerator) + ":" +
                                           std::to_string(split->denominator) + " Stock Split"});
      m_splitRows.emplace_back(m_history.rows.size(), split);
    }
    const std::int64_t open = tick(m_value * (1000000 + change / 3) / 1000000);
    m_value = std::max<std::int64_t>(m_value * (1000000 + change) / 1000000, 500);
    const std::int64_t close = tick(m_value);
    const std::int64_t spread = m_value * m_random.below(m_security.volatilityPerMillion) / 2000000;
    DayRow row{day,
               open,
               std::max(open, close) + spread / 100 * 100,
               std::min(open, close) - spread / 100 * 100,
               close,
               close,
               10000 + m_random.below(4000000)};
    row.low = std::max<std::int64_t>(row.low, 50);
    m_history.rows.push_back(row);
    addDividend(day, close);
  }

  void addDividend(Day day, std::int64_t close) {
    const year_month_day ymd(day);
    const bool dividendMonth = ymd.month() == March || ymd.month() == September;
    const bool fresh = ymd.year() != m_lastDividend.year() || ymd.month() != m_lastDividend.month();
    if (m_security.dividendPerMille == 0 || !dividendMonth || unsigned(ymd.day()) < 10 || !fresh)
      return;
    m_lastDividend = ymd;
    m_history.events.push_back({day, dividendText(close * m_security.dividendPerMille / 2000)});
  }

  void adjustCloses() {
    for (const auto& [firstRow, split] : m_splitRows)
      for (std::size_t i = 0; i < firstRow; ++i)
        m_history.rows[i].adjustedClose =
            m_history.rows[i].adjustedClose * split->denominator / split->numerator;
  }

  const Security& m_security;
  Sequence m_random;
  std::int64_t m_value;
  year_month_day m_lastDividend{1900y / January / 1};
  PriceHistory m_history;
  std::vector<std::pair<std::size_t, const SplitEvent*>> m_splitRows;
};

} // namespace

const std::vector<Listing>& SampleMarket::listings() {
  static const std::vector<Listing> all = [] {
    std::vector<Listing> listings;
    for (const Security& security : SECURITIES)
      listings.push_back({security.code, security.name, security.market, security.code[0] == '^'});
    return listings;
  }();
  return all;
}

// Contains today's row too. history() omits it until the day is over; quote() moves towards it.
const PriceHistory& SampleMarket::computed(const Security& security, Day today) const {
  if (m_computedFor != today) {
    m_histories.clear();
    m_computedFor = today;
  }
  auto found = m_histories.find(security.code);
  if (found == m_histories.end())
    found = m_histories.emplace(security.code, HistoryMaker(security).upTo(today + days(1))).first;
  return found->second;
}

std::optional<PriceHistory> SampleMarket::history(std::string_view code, Day today) const {
  const Security* security = findSecurity(code);
  if (!security)
    return std::nullopt;
  const std::lock_guard lock(m_mutex);
  PriceHistory finished = computed(*security, today);
  std::erase_if(finished.rows, [today](const DayRow& row) { return row.day >= today; });
  std::erase_if(finished.events, [today](const DayEvent& event) { return event.day >= today; });
  return finished;
}

std::optional<std::int64_t> SampleMarket::quote(std::string_view code, Day today, int minuteOfDay) const {
  const Security* security = findSecurity(code);
  if (!security)
    return std::nullopt;
  const std::lock_guard lock(m_mutex);
  const std::vector<DayRow>& rows = computed(*security, today).rows;
  if (rows.empty())
    return std::nullopt;
  const DayRow& last = rows.back();
  if (last.day != today)
    return last.close;
  Sequence minute(std::string(code) + std::to_string(minuteOfDay));
  const std::int64_t along = last.open + (last.close - last.open) * minuteOfDay / 1440;
  return tick(along * (1000000 + minute.around(security->volatilityPerMillion / 20)) / 1000000);
}

} // namespace SampleService
