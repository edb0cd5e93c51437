#include "BadNames.h"
#include "ShellTest.h"
#include "books/PortfolioFiles.h"
#include "books/SharePortfolioUser.h"
#include "foundation/Constants.h"
#include "market/SharePriceCache.h"
#include "session/BookQuestions.h"
#include "session/ImportedPortfolios.h"
#include "session/PortfolioStore.h"
#include "support/FailureOf.h"
#include "support/FakeUserInteraction.h"
#include "support/updates/UpdatesTest.h"
#include "views/PriceLimits.h"
#include "views/SharePortfolioTreeItem.h"
#include "views/TotalCapTreeItem.h"
#include "views/WatchlistSettings.h"
#include "xml/CleanName.h"
#include "xml/Leaves.h"
#include <gmock/gmock.h>
#include <iostream>

namespace Tallymoor {
namespace {

using ::testing::IsEmpty;
using Files = std::map<std::string, std::string>;

/// Cases and failures over all suites of this file.
struct Count {
  int tried = 0;
  int sources = 0;
  int outside = 0;
  int lost = 0; ///< Missing, or with a wrong result.

  void tell(const std::string& what, const char* fate = "lost") const {
    std::cout << "COUNT: " << what << ": " << tried << " tried from " << sources << " sources, " << outside
              << " files outside their folder, " << lost << " names " << fate << std::endl;
  }
};

/// Files that exist in one state only or differ.
std::vector<std::string> differences(const Files& before, const Files& after) {
  std::vector<std::string> names;
  for (const auto& [path, content] : before)
    if (!after.contains(path) || after.at(path) != content)
      names.push_back(path);
  for (const auto& [path, content] : after)
    if (!before.contains(path))
      names.push_back(path);
  return names;
}

/// Entries next to the profile's folder that start with its name. Other programs' files are ignored.
std::vector<std::string> aroundProfile(const TestProfile& profile) {
  const std::filesystem::path folder(profile.folder());
  std::vector<std::string> names;
  for (const auto& item : std::filesystem::directory_iterator(folder.parent_path()))
    if (item.path() != folder && item.path().string().find(folder.filename().string()) != std::string::npos)
      names.push_back(item.path().string());
  return names;
}

/// The names, and one that leads to a known file outside of the profile.
std::vector<String> namesFor(const TestProfile& profile) {
  std::vector<String> names = badNames();
  const String climbing = String(std::filesystem::path(profile.folder()).filename().string().c_str());
  names.push_back(u"../../../../../" + climbing + u".x");
  names.push_back(u"../../../../../../" + climbing + u".x");
  names.push_back(u"/tmp/" + climbing + u".x");
  return names;
}

class CountedNames : public ::testing::Test {
protected:
  CountedNames() {
    std::filesystem::create_directories(profile.dataFolder().toUTF8());
    std::filesystem::create_directories(profile.cacheFolder().toUTF8());
    TestProfile::writeFile(profile.path("precious"), "precious");
    TestProfile::writeFile(profile.dataFolder() + u"x", "precious");
  }
  static void TearDownTestSuite() { count.tell("bad names"); }

