#include "session/RecordsOnDisk.h"
#include <fstream>
#include <sys/stat.h>
#include <vector>
#include <zlib.h>

namespace Tallymoor {

namespace {

constexpr std::size_t BLOCK = std::size_t{64} * 1024; ///< bytes

std::uint32_t checksumOf(std::string_view content, std::uint32_t before = 0) {
  return static_cast<std::uint32_t>(
      crc32_z(before, reinterpret_cast<const Bytef*>(content.data()), content.size()));
}

/// In blocks: the file may be far larger than records can be.
std::uint32_t checksumOfFile(const String& path) {
  std::ifstream file(path.toUTF8(), std::ios::binary);
  std::vector<char> block(BLOCK);
  std::uint32_t checksum = checksumOf({});
  while (file.read(block.data(), static_cast<std::streamsize>(block.size())), file.gcount() > 0)
    checksum = checksumOf({block.data(), static_cast<std::size_t>(file.gcount())}, checksum);
  return checksum;
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
  records.m_checksum = checksumOfFile(path);
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
  if (now.size != m_look.size || checksumOfFile(path) != m_checksum)
    return true;
  m_look = now;
  return false;
}

} // namespace Tallymoor
