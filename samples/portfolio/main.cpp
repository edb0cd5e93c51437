// Fills a scratch profile with sample portfolios for ./run demo. Uses the program's own operations and the
// sample market's prices.
#include "books/SharePortfolioUser.h"
#include "foundation/BigMutex.h"
#include "foundation/Constants.h"
#include "foundation/FileReplacement.h"
#include "foundation/Platform.h"
#include "foundation/Settings.h"
#include "market/MarketPrices.h"
#include "market/StockNames.h"
#include "market/TallymoorInternet.h"
#include "service/SampleMarket.h"
#include "xml/DocumentFile.h"
#include "xml/PortfolioRecords.h"
#include <cmath>
#include <cstdio>
#include <fx.h>

using namespace Tallymoor;

namespace {

constexpr double BROKERAGE = 29.95;

enum class Kind {
  Deposit,    ///< Amount.
  Withdrawal, ///< Amount.
  Interest,   ///< Amount.
  Fee,        ///< Amount.
  Purchase,   ///< Number.
  Sale,       ///< Number, first in first out.
  Dividend,   ///< Rate per share held, fully franked, in cash.
  Reinvested, ///< Rate per share held, fully franked, reinvested at the day's close.
  Foreign,    ///< Rate per share held, unfranked, foreign with 15% withheld.
  Split,      ///< Factor.
  Merge       ///< Factor.
};

struct Entry {
  Kind kind;
  int year, month, day;
  const char16_t* code; ///< Stock code; null for cash.
  double figure;        ///< Depends on the kind.
  const char16_t* text = u"";
};

/// More than five years of an actively traded portfolio.
const Entry TRADING[] = {
    {Kind::Deposit, 2021, 2, 1, nullptr, 60000.0, u"opening balance"},
    {Kind::Purchase, 2021, 2, 9, u"ABC.AX", 400, u"Order book full until next year"},
    {Kind::Purchase, 2021, 3, 16, u"JAC.AX", 2000, u"Borders open again"},
    {Kind::Interest, 2021, 6, 30, nullptr, 61.27},
    {Kind::Purchase, 2021, 8, 24, u"WTL.AX", 600},
    {Kind::Fee, 2021, 9, 1, nullptr, 25.0, u"2021"},
    {Kind::Dividend, 2021, 9, 22, u"ABC.AX", 0.11},
    {Kind::Deposit, 2022, 2, 1, nullptr, 50000.0, u"savings"},
    {Kind::Purchase, 2022, 3, 8, u"TLM.AX", 150, u"New scanner approved"},
    {Kind::Reinvested, 2022, 3, 23, u"WTL.AX", 0.14},
    {Kind::Sale, 2022, 5, 17, u"JAC.AX", 2000, u"Fuel prices"},
    {Kind::Interest, 2022, 6, 30, nullptr, 104.80},
    {Kind::Purchase, 2022, 8, 2, u"OPL.AX", 25000, u"Speculative, small position"},
    {Kind::Fee, 2022, 9, 1, nullptr, 25.0, u"2022"},
    {Kind::Split, 2022, 9, 6, u"TLM.AX", 3},
    {Kind::Dividend, 2022, 9, 21, u"ABC.AX", 0.12},
    {Kind::Deposit, 2023, 1, 3, nullptr, 60000.0, u"savings"},
    {Kind::Purchase, 2023, 1, 17, u"GRV.AX", 60, u"Best margins of the sector"},
    {Kind::Reinvested, 2023, 3, 22, u"WTL.AX", 0.15},
    {Kind::Purchase, 2023, 6, 27, u"CLD.AX", 900},
    {Kind::Interest, 2023, 6, 30, nullptr, 412.36},
    {Kind::Fee, 2023, 9, 1, nullptr, 25.0, u"2023"},
    {Kind::Purchase, 2023, 10, 11, u"ABC.AX", 250, u"Added after the results"},
    {Kind::Merge, 2023, 11, 15, u"OPL.AX", 5},
    {Kind::Foreign, 2023, 12, 6, u"CLD.AX", 0.015, u"Singapore"},
    {Kind::Deposit, 2024, 2, 1, nullptr, 60000.0, u"savings"},
    {Kind::Purchase, 2024, 3, 21, u"MRL.AX", 500},
    {Kind::Dividend, 2024, 3, 27, u"ABC.AX", 0.16},
    {Kind::Split, 2024, 5, 14, u"GRV.AX", 2},
    {Kind::Interest, 2024, 6, 30, nullptr, 890.12},
    {Kind::Fee, 2024, 9, 2, nullptr, 30.0, u"2024"},
    {Kind::Purchase, 2024, 9, 12, u"EVR.AX", 300, u"Dividend above 5%"},
    {Kind::Sale, 2024, 11, 5, u"ABC.AX", 450, u"Taking some profit"},
    {Kind::Withdrawal, 2024, 12, 2, nullptr, 12000.0, u"kitchen"},
    {Kind::Deposit, 2025, 2, 3, nullptr, 30000.0, u"savings"},
    {Kind::Purchase, 2025, 2, 25, u"LTH.AX", 4000},
    {Kind::Dividend, 2025, 3, 26, u"EVR.AX", 1.12},
    {Kind::Interest, 2025, 6, 30, nullptr, 1210.55},
    {Kind::Fee, 2025, 9, 1, nullptr, 30.0, u"2025"},
    {Kind::Reinvested, 2025, 9, 24, u"WTL.AX", 0.17},
    {Kind::Purchase, 2025, 11, 18, u"HBR.AX", 350, u"Defensive"},
    {Kind::Foreign, 2026, 1, 14, u"CLD.AX", 0.02, u"Singapore"},
    {Kind::Sale, 2026, 2, 10, u"MRL.AX", 200, u"Back to a smaller weight"},
    {Kind::Dividend, 2026, 3, 25, u"EVR.AX", 1.20},
};

/// A portfolio with few transactions.
const Entry RETIREMENT[] = {
    {Kind::Deposit, 2021, 2, 1, nullptr, 90000.0, u"transferred"},
    {Kind::Purchase, 2021, 2, 15, u"CBR.AX", 300},
    {Kind::Purchase, 2021, 6, 15, u"KOA.AX", 280},
    {Kind::Interest, 2021, 6, 30, nullptr, 48.10},
    {Kind::Dividend, 2021, 9, 28, u"CBR.AX", 0.62},
    {Kind::Deposit, 2023, 2, 1, nullptr, 60000.0, u"contribution"},
    {Kind::Purchase, 2023, 2, 7, u"AGW.AX", 2500, u"Regulated income"},
    {Kind::Purchase, 2023, 8, 16, u"VNT.AX", 700},
    {Kind::Reinvested, 2023, 9, 26, u"KOA.AX", 0.55},
    {Kind::Deposit, 2024, 8, 1, nullptr, 40000.0, u"contribution"},
    {Kind::Purchase, 2024, 8, 20, u"CBR.AX", 120, u"Reinvested savings"},
    {Kind::Sale, 2025, 3, 4, u"VNT.AX", 300, u"Rebalanced"},
    {Kind::Purchase, 2025, 5, 6, u"LMP.AX", 1500},
    {Kind::Withdrawal, 2025, 7, 1, nullptr, 6000.0, u"pension"},
    {Kind::Dividend, 2026, 3, 24, u"CBR.AX", 0.81},
};

/// The sample market's close on the last trading day up to the date.
double closeOn(const SampleService::SampleMarket& market, const String& code, const Date& date) {
  using namespace std::chrono;
  const auto day =
      sys_days(year(date.year()) / month(unsigned(date.month())) / std::chrono::day(unsigned(date.day())));
  const auto history = market.history(code.toUTF8(), day + days(1));
  if (!history || history->rows.empty())
    throw Exception(u"sample_portfolio: no price of " + code);
  return static_cast<double>(history->rows.back().close) / 10000.0;
}

XMLSharePortfolio& addPortfolio(XMLPortfolios& records, const String& name) {
  XMLSharePortfolio& portfolio = records.portfolios().add();
  portfolio.setPortfolioName(name);
  return portfolio;
}

/// Enters one line after another, like a user.
class Bookkeeper {
public:
  explicit Bookkeeper(SharePortfolioUser& portfolio) : m_portfolio(portfolio) {}

