#include "market/SourceList.h"
#include "foundation/Exception.h"
#include "foundation/FileReplacement.h"
#include "market/CommandPrices.h"
#include "market/HttpPrices.h"
#include "market/LocatorPrices.h"
#include "market/LocatorSet.h"
#include "market/SourceListDocument.h"
#include <algorithm>
#include <filesystem>
#include <utility>

namespace Tallymoor {

namespace {

const String CHOICE_FILE = u"PriceSources.xml";
const String KEYS_FILE = u"PriceSourceKeys.xml";
const String REQUESTS_FILE = u"PriceRequests.xml";
const String DOCUMENTS_FOLDER = u"Sources/";

/// Full paths of the documents, sorted.
std::vector<String> documentsIn(const String& folder) {
  std::vector<String> paths;
  std::error_code none;
  for (const auto& entry : std::filesystem::directory_iterator(folder.toUTF8(), none))
    if (entry.path().extension() == ".xml")
      paths.emplace_back(entry.path().c_str());
  std::sort(paths.begin(), paths.end());
  return paths;
}

template <class Sources>
auto find(Sources& sources, const String& name) {
  return std::find_if(sources.begin(), sources.end(),
                      [&name](const ListedSource& source) { return source.name == name; });
}

template <class Sources>
auto& require(Sources& sources, const String& name) {
  const auto found = find(sources, name);
  if (found == sources.end())
    throw Exception(u"There is no source of prices named " + name);
  return *found;
}

bool isUntried(const ListedSource& source) {
  return source.kind == SourceKind::Document &&
         (!source.document || (!source.document->notTried().empty() && !source.isTried));
}

} // namespace

SourceList::SourceList(const String& configDirectory)
    : m_directory(configDirectory), m_keys(configDirectory + KEYS_FILE),
      m_log(std::make_shared<SourceLog>(configDirectory + REQUESTS_FILE)) {
  if (!m_keys.failure().empty())
    m_complaints.push_back({configDirectory + KEYS_FILE, m_keys.failure()});
  readChosen();
  auto& sources = m_chosen.sources;
  if (find(sources, LocatorPrices::NAME) == sources.end())
    sources.insert(sources.begin(),
                   {.kind = SourceKind::Locators, .name = LocatorPrices::NAME, .isOn = sources.empty()});
}

void SourceList::readAgain() {
  SourceList fresh(m_directory);
  fresh.m_log = m_log;
  fresh.m_files = m_files;
  *this = std::move(fresh);
  m_log->forgetFailures();
}

void SourceList::complain(const String& file, const Exception& failure) const {
  m_complaints.push_back({file, failure.message()});
}

void SourceList::readChosen() {
  const String path = m_directory + CHOICE_FILE;
  try {
    if (filePresence(path) == FilePresence::Missing)
      return;
    readSourceList(path, m_chosen.sources, m_chosen.pins);
  } catch (const Exception& failure) {
    m_chosen = {};
    m_isUnreadable = true;
    complain(path, failure);
  }
}

void SourceList::readDocuments() const {
  if (std::exchange(m_areDocumentsRead, true))
    return;
  for (const String& path : documentsIn(m_directory + DOCUMENTS_FOLDER))
    try {
      addDocument(path);
    } catch (const Exception& failure) {
      complain(path, failure);
    }
}

void SourceList::addDocument(const String& path) const {
  auto document = std::make_shared<const PriceSource>(PriceSource::fromFile(path));
  const auto known = find(m_chosen.sources, document->name());
  if (known == m_chosen.sources.end())
    m_chosen.sources.push_back(
        {.kind = SourceKind::Document, .name = document->name(), .document = document});
  else if (known->kind == SourceKind::Document && !known->document)
    known->document = std::move(document);
  else
    throw Exception(u"another source has the name " + document->name());
}

const std::vector<ListedSource>& SourceList::sources() const {
  readDocuments();
  return m_chosen.sources;
}

const std::vector<SourceComplaint>& SourceList::complaints() const {
  readDocuments();
  return m_complaints;
}

const ListedSource& SourceList::source(const String& name) const {
  return require(sources(), name);
}

bool SourceList::isLocatorsAlone() const {
  return m_chosen.pins.empty() &&
         std::all_of(m_chosen.sources.begin(), m_chosen.sources.end(), [](const ListedSource& source) {
           return source.isOn == (source.kind == SourceKind::Locators);
         });
}

bool SourceList::isOn(const String& name) const {
  const auto found = find(m_chosen.sources, name);
  return found != m_chosen.sources.end() && found->isOn;
}

bool SourceList::hasSourceOn() const {
  return std::any_of(m_chosen.sources.begin(), m_chosen.sources.end(),
                     [](const ListedSource& source) { return source.isOn; });
}

/// Failures of before say nothing about the sources as they are now.
template <class Change>
void SourceList::change(Change change) {
  if (m_isUnreadable)
    throw Exception(u"The sources of prices can't be changed, since " + m_directory + CHOICE_FILE +
                    u" can't be read. Mend or remove it first.");
  readDocuments();
  Chosen changed = m_chosen;
  change(changed);
  writeSourceList(m_directory + CHOICE_FILE, changed.sources, changed.pins);
  m_chosen = std::move(changed);
  m_log->forgetFailures();
}

void SourceList::setOn(const String& name, bool isOn, const String& inPlaceOf) {
  change([&](Chosen& chosen) {
    ListedSource& source = require(chosen.sources, name);
    if (isOn && isUntried(source))
      throw Exception(u"The source " + name + u" has not been tried. Try it first.");
    source.isOn = isOn;
    if (!inPlaceOf.empty())
      require(chosen.sources, inPlaceOf).isOn = false;
  });
}

void SourceList::noteTried(const String& name) {
  change([&](Chosen& chosen) { require(chosen.sources, name).isTried = true; });
}

void SourceList::move(const String& name, std::size_t place) {
  change([&](Chosen& chosen) {
    ListedSource source = require(chosen.sources, name);
    chosen.sources.erase(find(chosen.sources, name));
    place = std::min(place, chosen.sources.size());
    chosen.sources.insert(chosen.sources.begin() + static_cast<std::ptrdiff_t>(place), std::move(source));
  });
}

void SourceList::add(ListedSource source) {
  change([&](Chosen& chosen) {
    if (source.name.trimmed().empty())
      throw Exception(u"A source of prices needs a name");
    if (find(chosen.sources, source.name) != chosen.sources.end())
      throw Exception(u"There is a source of prices named " + source.name + u" already");
    chosen.sources.push_back(std::move(source));
  });
}

void SourceList::addFolder(const String& name, const String& folder) {
  std::error_code failure; // as of a path that is too long
  if (!std::filesystem::is_directory(folder.toUTF8(), failure))
    throw Exception(folder + u" is no folder");
  add({.kind = SourceKind::Folder, .name = name, .folder = folder});
}

void SourceList::addCommand(const String& name, const std::vector<String>& words) {
  const CommandPrices checked(name, words, {});
  add({.kind = SourceKind::Command, .name = name, .command = words});
}

void SourceList::remove(const String& name) {
  change([&](Chosen& chosen) {
    const SourceKind kind = require(chosen.sources, name).kind;
    if (kind != SourceKind::Folder && kind != SourceKind::Command)
      throw Exception(u"The source " + name + u" can only be switched off");
    chosen.sources.erase(find(chosen.sources, name));
    std::erase_if(chosen.pins, [&name](const auto& pinned) { return pinned.second.source == name; });
  });
}

void SourceList::setAnswers(const String& name, const String& file, const CsvAnswers& answers) {
  change([&](Chosen& chosen) { require(chosen.sources, name).answers[file] = answers; });
}

void SourceList::pin(const String& code, const SourcePin& pin) {
  change([&](Chosen& chosen) {
    require(chosen.sources, pin.source);
    chosen.pins[code] = pin;
  });
}

void SourceList::unpin(const String& code) {
  change([&](Chosen& chosen) { chosen.pins.erase(code); });
}

bool SourceList::hasKey(const String& name) const {
  const ListedSource& known = source(name);
  return known.document && !m_keys.keyFor(name, known.document->keyServers()).empty();
}

void SourceList::setKey(const String& name, const String& key) {
  const ListedSource& known = source(name);
  if (!known.document)
    throw Exception(u"The source " + name + u" takes no key");
  m_keys.set(name, known.document->keyServers(), key.trimmed());
  m_log->forgetFailures();
}

std::shared_ptr<const PriceProvider> SourceList::providerOf(const ListedSource& source,
                                                            const std::shared_ptr<HTTPClient>& client,
                                                            const LocatorSet& locators) const {
  switch (source.kind) {
  case SourceKind::Locators:
    return std::make_shared<const LocatorPrices>(client, locators);
  case SourceKind::Folder:
    return std::make_shared<const CsvFolder>(source.name, source.folder, source.answers, m_files);
  case SourceKind::Command: {
    const auto answers = source.answers.find(String());
    return std::make_shared<const CommandPrices>(
        source.name, source.command, answers == source.answers.end() ? CsvAnswers() : answers->second);
  }
  default:
    if (!source.document)
      return nullptr;
    return std::make_shared<const HttpPrices>(client, source.document,
                                              m_keys.keyFor(source.name, source.document->keyServers()));
  }
}

std::shared_ptr<const PriceProvider> SourceList::provider(const String& name,
                                                          const std::shared_ptr<HTTPClient>& client,
                                                          const LocatorSet& locators) const {
  return providerOf(source(name), client, locators);
}

SourceChoice SourceList::choice(const std::shared_ptr<HTTPClient>& client, const LocatorSet& locators) const {
  if (!isLocatorsAlone())
    readDocuments();
  SourceChoice choice{{}, m_chosen.pins, m_log};
  for (const ListedSource& source : m_chosen.sources)
    if (source.isOn && !isUntried(source))
      if (auto provider = providerOf(source, client, locators))
        choice.sources.push_back(std::move(provider));
  return choice;
}

} // namespace Tallymoor
