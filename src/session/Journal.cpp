#include "session/Journal.h"
#include "foundation/Exception.h"
#include "foundation/FileOperations.h"
#include "foundation/FileReplacement.h"
#include "foundation/FileSteps.h"
#include <algorithm>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <ostream>
#include <set>
#include <sys/stat.h>
#include <zlib.h>

namespace Tallymoor {

namespace {

constexpr std::string_view FIRST_LINE = "Tallymoor journal 1\n";
constexpr std::string_view MARK = "\x89TJ\n";
constexpr std::size_t LENGTH_AT = 4;
constexpr std::size_t NUMBER_AT = 8;
constexpr std::size_t CHECKSUM_AT = 16;
constexpr std::size_t HEAD = 20;
/// Far more than a journal that is thinned comes to.
constexpr std::uint64_t LARGEST_FILE = std::uint64_t{1024} * 1024 * 1024;
constexpr mode_t FILE_MODE = 0600;
constexpr mode_t FOLDER_MODE = 0700;

[[noreturn]] void fail(const char* what, const String& path, int reason) {
  throw Exception(String(u"Journal - ") + String(what) + u" " + path + u": " + String(std::strerror(reason)));
}

void putNumber(std::string& bytes, std::size_t place, std::uint64_t value, std::size_t size) {
  for (std::size_t i = 0; i < size; ++i)
    bytes[place + i] = static_cast<char>(value >> (8 * i));
}

std::uint64_t numberAt(std::string_view bytes, std::size_t place, std::size_t size) {
  std::uint64_t value = 0;
  for (std::size_t i = size; i > 0; --i)
    value = value << 8 | static_cast<unsigned char>(bytes[place + i - 1]);
  return value;
}

std::uint32_t checksumOf(std::string_view entry) {
  const auto* const bytes = reinterpret_cast<const Bytef*>(entry.data());
  const uLong ofHead = crc32_z(0, bytes + LENGTH_AT, CHECKSUM_AT - LENGTH_AT);
  return static_cast<std::uint32_t>(crc32_z(ofHead, bytes + HEAD, entry.size() - HEAD));
}

std::string entryOf(const Change& change) {
  std::string bytes(HEAD, '\0');
  bytes.replace(0, MARK.size(), MARK);
  bytes += packed(change);
  putNumber(bytes, LENGTH_AT, bytes.size() - HEAD, 4);
  putNumber(bytes, NUMBER_AT, change.number, 8);
  putNumber(bytes, CHECKSUM_AT, checksumOf(bytes), 4);
  return bytes;
}

/// The whole entry that the bytes begin with; empty if there is none.
std::string_view entryAtStart(std::string_view bytes) {
  if (!bytes.starts_with(MARK) || bytes.size() < HEAD)
    return {};
  const std::uint64_t length = numberAt(bytes, LENGTH_AT, 4);
  if (length > bytes.size() - HEAD)
    return {};
  const std::string_view entry = bytes.substr(0, HEAD + length);
  return checksumOf(entry) == numberAt(entry, CHECKSUM_AT, 4) ? entry : std::string_view();
}

std::optional<Change> changeIn(std::string_view entry) {
  std::optional<Change> change = unpacked(entry.substr(HEAD));
  if (change)
    change->number = numberAt(entry, NUMBER_AT, 8);
  return change;
}

/// What the end of a file looks like when the last write to it was not finished.
bool isTorn(std::string_view rest) {
  if (rest.find_first_not_of('\0') == std::string_view::npos)
    return true; // the length was written, the content not
  if (rest.size() < HEAD)
    return MARK.starts_with(rest.substr(0, MARK.size()));
  return rest.starts_with(MARK) && numberAt(rest, LENGTH_AT, 4) > rest.size() - HEAD;
}

std::size_t nextEntry(std::string_view content, std::size_t from) {
  for (std::size_t place = content.find(MARK, from); place != std::string_view::npos;
       place = content.find(MARK, place + 1))
    if (!entryAtStart(content.substr(place)).empty())
      return place;
  return std::string_view::npos;
}

void makeFolderOf(const String& path) {
  const std::filesystem::path folder = folderOf(path.toUTF8());
  std::error_code failed; // which mkdir tells
  std::filesystem::create_directories(folder.parent_path(), failed);
  if (::mkdir(folder.c_str(), FOLDER_MODE) != 0 && errno != EEXIST)
    fail("cannot make the folder of", path, errno);
}

} // namespace

Journal::Journal(const String& path) : m_path(path) {
  makeFolderOf(path);
  open();
}

void Journal::open() {
  const std::string name = m_path.toUTF8();
  m_file.emplace(uninterrupted(
      [&name] { return ::open(name.c_str(), O_RDWR | O_APPEND | O_CREAT | O_CLOEXEC, FILE_MODE); }));
  if (m_file->get() < 0)
    fail("cannot open", m_path, errno);
  readAll();
}

void Journal::readAll() {
  struct stat info {};
  if (::fstat(m_file->get(), &info) != 0)
    fail("cannot read", m_path, errno);
  if (!S_ISREG(info.st_mode) || static_cast<std::uint64_t>(info.st_size) > LARGEST_FILE)
    throw Exception(u"Journal - " + m_path + u" is no journal of this program.");
  m_entries.clear();
  m_damagedPlaces = 0;
  const std::string content = bytesAt(0, static_cast<std::size_t>(info.st_size));
  if (!FIRST_LINE.starts_with(content)) {
    readEntries(content);
    return;
  }
  if (content != FIRST_LINE) {
    cutTo(0);
    if (const int error = writeWhole(m_file->get(), FIRST_LINE.data(), FIRST_LINE.size()))
      fail("cannot write", m_path, error);
  }
  m_size = FIRST_LINE.size();
  flushFolderOf(m_path.toUTF8());
}

void Journal::readEntries(std::string_view content) {
  std::size_t place = content.starts_with(FIRST_LINE) ? FIRST_LINE.size() : 0;
  while (place < content.size()) {
    const std::string_view entry = entryAtStart(content.substr(place));
    if (!entry.empty()) {
      if (std::optional<Change> change = changeIn(entry))
        take(*change, place, entry.size());
      else
        noteDamage(place);
      place += entry.size();
      continue;
    }
    const std::size_t next = nextEntry(content, place + 1);
    if (next == std::string_view::npos)
      break;
    noteDamage(place);
    place = next;
  }
  if (m_entries.empty() && !content.starts_with(FIRST_LINE))
    throw Exception(u"Journal - " + m_path + u" is no journal of this program.");
  m_size = content.size();
  if (place == content.size())
    return;
  m_lostTornEntry = isTorn(content.substr(place));
  if (m_lostTornEntry)
    cutTo(place);
  else
    noteDamage(place);
}

void Journal::noteDamage(std::uint64_t place) {
  ++m_damagedPlaces;
  m_lastDamage = place;
}

bool Journal::isDamagedSinceSave() const {
  const auto lastSave = std::find_if(m_entries.rbegin(), m_entries.rend(),
                                     [](const Entry& entry) { return entry.kind == Change::Kind::Saved; });
  return m_damagedPlaces > 0 && (lastSave == m_entries.rend() || m_lastDamage > lastSave->place);
}

void Journal::take(const Change& change, std::uint64_t place, std::size_t length) {
  Entry entry{change.kind, change.number, change.other, change.moment, change.sentence,
              {},          false,         place,        length};
  for (const ChangedPortfolio& portfolio : change.portfolios) {
    for (const String& name : {portfolio.nameBefore, portfolio.nameAfter})
      if (!name.empty() &&
          std::find(entry.portfolios.begin(), entry.portfolios.end(), name) == entry.portfolios.end())
        entry.portfolios.push_back(name);
    entry.isOfWholePortfolios |= portfolio.isWhole();
  }
  m_entries.push_back(std::move(entry));
}

std::vector<Journal::Entry> Journal::changes() const {
  std::set<std::uint64_t> dropped;
  for (const Entry& entry : m_entries)
    if (entry.kind == Change::Kind::Dropped)
      dropped.insert(entry.other);
  std::vector<Entry> changes;
  for (const Entry& entry : m_entries)
    if (entry.kind != Change::Kind::Saved && entry.kind != Change::Kind::Dropped &&
        !dropped.contains(entry.number))
      changes.push_back(entry);
  return changes;
}

void Journal::cutTo(std::uint64_t size) {
  if (uninterrupted([&] { return ::ftruncate(m_file->get(), static_cast<off_t>(size)); }) != 0)
    fail("cannot cut", m_path, errno);
  m_size = size;
  m_hasRest = false;
}

std::string Journal::bytesAt(std::uint64_t place, std::size_t length) const {
  std::string bytes(length, '\0');
  std::size_t done = 0;
  while (done < length) {
    const ssize_t count = uninterrupted([&] {
      return ::pread(m_file->get(), bytes.data() + done, length - done, static_cast<off_t>(place + done));
    });
    if (count < 0)
      fail("cannot read", m_path, errno);
    if (count == 0)
      break;
    done += static_cast<std::size_t>(count);
  }
  bytes.resize(done);
  return bytes;
}

Change Journal::read(const Entry& entry) {
  const std::string bytes = bytesAt(entry.place, entry.length);
  const std::string_view found = entryAtStart(bytes);
  std::optional<Change> change;
  if (found.size() == entry.length)
    change = changeIn(found);
  if (!change || change->number != entry.number)
    throw Exception(u"Journal - the change \"" + entry.sentence + u"\" can't be read any more in " + m_path +
                    u".");
  return std::move(*change);
}

// What a write has left behind that failed before is cut off first, so the end of the file is always that of
// an entry.
void Journal::append(Change& change) {
  change.number = m_entries.empty() ? 1 : m_entries.back().number + 1;
  const std::string bytes = entryOf(change);
  const std::uint64_t place = m_size;
  if (m_hasRest)
    cutTo(place);
  m_hasRest = true;
  int error = writeWhole(m_file->get(), bytes.data(), bytes.size());
  const char* what = "cannot write";
  if (error == 0 && uninterrupted([this] { return FileOperations::current().sync(m_file->get()); }) != 0) {
    error = errno;
    what = "cannot flush";
  }
  if (error != 0) {
    // If this fails too, the next append or start does it.
    (void)uninterrupted([&] { return ::ftruncate(m_file->get(), static_cast<off_t>(place)); });
    fail(what, m_path, error);
  }
  m_hasRest = false;
  m_size = place + bytes.size();
  take(change, place, bytes.size());
}

// A file is only written again for a good part of it, as it is copied whole.
void Journal::thin(const Limits& limits, std::int64_t now) {
  const auto lastSave = std::find_if(m_entries.rbegin(), m_entries.rend(),
                                     [](const Entry& entry) { return entry.kind == Change::Kind::Saved; });
  if (lastSave == m_entries.rend())
    return;
  const std::uint64_t wanted = m_size > limits.bytes ? limits.bytes - limits.bytes / 4 : m_size;
  auto keptFrom = m_entries.begin();
  while (keptFrom != lastSave.base() - 1 &&
         (m_size - keptFrom->place > wanted || keptFrom->moment < now - limits.seconds))
    ++keptFrom;
  const std::uint64_t dropped = keptFrom == m_entries.begin() ? 0 : keptFrom->place;
  if (dropped == 0 || (m_size <= limits.bytes && dropped < m_size / 4))
    return;
  const std::string kept = bytesAt(keptFrom->place, m_size - keptFrom->place);
  replaceFile(m_path, [&kept](std::ostream& out) { out << FIRST_LINE << kept; });
  open();
}

} // namespace Tallymoor
