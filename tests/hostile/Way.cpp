#include "Way.h"
#include "DocumentServer.h"
#include "books/SharePortfolioCapitalRecordUser.h"
#include "foundation/Constants.h"
#include "foundation/Settings.h"
#include "market/LocatorSet.h"
#include "market/MarketPrices.h"
#include "market/SharePriceCache.h"
#include "market/SourceList.h"
#include "market/TallymoorInternet.h"
#include "session/ImportedPortfolios.h"
#include "session/PortfolioStore.h"
#include "shell/AdvertThread.h"
#include "support/FakeUserInteraction.h"
#include "support/GatewayScope.h"
#include "support/InstalledFolder.h"
#include "updates/Updates.h"
#include "xml/CapitalRecord.h"
#include "xml/CountryOfResidence.h"
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <optional>
#include <sstream>
#include <stdexcept>

namespace Tallymoor {

namespace {

String text(const std::string& utf8) {
  return String::fromUTF8(utf8);
}

/// The failure text shown to users. Empty if the document was read.
template <class Work>
Outcome outcomeOf(const Work& work) {
  try {
    work();
    return {true};
  } catch (const Exception& exception) {
    return {false, exception.description().toUTF8()};
  }
}

std::string contentOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file)
    throw std::runtime_error("there is no " + path);
  return std::string(std::istreambuf_iterator<char>(file), {});
}

/// A user with all of the program's documents, and records of one portfolio with 3 days.
class WayOfProfile : public Way {
public:
  explicit WayOfProfile(const std::string& soundFolder) : m_sound(soundFolder) {
    const String config = m_profile.configFolder();
    m_files = {{config + text(DELIVERED_DOCUMENTS[0]), "current-prices"},
               {config + text(DELIVERED_DOCUMENTS[1]), "code-search"},
               {config + text(DELIVERED_DOCUMENTS[2]), "historical-prices"},
               {config + text(DELIVERED_DOCUMENTS[3]), "country"},
               {config + u"Sources/Sound.xml", "price-source"},
               {m_profile.reportFolder() + text(DELIVERED_DOCUMENTS[4]), "stylesheet"},
               {m_profile.dataFolder() + PORTFOLIOS_FILE, "records"},
               {m_profile.dataFolder() + capitalRecordFileName(u"Trading"), "capital"},
               {m_profile.cacheFolder() + PRICE_CACHE_NAME + u".ABC.AX.xml", "prices"}};
    for (const auto& [path, kind] : m_files)
      write(path, kind);
    Settings::Instance().writeString(u"Config", u"Country", u"Australia");
  }

  std::string folder() const override { return m_profile.folder(); }
  void restore() override {
    for (const auto& [path, kind] : m_files)
      if (std::filesystem::is_symlink(path.toUTF8())) {
        std::filesystem::remove(path.toUTF8());
        write(path, kind);
      }
    std::filesystem::remove_all(m_profile.folder() + "/installed/updates");
  }

protected:
  TestProfile& profile() { return m_profile; }
  FakeUserInteraction& user() { return m_user; }

  /// Replaces a file. Uses a link, because some documents are large.
  static void replace(const String& path, const std::string& document) {
    std::filesystem::remove(path.toUTF8());
    std::filesystem::create_symlink(document, path.toUTF8());
  }

private:
  /// Writes the valid document, in version 1 where the folder's document has version 9.
  void write(const String& path, const std::string& kind) const {
    std::string content = contentOf(m_sound + "/" + kind + ".xml");
    const std::size_t at = content.find("version=\"9\"");
    if (at != std::string::npos)
      content.replace(at, 11, "version=\"1\"");
    TestProfile::writeFile(path, content);
  }

  const std::string m_sound;
  std::map<String, std::string> m_files; ///< Path to the kind of valid document.
  TestProfile m_profile;
  FakeUserInteraction m_user;
  GatewayScope m_gateway;
};

std::string encodedRecords(PortfolioStore& store) {
  std::ostringstream stream;
  store.records().encode(stream);
  return stream.str();
}

