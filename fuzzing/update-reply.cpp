// Replies of the update and advert services. The first byte selects whether the service signs its files,
// whether the program only checks, and whether the download is installed. The replies follow, separated by
// lines of "----": the list of documents, the list of program files, the advert, its picture, then the
// downloads in order. For any input, the program may request and write only files it knows, only in their
// folders, and only valid ones.
#include "foundation/Constants.h"
#include "foundation/FileVersion.h"
#include "foundation/LinuxPlatform.h"
#include "foundation/ProgramFiles.h"
#include "market/HTTPClient.h"
#include "market/TallymoorInternet.h"
#include "market/URL.h"
#include "shell/AdvertPicture.h"
#include "shell/AdvertThread.h"
#include "support/Input.h"
#include "support/Require.h"
#include "support/ScratchFolder.h"
#include "updates/UpdateSearch.h"
#include "xml/LocatorDocuments.h"
#include <algorithm>
#include <array>
#include <deque>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <openssl/evp.h>
#include <set>
#include <sys/stat.h>

namespace Tallymoor::Fuzz {
namespace {

constexpr std::uint8_t SIGNS = 1;
constexpr std::uint8_t ONLY_LOOKS = 2;
constexpr std::uint8_t INSTALLS = 4;
constexpr std::uint8_t NO_ADVERT = 8;

const String UPDATE_BASE = u"https://updates.test/update.php?";
const String ADVERT_BASE = u"http://adverts.test/advert.php";
constexpr int LOCAL_VERSION = 5; ///< Of all documents.
const std::string LOCAL_IMAGE = "@(#)Brindlecove file version 1.3.1.0\n";
const std::string BACKUP = ".bak";

std::string locators(const std::string& root, const std::string& locator, const std::string& reading) {
  return "<" + root + " active=\"a\" version=\"" + std::to_string(LOCAL_VERSION) + "\"><" + locator +
         "><URLLocator><URLPart>http://prices.test/</URLPart></URLLocator>" + reading;
}

/// The user's documents by file name.
std::map<std::string, std::string> localDocuments() {
  const std::string tag = "<TagLocator><TagFind><TagMove move=\"In\" name=\"b\"/></TagFind></TagLocator>";
  const std::string table = "<TableLocator>" + tag + tag + tag + "</TableLocator>";
  const std::string version = std::to_string(LOCAL_VERSION);
  return {
      {"CurrentPriceLocators.xml", locators("CurrentPriceLocators", "CurrentPrice domain=\"a\"",
                                            tag + "</CurrentPrice></CurrentPriceLocators>")},
      {"CodeSearchLocators.xml", locators("CodeSearchLocators", "CodeSearch domain=\"a\"><CodeSearchDetail",
                                          table + "</CodeSearchDetail></CodeSearch></CodeSearchLocators>")},
      {"HistoricalPricesLocators.xml",
       locators("HistoricalPricesLocators", "HistoricalPrices domain=\"a\" maxEntries=\"250\"",
                table + "</HistoricalPrices></HistoricalPricesLocators>")},
      {"CountryConfig.xml", "<CountryOptions version=\"" + version + "\"/>"},
      {"Tallymoor Report.xsl", "<xsl:stylesheet version=\"" + version + "\"/>"}};
}

std::map<std::string, std::string> localProgramFiles() {
  return {{"Tallymoor.exe", LOCAL_IMAGE},
          {"UpdateInstaller.exe", LOCAL_IMAGE},
          {"FOXDLL-1.6.57.dll", "toolkit"},
          {"FxEx-1.0.0.dll", "dates"},
          {"xerces-c_3.2.4.dll", "documents"}};
}

XMLElement::Factory factoryOf(const std::string& document) {
  static const std::map<std::string, XMLElement::Factory> factories{
      {"CurrentPriceLocators.xml", newElement<XMLCurrentPriceLocators>},
      {"CodeSearchLocators.xml", newElement<XMLCodeSearchLocators>},
      {"HistoricalPricesLocators.xml", newElement<XMLHistoricalPricesLocators>},
      {"CountryConfig.xml", newElement<XMLCountryOptions>},
      {"Tallymoor Report.xsl", newElement<XMLXslStylesheet>}};
  return factories.at(document);
}

std::string contentOf(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(file), {});
}

// --- The service

/// The key of the service. It is constant, so that an input always has the same result.
class SigningKey {
public:
  SigningKey()
      : m_key(EVP_PKEY_new_raw_private_key(EVP_PKEY_ED25519, nullptr, SECRET.data(), SECRET.size())) {}
  ~SigningKey() { EVP_PKEY_free(m_key); }
  SigningKey(const SigningKey&) = delete;
  SigningKey& operator=(const SigningKey&) = delete;

