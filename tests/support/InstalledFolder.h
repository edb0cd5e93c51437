#pragma once
#include "support/TestProfile.h"
#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>
#include <vector>

namespace Tallymoor {

/// The folder of an installed copy with dummy program files, as the current folder.
class InstalledFolder {
public:
  explicit InstalledFolder(const TestProfile& profile)
      : m_before(std::filesystem::current_path()), m_folder(profile.folder() + "/installed") {
    std::filesystem::create_directories(m_folder + "/lib");
    std::filesystem::permissions(m_folder, std::filesystem::perms(0755));
    std::filesystem::current_path(m_folder);
    write("Tallymoor.exe", image("1.3.1"), 0755);
    write("UpdateInstaller.exe", image("1.3.1"), 0755);
    for (const char* library : {"FOXDLL-1.6.57.dll", "FxEx-1.0.0.dll", "xerces-c_3.2.4.dll"})
      write(library, "old library", 0644);
    std::filesystem::create_symlink("../FOXDLL-1.6.57.dll", "lib/libFOX-1.6.so.0");
  }
  ~InstalledFolder() { std::filesystem::current_path(m_before); }
  InstalledFolder(const InstalledFolder&) = delete;
  InstalledFolder& operator=(const InstalledFolder&) = delete;

  const std::string& path() const { return m_folder; }

  /// Content of a program file of this version.
  static std::string image(const std::string& version) {
    return "image @(#)Brindlecove file version " + version + ".0\n";
  }
  static void write(const std::string& name, const std::string& content, unsigned mode = 0644) {
    TestProfile::writeFile(String(("./" + name).c_str()), content);
    std::filesystem::permissions(name, std::filesystem::perms(mode));
  }
  static std::string read(const std::string& name) { return TestProfile::readFile(String(name.c_str())); }
  static bool exists(const std::string& name) { return std::filesystem::exists(name); }
  static unsigned mode(const std::string& name) {
    return static_cast<unsigned>(std::filesystem::status(name).permissions());
  }
  /// Names of everything in "./updates", including subfolders and their content.
  static std::vector<std::string> waiting() {
    std::vector<std::string> names;
    std::error_code none;
    for (const auto& entry : std::filesystem::recursive_directory_iterator("updates", none))
      names.push_back(entry.path().lexically_relative("updates"));
    std::sort(names.begin(), names.end());
    return names;
  }

private:
  const std::filesystem::path m_before;
  const std::string m_folder;
};

} // namespace Tallymoor
