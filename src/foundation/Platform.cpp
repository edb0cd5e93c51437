#include "foundation/Platform.h"
#include "foundation/Exception.h"
#include "foundation/FileReplacement.h"
#include "foundation/LinuxPlatform.h"
#include "foundation/OpenFile.h"
#include <memory>
#include <mutex>
#include <sys/stat.h>

namespace Tallymoor {

namespace {

std::mutex instanceMutex;

std::unique_ptr<Platform>& instanceSlot() {
  static std::unique_ptr<Platform> slot;
  return slot;
}

void copyMissing(const std::string& from, const String& to) {
  for (const std::string& name : namesIn(from)) { // Empty if the installation has no such defaults.
    const String source((from + "/" + name).c_str());
    const String target = to + String(name.c_str());
    if (filePresence(source) != FilePresence::RegularFile || filePresence(target) != FilePresence::Missing)
      continue;
    ::mkdir(to.toUTF8().c_str(), 0700); // the copy tells of a failure
    copyFileReplacing(source, target);
  }
}

} // namespace

Platform::~Platform() = default;

Platform& Platform::Instance() {
  const std::lock_guard lock(instanceMutex);
  if (!instanceSlot())
    instanceSlot() = std::make_unique<LinuxPlatform>();
  return *instanceSlot();
}

void Platform::setInstance(std::unique_ptr<Platform> platform) {
  const std::lock_guard lock(instanceMutex);
  instanceSlot() = std::move(platform);
}

String dataDirectory(Platform& platform, const String& product) {
  return platform.userHomeDirectory(product) + u"/Data/";
}

String configDirectory(Platform& platform, const String& product) {
  return platform.userHomeDirectory(product) + u"/Config/";
}

String cacheDirectory(Platform& platform, const String& product) {
  return platform.userHomeDirectory(product) + u"/Cache/";
}

String reportDirectory(Platform& platform, const String& product) {
  return platform.userHomeDirectory(product) + u"/Report/";
}

void installMissingDefaults(Platform& platform, const String& product) {
  const std::string defaults = platform.installedDefaultsDirectory().toUTF8();
  const String config = configDirectory(platform, product);
  copyMissing(defaults + "/Config", config);
  copyMissing(defaults + "/Config/Sources", config + u"Sources/");
  copyMissing(defaults + "/Report", reportDirectory(platform, product));
}

} // namespace Tallymoor
