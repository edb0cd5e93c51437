#pragma once
#include <string>
#include <string_view>

namespace Tallymoor {

// The names of what replaceFile puts beside a file. They are short whatever the file is called, since a name
// may already have all the length that the file system allows.

inline constexpr std::string_view TEMPORARY_PREFIX = ".tallymoor-";
inline constexpr std::string_view TEMPORARY_SUFFIX = ".tmp";
inline constexpr std::string_view NOTE_SUFFIX = ".for"; ///< says which file a temporary is for

inline bool isTemporaryName(std::string_view name) {
  return name.starts_with(TEMPORARY_PREFIX) && name.ends_with(TEMPORARY_SUFFIX);
}

inline bool isNoteName(std::string_view name) {
  return name.starts_with(TEMPORARY_PREFIX) && name.ends_with(NOTE_SUFFIX);
}

/// Names or paths, both ways.
inline std::string noteOfTemporary(const std::string& temporary) {
  return temporary.substr(0, temporary.size() - TEMPORARY_SUFFIX.size()) + std::string(NOTE_SUFFIX);
}
inline std::string temporaryOfNote(const std::string& note) {
  return note.substr(0, note.size() - NOTE_SUFFIX.size()) + std::string(TEMPORARY_SUFFIX);
}

} // namespace Tallymoor
