#pragma once
#include "foundation/LinuxPlatform.h"
#include "support/FakeUserInteraction.h"
#include <memory>
#include <string>

namespace FX {
class FXRegistry;
}

namespace Tallymoor {

/// The user and the installed copy that live in a folder of the driver's: home and data folder, a fixed
/// today, settings in a file, and "program" as the current folder. What the program tells the user is noted.
class Profile {
public:
  /// The settings are read, as by a start of the program.
  explicit Profile(const std::string& folder);
  ~Profile();
  Profile(const Profile&) = delete;
  Profile& operator=(const Profile&) = delete;

  const std::string& folder() const { return m_folder; }
  /// The errors that were told, each in one line.
  std::vector<std::string> errorsTold() const;

  static void write(const std::string& path, const std::string& content, unsigned mode = 0644);
  /// Empty when there is no such file.
  static std::string read(const std::string& path);

private:
  const std::string m_folder;
  FakeUserInteraction m_user;
  std::unique_ptr<FX::FXRegistry> m_registry;
};

} // namespace Tallymoor
