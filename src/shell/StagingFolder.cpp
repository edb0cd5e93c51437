#include "shell/StagingFolder.h"
#include "foundation/Exception.h"
#include "foundation/FileReplacement.h"
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <ostream>
#include <sys/stat.h>

namespace Tallymoor {

StagingFolder::StagingFolder(const std::string& path) : m_path(path) {
  std::error_code ignored;
  std::filesystem::remove_all(m_path, ignored);
  if (::mkdir(m_path.c_str(), 0700) != 0)
    throw Exception(String(u"StagingFolder::StagingFolder - cannot make ") + m_path.c_str() + u": " +
                    std::strerror(errno));
}

StagingFolder::~StagingFolder() {
  std::error_code ignored;
  if (!m_published)
    std::filesystem::remove_all(m_path, ignored);
}

String StagingFolder::file(const String& name) const {
  return String(m_path.c_str()) + u"/" + name;
}

void StagingFolder::write(const String& name, const std::vector<std::uint8_t>& content) const {
  replaceFile(file(name), [&content](std::ostream& out) {
    out.write(reinterpret_cast<const char*>(content.data()), static_cast<std::streamsize>(content.size()));
  });
}

void StagingFolder::publishAs(const std::string& path) {
  std::error_code error;
  std::filesystem::remove_all(path, error);
  std::filesystem::rename(m_path, path, error);
  if (error)
    throw Exception(String(u"StagingFolder::publishAs - cannot make ") + path.c_str() + u": " +
                    error.message().c_str());
  m_published = true;
}

} // namespace Tallymoor