/// The user's records at the start.
class RecordsWay : public WayOfProfile {
public:
  using WayOfProfile::WayOfProfile;
  void place(const std::string& document) override {
    replace(profile().dataFolder() + PORTFOLIOS_FILE, document);
  }
  Outcome read() override {
    user().clearCalls();
    m_store.load();
    if (user().calls().empty())
      return Outcome{true};
    // Refused records give an error as the last message. Warnings of single dates belong to records that were
    // read.
    const FakeUserInteraction::Call told = user().calls().back();
    return Outcome{told.kind == FakeUserInteraction::Kind::Warning, told.text.toUTF8()};
  }
  std::string state() override { return encodedRecords(m_store); }

private:
  PortfolioStore m_store{user()};
};

/// A file imported by the user.
class ImportWay : public WayOfProfile {
public:
  using WayOfProfile::WayOfProfile;
  void start() override { m_store.load(); }
  void place(const std::string& document) override { m_document = document; }
  Outcome read() override {
    return outcomeOf([this] { const ImportedPortfolios imported(text(m_document)); });
  }
  std::string state() override { return encodedRecords(m_store); }

private:
  PortfolioStore m_store{user()};
  std::string m_document;
};

/// Cached prices of a code, while those of another code are in use.
class PricesWay : public WayOfProfile {
public:
  using WayOfProfile::WayOfProfile;
  void start() override {
    m_cache.emplace(profile().cacheFolder());
    m_cache->share(u"ABC.AX");
  }
  void place(const std::string& document) override {
    m_code = u"BAD" + String::fromLong(++m_placed); // A code's file is read only once.
    replace(profile().cacheFolder() + PRICE_CACHE_NAME + u"." + m_code + u".xml", document);
  }
  Outcome read() override {
    return outcomeOf([this] { m_cache->share(m_code); });
  }
  std::string state() override {
    std::ostringstream stream;
    for (const auto& [day, value] : m_cache->share(u"ABC.AX").values)
      stream << day.julianDay() << ' ' << value.close << ' ' << value.volume << '\n';
    return stream.str();
  }

private:
  std::optional<SharePriceCache> m_cache;
  String m_code;
  int m_placed = 0;
};

/// The capital record of a portfolio. An unusable record is silently recomputed, so its days show whether it
/// was read.
class CapitalWay : public WayOfProfile {
public:
  using WayOfProfile::WayOfProfile;
  void place(const std::string& document) override {
    replace(profile().dataFolder() + capitalRecordFileName(u"Trading"), document);
  }
  Outcome read() override {
    m_record.emplace(u"Trading", gatewayPrices());
    const bool hasDays = m_record->firstRecordDate() != Date();
    return {hasDays, hasDays ? "" : "worked out again"};
  }

private:
  std::optional<SharePortfolioCapitalRecordUser> m_record;
};

/// One of the three locator documents, loaded into the running gateway.
class LocatorsWay : public WayOfProfile {
public:
  LocatorsWay(const std::string& soundFolder, std::size_t document)
      : WayOfProfile(soundFolder), m_number(document) {}
  void start() override { TallymoorInternet::Instance(); }
  void place(const std::string& document) override {
    replace(profile().configFolder() + text(DELIVERED_DOCUMENTS[m_number]), document);
  }
  Outcome read() override {
    return outcomeOf([] { TallymoorInternet::reset(); });
  }

private:
  std::size_t m_number;
};

/// A document of a source of prices, which the user has put into its folder.
class PriceSourceWay : public WayOfProfile {
public:
  using WayOfProfile::WayOfProfile;
  void place(const std::string& document) override {
    replace(profile().configFolder() + u"Sources/Sound.xml", document);
  }
  Outcome read() override {
    SourceList sources(profile().configFolder());
    const std::vector<SourceComplaint>& complaints = sources.complaints();
    return {complaints.empty(), complaints.empty() ? "" : complaints.front().cause.toUTF8()};
  }
};