  /// Runs the work and checks that only files in this folder change.
  template <class Work>
  void within(const String& folder, Work work) {
    ++count.sources;
    const Files before = filesBelow(profile.folder(), folder.toUTF8());
    work();
    const std::vector<std::string> changed =
        differences(before, filesBelow(profile.folder(), folder.toUTF8()));
    const std::vector<std::string> around = aroundProfile(profile);
    count.outside += static_cast<int>(changed.size() + around.size());
    EXPECT_THAT(changed, IsEmpty());
    EXPECT_THAT(around, IsEmpty());
  }
  static void expectFound(bool found, const String& name) {
    ++count.tried;
    count.lost += found ? 0 : 1;
    EXPECT_TRUE(found) << name.toUTF8();
  }
  /// The day's first save makes it otherwise, in a folder of its own.
  void writeCopyOfToday() {
    std::filesystem::create_directories((profile.dataFolder() + u"Backups").toUTF8());
    TestProfile::writeFile(profile.dataFolder() + u"Backups/Portfolios 2026-03-03.xml", "a copy");
  }
  /// A foreign file with portfolios of these names, each with its own deposit.
  static std::string records(const std::vector<String>& names) {
    std::string text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<Portfolios>";
    for (std::size_t i = 0; i < names.size(); ++i)
      text += portfolio(names[i], i + 1);
    return text + "</Portfolios>";
  }
  static std::string portfolio(const String& name, std::size_t amount) {
    return "<SharePortfolio><String>" + asXmlText(name) +
           "</String><HeldShares/><SoldShares/><Dividends/><CashReserve><CashEvent><Date>3/3/2026</Date>"
           "<Constant>" +
           std::to_string(amount) +
           ".00</Constant><Constant>4</Constant><String>DEPOSIT </String></CashEvent></CashReserve><String/>"
           "</SharePortfolio>";
  }
  std::vector<String> documentNames() {
    std::vector<String> names = namesFor(profile);
    std::erase_if(names, [](const String& name) { return !xmlHolds(name); });
    return names;
  }
  String recordsPath() { return profile.dataFolder() + u"Portfolios.xml"; }

