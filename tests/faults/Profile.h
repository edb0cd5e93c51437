#pragma once
#include "foundation/LinuxPlatform.h"
#include "support/FakeUserInteraction.h"
#include <memory>
#include <string>

namespace FX {
class FXRegistry;
}

namespace Tallymoor {

/// The user and the installed copy in a folder of the driver: home and data folder, a fixed current day,
/// settings in a file, and "program" as the current folder. Messages to the user are recorded.
class Profile {
public:
  /// Reads the settings, like a start of the program.
  explicit Profile(const std::string& folder);
  ~Profile();
  Profile(const Profile&) = delete;
  Profile& operator=(const Profile&) = delete;

  const std::string& folder() const { return m_folder; }
  /// The errors shown to the user, one line each.
  std::vector<std::string> errorsTold() const;

  static void write(const std::string& path, const std::string& content, unsigned mode = 0644);
  /// Empty if the file is missing.
  static std::string read(const std::string& path);

private:
  const std::string m_folder;
  FakeUserInteraction m_user;
  std::unique_ptr<FX::FXRegistry> m_registry;
};

} // namespace Tallymoor