/// The country document. An unusable one counts as empty.
class CountryWay : public WayOfProfile {
public:
  using WayOfProfile::WayOfProfile;
  void place(const std::string& document) override {
    replace(profile().configFolder() + text(DELIVERED_DOCUMENTS[3]), document);
  }
  Outcome read() override {
    CountryOfResidence::destroyInstance();
    const bool knowsCountry = CountryOfResidence::Instance().financialYearStart().month() == 7;
    CountryOfResidence::destroyInstance();
    return {knowsCountry, knowsCountry ? "" : "no countries"};
  }
};

/// A reply of the update service: its list, or one of the five documents.
class UpdateWay : public WayOfProfile {
public:
  UpdateWay(const std::string& soundFolder, int port, const std::string& kind)
      : WayOfProfile(soundFolder), m_installed(profile()),
        m_base("http://127.0.0.1:" + std::to_string(port) + "/" + kind), m_onlyList(kind == "list") {}
  void place(const std::string& document) override {
    UpdateSettings settings;
    settings.queryBase = text(m_base + document + "?");
    m_updates.emplace(settings);
  }
  Outcome read() override {
    return outcomeOf([this] {
      if (!m_updates->getConfigUpdates(m_onlyList) && !m_onlyList)
        throw Exception(u"not taken for an update");
    });
  }

private:
  InstalledFolder m_installed;
  const std::string m_base;
  const bool m_onlyList;
  std::optional<Updates> m_updates;
};

/// A reply of the advert service.
class AdvertWay : public WayOfProfile {
public:
  AdvertWay(const std::string& soundFolder, int port)
      : WayOfProfile(soundFolder), m_base("http://127.0.0.1:" + std::to_string(port) + "/advert") {}
  void start() override { TallymoorInternet::Instance(); }
  void place(const std::string& document) override { m_settings.base = text(m_base + document); }
  Outcome read() override {
    m_settings.wanted = false; // The thread itself makes no pass.
    AdvertThread thread(m_settings, m_pending);
    return outcomeOf([&] {
      thread.runPass();
      if (m_pending.image.empty())
        throw Exception(u"no advert");
    });
  }

private:
  const std::string m_base;
  AdvertSettings m_settings;
  PendingAdvert m_pending;
};

using Maker = std::function<std::unique_ptr<Way>(const std::string& soundFolder, int port)>;

template <class Kind, class... Arguments>
Maker onFiles(Arguments... arguments) {
  return [=](const std::string& sound, int) { return std::make_unique<Kind>(sound, arguments...); };
}

Maker overUpdates(const std::string& kind) {
  return
      [kind](const std::string& sound, int port) { return std::make_unique<UpdateWay>(sound, port, kind); };
}

const std::map<std::string, Maker>& makers() {
  static const std::map<std::string, Maker> makers = {
      {"records", onFiles<RecordsWay>()},
      {"import", onFiles<ImportWay>()},
      {"prices", onFiles<PricesWay>()},
      {"capital", onFiles<CapitalWay>()},
      {"current-prices", onFiles<LocatorsWay>(std::size_t(0))},
      {"code-search", onFiles<LocatorsWay>(std::size_t(1))},
      {"historical-prices", onFiles<LocatorsWay>(std::size_t(2))},
      {"price-source", onFiles<PriceSourceWay>()},
      {"country", onFiles<CountryWay>()},
      {"list", overUpdates("list")},
      {"delivered-current-prices", overUpdates("delivered-0")},
      {"delivered-code-search", overUpdates("delivered-1")},
      {"delivered-historical-prices", overUpdates("delivered-2")},
      {"delivered-country", overUpdates("delivered-3")},
      {"delivered-stylesheet", overUpdates("delivered-4")},
      {"advert",
       [](const std::string& sound, int port) { return std::make_unique<AdvertWay>(sound, port); }}};
  return makers;
}

} // namespace

std::unique_ptr<Way> makeWay(const std::string& name, const std::string& soundFolder, int serverPort) {
  return makers().at(name)(soundFolder, serverPort);
}

} // namespace Tallymoor
