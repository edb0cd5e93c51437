#pragma once
#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace Tallymoor {

/// Major, minor, patch and build number of a file.
using FileVersion = std::array<unsigned, 4>;

/// The version record in an image's bytes (VersionRecord.h). Empty if missing.
std::optional<FileVersion> versionInImage(std::string_view bytes);

/// The version in a library's file name, as in "libxerces-c-3.2.so". Missing numbers are 0. Empty if the name
/// has no version.
std::optional<FileVersion> versionInName(const std::string& fileName);

/// Reads "1.3.1.510" from the start of a text. Missing numbers are 0. Empty if there is no number.
std::optional<FileVersion> readVersionNumbers(std::string_view text);

} // namespace Tallymoor
