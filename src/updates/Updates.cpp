#include "updates/Updates.h"
#include "foundation/Constants.h"
#include "foundation/FileReplacement.h"
#include "foundation/Platform.h"
#include "foundation/ProgramFiles.h"
#include "foundation/Uninterrupted.h"
#include "market/HTTPClient.h"
#include "market/LocatorSet.h"
#include "market/URL.h"
#include "updates/UpdateHandover.h"
#include "updates/UpdateSignature.h"
#include "xml/LocatorDocuments.h"
#include <algorithm>
#include <filesystem>
#include <set>
#include <sys/stat.h>

namespace Tallymoor {

namespace {

const String QUERY_KEY = u"filename=";
constexpr const char* DOCUMENTS = "documents";
constexpr const char* STAGING = "staging";
constexpr const char* LOCATORS_TOGETHER = "locators";
constexpr std::size_t LOCATOR_DOCUMENTS = 3; ///< they come first among the documents

String fromFileName(const std::string& name) {
  return String::fromUTF8(name);
}

std::string usersUpdateFolder() {
  return (Platform::Instance().userHomeDirectory(APP_NAME) + u"/Updates/").toUTF8();
}

bool mayHoldUpdates(const std::string& folder) {
  return isOwnFolder(folder) && (folder != UPDATE_FOLDER || (isOwnFolder(".") && !belongsToPackage()));
}

/// "./updates/" where it and the program's folder are ours; else a folder of the user's, which serves
/// documents alone.
std::string updateFolder() {
  if (isOwnFolder(".") && !belongsToPackage())
    ::mkdir(UPDATE_FOLDER, 0700); // when it is there, or can't be made, the test knows
  if (mayHoldUpdates(UPDATE_FOLDER))
    return UPDATE_FOLDER;
  const std::string folder = usersUpdateFolder();
  ::mkdir(folder.c_str(), 0700);
  return folder;
}

/// Throws XMLException where the document can't be read or has no version.
std::int32_t versionOf(const String& path, XMLElement::Factory newRoot) {
  const std::unique_ptr<XMLElement> root(newRoot());
  root->decode(path);
  return root->attribute(u"version").toLong();
}

FileVersion versionOfFile(const String& path) {
  FileVersion version{};
  Platform::Instance().getFileVersion(path, version[0], version[1], version[2], version[3]);
  return version;
}

bool isNewer(const std::array<std::int64_t, 3>& offered, const FileVersion& local) {
  return offered > std::array<std::int64_t, 3>{local[0], local[1], local[2]};
}

/// Major, minor and patch of a component.
std::array<std::int64_t, 3> versionOffered(const XMLElement& component) {
  return {component.attribute(u"Major").toLong64(), component.attribute(u"Minor").toLong64(),
          component.attribute(u"Patch").toLong64()};
}

/// The one local file of a stem.
String localFileOf(const String& stem) {
  if (stem == APP_EXE)
    return stem;
  std::vector<std::string> names;
  try {
    names = filesWithStem(stem.toUTF8());
  } catch (const std::filesystem::filesystem_error& error) {
    throw ProgramFilesFixed(String(error.what()));
  }
  if (names.empty())
    throw ProgramFilesFixed(u"Updates::getUpdateForBinFile - failed to find local file for update: " + stem);
  if (names.size() > 1)
    throw ProgramFilesFixed(u"Updates::getUpdateForBinFile - multiple matches for " + stem);
  return fromFileName(names.front());
}

FileVersion localVersionOf(const String& fileName) {
  try {
    return versionOfFile(fileName);
  } catch (const Exception& exception) {
    throw ProgramFilesFixed(exception.message());
  }
}

/// Why nothing can be known by the key to be genuine; empty where it can.
String keyFault(const std::string& publicKey) {
  if (publicKey.empty())
    return u"This copy was built without the key by which updates are recognised as genuine.";
  if (!UpdateSignature::isPublicKey(publicKey))
    return u"The key by which updates are recognised as genuine can't be read.";
  return String();
}

void keepMode(const String& from, const String& to) {
  struct stat info {};
  if (::stat(from.toUTF8().c_str(), &info) == 0)
    ::chmod(to.toUTF8().c_str(), info.st_mode & 0777);
}

} // namespace

Updates::Updates(const UpdateSettings& settings, std::stop_token stop)
    : m_settings(settings), m_stop(std::move(stop)), m_client(createHTTPClient()), m_folder(updateFolder()) {
  Platform& platform = Platform::Instance();
  const String config = configDirectory(platform, APP_NAME);
  m_documents = {
      localDocument(config, CURRENT_PRICE_LOCATORS_FILE, newElement<XMLCurrentPriceLocators>),
      localDocument(config, CODE_SEARCH_LOCATORS_FILE, newElement<XMLCodeSearchLocators>),
      localDocument(config, HISTORICAL_PRICE_LOCATORS_FILE, newElement<XMLHistoricalPricesLocators>),
      localDocument(config, COUNTRY_CONFIG_FILE, newElement<XMLCountryOptions>),
      localDocument(reportDirectory(platform, APP_NAME), REPORT_XSL, newElement<XMLXslStylesheet>)};
  try {
    m_client->goOnline();
  } catch (const HTTPException& exception) {
    m_connectFailure = exception;
  }
}

Updates::~Updates() = default;

Updates::LocalDocument Updates::localDocument(const String& folder, const String& fileName,
                                              XMLElement::Factory newRoot) {
  LocalDocument document{fileName, folder + fileName, newRoot, 0};
  try {
    document.version = versionOf(document.path, newRoot);
  } catch (const Exception&) {
    // Version 0: any update is newer.
  }
  return document;
}

// --- The service

std::vector<std::uint8_t> Updates::fetch(const String& fileName, std::size_t limit) {
  if (!m_settings.isServiceSafe())
    throw Exception(u"Updates::getBinaryUpdates - the address of the update service is not https: " +
                    m_settings.queryBase);
  if (m_connectFailure)
    throw *m_connectFailure;
  std::vector<std::uint8_t> reply;
  m_client->setBodyLimit(limit);
  m_client->getPage(URL(m_settings.queryBase + QUERY_KEY + fileName), reply, m_stop);
  return reply;
}

std::unique_ptr<XMLVersionsAvailable> Updates::fetchOffered(const String& listName) {
  std::vector<std::uint8_t> reply;
  try {
    reply = fetch(listName, LIST_LIMIT);
  } catch (const HTTPException& exception) {
    throw Exception(u"Updates::getBinaryUpdates - Problem getting updates: " + exception.description());
  }
  reply.push_back(0);
  auto offered = std::make_unique<XMLVersionsAvailable>();
  try {
    offered->decode(reinterpret_cast<const char*>(reply.data()));
  } catch (const Exception& exception) {
    throw Exception(u"Updates::getBinaryUpdates failed: " + exception.description());
  }
  return offered;
}

const StagingFolder& Updates::staging() {
  if (!m_staging)
    m_staging.emplace(m_folder + STAGING);
  return *m_staging;
}

std::vector<std::uint8_t> Updates::downloadFile(const String& fileName, std::size_t limit) {
  try {
    std::vector<std::uint8_t> content = fetch(fileName, limit);
    staging().write(fileName, content);
    return content;
  } catch (const HTTPException& exception) {
    throw Exception(u"Updates::downloadFile - problem getting " + fileName + u": " + exception.description());
  }
}

std::vector<std::uint8_t> Updates::fetchSignature(const String& fileName) {
  try {
    return fetch(fileName + u".sig", SIGNATURE_LIMIT);
  } catch (const HTTPException& exception) {
    throw Exception(u"Updates::downloadFile - no signature for " + fileName + u": " +
                    exception.description());
  }
}

/// The signature first: without one there is no reason to fetch the file.
void Updates::downloadSigned(const String& fileName, std::size_t limit) {
  const std::vector<std::uint8_t> signature = fetchSignature(fileName);
  const std::vector<std::uint8_t> content = downloadFile(fileName, limit);
  if (!UpdateSignature::verifies(m_settings.publicKey, fileName.toUTF8(), content, signature))
    throw Exception(u"Updates::downloadFile - the signature of " + fileName + u" is wrong");
}

// --- Documents

void Updates::requireKnownDocuments() const {
  const String fault = keyFault(m_settings.publicKey);
  if (!fault.empty() && !(m_settings.publicKey.empty() && m_settings.isServiceLocal()))
    throw DocumentsFixed(fault);
}

bool Updates::getConfigUpdates(bool checkOnly) {
  requireKnownDocuments();
  const std::unique_ptr<XMLVersionsAvailable> offered = fetchOffered(CONFIG_UPDATES_FILE);
  m_staging.reset();
  std::set<const LocalDocument*> newer;
  for (std::size_t i = 0; i < offered->numSubElements(u"Components"); ++i) {
    const XMLElement& component = offered->subElement(u"Components", i);
    for (const LocalDocument& document : m_documents)
      if (component.attribute(u"FileName") == document.fileName &&
          component.attribute(u"Major").toLong() > document.version)
        newer.insert(&document);
  }
  if (newer.empty() || checkOnly)
    return !newer.empty();
  try {
    for (const LocalDocument* document : newer)
      downloadDocument(*document);
    checkLocators();
    m_staging->publishAs(m_folder + DOCUMENTS);
  } catch (const Exception&) {
    m_staging.reset();
    throw;
  }
  m_staging.reset();
  return true;
}

void Updates::downloadDocument(const LocalDocument& document) {
  if (m_settings.publicKey.empty())
    downloadFile(document.fileName, DOCUMENT_LIMIT);
  else
    downloadSigned(document.fileName, DOCUMENT_LIMIT);
  std::int32_t version = 0;
  try {
    version = versionOf(staging().file(document.fileName), document.newRoot);
  } catch (const Exception& exception) {
    throw Exception(u"Updates::downloadFile - " + document.fileName + u" is no such document: " +
                    exception.description());
  }
  if (version <= document.version)
    throw Exception(u"Updates::downloadFile - " + document.fileName + u" is not newer than the local one");
}

/// The locator documents must lead somewhere together, or the next start would find no prices. Those that are
/// not updated are taken from their places.
void Updates::checkLocators() {
  StagingFolder together(m_folder + LOCATORS_TOGETHER);
  bool anyNew = false;
  for (std::size_t i = 0; i < LOCATOR_DOCUMENTS; ++i) {
    const LocalDocument& document = m_documents[i];
    const bool isNew = copyFileReplacing(staging().file(document.fileName), together.file(document.fileName));
    anyNew = anyNew || isNew;
    if (!isNew)
      copyFileReplacing(document.path, together.file(document.fileName));
  }
  if (!anyNew)
    return;
  try {
    LocatorSet(together.file(String()));
  } catch (const Exception& exception) {
    throw Exception(u"Updates::downloadFile - the locator documents can't be used: " +
                    exception.description());
  }
}

bool Updates::installConfigUpdates() {
  bool any = false;
  for (const LocalDocument& document : m_documents) {
    const String downloaded = String((m_folder + DOCUMENTS).c_str()) + u"/" + document.fileName;
    if (filePresence(downloaded) != FilePresence::RegularFile)
      continue;
    // In place already where an earlier attempt was cut off; the copy then holds what was there before.
    if (!haveSameContent(downloaded, document.path)) {
      copyFileReplacing(document.path, document.path + u".bak");
      copyFileReplacing(downloaded, document.path);
    }
    removeFile(downloaded);
    any = true;
  }
  std::error_code ignored; // fails where there is none
  std::filesystem::remove(m_folder + DOCUMENTS, ignored);
  return any;
}

// --- Program files

void Updates::requireReplaceableProgramFiles() const {
  if (belongsToPackage())
    throw ProgramFilesFixed(
        u"They were installed as a package, and the system's package manager keeps them.\n"
        u"A newer version comes as a newer package.");
  if (!isOwnFolder(".") || m_folder != UPDATE_FOLDER)
    throw ProgramFilesFixed(
        u"The folder that the program was started in is not yours, or others can write to it.\n"
        u"Whoever installed the program there can update it.");
  if (const String fault = keyFault(m_settings.publicKey); !fault.empty())
    throw ProgramFilesFixed(fault);
}

bool Updates::getBinaryUpdates(bool checkOnly) {
  requireReplaceableProgramFiles();
  const std::unique_ptr<XMLVersionsAvailable> offered = fetchOffered(BINARY_UPDATES_FILE);
  m_staging.reset();
  bool newer = false;
  try {
    for (const String& stem : {APP_EXE, UPDATE_INSTALLER, TOOLKIT_DLL, EXTENSIONS_DLL, XML_DLL})
      newer = getUpdateForBinFile(*offered, stem, checkOnly) || newer;
    if (newer && !checkOnly)
      publishProgramFiles();
  } catch (const Exception&) {
    m_staging.reset();
    throw;
  }
  return newer;
}

bool Updates::getUpdateForBinFile(const XMLVersionsAvailable& offered, const String& stem, bool checkOnly) {
  const String localFile = localFileOf(stem);
  const FileVersion localVersion = localVersionOf(localFile);
  for (std::size_t i = 0; i < offered.numSubElements(u"Components"); ++i) {
    const XMLElement& component = offered.subElement(u"Components", i);
    const String& fileName = component.attribute(u"FileName");
    if (!fileName.contains(stem))
      continue;
    if (!isNewer(versionOffered(component), localVersion))
      return false;
    if (!isProgramFileName(fileName.toUTF8(), stem.toUTF8()))
      throw Exception(u"Updates::getUpdateForBinFile - no name of a program file: " + fileName);
    if (!checkOnly)
      downloadProgramFile(fileName, localFile, localVersion);
    return true;
  }
  return false;
}

void Updates::downloadProgramFile(const String& fileName, const String& localFile,
                                  const FileVersion& localVersion) {
  downloadSigned(fileName, HTTPClient::UPDATE_BODY_LIMIT);
  const String staged = staging().file(fileName);
  const FileVersion version = versionOfFile(staged);
  // An old file that was signed in its day is no update.
  if (!isNewer({version[0], version[1], version[2]}, localVersion))
    throw Exception(u"Updates::downloadFile - " + fileName + u" is not newer than the local one");
  keepMode(localFile, staged);
}

/// The set becomes known as a whole by one renaming; should the rest not come to its end, the installer does
/// it.
void Updates::publishProgramFiles() {
  m_staging->publishAs(COMPLETE_UPDATES);
  m_staging.reset();
  moveUpCompleteUpdates();
}

bool Updates::installBinaryUpdates() {
  const std::string installer = UPDATE_INSTALLER_EXE.toUTF8();
  bool any = false;
  try {
    if (!std::filesystem::exists(UPDATE_FOLDER))
      return false;
    for (const auto& entry :
         retryIfInterrupted([] { return std::filesystem::directory_iterator(UPDATE_FOLDER); })) {
      const std::string name = entry.path().filename();
      any = any || !stemOfProgramFile(name).empty();
      if (name == installer)
        retryIfInterrupted([&] { std::filesystem::rename(entry.path(), installer); });
    }
  } catch (const std::filesystem::filesystem_error&) {
    // What can't be moved now stays for the next start.
  }
  return any;
}

// --- What was cut off

void finishInterruptedUpdates() {
  std::error_code ignored;
  bool documentsWait = false;
  for (const std::string& folder : {std::string(UPDATE_FOLDER), usersUpdateFolder()}) {
    if (!mayHoldUpdates(folder))
      continue;
    removeWithContents(folder + STAGING);
    removeWithContents(folder + LOCATORS_TOGETHER);
    documentsWait = documentsWait || std::filesystem::exists(folder + DOCUMENTS, ignored);
  }
  if (mayHoldUpdates(UPDATE_FOLDER)) {
    moveUpCompleteUpdates();
    if (!updatesPending())
      removeWithContents(PREVIOUS_FILES);
  }
  if (!documentsWait)
    return;
  try {
    Updates().installConfigUpdates();
  } catch (const Exception&) {
    // They go on waiting for the next start.
  }
}

// --- Both tracks

// Documents first: when the network is away, that is known after one failure, and it is the same one.
UpdatesFound lookForUpdates(Updates& updates, bool checkOnly) {
  UpdatesFound found;
  try {
    found.any = updates.getConfigUpdates(checkOnly);
  } catch (const DocumentsFixed& exception) {
    found.documentsFixed = exception;
  } catch (const Exception& exception) {
    found.failures.push_back(exception);
  }
  try {
    found.any = updates.getBinaryUpdates(checkOnly) || found.any;
  } catch (const ProgramFilesFixed& exception) {
    found.programFilesFixed = exception;
  } catch (const Exception& exception) {
    found.failures.push_back(exception);
  }
  return found;
}

} // namespace Tallymoor
