#include "market/SourceKeys.h"
#include "foundation/Exception.h"
#include "foundation/FileReplacement.h"
#include "xml/DocumentFile.h"
#include "xml/PriceSourceSettings.h"
#include <algorithm>
#include <filesystem>

namespace Tallymoor {

namespace {

const String DTD = u"Tallymoor Price Sources.dtd";

String joined(const std::set<String>& hosts) {
  String text;
  for (const String& host : hosts)
    text += (text.empty() ? String() : String(u" ")) + host;
  return text;
}

std::set<String> parts(const String& text) {
  std::set<String> hosts;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = std::min(text.find(u' ', at), text.size());
    if (end > at)
      hosts.insert(text.substr(at, end - at));
    at = end + 1;
  }
  return hosts;
}

/// Also for a file that the user has copied from elsewhere.
void keepFromOthers(const String& path) {
  using std::filesystem::perms;
  std::error_code ignored; // of another file system; the file itself is fine
  std::filesystem::permissions(path.toUTF8(), perms::owner_read | perms::owner_write, ignored);
}

} // namespace

SourceKeys::SourceKeys(const String& path) : m_path(path) {
  try {
    read();
  } catch (const Exception& failure) {
    m_failure = path + u": " + failure.message();
  }
}

void SourceKeys::read() {
  if (filePresence(m_path) == FilePresence::Missing)
    return;
  if (filePresence(m_path) == FilePresence::Unusable)
    throw Exception(u"it is no file that can be read");
  keepFromOthers(m_path);
  XMLSourceKeys document;
  document.decode(m_path);
  for (std::size_t i = 0; i < document.numSubElements(u"Keys"); ++i) {
    const XMLElement& key = document.subElement(u"Keys", i);
    m_keys[key.attribute(u"source")] = {parts(key.attribute(u"hosts")), key.value()};
  }
}

String SourceKeys::keyFor(const String& source, const std::set<String>& hosts) const {
  const auto kept = m_keys.find(source);
  const bool isForThem =
      kept != m_keys.end() &&
      std::includes(kept->second.hosts.begin(), kept->second.hosts.end(), hosts.begin(), hosts.end());
  return isForThem ? kept->second.key : String();
}

void SourceKeys::set(const String& source, const std::set<String>& hosts, const String& key) {
  if (!m_failure.empty())
    throw Exception(u"The keys can't be stored, since their file can't be read: " + m_failure);
  std::map<String, Kept> changed = m_keys;
  changed.erase(source);
  if (!key.empty())
    changed[source] = {hosts, key};
  write(changed);
  m_keys = std::move(changed);
}

void SourceKeys::write(const std::map<String, Kept>& keys) const {
  XMLSourceKeys document;
  for (const auto& [source, kept] : keys) {
    XMLElement& key = document.addSubElement(newElement<XMLKeptKey>(), u"Keys");
    key.setAttribute(u"source", source);
    key.setAttribute(u"hosts", joined(kept.hosts));
    key.setValue(kept.key);
  }
  saveDocument(m_path, document, DTD, newElement<XMLSourceKeys>);
}

} // namespace Tallymoor