  static inline Count count;
  TestProfile profile;
  FakeUserInteraction user;
  MarketFixture market;
  GatewayScope gateway;
};

TEST_F(CountedNames, StockCodesShareNoCacheFileAndAreFoundAgain) {
  const std::vector<String> codes = namesFor(profile);
  within(profile.cacheFolder(), [&] {
    for (std::size_t i = 0; i < codes.size(); ++i)
      TallymoorInternet::Instance().setCachedPrice(codes[i], Date(2026, 2, 2), double(i + 1));
    gateway.restart();
    for (std::size_t i = 0; i < codes.size(); ++i)
      expectFound(TallymoorInternet::Instance().cachedClose(codes[i], Date(2026, 2, 2)) == double(i + 1),
                  codes[i]);
    gateway.restart();
  });
}

TEST_F(CountedNames, BadCodesAreListedByTheirNames) {
  const std::vector<String> codes = documentNames();
  within(profile.cacheFolder(), [&] {
    SharePriceCache cache(profile.cacheFolder());
    for (const String& code : codes)
      cache.setBad(code, true);
    cache.save();
    const std::vector<String> listed = SharePriceCache(profile.cacheFolder()).badCodes();
    for (const String& code : codes)
      expectFound(std::count(listed.begin(), listed.end(), code) == 1, code);
  });
}

TEST_F(CountedNames, PlainCodesKeepTheirFiles) {
  SharePriceCache cache(profile.cacheFolder());
  for (const char16_t* code : {u"ABC.AX", u"^AORD", u"GC=F", u"caf\u00E9"}) {
    cache.setBad(code, true);
    cache.save();
    EXPECT_TRUE(TestProfile::fileExists(profile.cacheFolder() + u"PriceCache." + code + u".xml"));
  }
  const String longest(String::Base(239, u'L')); // With "PriceCache." and ".xml" the longest possible name.
  cache.setBad(longest, true);
  cache.save();
  EXPECT_EQ(254u, (u"PriceCache." + longest + u".xml").size());
  EXPECT_TRUE(TestProfile::fileExists(profile.cacheFolder() + u"PriceCache." + longest + u".xml"));
}

TEST_F(CountedNames, CapitalRecordsOfAnyTwoNamesAreTwoFilesOfTheDataFolder) {
  ++count.sources;
  std::set<String> files;
  for (const String& name : namesFor(profile)) {
    const String path = capitalRecordFile(name);
    const std::filesystem::path file(path.toUTF8());
    if (file.parent_path() != std::filesystem::path(profile.dataFolder().toUTF8()).parent_path() ||
        file.lexically_normal() != file)
      ++count.outside;
    EXPECT_EQ(std::filesystem::path(profile.dataFolder().toUTF8()).parent_path(), file.parent_path());
    EXPECT_LE(file.filename().string().size(), 255u);
    EXPECT_EQ(String::npos, path.find(u'\0'));
    expectFound(files.insert(path).second, name);
  }
}

TEST_F(CountedNames, EveryPortfolioOfAHandEditedFileIsThereAndStaysThere) {
  const std::vector<String> names = documentNames();
  TestProfile::writeFile(recordsPath(), records(names));
  writeCopyOfToday();
  within(profile.dataFolder(), [&] {
    {
      PortfolioStore store(user);
      store.load();
      EXPECT_TRUE(user.calls(FakeUserInteraction::Kind::Error).empty());
      for (const auto& [name, portfolio] : store.portfolios())
        updateCapitalRecord(*portfolio);
      store.save();
    }
    PortfolioStore again(user);
    again.load();
    std::set<double> deposits;
    for (const auto& [name, portfolio] : again.portfolios()) {
      deposits.insert(portfolio->cashReserveToday());
      EXPECT_TRUE(TestProfile::fileExists(capitalRecordFile(name))) << name.toUTF8();
    }
    for (std::size_t i = 0; i < names.size(); ++i)
      expectFound(deposits.contains(double(i + 1)), names[i]);
  });
}

TEST_F(CountedNames, ImportedPortfoliosAreCleanedOrRefused) {
  const std::vector<String> names = documentNames();
  std::filesystem::create_directories(profile.path("imports").toUTF8());
  within(profile.path("imports/"), [&] {
    for (const String& name : names) {
      const String path = profile.path("imports/import.xml");
      TestProfile::writeFile(path, records({name}));
      const String expected = cleanName(name);
      std::vector<String> imported;
      const String failure = messageOf([&] { imported = ImportedPortfolios(path).names(); });
      if (expected.empty())
        expectFound(failure == String(u"A portfolio in the file has no usable name."), name);
      else
        expectFound(imported == std::vector<String>{expected}, name);
    }
  });
}

/// Settings written to a file and read back, as after a restart.
template <class Write, class Read>
void throughSettingsFile(Write write, Read read) {
  FXRegistry first(APP_NAME.toUTF8().c_str(), VENDOR_NAME.toUTF8().c_str());
  Settings::attach(&first);
  write();
  Settings::Instance().commit();
  const std::string path = Settings::Instance().filePath().toUTF8();
  FXRegistry second;
  ASSERT_TRUE(second.parseFile(path.c_str(), FALSE));
  Settings::attach(&second);
  read();
  Settings::attach(nullptr);
}

TEST_F(CountedNames, WatchlistsAndTheirCodesComeBackFromTheSettingsFile) {
  std::vector<String> names;
  for (const String& name : namesFor(profile)) {
    // A lone surrogate has no bytes; no list can have a name that the file can't hold.
    const String held = String::fromUTF8(name.toUTF8());
    if (std::find(names.begin(), names.end(), held) == names.end())
      names.push_back(held);
  }
  const String folder = profile.path(".foxrc/" + VENDOR_NAME.toUTF8() + "/");
  std::filesystem::create_directories(folder.toUTF8());
  std::set<String> refused;
  const auto isRefused = [](const auto& work, const String& name) {
    const String failure = messageOf(work);
    if (failure == String(u"(nothing thrown)"))
      return false;
    EXPECT_EQ(u"Settings - a name of more than 350 bytes can't be kept: ",
              failure.substr(0, failure.find(u": ") + 2));
    EXPECT_GT(name.toUTF8().size(), 100u);
    return true;
  };
  within(folder, [&] {
    throughSettingsFile(
        [&] {
          for (const String& name : names)
            if (isRefused([&] { WatchlistSettings::add(name); }, name))
              refused.insert(name);
            else
              WatchlistSettings::addCode(name, name);
          for (const String& name : names)
            isRefused([&] { PriceLimits{1.0, 2.0}.keepForStock(name); }, name);
        },
        [&] {
          for (const String& name : names) {
            expectFound(WatchlistSettings::exists(name) != refused.contains(name), name);
            const std::vector<String> codes = WatchlistSettings::codes(name);
            const bool isMark = name == String(u"watchlist exists"); // No prompt accepts it as a code.
            expectFound(refused.contains(name) || isMark || codes == std::vector<String>{name}, name);
          }
        });
  });
}

TEST_F(CountedNames, LinksInPlaceOfFilesAreTheUsersOwn) {
  const std::string link = (profile.cacheFolder() + u"PriceCache.LINK.xml").toUTF8();
  const std::string kept = profile.folder() + "/kept.xml";
  SharePriceCache(profile.cacheFolder()).save();
  TestProfile::writeFile(String(kept.c_str()), "");
  std::filesystem::remove(kept);
  std::filesystem::create_symlink(kept, link);
  SharePriceCache dangling(profile.cacheFolder());
  EXPECT_THROW(dangling.share(u"LINK"), XMLException) << "it leads nowhere";
  dangling.setBad(u"LINK", true);
  dangling.save();
  EXPECT_FALSE(std::filesystem::exists(kept));
  EXPECT_TRUE(std::filesystem::is_symlink(link));

  TestProfile::writeFile(String(kept.c_str()),
                         "<ShareValues><String>LINK</String></ShareValues>"); // The user keeps it elsewhere.
  SharePriceCache cache(profile.cacheFolder());
  cache.setBad(u"LINK", true);
  cache.save();
  EXPECT_TRUE(std::filesystem::is_symlink(link));
  EXPECT_NE(std::string::npos, TestProfile::readFile(String(kept.c_str())).find("IsBad"));
  cache.clear();
  EXPECT_FALSE(std::filesystem::is_symlink(link));
  EXPECT_TRUE(std::filesystem::exists(kept));
}

// ---- Typed in windows ----

class CountedNamesTyped : public ShellTest {
protected:
  static void TearDownTestSuite() { count.tell("bad names typed"); }

