#include "updates/LocalProgramFile.h"
#include "foundation/Constants.h"
#include "foundation/Platform.h"
#include "foundation/ProgramFiles.h"
#include "updates/UpdatesFixed.h"
#include <filesystem>
#include <string>
#include <sys/stat.h>
#include <vector>

namespace Tallymoor {

namespace {

FileVersion versionOfFile(const String& path) {
  FileVersion version{};
  Platform::Instance().getFileVersion(path, version[0], version[1], version[2], version[3]);
  return version;
}

String localFileOf(const String& stem) {
  if (stem == APP_EXE)
    return stem;
  std::vector<std::string> names;
  try {
    names = filesWithStem(stem.toUTF8());
  } catch (const std::filesystem::filesystem_error& error) {
    throw ProgramFilesFixed(String(error.what()));
  }
  if (names.empty())
    throw ProgramFilesFixed(u"Updates::getUpdateForBinFile - failed to find local file for update: " + stem);
  if (names.size() > 1)
    throw ProgramFilesFixed(u"Updates::getUpdateForBinFile - multiple matches for " + stem);
  return String::fromUTF8(names.front());
}

} // namespace

LocalProgramFile LocalProgramFile::withStem(const String& stem) {
  const String name = localFileOf(stem);
  try {
    return {name, versionOfFile(name)};
  } catch (const Exception& exception) {
    throw ProgramFilesFixed(exception.message());
  }
}

bool LocalProgramFile::isOlderThan(const std::array<std::int64_t, 3>& other) const {
  return other > std::array<std::int64_t, 3>{version[0], version[1], version[2]};
}

bool LocalProgramFile::isOlderThanFile(const String& path) const {
  const FileVersion other = versionOfFile(path);
  return isOlderThan({other[0], other[1], other[2]});
}

void LocalProgramFile::passModeTo(const String& path) const {
  struct stat info {};
  if (::stat(name.toUTF8().c_str(), &info) == 0)
    ::chmod(path.toUTF8().c_str(), info.st_mode & 0777);
}

} // namespace Tallymoor