  std::string publicKey() const {
    std::array<unsigned char, 32> bytes{};
    std::size_t size = bytes.size();
    require(EVP_PKEY_get_raw_public_key(m_key, bytes.data(), &size) == 1, "there is a public key");
    std::string digits;
    for (const unsigned char byte : bytes) {
      digits += "0123456789abcdef"[byte >> 4];
      digits += "0123456789abcdef"[byte & 0xF];
    }
    return digits;
  }

  std::string sign(const std::string& message) const {
    EVP_MD_CTX* const context = EVP_MD_CTX_new();
    std::array<unsigned char, 64> signature{};
    std::size_t size = signature.size();
    const bool done =
        EVP_DigestSignInit(context, nullptr, nullptr, nullptr, m_key) == 1 &&
        EVP_DigestSign(context, signature.data(), &size,
                       reinterpret_cast<const unsigned char*>(message.data()), message.size()) == 1;
    EVP_MD_CTX_free(context);
    require(done, "a message can be signed");
    return std::string(signature.begin(), signature.end());
  }

private:
  static constexpr std::array<unsigned char, 32> SECRET{7};
  EVP_PKEY* m_key;
};

const SigningKey& signingKey() {
  static const SigningKey key;
  return key;
}

/// Answers from the input, and checks that only permitted requests are made.
class Service {
public:
  Service(std::string_view replies, bool signs) : m_signs(signs) {
    static constexpr std::string_view BORDER = "\n----\n";
    for (std::size_t end = replies.find(BORDER); end != std::string_view::npos; end = replies.find(BORDER)) {
      m_replies.emplace_back(replies.substr(0, end));
      replies.remove_prefix(end + BORDER.size());
    }
    m_replies.emplace_back(replies);
    for (std::string* const reply : {&m_documentList, &m_programList, &m_advert, &m_picture})
      *reply = next();
  }

  std::string answer(const String& address) {
    if (address == ADVERT_BASE)
      return m_advert;
    if (address.startsWith(ADVERT_BASE)) {
      checkPictureAddress(address);
      return m_picture;
    }
    const String query = UPDATE_BASE + u"filename=";
    require(address.startsWith(query), "nothing is asked for but at the services");
    return file(String(address.substr(query.size())).toUTF8());
  }

  /// True if this content was served and signed under this name.
  bool hasSigned(const std::string& name, const std::string& content) const {
    const auto served = m_files.find(name);
    return m_signs && served != m_files.end() && served->second == content;
  }

private:
  std::string next() {
    if (m_replies.empty())
      return {};
    std::string reply = std::move(m_replies.front());
    m_replies.pop_front();
    return reply;
  }

  std::string nextOrRefuse() {
    if (m_replies.empty())
      throw HTTPException(u"no such file", 404);
    return next();
  }

  std::string file(const std::string& name) {
    if (name == CONFIG_UPDATES_FILE.toUTF8())
      return m_documentList;
    if (name == BINARY_UPDATES_FILE.toUTF8())
      return m_programList;
    if (localDocuments().count(name) != 0)
      return m_files[name] = nextOrRefuse();
    static const std::string SIGNATURE = ".sig";
    if (name.ends_with(SIGNATURE)) {
      const std::string of = name.substr(0, name.size() - SIGNATURE.size());
      if (localDocuments().count(of) == 0)
        checkProgramFileName(of);
      if (!m_signs)
        return nextOrRefuse();
      return signingKey().sign(of + "\n" + (m_replies.empty() ? std::string() : m_replies.front()));
    }
    checkProgramFileName(name);
    return m_files[name] = nextOrRefuse();
  }

  static void checkProgramFileName(const std::string& name) {
    require(name.find('/') == std::string::npos && name.find('\\') == std::string::npos && name[0] != '.',
            "a name stays in its folder");
    require(!stemOfProgramFile(name).empty(), "only program files that are known are asked for");
  }

