#include "Saves.h"
#include "Profile.h"
#include "TestPaths.h"
#include "analysis/ReportBuilder.h"
#include "analysis/ReportFiles.h"
#include "foundation/Constants.h"
#include "foundation/Exception.h"
#include "foundation/FolderLock.h"
#include "foundation/Settings.h"
#include "market/MarketPrices.h"
#include "market/PriceQuarantine.h"
#include "market/SharePriceCache.h"
#include "market/SourceKeys.h"
#include "market/SourceList.h"
#include "market/ToldDividends.h"
#include "session/BookQuestions.h"
#include "session/PortfolioExport.h"
#include "session/PortfolioStore.h"
#include "session/ProfileFolders.h"
#include "updates/Updates.h"
#include <array>
#include <cstdlib>
#include <filesystem>
#include <sstream>

namespace Tallymoor {

namespace {

namespace fs = std::filesystem;

constexpr int ENTRIES = 300; ///< Enough for several write calls per document.
const std::string ASSETS = TALLYMOOR_ASSETS;

// ---- Records, backup, capital record ----

void addCash(PortfolioStore& store, const std::string& word) {
  SharePortfolioUser& portfolio = *store.portfolios().at(u"Trading");
  for (int i = 0; i < ENTRIES; ++i)
    portfolio.creditCash(Date(2026, 1, 5).plusDays(i % 50), 100.0 + i, CASH_EVENT_DEPOSIT,
                         String(("DEPOSIT " + word + std::string(150, 'x')).c_str()));
  updateCapitalRecord(portfolio);
}

/// The profile's records with more cash. Adds a portfolio if there is none.
std::shared_ptr<PortfolioStore> changedRecords(const std::string& word) {
  auto store = std::make_shared<PortfolioStore>(UserInteraction::Instance());
  store->load();
  if (store->portfolios().empty()) {
    XMLSharePortfolio& portfolio = store->records().portfolios().add();
    portfolio.setPortfolioName(u"Trading");
    store->portfolios()[u"Trading"] = std::make_unique<SharePortfolioUser>(portfolio, gatewayPrices());
  }
  addCash(*store, word);
  return store;
}

Save records() {
  return {[](bool overwrite) {
            if (overwrite)
              changedRecords("old")->save();
          },
          [](const UpdateServiceAddress&) { return [store = changedRecords("new")] { store->save(); }; }};
}

/// The same for records with a second hard link.
Save linkedRecords() {
  return {[](bool overwrite) {
            changedRecords("older")->save();
            if (overwrite)
              changedRecords("old")->save();
            fs::create_directory("../elsewhere");
            fs::create_hard_link((dataDirectory(Platform::Instance(), APP_NAME) + PORTFOLIOS_FILE).toUTF8(),
                                 "../elsewhere/mine.xml");
          },
          records().makeReady};
}

// ---- Journal, lock ----

void deposit(PortfolioStore& store) {
  makeChange(u"Deposit", [&store] {
    store.portfolios().at(u"Trading")->creditCash(Date(2026, 2, 2), 100.0, CASH_EVENT_DEPOSIT, u"DEPOSIT");
  });
}

std::string textOf(PortfolioStore& store) {
  std::ostringstream stream;
  store.records().encode(stream);
  return stream.str();
}

std::shared_ptr<PortfolioStore> loadedRecords() {
  auto store = std::make_shared<PortfolioStore>(UserInteraction::Instance());
  store->load();
  return store;
}

/// A change, with and without a journal before it. One that fails leaves the records as they were.
Save journal() {
  return {[](bool overwrite) {
            changedRecords("old")->save();
            if (overwrite)
              deposit(*loadedRecords());
          },
          [](const UpdateServiceAddress&) {
            return [store = loadedRecords()] {
              const std::string before = textOf(*store);
              try {
                deposit(*store);
              } catch (const Exception&) {
                if (textOf(*store) != before)
                  std::abort(); // which the driver counts as an end without a word
                throw;
              }
            };
          }};
}

Save lock() {
  const auto lockFolder = [] {
    return FolderLock::onFileIn(Platform::Instance().userHomeDirectory(APP_NAME));
  };
  return {[lockFolder](bool overwrite) {
            changedRecords("old")->save();
            if (overwrite)
              (void)lockFolder();
          },
          [lockFolder](const UpdateServiceAddress&) {
            return [lockFolder] {
              if (lockFolder().isHeldByAnother())
                std::abort();
            };
          }};
}

Save exported() {
  const String file = u"../elsewhere/Exported.xml"; // Relative to the current folder, which is the program's.
  return {[file](bool overwrite) {
            fs::create_directory("../elsewhere");
            const auto store = changedRecords("old");
            store->save();
            if (overwrite)
              writeExport(String(fs::absolute(file.toUTF8()).lexically_normal().c_str()), store->records());
          },
          [file](const UpdateServiceAddress&) {
            return [=, store = changedRecords("new")] {
              writeExport(String(fs::absolute(file.toUTF8()).lexically_normal().c_str()), store->records());
            };
          }};
}

Save report() {
  const auto writeReport = [](const std::shared_ptr<PortfolioStore>& store, const std::string& title) {
    SharePortfolioUser& portfolio = *store->portfolios().at(u"Trading");
    updateCapitalRecord(portfolio);
    std::shared_ptr<XMLReport> made =
        makeReport({&portfolio}, {Date(2026, 1, 1), Date(2026, 2, 28)}, String(title.c_str()));
    return [made] { writeReportFiles(*made, u"Report"); };
  };
  return {[writeReport](bool overwrite) {
            const auto store = changedRecords("old");
            store->save();
            if (overwrite)
              writeReport(store, "Old report")();
          },
          [writeReport](const UpdateServiceAddress&) {
            return std::function<void()>(writeReport(changedRecords("new"), "New report"));
          }};
}

// ---- Prices, settings, default documents ----

std::shared_ptr<SharePriceCache> changedPrices(double close) {
  auto cache = std::make_shared<SharePriceCache>(cacheDirectory(Platform::Instance(), APP_NAME));
  for (const String code : {u"ABC.AX", u"^INDEX"}) {
    SharePriceCache::Rows rows;
    for (int i = 0; i < ENTRIES; ++i)
      rows[Date(2025, 1, 1).plusDays(i)] = ShareValue{close + i, close + i, close + i, 1000};
    cache->merge(code, rows, {Date(2025, 1, 1), Date(2025, 1, 1).plusDays(ENTRIES - 1)});
  }
  return cache;
}

Save prices() {
  return {[](bool overwrite) {
            if (overwrite)
              changedPrices(1)->save();
          },
          [](const UpdateServiceAddress&) { return [cache = changedPrices(2)] { cache->save(); }; }};
}

/// What the user decides on prices and their sources, each in a document of its own that is written at once.
class PriceChoices {
public:
  PriceChoices()
      : m_decisions(dataDirectory(Platform::Instance(), APP_NAME) + PRICE_DECISIONS_FILE),
        m_sources(configDirectory(Platform::Instance(), APP_NAME)),
        m_keys(configDirectory(Platform::Instance(), APP_NAME) + u"PriceSourceKeys.xml"),
        m_dividends(dataDirectory(Platform::Instance(), APP_NAME) + TOLD_DIVIDENDS_FILE) {}

