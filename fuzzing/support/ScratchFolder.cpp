#include "support/ScratchFolder.h"
#include "support/Require.h"
#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace Tallymoor::Fuzz {

namespace {

std::filesystem::path parentFolder() {
  const std::filesystem::path inMemory = "/dev/shm";
  std::error_code none;
  return std::filesystem::is_directory(inMemory, none) ? inMemory : std::filesystem::temp_directory_path();
}

} // namespace

ScratchFolder::ScratchFolder() : m_path(parentFolder() / "tallymoor-fuzz-XXXXXX") {
  require(::mkdtemp(m_path.data()) != nullptr, "a folder for files can be made");
}

ScratchFolder::~ScratchFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(m_path, ignored);
}

std::string ScratchFolder::write(const std::string& name, std::string_view bytes) const {
  const std::filesystem::path path = std::filesystem::path(m_path) / name;
  std::filesystem::create_directories(path.parent_path());
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  file.close();
  require(file.good(), "a file can be written");
  return path;
}

} // namespace Tallymoor::Fuzz
