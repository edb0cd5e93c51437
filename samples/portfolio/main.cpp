// Fills a scratch profile with sample portfolios, entered through the program's own operations at the sample
// market's prices, so that ./run demo has something to show.
#include "engine/SharePortfolioUser.h"
#include "foundation/BigMutex.h"
#include "foundation/Constants.h"
#include "foundation/FileReplacement.h"
#include "foundation/Platform.h"
#include "foundation/Settings.h"
#include "market/TallymoorInternet.h"
#include "service/SampleMarket.h"
#include "xml/DocumentFile.h"
#include "xml/PortfolioRecords.h"
#include <cstdio>
#include <fx.h>

using namespace Tallymoor;

namespace {

constexpr double BROKERAGE = 29.95;

struct Purchase {
  const char16_t* portfolio;
  const char16_t* code;
  int year, month, day;
  int number;
  const char16_t* comment;
};

const Purchase PURCHASES[] = {
    {u"Trading", u"ABC.AX", 2022, 2, 14, 400, u"Order book full until next year"},
    {u"Trading", u"TLM.AX", 2022, 3, 8, 150, u"New scanner approved"},
    {u"Trading", u"WTL.AX", 2022, 5, 19, 600, u""},
    {u"Trading", u"OPL.AX", 2022, 8, 2, 25000, u"Speculative, small position"},
    {u"Trading", u"GRV.AX", 2023, 1, 17, 60, u"Best margins of the sector"},
    {u"Trading", u"CLD.AX", 2023, 6, 27, 900, u""},
    {u"Trading", u"ABC.AX", 2023, 10, 11, 250, u"Added after the results"},
    {u"Trading", u"MRL.AX", 2024, 3, 21, 500, u""},
    {u"Trading", u"EVR.AX", 2024, 9, 12, 300, u"Dividend above 5%"},
    {u"Trading", u"LTH.AX", 2025, 2, 25, 4000, u""},
    {u"Trading", u"HBR.AX", 2025, 11, 18, 350, u"Defensive"},
    {u"Retirement", u"CBR.AX", 2022, 2, 15, 300, u""},
    {u"Retirement", u"KOA.AX", 2022, 6, 15, 280, u""},
    {u"Retirement", u"AGW.AX", 2023, 2, 7, 2500, u"Regulated income"},
    {u"Retirement", u"VNT.AX", 2023, 8, 16, 700, u""},
    {u"Retirement", u"CBR.AX", 2024, 8, 20, 120, u"Reinvested savings"},
    {u"Retirement", u"LMP.AX", 2025, 5, 6, 1500, u""},
};

struct Deposit {
  const char16_t* portfolio;
  int year, month, day;
  double amount;
};

const Deposit DEPOSITS[] = {
    {u"Trading", 2022, 2, 1, 100000.0},   {u"Trading", 2023, 1, 3, 60000.0},
    {u"Trading", 2024, 2, 1, 60000.0},    {u"Trading", 2025, 2, 3, 60000.0},
    {u"Retirement", 2022, 2, 1, 90000.0}, {u"Retirement", 2023, 2, 1, 60000.0},
    {u"Retirement", 2024, 8, 1, 40000.0}, {u"Retirement", 2025, 5, 1, 40000.0},
};

struct KnownSplit {
  const char16_t* portfolio;
  const char16_t* code;
  int year, month, day;
  int factor;
  bool reverse;
};

const KnownSplit SPLITS[] = {
    {u"Trading", u"TLM.AX", 2022, 9, 6, 3, false},
    {u"Trading", u"OPL.AX", 2023, 11, 15, 5, true},
    {u"Trading", u"GRV.AX", 2024, 5, 14, 2, false},
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

XMLElement& addPortfolio(XMLPortfolios& records, const String& name) {
  XMLElement& portfolio = records.addSubElement(new XMLSharePortfolio, u"SharePortfolios");
  portfolio.subElement(u"Name").setValue(name);
  return portfolio;
}

void enterRecords(SharePortfolioUser& portfolio) {
  const SampleService::SampleMarket market;
  for (const Deposit& deposit : DEPOSITS)
    if (portfolio.name() == deposit.portfolio)
      portfolio.creditCash(Date(deposit.year, deposit.month, deposit.day), deposit.amount, CASH_EVENT_DEPOSIT,
                           u"DEPOSIT savings");
  for (const Purchase& purchase : PURCHASES)
    if (portfolio.name() == purchase.portfolio) {
      const Date date(purchase.year, purchase.month, purchase.day);
      portfolio.buyShares(purchase.code, date, purchase.number, closeOn(market, purchase.code, date),
                          BROKERAGE, purchase.comment);
    }
  for (const KnownSplit& split : SPLITS)
    if (portfolio.name() == split.portfolio)
      portfolio.recordAdjustment(split.code, Date(split.year, split.month, split.day), split.factor,
                                 split.reverse);
}

void writeSettings() {
  FX::FXRegistry registry(APP_NAME.toUTF8().c_str(), VENDOR_NAME.toUTF8().c_str());
  registry.read();
  Settings::attach(&registry);
  Settings::Instance().writeString(u"Config", u"Country", DEFAULT_COUNTRY_WITH_FRANKING);
  Settings::Instance().writeUnsigned(u"Gui Settings", u"MainWidth", 1150);
  Settings::Instance().writeUnsigned(u"Gui Settings", u"MainHeight", 720);
  Settings::Instance().writeUnsigned(u"Gui Settings", u"X Splitter Portfolios", 220);
  Settings::Instance().commit();
  Settings::attach(nullptr);
}

void writePortfolios() {
  installMissingDefaults(Platform::Instance(), APP_NAME);
  TallymoorInternet::Options offScreen;
  offScreen.startUpdater = false;
  TallymoorInternet::setOptions(offScreen);
  XMLPortfolios records;
  for (const char16_t* name : {u"Retirement", u"Trading"}) {
    SharePortfolioUser portfolio(addPortfolio(records, name));
    enterRecords(portfolio);
  }
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