  void enter(const Entry& entry) {
    const Date date(entry.year, entry.month, entry.day);
    if (entry.code)
      enterStock(entry, entry.code, date);
    else
      enterCash(entry, date);
  }

private:
  void enterCash(const Entry& entry, const Date& date) {
    const String text = entry.text;
    if (entry.kind == Kind::Deposit)
      m_portfolio.creditCash(date, entry.figure, CASH_EVENT_DEPOSIT, u"DEPOSIT " + text);
    else if (entry.kind == Kind::Interest)
      m_portfolio.creditCash(date, entry.figure, CASH_EVENT_INTEREST, u"INTEREST " + text);
    else if (entry.kind == Kind::Withdrawal)
      m_portfolio.debitCash(date, entry.figure, CASH_EVENT_WITHDRAWAL, u"WITHDRAWAL " + text);
    else
      m_portfolio.debitCash(date, entry.figure, CASH_EVENT_DEBIT, u"Account fee " + text);
  }

  void enterStock(const Entry& entry, const String& code, const Date& date) {
    switch (entry.kind) {
    case Kind::Purchase:
      m_portfolio.buyShares(code, {date, entry.figure, closeOn(m_market, code, date), BROKERAGE, entry.text});
      break;
    case Kind::Sale:
      m_portfolio.sellShares(code, {date, entry.figure, closeOn(m_market, code, date), BROKERAGE, entry.text},
                             true);
      break;
    case Kind::Split:
    case Kind::Merge:
      m_portfolio.recordAdjustment(code, date, static_cast<std::int32_t>(entry.figure),
                                   entry.kind == Kind::Merge);
      break;
    default:
      enterDividend(entry, code, date);
    }
  }

