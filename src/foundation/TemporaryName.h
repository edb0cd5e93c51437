#pragma once
#include <string>
#include <string_view>

namespace Tallymoor {

// Names of the files that replaceFile puts next to its target. They are short because the target's name may
// already have the maximum length.

inline constexpr std::string_view TEMPORARY_PREFIX = ".tallymoor-";
inline constexpr std::string_view TEMPORARY_SUFFIX = ".tmp";
inline constexpr std::string_view NOTE_SUFFIX =
    ".for"; ///< Names the target of a temporary; see LinkedFile.h.

inline bool isTemporaryName(std::string_view name) {
  return name.starts_with(TEMPORARY_PREFIX) && name.ends_with(TEMPORARY_SUFFIX);
}

inline bool isNoteName(std::string_view name) {
  return name.starts_with(TEMPORARY_PREFIX) && name.ends_with(NOTE_SUFFIX);
}

/// Both functions accept a name or a path.
inline std::string noteOfTemporary(const std::string& temporary) {
  return temporary.substr(0, temporary.size() - TEMPORARY_SUFFIX.size()) + std::string(NOTE_SUFFIX);
}
inline std::string temporaryOfNote(const std::string& note) {
  return note.substr(0, note.size() - NOTE_SUFFIX.size()) + std::string(TEMPORARY_SUFFIX);
}

} // namespace Tallymoor
