#pragma once
#include "updates/StagingFolder.h"
#include "updates/UpdateService.h"
#include "updates/UpdateSettings.h"
#include "updates/UpdatesFixed.h"
#include "xml/SmallDocuments.h"
#include <array>
#include <cstdint>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

namespace Tallymoor {

struct LocalProgramFile;

/// One look at the update service. It keeps two tracks apart: the five documents that the program reads, and
/// the program's own files. Made for one pass and used by one thread.
///
/// Nothing that the service says is trusted. A reply is bounded in size. A file is asked for only by a name
/// that the program knows. Documents and program files must be signed; a document must decode as what it
/// claims to be, and all must bear a version above that of what they replace. Only a build without a key
/// takes documents that are not signed, and those from this machine alone. The service is asked over https,
/// or on this machine. Downloads are put together in a folder of their own, and one that fails takes the rest
/// of its track with it, so that what is published is a whole set.
///
/// Program files are published in "./updates/", where the next start finds them; documents in a folder below
/// it or, where that folder is not ours to write or belongs to a package, in one of the user's.
class Updates {
public:
  static constexpr std::size_t DOCUMENT_LIMIT = 10 * 1024 * 1024; ///< of one that is taken, in bytes

  /// Makes the folder "./updates" where there is none and it may be made, and reads the versions of the local
  /// documents. One that is missing or can't be read has version 0, so that any update mends it.
  /// Every fetch ends with a failure when the token's stop is requested.
  explicit Updates(const UpdateSettings& settings = UpdateSettings::current(), std::stop_token stop = {});
  Updates(const Updates&) = delete;
  Updates& operator=(const Updates&) = delete;

  std::int32_t currentPricesVersion() const { return m_documents[0].version; }
  std::int32_t codeSearchVersion() const { return m_documents[1].version; }
  std::int32_t historicalPricesVersion() const { return m_documents[2].version; }
  std::int32_t countryConfigVersion() const { return m_documents[3].version; }
  std::int32_t stylesheetVersion() const { return m_documents[4].version; }

  /// True when the service has a newer version of any document; unless it is only to check, all newer ones
  /// are then downloaded. Throws Exception "Updates::getBinaryUpdates - Problem getting updates: ..." or
  /// "Updates::getBinaryUpdates failed: ...", with the same words for both tracks, and for a download that
  /// failed or is not what it should be. Throws DocumentsFixed where there is no key to know them by.
  bool getConfigUpdates(bool checkOnly);
  /// The same for the program's files. Throws ProgramFilesFixed where they can't be replaced.
  bool getBinaryUpdates(bool checkOnly);
  /// True when the service has a newer version of the file with this stem. Unless it is only to check, it is
  /// then downloaded into the set that getBinaryUpdates publishes. Throws ProgramFilesFixed "... - failed to
  /// find local file for update: ..." and "... - multiple matches for ...".
  bool getUpdateForBinFile(const XMLVersionsAvailable& offered, const String& stem, bool checkOnly);
  /// Puts the service's copy of a file, whose name is known to be good, among what is being downloaded, and
  /// returns its bytes.
  std::vector<std::uint8_t> downloadFile(const String& fileName, std::size_t limit);
  /// Puts the downloaded documents in the places of the local ones, of which each stays as ".bak". True when
  /// there was any.
  bool installConfigUpdates();
  /// Replaces what may be replaced while the program runs: the installer. The program and its libraries wait
  /// for the installer, which replaces them together. True when program files were downloaded.
  bool installBinaryUpdates();

private:
  struct LocalDocument {
    String fileName;
    String path;
    XMLElement::Factory newRoot;
    std::int32_t version;
  };

  static LocalDocument localDocument(const String& folder, const String& fileName,
                                     XMLElement::Factory newRoot);
  const StagingFolder& staging();
  void downloadSigned(const String& fileName, std::size_t limit);
  void requireKnownDocuments() const;
  void downloadDocument(const LocalDocument& document);
  void checkLocators();
  void requireReplaceableProgramFiles() const;
  void downloadProgramFile(const String& fileName, const LocalProgramFile& local);
  void publishProgramFiles();

  const UpdateSettings m_settings;
  UpdateService m_service;
  const std::string m_folder; ///< of the downloads, with a trailing separator
  std::array<LocalDocument, 5> m_documents;
  std::optional<StagingFolder> m_staging; ///< while a track downloads
};

} // namespace Tallymoor
