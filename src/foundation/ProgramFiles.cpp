#include "foundation/ProgramFiles.h"
#include "foundation/Uninterrupted.h"
#include <algorithm>
#include <cstdio>
#include <fcntl.h>
#include <string_view>
#include <strings.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Tallymoor {

namespace {

constexpr std::string_view LIBRARY_SUFFIX = ".dll";
constexpr std::size_t LONGEST_NAME = 100;

bool isNameCharacter(char c) {
  return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '.' || c == '_' ||
         c == '-';
}

bool isLibraryName(const std::string& fileName, const std::string& stem) {
  return fileName.size() <= LONGEST_NAME && fileName.starts_with(stem) &&
         fileName.ends_with(LIBRARY_SUFFIX) && fileName.size() >= stem.size() + LIBRARY_SUFFIX.size() &&
         fileName.find("..") == std::string::npos &&
         std::all_of(fileName.begin(), fileName.end(), isNameCharacter);
}

/// False if the file could not be written completely.
bool writeWhole(const std::string& path, std::string_view content) {
  const int file =
      uninterrupted([&path] { return ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600); });
  if (file < 0)
    return false;
  while (!content.empty()) {
    const ssize_t count = uninterrupted([&] { return ::write(file, content.data(), content.size()); });
    if (count <= 0)
      break;
    content.remove_prefix(static_cast<std::size_t>(count));
  }
  return (::close(file) == 0 || errno == EINTR) && content.empty();
}

} // namespace

// Repeats the values of Constants.h, whose String type would link further libraries into the installer.
const std::vector<std::string>& programFileStems() {
  static const std::vector<std::string> STEMS{"Tallymoor.exe", "UpdateInstaller", "FOXDLL", "FxEx",
                                              "xerces-c"};
  return STEMS;
}

bool isProgramFileName(const std::string& fileName, const std::string& stem) {
  const std::string& program = programFileStems()[0];
  const std::string& installer = programFileStems()[1];
  if (stem == program)
    return fileName == program;
  if (stem == installer)
    return fileName == installer + ".exe";
  return isLibraryName(fileName, stem);
}

std::string stemOfProgramFile(const std::string& fileName) {
  for (const std::string& stem : programFileStems())
    if (isProgramFileName(fileName, stem))
      return stem;
  return {};
}

std::vector<std::string> filesWithStem(const std::string& stem) {
  std::vector<std::string> names;
  const auto folder = retryIfInterrupted([] { return std::filesystem::directory_iterator("."); });
  for (const auto& entry : folder) {
    const std::string name = entry.path().filename();
    std::error_code unreadable;
    if (strncasecmp(name.c_str(), stem.c_str(), stem.size()) == 0 && !entry.is_directory(unreadable))
      names.push_back(name);
  }
  std::sort(names.begin(), names.end());
  return names;
}

bool moveUpCompleteUpdates() {
  namespace fs = std::filesystem;
  try {
    if (!retryIfInterrupted([] { return fs::exists(COMPLETE_UPDATES); }))
      return true;
    std::vector<fs::path> files;
    for (const auto& entry : retryIfInterrupted([] { return fs::directory_iterator(COMPLETE_UPDATES); }))
      files.push_back(entry.path());
    for (const fs::path& file : files)
      retryIfInterrupted([&file] { fs::rename(file, UPDATE_FOLDER / file.filename()); });
    retryIfInterrupted([] { fs::remove(COMPLETE_UPDATES); });
    return true;
  } catch (const fs::filesystem_error&) {
    return false;
  }
}

bool isOwnFolder(const std::string& path) {
  struct stat info {};
  return ::stat(path.c_str(), &info) == 0 && S_ISDIR(info.st_mode) && info.st_uid == ::geteuid() &&
         (info.st_mode & (S_IWGRP | S_IWOTH)) == 0 && ::access(path.c_str(), W_OK) == 0;
}

bool belongsToPackage() {
  return ::access(PACKAGE_MARKER, F_OK) == 0;
}

bool leaveOverrideMarker() {
  return writeWhole(OVERRIDE_MARKER, {});
}

void leaveInstallerFailure(const std::string& reason) {
  const std::string fresh = INSTALLER_FAILURE + std::string(".new");
  const auto publish = [&fresh] { return ::rename(fresh.c_str(), INSTALLER_FAILURE); };
  if (!writeWhole(fresh, reason + '\n') || uninterrupted(publish) != 0)
    ::unlink(fresh.c_str());
}

} // namespace Tallymoor