  void enterDividend(const Entry& entry, const String& code, const Date& date) {
    const double held = m_portfolio.numHeld(code);
    const double amount = held * entry.figure;
    const bool foreign = entry.kind == Kind::Foreign;
    double shares = 0.0, price = 0.0;
    if (entry.kind == Kind::Reinvested) {
      price = closeOn(m_market, code, date);
      shares = std::floor(amount / price);
    }
    m_portfolio.receiveDividend({code, date, held, entry.figure, foreign ? 0 : 100, shares, price,
                                 foreign ? String(entry.text) : String(), foreign ? amount * 0.15 : 0.0});
  }

  SharePortfolioUser& m_portfolio;
  const SampleService::SampleMarket m_market;
};

template <std::size_t Count>
void makePortfolio(XMLPortfolios& records, const String& name, const String& comparisonIndex,
                   const Entry (&entries)[Count]) {
  SharePortfolioUser portfolio(addPortfolio(records, name), gatewayPrices());
  portfolio.setComparisonIndex(comparisonIndex);
  Bookkeeper bookkeeper(portfolio);
  for (const Entry& entry : entries)
    bookkeeper.enter(entry);
}

void writeSettings() {
  FX::FXRegistry registry(APP_NAME.toUTF8().c_str(), VENDOR_NAME.toUTF8().c_str());
  registry.read();
  Settings::attach(&registry);
  Settings::Instance().writeString(u"Config", u"Country", DEFAULT_COUNTRY_WITH_FRANKING);
  Settings::Instance().writeUnsigned(u"Gui Settings", u"MainWidth", 1150);
  Settings::Instance().writeUnsigned(u"Gui Settings", u"MainHeight", 720);
  Settings::Instance().writeUnsigned(u"Gui Settings", u"X Splitter Portfolios", 220);
  for (const SampleService::Listing& listing : SampleService::SampleMarket::listings())
    StockNames::remember(String::fromUTF8(listing.code), String::fromUTF8(listing.name)); // Like a search.
  Settings::Instance().commit();
  Settings::attach(nullptr);
}

void writePortfolios() {
  installMissingDefaults(Platform::Instance(), APP_NAME);
  TallymoorInternet::Options offScreen;
  offScreen.startUpdater = false;
  TallymoorInternet::setOptions(offScreen);
  XMLPortfolios records;
  makePortfolio(records, u"Retirement", String(), RETIREMENT);
  makePortfolio(records, u"Trading", u"^AXJO", TRADING);
  saveDocument(dataDirectory(Platform::Instance(), APP_NAME) + PORTFOLIOS_FILE, records, RECORDS_DTD,
               []() -> XMLElement* { return new XMLPortfolios; });
}

} // namespace

int main(int argc, char**) {
  if (argc != 1) {
    std::fputs("usage: XDG_DATA_HOME=FOLDER HOME=FOLDER sample_portfolio\n", stderr);
    return 2;
  }
  BigMutexLock lock;
  try {
    if (filePresence(dataDirectory(Platform::Instance(), APP_NAME) + PORTFOLIOS_FILE) !=
        FilePresence::Missing)
      throw Exception(u"sample_portfolio: this profile has records, which are left alone");
    writeSettings();
    writePortfolios();
    TallymoorInternet::shutdown();
    return 0;
  } catch (const Exception& exception) {
    std::fprintf(stderr, "%s\n", exception.message().toUTF8().c_str());
    return 1;
  }
}