  static bool canBeTyped(const String& name) {
    return xmlHolds(name) && name.size() <= 300 && name.find(u'\n') == String::npos &&
           name.find(u'\t') == String::npos && name.find(u'\u007F') == String::npos;
  }
  /// Every third name, because each takes a window's time.
  std::vector<String> typedNames() {
    std::vector<String> names = namesFor(profile());
    std::erase_if(names, [](const String& name) { return !canBeTyped(name); });
    int index = 0;
    std::erase_if(names, [&index](const String&) { return index++ % 3 != 0; });
    return names;
  }
  /// Types the name into the prompt, which accepts or rejects it.
  void typeName(const std::string& prompt, const String& name) {
    whenModal(prompt, [=, this](FXWindow& dialog) {
      type(*find<FXTextField>(dialog), name.toUTF8());
      if (cleanName(name).empty()) {
        answer("You must enter a value.", "OK");
        whenModal(prompt, [this](FXWindow& still) { press(still, "Cancel"); });
      }
      press(dialog, "OK");
    });
  }
  void enterName(const std::string& prompt, const std::string& button, const String& name) {
    typeName(prompt, name);
    press(tallymoor(), button);
    letEventsPass();
  }
  Files filesOutside(const String& folder) { return filesBelow(profile().folder(), folder.toUTF8()); }
  void expectUnchanged(const Files& before, const String& folder) {
    const std::vector<std::string> changed = differences(before, filesOutside(folder));
    const std::vector<std::string> around = aroundProfile(profile());
    count.outside += static_cast<int>(changed.size() + around.size());
    EXPECT_THAT(changed, IsEmpty());
    EXPECT_THAT(around, IsEmpty());
  }
  static void expectFound(bool found, const String& name) {
    ++count.tried;
    count.lost += found ? 0 : 1;
    EXPECT_TRUE(found) << name.toUTF8();
  }

