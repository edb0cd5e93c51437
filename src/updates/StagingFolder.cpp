#include "updates/StagingFolder.h"
#include "foundation/Exception.h"
#include "foundation/FileReplacement.h"
#include "foundation/Uninterrupted.h"
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <ostream>
#include <sys/stat.h>

namespace Tallymoor {

StagingFolder::StagingFolder(const std::string& path) : m_path(path) {
  removeWithContents(m_path);
  if (::mkdir(m_path.c_str(), 0700) != 0)
    throw Exception(String(u"StagingFolder::StagingFolder - cannot make ") + m_path.c_str() + u": " +
                    std::strerror(errno));
}

StagingFolder::~StagingFolder() {
  if (!m_published)
    removeWithContents(m_path);
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
  removeWithContents(path);
  try {
    retryIfInterrupted([&] { std::filesystem::rename(m_path, path); });
  } catch (const std::filesystem::filesystem_error& error) {
    throw Exception(String(u"StagingFolder::publishAs - cannot make ") + path.c_str() + u": " +
                    error.code().message().c_str());
  }
  m_published = true;
}

} // namespace Tallymoor
