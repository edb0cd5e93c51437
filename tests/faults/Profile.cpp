#include "Profile.h"
#include "TestPaths.h"
#include "foundation/Date.h"
#include "foundation/Settings.h"
#include "market/TallymoorInternet.h"
#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#define FX_NO_GLOBAL_NAMESPACE
#include <fx.h>

namespace Tallymoor {

namespace {

/// Starts the update installer like the program, but waits for its end.
class WaitingPlatform : public LinuxPlatform {
public:
  using LinuxPlatform::LinuxPlatform;
  bool openDocument(const String& target) override {
    return std::system(("./" + target.toUTF8() + " 2>/dev/null").c_str()) >= 0;
  }
};

} // namespace

Profile::Profile(const std::string& folder) : m_folder(folder) {
  std::filesystem::create_directories(folder + "/program");
  std::filesystem::permissions(folder + "/program", std::filesystem::perms(0755));
  std::filesystem::current_path(folder + "/program");
  ::setenv("HOME", folder.c_str(), 1);
  LinuxPlatformOptions options;
  options.dataHome = folder + "/share";
  options.locale = "en_AU";
  options.programFolder = TALLYMOOR_ASSETS;
  Platform::setInstance(std::make_unique<WaitingPlatform>(options));
  Clock::setToday(Date(2026, 3, 3).julianDay());
  m_registry = std::make_unique<FX::FXRegistry>("Tallymoor", "Brindlecove");
  m_registry->setAsciiMode(true);
  m_registry->read();
  Settings::attach(m_registry.get());
  TallymoorInternet::Options gateway;
  gateway.startUpdater = false;
  TallymoorInternet::setOptions(gateway);
}

Profile::~Profile() {
  TallymoorInternet::shutdownForNextTest();
  Settings::attach(nullptr);
  Platform::setInstance(nullptr);
}

std::vector<std::string> Profile::errorsTold() const {
  std::vector<std::string> told;
  for (const String& text : m_user.texts(FakeUserInteraction::Kind::Error)) {
    told.push_back(text.toUTF8());
    std::replace(told.back().begin(), told.back().end(), '\n', ' ');
  }
  return told;
}

void Profile::write(const std::string& path, const std::string& content, unsigned mode) {
  const std::filesystem::path file = path;
  std::filesystem::create_directories(std::filesystem::absolute(file).parent_path());
  std::ofstream(file, std::ios::binary | std::ios::trunc) << content;
  std::filesystem::permissions(file, std::filesystem::perms(mode));
}

std::string Profile::read(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), {});
}

} // namespace Tallymoor