  static inline Count count;
};

/// One portfolio gets each name in turn, because the window's work grows with the number of portfolios.
TEST_F(CountedNamesTyped, Portfolios) {
  ++count.sources;
  enterName("New Portfolio", "New Portfolio", u"../first");
  command(TallymoorWindow::ID_SAVE); // With everything else that a save does.
  const Files before = filesOutside(profile().dataFolder());
  String current = u"..first";
  for (const String& name : typedNames()) {
    SharePortfolioTreeItem* node = tallymoor().totalCapital()->portfolioNode(current);
    ASSERT_NE(nullptr, node) << current.toUTF8();
    typeName("Rename portfolio", name);
    node->handle(nullptr, FXSEL(SEL_COMMAND, SharePortfolioTreeItem::ID_RENAME_SHARE_PORTFOLIO), nullptr);
    letEventsPass();
    if (!cleanName(name).empty())
      current = cleanName(name);
    command(TallymoorWindow::ID_SAVE);
    PortfolioStore saved(UserInteraction::Instance());
    saved.load();
    expectFound(saved.portfolios().size() == 1 && saved.portfolios().contains(current), name);
  }
  expectUnchanged(before, profile().dataFolder());
}

TEST_F(CountedNamesTyped, Watchlists) {
  ++count.sources;
  const Files before = filesOutside(profile().path("none/"));
  for (const String& name : typedNames())
    enterName("Add New Watchlist", "New Watchlist", name);
  expectUnchanged(before, profile().path("none/"));
  for (const String& name : typedNames())
    expectFound(cleanName(name).empty() || WatchlistSettings::exists(cleanName(name)), name);
}

TEST_F(CountedNamesTyped, ExportedFiles) {
  ++count.sources;
  const String folder = profile().path("exports/");
  std::filesystem::create_directories(folder.toUTF8());
  Settings::Instance().writeString(u"Gui Settings", u"TransferFolder", folder);
  const Files before = filesOutside(folder);
  for (const std::string name :
       {"-rf", "cost in $", "$.xml", "a$1$*.xml", "%2e%2e%2fx.xml", "a&b.xml", "=.xml", "[x].xml", "#.xml",
        "\xF0\x9F\x93\x88.xml", "e\xCC\x81.xml", "..x.xml"}) {
    whenModal("Export portfolios to:", [=, this](FXWindow& dialog) {
      type(*find<FXTextField>(dialog), name);
      press(dialog, "OK");
    });
    const std::string file =
        folder.toUTF8() + name + (std::filesystem::path(name).extension().empty() ? ".xml" : "");
    answer("Your portfolios have been exported to\n" + file +
               "\nThis can be used as a backup, or imported for a different user or computer.",
           "OK");
    command(TallymoorWindow::ID_EXPORT);
    expectFound(std::filesystem::exists(file), String(name.c_str()));
  }
  expectUnchanged(before, folder);
}

// ---- Names from the update service ----

class CountedNamesInUpdates : public UpdatesTest {
protected:
  static void TearDownTestSuite() { count.tell("bad names in updates", "taken for a component"); }

  /// Checks that both lists reject or ignore the name.
  void expectNothingDone(const std::string& name) {
    ++count.tried;
    service().offerProgramFiles({{asXmlText(String(name.c_str())), "9.0.0"}});
    service().offerDocuments({{asXmlText(String(name.c_str())), "9.0.0"}});
    service().serveSigned(name, "bad");
    const Files before = filesBelow(profile().folder(), "");
    messageOf([&] {
      Updates updates(service().settings());
      updates.getBinaryUpdates(false);
    });
    messageOf([&] {
      Updates updates(service().settings());
      const bool taken = updates.getConfigUpdates(false) || updates.installConfigUpdates();
      count.lost += taken;
      EXPECT_FALSE(taken) << name;
    });
    const std::vector<std::string> changed = differences(before, filesBelow(profile().folder(), ""));
    const std::vector<std::string> around = aroundProfile(profile());
    count.outside += static_cast<int>(changed.size() + around.size());
    EXPECT_THAT(changed, IsEmpty()) << name;
    EXPECT_THAT(around, IsEmpty()) << name;
  }

  static inline Count count;
};

TEST_F(CountedNamesInUpdates, NoFileIsMadeForAnUnknownName) {
  count.sources = 2;             // Program files and documents.
  Updates(service().settings()); // Creates its folder.
  std::vector<std::string> names;
  for (const String& name : namesFor(profile()))
    if (xmlHolds(name) && name.size() < 300)
      names.push_back(name.toUTF8());
  for (const char* known : {"Tallymoor.exe", "FOXDLL-2.0.0.dll", "CountryConfig.xml", "Tallymoor Report.xsl"})
    for (const char* around : {"../", "./", "/tmp/", "updates/../../", "..\\", "%2e%2e%2f", " ", "-"})
      names.push_back(std::string(around) + known);
  for (const std::string& name : names)
    expectNothingDone(name);
}

} // namespace
} // namespace Tallymoor
