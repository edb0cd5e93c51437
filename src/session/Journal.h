#pragma once
#include "foundation/OpenFile.h"
#include "session/Change.h"
#include <cstdint>
#include <optional>
#include <vector>

namespace Tallymoor {

/// The file that keeps each change as soon as it is made, so that neither a crash nor a power cut takes what
/// was typed since the records were written, and so that changes can be undone.
///
/// A first line is followed by entries: a mark, the length of what follows the head, the number, a checksum
/// of both and of what follows, and the packed change. Entries are only appended. A change leads both ways
/// (see TextEdit), so older entries can go without those that stay being worth less.
///
/// What comes from the file is not trusted. An entry that was not written to its end is the last one, and was
/// never shown to the user as done: it is taken away when the file is opened. One that is damaged is passed
/// over, and those behind it are found by their marks.
///
/// GUI thread, under the big mutex.
class Journal {
public:
  /// An entry, without what it changed.
  struct Entry {
    Change::Kind kind;
    std::uint64_t number;
    std::uint64_t other;
    std::int64_t moment;
    String sentence;
    std::vector<String> portfolios; ///< the names before and after, each once
    bool isOfWholePortfolios;       ///< one comes, goes or gets another name or place
    std::uint64_t place;            ///< in the file
    std::size_t length;             ///< there
  };

  struct Limits {
    std::int64_t seconds = std::int64_t{2} * 365 * 24 * 60 * 60; ///< older changes go
    std::uint64_t bytes = std::uint64_t{64} * 1024 * 1024;       ///< of the file
  };

  /// A file that is missing is made, with mode 0600, and its folder with 0700. Throws Exception when it can't
  /// be opened or read, or is none of this program.
  explicit Journal(const String& path);

  const String& path() const { return m_path; }
  /// In the order of the file.
  const std::vector<Entry>& entries() const { return m_entries; }
  /// Those that the records are made of: no marks, and none that was dropped.
  std::vector<Entry> changes() const;
  /// The whole change of an entry. Throws Exception when it can't be read any more.
  Change read(const Entry& entry);
  /// Whether the last entry had not been written to its end, and was taken away.
  bool lostTornEntry() const { return m_lostTornEntry; }
  /// How many places of the file can't be read.
  std::size_t damagedPlaces() const { return m_damagedPlaces; }
  /// Whether one of them lies behind the last save.
  bool isDamagedSinceSave() const;

  /// Gives the change its number and flushes it to disk. Throws Exception; the journal is then as it was.
  void append(Change& change);
  /// Makes the file smaller where it is over its limits: the oldest entries go, but never those behind the
  /// last save. Throws Exception; the journal is then as it was.
  void thin(const Limits& limits, std::int64_t now);

private:
  void open();
  void readAll();
  void readEntries(std::string_view content);
  void noteDamage(std::uint64_t place);
  void take(const Change& change, std::uint64_t place, std::size_t length);
  void cutTo(std::uint64_t size);
  std::string bytesAt(std::uint64_t place, std::size_t length) const;

  String m_path;
  std::optional<OpenFile> m_file; ///< never empty after construction
  std::uint64_t m_size = 0;       ///< up to the end of the last whole entry
  bool m_hasRest = false;         ///< there may be something behind that end
  std::vector<Entry> m_entries;
  bool m_lostTornEntry = false;
  std::size_t m_damagedPlaces = 0;
  std::uint64_t m_lastDamage = 0; ///< where it begins
};

} // namespace Tallymoor