  static void checkPictureAddress(const String& address) {
    const String query = ADVERT_BASE + u"?image=";
    require(address.startsWith(query) && address.size() > query.size(), "a picture is asked for by its name");
    for (const char16_t unit : address.substr(query.size()))
      require((unit >= u'a' && unit <= u'z') || (unit >= u'A' && unit <= u'Z') ||
                  (unit >= u'0' && unit <= u'9') || unit == u'.' || unit == u'-' || unit == u'_',
              "the name of a picture is plain");
  }

  const bool m_signs;
  std::deque<std::string> m_replies;
  std::string m_documentList;
  std::string m_programList;
  std::string m_advert;
  std::string m_picture;
  std::map<std::string, std::string> m_files; ///< Served contents by name.
};

Service* s_service = nullptr; ///< Of the current input.

/// An HTTP client connected to the input's service.
class ServiceClient : public HTTPClient {
public:
  void goOnline() override {}
  HTTPAnswer get(const URL& url, const HTTPHeaders&, const std::stop_token&) override {
    const std::string reply = answer(url);
    return {200, "OK", {}, {reply.begin(), reply.end()}};
  }
  void setBodyLimit(std::size_t bytes) override { m_limit = bytes; }

private:
  std::string answer(const URL& url) const {
    require(s_service != nullptr, "there is a service while something is asked for");
    std::string reply = s_service->answer(url.whole());
    if (reply.size() > m_limit)
      throw HTTPException(u"too large");
    return reply;
  }

  std::size_t m_limit = PAGE_BODY_LIMIT;
};

// --- The installed copy

/// Sets the program's folder as the current one during its lifetime.
class CurrentFolder {
public:
  explicit CurrentFolder(const std::filesystem::path& folder) : m_before(std::filesystem::current_path()) {
    std::filesystem::current_path(folder);
  }
  ~CurrentFolder() { std::filesystem::current_path(m_before); }
  CurrentFolder(const CurrentFolder&) = delete;
  CurrentFolder& operator=(const CurrentFolder&) = delete;

private:
  const std::filesystem::path m_before;
};

/// The user's folder and the program's folder.
class Installation {
public:
  Installation() {
    ::umask(022);
    const std::filesystem::path root = m_folder.path();
    std::filesystem::create_directories(programFolder());
    const CurrentFolder current(programFolder());
    LinuxPlatformOptions options;
    options.dataHome = root / "home";
    options.locale = "en_AU";
    Platform::setInstance(std::make_unique<LinuxPlatform>(options));
    Platform& platform = Platform::Instance();
    m_config = configDirectory(platform, APP_NAME).toUTF8();
    m_report = reportDirectory(platform, APP_NAME).toUTF8();
    restore();
    TallymoorInternet::Options gateway;
    gateway.startUpdater = false;
    TallymoorInternet::setOptions(gateway);
    TallymoorInternet::Instance();
  }

  /// Restores the state before the first input.
  void restore() {
    std::filesystem::remove_all("updates");
    for (const auto& [name, content] : localDocuments()) {
      replace(documentPath(name), content);
      std::filesystem::remove(documentPath(name) + BACKUP);
    }
    for (const auto& [name, content] : localProgramFiles())
      replace(name, content);
  }

  std::string documentPath(const std::string& name) const {
    return (name.ends_with(".xsl") ? m_report : m_config) + name;
  }

  /// All files, relative to the folder that contains both.
  std::set<std::string> files() const {
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(m_folder.path()))
      if (!entry.is_directory())
        names.insert(entry.path());
    return names;
  }
  std::string programFolder() const { return m_folder.path() + "/program/"; }

private:
  static void replace(const std::string& path, const std::string& content) {
    if (contentOf(path) == content)
      return;
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file << content;
    require(file.flush().good(), "a file can be written");
  }

  const ScratchFolder m_folder;
  std::string m_config;
  std::string m_report;
};

Installation& installation() {
  static Installation made;
  return made;
}

// --- Checks

int versionOfDocument(const std::string& path, const std::string& name) {
  const std::unique_ptr<XMLElement> root(factoryOf(name)());
  try {
    root->decode(String(path.c_str()));
    return root->attribute(u"version").toLong();
  } catch (const XMLException&) {
    return 0;
  }
}

FileVersion versionOfProgramFile(const std::string& path) {
  FileVersion version{};
  Platform::Instance().getFileVersion(String(path.c_str()), version[0], version[1], version[2], version[3]);
  return version;
}

