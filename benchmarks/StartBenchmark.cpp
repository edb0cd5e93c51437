// The start of the program with ten portfolios of 40 stocks over 20 years, until its window answers, and
// until all their capital records are up to date, compared with the XML library's SAX reader on those
// records. Also the memory of the program at the end. Needs a display.
#include "Offline.h"
#include "Ratio.h"
#include "books/SharePortfolioUser.h"
#include "foundation/Constants.h"
#include "foundation/FXJulianDate.h"
#include "foundation/LinuxPlatform.h"
#include "foundation/RunTimeSettings.h"
#include "foundation/Settings.h"
#include "market/MarketPrices.h"
#include "market/TallymoorInternet.h"
#include "session/BookQuestions.h"
#include "session/PortfolioStore.h"
#include "shell/TallymoorWindow.h"
#include "shell/WindowIcons.h"
#include "views/TotalCapTreeItem.h"
#include "widgets/InvestmentTree.h"
#include "xml/DocumentReader.h"
#include "xml/PortfolioRecords.h"
#include <algorithm>
#include <cmath>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>
#include <unistd.h>
#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/sax2/DefaultHandler.hpp>

namespace Tallymoor {
namespace {

constexpr int PORTFOLIOS = 10;
constexpr int STOCKS = 40;
constexpr int YEARS = 20;
constexpr int DAYS = YEARS * 365 + YEARS / 4;
constexpr int ROUNDS = 3;
constexpr double START_LIMIT = 0.15;
constexpr double READY_LIMIT = 0.3;
constexpr double MEMORY_LIMIT = 1.2;
constexpr unsigned LONGEST_START = 300; ///< seconds

/// Of this process since its start, whatever else the machine does.
double processorSeconds() {
  timespec now{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) / 1e9;
}

double residentBytes() {
  std::ifstream status("/proc/self/statm");
  double all = 0.0, resident = 0.0;
  status >> all >> resident;
  return resident * static_cast<double>(sysconf(_SC_PAGESIZE));
}

Date today() {
  return {2026, 3, 3};
}

/// The user whose folder this is, without a network.
void becomeUserOf(const std::string& folder) {
  setenv("HOME", folder.c_str(), 1);
  setenv("XDG_DATA_HOME", folder.c_str(), 1);
  setenv("DBUS_SESSION_BUS_ADDRESS", "disabled:", 1);
  setenv("SESSION_MANAGER", "", 1);
  LinuxPlatformOptions options;
  options.dataHome = folder;
  options.locale = "en_AU";
  options.programFolder = TALLYMOOR_PROGRAM_FOLDER;
  Platform::setInstance(std::make_unique<LinuxPlatform>(options));
  Clock::setToday(today().julianDay());
  TallymoorInternet::Options gateway;
  gateway.startUpdater = false;
  gateway.makeClient = [] { return std::make_unique<Bench::NoConnection>(); };
  TallymoorInternet::setOptions(gateway);
  Settings::Instance().writeString(u"Config", u"Country", u"Australia");
  readSettings();
}

String codeOf(int stock) {
  return String(("S" + std::to_string(100 + stock) + ".AX").c_str());
}

double priceOn(int stock, int day) {
  return 3.0 + 0.4 * stock + day * 0.002 + std::sin(day * 0.05 + stock);
}

void fillPrices(const Date& first) {
  for (int stock = 0; stock < STOCKS; ++stock)
    for (int day = -1; day < DAYS; ++day)
      TallymoorInternet::Instance().setCachedPrice(codeOf(stock), first.plusDays(day), priceOn(stock, day));
}

void fillPortfolio(SharePortfolioUser& portfolio, const Date& first) {
  portfolio.creditCash(first, 1e6, CASH_EVENT_DEPOSIT, u"DEPOSIT opening");
  for (int stock = 0; stock < STOCKS; ++stock)
    portfolio.buyShares(codeOf(stock), {first, 100.0 + stock, priceOn(stock, 0), 29.95, String()});
  updateCapitalRecord(portfolio);
}

/// The program's files of somebody who has used it for 20 years.
int makeProfile(const std::string& folder) {
  const Bench::NoUser noUser;
  becomeUserOf(folder);
  installMissingDefaults(Platform::Instance(), APP_NAME);
  const Date first = today().plusDays(1 - DAYS);
  fillPrices(first);
  PortfolioStore store(UserInteraction::Instance());
  for (int number = 0; number < PORTFOLIOS; ++number) {
    XMLSharePortfolio& records = store.records().portfolios().add();
    records.setPortfolioName(String(("Portfolio " + std::to_string(number)).c_str()));
    auto portfolio = std::make_unique<SharePortfolioUser>(records, gatewayPrices());
    fillPortfolio(*portfolio, first);
    const String name = portfolio->name();
    store.portfolios().emplace(name, std::move(portfolio));
  }
  store.save();
  store.clear();
  TallymoorInternet::Instance().save();
  return 0;
}

/// All nodes stand in the tree, and the page of the first one is shown.
bool hasTree(const TallymoorWindow& window) {
  return window.loadEnded() && window.totalCapital() && window.totalCapital()->isSound() &&
         window.totalCapital()->portfolioNodes().size() == PORTFOLIOS &&
         window.portfolioTree()->shownItem() == window.totalCapital();
}

/// True when the capital records of all portfolios are up to date.
bool hasRecords(TallymoorWindow& window) {
  return std::ranges::all_of(window.store().portfolios(), [](const auto& portfolio) {
    return portfolio.second->capitalRecord().isLoaded() &&
           portfolio.second->capitalRecord().hasDayCap(today());
  });
}

/// As the program starts; prints the seconds until its window answers and until all is loaded, the longest
/// stretch in which it did not answer in between, and its memory at the end.
int startProgram(const std::string& folder, const char* program) {
  alarm(LONGEST_START); // a box that nobody answers
  becomeUserOf(folder);
  std::string name = program;
  std::vector<char*> arguments{name.data(), nullptr};
  int count = 1;
  FXApp app(APP_NAME.toUTF8().c_str(), VENDOR_NAME.toUTF8().c_str());
  app.init(count, arguments.data());
  WindowIcons icons(&app);
  const auto window = std::make_unique<TallymoorWindow>(&app, icons);
  app.create();
  app.runWhileEvents();
  const double usable = processorSeconds();
  if (!hasTree(*window))
    return 1;
  double longest = 0.0;
  while (!window->isReady()) {
    const double before = processorSeconds();
    app.runOneEvent();
    longest = std::max(longest, processorSeconds() - before);
  }
  app.runWhileEvents();
  if (!hasRecords(*window))
    return 1;
  std::printf("%.4f %.4f %.4f %.0f\n", usable, processorSeconds(), longest, residentBytes());
  std::fflush(stdout);
  _exit(0); // nothing is to be saved
}

/// A mode of this program in a process of its own; gives what it printed.
std::string runSelf(const std::string& mode, const std::string& folder) {
  const std::string command = "/proc/" + std::to_string(getpid()) + "/exe " + mode + " '" + folder + "'";
  FILE* const pipe = popen(command.c_str(), "r");
  std::string printed;
  char line[200];
  while (pipe && std::fgets(line, sizeof line, pipe))
    printed += line;
  if (!pipe || pclose(pipe) != 0) {
    std::fprintf(stderr, "failed: %s\n", mode.c_str());
    std::exit(1);
  }
  return printed;
}

std::vector<std::string> capitalRecords(const std::string& folder) {
  std::vector<std::string> documents;
  for (const auto& file : std::filesystem::recursive_directory_iterator(folder))
    if (file.is_regular_file() && file.file_size() > 10'000'000) {
      std::ifstream stream(file.path(), std::ios::binary);
      std::ostringstream content;
      content << stream.rdbuf();
      documents.push_back(content.str());
    }
  return documents;
}

double readBare(const std::vector<std::string>& documents) {
  const double start = processorSeconds();
  for (const std::string& document : documents) {
    DocumentReader reader;
    xercesc::DefaultHandler nothing;
    reader.setContentHandler(&nothing);
    reader.setErrorHandler(&nothing);
    xercesc::MemBufInputSource source(reinterpret_cast<const XMLByte*>(document.data()), document.size(),
                                      "bare");
    reader.beginDocument(DocumentLimits(), false);
    reader.parse(source);
  }
  return processorSeconds() - start;
}

int compare(const std::string& folder) {
  runSelf("--make", folder);
  const std::vector<std::string> documents = capitalRecords(folder);
  double size = 0.0;
  for (const std::string& document : documents)
    size += static_cast<double>(document.size());
  std::vector<double> starts, readies, stretches, references, memories;
  for (int round = 0; round < ROUNDS; ++round) {
    references.push_back(readBare(documents));
    std::istringstream printed(runSelf("--start", folder));
    double usable = 0.0, ready = 0.0, longest = 0.0, bytes = 0.0;
    printed >> usable >> ready >> longest >> bytes;
    starts.push_back(usable);
    readies.push_back(ready);
    stretches.push_back(longest);
    memories.push_back(bytes);
  }
  std::printf(
      "%zu capital records of %.1f MB: bare reading %.2f s; start %.2f s, all loaded after %.2f s, in "
      "stretches of at most %.0f ms, %.1f MB\n",
      documents.size(), size / 1e6, Bench::median(references), Bench::median(starts), Bench::median(readies),
      Bench::median(stretches) * 1000.0, Bench::median(memories) / 1e6);
  const bool startKept =
      Bench::printRatio("start_usable", Bench::median(starts) / Bench::median(references), START_LIMIT);
  const bool readyKept =
      Bench::printRatio("start_ready", Bench::median(readies) / Bench::median(references), READY_LIMIT);
  const bool memoryKept = Bench::printRatio("start_memory", Bench::median(memories) / size, MEMORY_LIMIT);
  return startKept && readyKept && memoryKept ? 0 : 1;
}

} // namespace
} // namespace Tallymoor

int main(int argc, char** argv) {
  using namespace Tallymoor;
  if (argc == 3 && std::strcmp(argv[1], "--make") == 0)
    return makeProfile(argv[2]);
  if (argc == 3 && std::strcmp(argv[1], "--start") == 0)
    return startProgram(argv[2], argv[0]);
  std::string folder = (std::filesystem::temp_directory_path() / "tallymoor-bench-XXXXXX").string();
  if (!mkdtemp(folder.data()))
    return 1;
  const int status = compare(folder);
  std::filesystem::remove_all(folder);
  return status;
}
