#pragma once
#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace Tallymoor {

/// Major, minor, patch and build of a file.
using FileVersion = std::array<unsigned, 4>;

/// The version record in an image's bytes (VersionRecord.h); nothing when it has none.
std::optional<FileVersion> versionInImage(std::string_view bytes);

/// The version in the name of a library, as in "libxerces-c-3.2.so": the first numbers joined by points,
/// those that are missing being 0. Nothing when the name has none.
std::optional<FileVersion> versionInName(const std::string& fileName);

/// Reads "1.3.1.510" from the head of a text; missing numbers are 0. Nothing without a first number.
std::optional<FileVersion> readVersionNumbers(std::string_view text);

} // namespace Tallymoor