void checkProgramFile(const std::filesystem::path& path, const Service& service) {
  const std::string name = path.filename();
  const std::string stem = stemOfProgramFile(name);
  require(!stem.empty(), "only program files wait for the installer");
  require(service.hasSigned(name, contentOf(path)),
          "what waits for the installer was signed, and is as it was served");
  for (const auto& [local, content] : localProgramFiles())
    if (stemOfProgramFile(local) == stem && local != "UpdateInstaller.exe")
      require(versionOfProgramFile(path) > versionOfProgramFile(local),
              "what waits for the installer is newer");
}

/// Checks that there are only the initial files, complete downloads and the files replaced by them.
void checkFiles(const Service& service, bool onlyLooked, bool installed) {
  const std::string program = installation().programFolder();
  const std::string updates = program + "updates/";
  std::set<std::string> known;
  for (const auto& [name, content] : localProgramFiles())
    known.insert(program + name);
  for (const auto& [name, content] : localDocuments())
    known.insert(installation().documentPath(name));
  for (const std::string& path : installation().files()) {
    if (known.erase(path) != 0)
      continue;
    require(!onlyLooked, "a look writes nothing");
    const std::string name = std::filesystem::path(path).filename();
    if (path == updates + "documents/" + name)
      require(localDocuments().count(name) != 0 && versionOfDocument(path, name) > LOCAL_VERSION &&
                  service.hasSigned(name, contentOf(path)),
              "a document that waits is one of ours, newer and signed");
    else if (path == updates + name)
      checkProgramFile(path, service);
    else
      require(installed && path.ends_with(BACKUP), "nothing is written outside its folder");
  }
  require(known.empty(), "nothing is taken away");
}

void checkDocuments(const Service& service, bool installed) {
  for (const auto& [name, content] : localDocuments()) {
    const std::string path = installation().documentPath(name);
    if (installed && contentOf(path) != content)
      require(versionOfDocument(path, name) > LOCAL_VERSION && service.hasSigned(name, contentOf(path)) &&
                  contentOf(path + BACKUP) == content,
              "a document is replaced by a newer one that was signed, and stays beside it");
    else
      require(contentOf(path) == content, "a document is not touched until it is installed");
  }
}

void lookForUpdates(const Service& service, bool onlyLooks, bool installs) {
  UpdateSettings settings;
  settings.queryBase = UPDATE_BASE;
  settings.publicKey = signingKey().publicKey();
  Updates updates(settings);
  const UpdatesFound found = Tallymoor::lookForUpdates(updates, onlyLooks);
  require(!found.documentsFixed && !found.programFilesFixed, "documents and program files can be replaced");
  require(found.failures.size() <= 2, "a track fails once at most");
  checkFiles(service, onlyLooks, false);
  checkDocuments(service, false);
  if (!installs)
    return;
  updates.installConfigUpdates();
  updates.installBinaryUpdates();
  checkFiles(service, onlyLooks, true);
  checkDocuments(service, true);
  TallymoorInternet::reset(); // Throws if the locators are invalid.
}

void fetchAdvert() {
  AdvertSettings settings;
  settings.base = ADVERT_BASE;
  settings.wanted = false; // No thread: the pass runs here.
  PendingAdvert advert;
  AdvertThread thread(settings, advert);
  try {
    thread.runPass();
  } catch (const Exception&) {
    return require(advert.image.empty(), "an advert that is unavailable shows nothing");
  }
  require(isSoundGif(advert.image), "an advert is a sound picture");
}

void check(Input& input) {
  const std::uint8_t flags = input.byte();
  Installation& copy = installation();
  const CurrentFolder current(copy.programFolder());
  Service service(input.rest(), (flags & SIGNS) != 0);
  s_service = &service;
  lookForUpdates(service, (flags & ONLY_LOOKS) != 0, (flags & INSTALLS) != 0);
  if ((flags & NO_ADVERT) == 0)
    fetchAdvert();
  s_service = nullptr;
  copy.restore();
}

} // namespace
} // namespace Tallymoor::Fuzz

// Replaces the program's client, so that no input reaches a network.
namespace Tallymoor {

std::unique_ptr<HTTPClient> createHTTPClient() {
  return std::make_unique<Fuzz::ServiceClient>();
}

} // namespace Tallymoor

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace Tallymoor::Fuzz;
  Input input(data, size);
  check(input);
  return 0;
}
