#include "foundation/Settings.h"
#include "foundation/Exception.h"
#include "foundation/FileReplacement.h"
#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstring>
#include <ostream>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>
#define FX_NO_GLOBAL_NAMESPACE
#include <fx.h>

namespace Tallymoor {

namespace {

// The toolkit reads lines of about 2,000 bytes, and a byte of a value can take four. A longer value continues
// under its key followed by this mark and a number. No escaped name contains the mark.
constexpr std::size_t LONGEST_PIECE = 400;
constexpr const char* CONTINUATION_MARK = "%+";
/// A longer section or key would leave no room for the value.
constexpr std::size_t LONGEST_NAME = 350;
constexpr const char* SETTINGS_FOLDER =
    "/.foxrc/"; ///< Folder of the toolkit's settings below the user's home.

FX::FXRegistry* attached = nullptr;
std::uint64_t changes = 1;

/// A store in memory, for tests and before the application is attached.
std::unique_ptr<FX::FXRegistry>& memoryStore() {
  static std::unique_ptr<FX::FXRegistry> store = std::make_unique<FX::FXRegistry>();
  return store;
}

bool isHexDigit(char c) {
  return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'F');
}

int hexValue(char c) {
  return c <= '9' ? c - '0' : c - 'A' + 10;
}

/// True for a byte that the toolkit's file can't hold or that would read as one of our escapes.
bool needsEscape(const std::string& name, std::size_t i) {
  const char c = name[i];
  const bool atEdge = i == 0 || i + 1 == name.size();
  if ((c >= 0 && c < 0x20) || c == 0x7F || c == '=' || c == ']')
    return true;
  if (c == '%')
    return (i + 1 < name.size() && name[i + 1] == '+') ||
           (i + 2 < name.size() && isHexDigit(name[i + 1]) && isHexDigit(name[i + 2]));
  if (c == ' ')
    return atEdge;
  return i == 0 && (c == '#' || c == '[' || c == ';');
}

std::string escaped(const String& text) {
  static constexpr const char* HEX = "0123456789ABCDEF";
  if (text.empty())
    throw Exception(u"Settings - empty section or key");
  const std::string name = text.toUTF8();
  std::string result;
  for (std::size_t i = 0; i < name.size(); ++i) {
    const auto byte = static_cast<unsigned char>(name[i]);
    if (needsEscape(name, i))
      result += {'%', HEX[byte >> 4], HEX[byte & 15]};
    else
      result.push_back(name[i]);
  }
  return result;
}

/// Throws Exception if the name is too long or empty.
std::string escapedForWriting(const String& text) {
  std::string name = escaped(text);
  if (name.size() > LONGEST_NAME)
    throw Exception(u"Settings - a name of more than " + String::fromLong(LONGEST_NAME) +
                    u" bytes can't be kept: " + text);
  return name;
}

String unescaped(const std::string& name) {
  std::string result;
  for (std::size_t i = 0; i < name.size(); ++i) {
    if (name[i] == '%' && i + 2 < name.size() && isHexDigit(name[i + 1]) && isHexDigit(name[i + 2])) {
      result.push_back(static_cast<char>(hexValue(name[i + 1]) * 16 + hexValue(name[i + 2])));
      i += 2;
    } else {
      result.push_back(name[i]);
    }
  }
  return String::fromUTF8(result);
}

std::string continuation(const std::string& key, unsigned number) {
  return key + CONTINUATION_MARK + std::to_string(number);
}

/// The stored text of an entry with its continuations. Empty if missing.
std::optional<std::string> readRaw(FX::FXRegistry& registry, const String& section, const String& key) {
  const std::string sectionName = escaped(section);
  const std::string keyName = escaped(key);
  const char* piece = registry.readStringEntry(sectionName.c_str(), keyName.c_str(), nullptr);
  if (!piece)
    return std::nullopt;
  std::string text = piece;
  for (unsigned number = 1;; ++number) {
    piece = registry.readStringEntry(sectionName.c_str(), continuation(keyName, number).c_str(), nullptr);
    if (!piece)
      return text;
    text += piece;
  }
}

void deleteContinuations(FX::FXRegistry& registry, const std::string& section, const std::string& key) {
  for (unsigned number = 1;; ++number) {
    const std::string name = continuation(key, number);
    if (!registry.existingEntry(section.c_str(), name.c_str()))
      return;
    registry.deleteEntry(section.c_str(), name.c_str());
  }
}

/// Writes a text of any length. Drops control bytes that the toolkit's file can't hold.
void writeRaw(FX::FXRegistry& registry, const String& section, const String& key, std::string text) {
  const std::string sectionName = escapedForWriting(section);
  const std::string keyName = escapedForWriting(key);
  ++changes;
  std::erase_if(text, [](char c) { return c == '\0' || c == 0x7F; });
  deleteContinuations(registry, sectionName, keyName);
  registry.writeStringEntry(sectionName.c_str(), keyName.c_str(), text.substr(0, LONGEST_PIECE).c_str());
  unsigned number = 1;
  for (std::size_t begin = LONGEST_PIECE; begin < text.size(); begin += LONGEST_PIECE, ++number)
    registry.writeStringEntry(sectionName.c_str(), continuation(keyName, number).c_str(),
                              text.substr(begin, LONGEST_PIECE).c_str());
}

/// The integer at the start of a text (the file may be edited by hand). Empty if missing or out of range.
template <typename Number>
std::optional<Number> leadingNumber(const std::string& text) {
  const std::size_t begin = text.find_first_not_of(" \t+");
  if (begin == std::string::npos)
    return std::nullopt;
  Number number{};
  const auto result = std::from_chars(text.data() + begin, text.data() + text.size(), number);
  if (result.ec != std::errc())
    return std::nullopt;
  return number;
}

/// The toolkit's file content, produced in memory: FOX ignores a full disk and would replace the file by a
/// truncated one.
std::string fileContent(FX::FXRegistry& registry) {
  const int memory = ::memfd_create("settings", MFD_CLOEXEC);
  if (memory < 0)
    throw Exception(String(u"Settings - ") + std::strerror(errno));
  const bool written = registry.unparseFile(FX::FXString("/proc/self/fd/") + FX::FXStringVal(memory));
  std::string content(static_cast<std::size_t>(::lseek(memory, 0, SEEK_END)), '\0');
  const ssize_t count = ::pread(memory, content.data(), content.size(), 0);
  ::close(memory);
  if (!written || count != static_cast<ssize_t>(content.size()))
    throw Exception(u"Settings - cannot put the settings into words");
  return content;
}

/// Creates the folders above a path with mode 0700. Throws Exception with the folder's name on failure.
void makeFoldersAbove(const std::string& path) {
  for (std::size_t slash = path.find('/', 1); slash != std::string::npos; slash = path.find('/', slash + 1)) {
    const std::string folder = path.substr(0, slash);
    const int reason = ::mkdir(folder.c_str(), 0700) == 0 ? 0 : errno;
    if (reason != 0 && ::access(folder.c_str(), F_OK) != 0)
      throw Exception(u"Settings - cannot make the folder " + String(folder.c_str()) + u": " +
                      String(std::strerror(reason)));
  }
}

std::string shortestText(double value) {
  char buffer[64];
  const auto end = std::to_chars(buffer, buffer + sizeof buffer, std::isfinite(value) ? value : 0.0).ptr;
  return std::string(buffer, end);
}

} // namespace

