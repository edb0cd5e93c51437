#include "foundation/FileVersion.h"
#include "foundation/VersionRecord.h"
#include <charconv>

namespace Tallymoor {

namespace {

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

/// True at digits, a point and a digit. A single number, as in "libz3", is not a version.
bool beginsVersion(std::string_view text) {
  std::size_t digits = 0;
  while (digits < text.size() && isDigit(text[digits]))
    ++digits;
  return digits > 0 && digits + 1 < text.size() && text[digits] == '.' && isDigit(text[digits + 1]);
}

} // namespace

std::optional<FileVersion> readVersionNumbers(std::string_view text) {
  FileVersion version{};
  const char* next = text.data();
  const char* const end = next + text.size();
  for (std::size_t i = 0; i < version.size(); ++i) {
    const auto result = std::from_chars(next, end, version[i]);
    if (result.ec != std::errc())
      return i == 0 ? std::nullopt : std::optional(version);
    next = result.ptr;
    if (next == end || *next != '.')
      break;
    ++next;
  }
  return version;
}

std::optional<FileVersion> versionInImage(std::string_view bytes) {
  // An image that searches for the mark contains it too, so only a mark followed by a number counts.
  static constexpr std::string_view MARK = TALLYMOOR_VERSION_MARK;
  for (std::size_t at = bytes.find(MARK); at != std::string_view::npos; at = bytes.find(MARK, at + 1))
    if (const auto version = readVersionNumbers(bytes.substr(at + MARK.size(), 48)))
      return version;
  return std::nullopt;
}

std::optional<FileVersion> versionInName(const std::string& fileName) {
  const std::string_view name = fileName;
  for (std::size_t i = 0; i < name.size(); ++i)
    if (isDigit(name[i]) && (i == 0 || !isDigit(name[i - 1])) && beginsVersion(name.substr(i)))
      return readVersionNumbers(name.substr(i));
  return std::nullopt;
}

} // namespace Tallymoor