  void tellOfDividends() {
    std::map<Date, double> told;
    for (int i = 0; i < ENTRIES; ++i)
      told[Date(2025, 1, 1).plusDays(i)] = 0.5;
    m_dividends.add({{u"ABC.AX", told}});
  }
  void makeReady(double close) {
    CachedShare known;
    known.values[Date(2024, 12, 31)] = {.close = 1};
    DataSource::Rows doubtful;
    for (int i = 0; i < ENTRIES; ++i)
      doubtful[Date(2025, 1, 1).plusDays(i)] = {.close = close};
    m_decisions.admit(u"ABC.AX", known, doubtful);
    (void)m_sources.sources(); // reads the documents of sources, which are no part of the save
  }
  void decide(const String& word, const Date& dividend) {
    m_decisions.refuse(u"ABC.AX");
    m_sources.addCommand(word, {u"/usr/bin/prices", word + String(10000, u'x')});
    m_keys.set(u"Service", {u"https://prices.example"}, word + String(10000, u'x'));
    m_dividends.settle(u"ABC.AX", dividend);
  }

private:
  PriceQuarantine m_decisions;
  SourceList m_sources;
  SourceKeys m_keys;
  ToldDividends m_dividends;
};

Save priceChoices() {
  return {[](bool overwrite) {
            PriceChoices choices;
            choices.tellOfDividends();
            if (!overwrite)
              return;
            choices.makeReady(100);
            choices.decide(u"old", Date(2025, 1, 1));
          },
          [](const UpdateServiceAddress&) {
            auto choices = std::make_shared<PriceChoices>();
            choices->makeReady(101);
            return [choices] { choices->decide(u"new", Date(2025, 1, 2)); };
          }};
}

void changeSettings(const std::string& word) {
  for (int i = 0; i < ENTRIES; ++i)
    Settings::Instance().writeString(u"Watchlist " + String::fromLong(i % 7), u"CODE" + String::fromLong(i),
                                     String((word + std::string(200, 'x')).c_str()));
}

Save settings() {
  return {[](bool overwrite) {
            if (overwrite) {
              changeSettings("old");
              Settings::Instance().commit();
            }
          },
          [](const UpdateServiceAddress&) {
            changeSettings("new");
            return [] { Settings::Instance().commit(); };
          }};
}

/// Copies the default documents, as the first start does, or restores removed ones.
Save defaults() {
  return {[](bool overwrite) {
            Platform& platform = Platform::Instance();
            fs::remove_all(reportDirectory(platform, APP_NAME).toUTF8());
            fs::remove((configDirectory(platform, APP_NAME) + COUNTRY_CONFIG_FILE).toUTF8());
            if (!overwrite)
              fs::remove_all(configDirectory(platform, APP_NAME).toUTF8());
            fs::create_directory(configDirectory(platform, APP_NAME).toUTF8());
          },
          [](const UpdateServiceAddress&) {
            return [] { installMissingDefaults(Platform::Instance(), APP_NAME); };
          }};
}

// ---- Updates ----

/// A program file of this version.
std::string image(const std::string& version, const std::string& command = "exit 0") {
  return "#!/bin/sh\n# image @(#)Brindlecove file version " + version + ".0\n" + command + "\n";
}

std::string installerImage(const std::string& version) {
  return image(version, std::string("exec ") + TALLYMOOR_UPDATE_INSTALLER);
}

void installProgram() {
  Profile::write("Tallymoor.exe", image("1.3.1"), 0755);
  Profile::write("UpdateInstaller.exe", installerImage("1.3.1"), 0755);
  for (const char* library : {"FOXDLL-1.6.57.dll", "FxEx-1.0.0.dll", "xerces-c_3.2.4.dll"})
    Profile::write(library, std::string("old library"), 0644);
  fs::create_directory("lib");
  fs::create_symlink("../FOXDLL-1.6.57.dll", "lib/libFOX-1.6.so.0");
}

UpdateSettings serviceAt(const UpdateServiceAddress& address) {
  UpdateSettings settings;
  settings.queryBase = String(address.queryBase.c_str());
  settings.publicKey = address.publicKey;
  return settings;
}

Save documents() {
  return {[](bool overwrite) {
            installProgram();
            if (!overwrite)
              for (const auto& [name, content] : offeredDocuments())
                if (name != REPORT_XSL.toUTF8())
                  fs::remove(
                      (configDirectory(Platform::Instance(), APP_NAME) + String(name.c_str())).toUTF8());
          },
          [](const UpdateServiceAddress& address) {
            const auto updates = std::make_shared<Updates>(serviceAt(address));
            return [updates] {
              updates->getConfigUpdates(false);
              updates->installConfigUpdates();
            };
          }};
}

Save programFiles() {
  return {[](bool overwrite) {
            installProgram();
            fs::create_directory("updates");
            fs::permissions("updates", fs::perms(0700));
            if (overwrite) // A published set of files; the program was then killed.
              Profile::write("updates/complete/Tallymoor.exe", image("1.9.0"), 0755);
          },
          [](const UpdateServiceAddress& address) {
            const auto updates = std::make_shared<Updates>(serviceAt(address));
            return [updates] {
              updates->getBinaryUpdates(false);
              updates->installBinaryUpdates();
            };
          }};
}

/// The installer is a separate program, so the driver runs it.
Save installation() {
  return {[](bool overwrite) {
            installProgram();
            if (!overwrite)
              fs::remove("FxEx-1.0.0.dll"); // A library that this copy does not have yet.
            for (const auto& [name, content] : offeredProgramFiles())
              Profile::write("updates/" + name, content);
            Profile::write("updates/FxEx-1.0.0.dll", "new library");
            fs::permissions("updates", fs::perms(0700));
          },
          {}};
}

/// A default document with another version.
std::string newerDocument(const std::string& path, const std::string& root) {
  std::string text = Profile::read(ASSETS + "/defaults/" + path);
  const std::size_t at = text.find(" version=\"", text.find("<" + root)) + 10;
  return text.replace(at, text.find('"', at) - at, "50");
}

} // namespace

const std::map<std::string, Save>& saves() {
  static const std::map<std::string, Save> all{{"records", records()},
                                               {"linked records", linkedRecords()},
                                               {"journal", journal()},
                                               {"lock", lock()},
                                               {"export", exported()},
                                               {"report", report()},
                                               {"prices", prices()},
                                               {"price choices", priceChoices()},
                                               {"settings", settings()},
                                               {"defaults", defaults()},
                                               {"documents", documents()},
                                               {"program files", programFiles()},
                                               {"installation", installation()}};
  return all;
}

std::vector<std::pair<std::string, std::string>> offeredDocuments() {
  return {
      {"CurrentPriceLocators.xml", newerDocument("Config/CurrentPriceLocators.xml", "CurrentPriceLocators")},
      {"Tallymoor Report.xsl", newerDocument("Report/Tallymoor Report.xsl", "xsl:stylesheet")}};
}

std::vector<std::pair<std::string, std::string>> offeredProgramFiles() {
  return {{"Tallymoor.exe", image("2.0.0")},
          {"UpdateInstaller.exe", installerImage("2.0.0")},
          {"FOXDLL-1.6.58.dll", "new library"}};
}

} // namespace Tallymoor
