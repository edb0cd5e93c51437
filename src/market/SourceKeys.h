#pragma once
#include "foundation/String.h"
#include <map>
#include <optional>
#include <set>

namespace Tallymoor {

/// The user's keys for sources of prices, in a file of their own that only the user can read. A key is sent
/// only to the hosts for which the user gave it, so that another document of the same name does not get it.
///
/// A file that can't be read is left alone: then there are no keys, and none can be stored. Guarded by the
/// big mutex, which its callers hold.
class SourceKeys {
public:
  /// Reads the file. Throws nothing that is an Exception.
  explicit SourceKeys(const String& path);

  /// Empty if there is none for the source and these hosts.
  String keyFor(const String& source, const std::set<String>& hosts) const;
  /// Stores the key; an empty one is removed. Throws Exception if the file can't be written, or could not be
  /// read.
  void set(const String& source, const std::set<String>& hosts, const String& key);
  /// Why the file could not be read; empty if it could.
  const String& failure() const { return m_failure; }

private:
  struct Kept {
    std::set<String> hosts;
    String key;
  };
  void read();
  void write(const std::map<String, Kept>& keys) const;

  String m_path;
  std::map<String, Kept> m_keys; ///< by source
  String m_failure;
};

} // namespace Tallymoor