Settings::Settings() = default;

Settings& Settings::Instance() {
  static Settings settings;
  return settings;
}

void Settings::attach(FX::FXRegistry* registry) {
  attached = registry;
  ++changes;
  if (!registry)
    memoryStore() = std::make_unique<FX::FXRegistry>();
}

FX::FXRegistry& Settings::registry() const {
  return attached ? *attached : *memoryStore();
}

String Settings::readString(const String& section, const String& key, const String& fallback) const {
  const std::optional<std::string> text = readRaw(registry(), section, key);
  return text ? String::fromUTF8(*text) : fallback;
}

std::int32_t Settings::readInt(const String& section, const String& key, std::int32_t fallback) const {
  const std::optional<std::string> text = readRaw(registry(), section, key);
  return text ? leadingNumber<std::int32_t>(*text).value_or(fallback) : fallback;
}

std::uint32_t Settings::readUnsigned(const String& section, const String& key, std::uint32_t fallback) const {
  const std::optional<std::string> text = readRaw(registry(), section, key);
  return text ? leadingNumber<std::uint32_t>(*text).value_or(fallback) : fallback;
}

double Settings::readReal(const String& section, const String& key, double fallback) const {
  const std::optional<std::string> text = readRaw(registry(), section, key);
  const std::optional<double> number = text ? leadingNumber<double>(*text) : std::nullopt;
  return number && std::isfinite(*number) ? *number : fallback;
}

