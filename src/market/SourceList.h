#pragma once
#include "market/CsvFolder.h"
#include "market/PriceSource.h"
#include "market/SourceChoice.h"
#include "market/SourceKeys.h"
#include <cstdint>
#include <memory>
#include <vector>

namespace Tallymoor {

class Exception;
class HTTPClient;
class LocatorSet;

enum class SourceKind : std::uint8_t { Locators, Document, Folder, Command };

/// A source as the user has chosen it.
struct ListedSource {
  SourceKind kind;
  String name;
  bool isOn = false;
  bool isTried = false;             ///< the user has tried a document that was written without being tried
  String folder = {};               ///< of a Folder
  std::vector<String> command = {}; ///< words of a Command
  /// Of a Folder by the name of a file, empty for all others; of a Command by an empty name.
  std::map<String, CsvAnswers> answers = {};
  std::shared_ptr<const PriceSource> document = {}; ///< of a Document; null while it can't be read
};

/// A document that can't be used.
struct SourceComplaint {
  String file;
  String cause;
};

/// Which sources of prices there are, in their order, which are on, which codes are pinned to one, and the
/// user's keys: the documents of the folder Config/Sources, and what the user has chosen about them in
/// Config/PriceSources.xml. Without that file the locators alone are on.
///
/// Each change is written at once, and made only if it could be written; otherwise it throws Exception. A
/// file that can't be read is told by complaints and never written over. Callers hold the big mutex.
class SourceList {
public:
  /// The folder with a trailing separator. Reads what is there, the documents when they are first needed;
  /// throws nothing that is an Exception.
  explicit SourceList(const String& configDirectory);

  /// Reads all files again, which the user may have mended. What this run knows of the sources stays, but for
  /// their failures.
  void readAgain();

  const std::vector<ListedSource>& sources() const;
  const std::map<String, SourcePin>& pins() const { return m_chosen.pins; }
  const std::vector<SourceComplaint>& complaints() const;
  /// Throws Exception for a name that no source has.
  const ListedSource& source(const String& name) const;
  /// True if the locators are the only source that is on, and no code is pinned.
  bool isLocatorsAlone() const;
  /// True if a source of this name is known without its document, and is on.
  bool isOn(const String& name) const;
  /// True if any source is on.
  bool hasSourceOn() const;

  /// Throws also for a document that was written without being tried, until the user has tried it. Another
  /// source may be switched off in its place.
  void setOn(const String& name, bool isOn, const String& inPlaceOf = String());
  void noteTried(const String& name);
  /// Moves a source to a place in the order, from 0.
  void move(const String& name, std::size_t place);
  /// A new one is the last, and off. Throws also if the name is taken.
  void addFolder(const String& name, const String& folder);
  /// For the options alone: no document adds a command.
  void addCommand(const String& name, const std::vector<String>& words);
  /// Of a folder or command. Codes pinned to it are asked for in the order again.
  void remove(const String& name);
  void setAnswers(const String& name, const String& file, const CsvAnswers& answers);
  void pin(const String& code, const SourcePin& pin);
  void unpin(const String& code);
  bool hasKey(const String& name) const;
  /// An empty key is removed.
  void setKey(const String& name, const String& key);

  /// The sources that are on. Without a client, for asking none over HTTP.
  SourceChoice choice(const std::shared_ptr<HTTPClient>& client, const LocatorSet& locators) const;
  /// A source, whether it is on or not. Null for a document that can't be read.
  std::shared_ptr<const PriceProvider> provider(const String& name, const std::shared_ptr<HTTPClient>& client,
                                                const LocatorSet& locators) const;
  SourceLog& log() const { return *m_log; }

private:
  struct Chosen {
    std::vector<ListedSource> sources;
    std::map<String, SourcePin> pins;
  };

  void readChosen();
  void readDocuments() const;
  void addDocument(const String& path) const;
  void complain(const String& file, const Exception& failure) const;
  template <class Change>
  void change(Change change);
  std::shared_ptr<const PriceProvider> providerOf(const ListedSource& source,
                                                  const std::shared_ptr<HTTPClient>& client,
                                                  const LocatorSet& locators) const;
  void add(ListedSource source);

  String m_directory;
  bool m_isUnreadable = false; ///< the file of the choice
  // What the documents add comes when it is needed: without a choice the start of the program needs none.
  mutable bool m_areDocumentsRead = false;
  mutable Chosen m_chosen;
  mutable std::vector<SourceComplaint> m_complaints;
  SourceKeys m_keys;
  std::shared_ptr<SourceLog> m_log;
  std::shared_ptr<CsvFolderFiles> m_files = std::make_shared<CsvFolderFiles>();
};

} // namespace Tallymoor
