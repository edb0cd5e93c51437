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

/// The user's settings, stored in the toolkit's registry file. Escapes section and key names for the file
/// format ("=", leading "#" and "[", "]" and control characters become %XX). Numbers don't depend on the
/// locale. GUI thread only, under the big mutex. An empty section or key throws Exception.
class Settings {
public:
  static Settings& Instance();
  /// Uses this registry from now on; it is not owned. Null selects a store in memory without a file.
  static void attach(FX::FXRegistry* registry);

  // Each returns the fallback if the entry is missing or can't be converted.
  String readString(const String& section, const String& key, const String& fallback = String()) const;
  std::int32_t readInt(const String& section, const String& key, std::int32_t fallback = 0) const;
  std::uint32_t readUnsigned(const String& section, const String& key, std::uint32_t fallback = 0) const;
  double readReal(const String& section, const String& key, double fallback = 0.0) const;
  bool readBool(const String& section, const String& key, bool fallback = false) const;
  bool hasEntry(const String& section, const String& key) const;

  // Values are saved by the next commit.
  void writeString(const String& section, const String& key, const String& value);
  void writeInt(const String& section, const String& key, std::int32_t value);
  void writeUnsigned(const String& section, const String& key, std::uint32_t value);
  void writeReal(const String& section, const String& key, double value);
  void writeBool(const String& section, const String& key, bool value);

  void deleteEntry(const String& section, const String& key);
  void deleteSection(const String& section);
  /// The keys of a section, unordered. Empty if the section is missing.
  std::vector<String> keys(const String& section) const;
  /// The sections whose names begin with the prefix.
  std::vector<String> sections(const String& prefix) const;

  /// Differs after each change, so that what was read before can be kept while it is the same.
  std::uint64_t changeStamp() const;

  /// Saves the settings by replacing the file. Throws Exception on failure: the old file is then unchanged
  /// and the next commit saves again.
  void commit();
  /// Like commit, but leaves a failure to be reported by the next commit. For unimportant changes.
  void commitIfPossible();
  /// The file's path. Empty for the store in memory.
  String filePath() const;

private:
  Settings();
  FX::FXRegistry& registry() const;
};

} // namespace Tallymoor