bool Settings::readBool(const String& section, const String& key, bool fallback) const {
  const std::optional<std::string> text = readRaw(registry(), section, key);
  if (!text)
    return fallback;
  const String word = String::fromUTF8(*text).trimmed().toLower();
  if (word == String(u"true") || word == String(u"yes") || word == String(u"on"))
    return true;
  if (word == String(u"false") || word == String(u"no") || word == String(u"off"))
    return false;
  const std::optional<std::int32_t> number = leadingNumber<std::int32_t>(*text);
  return number ? *number != 0 : fallback;
}

bool Settings::hasEntry(const String& section, const String& key) const {
  return readRaw(registry(), section, key).has_value();
}

void Settings::writeString(const String& section, const String& key, const String& value) {
  writeRaw(registry(), section, key, value.toUTF8());
}

void Settings::writeInt(const String& section, const String& key, std::int32_t value) {
  writeRaw(registry(), section, key, std::to_string(value));
}

void Settings::writeUnsigned(const String& section, const String& key, std::uint32_t value) {
  writeRaw(registry(), section, key, std::to_string(value));
}

void Settings::writeReal(const String& section, const String& key, double value) {
  writeRaw(registry(), section, key, shortestText(value));
}

void Settings::writeBool(const String& section, const String& key, bool value) {
  writeRaw(registry(), section, key, value ? "true" : "false");
}

void Settings::deleteEntry(const String& section, const String& key) {
  const std::string sectionName = escaped(section);
  const std::string keyName = escaped(key);
  ++changes;
  deleteContinuations(registry(), sectionName, keyName);
  registry().deleteEntry(sectionName.c_str(), keyName.c_str());
}

void Settings::deleteSection(const String& section) {
  ++changes;
  registry().deleteSection(escaped(section).c_str());
}

std::vector<String> Settings::keys(const String& section) const {
  std::vector<String> result;
  const FX::FXStringDict* entries = registry().find(escaped(section).c_str());
  if (!entries)
    return result;
  for (FX::FXint p = entries->first(); p < entries->size(); p = entries->next(p)) {
    const std::string name = entries->key(static_cast<FX::FXuint>(p));
    if (name.find(CONTINUATION_MARK) == std::string::npos)
      result.push_back(unescaped(name));
  }
  return result;
}

std::vector<String> Settings::sections(const String& prefix) const {
  std::vector<String> result;
  const FX::FXRegistry& store = registry();
  for (FX::FXint p = store.first(); p < store.size(); p = store.next(p)) {
    const String name = unescaped(store.key(static_cast<FX::FXuint>(p)));
    if (name.startsWith(prefix))
      result.push_back(name);
  }
  return result;
}

std::uint64_t Settings::changeStamp() const {
  return changes;
}

String Settings::filePath() const {
  if (!attached)
    return String();
  const FX::FXString path = FX::FXSystem::getHomeDirectory() + SETTINGS_FOLDER + attached->getVendorKey() +
                            "/" + attached->getAppKey();
  return String::fromUTF8(path.text());
}

void Settings::commit() {
  if (!attached || !attached->isModified())
    return;
  const std::string content = fileContent(*attached);
  const String path = filePath();
  makeFoldersAbove(path.toUTF8());
  replaceFile(path, [&content](std::ostream& out) { out << content; });
  attached->setModified(false);
}

void Settings::commitIfPossible() {
  try {
    commit();
  } catch (const Exception&) {
    // The values are still in memory and stay marked as changed.
  }
}

} // namespace Tallymoor
