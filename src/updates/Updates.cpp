#include "updates/Updates.h"
#include "foundation/Constants.h"
#include "foundation/FileReplacement.h"
#include "foundation/Platform.h"
#include "foundation/ProgramFiles.h"
#include "foundation/Uninterrupted.h"
#include "market/HTTPClient.h"
#include "market/LocatorSet.h"
#include "updates/LocalProgramFile.h"
#include "updates/UpdateFolders.h"
#include "updates/UpdateHandover.h"
#include "updates/UpdateSignature.h"
#include "xml/LocatorDocuments.h"
#include <algorithm>
#include <filesystem>
#include <set>

namespace Tallymoor {

namespace {

constexpr std::size_t LOCATOR_DOCUMENTS = 3; ///< they come first among the documents

/// Throws XMLException where the document can't be read or has no version.
std::int32_t versionOf(const String& path, XMLElement::Factory newRoot) {
  const std::unique_ptr<XMLElement> root(newRoot());
  root->decode(path);
  return root->attribute(u"version").toLong();
}

/// Major, minor and patch of a component.
std::array<std::int64_t, 3> versionOffered(const XMLElement& component) {
  return {component.attribute(u"Major").toLong64(), component.attribute(u"Minor").toLong64(),
          component.attribute(u"Patch").toLong64()};
}

/// Why nothing can be known by the key to be genuine; empty where it can.
String keyFault(const std::string& publicKey) {
  if (publicKey.empty())
    return u"This copy was built without the key by which updates are recognised as genuine.";
  if (!UpdateSignature::isPublicKey(publicKey))
    return u"The key by which updates are recognised as genuine can't be read.";
  return String();
}

} // namespace

Updates::Updates(const UpdateSettings& settings, std::stop_token stop)
    : m_settings(settings), m_service(m_settings, std::move(stop)), m_folder(updateFolder()) {
  Platform& platform = Platform::Instance();
  const String config = configDirectory(platform, APP_NAME);
  m_documents = {
      localDocument(config, CURRENT_PRICE_LOCATORS_FILE, newElement<XMLCurrentPriceLocators>),
      localDocument(config, CODE_SEARCH_LOCATORS_FILE, newElement<XMLCodeSearchLocators>),
      localDocument(config, HISTORICAL_PRICE_LOCATORS_FILE, newElement<XMLHistoricalPricesLocators>),
      localDocument(config, COUNTRY_CONFIG_FILE, newElement<XMLCountryOptions>),
      localDocument(reportDirectory(platform, APP_NAME), REPORT_XSL, newElement<XMLXslStylesheet>)};
}

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

const StagingFolder& Updates::staging() {
  if (!m_staging)
    m_staging.emplace(m_folder + STAGED_UPDATES);
  return *m_staging;
}

std::vector<std::uint8_t> Updates::downloadFile(const String& fileName, std::size_t limit) {
  try {
    std::vector<std::uint8_t> content = m_service.fetch(fileName, limit);
    staging().write(fileName, content);
    return content;
  } catch (const HTTPException& exception) {
    throw Exception(u"Updates::downloadFile - problem getting " + fileName + u": " + exception.description());
  }
}

/// The signature first: without one there is no reason to fetch the file.
void Updates::downloadSigned(const String& fileName, std::size_t limit) {
  const std::vector<std::uint8_t> signature = m_service.fetchSignature(fileName);
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
  const std::unique_ptr<XMLVersionsAvailable> offered = m_service.fetchOffered(CONFIG_UPDATES_FILE);
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
    m_staging->publishAs(m_folder + DOWNLOADED_DOCUMENTS);
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
    const String downloaded = String((m_folder + DOWNLOADED_DOCUMENTS).c_str()) + u"/" + document.fileName;
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
  std::filesystem::remove(m_folder + DOWNLOADED_DOCUMENTS, ignored);
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
  const std::unique_ptr<XMLVersionsAvailable> offered = m_service.fetchOffered(BINARY_UPDATES_FILE);
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
  const LocalProgramFile local = LocalProgramFile::withStem(stem);
  for (std::size_t i = 0; i < offered.numSubElements(u"Components"); ++i) {
    const XMLElement& component = offered.subElement(u"Components", i);
    const String& fileName = component.attribute(u"FileName");
    if (!fileName.contains(stem))
      continue;
    if (!local.isOlderThan(versionOffered(component)))
      return false;
    if (!isProgramFileName(fileName.toUTF8(), stem.toUTF8()))
      throw Exception(u"Updates::getUpdateForBinFile - no name of a program file: " + fileName);
    if (!checkOnly)
      downloadProgramFile(fileName, local);
    return true;
  }
  return false;
}

void Updates::downloadProgramFile(const String& fileName, const LocalProgramFile& local) {
  downloadSigned(fileName, HTTPClient::UPDATE_BODY_LIMIT);
  const String staged = staging().file(fileName);
  // An old file that was signed in its day is no update.
  if (!local.isOlderThanFile(staged))
    throw Exception(u"Updates::downloadFile - " + fileName + u" is not newer than the local one");
  local.passModeTo(staged);
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

} // namespace Tallymoor
