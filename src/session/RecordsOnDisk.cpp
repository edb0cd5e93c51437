#include "session/RecordsOnDisk.h"
#include <fstream>
#include <sstream>
#include <sys/stat.h>
#include <zlib.h>

namespace Tallymoor {

namespace {

std::uint32_t checksumOf(std::string_view content) {
  return static_cast<std::uint32_t>(
      crc32_z(0, reinterpret_cast<const Bytef*>(content.data()), content.size()));
}

std::string contentOf(const String& path) {
  std::ostringstream content;
  content << std::ifstream(path.toUTF8(), std::ios::binary).rdbuf();
  return std::move(content).str();
}

} // namespace

RecordsOnDisk::Look RecordsOnDisk::lookAt(const String& path) {
  struct stat info {};
  if (::stat(path.toUTF8().c_str(), &info) != 0)
    return {};
  return {info.st_dev, info.st_ino, info.st_size, info.st_mtim.tv_sec, info.st_mtim.tv_nsec};
}

RecordsOnDisk RecordsOnDisk::asRead(const String& path) {
  RecordsOnDisk records;
  records.m_look = lookAt(path);
  records.m_checksum = checksumOf(contentOf(path));
  return records;
}

RecordsOnDisk RecordsOnDisk::asWritten(const String& temporaryPath, std::string_view content) {
  RecordsOnDisk records;
  records.m_look = lookAt(temporaryPath);
  records.m_checksum = checksumOf(content);
  return records;
}

bool RecordsOnDisk::isAnothers(const String& path) {
  const Look now = lookAt(path);
  if (now == m_look || now.inode == 0)
    return false;
  if (now.size != m_look.size || checksumOf(contentOf(path)) != m_checksum)
    return true;
  m_look = now;
  return false;
}

} // namespace Tallymoor
