// What the journal costs in a portfolio of 10,000 purchases: a purchase until it is on disk, compared with
// writing and flushing as many bytes, and how many bytes that are. Also the undo of an import beside it,
// compared with the import.
#include "Offline.h"
#include "Ratio.h"
#include "books/SharePortfolioUser.h"
#include "foundation/Constants.h"
#include "foundation/LinuxPlatform.h"
#include "foundation/RunTimeSettings.h"
#include "market/MarketPrices.h"
#include "market/TallymoorInternet.h"
#include "session/ImportedPortfolios.h"
#include "session/PortfolioExport.h"
#include "session/PortfolioStore.h"
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <memory>
#include <string>
#include <unistd.h>

namespace Tallymoor {
namespace {

constexpr int STOCKS = 40;
constexpr int PURCHASES = 10'000;
constexpr int ROUNDS = 300;
constexpr int IMPORTED_ROWS = 500;
constexpr int IMPORTS = 21;
constexpr double UNDO_LIMIT = 2.0;
constexpr double ON_DISK_LIMIT = 2.0;
constexpr double BYTES_LIMIT = 2000.0;

double secondsNow() {
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

template <class Work>
double secondsOf(const Work& work) {
  const double start = secondsNow();
  work();
  return secondsNow() - start;
}

/// A user's folder that is removed at the end.
class ScratchProfile {
public:
  ScratchProfile() {
    m_folder = (std::filesystem::temp_directory_path() / "tallymoor-bench-XXXXXX").string();
    if (!mkdtemp(m_folder.data()))
      std::abort();
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
  ScratchProfile(const ScratchProfile&) = delete;
  ScratchProfile& operator=(const ScratchProfile&) = delete;

  const std::string& folder() const { return m_folder; }
  std::string journal() const { return dataDirectory(Platform::Instance(), APP_NAME).toUTF8() + "Journal"; }

private:
  std::string m_folder;
};

String codeOf(int stock) {
  return String(("S" + std::to_string(100 + stock) + ".AX").c_str());
}

void buy(SharePortfolioUser& portfolio, int number) {
  const Date day = Date(2006, 1, 2).plusDays(number / 3);
  portfolio.buyShares(codeOf(number % STOCKS),
                      {day, 100.0 + number % 77, 3.0 + number % 113 * 0.01, 29.95, String()});
}

class LargePortfolio {
public:
  explicit LargePortfolio(UserInteraction& user) : m_store(user) {
    m_store.load();
    XMLSharePortfolio& records = m_store.records().portfolios().add();
    records.setPortfolioName(u"Trading");
    auto portfolio = std::make_unique<SharePortfolioUser>(records, gatewayPrices());
    m_portfolio = portfolio.get();
    m_store.portfolios().emplace(u"Trading", std::move(portfolio));
    for (int i = 0; i < PURCHASES; ++i)
      buy();
    m_store.changes().make(u"Purchases", [] {});
    m_store.save();
  }

  void buy() { Tallymoor::buy(*m_portfolio, ++m_purchases); }

  /// From the command's end to the disk.
  double secondsOfChange() {
    double command = 0.0;
    const double all = secondsOf(
        [&] { makeChange(u"Purchase of shares", [&] { command = secondsOf([this] { buy(); }); }); });
    return all - command;
  }

private:
  PortfolioStore m_store;
  SharePortfolioUser* m_portfolio;
  int m_purchases = 0;
};

/// Is told what the start has recovered, and lets an import replace the portfolio of its name.
class AgreeingUser : public Bench::NoUser {
public:
  void information(const String&) override {}
  bool question(const String&) override { return true; }
};

/// Appends so many bytes to a file and flushes it.
class Flushes {
public:
  Flushes(const std::string& folder, std::size_t bytes)
      : m_file(::open((folder + "/flushed").c_str(), O_WRONLY | O_CREAT | O_APPEND, 0600)),
        m_bytes(bytes, 'x') {}
  ~Flushes() { ::close(m_file); }
  Flushes(const Flushes&) = delete;
  Flushes& operator=(const Flushes&) = delete;

  double seconds() {
    return secondsOf([this] {
      if (::write(m_file, m_bytes.data(), m_bytes.size()) < 0 || ::fsync(m_file) != 0)
        std::abort();
    });
  }

private:
  int m_file;
  std::string m_bytes;
};

/// Of the quickest quarter. A change computes and then waits for the disk; on a busy machine the median tells
/// how long it waits for a processor.
double lowerQuartile(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 4];
}

bool measureChange(const ScratchProfile& profile, LargePortfolio& portfolio) {
  portfolio.secondsOfChange(); // makes what is made once
  const auto size = std::filesystem::file_size(profile.journal());
  portfolio.secondsOfChange();
  const auto bytes = std::filesystem::file_size(profile.journal()) - size;
  Flushes flushes(profile.folder(), bytes);
  std::vector<double> ours, reference;
  for (int i = 0; i < ROUNDS; ++i) {
    reference.push_back(flushes.seconds());
    ours.push_back(portfolio.secondsOfChange());
  }
  std::printf("a purchase among %d: %zu bytes, on disk after %.3f ms, their flush %.3f ms\n", PURCHASES,
              static_cast<std::size_t>(bytes), lowerQuartile(ours) * 1e3, lowerQuartile(reference) * 1e3);
  const bool onDisk =
      Bench::printRatio("change_on_disk", lowerQuartile(ours) / lowerQuartile(reference), ON_DISK_LIMIT);
  return Bench::printRatio("change_bytes", static_cast<double>(bytes), BYTES_LIMIT) && onDisk;
}

/// A file of one portfolio.
String writeImport(const ScratchProfile& profile, int purchases) {
  XMLPortfolios records;
  XMLSharePortfolio& portfolio = records.portfolios().add();
  portfolio.setPortfolioName(u"Imported");
  SharePortfolioUser user(portfolio, gatewayPrices());
  for (int i = 0; i < purchases; ++i)
    buy(user, i);
  const String path = String((profile.folder() + "/import.xml").c_str());
  writeExport(path, records);
  return path;
}

/// An import that replaces a portfolio of as many rows, and its undo.
bool measureUndoOfImport(const ScratchProfile& profile, UserInteraction& user) {
  PortfolioStore store(user);
  store.load();
  const auto import = [&](const String& path) {
    return secondsOf([&] {
      ImportedPortfolios imported(path);
      imported.askForReplacements({u"Imported"}, user);
      makeChange(u"Import", [&] {
        if (store.portfolios().contains(u"Imported"))
          removePortfolio(store.portfolios(), store.records(), u"Imported");
        for (auto& portfolio : imported.take())
          addPortfolio(store.portfolios(), store.records(), std::move(portfolio));
      });
    });
  };
  import(writeImport(profile, IMPORTED_ROWS));
  const String file = writeImport(profile, IMPORTED_ROWS + 1);
  const double ratio = Bench::measureRatio(
      IMPORTS, [&] { return secondsOf([&] { store.changes().undo(); }); }, [&] { return import(file); });
  if (store.portfolios().at(u"Imported")->portfolio().cashEvents().size() != IMPORTED_ROWS)
    std::abort();
  return Bench::printRatio("undo_of_import", ratio, UNDO_LIMIT);
}

} // namespace
} // namespace Tallymoor

int main() {
  using namespace Tallymoor;
  readSettings();
  AgreeingUser user;
  const ScratchProfile profile;
  bool kept = false;
  {
    LargePortfolio portfolio(user);
    kept = measureChange(profile, portfolio);
  }
  kept &= measureUndoOfImport(profile, user);
  return kept ? 0 : 1;
}
