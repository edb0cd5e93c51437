#pragma once
#include "foundation/String.h"
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace FX {
class FXRegistry;
}

namespace Tallymoor {

/// Everything that the user can change and that lasts: the toolkit's file registry, with section and key
/// names made safe for its file form ("=", leading "#" and "[", "]" and control characters are kept as %XX)
/// and real numbers independent of the locale. GUI thread only, under the big mutex. An empty section or key
/// throws Exception.
class Settings {
public:
  static Settings& Instance();
  /// Uses this registry from now on, not owned (the application's); null goes back to a store in memory that
  /// no file backs.
  static void attach(FX::FXRegistry* registry);

  // Each gives the fallback when there is no entry, or none that can be read so.
  String readString(const String& section, const String& key, const String& fallback = String()) const;
  std::int32_t readInt(const String& section, const String& key, std::int32_t fallback = 0) const;
  std::uint32_t readUnsigned(const String& section, const String& key, std::uint32_t fallback = 0) const;
  double readReal(const String& section, const String& key, double fallback = 0.0) const;
  bool readBool(const String& section, const String& key, bool fallback = false) const;
  bool hasEntry(const String& section, const String& key) const;

  // What is written lasts from the next commit on.
  void writeString(const String& section, const String& key, const String& value);
  void writeInt(const String& section, const String& key, std::int32_t value);
  void writeUnsigned(const String& section, const String& key, std::uint32_t value);
  void writeReal(const String& section, const String& key, double value);
  void writeBool(const String& section, const String& key, bool value);

  void deleteEntry(const String& section, const String& key);
  void deleteSection(const String& section);
  /// The keys of a section, in no particular order; none when there is no such section.
  std::vector<String> keys(const String& section) const;
  /// Sections whose name begins with the prefix.
  std::vector<String> sections(const String& prefix) const;

  /// Commits the store to its file, which is replaced as a whole. Throws Exception where that fails; the old
  /// file then stands, and the next commit writes what this one could not.
  void commit();
  /// For a change that need not be told of by itself when it can't be written: the next commit tells of it.
  void commitIfPossible();
  /// The full name of the file; empty for the store in memory.
  String filePath() const;

private:
  Settings();
  FX::FXRegistry& registry() const;
};

} // namespace Tallymoor
