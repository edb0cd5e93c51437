#include "foundation/ProgramFiles.h"
#include <algorithm>
#include <filesystem>
#include <fstream>
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

} // namespace

// The texts of the constants, which would draw in the libraries that text stands on.
const std::vector<std::string>& programFileStems() {
  static const std::vector<std::string> stems{"Tallymoor.exe", "UpdateInstaller", "FOXDLL", "FxEx",
                                              "xerces-c"};
  return stems;
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
  std::error_code error;
  for (const auto& entry : std::filesystem::directory_iterator(".", error)) {
    const std::string name = entry.path().filename();
    std::error_code unreadable;
    if (strncasecmp(name.c_str(), stem.c_str(), stem.size()) == 0 && !entry.is_directory(unreadable))
      names.push_back(name);
  }
  std::sort(names.begin(), names.end());
  return names;
}

void moveUpCompleteUpdates() {
  std::error_code error;
  std::vector<std::filesystem::path> files;
  for (const auto& entry : std::filesystem::directory_iterator(COMPLETE_UPDATES, error))
    files.push_back(entry.path());
  for (const std::filesystem::path& file : files)
    std::filesystem::rename(file, UPDATE_FOLDER / file.filename(), error);
  std::filesystem::remove(COMPLETE_UPDATES, error); // fails as long as a file is left in it
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
  std::ofstream marker(OVERRIDE_MARKER, std::ios::out | std::ios::trunc);
  return marker.is_open();
}

} // namespace Tallymoor
